// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/sqlsources.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace ZelTest {

QString textOfFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList serviceSources()
{
    QStringList result;
    QDirIterator files(QStringLiteral(ZEL_SOURCE_DIR "/src/service"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        result << files.next();
    return result;
}

QList<FoundText> sqlTextsInSources()
{
    static const QRegularExpression raw(QStringLiteral("R\"sql\\((.*?)\\)sql\""),
                                        QRegularExpression::DotMatchesEverythingOption);
    QList<FoundText> result;
    for (const QString &file : serviceSources()) {
        if (file.endsWith(QLatin1String(".h")))
            continue; // only told of in comments
        auto matches = raw.globalMatch(textOfFile(file));
        while (matches.hasNext())
            result << FoundText{file, matches.next().captured(1).trimmed()};
    }
    return result;
}

} // namespace ZelTest
