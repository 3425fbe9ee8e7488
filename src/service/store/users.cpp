// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/users.h"

#include "service/store/database.h"
#include "service/store/storabletext.h"

#include <QUuid>

namespace Zel {

namespace {

const SqlText findUser(R"sql(
    SELECT user_id, login, display_name, disabled, pw_hash FROM app_user WHERE login_key = $1
)sql");

const SqlText addUser(R"sql(
    INSERT INTO app_user (user_id, login, login_key, display_name, pw_hash, disabled, created_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7)
)sql");

const SqlText renameUser(R"sql(
    UPDATE app_user SET display_name = $2 WHERE user_id = $1
)sql");

const SqlText renameLogin(R"sql(
    UPDATE app_user SET login = $2, login_key = $3 WHERE user_id = $1
)sql");

const SqlText disableUser(R"sql(
    UPDATE app_user SET disabled = $2 WHERE user_id = $1
)sql");

const SqlText listUsers(R"sql(
    SELECT user_id, login, display_name, disabled, pw_hash FROM app_user
    ORDER BY login_key NULLS FIRST
)sql");

const SqlText changeHash(R"sql(
    UPDATE app_user SET pw_hash = $2 WHERE user_id = $1
)sql");

struct UserAndHash
{
    User user;
    QString hash;
};

UserAndHash userOf(const SqlRow &row)
{
    return {{row.text(0), row.text(1), row.text(2), row.boolean(3)}, row.text(4)};
}

std::optional<UserAndHash> findByLogin(Database &database, const QString &login)
{
    if (!Users::isUsableLogin(login))
        return std::nullopt;
    return database.row(findUser, {foldedKey(login)}, userOf);
}

} // namespace

Users::Users(Database &database, const PasswordHasher &hasher, const Clock &clock)
    : m_database(database)
    , m_hasher(hasher)
    , m_clock(clock)
{
}

bool Users::isUsableLogin(const QString &login)
{
    return login.size() <= longestLogin && !login.trimmed().isEmpty() && isStorableText(login) &&
           foldedKey(login).size() <= longestLogin;
}

std::optional<User> Users::find(const QString &login)
{
    const auto found = findByLogin(m_database, login);
    return found ? std::optional<User>(found->user) : std::nullopt;
}

std::optional<QString> Users::passwordHash(const QString &login)
{
    const auto found = findByLogin(m_database, login);
    return found ? std::optional<QString>(found->hash) : std::nullopt;
}

std::optional<User> Users::verify(const QString &login, const QString &password)
{
    const auto found = findByLogin(m_database, login);
    // One hash is computed whatever the outcome, or the time taken would tell users apart.
    const bool hasPassword = found && !found->hash.isEmpty();
    const bool matches = m_hasher.verify(hasPassword ? found->hash : m_hasher.dummy(),
                                         password.left(longestPassword));
    const bool usable = hasPassword && !found->user.disabled && password.size() <= longestPassword;
    if (!matches || !usable)
        return std::nullopt;
    if (m_hasher.isOutdated(found->hash)) {
        const QString stronger = m_hasher.hash(password);
        m_database.tx([&] { changePasswordHash(found->user.userId, stronger); });
    }
    return found->user;
}

QList<User> Users::all()
{
    return m_database.rows(listUsers, {}, [](const SqlRow &row) { return userOf(row).user; });
}

User Users::add(const QString &login, const QString &displayName, const QString &passwordHash)
{
    const User user{QUuid::createUuid().toString(QUuid::WithoutBraces), login, displayName, false};
    m_database.exec(addUser, {user.userId, login, foldedKey(login), displayName, passwordHash,
                              false, m_clock()});
    return user;
}

void Users::changeDisplayName(const QString &userId, const QString &displayName)
{
    m_database.exec(renameUser, {userId, displayName});
}

void Users::changeLogin(const QString &userId, const QString &login)
{
    m_database.exec(renameLogin, {userId, login, foldedKey(login)});
}

void Users::setDisabled(const QString &userId, bool disabled)
{
    m_database.exec(disableUser, {userId, disabled});
}

void Users::changePasswordHash(const QString &userId, const QString &passwordHash)
{
    m_database.exec(changeHash, {userId, passwordHash});
}

} // namespace Zel
