// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

/// A source tree of a few files, made for one test, and what CMake says to it.
class SourceTree
{
public:
    struct Answer
    {
        bool succeeded;
        QString text; // every run of white space as one blank: CMake wraps lines
    };

    void write(const QString &path, const QString &text) const
    {
        const QString whole = m_folder.filePath(path);
        QDir().mkpath(QFileInfo(whole).path());
        QFile file(whole);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("cannot write %s", qPrintable(whole));
    }

    QString path() const { return m_folder.path(); }

    static Answer cmake(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(ZEL_CMAKE), arguments);
        const bool ended = process.waitForFinished(120000);
        return {ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                QString::fromUtf8(process.readAll()).simplified()};
    }

private:
    QTemporaryDir m_folder;
};
