// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QLocale>
#include <QString>

namespace Zel {

/// The key under which a cell of a date column sorts: the date that the text shows as 14 digits
/// (year, month, day, hour, minute, second), which sort as text in the order of time. Empty when
/// the text is no date.
ZEL_EXPORT QString dateSortKey(QStringView text, const QLocale &locale = QLocale());

/// `dateSortKey` as a number, for lists that sort very many lines: it orders exactly as the keys
/// do. -1 stands for the empty key.
ZEL_EXPORT qint64 dateSortNumber(QStringView text, const QLocale &locale = QLocale());

/// The key under which a cell of a number column sorts as text: 30 integer digits, "." and 30
/// fraction digits. A negative number is "&", which sorts before every digit, followed by its
/// magnitude with each digit taken from nine, so that larger magnitudes come earlier. Empty when
/// the text is no number.
ZEL_EXPORT QString numberSortKey(QStringView text, const QLocale &locale = QLocale());

} // namespace Zel
