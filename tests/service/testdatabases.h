// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobkind.h"
#include "service/store/databaseaddress.h"
#include "tests/contract/postgresserver.h"

#include <QTemporaryDir>

#include <array>
#include <memory>
#include <optional>

namespace ZelTest {

/// A database with the sample workspace, and the folder of its files.
struct FilledDatabase
{
    Zel::DatabaseAddress address;
    Zel::BlobKind blobs = Zel::BlobKind::Files;
    std::unique_ptr<QTemporaryDir> files;
};

/// Fresh, empty databases of both kinds for tests that run on each. PostgreSQL is started when the
/// first database of its kind is asked for.
class TestDatabases
{
public:
    /// Throws `std::runtime_error` when there can be none, which fails the test.
    Zel::DatabaseAddress fresh(bool postgres);

    /// When the sample workspace was taken in, as milliseconds since 1970: 2026-05-28.
    static constexpr qint64 filledAt = 1'780'000'000'000;

    /// A database of its own with the sample workspace, but for its audience: a copy of one that is
    /// filled when the first of its kind is asked for.
    FilledDatabase filled(bool postgres, Zel::BlobKind blobs = Zel::BlobKind::Files);

    PostgresServer &server() { return *m_server; }

    QString folder() const { return m_folder.path(); }

private:
    QString newFile();
    FilledDatabase fill(bool postgres, Zel::BlobKind blobs);
    Zel::DatabaseAddress copyOf(const Zel::DatabaseAddress &address);

    QTemporaryDir m_folder;
    std::unique_ptr<PostgresServer> m_server;
    int m_files = 0;
    std::array<std::optional<FilledDatabase>, 4> m_filled; ///< for each engine and kind of blobs
};

} // namespace ZelTest
