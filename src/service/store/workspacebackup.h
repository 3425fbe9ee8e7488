// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/backupformat.h"
#include "service/store/clock.h"
#include "service/store/outputfile.h"
#include "service/store/progress.h"
#include "service/store/workspacecopy.h"

namespace Zel {

/// Writes a workspace into one file, as it is at one moment, even while others write it. The file
/// holds password hashes and the keys of sessions and is readable by its owner only. It does not
/// depend on the kind of database. A database of an earlier step is written as it is. Throws
/// `CopyError`, `DatabaseError` or `BlobError`; then there is no file.
ZEL_EXPORT CopyReport writeBackup(Database &database, BlobStore &blobs, const QString &path,
                                  OutputFile::Existing existing, const Clock &clock = systemClock(),
                                  const Progress &progress = {});

/// What a backup begins with; the rest of it is not looked at. Throws as `checkBackup` does.
ZEL_EXPORT BackupHeader readBackupHeader(const QString &path);

/// Reads a backup through and checks everything in it. Throws `DatabaseError` or `CopyError`.
ZEL_EXPORT CopyReport checkBackup(const QString &path, BackupHeader *header = nullptr,
                                  const Progress &progress = {});

} // namespace Zel
