// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace Zel {

/// Finds the line a person means by typing the beginning of its text, upper and lower case alike.
///
/// Keys that follow one another within the application's keyboard input interval make one
/// beginning; the same key again and again goes from match to match. The search goes round.
class ZEL_EXPORT ListTypeAhead
{
public:
    using TextAt = std::function<QString(qsizetype position)>;

    /// The position of the next match for the typed text, or -1. `current` is where the search
    /// starts, -1 for nowhere.
    qsizetype find(const QString &typed, qsizetype current, qsizetype count, const TextAt &textAt);

    /// Whether a key typed now would lengthen the beginning typed so far.
    bool isActive() const;

private:
    QString m_typed;
    QElapsedTimer m_sinceKey;
};

} // namespace Zel
