// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/progress.h"
#include "service/store/workspacecopy.h"

#include <QString>

namespace Zel {

/// Whether those who were signed in when a backup was made are signed in afterwards.
enum class RestoredSessions
{
    End, ///< who signed out or was shut out since would be in again otherwise
    Keep
};

/// Puts the workspace of a backup into an empty database of either kind, and brings it to the last
/// step where it is of an earlier one. The whole file is checked before anything is written, and
/// everything that was written is compared. Throws `CopyError`, `DatabaseError` or `BlobError`; the
/// target then is as it was or is marked as unfinished.
ZEL_EXPORT CopyReport restoreBackup(const QString &path, const WorkspaceCopy::Side &to,
                                    RestoredSessions sessions, const Progress &progress = {});

} // namespace Zel
