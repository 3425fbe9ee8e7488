// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"
#include "service/store/passwordhasher.h"

#include <QList>
#include <QString>

#include <optional>

namespace Zel {

class Database;

struct User
{
    QString userId;
    QString login;
    QString displayName;
    bool disabled = false;
};

/// The people who may sign in. Login names are compared by their folded form.
class ZEL_EXPORT Users
{
public:
    /// Longer names and passwords are nobody's; the limit keeps them away from the hash.
    static constexpr qsizetype longestLogin = 256;
    static constexpr qsizetype longestPassword = 1024;

    Users(Database &database, const PasswordHasher &hasher, const Clock &clock);

    /// Whether a name can be signed in with: not blank, storable, neither it nor its folded form
    /// longer than `longestLogin`.
    static bool isUsableLogin(const QString &login);

    std::optional<User> find(const QString &login);

    /// The user when name and password are right and the user may sign in. Takes the same time for
    /// a user that does not exist. Stores a stronger hash when the known one is outdated.
    std::optional<User> verify(const QString &login, const QString &password);

    /// Everybody, in order of the folded name.
    QList<User> all();

    /// Adds a user with a hash made by the caller, who makes it outside of the transaction; an
    /// empty one lets nobody sign in until there is a password. Throws `DatabaseError` Unique when
    /// the login name is taken. Only inside a transaction.
    User add(const QString &login, const QString &displayName, const QString &passwordHash);

    void changeDisplayName(const QString &userId, const QString &displayName);
    /// Throws `DatabaseError` Unique when somebody else has that name.
    void changeLogin(const QString &userId, const QString &login);
    /// A disabled person cannot sign in, and the sessions of the person are not found any more.
    void setDisabled(const QString &userId, bool disabled);
    void changePasswordHash(const QString &userId, const QString &passwordHash);

    /// The stored hash of a user.
    std::optional<QString> passwordHash(const QString &login);

    const PasswordHasher &hasher() const { return m_hasher; }

private:
    Database &m_database;
    const PasswordHasher &m_hasher;
    Clock m_clock;
};

} // namespace Zel
