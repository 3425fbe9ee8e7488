// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/copytarget.h"
#include "service/store/progress.h"

#include <QList>

namespace Zel {

class BlobStore;

/// What a copy, backup or restore has carried.
struct CopyReport
{
    QList<TableSum> tables;
    qint64 blobs = 0;     ///< files, not counting their thumbnails
    qint64 blobBytes = 0; ///< and what they have together
};

/// Copies a workspace from one database into another, of the same or of the other kind, with the
/// bytes of its files: what the source holds at one moment, even while others write it. Sessions
/// and keys go along, so that who is signed in stays so.
class ZEL_EXPORT WorkspaceCopy
{
public:
    struct Side
    {
        Database &database;
        BlobStore &blobs;
    };

    WorkspaceCopy(const Side &from, const Side &to, const Progress &progress = {});

    /// Copies and compares everything that arrived. Throws `CopyError`, `DatabaseError` or
    /// `BlobError`; the target then is as it was or is marked as unfinished.
    CopyReport run();

    /// Reads and checks all that `run` would copy, and whether the target can take it; writes
    /// nothing.
    CopyReport rehearse();

private:
    void copyTables(CopyReport &report);

    Side m_from;
    Side m_to;
    Progress m_progress;
};

/// People who are signed in now: what they change during a copy or after a backup is not in it.
ZEL_EXPORT qint64 countActiveSessions(Database &database, qint64 now);

} // namespace Zel
