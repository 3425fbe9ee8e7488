// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QCursor>
#include <QPointer>
#include <QWidget>

namespace Zel {

/// Shows the hourglass pointer over a widget while it lives and brings the former pointer back on
/// every way out. Survives the widget being destroyed meanwhile.
class ZEL_EXPORT Hourglass
{
public:
    explicit Hourglass(QWidget *widget);
    ~Hourglass();
    Q_DISABLE_COPY_MOVE(Hourglass)

private:
    QPointer<QWidget> m_widget;
    bool m_hadCursor;
    QCursor m_former;
};

} // namespace Zel
