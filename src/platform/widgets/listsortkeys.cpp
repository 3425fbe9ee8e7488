// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listsortkeys.h"

namespace Zel {

const ListSortKeyMakers &defaultSortKeyMakers()
{
    static const ListSortKeyMakers makers;
    return makers;
}

} // namespace Zel
