// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datenumber.h"

#include "platform/core/datefields.h"
#include "platform/core/runtimeerror.h"

#include <cmath>

namespace Zel {

namespace {

constexpr double msecsOfDay = 86400000;
constexpr double firstDay = -657434;      // 0100-01-01
constexpr double dayBehindLast = 2958466; // 10000-01-01

} // namespace

double dateNumber(const QDateTime &moment)
{
    const QDateTime local = moment.timeSpec() == Qt::LocalTime ? moment : moment.toLocalTime();
    if (!local.date().isValid() || !local.time().isValid())
        return 0;
    const auto days = double(dayZero().daysTo(local.date()));
    const double time = local.time().msecsSinceStartOfDay() / msecsOfDay;
    return days < 0 ? days - time : days + time;
}

QDateTime dateFromNumber(double number)
{
    // Written so that a number that is none fails too.
    if (!(number > firstDay - 1 && number < dayBehindLast))
        throw RuntimeError(RuntimeError::Overflow);
    const double day = std::trunc(number);
    const double msecs = std::round(std::fabs(number - day) * msecsOfDay);
    const bool nextDay = msecs >= msecsOfDay;
    const QDate date = dayZero().addDays(qint64(day) + (nextDay ? 1 : 0));
    if (date.year() > 9999)
        throw RuntimeError(RuntimeError::Overflow);
    return QDateTime(date, QTime::fromMSecsSinceStartOfDay(nextDay ? 0 : int(msecs)));
}

} // namespace Zel
