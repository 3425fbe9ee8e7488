// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/rounding.h"

#include "platform/core/runtimeerror.h"

#include <cmath>
#include <limits>

namespace Zel {

double roundHalfEven(double value)
{
    if (!std::isfinite(value))
        throw RuntimeError(RuntimeError::Overflow);
    // std::nearbyint would follow the rounding mode that any library of the process may have set.
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest < 0.5)
        return below;
    if (rest > 0.5)
        return below + 1;
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

qint32 roundToInt32(double value)
{
    const double whole = roundHalfEven(value);
    if (whole < std::numeric_limits<qint32>::min() || whole > std::numeric_limits<qint32>::max())
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<qint32>(whole);
}

Int16 roundToInt16(double value)
{
    return Int16::from(value);
}

} // namespace Zel
