// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/numberoption.h"

#include "service/daemon/program.h"

#include <limits>

namespace Zel::Service {

qint64 numberIn(const QString &text, const QString &what, qint64 least, qint64 most)
{
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (!ok || number < least || number > most)
        throw UsageError(
            QStringLiteral("%1 is a whole number from %2 to %3.").arg(what).arg(least).arg(most));
    return number;
}

qint64 accountNumberIn(const QString &text, const QString &what)
{
    return numberIn(text, what, 1, std::numeric_limits<qint32>::max());
}

QList<qint64> accountNumbers(const QCommandLineParser &parser)
{
    QList<qint64> numbers;
    const QStringList texts = parser.values(QStringLiteral("account"));
    for (const QString &text : texts)
        numbers << accountNumberIn(text, QStringLiteral("--account"));
    return numbers;
}

} // namespace Zel::Service
