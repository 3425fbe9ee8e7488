// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/serverkeys.h"

#include "service/store/database.h"
#include "service/store/securebytes.h"

namespace Zel {

namespace {

constexpr qsizetype keySize = 32;

const SqlText findKey(R"sql(
    SELECT secret FROM server_key WHERE kid = $1
)sql");

const SqlText addKey(R"sql(
    INSERT INTO server_key (kid, secret, created_at) VALUES ($1, $2, $3)
)sql");

} // namespace

ServerKeys::ServerKeys(Database &database, const Clock &clock)
    : m_database(database)
    , m_clock(clock)
{
}

QByteArray ServerKeys::key(const QString &purpose)
{
    const auto find = [&] {
        return m_database.row(findKey, {purpose}, [](const SqlRow &row) { return row.bytes(0); });
    };
    if (const auto known = find())
        return *known;
    return m_database.tx([&]() -> QByteArray {
        if (const auto known = find())
            return *known;
        const QByteArray fresh = randomBytes(keySize);
        m_database.exec(addKey, {purpose, fresh, m_clock()});
        return fresh;
    });
}

} // namespace Zel
