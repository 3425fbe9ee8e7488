// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/listkeeper.h"

#include "common/contract/assetrecord.h"
#include "platform/widgets/listview.h"

#include <QItemSelection>
#include <QSet>

namespace Studio {

namespace {

QString guidOf(const Zel::ListView &list, qsizetype row)
{
    const auto asset = list.tag(row).value<QXSC::AssetRecordPtr>();
    return asset ? asset->guid : QString();
}

} // namespace

ListKeeper::ListKeeper(Zel::ListView &list)
    : m_list(list)
{
    for (const qsizetype row : m_list.selectedRows())
        m_guids << guidOf(m_list, row);
}

ListKeeper::~ListKeeper()
{
    if (m_guids.isEmpty())
        return;
    const QSet<QString> guids(m_guids.begin(), m_guids.end());
    QItemSelection selection;
    for (qsizetype row = 0; row < m_list.count(); ++row) {
        const QModelIndex index = m_list.indexOf(row);
        if (index.isValid() && guids.contains(guidOf(m_list, row)))
            selection.select(index, index);
    }
    m_list.view()->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect |
                                                           QItemSelectionModel::Rows);
}

} // namespace Studio
