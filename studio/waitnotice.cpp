// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/waitnotice.h"

#include <QCoreApplication>
#include <QLabel>

namespace Studio {

namespace {

constexpr int DistanceFromTop = 14;

QString noticeText(std::chrono::seconds waited)
{
    if (waited.count() < 2)
        return QCoreApplication::translate("Studio::WaitNotice", "Waiting for the service…");
    return QCoreApplication::translate("Studio::WaitNotice", "Waiting for the service… %1 s")
        .arg(waited.count());
}

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
    QLabel *notice = label();
    notice->setText(noticeText(std::chrono::duration_cast<std::chrono::seconds>(waited)));
    notice->adjustSize();
    notice->move((m_window->width() - notice->width()) / 2, DistanceFromTop);
    notice->show();
    notice->raise();
    notice->repaint();
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
