// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listviews.h"

#include "platform/widgets/listdelegate.h"
#include "platform/widgets/listheader.h"
#include "platform/widgets/listlooks.h"
#include "platform/widgets/listmodel.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

namespace Zel {

namespace {

void setUp(QAbstractItemView *view, QAbstractItemModel *model, QAbstractItemDelegate *delegate)
{
    view->setItemDelegate(delegate);
    view->setModel(model);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setTextElideMode(Qt::ElideRight);
    view->setTabKeyNavigation(false);
    view->viewport()->setAttribute(Qt::WA_Hover);
}

void paintEmptyText(QAbstractItemView *view, const QString &text)
{
    if (text.isEmpty() || view->model()->rowCount() > 0)
        return;
    QPainter painter(view->viewport());
    painter.setPen(view->palette().color(QPalette::PlaceholderText));
    painter.drawText(view->viewport()->rect().adjusted(12, 12, -12, -12),
                     Qt::AlignCenter | Qt::TextWordWrap, text);
}

} // namespace

ListReportView::ListReportView(ListModel *model, QWidget *parent)
    : ListSurface(parent)
    , m_model(model)
    , m_delegate(new ListDelegate(model, this))
{
    setHeader(new ListHeader(this));
    header()->setSectionsClickable(true);
    setUp(this, model, m_delegate);
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

ListIconView::ListIconView(ListModel *model, QWidget *parent)
    : ListSurface(parent)
    , m_model(model)
    , m_delegate(new ListIconDelegate(model, this))
{
    setUp(this, model, m_delegate);
    setFlow(LeftToRight);
    setWrapping(true);
    setResizeMode(Adjust);
    setUniformItemSizes(true);
    setWordWrap(true);
    setLargeIconSize({48, 48});
}

void ListIconView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void ListIconView::setLargeIconSize(const QSize &size)
{
    setIconSize(size);
    updateGrid();
}

void ListIconView::updateGrid()
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    setGridSize(m_delegate->sizeHint(option, {}) + QSize(8, 8));
}

void ListIconView::keyboardSearch(const QString &search)
{
    emit typed(search);
}

void ListIconView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    paintEmptyText(this, m_emptyText);
}

void ListIconView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGrid();
}

} // namespace Zel
