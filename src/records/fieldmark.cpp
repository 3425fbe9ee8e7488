// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/fieldmark.h"

#include <QPainter>

namespace ZelWebServiceControls {

FieldMark::FieldMark(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void FieldMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().highlight());
    const double radius = width() / 2.0;
    painter.drawRoundedRect(rect(), radius, radius);
}

} // namespace ZelWebServiceControls
