// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/workspaceimport.h"

namespace Zel {

/// The part of an import that takes in the data records of themes; inside its transaction, after
/// the themes. What accounts have saved stays.
ImportCount importDataRecords(Store &store, const WorkspaceFiles &files);

} // namespace Zel
