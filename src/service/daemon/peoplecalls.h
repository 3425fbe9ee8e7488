// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/users.h"

#include <QString>

#include <limits>

namespace Zel {
class Store;
}

namespace Zel::Service {

// What the commands for people and accounts share.

constexpr qint64 largestAccountNumber = std::numeric_limits<qint32>::max();

/// Ends a command, and the transaction around it, with a sentence.
[[noreturn]] void fail(const QString &sentence);

void expectAccount(Store &store, qint64 number);
User expectUser(Store &store, const QString &login);

/// "owner", "author" or "viewer"; throws `UsageError` with `what` for anything else.
QString roleIn(const QString &text, const QString &what);

/// A name as one line: what would break it is shown as a blank.
QString oneLine(const QString &text);

} // namespace Zel::Service
