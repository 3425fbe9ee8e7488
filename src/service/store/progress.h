// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace Zel {

/// Told how far long work is: how many of `what` ("page views") are done, of how many (0: not
/// known). It may be called for every row, so it has to be quick; empty where nobody wants to know.
using Progress = std::function<void(const QString &what, qint64 done, qint64 total)>;

/// Tells, where somebody wants to know.
inline void tell(const Progress &progress, const QString &what, qint64 done, qint64 total = 0)
{
    if (progress)
        progress(what, done, total);
}

} // namespace Zel
