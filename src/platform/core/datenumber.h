// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QDateTime>

namespace Zel {

/// The local date-time as a number of days since day zero, 1899-12-30; noon of that day is 0.5.
/// Before day zero the days count down but the time of day still counts up: -1.25 is six in the
/// morning of 1899-12-29. A date that is not valid is 0.
ZEL_EXPORT double dateNumber(const QDateTime &moment);

/// The local date-time of such a number, to the millisecond. Years run from 100 to 9999; a number
/// outside, or none, is error 6.
ZEL_EXPORT QDateTime dateFromNumber(double number);

} // namespace Zel
