// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/testdatabases.h"

#include <stdexcept>

namespace ZelTest {

Zel::DatabaseAddress TestDatabases::fresh(bool postgres)
{
    if (!postgres)
        return Zel::DatabaseAddress::sqliteFile(
            m_folder.filePath(QStringLiteral("test-%1.db").arg(++m_files)));
    if (!m_server) {
        auto server = std::make_unique<PostgresServer>();
        if (!server->start())
            throw std::runtime_error(server->error().toStdString());
        m_server = std::move(server);
    }
    const QString address = m_server->newDatabase();
    if (address.isEmpty())
        throw std::runtime_error(m_server->error().toStdString());
    return Zel::DatabaseAddress::parse(address);
}

} // namespace ZelTest
