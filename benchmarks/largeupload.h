// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "largefile.h"
#include "measuring.h"
#include "service/client/httpserviceclient.h"

#include <QProcess>

#include <memory>

/// A large file through the client, and what it is compared with.
namespace Bench {

/// Seconds of copying a file with cp and writing the copy out, which is removed afterwards.
inline double copySeconds(const QString &from, const QString &to)
{
    const double time = milliseconds([&] {
        if (QProcess::execute(QStringLiteral("cp"), {from, to}) != 0)
            fail(QStringLiteral("cp failed"));
        writeOut(to);
    });
    QFile::remove(to);
    return time / 1000;
}

/// Seconds of making an asset of a file in the root folder; it is deleted afterwards.
inline double uploadSeconds(QXSC::HttpServiceClient &client, const QString &path)
{
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    files->add(std::make_shared<QXSC::AssetFileEntry>(QXSC::AssetFileEntry{path}));
    QString guid;
    const double time = milliseconds([&] {
        guid = client.CreateAsset(QStringLiteral("Large"), QString(), 0, files, QString(),
                                  QString(), nullptr);
    });
    client.DeleteAsset(guid);
    return time / 1000;
}

} // namespace Bench
