// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listiconview.h"
#include "platform/widgets/listreportview.h"
#include "platform/widgets/listview.h"

#include <algorithm>

// Selection and positions of a ListView.

namespace Zel {

bool ListView::isMultiSelect() const
{
    return m_report->selectionMode() == QAbstractItemView::ExtendedSelection;
}

void ListView::setMultiSelect(bool multiSelect)
{
    const auto mode =
        multiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection;
    m_report->setSelectionMode(mode);
    if (m_icon)
        m_icon->setSelectionMode(mode);
    if (!multiSelect && selectedCount() > 1)
        selectRow(selectedRow());
}

qsizetype ListView::selectedRow() const
{
    const QModelIndex current = m_selection->currentIndex();
    if (current.isValid() && m_selection->isSelected(current.siblingAtColumn(0)))
        return m_model->rowOf(current);
    int topmost = -1;
    for (const QItemSelectionRange &range : m_selection->selection()) {
        if (topmost < 0 || range.top() < topmost)
            topmost = range.top();
    }
    return topmost < 0 ? -1 : m_model->order().rowAt(topmost);
}

QList<qsizetype> ListView::selectedRows() const
{
    QList<qsizetype> positions;
    for (const QItemSelectionRange &range : m_selection->selection()) {
        for (int position = range.top(); position <= range.bottom(); ++position)
            positions.append(position);
    }
    std::sort(positions.begin(), positions.end());
    for (qsizetype &position : positions)
        position = m_model->order().rowAt(position);
    return positions;
}

int ListView::selectedCount() const
{
    int lines = 0;
    for (const QItemSelectionRange &range : m_selection->selection())
        lines += range.height();
    return lines;
}

void ListView::selectRow(qsizetype row)
{
    if (row == -1) {
        clearSelection();
        return;
    }
    const QModelIndex line = m_model->indexOf(row);
    if (line.isValid())
        m_selection->setCurrentIndex(line, QItemSelectionModel::ClearAndSelect |
                                               QItemSelectionModel::Rows);
}

void ListView::clearSelection()
{
    m_selection->clearSelection();
}

void ListView::ensureVisible(qsizetype row)
{
    const QModelIndex line = m_model->indexOf(row);
    if (line.isValid())
        view()->scrollTo(line);
}

qsizetype ListView::filteredCount() const
{
    return m_model->order().count();
}

qsizetype ListView::rowAt(qsizetype position) const
{
    return position >= 0 && position < filteredCount() ? m_model->order().rowAt(position) : -1;
}

qsizetype ListView::positionOf(qsizetype row) const
{
    return m_model->order().positionOf(row);
}

QModelIndex ListView::indexOf(qsizetype row, int column) const
{
    return m_model->indexOf(row, column);
}

QRect ListView::cellRect(qsizetype row, int column) const
{
    return view()->visualRect(m_model->indexOf(row, column));
}

} // namespace Zel
