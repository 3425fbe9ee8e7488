// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/inputgate.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>

namespace Studio {

namespace {

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

} // namespace

InputGate::InputGate(const QList<QWidget *> &allowed, const std::function<void()> &giveUp)
    : m_allowed(allowed)
    , m_giveUp(giveUp)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool InputGate::isAllowed(const QObject *object) const
{
    return std::any_of(m_allowed.begin(), m_allowed.end(),
                       [object](const QWidget *widget) { return widget == object; });
}

bool InputGate::eventFilter(QObject *watched, QEvent *event)
{
    // Windows pass what they get on to their widgets; shortcuts come to no widget at all.
    const bool isForWidget = watched->isWidgetType() || event->type() == QEvent::Shortcut;
    if (!isForWidget || !isInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        m_giveUp();
        return true;
    }
    if (isAllowed(watched))
        return false;
    event->ignore(); // nobody takes what is being dragged
    return true;
}

} // namespace Studio
