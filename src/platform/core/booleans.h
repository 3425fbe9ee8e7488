// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QLocale>
#include <QString>

namespace Zel {

/// "True" or "False". The words are data that hosts and services compare; they are never
/// translated.
ZEL_EXPORT QString booleanText(bool value);

/// Reads "True" and "False" whatever their case, or a number as the locale writes it: zero is
/// False, any other number True. Any other text, the empty one included, is error 13.
ZEL_EXPORT bool booleanFromText(QStringView text, const QLocale &locale = QLocale());

/// -1 for True, 0 for False.
constexpr qint16 booleanNumber(bool value)
{
    return value ? -1 : 0;
}

/// Every number but zero is True.
constexpr bool booleanFromNumber(double value)
{
    return value < 0 || value > 0 || value != value;
}

} // namespace Zel
