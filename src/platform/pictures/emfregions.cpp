// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/metafileshapes.h"

#include <uemf.h>

namespace Zel {

namespace {

enum Combination
{
    And = 1,
    Or = 2,
    Xor = 3,
    Difference = 4,
    Copy = 5
};

/// The rectangles of a region, which are in pixels of the screen. Qt may take its time over tens of
/// thousands of them, and no picture needs them.
QPainterPath readRegion(ByteReader &in)
{
    constexpr quint32 Most = 10'000;
    const qsizetype start = in.position();
    const quint32 headerBytes = in.u32();
    in.skip(4);
    const quint32 count = std::min(in.u32(), Most);
    in.seek(start + qint64(headerBytes));
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (quint32 i = 0; i < count && in.left() >= 16; ++i)
        path.addRect(readRectangle(in).normalized());
    return path;
}

} // namespace

bool EmfPlayer::playRegions(quint32 type, ByteReader &in)
{
    switch (type) {
    case U_EMR_FILLRGN:
    case U_EMR_FRAMERGN: {
        in.skip(20);
        const QBrush brush = brushOf(in.u32());
        in.skip(type == U_EMR_FRAMERGN ? 8 : 0);
        const QPainterPath area = readRegion(in);
        if (type == U_EMR_FILLRGN)
            m_canvas.fillOnScreen(area, brush);
        return true;
    }
    case U_EMR_PAINTRGN:
        in.skip(20);
        m_canvas.fillOnScreen(readRegion(in));
        return true;
    case U_EMR_EXTSELECTCLIPRGN: {
        const quint32 bytes = in.u32();
        const quint32 mode = in.u32();
        if (mode == Copy || mode == Or)
            m_canvas.resetClip();
        // A larger or a scattered area is rare and only ever shows more.
        if (bytes > 0 && mode != Xor && mode != Or && mode != Difference)
            m_canvas.clip(readRegion(in));
        return true;
    }
    case U_EMR_EXCLUDECLIPRECT:
        m_canvas.exclude(m_canvas.map(rectangleShape(readRectangle(in))).boundingRect());
        return true;
    case U_EMR_INTERSECTCLIPRECT:
        m_canvas.clip(m_canvas.map(rectangleShape(readRectangle(in))));
        return true;
    default:
        return false;
    }
}

bool EmfPlayer::playPaths(quint32 type, ByteReader &)
{
    switch (type) {
    case U_EMR_BEGINPATH:
        m_canvas.beginPath();
        return true;
    case U_EMR_ENDPATH:
        m_canvas.endPath();
        return true;
    case U_EMR_CLOSEFIGURE:
        m_canvas.closeFigure();
        return true;
    case U_EMR_ABORTPATH:
        m_canvas.abortPath();
        return true;
    case U_EMR_FILLPATH:
        m_canvas.drawPath(true, false);
        return true;
    case U_EMR_STROKEANDFILLPATH:
        m_canvas.drawPath(true, true);
        return true;
    case U_EMR_STROKEPATH:
        m_canvas.drawPath(false, true);
        return true;
    case U_EMR_SELECTCLIPPATH:
        m_canvas.clipToPath();
        return true;
    default:
        return false;
    }
}

} // namespace Zel
