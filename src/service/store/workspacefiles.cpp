// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacefiles.h"

#include "service/store/recordfile.h"
#include "service/store/storabletext.h"
#include "service/store/users.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <limits>

namespace Zel {

namespace {

constexpr qint64 largestAccountId = std::numeric_limits<qint32>::max();
constexpr qsizetype longestName = 256;
constexpr qsizetype longestDescription = 1024 * 1024;

/// Throws when a key comes a second time.
void expectOnce(QSet<QString> &seen, const QString &key, const FileRecord &record)
{
    if (seen.contains(key))
        record.refuse(QStringLiteral("stands in this file twice."));
    seen.insert(key);
}

WorkspaceFiles::Membership membershipOf(const QJsonValue &value, const FilePlace &place)
{
    FileRecord record;
    record.place = place;
    if (!value.isObject())
        record.refuse(QStringLiteral("a membership must be an object."));
    record.fields = value.toObject();
    WorkspaceFiles::Membership membership;
    membership.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
    membership.role = record.text(QStringLiteral("role"), longestName);
    record.expectNoMore();
    static const QStringList roles{QStringLiteral("owner"), QStringLiteral("author"),
                                   QStringLiteral("viewer")};
    if (!roles.contains(membership.role))
        record.refuse(QStringLiteral("\"role\" must be owner, author or viewer."));
    return membership;
}

} // namespace

WorkspaceFiles WorkspaceFiles::read(const QStringList &paths)
{
    WorkspaceFiles files;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.isDir()) {
            files.readFile(path);
            continue;
        }
        const QStringList names = QDir(path).entryList(QDir::Files, QDir::Name);
        for (const QString &name : names) {
            if (!name.endsWith(QLatin1String(".md")))
                files.readFile(QDir(path).filePath(name));
        }
    }
    return files;
}

void WorkspaceFiles::readFile(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    if (name == QLatin1String("accounts.json"))
        readAccounts(path);
    else if (name == QLatin1String("people.json"))
        readPeople(path);
    else if (name == QLatin1String("project-types.json"))
        readTypes(path);
    else if (name == QLatin1String("projects.csv"))
        readProjects(path);
    else
        throw WorkspaceFileError({path, 0}, QStringLiteral("is none of accounts.json, people.json, "
                                                           "project-types.json and projects.csv."));
}

void WorkspaceFiles::readAccounts(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        AccountEntry entry;
        entry.place = record.place;
        entry.account.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.account.name = record.text(QStringLiteral("name"), longestName);
        record.expectNoMore();
        expectOnce(seen, QString::number(entry.account.accountId), record);
        accounts << entry;
    }
}

void WorkspaceFiles::readPeople(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        PersonEntry entry;
        entry.place = record.place;
        entry.login = record.text(QStringLiteral("user"), Users::longestLogin);
        if (!Users::isUsableLogin(entry.login))
            record.refuse(QStringLiteral("\"user\" is too long."));
        entry.displayName = record.text(QStringLiteral("displayName"), longestName);
        entry.password = record.text(QStringLiteral("password"), Users::longestPassword);
        const QJsonArray list = record.list(QStringLiteral("accounts"));
        for (const QJsonValue &value : list)
            entry.memberships << membershipOf(value, record.place);
        record.expectNoMore();
        expectOnce(seen, foldedKey(entry.login), record);
        people << entry;
    }
}

void WorkspaceFiles::readTypes(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        TypeEntry entry;
        entry.place = record.place;
        entry.type.typeId = record.text(QStringLiteral("typeID"), longestName);
        entry.type.name = record.text(QStringLiteral("name"), longestName);
        entry.type.position = types.size() + 1;
        const QJsonArray list = record.list(QStringLiteral("accounts"));
        for (const QJsonValue &value : list) {
            entry.accountIds << value.toInteger();
            if (entry.accountIds.last() < 1 || entry.accountIds.last() > largestAccountId)
                record.refuse(QStringLiteral("\"accounts\" must list account numbers."));
        }
        record.expectNoMore();
        expectOnce(seen, entry.type.typeId, record);
        types << entry;
    }
}

void WorkspaceFiles::readProjects(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        ProjectEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.createdByLogin = record.text(QStringLiteral("createdBy"), Users::longestLogin);
        Project &project = entry.project;
        project.guid = record.guid(QStringLiteral("guid"));
        project.typeId = record.text(QStringLiteral("typeID"), longestName);
        project.name = record.text(QStringLiteral("name"), Projects::longestName);
        project.description = record.textOrEmpty(QStringLiteral("description"), longestDescription);
        project.createdAt = record.timeOrEmpty(QStringLiteral("created"));
        project.modifiedAt = record.timeOrEmpty(QStringLiteral("modified"));
        project.eventAt = record.timeOrEmpty(QStringLiteral("eventDate"));
        project.published = record.boolean(QStringLiteral("published"));
        record.expectNoMore();
        expectOnce(seen, QStringLiteral("%1/%2").arg(entry.accountId).arg(project.guid), record);
        projects << entry;
    }
}

} // namespace Zel
