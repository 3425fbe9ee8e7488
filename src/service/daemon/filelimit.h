// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <cstddef>

namespace Zel::Service {

/// Lets this process open as many files as the system lets it, which is often far more than what
/// programs begin with (1024). Returns how many that is.
ZEL_EXPORT std::size_t raiseFileLimit();

/// How many connections may be open at once so that files are left for databases and uploads:
/// `wanted`, or fewer where the system lets a process open few.
ZEL_EXPORT std::size_t connectionsWithin(std::size_t fileLimit, std::size_t wanted);

} // namespace Zel::Service
