// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/bytereader.h"

#include <QColor>
#include <QPointF>
#include <QRectF>

#include <cmath>

namespace Zel {

/// The small pieces that records of metafiles are made of.

inline double readFloat(ByteReader &in)
{
    const float number = in.little<float>();
    return std::isfinite(number) ? double(number) : 0.0;
}

inline QPointF readPoint(ByteReader &in, bool small = false)
{
    const double x = small ? in.s16() : in.s32();
    return {x, double(small ? in.s16() : in.s32())};
}

/// The 16-bit kind writes its numbers backwards: first y, then x.
inline QPointF readReversed(ByteReader &in)
{
    const double y = in.s16();
    return {double(in.s16()), y};
}

/// Left, top, right and bottom.
inline QRectF readRectangle(ByteReader &in)
{
    const QPointF topLeft = readPoint(in);
    return {topLeft, readPoint(in)};
}

inline QColor readColor(ByteReader &in)
{
    const quint32 color = in.u32();
    return QColor(int(color & 0xFF), int(color >> 8 & 0xFF), int(color >> 16 & 0xFF));
}

} // namespace Zel
