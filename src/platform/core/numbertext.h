// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QLocale>
#include <QString>

#include <optional>

namespace Zel {

/// A number as text: at most 15 significant digits, no group separators, the locale's decimal
/// separator, ASCII digits and sign.
///
/// Plain digits as long as 15 of them reach; from 1E+15 up and below 0.0001 the exponent form with
/// a sign and at least two digits ("1E+15", "1.5E-05"). Minus zero is "0". Values that are no
/// finite number are written "INF", "-INF" and "NAN", which no reader takes for a number.
ZEL_EXPORT QString numberText(double value, const QLocale &locale = QLocale());

/// `numberText` with "." whatever the locale, for file formats and keys.
ZEL_EXPORT QString invariantNumberText(double value);

/// Reads a number as the locale writes it, tolerantly: surrounding blanks, a sign before or after
/// the number or parentheses for a negative one, group separators anywhere between digits of the
/// integer part, an exponent after "E" or "D", the digits of any script, direction marks.
/// Nothing when the text is anything else or when a double does not hold the number; one too small
/// for a double is 0.
ZEL_EXPORT std::optional<double> numberFromText(QStringView text,
                                                const QLocale &locale = QLocale());

/// Whether `numberFromText` reads the text.
ZEL_EXPORT bool isNumeric(QStringView text, const QLocale &locale = QLocale());

/// `value` with a fixed number of fraction digits after "." and at least `integerDigits` digits
/// before it, filled with zeros.
///
/// The digits are those of the decimal form with at most 15 significant digits, then zeros, never
/// the binary remainder: 0.1 with 20 fraction digits is "0.10000000000000000000". Digits that do
/// not fit the fraction round it, halves away from zero; more integer digits than asked for are all
/// kept. A negative value begins with "-" unless only zeros are shown. Not finite: error 6.
ZEL_EXPORT QString fixedText(double value, int integerDigits, int fractionDigits);

} // namespace Zel
