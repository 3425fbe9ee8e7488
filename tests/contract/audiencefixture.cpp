// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"

#include <QFile>

#include <stdexcept>

namespace ZelTest {

QList<QStringList> AudienceTest::sampleRows(const QString &file)
{
    QFile input(ServiceProcess::sampleFolder() + QLatin1String("/deployments/") + file);
    if (!input.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(input.errorString()));
    QList<QStringList> rows;
    const QStringList lines = QString::fromUtf8(input.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines.mid(1)) {
        if (!line.isEmpty())
            rows << QString(line).remove(QLatin1Char('"')).split(QLatin1Char(','));
    }
    return rows;
}

} // namespace ZelTest
