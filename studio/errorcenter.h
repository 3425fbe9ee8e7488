// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/problem.h"

#include <QObject>

#include <functional>

namespace Studio {

/// Where every error of Studio arrives: controls' run-time errors and failures of Studio's own
/// calls.
///
/// It shows one problem at a time (the newest) through whoever listens to `raised`, and remembers
/// how to try again. A problem stands until a person closes it or something they do afterwards
/// succeeds. That a person cancelled a dialog is no problem.
class ErrorCenter : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void()>;

    using QObject::QObject;

    /// Does what a person asked for. An error is reported with the action itself as what Retry
    /// does. Returns whether the action succeeded, that is, neither threw nor led to a report; then
    /// the problem that stood before is withdrawn.
    bool attempt(const Action &action);

    /// The same for what failed before: as before a retry, what is needed for it is brought back.
    bool attemptAgain(const Action &action);

    /// Reports an error; without `retry` there is nothing to try again.
    void report(const Zel::RuntimeError &error, const Action &retry = {});
    void report(const Problem &problem, const Action &retry = {});

    /// Tries again what the present problem came from. The problem stands meanwhile, so that the
    /// strip neither flickers nor loses the keyboard.
    void retry();
    /// Withdraws the present problem.
    void clear();

    /// Runs before every retry, for instance to bring a stopped service back. When it returns false
    /// it has reported why, and the retry waits for the next one.
    void setBeforeRetry(const std::function<bool()> &prepare) { m_beforeRetry = prepare; }

    /// Looks at every problem made from an error before it is shown and may word it better.
    void setRefine(const std::function<void(Problem &)> &refine) { m_refine = refine; }

    const Problem &problem() const { return m_problem; }

    bool hasProblem() const { return !m_problem.what.isEmpty(); }

    bool canRetry() const { return static_cast<bool>(m_retry) && m_problem.canRetry; }

signals:
    void raised();
    void cleared();

private:
    Problem m_problem;
    Action m_retry;
    std::function<bool()> m_beforeRetry;
    std::function<void(Problem &)> m_refine;
    int m_reports = 0;
    bool m_isRetrying = false;
};

} // namespace Studio
