// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listorder.h"

#include <algorithm>

namespace Zel {

void ListOrder::reset(qsizetype total)
{
    *this = ListOrder();
    m_total = std::clamp<qsizetype>(total, 0, std::numeric_limits<int>::max());
}

qsizetype ListOrder::count() const
{
    return m_filtered ? static_cast<qsizetype>(m_shown.size()) : m_total;
}

qsizetype ListOrder::rowAt(qsizetype position) const
{
    return isIdentity() ? position : shown()[static_cast<size_t>(position)];
}

qsizetype ListOrder::positionOf(qsizetype row) const
{
    if (row < 0 || row >= m_total)
        return -1;
    if (isIdentity())
        return row;
    if (m_positions.empty()) {
        m_positions.assign(static_cast<size_t>(m_total), 0);
        quint32 position = 0;
        for (quint32 shownRow : shown())
            m_positions[shownRow] = ++position;
    }
    return static_cast<qsizetype>(m_positions[static_cast<size_t>(row)]) - 1;
}

void ListOrder::setSorted(Rows rows)
{
    Q_ASSERT(rows.empty() || static_cast<qsizetype>(rows.size()) == m_total);
    if (m_filtered) {
        // The records that are shown stay the same ones; they are put in the new order.
        std::vector<bool> passes(static_cast<size_t>(m_total));
        for (quint32 row : m_shown)
            passes[row] = true;
        m_shown.clear();
        for (quint32 i = 0; i < static_cast<quint32>(m_total); ++i) {
            const quint32 row = rows.empty() ? i : rows[i];
            if (passes[row])
                m_shown.push_back(row);
        }
    }
    m_sorted = std::move(rows);
    m_positions.clear();
}

void ListOrder::setFilter(const Filter &filter)
{
    Rows passing;
    if (filter) {
        for (quint32 i = 0; i < static_cast<quint32>(m_total); ++i) {
            const quint32 row = m_sorted.empty() ? i : m_sorted[i];
            if (filter(row))
                passing.push_back(row);
        }
        passing.shrink_to_fit();
    }
    m_shown = std::move(passing);
    m_filtered = static_cast<bool>(filter);
    m_positions.clear();
    m_positions.shrink_to_fit();
}

} // namespace Zel
