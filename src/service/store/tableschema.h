// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Zel {

class Database;

/// What a column holds. SQLite keeps booleans as the integers 0 and 1.
enum class ColumnKind
{
    Integer,
    Boolean,
    Text,
    Bytes
};

struct TableColumn
{
    QString name;
    ColumnKind kind = ColumnKind::Integer;
};

/// A table as the database itself describes it.
struct ZEL_EXPORT TableInfo
{
    QString name;
    QList<TableColumn> columns;
    QList<int> key;       ///< places of the primary key's columns, in its order
    QStringList refersTo; ///< the tables that foreign keys lead to

    /// The columns' names, quoted and parted by commas.
    QString columnList() const;
    /// The key's names, quoted and parted by commas.
    QString keyList() const;
    /// Whether rows of the one can be kept in the other: same names, kinds (0 and 1 for booleans)
    /// and key.
    bool matches(const TableInfo &other) const;
};

/// Tables of a workspace as they are in a database now, those that are referred to before those
/// that refer to them, else by name. Tables that no migration makes belong to somebody else and are
/// left out. Throws `DatabaseError`.
ZEL_EXPORT QList<TableInfo> readTables(Database &database);

/// Those of them whose rows are the workspace: without the table of migration steps, which is
/// written by migrating, and without bytes of files, which go through the `BlobStore`.
ZEL_EXPORT QList<TableInfo> readContentTables(Database &database);

/// A name as it can stand in a statement made at run time.
ZEL_EXPORT QString quotedName(const QString &name);

/// Lifts the time limits from the transaction that this thread is in: a whole table is one
/// statement, and the other side of a copy may keep this one waiting.
ZEL_EXPORT void allowLongWork(Database &database);

/// To be called after very many rows came at once. Until PostgreSQL looks at its tables by itself, a
/// minute later or so, it takes plans for them that suit empty ones: looking for one row may go
/// through thousands. Never throws: what was stored is stored.
ZEL_EXPORT void refreshPlans(Database &database) noexcept;

} // namespace Zel
