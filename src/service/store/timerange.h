// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QtGlobal>

namespace Zel {

/// Milliseconds of an hour, the grain of tallies.
constexpr qint64 hourMs = 3'600'000;

/// The number of the hour a time lies in, also before 1970.
constexpr qint64 hourOf(qint64 time)
{
    return time >= 0 ? time / hourMs : -((-time + hourMs - 1) / hourMs);
}

/// Times from `from` to `to` in milliseconds UTC, both included. Empty when `to` comes first.
struct TimeRange
{
    qint64 from = 0;
    qint64 to = 0;
};

/// A range cut into whole hours and what is left of an hour at both ends. Each part runs from its
/// first to before its second number and may be empty.
struct ZEL_EXPORT HourCut
{
    explicit HourCut(const TimeRange &range);

    qint64 from = 0; ///< of the whole
    qint64 end = 0;
    qint64 hourFrom = 0;
    qint64 hourTo = 0;
    qint64 headFrom = 0;
    qint64 headTo = 0;
    qint64 tailFrom = 0;
    qint64 tailTo = 0;
};

} // namespace Zel
