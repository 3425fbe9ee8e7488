// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listsort.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/repaintfreeze.h"

#include <QCursor>
#include <QPointer>

namespace Zel {

namespace {

/// Shows the hourglass over a widget while it lives; then the pointer is what it was.
class Hourglass
{
public:
    explicit Hourglass(QWidget *widget)
        : m_widget(widget)
        , m_hadCursor(widget->testAttribute(Qt::WA_SetCursor))
        , m_cursor(widget->cursor())
    {
        widget->setCursor(Qt::WaitCursor);
    }

    ~Hourglass()
    {
        if (!m_widget)
            return;
        if (m_hadCursor)
            m_widget->setCursor(m_cursor);
        else
            m_widget->unsetCursor();
    }

private:
    Q_DISABLE_COPY_MOVE(Hourglass)

    QPointer<QWidget> m_widget;
    bool m_hadCursor;
    QCursor m_cursor;
};

} // namespace

void sortByHeaderClick(ListView &list, int column)
{
    if (column < 0 || column >= list.columnCount())
        return;
    const Hourglass hourglass(&list);
    const RepaintFreeze freeze(&list);
    const bool ascending = list.sortOrder() == Qt::AscendingOrder;
    list.sortBy(column, ascending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

} // namespace Zel
