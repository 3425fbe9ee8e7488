// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/pictureplace.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ZelWebControls {

namespace {

/// A grey that is seen on white as on black.
const QColor quiet(128, 128, 128, 110);

/// A square in the middle of the place, an eighth of it free at each side.
QRectF frameIn(const QRect &place)
{
    const qreal edge = std::min(place.width(), place.height()) * 0.75;
    QRectF frame(0, 0, edge, edge * 0.8);
    frame.moveCenter(QRectF(place).center());
    return frame;
}

void paintFrame(QPainter *painter, const QRectF &frame)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(quiet, std::max(1.0, frame.width() / 24)));
    painter->drawRoundedRect(frame, frame.width() / 12, frame.width() / 12);
}

} // namespace

void paintPicture(QPainter *painter, const QRect &place, const QPixmap &picture, qreal opacity)
{
    if (picture.isNull())
        return;
    QSizeF size = picture.deviceIndependentSize();
    if (size.width() > place.width() || size.height() > place.height())
        size.scale(place.size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), size);
    target.moveCenter(QRectF(place).center());
    painter->save();
    painter->setOpacity(painter->opacity() * opacity);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(target, picture, QRectF(picture.rect()));
    painter->restore();
}

void paintPlace(QPainter *painter, const QRect &place)
{
    painter->save();
    const QRectF frame = frameIn(place);
    paintFrame(painter, frame);
    // The sun over mountains that stands for a picture everywhere.
    painter->setPen(Qt::NoPen);
    painter->setBrush(quiet);
    const qreal w = frame.width();
    painter->drawEllipse(frame.topLeft() + QPointF(w * 0.3, w * 0.26), w * 0.08, w * 0.08);
    QPainterPath hills(frame.bottomLeft() + QPointF(w * 0.12, -w * 0.12));
    hills.lineTo(frame.bottomLeft() + QPointF(w * 0.42, -w * 0.44));
    hills.lineTo(frame.bottomLeft() + QPointF(w * 0.6, -w * 0.26));
    hills.lineTo(frame.bottomLeft() + QPointF(w * 0.7, -w * 0.36));
    hills.lineTo(frame.bottomLeft() + QPointF(w * 0.88, -w * 0.12));
    hills.closeSubpath();
    painter->drawPath(hills);
    painter->restore();
}

void paintBrokenPlace(QPainter *painter, const QRect &place)
{
    painter->save();
    const QRectF frame = frameIn(place);
    paintFrame(painter, frame);
    const qreal inset = frame.width() * 0.3;
    const QRectF cross = frame.adjusted(inset, frame.height() * 0.3, -inset, -frame.height() * 0.3);
    painter->drawLine(cross.topLeft(), cross.bottomRight());
    painter->drawLine(cross.topRight(), cross.bottomLeft());
    painter->restore();
}

} // namespace ZelWebControls
