// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/database.h"
#include "service/store/tabletransfer.h"

#include <QString>

#include <functional>
#include <stdexcept>

namespace Zel {

/// A copy, backup or restore that cannot be: one sentence for people. Nothing was changed, or what
/// was written is marked as unfinished.
class ZEL_EXPORT CopyError : public std::runtime_error
{
public:
    explicit CopyError(const QString &sentence)
        : std::runtime_error(sentence.toStdString())
    {
    }

    ~CopyError() override;
};

/// The database that a workspace is copied or restored into: empty, or just migrated and never
/// used, or left behind by a copy that did not end. From `begin` to `end` it has the mark
/// `UnfinishedCopy`.
class ZEL_EXPORT CopyTarget
{
public:
    /// @param database opened with Missing::Create
    explicit CopyTarget(Database &database);

    /// Throws `CopyError` when something is there already. A SQLite file that is missing is not
    /// made by it.
    void requireEmpty();

    /// Sets the mark.
    void begin();

    /// In one transaction: makes the tables of `step`, has `write` write rows into them, and
    /// brings the tables to the last step. `write` may be called again from its start.
    void fill(int step, const std::function<void()> &write);

    /// Takes the mark away: everything is there.
    void end();

private:
    void requireNoRows();
    void dropTables();

    Database &m_database;
    QString m_token;
    bool m_tookOver = true; ///< another copy that did not end had begun to write
};

/// Throws `CopyError` unless the rows of `table` that were written into `database` are those
/// that were read. Inside the transaction that wrote them.
ZEL_EXPORT void requireSum(Database &database, const TableInfo &table, const TableSum &expected);

/// The table of that name and form in a database. Throws `CopyError` when there is none.
ZEL_EXPORT TableInfo tableLike(const QList<TableInfo> &tables, const TableInfo &wanted);

} // namespace Zel
