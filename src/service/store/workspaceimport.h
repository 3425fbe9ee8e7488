// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/workspacefiles.h"

#include <QList>
#include <QString>

namespace Zel {

class Store;

/// How many records of one kind were taken in.
struct ImportCount
{
    QString kind; ///< "accounts", "people", "project types", "templates", "themes",
                  ///< "template lists", "projects", "folders", "folder rights", "assets"
    int added = 0;
    int changed = 0;
    int unchanged = 0;
};

/// Makes the database hold what the files say: what is missing is added, what differs is changed,
/// and what the files do not mention stays. Doing it twice changes nothing the second time. It
/// happens in one transaction: when anything is wrong (`WorkspaceFileError`, `DatabaseError`)
/// nothing is stored.
ZEL_EXPORT QList<ImportCount> importWorkspace(Store &store, const WorkspaceFiles &files);

} // namespace Zel
