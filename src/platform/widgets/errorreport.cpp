// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/errorreport.h"

#include "platform/widgets/control.h"
#include "platform/widgets/form.h"
#include "platform/widgets/messageboxes.h"

#include <QCoreApplication>
#include <QMetaMethod>

namespace Zel {

namespace {

/// Emits the error from `widget` when somebody is connected there.
template <typename Emitter>
bool deliver(Emitter *widget, const RuntimeError &error)
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&Emitter::runtimeError);
    if (!widget->hasErrorListener(signal))
        return false;
    emit widget->runtimeError(error);
    return true;
}

} // namespace

void reportRuntimeError(QWidget *origin, const RuntimeError &error)
{
    QWidget *widget = origin;
    while (widget) {
        QWidget *outer = widget->parentWidget();
        if (auto *control = qobject_cast<Control *>(widget)) {
            if (deliver(control, error))
                return;
        } else if (auto *form = qobject_cast<Form *>(widget)) {
            if (deliver(form, error))
                return;
            if (form->caller())
                outer = form->caller();
        }
        widget = outer;
    }
    informUser(origin, QCoreApplication::translate("Zel::Control", "Error %1: %2")
                           .arg(error.number())
                           .arg(error.description()));
}

} // namespace Zel
