// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/int16.h"

#include "platform/core/rounding.h"

namespace Zel {

Int16 Int16::from(double value)
{
    return from(roundToInt32(value));
}

} // namespace Zel
