// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

class QObject;

namespace Zel {

/// Lets the message loop handle what is waiting, once: captions and progress repaint, and the user
/// may click. Returns whether `self` is still alive afterwards; a caller that gets false returns
/// without touching any member.
[[nodiscard]] ZEL_EXPORT bool yieldOnce(QObject *self);

} // namespace Zel
