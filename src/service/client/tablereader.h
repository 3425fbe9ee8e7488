// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/answerreader.h"

#include <algorithm>
#include <array>

namespace QXSC {

/// Calls `read` on each entry; a problem says which entry it is in, counted from 1.
template <typename Read>
void readEach(const QJsonArray &list, const char *word, const Read &read)
{
    qsizetype number = 0;
    for (const QJsonValue value : list) {
        ++number;
        try {
            read(value);
        } catch (const AnswerProblem &problem) {
            throw AnswerProblem{
                QStringLiteral("%1 %2: %3").arg(QLatin1String(word)).arg(number).arg(problem.what)};
        }
    }
}

/// Where each field stands in a row. Columns we do not know are left alone, so that a newer service
/// can add some.
template <std::size_t Count>
std::array<qsizetype, Count> readColumns(const QJsonArray &columns,
                                         const std::array<QLatin1String, Count> &fields)
{
    std::array<qsizetype, Count> order;
    for (std::size_t field = 0; field < Count; ++field) {
        const auto found = std::find(columns.begin(), columns.end(), QJsonValue(fields[field]));
        if (found == columns.end())
            throw AnswerProblem{QStringLiteral("column \"%1\" is missing").arg(fields[field])};
        order[field] = found - columns.begin();
    }
    return order;
}

/// Reads a list that is sent as the names of its columns and a list of values for each row.
/// @param take is called with a function that gives the value of a field by its index in `fields`
template <std::size_t Count, typename Take>
void readTable(const QJsonObject &table, const std::array<QLatin1String, Count> &fields,
               const Take &take)
{
    const QLatin1String columnsName("columns");
    const QLatin1String rowsName("rows");
    const QJsonArray columns = readList(readMember(table, columnsName), columnsName);
    const QJsonArray rows = readList(readMember(table, rowsName), rowsName);
    const auto order = readColumns(columns, fields);
    readEach(rows, "row", [&](const QJsonValue &entry) {
        const QJsonArray row = readList(entry, QLatin1String("row"));
        if (row.size() != columns.size())
            throw AnswerProblem{
                QStringLiteral("%1 values for %2 columns").arg(row.size()).arg(columns.size())};
        take([&](std::size_t field) { return row.at(order[field]); });
    });
}

/// The same for the one list of an answer.
/// @returns false for null
template <std::size_t Count, typename Take>
bool readTable(const QJsonObject &answer, QLatin1String name,
               const std::array<QLatin1String, Count> &fields, const Take &take)
{
    const QJsonValue value = readMember(answer, name);
    if (value.isNull())
        return false;
    readTable(readObject(value, name), fields, take);
    return true;
}

template <std::size_t Count, typename Take>
bool readTable(const QByteArray &body, QLatin1String name,
               const std::array<QLatin1String, Count> &fields, const Take &take)
{
    return readTable(readObject(body), name, fields, take);
}

} // namespace QXSC
