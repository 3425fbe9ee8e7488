// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>

/// Workspace files, good and bad, and the real service for the tests of Studio.
namespace WorkspaceFiles {

inline QString serviceProgram()
{
    return QStringLiteral(ZEL_BIN_DIR "/zel-service");
}

inline QString sampleFolder()
{
    return QStringLiteral(ZEL_SOURCE_DIR "/samples/workspace");
}

/// Copies a file, or a folder with all that is in it.
inline bool copyWhole(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::copy(from.toStdString(), to.toStdString(),
                          std::filesystem::copy_options::recursive, error);
    return !error;
}

/// Makes a workspace with the sample content, hashed at the least cost. The files are taken in once
/// in a program; each workspace is a copy of its own.
inline bool makeSample(const QString &file)
{
    static const QTemporaryDir folder;
    static const QString sample = folder.filePath(QStringLiteral("sample"));
    static const bool isMade =
        QProcess::execute(serviceProgram(),
                          {QStringLiteral("import"), sampleFolder(), QStringLiteral("--database"),
                           sample, QStringLiteral("--sign-in-cost"), QStringLiteral("minimal")}) ==
        0;
    const QString files = QStringLiteral(".files");
    return isMade && copyWhole(sample, file) && copyWhole(sample + files, file + files);
}

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

inline bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

inline bool runSql(const QString &path, const QStringList &statements)
{
    bool fine = true;
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("damage"));
        database.setDatabaseName(path);
        fine = database.open();
        for (const QString &statement : statements)
            fine = fine && QSqlQuery(database).exec(statement);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("damage"));
    return fine;
}

/// A workspace as a later program would leave it.
inline bool makeNewer(const QString &path)
{
    return makeSample(path) &&
           runSql(path, {QStringLiteral("INSERT INTO schema_version SELECT MAX(version) + 1000, 0 "
                                        "FROM schema_version")});
}

/// An executable shell script.
inline QString makeScript(const QString &path, const QByteArray &body)
{
    write(path, "#!/bin/sh\n" + body);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

/// Whether a process runs; one that has ended and waits for its parent to look does not.
inline bool isAlive(qint64 processId)
{
    const QByteArray stat = contentOf(QStringLiteral("/proc/%1/stat").arg(processId));
    const qsizetype name = stat.lastIndexOf(')');
    return name > 0 && stat.mid(name + 2, 1) != "Z" && stat.mid(name + 2, 1) != "X";
}

} // namespace WorkspaceFiles
