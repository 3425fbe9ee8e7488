// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/hourglass.h"

namespace Zel {

Hourglass::Hourglass(QWidget *widget)
    : m_widget(widget)
    , m_hadCursor(widget->testAttribute(Qt::WA_SetCursor))
    , m_former(widget->cursor())
{
    widget->setCursor(Qt::WaitCursor);
}

Hourglass::~Hourglass()
{
    if (!m_widget)
        return;
    if (m_hadCursor)
        m_widget->setCursor(m_former);
    else
        m_widget->unsetCursor();
}

} // namespace Zel
