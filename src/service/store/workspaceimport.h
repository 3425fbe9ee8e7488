// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/progress.h"
#include "service/store/workspacefiles.h"

#include <QList>
#include <QString>

#include <functional>

namespace Zel {

class Store;

/// How many records of one kind were taken in.
struct ImportCount
{
    QString kind; ///< "accounts", "people", "project types", "templates", "themes",
                  ///< "template lists", "data records", "projects", "deployments", "registrants",
                  ///< "page views", "questions", "votes", "responses", "folders",
                  ///< "folder rights", "assets"
    int added = 0;
    int changed = 0;
    int unchanged = 0;
};

struct ImportOptions
{
    bool dryRun = false; ///< does everything but store: what is wrong shows, and what would change
    Progress progress;
};

/// Makes the database hold what the files say: what is missing is added, what differs is changed,
/// and what the files do not mention stays. Doing it twice changes nothing the second time. It
/// happens in one transaction: when anything is wrong (`WorkspaceFileError`, `DatabaseError`)
/// nothing is stored. The folder of a deployment is read only when anything in it has changed
/// since.
ZEL_EXPORT QList<ImportCount> importWorkspace(Store &store, const WorkspaceFiles &files,
                                              const ImportOptions &options = {});

/// Runs `take` in the transaction of an import, which stores nothing when it is a dry run.
QList<ImportCount> importInside(Store &store, const ImportOptions &options,
                                const std::function<QList<ImportCount>()> &take);

} // namespace Zel
