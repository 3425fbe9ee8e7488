// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/accounts.h"
#include "service/store/clock.h"
#include "service/store/database.h"
#include "service/store/passwordhasher.h"
#include "service/store/projects.h"
#include "service/store/serverkeys.h"
#include "service/store/sessions.h"
#include "service/store/signinthrottle.h"
#include "service/store/users.h"

namespace Zel {

/// Everything the daemon works on, over one database that has been migrated. Used by many threads
/// at once.
class ZEL_EXPORT Store
{
public:
    explicit Store(Database &database,
                   PasswordHasher::Cost cost = PasswordHasher::Cost::Interactive,
                   const Clock &clock = systemClock());

    Database &database;
    PasswordHasher hasher;
    ServerKeys keys;
    Users users;
    Sessions sessions;
    SignInThrottle throttle;
    Accounts accounts;
    Projects projects;
};

} // namespace Zel
