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
/// It shows one problem at a time (the newest) through whoever listens to `raised`, remembers how
/// to try again, and withdraws the problem when the retried action succeeds.
class ErrorCenter : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void()>;

    using QObject::QObject;

    /// Does `action`; an error is reported with the action itself as what Retry does.
    /// Returns whether it succeeded; success clears a problem the same attempt had raised.
    bool attempt(const Action &action);

    /// Reports an error; without `retry` there is nothing to try again.
    void report(const Zel::RuntimeError &error, const Action &retry = {});
    void report(const Problem &problem, const Action &retry = {});

    /// Tries again what the present problem came from.
    void retry();
    /// Withdraws the present problem.
    void clear();

    /// Runs before every retry, for instance to bring a stopped service back.
    void setBeforeRetry(const Action &prepare) { m_beforeRetry = prepare; }

    /// Looks at every problem made from an error before it is shown and may word it better.
    void setRefine(const std::function<void(Problem &)> &refine) { m_refine = refine; }

    const Problem &problem() const { return m_problem; }

    bool canRetry() const { return static_cast<bool>(m_retry) && m_problem.canRetry; }

signals:
    void raised();
    void cleared();

private:
    Problem m_problem;
    Action m_retry;
    Action m_beforeRetry;
    std::function<void(Problem &)> m_refine;
};

} // namespace Studio
