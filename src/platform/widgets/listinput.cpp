// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listinput.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>

namespace Zel {

namespace {

bool isMove(const QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return !(event->modifiers() & ~Qt::KeypadModifier);
    default:
        return false;
    }
}

bool isEnter(const QKeyEvent *event)
{
    return (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
           !(event->modifiers() & ~Qt::KeypadModifier);
}

} // namespace

ListInput::ListInput(QAbstractItemView *view)
    : QObject(view)
    , m_view(view)
{
}

QModelIndex ListInput::lineAt(const QPoint &position) const
{
    const QModelIndex index = m_view->indexAt(position);
    // A tree answers its node also for the ground before it, where the expand mark is.
    const QRect rect = m_view->visualRect(index);
    if (!index.isValid() || position.x() < rect.left() || position.x() > rect.right())
        return {};
    return index.siblingAtColumn(0);
}

bool ListInput::isSelected(const QModelIndex &line) const
{
    return line.isValid() && m_view->selectionModel()->isSelected(line);
}

void ListInput::selectInPlace()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid() || isSelected(current))
        return;
    m_selectedInPlace = true;
    m_view->selectionModel()->select(current, QItemSelectionModel::ClearAndSelect |
                                                  QItemSelectionModel::Rows);
    m_view->scrollTo(current);
}

void ListInput::beginPress(QMouseEvent *event)
{
    m_pressed = lineAt(event->position().toPoint());
    m_pressedGround = !m_view->indexAt(event->position().toPoint()).isValid();
    m_armed = false;
}

void ListInput::endPress(QMouseEvent *event)
{
    if (m_doubleClicking)
        return;
    if (!m_pressed.isValid()) {
        const bool extending = event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
        if (m_clearsOnGround && m_pressedGround && !extending)
            m_view->selectionModel()->clearSelection();
        return;
    }
    m_armed = event->button() == Qt::LeftButton;
    if (event->button() == Qt::RightButton)
        emit clicked(m_pressed);
}

bool ListInput::refusesDrag(const QMouseEvent *event) const
{
    return event->buttons() != Qt::NoButton &&
           m_view->selectionMode() == QAbstractItemView::SingleSelection;
}

bool ListInput::refusesRelease() const
{
    return m_pressedGround && m_view->selectionMode() == QAbstractItemView::SingleSelection;
}

void ListInput::endRelease(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_armed)
        return;
    m_armed = false;
    if (!m_pressed.isValid())
        return;
    // Dragging over several lines ends on another line than it began on.
    const QModelIndex current = m_view->currentIndex();
    emit clicked(isSelected(current) ? current.siblingAtColumn(0) : QModelIndex(m_pressed));
}

void ListInput::beginDoubleClick(QMouseEvent *event)
{
    const QModelIndex line = lineAt(event->position().toPoint());
    m_doubleClicking = event->button() == Qt::LeftButton && line.isValid() && m_pressed == line;
}

void ListInput::endDoubleClick(QMouseEvent *event)
{
    if (!m_doubleClicking)
        return;
    m_doubleClicking = false;
    m_armed = false;
    // Two quick clicks on a check box are two clicks on it.
    if (m_pressed.isValid() && !isOnCheckBox(event->position().toPoint()))
        emit doubleClicked(m_pressed);
}

bool ListInput::isOnCheckBox(const QPoint &position) const
{
    const QModelIndex index = m_view->indexAt(position);
    if (!(index.flags() & Qt::ItemIsUserCheckable))
        return false;
    QStyleOptionViewItem option;
    option.initFrom(m_view);
    option.widget = m_view;
    option.rect = m_view->visualRect(index);
    option.features = QStyleOptionViewItem::HasCheckIndicator;
    const QRect box =
        m_view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, m_view);
    return box.contains(position);
}

bool ListInput::selectsInPlace(const QKeyEvent *event) const
{
    return isMove(event) && event->key() != Qt::Key_Home && event->key() != Qt::Key_End &&
           m_view->currentIndex().isValid() && !m_view->selectionModel()->hasSelection();
}

bool ListInput::beginKey(QKeyEvent *event)
{
    m_currentBeforeKey = m_view->currentIndex();
    m_selectedInPlace = false;
    if (m_keyHandler && m_keyHandler(event))
        return true;
    if (isEnter(event)) {
        event->setAccepted(isSelected(m_view->currentIndex()));
        return true;
    }
    if (!selectsInPlace(event))
        return false;
    selectInPlace();
    return true;
}

void ListInput::endKey(QKeyEvent *event)
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid())
        return;
    if (isMove(event))
        selectInPlace();
    if (isEnter(event) && isSelected(current))
        emit doubleClicked(current.siblingAtColumn(0));
    else if (m_selectedInPlace || current != m_currentBeforeKey)
        emit clicked(current.siblingAtColumn(0));
}

void ListInput::contextMenu(QContextMenuEvent *event)
{
    QModelIndex line = lineAt(event->pos());
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        line = isSelected(m_view->currentIndex()) ? m_view->currentIndex() : QModelIndex();
        position = m_view->viewport()->mapToGlobal(m_view->visualRect(line).bottomLeft());
    }
    event->ignore();
    if (m_menuHandler && m_menuHandler(line, position))
        event->accept();
}

} // namespace Zel
