// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/accounts.h"

#include "service/store/database.h"
#include "service/store/storabletext.h"

namespace Zel {

namespace {

const SqlText accountsOfUser(R"sql(
    SELECT a.account_id, a.name
    FROM membership m
    JOIN account a ON a.account_id = m.account_id
    WHERE m.user_id = $1
    ORDER BY a.name_key NULLS FIRST, a.account_id NULLS FIRST
)sql");

const SqlText findAccount(R"sql(
    SELECT account_id, name FROM account WHERE account_id = $1
)sql");

const SqlText findRole(R"sql(
    SELECT role FROM membership WHERE account_id = $1 AND user_id = $2
)sql");

const SqlText addAccount(R"sql(
    INSERT INTO account (account_id, name, name_key) VALUES ($1, $2, $3)
)sql");

const SqlText renameAccount(R"sql(
    UPDATE account SET name = $2, name_key = $3 WHERE account_id = $1
)sql");

const SqlText storeRole(R"sql(
    INSERT INTO membership (account_id, user_id, role) VALUES ($1, $2, $3)
    ON CONFLICT (account_id, user_id) DO UPDATE SET role = excluded.role
)sql");

const SqlText listAccounts(R"sql(
    SELECT account_id, name FROM account ORDER BY account_id NULLS FIRST
)sql");

const SqlText listMembers(R"sql(
    SELECT m.user_id, u.login, m.role
    FROM membership m
    JOIN app_user u ON u.user_id = m.user_id
    WHERE m.account_id = $1
    ORDER BY u.login_key NULLS FIRST
)sql");

const SqlText dropRights(R"sql(
    DELETE FROM folder_perm WHERE account_id = $1 AND user_id = $2
)sql");

const SqlText dropMember(R"sql(
    DELETE FROM membership WHERE account_id = $1 AND user_id = $2
)sql");

Account accountOf(const SqlRow &row)
{
    return {row.integer(0), row.text(1)};
}

} // namespace

Accounts::Accounts(Database &database)
    : m_database(database)
{
}

QList<Account> Accounts::ofUser(const QString &userId)
{
    return m_database.rows(accountsOfUser, {userId}, accountOf);
}

std::optional<Account> Accounts::find(qint64 accountId)
{
    return m_database.row(findAccount, {accountId}, accountOf);
}

std::optional<QString> Accounts::role(qint64 accountId, const QString &userId)
{
    return m_database.row(findRole, {accountId, userId},
                          [](const SqlRow &row) { return row.text(0); });
}

QList<Account> Accounts::all()
{
    return m_database.rows(listAccounts, {}, accountOf);
}

QList<Member> Accounts::members(qint64 accountId)
{
    return m_database.rows(listMembers, {accountId}, [](const SqlRow &row) {
        return Member{row.text(0), row.text(1), row.text(2)};
    });
}

void Accounts::removeMember(qint64 accountId, const QString &userId)
{
    m_database.exec(dropRights, {accountId, userId});
    m_database.exec(dropMember, {accountId, userId});
}

void Accounts::add(const Account &account)
{
    m_database.exec(addAccount, {account.accountId, account.name, orderKey(account.name)});
}

void Accounts::rename(const Account &account)
{
    m_database.exec(renameAccount, {account.accountId, account.name, orderKey(account.name)});
}

void Accounts::setRole(qint64 accountId, const QString &userId, const QString &role)
{
    m_database.exec(storeRole, {accountId, userId, role});
}

} // namespace Zel
