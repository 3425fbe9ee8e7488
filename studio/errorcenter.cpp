// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/errorcenter.h"

#include "studio/log.h"

#include <QScopedValueRollback>

namespace Studio {

namespace {

constexpr qsizetype LongestLogged = 400;

} // namespace

bool ErrorCenter::attempt(const Action &action)
{
    const int reportsBefore = m_reports;
    try {
        action();
    } catch (const Zel::RuntimeError &error) {
        report(error, action);
        return false;
    }
    if (m_reports != reportsBefore)
        return false;
    clear();
    return true;
}

bool ErrorCenter::attemptAgain(const Action &action)
{
    return (!m_beforeRetry || m_beforeRetry()) && attempt(action);
}

void ErrorCenter::report(const Zel::RuntimeError &error, const Action &retry)
{
    if (error.number() == Zel::RuntimeError::DialogCancelled)
        return;
    Problem problem = describeError(error);
    if (m_refine)
        m_refine(problem);
    report(problem, retry);
}

void ErrorCenter::report(const Problem &problem, const Action &retry)
{
    qCInfo(studioLog).noquote() << problem.what.left(LongestLogged);
    ++m_reports;
    m_problem = problem;
    m_retry = retry;
    emit raised();
}

void ErrorCenter::retry()
{
    // Something that lets events through on its way may bring a second click.
    if (m_isRetrying || !canRetry())
        return;
    const QScopedValueRollback<bool> retrying(m_isRetrying, true);
    const Action action = m_retry;
    if (m_beforeRetry && !m_beforeRetry()) {
        m_retry = action;
        return;
    }
    attempt(action);
}

void ErrorCenter::clear()
{
    m_retry = {};
    if (!hasProblem())
        return;
    m_problem = {};
    emit cleared();
}

} // namespace Studio
