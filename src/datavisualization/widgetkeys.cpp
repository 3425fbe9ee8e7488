// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/widgetkeys.h"

#include <QAction>
#include <QKeyEvent>
#include <QWidget>

namespace ZelDataVisualization {

namespace {

QAction *actionOf(const QWidget &widget, const QKeyEvent &event)
{
    const QKeySequence key(event.keyCombination());
    for (QAction *action : widget.actions()) {
        if (!action->isSeparator() && action->shortcut().matches(key) == QKeySequence::ExactMatch)
            return action;
    }
    return nullptr;
}

} // namespace

WidgetKeys::WidgetKeys(QWidget *widget)
    : QObject(widget)
    , m_widget(widget)
{
    widget->installEventFilter(this);
}

bool WidgetKeys::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey =
        event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    QAction *action = isKey ? actionOf(*m_widget, *static_cast<QKeyEvent *>(event)) : nullptr;
    if (!action)
        return QObject::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress)
        action->trigger();
    return true;
}

} // namespace ZelDataVisualization
