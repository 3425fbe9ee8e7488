// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"
#include "platform/core/export.h"
#include "service/store/bulktext.h"
#include "service/store/tableschema.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace Zel {

class Database;

/// What tells whether two tables hold the same rows.
struct TableSum
{
    QString table;
    qint64 rows = 0;
    QString sha256; ///< of all lines (`rowLine`) in the order of the key

    bool operator==(const TableSum &) const = default;
};

/// Adds up the lines of one table as they go by.
class ZEL_EXPORT TableSumBuilder
{
public:
    void add(const QByteArray &line);
    TableSum sum(const QString &table) const;

    qint64 rows() const { return m_rows; }

private:
    QXSC::Checksum m_checksum;
    qint64 m_rows = 0;
};

/// Shows all rows of a table in the order of its key to `visit`, which must not run statements on
/// this database. Only in `tx` or `snapshot`. Takes the memory of one row.
ZEL_EXPORT TableSum readTable(Database &database, const TableInfo &table,
                              const std::function<void(const QByteArray &line)> &visit = {});

/// Writes rows into a table, many with one statement. Only in `tx`.
class ZEL_EXPORT TableWriter
{
public:
    TableWriter(Database &database, const TableInfo &table);

    /// Throws `DatabaseError`: Corrupt for a line that is no row of this table.
    void add(const QByteArray &line);
    /// Writes what has been kept back.
    void finish();

private:
    Database &m_database;
    TableInfo m_table;
    BulkText m_insert;
    QList<SqlValues> m_rows;
    qsizetype m_bytes = 0;
};

} // namespace Zel
