// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/database.h"

#include <QList>

#include <limits>
#include <optional>
#include <utility>

namespace Zel {

// Long lists are read in parts. Each part begins after the key of the row the one before ended
// with, not after a number of rows, so that rows which come and go meanwhile neither shift others
// out of the list nor show them twice, and so that an index leads straight to the place.

/// Of a list that is to be read to its end.
constexpr qint64 allRows = std::numeric_limits<qint32>::max();

/// A part of a list.
template <class Row, class Key>
struct ListPage
{
    QList<Row> rows;
    std::optional<Key> next; ///< the key of the last row, when there are rows after it
};

/// Reads a page of rows that are short.
/// @param text takes the number of rows as its last value
/// @param map turns a row into a pair of what it holds and its key
template <class Row, class Key, class Map>
ListPage<Row, Key> readPage(Database &database, const SqlText &text, SqlValues values, qint64 limit,
                            Map map)
{
    ListPage<Row, Key> page;
    Key last{};
    values << limit + 1; // the row beyond tells that there are more
    database.query(text, values, [&](const SqlRow &row) {
        if (page.rows.size() == limit) {
            page.next = last;
            return;
        }
        std::pair<Row, Key> entry = map(row);
        page.rows.append(std::move(entry.first));
        last = std::move(entry.second);
    });
    return page;
}

/// Reads a list whose rows may be long, a few at a time, until `visit` has enough and returns
/// false. Only inside a snapshot.
/// @param text takes the number of rows as its last value
/// @param valuesAfter gives the other values, from the key after which to begin
/// @param visit is called with a row and its key
template <class Row, class Key, class Values, class Map, class Visit>
void readInBatches(Database &database, const SqlText &text, qint64 batch, Key after,
                   Values valuesAfter, Map map, Visit visit)
{
    for (;;) {
        QList<std::pair<Row, Key>> rows = database.rows(text, valuesAfter(after) << batch, map);
        for (const auto &[row, key] : std::as_const(rows)) {
            if (!visit(row, key))
                return;
        }
        if (rows.size() < batch)
            return;
        after = rows.last().second;
    }
}

} // namespace Zel
