// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>

namespace Zel {

/// Must have run before any other function of libsodium; cheap when it has. Ends the program when
/// there is no source of randomness.
ZEL_EXPORT void initializeSodium();

/// Random bytes fit for keys and tokens.
ZEL_EXPORT QByteArray randomBytes(qsizetype count);

/// BLAKE2b-256 of `text` under `key` (32 bytes).
ZEL_EXPORT QByteArray keyedHash(const QByteArray &key, const QByteArray &text);

/// Compares in a time that tells nothing of where they differ.
ZEL_EXPORT bool isSameSecret(const QByteArray &left, const QByteArray &right);

/// Overwrites what held a secret.
ZEL_EXPORT void wipe(QByteArray &bytes);

} // namespace Zel
