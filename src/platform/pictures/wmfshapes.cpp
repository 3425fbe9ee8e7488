// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilecharset.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/metafileshapes.h"
#include "platform/pictures/wmffunctions.h"
#include "platform/pictures/wmfplayer.h"

namespace Zel {

namespace {

/// Bottom, right, top, left.
QRectF readReversedBox(ByteReader &in)
{
    const QPointF bottomRight = readReversed(in);
    return {readReversed(in), bottomRight};
}

QPolygonF readPoints(ByteReader &in, int count)
{
    QPolygonF points;
    for (qsizetype i = std::min<qsizetype>(count, in.left() / 4); i > 0; --i)
        points << readPoint(in, true);
    return points;
}

} // namespace

bool WmfPlayer::playShapes(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfRectangle:
        m_canvas.draw(rectangleShape(readReversedBox(in)), true, true);
        return true;
    case WmfRoundRectangle: {
        const QPointF corner = readReversed(in);
        m_canvas.draw(roundedShape(readReversedBox(in), {corner.x(), corner.y()}), true, true);
        return true;
    }
    case WmfEllipse:
        m_canvas.draw(ellipseShape(readReversedBox(in)), true, true);
        return true;
    case WmfArc:
    case WmfPie:
    case WmfChord: {
        const QPointF end = readReversed(in);
        const QPointF start = readReversed(in);
        const QRectF box = readReversedBox(in);
        if (function == WmfArc)
            m_canvas.draw(arcShape(box, start, end, false), false, true);
        else if (function == WmfPie)
            m_canvas.draw(pieShape(box, start, end, false), true, true);
        else
            m_canvas.draw(chordShape(box, start, end, false), true, true);
        return true;
    }
    case WmfSetPixel: {
        const QColor color = readColor(in);
        m_canvas.setPixel(readReversed(in), color);
        return true;
    }
    case WmfIntersectClip:
        m_canvas.clip(m_canvas.map(rectangleShape(readReversedBox(in))));
        return true;
    case WmfExcludeClip:
        m_canvas.exclude(m_canvas.map(rectangleShape(readReversedBox(in))).boundingRect());
        return true;
    case WmfSelectClipRegion:
        m_canvas.resetClip();
        return true;
    default:
        return false;
    }
}

bool WmfPlayer::playPolygons(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfLineTo: {
        QPainterPath path(state().position);
        path.lineTo(readReversed(in));
        m_canvas.drawFromPosition(path);
        return true;
    }
    case WmfPolygon:
    case WmfPolyline: {
        const int count = in.u16();
        const bool closed = function == WmfPolygon;
        m_canvas.draw(polygonShape(readPoints(in, count), closed), closed, true);
        return true;
    }
    case WmfPolyPolygon: {
        QList<int> counts;
        for (int i = in.u16(); i > 0 && in.isGood(); --i)
            counts << in.u16();
        QPainterPath path;
        for (const int count : std::as_const(counts))
            path.addPath(polygonShape(readPoints(in, count), true));
        m_canvas.draw(path, true, true);
        return true;
    }
    default:
        return false;
    }
}

bool WmfPlayer::playText(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfTextOut: {
        const int count = in.u16();
        const QString text = textOfCharset(in.bytes(count), state().font.charset);
        in.skip(count % 2);
        m_canvas.drawText(readReversed(in), text, 0);
        return true;
    }
    case WmfExtendedTextOut:
        playExtendedText(in);
        return true;
    default:
        return false;
    }
}

void WmfPlayer::playExtendedText(ByteReader &in)
{
    constexpr quint16 Opaque = 0x02;
    constexpr quint16 Clipped = 0x04;
    constexpr quint16 GlyphNumbers = 0x10;
    const QPointF at = readReversed(in);
    const int count = in.u16();
    const quint16 options = in.u16();
    QRectF box;
    if (options & (Opaque | Clipped)) {
        const QPointF topLeft = readPoint(in, true);
        box = QRectF(topLeft, readPoint(in, true));
    }
    if (options & Opaque)
        m_canvas.fillOnScreen(m_canvas.map(rectangleShape(box)), state().background);
    if (options & GlyphNumbers)
        return; // numbers of letters in a font that is not here
    const QString text = textOfCharset(in.bytes(count), state().font.charset);
    in.skip(count % 2);
    double width = 0;
    if (in.left() >= qsizetype(count) * 2) {
        for (int i = 0; i < count; ++i)
            width += in.s16();
    }
    m_canvas.save();
    if (options & Clipped)
        m_canvas.clip(m_canvas.map(rectangleShape(box)));
    m_canvas.drawText(at, text, width);
    const QPointF position = state().position;
    m_canvas.restore(-1);
    state().position = position;
}

} // namespace Zel
