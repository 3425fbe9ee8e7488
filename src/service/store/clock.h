// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <functional>

namespace Zel {

/// What the store takes for "now": milliseconds since 1970-01-01 00:00 UTC. Tests hand in their
/// own.
using Clock = std::function<qint64()>;

inline Clock systemClock()
{
    return [] { return QDateTime::currentMSecsSinceEpoch(); };
}

} // namespace Zel
