// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/card.h"

#include "studio/appearance.h"

#include <QApplication>
#include <QPainter>

namespace Studio {

namespace {

constexpr qreal Radius = 8;
constexpr double EdgeShare = 0.16;
constexpr double RaisedShare = 0.03;

} // namespace

Card::Card(QWidget *parent)
    : QWidget(parent)
{
}

QColor Card::ground(const QPalette &palette)
{
    if (!isDark(palette))
        return palette.color(QPalette::Base);
    // On dark what is nearer is lighter.
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), RaisedShare);
}

void Card::paintEvent(QPaintEvent *)
{
    const QPalette palette = QApplication::palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), EdgeShare));
    painter.setBrush(ground(palette));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    if (!hasFocus())
        return;
    painter.setPen(QPen(palette.color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius, Radius);
}

} // namespace Studio
