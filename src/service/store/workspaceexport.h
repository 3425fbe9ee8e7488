// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/progress.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace Zel {

class Store;

struct ExportOptions
{
    /// Only these; empty for all. What belongs to every account comes along, and of people those
    /// who are members of, or have made something in, one of them.
    QList<qint64> accounts;
    /// Else people come without password and get a new one where they are imported.
    bool passwordHashes = false;
    Progress progress;
};

/// What was written.
struct ExportReport
{
    struct Count
    {
        QString kind; ///< as in `ImportCount`
        qint64 count = 0;
    };

    QList<Count> counts;
    /// Sentences about what readable files do not hold, only of what there is.
    QStringList leftOut;
};

/// Writes a workspace as the readable files that `WorkspaceFiles` reads, into a folder that is not
/// there yet or empty. All of it is one state of the database. The same data give the same bytes,
/// whatever the database; importing them and exporting again gives the same bytes, too. Memory does
/// not grow with the audience. Throws `ExportError`, `DatabaseError` and `BlobError`; then there is
/// no folder.
ZEL_EXPORT ExportReport exportWorkspace(Store &store, const QString &folder,
                                        const ExportOptions &options = {});

} // namespace Zel
