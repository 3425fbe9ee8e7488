// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/wmfplayer.h"

#include "platform/pictures/dib.h"
#include "platform/pictures/metafilepens.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/metafileshapes.h"
#include "platform/pictures/wmffunctions.h"

#include <limits>

namespace Zel {

namespace {

} // namespace

void WmfPlayer::play(quint16 function, QByteArrayView record)
{
    using Part = bool (WmfPlayer::*)(quint16, ByteReader &);
    constexpr Part parts[] = {&WmfPlayer::playState,    &WmfPlayer::playWindow,
                              &WmfPlayer::playObjects,  &WmfPlayer::playShapes,
                              &WmfPlayer::playPolygons, &WmfPlayer::playText,
                              &WmfPlayer::playImages};
    for (const Part part : parts) {
        ByteReader in(record);
        if ((this->*part)(function, in))
            return;
    }
}

bool WmfPlayer::playState(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfSaveState:
        m_canvas.save();
        return true;
    case WmfRestoreState:
        m_canvas.restore(in.s16());
        return true;
    case WmfSetBackgroundMode:
        state().isOpaque = in.u16() == 2;
        return true;
    case WmfSetRasterOperation:
        state().rasterOperation = in.u16();
        return true;
    case WmfSetFillRule:
        state().fillRule = in.u16() == 2 ? Qt::WindingFill : Qt::OddEvenFill;
        return true;
    case WmfSetTextAlign:
        state().textAlign = in.u16();
        return true;
    case WmfSetBackground:
        state().background = readColor(in);
        return true;
    case WmfSetTextColor:
        state().textColor = readColor(in);
        return true;
    case WmfMoveTo:
        m_canvas.moveTo(readReversed(in));
        return true;
    default:
        return false;
    }
}

bool WmfPlayer::playWindow(quint16 function, ByteReader &in)
{
    MetafileMapping &mapping = state().mapping;
    switch (function) {
    case WmfSetWindowOrigin:
        mapping.setWindowOrigin(readReversed(in));
        return true;
    case WmfOffsetWindowOrigin:
        mapping.setWindowOrigin(mapping.windowOrigin() + readReversed(in));
        return true;
    case WmfSetWindowExtent:
        mapping.setWindowExtent(readReversed(in));
        return true;
    case WmfScaleWindowExtent: {
        const double yDivisor = in.s16();
        const double yNumber = in.s16();
        const double xDivisor = in.s16();
        const double xNumber = in.s16();
        const QPointF extent = mapping.windowExtent();
        if (xDivisor != 0 && yDivisor != 0)
            mapping.setWindowExtent(
                {extent.x() * xNumber / xDivisor, extent.y() * yNumber / yDivisor});
        return true;
    }
    default:
        return false;
    }
}

void WmfPlayer::add(const MetafileObject &object)
{
    quint16 index = 0;
    for (const auto &entry : m_objects) {
        if (entry.first != index)
            break;
        ++index;
    }
    if (m_objects.size() < std::numeric_limits<quint16>::max())
        m_objects.emplace(index, object);
}

void WmfPlayer::select(quint16 index)
{
    const auto found = m_objects.find(index);
    if (found == m_objects.end())
        return;
    if (const auto *pen = std::get_if<MetafilePen>(&found->second))
        state().pen = *pen;
    else if (const auto *brush = std::get_if<QBrush>(&found->second))
        state().brush = *brush;
    else if (const auto *font = std::get_if<MetafileFont>(&found->second))
        state().font = *font;
}

bool WmfPlayer::playObjects(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfSelectObject:
        select(in.u16());
        return true;
    case WmfDeleteObject:
        m_objects.erase(in.u16());
        return true;
    case WmfCreatePen: {
        const quint16 style = in.u16();
        const double width = std::abs(double(in.s16()));
        in.skip(2);
        add(penOf(style, width, readColor(in)));
        return true;
    }
    case WmfCreateBrush: {
        const quint16 style = in.u16();
        const QColor color = readColor(in);
        add(brushOf(style, color, in.u16()));
        return true;
    }
    case WmfCreateFont:
        add(readFont(in));
        return true;
    case WmfCreateDibBrush: {
        in.skip(4);
        const QImage pattern = imageOfDib(in.bytes(in.left()), m_limits);
        add(pattern.isNull() ? QBrush(Qt::NoBrush) : QBrush(pattern));
        return true;
    }
    case WmfCreatePatternBrush:
        add(QBrush(Qt::NoBrush));
        return true;
    case WmfCreatePalette:
    case WmfCreateRegion:
        add(MetafileRegion());
        return true;
    default:
        return false;
    }
}

MetafileFont WmfPlayer::readFont(ByteReader &in) const
{
    MetafileFont font;
    font.height = in.s16();
    in.skip(2);
    font.angle = in.s16() / 10.0;
    in.skip(2);
    font.weight = in.s16();
    font.italic = in.u8();
    font.underline = in.u8();
    font.strikeOut = in.u8();
    font.charset = in.u8();
    in.skip(4);
    while (in.left() > 0) {
        const quint8 byte = in.u8();
        if (byte == 0)
            break;
        font.face += QLatin1Char(char(byte));
    }
    return font;
}

} // namespace Zel
