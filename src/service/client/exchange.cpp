// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/exchange.h"

#include <algorithm>

namespace QXSC {

namespace {

/// A point in time `limit` after `start`; a limit that is off or absurdly long never comes.
Exchange::Clock::time_point after(Exchange::Clock::time_point start,
                                  std::chrono::milliseconds limit)
{
    constexpr auto longest = std::chrono::hours(24 * 365);
    if (limit.count() <= 0 || limit > longest)
        return start + longest;
    return start + limit;
}

} // namespace

Exchange::Exchange(const Request &request, const NetworkPolicy &policy)
    : m_request(request)
    , m_policy(policy)
    , m_overdueAt(after(Clock::now(), policy.callLimit))
    , m_lastMove(Clock::now())
{
}

void Exchange::touch()
{
    m_lastMove = Clock::now();
}

void Exchange::finish(Reply &&reply)
{
    const std::lock_guard lock(m_mutex);
    if (m_finished)
        return;
    m_finished = true;
    m_reply = std::move(reply);
    m_changed.notify_all();
}

void Exchange::finishWhenDue(Clock::time_point now)
{
    Reply reply;
    if (now >= m_overdueAt)
        reply.ending = Reply::Ending::Overdue;
    else if (now >= silentAt())
        reply.ending = Reply::Ending::Silent;
    else
        return;
    finish(std::move(reply));
}

bool Exchange::wait(Clock::time_point until)
{
    std::unique_lock lock(m_mutex);
    const Clock::time_point end = std::min({until, m_overdueAt, silentAt()});
    return m_changed.wait_until(lock, end, [this] { return m_finished; });
}

bool Exchange::isFinished()
{
    const std::lock_guard lock(m_mutex);
    return m_finished;
}

Reply Exchange::takeReply()
{
    const std::lock_guard lock(m_mutex);
    return std::move(m_reply);
}

Exchange::Clock::time_point Exchange::silentAt() const
{
    return after(m_lastMove, m_policy.inactivityLimit);
}

} // namespace QXSC
