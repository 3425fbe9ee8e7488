// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/store.h"

namespace Zel {

Store::Store(Database &openDatabase, PasswordHasher::Cost cost, const Clock &clock)
    : database(openDatabase)
    , hasher(cost)
    , keys(openDatabase, clock)
    , users(openDatabase, hasher, clock)
    , sessions(openDatabase, keys, clock)
    , throttle(openDatabase, keys, clock)
    , accounts(openDatabase)
    , projects(openDatabase, clock)
{
}

} // namespace Zel
