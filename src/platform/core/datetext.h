// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <optional>

namespace Zel {

/// The general date text: the locale's short date with a four-digit year and its long time without
/// a zone, "1/9/2007 3:04:05 PM" in en_US. A midnight shows the date alone, a pure time of day (on
/// day zero, 1899-12-30) the time alone, an invalid date nothing. A date-time of another zone is
/// shown in local time; fractions of a second are left out.
ZEL_EXPORT QString generalDateText(const QDateTime &moment, const QLocale &locale = QLocale());

/// Reads a general date text back, to the second, in every locale; and besides
/// - ISO 8601, "2007-01-09", "2007-01-09 15:04", "2007-01-09T15:04:05";
/// - dates with two-digit years in the order of the locale (00 to 29 are 2000 to 2029, 30 to 99 are
///   1930 to 1999), with "/" or "-" for the locale's own separators;
/// - dates with the name of a month, "9 January 2007" or "Jan 9, 2007";
/// - times with and without seconds, with and without the half of the day, behind, before or
/// without
///   a date.
///
/// Where a locale writes times like dates ("09.01.07"), what it would write as a time is one.
/// The result is a local date-time with exactly the date and time read. One that the clocks skip in
/// spring keeps them too, although QDateTime calls it invalid; for one that comes twice in autumn
/// the text does not say, and the system chooses, which of the two it is. Nothing when the text is
/// no date. Years run from 1 to 9999.
ZEL_EXPORT std::optional<QDateTime> dateFromText(QStringView text,
                                                 const QLocale &locale = QLocale());

/// Whether `dateFromText` reads the text.
ZEL_EXPORT bool isDate(QStringView text, const QLocale &locale = QLocale());

} // namespace Zel
