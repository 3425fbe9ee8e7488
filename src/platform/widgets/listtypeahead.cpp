// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listtypeahead.h"

#include <QApplication>

namespace Zel {

bool ListTypeAhead::isActive() const
{
    return !m_typed.isEmpty() && m_sinceKey.isValid() &&
           m_sinceKey.elapsed() <= QApplication::keyboardInputInterval();
}

qsizetype ListTypeAhead::find(const QString &typed, qsizetype current, qsizetype count,
                              const TextAt &textAt)
{
    const bool goesOn = isActive();
    m_typed = goesOn ? m_typed + typed : typed;
    m_sinceKey.start();
    if (m_typed.isEmpty() || count <= 0)
        return -1;

    QString wanted = m_typed;
    const bool sameKey = wanted.count(wanted.front()) == wanted.size();
    if (sameKey)
        wanted.truncate(1);
    // A longer beginning may still fit the line that the shorter one found.
    const qsizetype first = current < 0 ? 0 : goesOn && !sameKey ? current : current + 1;
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype position = (first + i) % count;
        if (textAt(position).startsWith(wanted, Qt::CaseInsensitive))
            return position;
    }
    return -1;
}

} // namespace Zel
