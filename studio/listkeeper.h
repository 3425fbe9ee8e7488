// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace Zel {
class ListView;
}

namespace Studio {

/// Keeps which assets are selected over a new listing of their folder: those that are still there
/// are selected again when it goes.
class ListKeeper
{
public:
    explicit ListKeeper(Zel::ListView &list);
    ~ListKeeper();
    Q_DISABLE_COPY_MOVE(ListKeeper)

private:
    Zel::ListView &m_list;
    QStringList m_guids;
};

} // namespace Studio
