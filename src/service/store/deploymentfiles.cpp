// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The file of deployments.
#include "service/store/recordfile.h"
#include "service/store/workspacefiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <limits>

namespace Zel {

namespace {

/// Of the names and bytes of all files in a folder and below.
QByteArray hashOfFolder(const QString &folder)
{
    QStringList paths;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths << files.next();
    paths.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &path : std::as_const(paths)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw WorkspaceFileError({path, 0},
                                     QStringLiteral("cannot be read: %1.").arg(file.errorString()));
        const QByteArray name = QDir(folder).relativeFilePath(path).toUtf8();
        hash.addData(name + '\n' + QByteArray::number(file.size()) + '\n');
        hash.addData(&file);
    }
    return hash.result();
}

} // namespace

void WorkspaceFiles::readDeployments(const QString &path)
{
    constexpr qint64 largestAccount = std::numeric_limits<qint32>::max();
    constexpr qsizetype longestPath = 4096;
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        DeploymentEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccount);
        entry.deployment.guid = record.guid(QStringLiteral("guid"));
        entry.deployment.projectGuid = record.guid(QStringLiteral("project"));
        entry.deployment.name = record.text(QStringLiteral("name"), Deployments::longestName);
        entry.deployment.publishedAt = record.time(QStringLiteral("published"));
        entry.key = record.textOrEmpty(QStringLiteral("key"), Deployments::longestKey);
        const QString folder = record.textOrEmpty(QStringLiteral("folder"), longestPath);
        record.expectNoMore();
        if (!entry.key.isEmpty() && entry.key.size() < Deployments::shortestKey)
            record.refuse(QStringLiteral("\"key\" is shorter than %1 characters.")
                              .arg(Deployments::shortestKey));
        const QString key = QStringLiteral("%1/%2").arg(entry.accountId).arg(entry.deployment.guid);
        if (seen.contains(key))
            record.refuse(QStringLiteral("stands in this file twice."));
        seen.insert(key);
        if (!folder.isEmpty()) {
            const QString whole = QFileInfo(path).dir().filePath(folder);
            if (!QFileInfo(whole).isDir())
                record.refuse(QStringLiteral("there is no folder %1.").arg(whole));
            entry.folder = whole;
            entry.filesHash = hashOfFolder(whole);
        }
        deployments << entry;
    }
}

} // namespace Zel
