// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/errorreport.h"

#include "platform/widgets/control.h"
#include "platform/widgets/form.h"
#include "platform/widgets/messageboxes.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QPointer>

#include <algorithm>
#include <memory>

namespace Zel {

namespace {

/// Emits the error from `widget` when somebody hears it there.
template <typename Emitter>
bool deliver(Emitter *widget, const RuntimeError &error)
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&Emitter::runtimeError);
    if (!widget || widget->signalsBlocked() || !widget->hasErrorListener(signal))
        return false;
    emit widget->runtimeError(error);
    return true;
}

/// Where an error goes that nobody heard at `widget`.
QWidget *outward(const QWidget *widget)
{
    const auto *form = qobject_cast<const Form *>(widget);
    return form && form->caller() ? form->caller() : widget->parentWidget();
}

} // namespace

void reportRuntimeError(QWidget *origin, const RuntimeError &error)
{
    for (QWidget *widget = origin; widget; widget = outward(widget)) {
        if (deliver(qobject_cast<Control *>(widget), error) ||
            deliver(qobject_cast<Form *>(widget), error))
            return;
    }
    informUser(origin, QCoreApplication::translate("Zel::Control", "Error %1: %2")
                           .arg(error.number())
                           .arg(error.description()));
}

void guardUserAction(QWidget *origin, const std::function<void()> &action)
{
    QList<QPointer<QWidget>> route;
    for (QWidget *widget = origin; widget; widget = outward(widget))
        route << widget;
    std::unique_ptr<RuntimeError> caught;
    try {
        action();
    } catch (const RuntimeError &error) {
        caught.reset(error.clone());
    }
    if (!caught)
        return;
    // Reported outside the handler: a host that shows a dialog must not do so inside a catch.
    const auto alive = std::find_if(route.cbegin(), route.cend(),
                                    [](const QPointer<QWidget> &widget) { return !!widget; });
    reportRuntimeError(alive == route.cend() ? nullptr : alive->data(), *caught);
}

} // namespace Zel
