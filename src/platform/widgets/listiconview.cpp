// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listiconview.h"

#include "platform/widgets/listicondelegate.h"
#include "platform/widgets/listmodel.h"
#include "platform/widgets/listviewsetup.h"

namespace Zel {

ListIconView::ListIconView(ListModel *model, QWidget *parent)
    : ListSurface(parent)
    , m_model(model)
    , m_delegate(new ListIconDelegate(model, this))
{
    setUpListView(this, model, m_delegate);
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
