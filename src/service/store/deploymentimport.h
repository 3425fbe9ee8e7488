// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/audiencefiles.h"
#include "service/store/workspaceimport.h"

#include <QHash>

namespace Zel {

/// What the folders of an import hold that are not those taken in last, by their paths. Reading
/// them takes long, so it is done before the transaction.
QHash<QString, AudienceFiles> newAudiences(Store &store, const WorkspaceFiles &files,
                                           const Progress &progress);

/// The deployments of an import and what is new of their audience. Only inside the transaction of
/// an import.
QList<ImportCount> importDeployments(Store &store, const WorkspaceFiles &files,
                                     const QHash<QString, AudienceFiles> &audiences,
                                     const Progress &progress);

/// Takes in what happened in one deployment, all or nothing. Throws `WorkspaceFileError` with the
/// place of a row that is refused.
ZEL_EXPORT QList<ImportCount> importAudience(Store &store, const DeploymentRef &deployment,
                                             const AudienceFiles &files,
                                             const ImportOptions &options = {});

} // namespace Zel
