// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QString>

#include <optional>

namespace Zel {

class Database;

struct Account
{
    qint64 accountId = 0; ///< 1 to 2147483647
    QString name;
};

/// Somebody who belongs to an account.
struct Member
{
    QString userId;
    QString login;
    QString role;
};

/// The accounts and who belongs to them with which role ("owner", "author", "viewer").
class ZEL_EXPORT Accounts
{
public:
    explicit Accounts(Database &database);

    /// A user's accounts in order of name.
    QList<Account> ofUser(const QString &userId);
    std::optional<Account> find(qint64 accountId);
    std::optional<QString> role(qint64 accountId, const QString &userId);
    /// All accounts by number.
    QList<Account> all();
    /// Everybody who belongs to the account, in order of their folded names.
    QList<Member> members(qint64 accountId);

    // The following change the database and are called inside a transaction only.
    void add(const Account &account);
    void rename(const Account &account);
    void setRole(qint64 accountId, const QString &userId, const QString &role);
    /// Ends a membership with what the person might do in folders. Sessions for the account are
    /// without one from then on.
    void removeMember(qint64 accountId, const QString &userId);

private:
    Database &m_database;
};

} // namespace Zel
