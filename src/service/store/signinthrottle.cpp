// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/signinthrottle.h"

#include "service/store/database.h"
#include "service/store/securebytes.h"
#include "service/store/serverkeys.h"
#include "service/store/storabletext.h"

#include <algorithm>

namespace Zel {

namespace {

const SqlText findBlock(R"sql(
    SELECT blocked_until FROM sign_in_attempt WHERE bucket = $1
)sql");

const SqlText findFailures(R"sql(
    SELECT failures FROM sign_in_attempt WHERE bucket = $1 AND last_at > $2
)sql");

const SqlText storeFailure(R"sql(
    INSERT INTO sign_in_attempt (bucket, failures, last_at, blocked_until)
    VALUES ($1, $2, $3, $4)
    ON CONFLICT (bucket) DO UPDATE SET failures = excluded.failures, last_at = excluded.last_at,
        blocked_until = excluded.blocked_until
)sql");

const SqlText forget(R"sql(
    DELETE FROM sign_in_attempt WHERE bucket = $1
)sql");

const SqlText forgetOld(R"sql(
    DELETE FROM sign_in_attempt WHERE last_at <= $1
)sql");

qint64 waitAfter(qint64 failures)
{
    if (failures < SignInThrottle::freeFailures)
        return 0;
    const qint64 doublings = std::min<qint64>(failures - SignInThrottle::freeFailures, 20);
    return std::min(SignInThrottle::firstWaitMs << doublings, SignInThrottle::longestWaitMs);
}

} // namespace

SignInThrottle::SignInThrottle(Database &database, ServerKeys &keys, const Clock &clock)
    : m_database(database)
    , m_clock(clock)
    , m_key(keys.key(QStringLiteral("throttle")))
{
}

/// Hashed, so that what people mistype as a name (often a password) is not kept.
QByteArray SignInThrottle::bucket(const QString &login, const QString &address) const
{
    return keyedHash(m_key, (foldedKey(login) + QChar(u'\n') + address).toUtf8());
}

qint64 SignInThrottle::waitMs(const QString &login, const QString &address)
{
    const auto blockedUntil = m_database.row(findBlock, {bucket(login, address)},
                                             [](const SqlRow &row) { return row.integer(0); });
    return std::max<qint64>(0, blockedUntil.value_or(0) - m_clock());
}

void SignInThrottle::noteFailure(const QString &login, const QString &address)
{
    const QByteArray key = bucket(login, address);
    m_database.tx([&] {
        const qint64 now = m_clock();
        m_database.exec(forgetOld, {now - forgottenAfterMs});
        const auto before = m_database.row(findFailures, {key, now - forgottenAfterMs},
                                           [](const SqlRow &row) { return row.integer(0); });
        const qint64 failures = before.value_or(0) + 1;
        m_database.exec(storeFailure, {key, failures, now, now + waitAfter(failures)});
    });
}

void SignInThrottle::noteSuccess(const QString &login, const QString &address)
{
    const QByteArray key = bucket(login, address);
    const auto known =
        m_database.row(findBlock, {key}, [](const SqlRow &row) { return row.integer(0); });
    if (known)
        m_database.tx([&] { m_database.exec(forget, {key}); });
}

} // namespace Zel
