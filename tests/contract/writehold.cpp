// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/writehold.h"

namespace ZelTest {

WriteHold::WriteHold(Zel::Database &database, const QString &tables)
{
    m_thread = std::thread([this, &database, tables] { hold(database, tables); });
    m_taken.acquire();
    if (!m_error)
        return;
    m_thread.join();
    std::rethrow_exception(m_error);
}

WriteHold::~WriteHold()
{
    release();
    m_thread.join();
}

void WriteHold::hold(Zel::Database &database, const QString &tables)
{
    try {
        database.tx([&] {
            // A writing transaction of SQLite holds the whole file.
            if (database.address().engine == Zel::DatabaseAddress::Engine::Postgres)
                database.runNative(QStringLiteral("LOCK TABLE %1 IN EXCLUSIVE MODE").arg(tables));
            m_taken.release();
            m_released.acquire();
        });
    } catch (...) {
        m_error = std::current_exception();
        m_taken.release();
    }
}

} // namespace ZelTest
