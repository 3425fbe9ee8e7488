// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/postgresserver.h"
#include "tests/contract/writehold.h"

#include <memory>

namespace ZelTest {

/// Nobody gets to store anything: the PostgreSQL server is down, or somebody holds the SQLite file
/// for longer than the service waits.
class DatabaseOutage
{
public:
    /// @param server null for SQLite
    DatabaseOutage(Zel::Database &database, PostgresServer *server)
        : m_server(server)
        , m_hold(server ? nullptr : std::make_unique<WriteHold>(database))
    {
        if (m_server)
            m_server->stop(true);
    }

    ~DatabaseOutage() { end(); }

    DatabaseOutage(const DatabaseOutage &) = delete;
    DatabaseOutage &operator=(const DatabaseOutage &) = delete;

    /// Ends it; false when the database does not come back.
    bool end()
    {
        m_hold.reset();
        PostgresServer *server = std::exchange(m_server, nullptr);
        return !server || server->startAgain();
    }

private:
    PostgresServer *m_server;
    std::unique_ptr<WriteHold> m_hold;
};

} // namespace ZelTest
