// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/waitnotice.h"

#include <QLabel>

namespace Studio {

namespace {

constexpr int DistanceFromTop = 14;

} // namespace

WaitNotice::WaitNotice(QWidget *window)
    : m_window(window)
{
}

WaitNotice::~WaitNotice() = default;

QLabel *WaitNotice::label()
{
    if (!m_label) {
        m_label = new QLabel(m_window);
        m_label->setObjectName(QStringLiteral("waitNotice"));
        m_label->setAutoFillBackground(true);
        m_label->setBackgroundRole(QPalette::ToolTipBase);
        m_label->setForegroundRole(QPalette::ToolTipText);
        m_label->setFrameShape(QFrame::StyledPanel);
        m_label->setContentsMargins(14, 7, 14, 7);
    }
    return m_label;
}

void WaitNotice::waiting(std::chrono::milliseconds waited) noexcept
{
    if (!m_window || !m_window->isVisible())
        return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
    label()->setText(seconds < 2 ? QWidget::tr("Waiting for the service…")
                                 : QWidget::tr("Waiting for the service… %1 s").arg(seconds));
    label()->adjustSize();
    label()->move((m_window->width() - label()->width()) / 2, DistanceFromTop);
    label()->show();
    label()->raise();
    label()->repaint();
}

void WaitNotice::finished() noexcept
{
    if (m_label)
        m_label->hide();
}

bool WaitNotice::isShown() const
{
    return m_label && m_label->isVisible();
}

} // namespace Studio
