// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QStringList>

namespace Zel {

/// The texts of a FlexGrid.
class FlexGridModel final : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;

    void clear();
    void append(const QStringList &cells);
    void setColumnCount(int count);
    void setAlignment(int column, Qt::Alignment alignment);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<QStringList> m_rows;
    QHash<int, Qt::Alignment> m_alignments;
    int m_columns = 0;
};

} // namespace Zel
