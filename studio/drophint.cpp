// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/drophint.h"

#include "studio/appearance.h"
#include "studio/tintedicon.h"

#include <QPainter>

namespace Studio {

namespace {

constexpr int IconSize = 40;
constexpr int Gap = 10;
constexpr int Around = 24;
constexpr qreal Radius = 8;
constexpr int Cover = 245; // of 255: what lies below shows through a little

} // namespace

DropHint::DropHint(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("dropHint"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont font = this->font();
    font.setPointSizeF(font.pointSizeF() * 1.2);
    setFont(font);
    hide();
}

void DropHint::showOver(const QRect &place, const QString &text, const QString &refusal)
{
    m_isRefusal = !refusal.isEmpty();
    m_text = m_isRefusal ? refusal : text;
    setAccessibleName(m_text);
    setGeometry(place);
    raise();
    show();
    update();
}

void DropHint::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = palette().color(QPalette::Window);
    ground.setAlpha(Cover);
    painter.fillRect(rect(), ground);
    painter.setPen(QPen(m_isRefusal ? mutedText(palette()) : palette().color(QPalette::Highlight),
                        2, Qt::DashLine));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), Radius, Radius);

    const QRect room = rect().adjusted(Around, Around, -Around, -Around);
    const QRect needed =
        painter.boundingRect(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_text);
    const int icon = m_isRefusal ? 0 : IconSize + Gap;
    int y = room.top() + (room.height() - needed.height() - icon) / 2;
    if (!m_isRefusal) {
        tintedIcon(QStringLiteral("upload"))
            .paint(&painter, room.center().x() - IconSize / 2, y, IconSize, IconSize);
        y += icon;
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(room.left(), y, room.width(), needed.height()),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_text);
}

} // namespace Studio
