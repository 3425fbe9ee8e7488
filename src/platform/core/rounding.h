// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/int16.h"

namespace Zel {

/// The whole number nearest to `value`, a half going to the even neighbour: 0.5 is 0, 1.5 and 2.5
/// are 2. The floating-point environment of the process does not matter. A value that is no number,
/// or infinite, is error 6.
ZEL_EXPORT double roundHalfEven(double value);

/// `roundHalfEven` as a 32-bit integer; outside its range error 6.
ZEL_EXPORT qint32 roundToInt32(double value);

/// `roundHalfEven` as a 16-bit integer; outside its range error 6.
ZEL_EXPORT Int16 roundToInt16(double value);

} // namespace Zel
