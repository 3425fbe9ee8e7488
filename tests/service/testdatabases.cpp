// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/testdatabases.h"

#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"
#include "tests/contract/serviceprocess.h"

#include <filesystem>
#include <stdexcept>

using namespace Zel;

namespace ZelTest {

QString TestDatabases::newFile()
{
    return m_folder.filePath(QStringLiteral("test-%1.db").arg(++m_files));
}

DatabaseAddress TestDatabases::fresh(bool postgres)
{
    if (!postgres)
        return DatabaseAddress::sqliteFile(newFile());
    if (!m_server) {
        auto server = std::make_unique<PostgresServer>();
        if (!server->start())
            throw std::runtime_error(server->error().toStdString());
        m_server = std::move(server);
    }
    const QString address = m_server->newDatabase();
    if (address.isEmpty())
        throw std::runtime_error(m_server->error().toStdString());
    return DatabaseAddress::parse(address);
}

FilledDatabase TestDatabases::fill(bool postgres, BlobKind blobs)
{
    FilledDatabase result{fresh(postgres), blobs, std::make_unique<QTemporaryDir>()};
    Database database(result.address, Database::Missing::Create);
    Migrations(database).migrate();
    Store store(database, PasswordHasher::Cost::Minimal, [] { return filledAt; },
                {blobs, result.files->path()});
    importWorkspace(store, WorkspaceFiles::read(ServiceProcess::sampleWorkspace()));
    return result;
}

DatabaseAddress TestDatabases::copyOf(const DatabaseAddress &address)
{
    if (address.engine == DatabaseAddress::Engine::Sqlite) {
        const QString file = newFile();
        // Nothing lies beside the file: the last connection to it has been closed.
        std::filesystem::copy_file(address.file.toStdString(), file.toStdString());
        return DatabaseAddress::sqliteFile(file);
    }
    const QString copy = m_server->newDatabase(address.database);
    if (copy.isEmpty())
        throw std::runtime_error(m_server->error().toStdString());
    return DatabaseAddress::parse(copy);
}

FilledDatabase TestDatabases::filled(bool postgres, BlobKind blobs)
{
    const size_t kind = (postgres ? 2 : 0) + (blobs == BlobKind::Database ? 1 : 0);
    std::optional<FilledDatabase> &master = m_filled.at(kind);
    if (!master)
        master = fill(postgres, blobs);
    FilledDatabase result{copyOf(master->address), blobs, std::make_unique<QTemporaryDir>()};
    std::filesystem::copy(master->files->path().toStdString(), result.files->path().toStdString(),
                          std::filesystem::copy_options::recursive);
    return result;
}

} // namespace ZelTest
