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

/// The accounts and who belongs to them with which role ("owner", "author", "viewer").
class ZEL_EXPORT Accounts
{
public:
    explicit Accounts(Database &database);

    /// A user's accounts in order of name.
    QList<Account> ofUser(const QString &userId);
    std::optional<Account> find(qint64 accountId);
    std::optional<QString> role(qint64 accountId, const QString &userId);

    // The following change the database and are called inside a transaction only.
    void add(const Account &account);
    void rename(const Account &account);
    void setRole(qint64 accountId, const QString &userId, const QString &role);

private:
    Database &m_database;
};

} // namespace Zel
