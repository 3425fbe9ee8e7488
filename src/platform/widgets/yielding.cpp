// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/yielding.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QEventLoop>
#include <QPointer>
#include <QThread>

namespace Zel {

namespace {

/// While it exists nothing a person begins reaches any widget; what was begun before may end.
class InputBarrier : public QObject
{
public:
    InputBarrier() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::NonClientAreaMouseButtonPress:
        case QEvent::KeyPress:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TabletPress:
        case QEvent::NativeGesture:
        case QEvent::DragEnter:
        case QEvent::Drop:
            return true;
        default:
            return false;
        }
    }
};

/// How long to sleep when there is nothing to handle: painting that looks immediate.
constexpr unsigned long NapMilliseconds = 4;

} // namespace

bool yieldOnce(QObject *self)
{
    const QPointer<QObject> alive(self);
    QCoreApplication::processEvents();
    return !alive.isNull();
}

bool waitWhilePainting(QObject *self, std::chrono::milliseconds limit,
                       const std::function<bool()> &done)
{
    const QPointer<QObject> alive(self);
    const InputBarrier barrier;
    const QDeadlineTimer deadline(limit);
    while (!done() && !deadline.hasExpired()) {
        QThread::msleep(NapMilliseconds);
        QCoreApplication::processEvents(QEventLoop::X11ExcludeTimers |
                                        QEventLoop::ExcludeSocketNotifiers);
        if (!alive)
            return false;
    }
    return true;
}

} // namespace Zel
