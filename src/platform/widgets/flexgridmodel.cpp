// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/flexgridmodel.h"

namespace Zel {

void FlexGridModel::clear()
{
    if (m_rows.isEmpty())
        return;
    beginRemoveRows({}, 0, int(m_rows.size()) - 1);
    m_rows.clear();
    endRemoveRows();
}

void FlexGridModel::append(const QStringList &cells)
{
    const auto row = int(m_rows.size());
    beginInsertRows({}, row, row);
    m_rows.append(cells);
    endInsertRows();
}

void FlexGridModel::setColumnCount(int count)
{
    if (count == m_columns)
        return; // a reset would make all columns as wide as new ones
    beginResetModel();
    m_columns = count;
    endResetModel();
}

void FlexGridModel::setAlignment(int column, Qt::Alignment alignment)
{
    m_alignments.insert(column, alignment);
}

int FlexGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int FlexGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant FlexGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return m_rows.at(index.row()).value(index.column());
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(m_alignments.value(index.column(), Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    }
    return QVariant();
}

} // namespace Zel
