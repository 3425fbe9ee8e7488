// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"
#include "service/client/message.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace QXSC {

/// One call in flight: what the thread that waits and the thread that works have in common.
/// Whoever finishes it first decides how it ended; the other finds it finished.
class Exchange
{
public:
    using Clock = std::chrono::steady_clock;

    Exchange(const Request &request, const NetworkPolicy &policy);

    const Request &request() const { return m_request; }

    const NetworkPolicy &policy() const { return m_policy; }

    /// Something moved on the wire.
    void touch();
    /// Ends the exchange; a second end is ignored.
    void finish(Reply &&reply);
    /// Ends it without an answer when its time is over.
    void finishWhenDue(Clock::time_point now);

    /// Waits until the exchange is finished, one of its limits is reached, or `until`.
    /// @returns whether it is finished
    bool wait(Clock::time_point until);
    bool isFinished();
    /// The reply of a finished exchange, once.
    Reply takeReply();

private:
    Clock::time_point silentAt() const;

    const Request m_request;
    const NetworkPolicy m_policy;
    const Clock::time_point m_overdueAt;
    std::atomic<Clock::time_point> m_lastMove;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_finished = false;
    Reply m_reply;
};

} // namespace QXSC
