// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/waitnotice.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPainter>

namespace Studio {

namespace {

constexpr int DistanceFromTop = 14;

/// A pill in the inverse of the window's colours, which nothing on a page is drawn in.
class Pill : public QLabel
{
public:
    explicit Pill(QWidget *parent)
        : QLabel(parent)
    {
        setForegroundRole(QPalette::Window);
        setContentsMargins(16, 7, 16, 7);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::WindowText));
        painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
        painter.end();
        QLabel::paintEvent(event);
    }
};

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
        m_label = new Pill(m_window);
        m_label->setObjectName(QStringLiteral("waitNotice"));
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
