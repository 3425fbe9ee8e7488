// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listviewsetup.h"

#include <QAbstractItemView>
#include <QPainter>

namespace Zel {

void setUpListView(QAbstractItemView *view, QAbstractItemModel *model,
                   QAbstractItemDelegate *delegate)
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

} // namespace Zel
