// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafileshapes.h"

#include <cmath>

namespace Zel {

namespace {

/// The angle of a ray from the middle, as QPainterPath counts: degrees, counter-clockwise with the
/// vertical axis downwards, on the circle that the box is a stretched copy of.
double angleTo(const QRectF &box, const QPointF &point)
{
    const double x = (point.x() - box.center().x()) / box.width();
    const double y = (point.y() - box.center().y()) / box.height();
    return std::atan2(-y, x) * 180 / M_PI;
}

struct Sweep
{
    double from = 0;
    double length = 360;
};

Sweep sweepOf(const QRectF &box, const QPointF &start, const QPointF &end, bool clockwise)
{
    const double from = angleTo(box, start);
    double length = angleTo(box, end) - from;
    if (!clockwise && length <= 0)
        length += 360;
    if (clockwise && length >= 0)
        length -= 360;
    return {from, length};
}

} // namespace

QPainterPath arcShape(const QRectF &given, const QPointF &start, const QPointF &end, bool clockwise)
{
    const QRectF box = given.normalized();
    QPainterPath path;
    if (box.isEmpty())
        return path;
    const Sweep sweep = sweepOf(box, start, end, clockwise);
    path.arcMoveTo(box, sweep.from);
    path.arcTo(box, sweep.from, sweep.length);
    return path;
}

QPainterPath chordShape(const QRectF &box, const QPointF &start, const QPointF &end, bool clockwise)
{
    QPainterPath path = arcShape(box, start, end, clockwise);
    path.closeSubpath();
    return path;
}

QPainterPath pieShape(const QRectF &box, const QPointF &start, const QPointF &end, bool clockwise)
{
    QPainterPath path = arcShape(box, start, end, clockwise);
    if (path.isEmpty())
        return path;
    path.lineTo(box.normalized().center());
    path.closeSubpath();
    return path;
}

QPainterPath polygonShape(const QPolygonF &points, bool closed)
{
    QPainterPath path;
    path.addPolygon(points);
    if (closed)
        path.closeSubpath();
    return path;
}

QPainterPath ellipseShape(const QRectF &box)
{
    QPainterPath path;
    path.addEllipse(box.normalized());
    return path;
}

QPainterPath rectangleShape(const QRectF &box)
{
    QPainterPath path;
    path.addRect(box.normalized());
    return path;
}

QPainterPath roundedShape(const QRectF &box, const QSizeF &corner)
{
    QPainterPath path;
    path.addRoundedRect(box.normalized(), std::abs(corner.width()) / 2,
                        std::abs(corner.height()) / 2);
    return path;
}

} // namespace Zel
