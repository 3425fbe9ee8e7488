// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/databaseaddress.h"
#include "service/store/sqlrow.h"
#include "service/store/sqltext.h"
#include "service/store/sqlvalue.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <functional>
#include <map>

namespace Zel {

/// One connection, used by the thread that made it. Statements are prepared once and kept.
class SqlConnection
{
public:
    using RowVisitor = std::function<void(const SqlRow &)>;

    /// Opens; throws `DatabaseError`. `mayCreate` lets a missing SQLite file be made (readable by
    /// its owner only).
    SqlConnection(const DatabaseAddress &address, bool mayCreate);
    ~SqlConnection();
    SqlConnection(const SqlConnection &) = delete;
    SqlConnection &operator=(const SqlConnection &) = delete;

    /// Runs a prepared statement, shows each row to `visit` and returns the number of rows changed.
    /// `visit` must not run statements itself.
    qint64 execute(const SqlText &text, const SqlValues &values, const RowVisitor &visit);

    /// Runs a statement of one database's own words that is not worth keeping; returns the first
    /// value of its last row.
    QVariant run(const QString &sql);

    /// Runs a reading statement made at run time and shows each row to `visit` as it arrives, so
    /// that a table of any length takes the memory of one row. `visit` must not run statements on
    /// this connection.
    void stream(const QString &sql, const RowVisitor &visit);

    void begin(bool readOnly);
    void commit();
    /// Never throws: a connection that cannot roll back counts as lost.
    void rollBack();

    bool inTransaction() const { return m_inTransaction; }

    bool isReadOnly() const { return m_readOnly; }

    /// Whether the connection is of no use any more and has to be opened anew.
    bool isLost() const { return m_lost; }

private:
    void close();
    void openSqlite(const DatabaseAddress &address, bool mayCreate);
    void refuseForeignFile();
    void openPostgres(const DatabaseAddress &address);
    QSqlQuery &prepared(const SqlText &text);
    void bind(QSqlQuery &query, const SqlText &text, const SqlValues &values) const;
    qint64 executeBinary(const SqlText &text, const SqlValues &values, const RowVisitor &visit);
    qint64 readRows(QSqlQuery &query, const RowVisitor &visit, qint64 &rows);
    [[noreturn]] void fail(const QSqlError &error);
    [[noreturn]] void fail(const QString &nativeCode, const QString &text);

    DatabaseAddress::Engine m_engine;
    QString m_name;
    QSqlDatabase m_database;
    std::map<QString, QSqlQuery> m_prepared;
    bool m_inTransaction = false;
    bool m_readOnly = false;
    bool m_failedInTransaction = false;
    bool m_visiting = false;
    bool m_lost = false;
};

} // namespace Zel
