// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/booleans.h"

#include "platform/core/numbertext.h"
#include "platform/core/runtimeerror.h"

namespace Zel {

QString booleanText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool booleanFromText(QStringView text, const QLocale &locale)
{
    const QStringView word = text.trimmed();
    if (word.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        return false;
    if (const std::optional<double> number = numberFromText(word, locale))
        return booleanFromNumber(*number);
    throw RuntimeError(RuntimeError::TypeMismatch);
}

} // namespace Zel
