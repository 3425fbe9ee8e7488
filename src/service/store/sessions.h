// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Zel {

class Database;
class ServerKeys;

/// What a token stands for while its session lives.
struct Session
{
    QByteArray tokenHash;
    QString userId;
    QString displayName;
    /// The chosen account; 0 while none is chosen or the membership has ended.
    qint64 accountId = 0;
    QString role; ///< "owner", "author" or "viewer" in that account
};

struct NewSession
{
    QString token; ///< 256 random bits as 43 characters; handed out once and stored nowhere
    qint64 expiresAt = 0;
};

/// Sessions of signed-in people. A session ends by itself after 12 hours without a call and 7 days
/// after signing in; it knows its account, so any daemon of the database can serve it.
class ZEL_EXPORT Sessions
{
public:
    static constexpr qint64 idleLimitMs = 12LL * 60 * 60 * 1000;
    static constexpr qint64 absoluteLimitMs = 7LL * 24 * 60 * 60 * 1000;
    /// The time of the last call is stored no finer than this, to spare a write per call.
    static constexpr qint64 seenStepMs = 60LL * 1000;

    Sessions(Database &database, ServerKeys &keys, const Clock &clock);

    NewSession create(const QString &userId, const QString &appName);

    /// The living session of a token; nothing for one that is unknown, ended, or whose user may no
    /// longer sign in. Notes that it was used.
    std::optional<Session> find(const QString &token);

    /// Chooses the account; false when the user is not one of its members.
    bool bindAccount(const Session &session, qint64 accountId);

    void end(const Session &session);
    /// Ends all sessions of a person; returns how many there were. Only inside a transaction.
    qint64 endAll(const QString &userId);

private:
    QByteArray hashOf(const QString &token) const;
    void noteUse(const QByteArray &hash, qint64 now);

    Database &m_database;
    Clock m_clock;
    QByteArray m_key;
};

} // namespace Zel
