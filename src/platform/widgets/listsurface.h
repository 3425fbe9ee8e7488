// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listinput.h"
#include "platform/widgets/listlooks.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace Zel {

/// A Qt item view whose mouse and keyboard follow ListInput. `KeyBase` is the class whose handling
/// of the keys is wanted: QTreeView's own would take "+", "-" and "*" from the type-ahead of a flat
/// list.
template <class View, class KeyBase = QAbstractItemView>
class ListSurface : public View
{
public:
    explicit ListSurface(QWidget *parent = nullptr)
        : View(parent)
        , m_input(new ListInput(this))
    {
    }

    ListInput *input() const { return m_input; }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        // Other buttons would select a line without clicking it.
        if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton)
            return;
        m_input->beginPress(event);
        View::mousePressEvent(event);
        m_input->endPress(event);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!m_input->refusesDrag(event))
            View::mouseMoveEvent(event);
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (m_input->refusesRelease())
            return;
        View::mouseReleaseEvent(event);
        m_input->endRelease(event);
    }

    void mouseDoubleClickEvent(QMouseEvent *event) override
    {
        if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton)
            return;
        m_input->beginDoubleClick(event);
        View::mouseDoubleClickEvent(event);
        m_input->endDoubleClick(event);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (!m_input->beginKey(event))
            KeyBase::keyPressEvent(event); // NOLINT(bugprone-parent-virtual-call): see above
        m_input->endKey(event);
    }

    void contextMenuEvent(QContextMenuEvent *event) override { m_input->contextMenu(event); }

    /// The selection of a view without the focus is drawn in the palette's inactive colours.
    void initViewItemOption(QStyleOptionViewItem *option) const override
    {
        View::initViewItemOption(option);
        if (!this->hasFocus())
            option->state &= ~QStyle::State_Active;
        ListLooks::muteInactiveSelection(option->palette);
    }

private:
    ListInput *m_input;
};

} // namespace Zel
