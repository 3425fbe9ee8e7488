// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/repeats.h"

#include "service/store/database.h"

namespace Zel {

namespace {

constexpr qint64 forgottenAtOnce = 1000;

const SqlText findAnswer(R"sql(
    SELECT request_hash, status, body FROM idem
    WHERE account_id = $1 AND user_id = $2 AND idem_key = $3 AND expires_at > $4
)sql");

// One that has expired and was not forgotten yet is written over.
const SqlText putAnswer(R"sql(
    INSERT INTO idem (account_id, user_id, idem_key, request_hash, status, body, expires_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7)
    ON CONFLICT (account_id, user_id, idem_key) DO UPDATE SET request_hash = excluded.request_hash,
        status = excluded.status, body = excluded.body, expires_at = excluded.expires_at
)sql");

const SqlText forget(R"sql(
    DELETE FROM idem WHERE (account_id, user_id, idem_key) IN (
        SELECT account_id, user_id, idem_key FROM idem WHERE expires_at <= $1
        ORDER BY expires_at NULLS FIRST LIMIT $2
    )
)sql");

} // namespace

Repeats::Repeats(Database &database, const Clock &clock)
    : m_database(database)
    , m_clock(clock)
{
}

std::optional<RepeatAnswer> Repeats::find(const RepeatKey &key)
{
    return m_database.row(
        findAnswer, {key.accountId, key.userId, key.key, m_clock()}, [](const SqlRow &row) {
            return RepeatAnswer{row.bytes(0), static_cast<int>(row.integer(1)), row.bytes(2)};
        });
}

void Repeats::put(const RepeatKey &key, const RepeatAnswer &answer)
{
    m_database.exec(putAnswer, {key.accountId, key.userId, key.key, answer.requestHash,
                                answer.status, answer.body, m_clock() + lifeMs});
}

qint64 Repeats::forgetExpired()
{
    return m_database.tx([&] { return m_database.exec(forget, {m_clock(), forgottenAtOnce}); });
}

} // namespace Zel
