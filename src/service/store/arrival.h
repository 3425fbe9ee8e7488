// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <limits>

namespace Zel {

/// What puts rows into the order in which they came: the time, then the place among those that came
/// together. More than a million reach into the next milliseconds, where nothing else comes: they
/// take longer than that.
constexpr qint64 arrival(qint64 now, qint64 place)
{
    constexpr qint64 places = 1'000'000;
    return now * places + place;
}

/// Where a row stands among those that came in; the default comes before all.
struct ArrivalPlace
{
    qint64 arrived = std::numeric_limits<qint64>::min();
    QByteArray id;
};

} // namespace Zel
