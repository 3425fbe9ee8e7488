// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/copytarget.h"

#include "service/store/migrations.h"
#include "service/store/tableschema.h"
#include "service/store/unfinishedcopy.h"

#include <QFileInfo>

#include <algorithm>

namespace Zel {

namespace {

QString firstTableWithRows(Database &database)
{
    for (const TableInfo &table : readContentTables(database)) {
        const QString query =
            QStringLiteral("SELECT 1 FROM %1 LIMIT 1").arg(quotedName(table.name));
        if (database.runNative(query).isValid())
            return table.name;
    }
    return QString();
}

} // namespace

CopyError::~CopyError() = default;

CopyTarget::CopyTarget(Database &database)
    : m_database(database)
{
}

void CopyTarget::requireEmpty()
{
    const DatabaseAddress &address = m_database.address();
    if (address.engine == DatabaseAddress::Engine::Sqlite && !QFileInfo::exists(address.file))
        return;
    m_database.snapshot([&] {
        if (!UnfinishedCopy(m_database).isMarked())
            requireNoRows();
    });
}

void CopyTarget::requireNoRows()
{
    Migrations migrations(m_database, Migrations::Marked::Allow);
    migrations.refuseNewer();
    const QString shown = m_database.address().display();
    if (migrations.currentVersion() == 0 && !readTables(m_database).isEmpty())
        throw CopyError(QStringLiteral("The database %1 has tables of another program under names "
                                       "that are needed. Nothing was changed.")
                            .arg(shown));
    const QString table = firstTableWithRows(m_database);
    if (!table.isEmpty())
        throw CopyError(
            QStringLiteral("The database %1 is not empty: its table %2 has rows. Take an "
                           "empty one. Nothing was changed.")
                .arg(shown, table));
}

void CopyTarget::begin()
{
    m_tookOver = true;
    m_token = UnfinishedCopy(m_database).begin([this] {
        m_tookOver = false;
        requireNoRows();
    });
}

void CopyTarget::dropTables()
{
    QList<TableInfo> tables = readTables(m_database);
    std::reverse(tables.begin(), tables.end());
    for (const TableInfo &table : std::as_const(tables))
        m_database.runNative(QStringLiteral("DROP TABLE %1").arg(quotedName(table.name)));
}

void CopyTarget::fill(int step, const std::function<void()> &write)
{
    m_database.tx([&] {
        UnfinishedCopy(m_database).hold(m_token);
        allowLongWork(m_database);
        // A service that was running there may have written meanwhile.
        if (!m_tookOver)
            requireNoRows();
        dropTables();
        Migrations migrations(m_database, Migrations::Marked::Allow);
        migrations.migrate(step);
        write();
        migrations.migrate();
    });
}

void CopyTarget::end()
{
    m_database.tx([&] {
        UnfinishedCopy mark(m_database);
        mark.hold(m_token);
        mark.end();
    });
    refreshPlans(m_database);
}

void requireSum(Database &database, const TableInfo &table, const TableSum &expected)
{
    const TableSum written = readTable(database, table);
    if (written == expected)
        return;
    throw CopyError(
        QStringLiteral("The table %1 did not arrive whole: %2 rows with the checksum %3 "
                       "were read, %4 rows with %5 are there.")
            .arg(table.name)
            .arg(expected.rows)
            .arg(expected.sha256)
            .arg(written.rows)
            .arg(written.sha256));
}

TableInfo tableLike(const QList<TableInfo> &tables, const TableInfo &wanted)
{
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const TableInfo &table) { return table.matches(wanted); });
    if (found == tables.end())
        throw CopyError(QStringLiteral("The table %1 has another form than this program's steps "
                                       "make; it was changed by something else.")
                            .arg(wanted.name));
    return *found;
}

} // namespace Zel
