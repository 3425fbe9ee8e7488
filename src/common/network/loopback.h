// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace QXSC {

/// Whether a host is this machine (localhost, 127.x, ::1), so that nothing leaves it.
/// @param host a name or address as QUrl gives it, without brackets
ZEL_EXPORT bool isLoopbackHost(const QString &host);

} // namespace QXSC
