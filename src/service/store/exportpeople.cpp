// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// People, accounts and project types.
#include "service/store/exportjob.h"
#include "service/store/store.h"

#include <QJsonObject>

#include <algorithm>
#include <map>
#include <tuple>

namespace Zel {

namespace {

const SqlText listPeople(R"sql(
    SELECT user_id, login, display_name, disabled, pw_hash FROM app_user
    ORDER BY login_key NULLS FIRST
)sql");

// Whoever has to be there for what an account has: members and those who have left it.
const SqlText listNamed(R"sql(
    SELECT user_id FROM membership WHERE account_id = $1
    UNION SELECT created_by FROM project WHERE account_id = $1
    UNION SELECT created_by FROM asset WHERE account_id = $1 AND deleted_at IS NULL
    UNION SELECT owner_user FROM theme WHERE account_id = $1 AND owner_user IS NOT NULL
    UNION SELECT saved_by FROM data_record WHERE account_id = $1 AND saved_by IS NOT NULL
)sql");

struct Membership
{
    qint64 accountId = 0;
    QString role;
};

QHash<QString, QList<Membership>> membershipsOf(ExportJob &job)
{
    QHash<QString, QList<Membership>> memberships;
    for (const Account &account : std::as_const(job.accounts)) {
        const QList<Member> members = job.store.accounts.members(account.accountId);
        for (const Member &member : members)
            memberships[member.userId].append({account.accountId, member.role});
    }
    return memberships;
}

QSet<QString> namedIn(ExportJob &job)
{
    QSet<QString> named;
    for (const Account &account : std::as_const(job.accounts))
        job.store.database.query(listNamed, {account.accountId},
                                 [&named](const SqlRow &row) { named.insert(row.text(0)); });
    return named;
}

void exportPersons(ExportJob &job)
{
    const bool isWhole = job.options.accounts.isEmpty();
    const QHash<QString, QList<Membership>> memberships = membershipsOf(job);
    const QSet<QString> named = isWhole ? QSet<QString>() : namedIn(job);
    QJsonArray people;
    job.store.database.query(listPeople, {}, [&](const SqlRow &row) {
        const QString userId = row.text(0);
        job.logins.insert(userId, row.text(1));
        if (!isWhole && !named.contains(userId))
            return;
        QJsonArray accounts;
        const QList<Membership> all = memberships.value(userId);
        for (const Membership &one : all)
            accounts << QJsonObject{{QStringLiteral("account"), one.accountId},
                                    {QStringLiteral("role"), one.role}};
        QJsonObject person{{QStringLiteral("user"), row.text(1)},
                           {QStringLiteral("displayName"), row.text(2)},
                           {QStringLiteral("disabled"), row.boolean(3)},
                           {QStringLiteral("accounts"), accounts}};
        if (job.options.passwordHashes && !row.text(4).isEmpty())
            person.insert(QStringLiteral("passwordHash"), row.text(4));
        people << person;
    });
    job.writeJson(QStringLiteral("people.json"), people);
    job.count(QStringLiteral("people"), people.size());
}

/// Accounts that offer the same type under the same name at the same place share a record.
void exportTypes(ExportJob &job)
{
    std::map<std::tuple<qint64, QString, QString>, QJsonArray> accountsOf;
    for (const Account &account : std::as_const(job.accounts)) {
        const QList<ProjectKind> types = job.store.projects.types(account.accountId);
        for (const ProjectKind &type : types)
            accountsOf[{type.position, type.typeId, type.name}] << account.accountId;
    }
    QJsonArray records;
    for (const auto &[type, accounts] : accountsOf)
        records << QJsonObject{{QStringLiteral("position"), std::get<0>(type)},
                               {QStringLiteral("typeID"), std::get<1>(type)},
                               {QStringLiteral("name"), std::get<2>(type)},
                               {QStringLiteral("accounts"), accounts}};
    job.writeJson(QStringLiteral("project-types.json"), records);
    job.count(QStringLiteral("project types"), records.size());
}

} // namespace

void exportPeople(ExportJob &job)
{
    QJsonArray accounts;
    for (const Account &account : std::as_const(job.accounts))
        accounts << QJsonObject{{QStringLiteral("account"), account.accountId},
                                {QStringLiteral("name"), account.name}};
    job.writeJson(QStringLiteral("accounts.json"), accounts);
    job.count(QStringLiteral("accounts"), accounts.size());
    exportPersons(job);
    exportTypes(job);
}

} // namespace Zel
