// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

namespace Zel {

class ListView;

/// Sorts a list as a click on a column header does: the list's one order flag is flipped, the
/// column becomes the sort key and sorting is on. The list shows the hourglass and is not repainted
/// meanwhile. A cell whose text cannot be had counts as empty; a column that does not exist is
/// ignored.
ZEL_EXPORT void sortByHeaderClick(ListView &list, int column);

} // namespace Zel
