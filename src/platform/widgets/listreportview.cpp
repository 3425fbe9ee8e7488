// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listreportview.h"

#include "platform/widgets/listdelegate.h"
#include "platform/widgets/listheader.h"
#include "platform/widgets/listlooks.h"
#include "platform/widgets/listmodel.h"
#include "platform/widgets/listviewsetup.h"

#include <QScrollBar>

#include <algorithm>

namespace Zel {

ListReportView::ListReportView(ListModel *model, QWidget *parent)
    : ListSurface(parent)
    , m_model(model)
    , m_delegate(new ListDelegate(model, this))
{
    setHeader(new ListHeader(this));
    header()->setSectionsClickable(true);
    setUpListView(this, model, m_delegate);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
}

void ListReportView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void ListReportView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const int across = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(across);
}

int ListReportView::sizeHintForColumn(int column) const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    int width = 0;
    QModelIndex index = indexAt(QPoint(0, 0)).siblingAtColumn(column);
    for (; index.isValid() && visualRect(index).top() < viewport()->height();
         index = index.siblingAtRow(index.row() + 1))
        width = std::max(width, m_delegate->fittingWidth(option, index));
    return width;
}

void ListReportView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QTreeView::drawRow(painter, option, index);
    if (!hasFocus() || index.row() != currentIndex().row())
        return;
    QStyleOptionViewItem line = option;
    line.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
    // A single selected line needs no frame to be found.
    if ((line.state & QStyle::State_Selected) && selectionMode() == SingleSelection)
        return;
    const int width = std::min(header()->length() - header()->offset(), viewport()->width());
    const int left = isRightToLeft() ? viewport()->width() - width : 0;
    line.rect = QRect(left, option.rect.top(), width, option.rect.height());
    ListLooks::paintFocusFrame(painter, line.rect, line);
}

void ListReportView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    // The focus frame runs through all columns.
    for (const QModelIndex &index : {current, previous}) {
        const QRect cell = visualRect(index);
        if (cell.isValid())
            viewport()->update(0, cell.top(), viewport()->width(), cell.height());
    }
}

void ListReportView::doItemsLayout()
{
    // Lines that only change places leave every position as it is; laying out anew would cost more
    // than the sort.
    if (m_model->isReordering() && m_laidOutRows == m_model->rowCount()) {
        viewport()->update();
        return;
    }
    QTreeView::doItemsLayout();
    m_laidOutRows = m_model->rowCount();
}

void ListReportView::reset()
{
    m_laidOutRows = -1;
    QTreeView::reset();
}

void ListReportView::keyboardSearch(const QString &search)
{
    emit typed(search);
}

void ListReportView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    paintEmptyText(this, m_emptyText);
}

} // namespace Zel
