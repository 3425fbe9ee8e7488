// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/database.h"

#include <QSemaphore>

#include <exception>
#include <thread>

namespace ZelTest {

/// Somebody who writes for very long: while it lives, nobody else gets to change a project, or
/// another table. PostgreSQL's writers wait for it, SQLite's give up after a while.
class WriteHold
{
public:
    /// Returns once the hold is taken; throws `Zel::DatabaseError` when that fails.
    /// @param tables what is held of PostgreSQL; of SQLite it is always everything
    explicit WriteHold(Zel::Database &database, const QString &tables = QStringLiteral("project"));
    ~WriteHold();
    WriteHold(const WriteHold &) = delete;
    WriteHold &operator=(const WriteHold &) = delete;

    /// Lets the others write and does not wait for them; once.
    void release() { m_released.release(); }

private:
    void hold(Zel::Database &database, const QString &tables);

    QSemaphore m_taken;
    QSemaphore m_released;
    std::exception_ptr m_error;
    std::thread m_thread;
};

} // namespace ZelTest
