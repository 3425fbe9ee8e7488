// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/errorcenter.h"

namespace Studio {

bool ErrorCenter::attempt(const Action &action)
{
    try {
        action();
        return true;
    } catch (const Zel::RuntimeError &error) {
        report(error, action);
        return false;
    }
}

void ErrorCenter::report(const Zel::RuntimeError &error, const Action &retry)
{
    Problem problem = describeError(error);
    if (m_refine)
        m_refine(problem);
    report(problem, retry);
}

void ErrorCenter::report(const Problem &problem, const Action &retry)
{
    m_problem = problem;
    m_retry = retry;
    emit raised();
}

void ErrorCenter::retry()
{
    // The problem goes first: if the action fails again it raises its own.
    const Action action = m_retry;
    clear();
    if (!action)
        return;
    attempt([this, action] {
        if (m_beforeRetry)
            m_beforeRetry();
        action();
    });
}

void ErrorCenter::clear()
{
    m_problem = {};
    m_retry = {};
    emit cleared();
}

} // namespace Studio
