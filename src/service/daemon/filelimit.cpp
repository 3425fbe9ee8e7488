// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/filelimit.h"

#include <algorithm>

#include <sys/resource.h>

namespace Zel::Service {

namespace {

/// Enough for the databases of all workers (three files each), the pictures they look at, and an
/// upload of each of some hundred clients.
constexpr std::size_t keptFiles = 256;
constexpr std::size_t fewestConnections = 16;

} // namespace

std::size_t raiseFileLimit()
{
    struct rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = limit.rlim_max;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_max : before;
}

std::size_t connectionsWithin(std::size_t fileLimit, std::size_t wanted)
{
    if (fileLimit < keptFiles + fewestConnections)
        return std::min(wanted, fewestConnections);
    return std::min(wanted, fileLimit - keptFiles);
}

} // namespace Zel::Service
