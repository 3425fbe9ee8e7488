// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/database.h"

namespace Zel {

/// Runs `read`, whose statements join whole audiences, against one unchanging state of the
/// database.
///
/// Right after many rows came in, PostgreSQL has no statistics of them yet, takes them for a
/// handful and would go through one table for each row of the other: minutes instead of
/// milliseconds. Nothing here is better off with such a loop, so it is ruled out.
template <class Function>
auto readWhole(Database &database, Function read)
{
    return database.snapshot([&] {
        if (database.address().engine == DatabaseAddress::Engine::Postgres)
            database.runNative(QStringLiteral("SET LOCAL enable_nestloop = off"));
        return read();
    });
}

} // namespace Zel
