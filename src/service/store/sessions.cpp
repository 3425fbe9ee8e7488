// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sessions.h"

#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/securebytes.h"
#include "service/store/serverkeys.h"

namespace Zel {

namespace {

constexpr qsizetype tokenBytes = 32;

const SqlText addSession(R"sql(
    INSERT INTO session (token_hash, user_id, account_id, app_name, created_at, seen_at, expires_at)
    VALUES ($1, $2, NULL, $3, $4, $4, $5)
)sql");

const SqlText findSession(R"sql(
    SELECT s.user_id, u.display_name, m.account_id, m.role, s.seen_at
    FROM session s
    JOIN app_user u ON u.user_id = s.user_id
    LEFT JOIN membership m ON m.account_id = s.account_id AND m.user_id = s.user_id
    WHERE s.token_hash = $1 AND s.expires_at > $2 AND s.seen_at > $3 AND u.disabled = $4
)sql");

const SqlText noteSeen(R"sql(
    UPDATE session SET seen_at = $2 WHERE token_hash = $1 AND seen_at < $2
)sql");

const SqlText bindSession(R"sql(
    UPDATE session SET account_id = $2
    WHERE token_hash = $1
      AND EXISTS (SELECT 1 FROM membership m WHERE m.account_id = $2 AND m.user_id = $3)
)sql");

const SqlText endSession(R"sql(
    DELETE FROM session WHERE token_hash = $1
)sql");

const SqlText endSessionsOf(R"sql(
    DELETE FROM session WHERE user_id = $1
)sql");

const SqlText removeExpired(R"sql(
    DELETE FROM session WHERE expires_at <= $1
)sql");

} // namespace

Sessions::Sessions(Database &database, ServerKeys &keys, const Clock &clock)
    : m_database(database)
    , m_clock(clock)
    , m_key(keys.key(QStringLiteral("session")))
{
}

QByteArray Sessions::hashOf(const QString &token) const
{
    return keyedHash(m_key, token.toUtf8());
}

NewSession Sessions::create(const QString &userId, const QString &appName)
{
    const QByteArray text =
        randomBytes(tokenBytes)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    const qint64 now = m_clock();
    const NewSession session{QString::fromLatin1(text), now + absoluteLimitMs};
    const QByteArray hash = hashOf(session.token);
    m_database.tx([&] {
        m_database.exec(removeExpired, {now});
        m_database.exec(addSession, {hash, userId, appName, now, session.expiresAt});
    });
    return session;
}

std::optional<Session> Sessions::find(const QString &token)
{
    const qint64 now = m_clock();
    const QByteArray hash = hashOf(token);
    qint64 seenAt = 0;
    const auto session =
        m_database.row(findSession, {hash, now, now - idleLimitMs, false}, [&](const SqlRow &row) {
            seenAt = row.integer(4);
            return Session{hash, row.text(0), row.text(1), row.optionalInteger(2).value_or(0),
                           row.optionalText(3).value_or(QString())};
        });
    if (session && seenAt + seenStepMs <= now)
        noteUse(hash, now);
    return session;
}

void Sessions::noteUse(const QByteArray &hash, qint64 now)
{
    try {
        m_database.tx([&] { m_database.exec(noteSeen, {hash, now}); });
    } catch (const DatabaseError &error) {
        // Neither a long write of someone else nor a full disk must fail a call that only reads;
        // the next call notes it.
        if (error.kind() == DatabaseError::Kind::Corrupt)
            throw;
    }
}

bool Sessions::bindAccount(const Session &session, qint64 accountId)
{
    return m_database.tx([&] {
        return m_database.exec(bindSession, {session.tokenHash, accountId, session.userId}) == 1;
    });
}

qint64 Sessions::endAll(const QString &userId)
{
    return m_database.exec(endSessionsOf, {userId});
}

void Sessions::end(const Session &session)
{
    m_database.tx([&] { m_database.exec(endSession, {session.tokenHash}); });
}

} // namespace Zel
