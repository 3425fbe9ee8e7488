// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/databaseaddress.h"
#include "service/store/sqlrow.h"
#include "service/store/sqltext.h"
#include "service/store/sqlvalue.h"

#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <type_traits>

namespace Zel {

class SqlConnection;

/// A database used by many threads at once: each thread gets a connection of its own on first use
/// and drops it when it ends (or when the database object is deleted by that thread). Needs a
/// QCoreApplication.
///
/// Reads may be made anywhere; they are repeated once when the connection turns out to be lost.
/// Every write is made inside `tx`. All functions throw `DatabaseError`.
class ZEL_EXPORT Database
{
public:
    /// Whether a missing SQLite file may be made.
    enum class Missing
    {
        Refuse,
        Create
    };

    explicit Database(const DatabaseAddress &address, Missing missing = Missing::Refuse);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    const DatabaseAddress &address() const { return m_address; }

    /// How long `tx` goes on running a function again that others get in the way of; 10 seconds
    /// unless set. To be set before other threads use the database.
    void setRetryLimit(std::chrono::milliseconds limit) { m_retryLimit = limit; }

    /// Opens this thread's connection, so that an address that does not work is known at once.
    void open();

    /// Shows each row of a query to `visit`, which must not run statements itself.
    void query(const SqlText &text, const SqlValues &values,
               const std::function<void(const SqlRow &)> &visit);

    /// Each row of a query, turned into a value by `map(const SqlRow &)`.
    template <class Map>
    auto rows(const SqlText &text, const SqlValues &values, Map map)
    {
        QList<std::decay_t<std::invoke_result_t<Map &, const SqlRow &>>> result;
        query(text, values, [&](const SqlRow &row) { result.append(map(row)); });
        return result;
    }

    /// The first row of a query, turned into a value by `map(const SqlRow &)`; nothing when there
    /// is none.
    template <class Map>
    auto row(const SqlText &text, const SqlValues &values, Map map)
    {
        std::optional<std::decay_t<std::invoke_result_t<Map &, const SqlRow &>>> result;
        query(text, values, [&](const SqlRow &current) {
            if (!result)
                result = map(current);
        });
        return result;
    }

    /// Runs a writing statement and returns the number of rows it changed. Only inside `tx`.
    qint64 exec(const SqlText &text, const SqlValues &values = {});

    /// The same for a statement with RETURNING, whose rows are shown to `visit`.
    qint64 change(const SqlText &text, const SqlValues &values,
                  const std::function<void(const SqlRow &)> &visit);

    /// Runs `write` in one serializable transaction and returns what it returns. When another
    /// transaction got in the way, `write` is run again from its start (see `setRetryLimit`, with
    /// growing random pauses), so it must change nothing but the database and its own
    /// variables. A database error inside must leave `write`: what follows one would not be stored.
    /// Inside another `tx` it is part of that one.
    ///
    /// A connection lost while the end of the transaction was being written throws Lost although
    /// the change may have been stored; callers that may be asked again bring a key of their own.
    template <class Function>
    auto tx(Function write)
    {
        return transaction<std::invoke_result_t<Function &>>(write, false);
    }

    /// Runs `read` against one unchanging state of the database.
    template <class Function>
    auto snapshot(Function read)
    {
        return transaction<std::invoke_result_t<Function &>>(read, true);
    }

    /// Shows each row of a reading statement that is made at run time (from the tables as the
    /// database describes them) to `visit`, as the rows arrive: in the memory of one row however
    /// many there are. Only in `tx` or `snapshot`; `visit` must not run statements on this
    /// database.
    void stream(const QString &sql, const std::function<void(const SqlRow &)> &visit);

    /// Runs a statement in this database's own words (migrations, checks) and returns the first
    /// value of its last row.
    QVariant runNative(const QString &sql);

    /// How many times a transaction was run again since this object was made.
    qint64 repeatedTransactions() const { return m_repeated; }

private:
    template <class Result, class Function>
    Result transaction(Function &function, bool readOnly)
    {
        if constexpr (std::is_void_v<Result>) {
            runTransaction([&] { function(); }, readOnly);
        } else {
            std::optional<Result> result;
            runTransaction([&] { result.emplace(function()); }, readOnly);
            return std::move(*result);
        }
    }

    void runTransaction(const std::function<void()> &function, bool readOnly);
    SqlConnection &connection();
    void dropConnection();

    DatabaseAddress m_address;
    Missing m_missing;
    quint64 m_id;
    std::atomic<qint64> m_repeated{0};
    std::chrono::milliseconds m_retryLimit = std::chrono::seconds(10);
};

} // namespace Zel
