// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/sqlrow.h"
#include "service/store/sqltext.h"
#include "service/store/sqlvalue.h"

#include <QList>

#include <functional>

namespace Zel {

class Database;

/// An INSERT of one row, which is also run for many rows at once: a call per row costs a round trip
/// over the network each.
class ZEL_EXPORT BulkText
{
public:
    /// Rows of one statement. More do not make it faster.
    static constexpr qsizetype rowsAtOnce = 50;

    /// @param sql with one group VALUES ($1, ..., $n), each placeholder once and in order
    explicit BulkText(const char *sql);

    /// Inserts the rows; only inside a transaction. What RETURNING gives goes to `visit`, which
    /// must not run statements itself.
    void insert(Database &database, const QList<SqlValues> &rows,
                const std::function<void(const SqlRow &)> &visit = {}) const;

private:
    SqlText m_one;
    SqlText m_many;
};

} // namespace Zel
