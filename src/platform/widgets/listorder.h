// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QtGlobal>

#include <functional>
#include <vector>

namespace Zel {

/// Which records a list shows, and in which order: records are numbered 0 to `total() - 1`, the
/// lines shown have positions 0 to `count() - 1`.
///
/// Sorting orders all records, also those the filter hides, so that taking the filter away needs no
/// new sort. Without sort and filter nothing is stored.
class ZEL_EXPORT ListOrder
{
public:
    /// Record numbers; 32 bits because an item model has no more rows than that.
    using Rows = std::vector<quint32>;
    using Filter = std::function<bool(qsizetype row)>;

    /// `total` records in their own order, all shown.
    void reset(qsizetype total);

    qsizetype total() const { return m_total; }

    qsizetype count() const;

    bool isSorted() const { return !m_sorted.empty(); }

    bool isFiltered() const { return m_filtered; }

    /// The record at a position, which must be one.
    qsizetype rowAt(qsizetype position) const;
    /// Where a record stands, -1 when it is filtered out or there is no such record.
    qsizetype positionOf(qsizetype row) const;

    /// Orders the records: `rows` holds each record once, or is empty for their own order.
    void setSorted(Rows rows);
    /// Shows only the records the filter passes; an empty filter passes all. When the filter
    /// throws, nothing has changed.
    void setFilter(const Filter &filter);

private:
    const Rows &shown() const { return m_filtered ? m_shown : m_sorted; }

    bool isIdentity() const { return !m_filtered && m_sorted.empty(); }

    qsizetype m_total = 0;
    Rows m_sorted;
    Rows m_shown;
    bool m_filtered = false;
    /// Position + 1 by record, 0 when hidden; made when first asked for.
    mutable Rows m_positions;
};

} // namespace Zel
