// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/unfinishedcopy.h"

#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/securebytes.h"

namespace Zel {

namespace {

[[noreturn]] void refuseInUse(const Database &database)
{
    throw DatabaseError(DatabaseError::Kind::Busy,
                        QStringLiteral("The database %1 is being written by somebody else.")
                            .arg(database.address().display()));
}

} // namespace

bool UnfinishedCopy::isMarked()
{
    const bool sqlite = m_database.address().engine == DatabaseAddress::Engine::Sqlite;
    return m_database
               .runNative(sqlite ? QStringLiteral("SELECT COUNT(*) FROM sqlite_schema WHERE type = "
                                                  "'table' AND name = 'unfinished_copy'")
                                 : QStringLiteral("SELECT COUNT(*) FROM information_schema.tables "
                                                  "WHERE table_schema = current_schema() "
                                                  "AND table_name = 'unfinished_copy'"))
               .toInt() > 0;
}

void UnfinishedCopy::refuse()
{
    if (isMarked())
        throw DatabaseError(
            DatabaseError::Kind::Unfinished,
            QStringLiteral("A copy or restore into the database %1 did not end, so it holds no "
                           "workspace. Run it again, or take another database.")
                .arg(m_database.address().display()));
}

/// Whoever else copies into this database holds the mark until the end.
void UnfinishedCopy::waitBriefly()
{
    if (m_database.address().engine == DatabaseAddress::Engine::Postgres)
        m_database.runNative(QStringLiteral("SET LOCAL lock_timeout = '2s'"));
}

void UnfinishedCopy::makeTable()
{
    if (m_database.address().engine == DatabaseAddress::Engine::Sqlite)
        m_database.runNative(
            QStringLiteral("PRAGMA application_id = %1").arg(Migrations::sqliteApplicationId));
    m_database.runNative(QStringLiteral("CREATE TABLE unfinished_copy (token TEXT NOT NULL)"));
}

QString UnfinishedCopy::begin(const std::function<void()> &unlessMarked)
{
    const QString token = QString::fromLatin1(randomBytes(16).toHex());
    try {
        m_database.tx([&] {
            waitBriefly();
            if (isMarked()) {
                m_database.runNative(QStringLiteral("DELETE FROM unfinished_copy"));
            } else {
                if (unlessMarked)
                    unlessMarked();
                makeTable();
            }
            m_database.runNative(
                QStringLiteral("INSERT INTO unfinished_copy (token) VALUES ('%1')").arg(token));
        });
    } catch (const DatabaseError &error) {
        if (error.kind() == DatabaseError::Kind::Busy)
            refuseInUse(m_database);
        throw;
    }
    return token;
}

void UnfinishedCopy::hold(const QString &token)
{
    if (m_database.address().engine == DatabaseAddress::Engine::Postgres) {
        waitBriefly();
        // Before the first look, which is at the state that the transaction sees from then on.
        m_database.runNative(QStringLiteral("LOCK TABLE unfinished_copy"));
    }
    if (m_database.runNative(QStringLiteral("SELECT token FROM unfinished_copy")).toString() !=
        token)
        refuseInUse(m_database);
}

void UnfinishedCopy::end()
{
    m_database.runNative(QStringLiteral("DROP TABLE unfinished_copy"));
}

} // namespace Zel
