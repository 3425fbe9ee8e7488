// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// How the form of the data record manager is scrolled, and where the focus goes.

#include "platform/core/rounding.h"
#include "platform/widgets/twipsgeometry.h"
#include "platform/widgets/vscroll.h"
#include "records/datarecordmanager.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWheelEvent>

#include <cmath>
#include <limits>

namespace ZelWebServiceControls {

namespace {

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr;
}

bool isPageKey(int key)
{
    return key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

void DataRecordManager::moveFrame()
{
    Zel::setTwipsTop(m_frame, m_scroll->Value());
}

bool DataRecordManager::isInView(const QWidget *field) const
{
    const Zel::TwipsRect place = Zel::twipsGeometry(field);
    const double top = place.top + m_scroll->Value();
    return top >= 0 && top + place.height <= Zel::twipsGeometry(m_container).height;
}

void DataRecordManager::bringIntoView(const QWidget *field)
{
    if (m_scroll->isHidden() || isInView(field))
        return;
    const Zel::TwipsRect place = Zel::twipsGeometry(field);
    const double visible = Zel::twipsGeometry(m_container).height;
    const bool fromTop = place.top < -m_scroll->Value() || place.height > visible;
    const double top = fromTop ? place.top : std::ceil(place.top + place.height - visible);
    m_scroll->setValue(-Zel::roundToInt32(top));
}

QWidget *DataRecordManager::fieldAround(QWidget *widget) const
{
    while (widget && widget->parentWidget() != m_frame)
        widget = widget->parentWidget();
    return widget;
}

bool DataRecordManager::eventFilter(QObject *watched, QEvent *event)
{
    QWidget *field = nullptr;
    if (event->type() == QEvent::FocusIn) {
        // A click must find its field where it was pressed; a window that is activated again was
        // left as it is.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason &&
            reason != Qt::PopupFocusReason)
            field = fieldAround(qobject_cast<QWidget *>(watched));
    } else if (event->type() == QEvent::KeyPress) {
        // Who types wants to see it.
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (!isModifier(key) && !isPageKey(key))
            field = fieldAround(qobject_cast<QWidget *>(watched));
    }
    if (field)
        bringIntoView(field);
    return Control::eventFilter(watched, event);
}

bool DataRecordManager::focusNextPrevChild(bool next)
{
    const bool moved = Control::focusNextPrevChild(next);
    if (QWidget *field = fieldAround(QApplication::focusWidget()))
        bringIntoView(field);
    return moved;
}

void DataRecordManager::wheelEvent(QWheelEvent *event)
{
    event->ignore();
    if (m_scroll->isHidden())
        return;
    // Not handed to the scroll bar: at its end it would hand it back.
    constexpr double Notch = 120; // of the wheel, in the units of its events
    const double lines = event->angleDelta().y() / Notch * QApplication::wheelScrollLines();
    event->setAccepted(scrollBy(Zel::roundToInt32(lines * m_scroll->SmallChange())));
}

bool DataRecordManager::scrollBy(int distance)
{
    const int former = m_scroll->Value();
    m_scroll->setValue(std::clamp(former + distance, m_scroll->Max(), m_scroll->Min()));
    return m_scroll->Value() != former;
}

void DataRecordManager::keyPressEvent(QKeyEvent *event)
{
    if (!isPageKey(event->key()) || m_scroll->isHidden()) {
        Control::keyPressEvent(event);
        return;
    }
    scrollPage(event->key() == Qt::Key_PageDown);
}

void DataRecordManager::scrollPage(bool down)
{
    QWidget *current = fieldAround(QApplication::focusWidget());
    const int former = m_scroll->Value();
    // The place in the view that the focus keeps.
    double at = current && isInView(current) ? Zel::twipsGeometry(current).top + former : 0;
    const bool moved = scrollBy(down ? -m_scroll->LargeChange() : m_scroll->LargeChange());
    if (!current)
        return;
    if (!moved) // nowhere to scroll to: the last field, or the first
        at = down ? std::numeric_limits<qint16>::max() : 0;
    QWidget *nearest = nullptr;
    double least = std::numeric_limits<double>::infinity();
    for (const QPointer<QWidget> &field : std::as_const(m_order)) {
        if (!field || !isInView(field))
            continue;
        const double away = std::abs(Zel::twipsGeometry(field).top + m_scroll->Value() - at);
        if (away < least) {
            nearest = field;
            least = away;
        }
    }
    if (nearest)
        nearest->setFocus(Qt::OtherFocusReason);
}

DataRecordManager::FocusPlace DataRecordManager::focusPlace() const
{
    QWidget *focused = window()->focusWidget();
    QWidget *field = m_frame->isAncestorOf(focused) ? fieldAround(focused) : nullptr;
    if (!field)
        return {};
    FocusPlace place{field->objectName(), focused->objectName(), 0, 0};
    if (const auto *line = qobject_cast<QLineEdit *>(focused)) {
        place.position = line->cursorPosition();
        place.anchor = place.position;
        if (line->hasSelectedText())
            place.anchor = line->selectionStart() == place.position ? line->selectionEnd()
                                                                    : line->selectionStart();
    } else if (const auto *area = qobject_cast<QPlainTextEdit *>(focused)) {
        place.position = area->textCursor().position();
        place.anchor = area->textCursor().anchor();
    }
    return place;
}

void DataRecordManager::restoreFocus(const FocusPlace &place) const
{
    QWidget *field = place.field.isEmpty() ? nullptr : m_widgets.value(place.field).data();
    if (!field)
        return;
    auto *child = field->findChild<QWidget *>(place.child);
    QWidget *focused = child && !place.child.isEmpty() ? child : field;
    if (auto *line = qobject_cast<QLineEdit *>(focused)) {
        line->setSelection(place.anchor, place.position - place.anchor);
        if (place.anchor == place.position)
            line->setCursorPosition(place.position);
    } else if (auto *area = qobject_cast<QPlainTextEdit *>(focused)) {
        QTextCursor cursor = area->textCursor();
        const int last = area->document()->characterCount() - 1;
        cursor.setPosition(std::min(place.anchor, last));
        cursor.setPosition(std::min(place.position, last), QTextCursor::KeepAnchor);
        area->setTextCursor(cursor);
    }
    focused->setFocus(Qt::OtherFocusReason);
}

} // namespace ZelWebServiceControls
