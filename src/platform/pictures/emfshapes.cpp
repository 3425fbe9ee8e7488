// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/metafileshapes.h"

#include <QLinearGradient>

#include <uemf.h>

namespace Zel {

namespace {

constexpr qsizetype PointBytes = 8;
constexpr qsizetype SmallPointBytes = 4;

/// A count that a record states, as far as the record has room for that many pieces.
qsizetype roomFor(const ByteReader &in, quint32 count, qsizetype bytes)
{
    return std::min<qsizetype>(count, in.left() / bytes);
}

QPolygonF readPoints(ByteReader &in, quint32 count, bool small)
{
    const qsizetype room = roomFor(in, count, small ? SmallPointBytes : PointBytes);
    QPolygonF points;
    points.reserve(room);
    for (qsizetype i = 0; i < room; ++i)
        points << readPoint(in, small);
    return points;
}

/// Bezier curves through every third point, beginning at the first.
QPainterPath curves(const QPolygonF &points)
{
    QPainterPath path;
    if (points.isEmpty())
        return path;
    path.moveTo(points.first());
    for (qsizetype i = 1; i + 2 < points.size(); i += 3)
        path.cubicTo(points[i], points[i + 1], points[i + 2]);
    return path;
}

bool isSmall(quint32 type)
{
    return type >= U_EMR_POLYBEZIER16 && type <= U_EMR_POLYDRAW16;
}

} // namespace

bool EmfPlayer::playShapes(quint32 type, ByteReader &in)
{
    const bool clockwise = state().arcsClockwise;
    switch (type) {
    case U_EMR_SETPIXELV: {
        const QPointF at = readPoint(in);
        m_canvas.setPixel(at, readColor(in));
        return true;
    }
    case U_EMR_ELLIPSE:
        m_canvas.draw(ellipseShape(readRectangle(in)), true, true);
        return true;
    case U_EMR_RECTANGLE:
        m_canvas.draw(rectangleShape(readRectangle(in)), true, true);
        return true;
    case U_EMR_ROUNDRECT: {
        const QRectF box = readRectangle(in);
        const QPointF corner = readPoint(in);
        m_canvas.draw(roundedShape(box, {corner.x(), corner.y()}), true, true);
        return true;
    }
    case U_EMR_ARC:
    case U_EMR_ARCTO:
    case U_EMR_CHORD:
    case U_EMR_PIE: {
        const QRectF box = readRectangle(in);
        const QPointF start = readPoint(in);
        const QPointF end = readPoint(in);
        if (type == U_EMR_ARC) {
            m_canvas.draw(arcShape(box, start, end, clockwise), false, true);
        } else if (type == U_EMR_ARCTO) {
            QPainterPath path(state().position);
            path.connectPath(arcShape(box, start, end, clockwise));
            m_canvas.drawFromPosition(path);
        } else {
            m_canvas.draw(type == U_EMR_CHORD ? chordShape(box, start, end, clockwise)
                                              : pieShape(box, start, end, clockwise),
                          true, true);
        }
        return true;
    }
    case U_EMR_ANGLEARC: {
        const QPointF center = readPoint(in);
        const double radius = in.u32();
        const double start = readFloat(in);
        const QRectF box(center.x() - radius, center.y() - radius, 2 * radius, 2 * radius);
        QPainterPath path(state().position);
        path.arcTo(box, start, std::clamp(readFloat(in), -360.0, 360.0));
        m_canvas.drawFromPosition(path);
        return true;
    }
    case U_EMR_LINETO: {
        QPainterPath path(state().position);
        path.lineTo(readPoint(in));
        m_canvas.drawFromPosition(path);
        return true;
    }
    case U_EMR_GRADIENTFILL:
        playGradient(in);
        return true;
    default:
        return false;
    }
}

bool EmfPlayer::playPolygons(quint32 type, ByteReader &in)
{
    const bool small = isSmall(type);
    in.skip(16); // the bounds
    const auto points = [&] {
        const quint32 count = in.u32();
        return readPoints(in, count, small);
    };
    const auto fromPosition = [&] { return QPolygonF{state().position} + points(); };
    switch (type) {
    case U_EMR_POLYBEZIER:
    case U_EMR_POLYBEZIER16:
        m_canvas.draw(curves(points()), false, true);
        return true;
    case U_EMR_POLYGON:
    case U_EMR_POLYGON16:
        m_canvas.draw(polygonShape(points(), true), true, true);
        return true;
    case U_EMR_POLYLINE:
    case U_EMR_POLYLINE16:
        m_canvas.draw(polygonShape(points(), false), false, true);
        return true;
    case U_EMR_POLYBEZIERTO:
    case U_EMR_POLYBEZIERTO16:
        m_canvas.drawFromPosition(curves(fromPosition()));
        return true;
    case U_EMR_POLYLINETO:
    case U_EMR_POLYLINETO16:
        m_canvas.drawFromPosition(polygonShape(fromPosition(), false));
        return true;
    case U_EMR_POLYPOLYLINE:
    case U_EMR_POLYPOLYLINE16:
    case U_EMR_POLYPOLYGON:
    case U_EMR_POLYPOLYGON16:
        playPolyPolygon(in, small, type == U_EMR_POLYPOLYGON || type == U_EMR_POLYPOLYGON16);
        return true;
    case U_EMR_POLYDRAW:
    case U_EMR_POLYDRAW16:
        playPolyDraw(in, small);
        return true;
    default:
        return false;
    }
}

void EmfPlayer::playPolyPolygon(ByteReader &in, bool small, bool closed)
{
    const quint32 polygons = in.u32();
    in.skip(4);
    const qsizetype room = roomFor(in, polygons, 4);
    QList<quint32> counts;
    counts.reserve(room);
    for (qsizetype i = 0; i < room; ++i)
        counts << in.u32();
    QPainterPath path;
    for (const quint32 count : std::as_const(counts))
        path.addPath(polygonShape(readPoints(in, count, small), closed));
    m_canvas.draw(path, closed, true);
}

void EmfPlayer::playPolyDraw(ByteReader &in, bool small)
{
    constexpr quint8 Close = 1;
    constexpr quint8 Line = 2;
    constexpr quint8 Curve = 4;
    constexpr quint8 Move = 6;
    const quint32 count = in.u32();
    const QPolygonF points = readPoints(in, count, small);
    QPainterPath path(state().position);
    QPolygonF curve;
    for (const QPointF &point : points) {
        const quint8 kind = in.u8();
        if ((kind & Move) == Move)
            path.moveTo(point);
        else if (kind & Line)
            path.lineTo(point);
        else if (kind & Curve)
            curve << point;
        if (curve.size() == 3) {
            path.cubicTo(curve[0], curve[1], curve[2]);
            curve.clear();
        }
        if (kind & Close)
            path.closeSubpath();
    }
    m_canvas.drawFromPosition(path);
}

void EmfPlayer::playGradient(ByteReader &in)
{
    struct Corner
    {
        QPointF at;
        QColor color;
    };

    constexpr quint32 Vertical = 1;
    constexpr quint32 Triangles = 2;
    in.skip(16);
    const quint32 corners = in.u32();
    const quint32 areas = in.u32();
    const quint32 mode = in.u32();
    QList<Corner> all;
    for (qsizetype i = roomFor(in, corners, 16); i > 0; --i) {
        Corner corner{readPoint(in), {}};
        const int red = in.u16() >> 8;
        const int green = in.u16() >> 8;
        corner.color = QColor(red, green, in.u16() >> 8);
        in.skip(2);
        all << corner;
    }
    const qsizetype indices = mode == Triangles ? 3 : 2;
    for (qsizetype i = roomFor(in, areas, 4 * indices); i > 0; --i) {
        const Corner first = all.value(in.u32());
        const Corner second = all.value(in.u32());
        // A triangle is filled with the colours of its first two corners.
        QPolygonF outline{first.at, second.at};
        if (mode == Triangles)
            outline << all.value(in.u32()).at;
        else
            outline = QPolygonF(QRectF(first.at, second.at).normalized());
        QPointF end = second.at;
        if (mode != Triangles)
            end = mode == Vertical ? QPointF(first.at.x(), second.at.y())
                                   : QPointF(second.at.x(), first.at.y());
        QLinearGradient gradient(m_canvas.map(first.at), m_canvas.map(end));
        gradient.setColorAt(0, first.color);
        gradient.setColorAt(1, second.color);
        m_canvas.fillOnScreen(m_canvas.map(polygonShape(outline, true)), gradient);
    }
}

} // namespace Zel
