// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QTime>

#include <optional>

namespace Zel {

/// A date and a time of day without any zone.
struct DateFields
{
    QDate date;
    QTime time;
};

/// What has been read of a date so far, before it is known to be one.
struct DateParts
{
    enum class Half
    {
        Unknown,
        Morning,
        Afternoon
    };

    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    Half half = Half::Unknown;

    QDate date() const { return QDate(year, month, day); }

    /// The time of day; invalid when there is no such time. With a half of the day the hour runs
    /// from 1 to 12, without one from 0 to 23.
    QTime time() const
    {
        if (half == Half::Unknown)
            return QTime(hour, minute, second);
        if (hour < 1 || hour > 12)
            return QTime();
        return QTime(hour % 12 + (half == Half::Afternoon ? 12 : 0), minute, second);
    }
};

/// The year somebody means who writes it with so many digits: 00 to 29 lie in the century from
/// 2000, 30 to 99 in that from 1900; three digits and more mean what they say.
constexpr int fullYear(int value, qsizetype digits)
{
    if (digits > 2)
        return value;
    return value + (value < 30 ? 2000 : 1900);
}

/// The day a date number counts from. A date-time on it is a pure time of day.
inline QDate dayZero()
{
    return QDate(1899, 12, 30);
}

} // namespace Zel
