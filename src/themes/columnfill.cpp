// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/columnfill.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/twips.h"

#include <QEvent>

#include <algorithm>

namespace ZelWebServiceControls {

ColumnFill::ColumnFill(Zel::ListView &list, double leastTwips)
    : QObject(&list)
    , m_list(list)
    , m_least(leastTwips)
{
    list.viewport()->installEventFilter(this);
    connect(&list, &Zel::ListView::columnResized, this, &ColumnFill::columnResized);
    fill();
}

bool ColumnFill::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        fill();
    return QObject::eventFilter(watched, event);
}

void ColumnFill::columnResized(int column)
{
    if (column == m_list.columnCount() - 1)
        m_isTaken = true;
    fill();
}

void ColumnFill::fill()
{
    if (m_isTaken)
        return;
    const int last = m_list.columnCount() - 1;
    double room = Zel::twipsFromPixels(m_list.viewport()->width(), Zel::logicalDpi(&m_list));
    for (int column = 0; column < last; ++column)
        room -= m_list.columnWidth(column);
    m_list.setColumnWidth(last, std::max(room, m_least));
}

} // namespace ZelWebServiceControls
