// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listsort.h"

#include "platform/widgets/hourglass.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/repaintfreeze.h"

namespace Zel {

void sortByHeaderClick(ListView &list, int column)
{
    if (column < 0 || column >= list.columnCount())
        return;
    const Hourglass hourglass(&list);
    const RepaintFreeze freeze(&list);
    const bool ascending = list.sortOrder() == Qt::AscendingOrder;
    list.sortBy(column, ascending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

} // namespace Zel
