// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/yielding.h"

#include <QCoreApplication>
#include <QPointer>

namespace Zel {

bool yieldOnce(QObject *self)
{
    const QPointer<QObject> alive(self);
    QCoreApplication::processEvents();
    return !alive.isNull();
}

} // namespace Zel
