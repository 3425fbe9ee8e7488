// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/recordreader.h"

#include "service/client/tablereader.h"

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

ProjectCollectionPtr readProjects(const QJsonObject &answer)
{
    auto projects = std::make_shared<ProjectCollection>();
    const auto take = [&](const auto &valueAt) { projects->add(readProject(valueAt)); };
    if (!readTable(answer, QLatin1String("projects"), projectFields, take))
        return nullptr;
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
