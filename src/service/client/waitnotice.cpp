// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/waitnotice.h"

namespace QXSC {

namespace {

constexpr std::chrono::milliseconds firstTick(300);
constexpr std::chrono::milliseconds tickInterval(100);

} // namespace

WaitObserver::~WaitObserver() = default;

void WaitNotice::setObserver(WaitObserver *observer)
{
    m_observer = observer;
    m_shown = false;
}

WaitNotice::Clock::time_point WaitNotice::nextTick() const
{
    return m_observer && !m_telling ? m_next : Clock::time_point::max();
}

void WaitNotice::tick()
{
    const Clock::time_point now = Clock::now();
    if (now < nextTick())
        return;
    m_shown = true;
    m_telling = true;
    m_observer->waiting(std::chrono::duration_cast<std::chrono::milliseconds>(now - m_started));
    m_telling = false;
    m_next = Clock::now() + tickInterval;
}

void WaitNotice::enter()
{
    if (m_depth++ > 0)
        return;
    m_started = Clock::now();
    m_next = m_started + firstTick;
}

void WaitNotice::leave()
{
    if (--m_depth > 0 || !m_shown)
        return;
    m_shown = false;
    if (m_observer)
        m_observer->finished();
}

} // namespace QXSC
