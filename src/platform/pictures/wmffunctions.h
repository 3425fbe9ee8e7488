// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace Zel {

/// The functions of a 16-bit metafile that are played, by their numbers in [MS-WMF] 2.1.1.1. The
/// upper byte is the number of words a record has at the least.
enum WmfFunction : quint16
{
    WmfEnd = 0x0000,
    WmfSaveState = 0x001E,
    WmfCreatePalette = 0x00F7,
    WmfSetBackgroundMode = 0x0102,
    WmfSetRasterOperation = 0x0104,
    WmfSetFillRule = 0x0106,
    WmfRestoreState = 0x0127,
    WmfSelectClipRegion = 0x012C,
    WmfSelectObject = 0x012D,
    WmfSetTextAlign = 0x012E,
    WmfCreateDibBrush = 0x0142,
    WmfDeleteObject = 0x01F0,
    WmfCreatePatternBrush = 0x01F9,
    WmfSetBackground = 0x0201,
    WmfSetTextColor = 0x0209,
    WmfSetWindowOrigin = 0x020B,
    WmfSetWindowExtent = 0x020C,
    WmfOffsetWindowOrigin = 0x020F,
    WmfLineTo = 0x0213,
    WmfMoveTo = 0x0214,
    WmfCreatePen = 0x02FA,
    WmfCreateFont = 0x02FB,
    WmfCreateBrush = 0x02FC,
    WmfPolygon = 0x0324,
    WmfPolyline = 0x0325,
    WmfScaleWindowExtent = 0x0410,
    WmfExcludeClip = 0x0415,
    WmfIntersectClip = 0x0416,
    WmfEllipse = 0x0418,
    WmfRectangle = 0x041B,
    WmfSetPixel = 0x041F,
    WmfTextOut = 0x0521,
    WmfPolyPolygon = 0x0538,
    WmfRoundRectangle = 0x061C,
    WmfPatternBlock = 0x061D,
    WmfCreateRegion = 0x06FF,
    WmfArc = 0x0817,
    WmfPie = 0x081A,
    WmfChord = 0x0830,
    WmfBlock = 0x0922,
    WmfDibBlock = 0x0940,
    WmfExtendedTextOut = 0x0A32,
    WmfStretchBlock = 0x0B23,
    WmfDibStretchBlock = 0x0B41,
    WmfDibToDevice = 0x0D33,
    WmfStretchDib = 0x0F43
};

} // namespace Zel
