// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QPointer>
#include <QWidget>

namespace Zel {

/// Holds back repainting of a widget and its children while it lives, and puts the former state
/// back on every way out, also when an error passes through. Guards nest; a widget that dies
/// meanwhile is left alone, and a null widget does nothing.
class ZEL_EXPORT RepaintFreeze
{
public:
    explicit RepaintFreeze(QWidget *widget);
    ~RepaintFreeze();

private:
    Q_DISABLE_COPY_MOVE(RepaintFreeze)

    QPointer<QWidget> m_widget;
    bool m_wasEnabled = false;
};

} // namespace Zel
