// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listsortkeys.h"

#include "platform/core/sortkeys.h"

namespace Zel {

const ListSortKeyMakers &defaultSortKeyMakers()
{
    static const ListSortKeyMakers makers{
        {QStringLiteral("DATE"), [](const QString &text) { return dateSortKey(text); }},
        {QStringLiteral("NUMBER"), [](const QString &text) { return numberSortKey(text); }},
    };
    return makers;
}

} // namespace Zel
