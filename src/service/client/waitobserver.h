// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <chrono>

namespace QXSC {

/// Told on the calling thread that a service call takes its time, so that a host can paint a wait
/// notice (`repaint()`, not `update()`) although no event loop runs.
///
/// `waiting` comes first after 300 ms and then about every 100 ms; each observed wait ends with one
/// `finished`, unless the observer was taken away or the client destroyed meanwhile. A call made
/// from inside `waiting` is allowed and is part of the same wait, but is not observed itself.
/// Neither function may throw.
class ZEL_EXPORT WaitObserver
{
public:
    virtual ~WaitObserver();

    /// @param waited the time since the (outermost) call began
    virtual void waiting(std::chrono::milliseconds waited) noexcept = 0;
    virtual void finished() noexcept = 0;
};

} // namespace QXSC
