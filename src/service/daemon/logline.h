// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <utility>

namespace Zel::Service {

/// Writes one line "time=... level=... key=value ..." to standard error, whole even when many
/// threads write. Values with blanks or quotes are quoted. Never give it a password or a token.
///
/// It never waits: lines that standard error does not take, because whoever should read them does
/// not, are lost, and the next one that gets through is preceded by "level=warning lost=N". A line
/// beyond 4096 bytes is cut.
ZEL_EXPORT void logLine(const char *level,
                        std::initializer_list<std::pair<const char *, QString>> values);

/// The line without its time, as `logLine` writes it.
ZEL_EXPORT QByteArray formatLogLine(const char *level,
                                    std::initializer_list<std::pair<const char *, QString>> values);

} // namespace Zel::Service
