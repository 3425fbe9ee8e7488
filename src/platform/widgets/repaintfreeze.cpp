// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/repaintfreeze.h"

namespace Zel {

RepaintFreeze::RepaintFreeze(QWidget *widget)
    : m_widget(widget)
    , m_wasEnabled(widget && widget->updatesEnabled())
{
    if (m_wasEnabled)
        widget->setUpdatesEnabled(false);
}

RepaintFreeze::~RepaintFreeze()
{
    if (m_widget && m_wasEnabled)
        m_widget->setUpdatesEnabled(true);
}

} // namespace Zel
