// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emfplayer.h"

#include "platform/pictures/metafilereading.h"

#include <uemf.h>

namespace Zel {

namespace {

constexpr quint32 PlusComment = 0x2B464D45; // "EMF+"

bool isSkipped(quint32 type)
{
    switch (type) {
    case U_EMR_SETBRUSHORGEX:
    case U_EMR_SETMAPPERFLAGS:
    case U_EMR_SETSTRETCHBLTMODE:
    case U_EMR_SETCOLORADJUSTMENT:
    case U_EMR_SETMETARGN:
    case U_EMR_SELECTPALETTE:
    case U_EMR_CREATEPALETTE:
    case U_EMR_SETPALETTEENTRIES:
    case U_EMR_RESIZEPALETTE:
    case U_EMR_REALIZEPALETTE:
    case U_EMR_EXTFLOODFILL:
    case U_EMR_INVERTRGN:
    case U_EMR_PLGBLT:
    case U_EMR_UNDEF69:
    case U_EMR_FLATTENPATH:
    case U_EMR_WIDENPATH:
        return true;
    default:
        return type >= U_EMR_POLYTEXTOUTA && type != U_EMR_SMALLTEXTOUT &&
               type != U_EMR_ALPHABLEND && type != U_EMR_TRANSPARENTBLT &&
               type != U_EMR_GRADIENTFILL;
    }
}

} // namespace

bool EmfPlayer::plays(quint32 type)
{
    return type >= U_EMR_MIN && type <= U_EMR_MAX && !isSkipped(type);
}

void EmfPlayer::play(quint32 type, QByteArrayView record)
{
    if (!plays(type))
        return;
    m_record = record;
    using Part = bool (EmfPlayer::*)(quint32, ByteReader &);
    constexpr Part parts[] = {
        &EmfPlayer::playState,   &EmfPlayer::playMapping,  &EmfPlayer::playObjects,
        &EmfPlayer::playShapes,  &EmfPlayer::playPolygons, &EmfPlayer::playPaths,
        &EmfPlayer::playRegions, &EmfPlayer::playText,     &EmfPlayer::playImages};
    for (const Part part : parts) {
        ByteReader in(record);
        in.skip(8);
        if ((this->*part)(type, in))
            return;
    }
}

bool EmfPlayer::playState(quint32 type, ByteReader &in)
{
    switch (type) {
    case U_EMR_SETBKMODE:
        state().isOpaque = in.u32() == 2;
        return true;
    case U_EMR_SETPOLYFILLMODE:
        state().fillRule = in.u32() == 2 ? Qt::WindingFill : Qt::OddEvenFill;
        return true;
    case U_EMR_SETROP2:
        state().rasterOperation = int(in.u32() & 0xFF);
        return true;
    case U_EMR_SETTEXTALIGN:
        state().textAlign = int(in.u32() & 0xFFFF);
        return true;
    case U_EMR_SETTEXTCOLOR:
        state().textColor = readColor(in);
        return true;
    case U_EMR_SETBKCOLOR:
        state().background = readColor(in);
        return true;
    case U_EMR_SETARCDIRECTION:
        state().arcsClockwise = in.u32() == 2;
        return true;
    case U_EMR_SETMITERLIMIT:
        state().miterLimit = std::max(1U, in.u32());
        return true;
    case U_EMR_SAVEDC:
        m_canvas.save();
        return true;
    case U_EMR_RESTOREDC:
        m_canvas.restore(in.s32());
        return true;
    case U_EMR_MOVETOEX:
        m_canvas.moveTo(readPoint(in));
        return true;
    case U_EMR_COMMENT:
        in.skip(4);
        m_hasPlus = m_hasPlus || in.u32() == PlusComment;
        return true;
    default:
        return false;
    }
}

bool EmfPlayer::playMapping(quint32 type, ByteReader &in)
{
    MetafileMapping &mapping = state().mapping;
    const auto scaled = [&in](const QPointF &extent) {
        const double xNumber = in.s32();
        const double xDivisor = in.s32();
        const double yNumber = in.s32();
        const double yDivisor = in.s32();
        return xDivisor == 0 || yDivisor == 0
                   ? extent
                   : QPointF(extent.x() * xNumber / xDivisor, extent.y() * yNumber / yDivisor);
    };
    switch (type) {
    case U_EMR_SETMAPMODE:
        mapping.setMode(int(in.u32() & 0xFF));
        return true;
    case U_EMR_SETWINDOWEXTEX:
        mapping.setWindowExtent(readPoint(in));
        return true;
    case U_EMR_SETWINDOWORGEX:
        mapping.setWindowOrigin(readPoint(in));
        return true;
    case U_EMR_SETVIEWPORTEXTEX:
        mapping.setViewportExtent(readPoint(in));
        return true;
    case U_EMR_SETVIEWPORTORGEX:
        mapping.setViewportOrigin(readPoint(in));
        return true;
    case U_EMR_SCALEVIEWPORTEXTEX:
        mapping.setViewportExtent(scaled(mapping.viewportExtent()));
        return true;
    case U_EMR_SCALEWINDOWEXTEX:
        mapping.setWindowExtent(scaled(mapping.windowExtent()));
        return true;
    case U_EMR_SETWORLDTRANSFORM:
        setWorld(in, false);
        return true;
    case U_EMR_MODIFYWORLDTRANSFORM:
        setWorld(in, true);
        return true;
    default:
        return false;
    }
}

void EmfPlayer::setWorld(ByteReader &in, bool modify)
{
    constexpr quint32 Identity = 1;
    constexpr quint32 MultiplyBefore = 2;
    constexpr quint32 MultiplyAfter = 3;
    double numbers[6];
    for (double &number : numbers)
        number = readFloat(in);
    const QTransform given(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]);
    const quint32 how = modify ? in.u32() : 4;
    MetafileMapping &mapping = state().mapping;
    if (how == Identity)
        mapping.setWorld(QTransform());
    else if (how == MultiplyBefore)
        mapping.setWorld(given * mapping.world());
    else if (how == MultiplyAfter)
        mapping.setWorld(mapping.world() * given);
    else
        mapping.setWorld(given);
}

} // namespace Zel
