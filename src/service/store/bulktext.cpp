// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/bulktext.h"

#include "service/store/database.h"

#include <stdexcept>

namespace Zel {

namespace {

QByteArray group(int columns, qsizetype row)
{
    QByteArrayList places;
    for (int column = 1; column <= columns; ++column)
        places << '$' + QByteArray::number(row * columns + column);
    return '(' + places.join(", ") + ')';
}

/// The statement with its group of values repeated.
QByteArray repeated(const char *sql, int columns)
{
    const QByteArray text(sql);
    const QByteArray one = group(columns, 0);
    const qsizetype at = text.indexOf(one);
    if (at < 0)
        throw std::logic_error("the values of a bulk statement are not a list of its placeholders");
    QByteArrayList groups;
    for (qsizetype row = 0; row < BulkText::rowsAtOnce; ++row)
        groups << group(columns, row);
    return text.left(at) + groups.join(",\n") + text.mid(at + one.size());
}

} // namespace

BulkText::BulkText(const char *sql)
    : m_one(sql)
    , m_many(repeated(sql, m_one.parameterCount()).constData())
{
}

void BulkText::insert(Database &database, const QList<SqlValues> &rows,
                      const std::function<void(const SqlRow &)> &visit) const
{
    const auto show = [&visit](const SqlRow &row) {
        if (visit)
            visit(row);
    };
    qsizetype at = 0;
    for (; at + rowsAtOnce <= rows.size(); at += rowsAtOnce) {
        SqlValues values;
        values.reserve(rowsAtOnce * m_one.parameterCount());
        for (qsizetype row = at; row < at + rowsAtOnce; ++row)
            values << rows.at(row);
        database.change(m_many, values, show);
    }
    for (; at < rows.size(); ++at)
        database.change(m_one, rows.at(at), show);
}

} // namespace Zel
