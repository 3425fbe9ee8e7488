// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/widgets/listorder.h"

#include <QLocale>
#include <QString>

#include <span>

/// The orders a list can be in. Each function answers the record numbers in the wanted order;
/// records with equal keys keep their own order, in both directions.
namespace Zel::ListSorting {

/// By number. A radix sort: linear time, a few milliseconds for 100,000 records.
ZEL_EXPORT ListOrder::Rows byValue(std::span<const qint64> values, Qt::SortOrder order);

/// By plain code-point order, as sort keys are made for; an empty key is the smallest.
ZEL_EXPORT ListOrder::Rows byKey(std::span<const QString> keys, Qt::SortOrder order);

/// As people sort words: by the rules of the locale, upper and lower case alike.
ZEL_EXPORT ListOrder::Rows byText(std::span<const QString> texts, Qt::SortOrder order,
                                  const QLocale &locale = QLocale().collation());

/// Plain code-point order of two texts, which for characters outside the basic plane differs from
/// the order of their UTF-16 code units: negative, 0 or positive.
ZEL_EXPORT int compareCodePoints(QStringView left, QStringView right);

} // namespace Zel::ListSorting
