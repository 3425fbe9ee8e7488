// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/tabletransfer.h"

#include "service/store/database.h"
#include "service/store/rowline.h"

namespace Zel {

namespace {

/// Rows kept back for one statement have up to this many bytes together, and a row more.
constexpr qsizetype keptBytes = 1024 * 1024;

QByteArray insertText(const TableInfo &table)
{
    QStringList places;
    for (qsizetype place = 1; place <= table.columns.size(); ++place)
        places << QStringLiteral("$%1").arg(place);
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(quotedName(table.name), table.columnList(), places.join(QLatin1String(", ")))
        .toUtf8();
}

} // namespace

void TableSumBuilder::add(const QByteArray &line)
{
    m_checksum.add(line.constData(), static_cast<std::size_t>(line.size()));
    ++m_rows;
}

TableSum TableSumBuilder::sum(const QString &table) const
{
    return {table, m_rows, QString::fromLatin1(m_checksum.hex())};
}

TableSum readTable(Database &database, const TableInfo &table,
                   const std::function<void(const QByteArray &line)> &visit)
{
    TableSumBuilder sum;
    const QString order = table.key.isEmpty() ? table.columnList() : table.keyList();
    const QString query = QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                              .arg(table.columnList(), quotedName(table.name), order);
    database.stream(query, [&](const SqlRow &row) {
        const QByteArray line = rowLine(table, row);
        sum.add(line);
        if (visit)
            visit(line);
    });
    return sum.sum(table.name);
}

TableWriter::TableWriter(Database &database, const TableInfo &table)
    : m_database(database)
    , m_table(table)
    , m_insert(insertText(table).constData())
{
}

void TableWriter::add(const QByteArray &line)
{
    m_rows << rowValues(m_table, line);
    m_bytes += line.size();
    if (m_rows.size() >= BulkText::rowsAtOnce || m_bytes >= keptBytes)
        finish();
}

void TableWriter::finish()
{
    m_insert.insert(m_database, m_rows);
    m_rows.clear();
    m_bytes = 0;
}

} // namespace Zel
