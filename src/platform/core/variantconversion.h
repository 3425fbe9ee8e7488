// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QDateTime>
#include <QLocale>
#include <QVariant>

namespace Zel {

/// Conversions between values, as late-bound calls and the property bag make them.
///
/// What takes part: booleans, integers and enumerations, floating-point numbers, texts, characters,
/// and dates (QDateTime, QDate, QTime). An empty variant is False, 0, "" and day zero. Booleans
/// count as -1 and 0, dates as their date numbers (datenumber.h). Texts are read and written as the
/// locale has it. Errors: 13 when a value cannot be converted at all, 6 when the target does not
/// hold the number.

/// A number is True unless it is zero; for texts see `booleanFromText`.
ZEL_EXPORT bool booleanFrom(const QVariant &value, const QLocale &locale = QLocale());

/// Whole numbers are rounded half to even before the range is checked.
ZEL_EXPORT qint16 int16From(const QVariant &value, const QLocale &locale = QLocale());
ZEL_EXPORT qint32 int32From(const QVariant &value, const QLocale &locale = QLocale());
/// The same with bounds of the caller's own; both are within the range.
ZEL_EXPORT qint64 integerFrom(const QVariant &value, qint64 least, qint64 most,
                              const QLocale &locale = QLocale());

/// A 32-bit colour. A negative 32-bit number is the same bits; a text may also be hexadecimal,
/// "&H8000000F&" or "&HFF".
ZEL_EXPORT quint32 colorFrom(const QVariant &value, const QLocale &locale = QLocale());

ZEL_EXPORT double doubleFrom(const QVariant &value, const QLocale &locale = QLocale());

/// "True" or "False" for a boolean, `numberText` for a number, `generalDateText` for a date.
ZEL_EXPORT QString textFrom(const QVariant &value, const QLocale &locale = QLocale());

/// A local date-time.
ZEL_EXPORT QDateTime dateFrom(const QVariant &value, const QLocale &locale = QLocale());

/// `value` as a variant of type `target`.
///
/// A value that has the type already, and any value for the target QVariant, comes back untouched.
/// Boolean, integer, floating-point, text and date types convert by the functions above, an
/// unsigned 32-bit integer as a colour. A pointer to a QObject becomes a pointer to one of its own
/// classes, null stays null; another class is error 13. Everything else converts only where
/// QMetaType knows a converter.
ZEL_EXPORT QVariant convertTo(const QVariant &value, QMetaType target,
                              const QLocale &locale = QLocale());

} // namespace Zel
