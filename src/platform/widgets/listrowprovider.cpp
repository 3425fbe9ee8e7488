// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listrowprovider.h"

namespace Zel {

ListRowProvider::~ListRowProvider() = default;

QVariant ListRowProvider::tag(qsizetype) const
{
    return {};
}

int ListRowProvider::smallIcon(qsizetype) const
{
    return 0;
}

int ListRowProvider::largeIcon(qsizetype) const
{
    return 0;
}

bool ListRowProvider::isChecked(qsizetype) const
{
    return false;
}

bool ListRowProvider::isGhosted(qsizetype) const
{
    return false;
}

QColor ListRowProvider::colour(qsizetype, int) const
{
    return {};
}

bool ListRowProvider::sortValues(int, std::span<qint64>) const
{
    return false;
}

qint64 ListRowProvider::sortValueOf(const QDateTime &moment)
{
    constexpr qint64 secondsPerDay = 86400;
    static const QDate first(1, 1, 1);
    static const QDate last(9999, 12, 31);
    const QDateTime local = moment.timeSpec() == Qt::LocalTime ? moment : moment.toLocalTime();
    const QDate date = local.date();
    const QTime time = local.time();
    if (date < first || date > last || !time.isValid())
        return NoSortValue;
    return date.toJulianDay() * secondsPerDay + time.msecsSinceStartOfDay() / 1000;
}

} // namespace Zel
