// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/workspaceimport.h"

namespace Zel {

/// The deployments of an import and what their folders hold. Only inside the transaction of an
/// import.
QList<ImportCount> importDeployments(Store &store, const WorkspaceFiles &files);

/// Takes in what happened in one deployment, all or nothing. Throws `WorkspaceFileError` with the
/// place of a row that is refused.
ZEL_EXPORT QList<ImportCount> importAudience(Store &store, const DeploymentRef &deployment,
                                             const AudienceFiles &files);

} // namespace Zel
