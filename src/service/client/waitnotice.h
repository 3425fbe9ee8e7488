// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"
#include "service/client/waitobserver.h"

namespace QXSC {

/// When a wait observer is told what. One notice serves nested calls: they are one wait to whoever
/// looks at the screen.
class WaitNotice
{
public:
    using Clock = Exchange::Clock;

    /// One call, from its sending to its answer.
    class Scope
    {
    public:
        explicit Scope(WaitNotice &notice)
            : m_notice(notice)
        {
            m_notice.enter();
        }

        ~Scope() { m_notice.leave(); }

        Q_DISABLE_COPY_MOVE(Scope)

    private:
        WaitNotice &m_notice;
    };

    /// An observer that is replaced in the middle of a wait hears nothing more.
    void setObserver(WaitObserver *observer);

    /// When `tick` has something to do next.
    Clock::time_point nextTick() const;
    void tick();

private:
    void enter();
    void leave();

    WaitObserver *m_observer = nullptr;
    int m_depth = 0;
    bool m_telling = false; ///< inside the observer's own function
    bool m_shown = false;
    Clock::time_point m_started;
    Clock::time_point m_next;
};

} // namespace QXSC
