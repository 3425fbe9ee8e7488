// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"

namespace Zel::Service {

/// Throws a `Problem` for a request that a web page somewhere else has made the person's browser
/// send: one whose Host is not this machine's own name and this port (a name server can point any
/// name here), or whose Origin is another site's.
ZEL_EXPORT void refuseForeignPages(const HttpRequest &request);

} // namespace Zel::Service
