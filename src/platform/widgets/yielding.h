// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <chrono>
#include <functional>

class QObject;

namespace Zel {

/// Lets the message loop handle what is waiting, once: captions and progress repaint, and the user
/// may click. Returns whether `self` is still alive afterwards; a caller that gets false returns
/// without touching any member.
[[nodiscard]] ZEL_EXPORT bool yieldOnce(QObject *self);

/// Waits until `done` answers true or the time is up. Meanwhile windows are painted and may be
/// closed; whatever else a person does goes unheard, and no timer of the thread fires. Returns
/// whether `self` is still alive afterwards, as `yieldOnce` does; `done` is not asked any more once
/// it is gone.
[[nodiscard]] ZEL_EXPORT bool waitWhilePainting(QObject *self, std::chrono::milliseconds limit,
                                                const std::function<bool()> &done);

} // namespace Zel
