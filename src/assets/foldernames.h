// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QString>

#include <memory>

namespace ZelWebServiceControls {

/// Names of folders, compared exactly.
using FolderNames = Zel::Collection<QString>;
/// Null stands for no names.
using FolderNamesPtr = std::shared_ptr<const FolderNames>;

} // namespace ZelWebServiceControls
