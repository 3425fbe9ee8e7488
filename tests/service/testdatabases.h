// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/databaseaddress.h"
#include "tests/contract/postgresserver.h"

#include <QTemporaryDir>

#include <memory>

namespace ZelTest {

/// Fresh, empty databases of both kinds for tests that run on each. PostgreSQL is started when the
/// first database of its kind is asked for.
class TestDatabases
{
public:
    /// Throws `std::runtime_error` when there can be none, which fails the test.
    Zel::DatabaseAddress fresh(bool postgres);

    PostgresServer &server() { return *m_server; }

    QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<PostgresServer> m_server;
    int m_files = 0;
};

} // namespace ZelTest
