// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Zel::Service {

/// What `zel-service` ends with.
enum ExitCode
{
    ExitFine = 0,
    ExitFailed = 1,          ///< one sentence on standard error says why
    ExitUsage = 2,           ///< the command line is wrong
    ExitNewerDatabase = 3,   ///< the database was written by a newer program
    ExitCorruptDatabase = 4, ///< the database is damaged or no workspace
    ExitAddressInUse = 5     ///< someone else listens there
};

} // namespace Zel::Service
