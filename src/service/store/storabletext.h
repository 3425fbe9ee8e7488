// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace Zel {

/// Whether a text comes back from both databases as it went in: U+0000 would cut it, half a
/// surrogate pair has no UTF-8 form, and SQLite reads the two non-characters U+FFFE and U+FFFF back
/// as U+FFFD.
ZEL_EXPORT bool isStorableText(QStringView text);

/// The key by which names are compared: compatibility forms unified (NFKC) and case folded.
ZEL_EXPORT QString foldedKey(const QString &text);

/// The key by which names are ordered: the beginning of the folded key, at most 200 characters,
/// because PostgreSQL indexes no longer ones. Databases compare it byte by byte, so both order
/// alike.
ZEL_EXPORT QString orderKey(const QString &text);

} // namespace Zel
