// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/recordreader.h"

#include "service/client/answerreader.h"

#include <algorithm>
#include <array>

namespace QXSC {

namespace {

/// The fields of a project record on the wire: the columns of a list and the members of an object.
constexpr std::array projectFields{
    QLatin1String("guid"),      QLatin1String("name"),      QLatin1String("description"),
    QLatin1String("created"),   QLatin1String("modified"),  QLatin1String("createdBy"),
    QLatin1String("eventDate"), QLatin1String("published"),
};

using ColumnOrder = std::array<qsizetype, projectFields.size()>;

void readDate(const QJsonValue &value, QLatin1String name, bool &has, QDateTime &date)
{
    const std::optional<QDateTime> time = readTime(value, name);
    has = time.has_value();
    if (has)
        date = *time;
}

/// @param valueAt the value of the field with the given index in `projectFields`
template <typename ValueAt>
ProjectRecordPtr readProject(const ValueAt &valueAt)
{
    auto record = std::make_shared<ProjectRecord>();
    record->guid = readText(valueAt(0), projectFields[0]);
    record->name = readText(valueAt(1), projectFields[1]);
    record->description = readText(valueAt(2), projectFields[2]);
    readDate(valueAt(3), projectFields[3], record->hasCreated, record->created);
    readDate(valueAt(4), projectFields[4], record->hasModified, record->modified);
    record->createdBy = readText(valueAt(5), projectFields[5]);
    readDate(valueAt(6), projectFields[6], record->hasEventDate, record->eventDate);
    record->published = readFlag(valueAt(7), projectFields[7]);
    return record;
}

/// Where each field stands in a row. Columns we do not know are left alone, so that a newer service
/// can add some.
ColumnOrder readColumns(const QJsonArray &columns)
{
    ColumnOrder order;
    for (std::size_t field = 0; field < projectFields.size(); ++field) {
        const auto found =
            std::find(columns.begin(), columns.end(), QJsonValue(projectFields[field]));
        if (found == columns.end())
            throw AnswerProblem{
                QStringLiteral("column \"%1\" is missing").arg(projectFields[field])};
        order[field] = found - columns.begin();
    }
    return order;
}

ProjectRecordPtr readRow(const QJsonValue &value, qsizetype width, const ColumnOrder &order)
{
    const QJsonArray row = readList(value, QLatin1String("row"));
    if (row.size() != width)
        throw AnswerProblem{QStringLiteral("%1 values for %2 columns").arg(row.size()).arg(width)};
    return readProject([&](std::size_t field) { return row.at(order[field]); });
}

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

bool isHeaderSafe(const QString &token)
{
    constexpr qsizetype longest = 4096;
    return !token.isEmpty() && token.size() <= longest &&
           std::all_of(token.begin(), token.end(),
                       [](QChar c) { return c > QLatin1Char(' ') && c <= QLatin1Char('~'); });
}

} // namespace

QByteArray readSessionToken(const QByteArray &body)
{
    const QLatin1String name("token");
    const QString token = readText(readMember(readObject(body), name), name);
    if (!isHeaderSafe(token))
        throw AnswerProblem{QStringLiteral("\"token\" is not one")};
    return token.toLatin1();
}

AccountCollectionPtr readAccounts(const QByteArray &body)
{
    const QJsonValue value = readMember(readObject(body), QLatin1String("accounts"));
    if (value.isNull())
        return nullptr;
    auto accounts = std::make_shared<AccountCollection>();
    readEach(readList(value, QLatin1String("accounts")), "account", [&](const QJsonValue &entry) {
        const QLatin1String id("accountID");
        const QLatin1String name("accountName");
        const QJsonObject object = readObject(entry, QLatin1String("account"));
        auto record = std::make_shared<AccountRecord>();
        record->accountID = readInt32(readMember(object, id), id);
        record->accountName = readText(readMember(object, name), name);
        accounts->add(record);
    });
    return accounts;
}

ProjectCollectionPtr readProjects(const QByteArray &body)
{
    const QLatin1String name("projects");
    const QLatin1String columnsName("columns");
    const QLatin1String rowsName("rows");
    const QJsonValue value = readMember(readObject(body), name);
    if (value.isNull())
        return nullptr;
    const QJsonObject table = readObject(value, name);
    const QJsonArray columns = readList(readMember(table, columnsName), columnsName);
    const QJsonArray rows = readList(readMember(table, rowsName), rowsName);
    const ColumnOrder order = readColumns(columns);
    auto projects = std::make_shared<ProjectCollection>();
    projects->reserve(rows.size());
    readEach(rows, "row",
             [&](const QJsonValue &row) { projects->add(readRow(row, columns.size(), order)); });
    return projects;
}

bool readPublished(const QByteArray &body)
{
    const QLatin1String name("published");
    return readFlag(readMember(readObject(body), name), name);
}

QList<ProjectType> readProjectTypes(const QByteArray &body)
{
    const QLatin1String listName("types");
    const QLatin1String id("typeID");
    const QLatin1String name("name");
    QList<ProjectType> types;
    const QJsonArray list = readList(readMember(readObject(body), listName), listName);
    readEach(list, "type", [&](const QJsonValue &entry) {
        const QJsonObject object = readObject(entry, QLatin1String("type"));
        types.append(
            {readText(readMember(object, id), id), readText(readMember(object, name), name)});
    });
    return types;
}

ProjectRecordPtr readCreatedProject(const QByteArray &body)
{
    const QLatin1String name("project");
    const QJsonObject object = readObject(readMember(readObject(body), name), name);
    return readProject([&](std::size_t field) { return readMember(object, projectFields[field]); });
}

} // namespace QXSC
