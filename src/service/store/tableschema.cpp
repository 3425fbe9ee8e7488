// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/tableschema.h"

#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"

#include <QMap>
#include <QSet>

#include <algorithm>
#include <stdexcept>

namespace Zel {

namespace {

// Name of the table and of the column, its type, its place in the primary key from 1 (0: none).
const QString sqliteColumns = QStringLiteral(
    "SELECT t.name, c.name, c.type, c.pk FROM sqlite_schema t JOIN pragma_table_info(t.name) c "
    "WHERE t.type = 'table' ORDER BY t.name, c.cid");

const QString postgresColumns = QStringLiteral(
    "SELECT t.relname::text, a.attname::text, format_type(a.atttypid, NULL), "
    "COALESCE(array_position(i.indkey::int2[], a.attnum) + 1, 0)::bigint "
    "FROM pg_class t JOIN pg_attribute a ON a.attrelid = t.oid AND a.attnum > 0 "
    "AND NOT a.attisdropped LEFT JOIN pg_index i ON i.indrelid = t.oid AND i.indisprimary "
    "WHERE t.relkind IN ('r', 'p') AND t.relnamespace = "
    "(SELECT oid FROM pg_namespace WHERE nspname = current_schema()) "
    "ORDER BY t.relname, a.attnum");

const QString sqliteReferences =
    QStringLiteral("SELECT t.name, f.\"table\" FROM sqlite_schema t "
                   "JOIN pragma_foreign_key_list(t.name) f WHERE t.type = 'table'");

const QString postgresReferences =
    QStringLiteral("SELECT t.relname::text, r.relname::text FROM pg_constraint f "
                   "JOIN pg_class t ON t.oid = f.conrelid JOIN pg_class r ON r.oid = f.confrelid "
                   "WHERE f.contype = 'f' AND t.relnamespace = "
                   "(SELECT oid FROM pg_namespace WHERE nspname = current_schema())");

ColumnKind kindOf(const QString &type, const QString &column)
{
    static const QMap<QString, ColumnKind> kinds{
        {QStringLiteral("INTEGER"), ColumnKind::Integer},
        {QStringLiteral("BIGINT"), ColumnKind::Integer},
        {QStringLiteral("BOOLEAN"), ColumnKind::Boolean},
        {QStringLiteral("TEXT"), ColumnKind::Text},
        {QStringLiteral("BLOB"), ColumnKind::Bytes},
        {QStringLiteral("BYTEA"), ColumnKind::Bytes},
    };
    const auto known = kinds.constFind(type.toUpper());
    if (known == kinds.constEnd())
        throw DatabaseError(DatabaseError::Kind::Corrupt,
                            QStringLiteral("The column %1 has the type %2, which no step of this "
                                           "program makes.")
                                .arg(column, type));
    return *known;
}

QMap<QString, TableInfo> readColumns(Database &database, const QSet<QString> &ours, bool sqlite)
{
    QMap<QString, TableInfo> tables;
    QMap<QString, QMap<qint64, int>> keys;
    database.stream(sqlite ? sqliteColumns : postgresColumns, [&](const SqlRow &row) {
        const QString name = row.text(0);
        if (!ours.contains(name))
            return;
        TableInfo &table = tables[name];
        table.name = name;
        const QString column = row.text(1);
        if (row.integer(3) > 0)
            keys[name].insert(row.integer(3), int(table.columns.size()));
        table.columns.append({column, kindOf(row.text(2), name + QLatin1Char('.') + column)});
    });
    for (TableInfo &table : tables)
        table.key = keys.value(table.name).values();
    return tables;
}

/// Those that are referred to first.
QList<TableInfo> inOrder(QMap<QString, TableInfo> tables)
{
    QList<TableInfo> result;
    QSet<QString> placed;
    while (!tables.isEmpty()) {
        const auto next = std::find_if(tables.begin(), tables.end(), [&](const TableInfo &table) {
            return std::all_of(table.refersTo.begin(), table.refersTo.end(),
                               [&](const QString &other) { return placed.contains(other); });
        });
        if (next == tables.end())
            throw std::logic_error("tables refer to each other in a circle");
        placed.insert(next->name);
        result.append(*next);
        tables.erase(next);
    }
    return result;
}

QString joined(const QList<TableColumn> &columns, const QList<int> &places)
{
    QStringList names;
    for (const int place : places)
        names << quotedName(columns.at(place).name);
    return names.join(QLatin1String(", "));
}

} // namespace

QString quotedName(const QString &name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

QString TableInfo::columnList() const
{
    QList<int> all;
    for (int place = 0; place < columns.size(); ++place)
        all << place;
    return joined(columns, all);
}

QString TableInfo::keyList() const
{
    return joined(columns, key);
}

bool TableInfo::matches(const TableInfo &other) const
{
    const auto stored = [](ColumnKind kind) {
        return kind == ColumnKind::Boolean ? ColumnKind::Integer : kind;
    };
    return name == other.name && key == other.key &&
           std::equal(columns.begin(), columns.end(), other.columns.begin(), other.columns.end(),
                      [&](const TableColumn &a, const TableColumn &b) {
                          return a.name == b.name && stored(a.kind) == stored(b.kind);
                      });
}

QList<TableInfo> readTables(Database &database)
{
    const bool sqlite = database.address().engine == DatabaseAddress::Engine::Sqlite;
    const QStringList names = Migrations::tableNames();
    const QSet<QString> ours(names.begin(), names.end());
    return database.snapshot([&] {
        QMap<QString, TableInfo> tables = readColumns(database, ours, sqlite);
        database.stream(sqlite ? sqliteReferences : postgresReferences, [&](const SqlRow &row) {
            const auto table = tables.find(row.text(0));
            if (table != tables.end() && tables.contains(row.text(1)))
                table->refersTo << row.text(1);
        });
        return inOrder(tables);
    });
}

QList<TableInfo> readContentTables(Database &database)
{
    static const QStringList leftOut{QStringLiteral("schema_version"),
                                     QStringLiteral("blob_content"), QStringLiteral("blob_chunk"),
                                     QStringLiteral("blob_thumbnail")};
    QList<TableInfo> tables = readTables(database);
    tables.removeIf([](const TableInfo &table) { return leftOut.contains(table.name); });
    return tables;
}

void allowLongWork(Database &database)
{
    if (database.address().engine == DatabaseAddress::Engine::Sqlite)
        return;
    database.runNative(QStringLiteral("SET LOCAL statement_timeout = 0"));
    database.runNative(QStringLiteral("SET LOCAL idle_in_transaction_session_timeout = 0"));
}

void refreshPlans(Database &database) noexcept
{
    if (database.address().engine == DatabaseAddress::Engine::Sqlite)
        return;
    try {
        database.tx([&] {
            allowLongWork(database);
            database.runNative(QStringLiteral("ANALYZE"));
        });
    } catch (const std::exception &) {
        // PostgreSQL does it by itself later.
    }
}

} // namespace Zel
