// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/timerange.h"

#include <algorithm>

namespace Zel {

namespace {

/// The years 1 to 9999: times beyond them are not stored, so a longer range says nothing more.
constexpr qint64 earliest = -62135596800000;
constexpr qint64 latest = 253402300799999;

} // namespace

HourCut::HourCut(const TimeRange &range)
{
    const qint64 first = std::clamp(range.from, earliest, latest + 1);
    const qint64 after = std::clamp(range.to, earliest - 1, latest) + 1;
    if (after <= first)
        return;
    from = first;
    end = after;
    const qint64 firstWhole = hourOf(from + hourMs - 1);
    const qint64 afterWhole = hourOf(end);
    headFrom = from;
    if (firstWhole > afterWhole) { // both ends lie in one hour
        headTo = end;
        return;
    }
    headTo = firstWhole * hourMs;
    hourFrom = firstWhole;
    hourTo = afterWhole;
    tailFrom = afterWhole * hourMs;
    tailTo = end;
}

} // namespace Zel
