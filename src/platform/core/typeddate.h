// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/datewords.h"

#include <optional>

namespace Zel {

/// How people of a locale type dates.
struct TypedDateRules
{
    /// "y", "M" and "d" in the order of the locale.
    QString order;
    /// What may stand between three numbers; "/" and "-" always may.
    QString separators;
};

/// Reads a date that was typed rather than written by a pattern: three numbers in the locale's
/// order, or the year first when it has more than two digits; or a number, the name of a month and
/// a number; or ISO 8601 ("2007-01-09T15:04"); with a time before or behind it ("15:04",
/// "3:04:05 pm") or without one, which is midnight; or the time alone, on day zero.
///
/// Two numbers alone are no date: the year is never guessed. `plain` is plain text (plaintext.h).
std::optional<DateFields> readTypedDate(QStringView plain, const TypedDateRules &rules,
                                        const DateWords &words);

} // namespace Zel
