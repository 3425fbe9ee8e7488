// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"

#include "service/store/databaseerror.h"
#include "service/store/sqlconnection.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <stdexcept>

namespace Zel {

namespace {

constexpr int longestPauseMs = 250;

using Connections = std::map<quint64, std::unique_ptr<SqlConnection>>;

/// This thread's connections by database. Numbers are never used again, so a connection to a
/// database that is gone is only ever dropped.
Connections &connectionsOfThread()
{
    thread_local Connections connections;
    return connections;
}

quint64 nextId()
{
    static std::atomic<quint64> count{0};
    return ++count;
}

void pauseBeforeRetry(int attempt)
{
    const int most = std::min(longestPauseMs, 2 << std::min(attempt, 7));
    QThread::msleep(static_cast<unsigned long>(QRandomGenerator::global()->bounded(1, most + 1)));
}

} // namespace

Database::Database(const DatabaseAddress &address, Missing missing)
    : m_address(address)
    , m_missing(missing)
    , m_id(nextId())
{
}

Database::~Database()
{
    dropConnection();
}

void Database::open()
{
    connection();
}

SqlConnection &Database::connection()
{
    std::unique_ptr<SqlConnection> &slot = connectionsOfThread()[m_id];
    if (slot && slot->isLost() && !slot->inTransaction())
        slot.reset();
    if (!slot)
        slot = std::make_unique<SqlConnection>(m_address, m_missing == Missing::Create);
    return *slot;
}

void Database::dropConnection()
{
    connectionsOfThread().erase(m_id);
}

void Database::query(const SqlText &text, const SqlValues &values,
                     const std::function<void(const SqlRow &)> &visit)
{
    SqlConnection &current = connection();
    if (current.inTransaction()) {
        current.execute(text, values, visit);
        return;
    }
    bool seenRow = false;
    const auto note = [&](const SqlRow &row) {
        seenRow = true;
        visit(row);
    };
    try {
        current.execute(text, values, note);
    } catch (const DatabaseError &error) {
        // A pooled connection is often found dead at its first use after the server restarted.
        if (error.kind() != DatabaseError::Kind::Lost || seenRow)
            throw;
        connection().execute(text, values, visit);
    }
}

qint64 Database::exec(const SqlText &text, const SqlValues &values)
{
    return change(text, values, {});
}

qint64 Database::change(const SqlText &text, const SqlValues &values,
                        const std::function<void(const SqlRow &)> &visit)
{
    SqlConnection &current = connection();
    if (!current.inTransaction() || current.isReadOnly())
        throw std::logic_error("a write was made outside of a writing transaction");
    return current.execute(text, values, visit);
}

void Database::stream(const QString &sql, const std::function<void(const SqlRow &)> &visit)
{
    if (!connection().inTransaction())
        throw std::logic_error("a table was read outside of a transaction");
    connection().stream(sql, visit);
}

QVariant Database::runNative(const QString &sql)
{
    return connection().run(sql);
}

void Database::runTransaction(const std::function<void()> &function, bool readOnly)
{
    if (connection().inTransaction()) {
        if (connection().isReadOnly() && !readOnly)
            throw std::logic_error("a writing transaction was begun inside a snapshot");
        function();
        return;
    }
    const QDeadlineTimer deadline(m_retryLimit);
    int lostRetries = 1;
    // Of two transactions that look for a key, do not find it and add it, PostgreSQL may tell the
    // later one of the key instead of the conflict. Run again, it finds the key.
    int uniqueRetries = 2;
    for (int attempt = 0;; ++attempt) {
        SqlConnection &current = connection();
        bool committing = false;
        try {
            current.begin(readOnly);
            function();
            committing = true;
            current.commit();
            return;
        } catch (const DatabaseError &error) {
            current.rollBack();
            const bool lost = error.kind() == DatabaseError::Kind::Lost;
            const bool conflict = error.kind() == DatabaseError::Kind::Conflict;
            const bool unique = error.kind() == DatabaseError::Kind::Unique;
            const bool again = (conflict && !deadline.hasExpired()) ||
                               (lost && !committing && lostRetries-- > 0) ||
                               (unique && uniqueRetries-- > 0);
            if (!again)
                throw;
        } catch (...) {
            current.rollBack();
            throw;
        }
        m_repeated.fetch_add(1, std::memory_order_relaxed);
        pauseBeforeRetry(attempt);
    }
}

} // namespace Zel
