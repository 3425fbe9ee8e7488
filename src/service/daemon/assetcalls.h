// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/problem.h"
#include "service/daemon/route.h"

namespace Zel::Service {

// What handlers share.

AssetUser assetUserOf(const Call &call);
/// The folder number at the first place of the path; throws `Problem` for one that cannot be.
qint64 folderIdOf(const Call &call);
Problem notFound(const QString &what);
/// A person lacks a right: "list", "write to" or "delete from" a folder.
Problem notAllowed(const QString &sentence);
/// Throws `Problem` for one whose role lets nothing be changed.
void refuseViewers(const Call &call);

} // namespace Zel::Service
