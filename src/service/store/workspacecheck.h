// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/progress.h"

#include <QStringList>

namespace Zel {

class BlobStore;
class Database;

/// Checks what the database itself does not watch over. Changes nothing. Each function returns what
/// is wrong, one sentence each; none when all is well.
class ZEL_EXPORT WorkspaceCheck
{
public:
    /// How much is read of files.
    enum class Depth
    {
        Sizes, ///< whether they are there and as long as they should be
        Bytes  ///< everything, against its checksum
    };

    WorkspaceCheck(Database &database, BlobStore &blobs, const Progress &progress = {});

    /// Whether rows that name others without a foreign key lead somewhere.
    QStringList brokenReferences();
    /// Whether the tallies of page views are their sums.
    QStringList wrongTallies();
    /// Whether the files that rows name are there and undamaged.
    QStringList brokenFiles(Depth depth);

    /// How many files `brokenFiles` has looked at.
    qint64 checkedFiles() const { return m_checkedFiles; }

private:
    Database &m_database;
    BlobStore &m_blobs;
    Progress m_progress;
    qint64 m_checkedFiles = 0;
};

} // namespace Zel
