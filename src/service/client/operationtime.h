// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"

#include <algorithm>

namespace QXSC {

/// The time of one operation, which may take several calls: what one of them used the next ones do
/// not have any more. Begins when it is made.
class OperationTime
{
public:
    explicit OperationTime(const NetworkPolicy &policy)
        : m_policy(policy)
        , m_begun(Clock::now())
    {
    }

    /// Of the operation as a whole.
    const NetworkPolicy &policy() const { return m_policy; }

    /// For the next call.
    NetworkPolicy rest() const
    {
        using std::chrono::milliseconds;
        NetworkPolicy rest = m_policy;
        // No limit must not become one, nor the other way round.
        if (m_policy.callLimit.count() > 0)
            rest.callLimit = std::max(milliseconds(1),
                                      m_policy.callLimit - std::chrono::duration_cast<milliseconds>(
                                                               Clock::now() - m_begun));
        return rest;
    }

private:
    using Clock = std::chrono::steady_clock;

    const NetworkPolicy m_policy;
    const Clock::time_point m_begun;
};

} // namespace QXSC
