// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace ZelWebServiceControls {

/// The filter text of the file dialog for formats written as extensions without dot, parted by
/// commas ("jpg,wma"): all of them together, each of them, every file. Ends in "|".
ZEL_EXPORT QString assetFilterText(const QString &allowedFormats);

} // namespace ZelWebServiceControls
