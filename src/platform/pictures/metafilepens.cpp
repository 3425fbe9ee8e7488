// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilepens.h"

#include <array>

namespace Zel {

MetafilePen penOf(quint32 style, double width, const QColor &color)
{
    // PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT, PS_NULL, PS_INSIDEFRAME, PS_USERSTYLE,
    // PS_ALTERNATE
    constexpr std::array styles{Qt::SolidLine,   Qt::DashLine,       Qt::DotLine,
                                Qt::DashDotLine, Qt::DashDotDotLine, Qt::NoPen,
                                Qt::SolidLine,   Qt::SolidLine,      Qt::DotLine};
    constexpr std::array caps{Qt::RoundCap, Qt::SquareCap, Qt::FlatCap};
    constexpr std::array joins{Qt::RoundJoin, Qt::BevelJoin, Qt::MiterJoin};
    const auto pick = [](const auto &from, quint32 index) {
        return index < from.size() ? from[index] : from[0];
    };
    MetafilePen pen;
    pen.style = pick(styles, style & 0x0F);
    pen.cap = pick(caps, style >> 8 & 0x0F);
    pen.join = pick(joins, style >> 12 & 0x0F);
    pen.width = width;
    pen.color = color;
    return pen;
}

QBrush brushOf(quint32 style, const QColor &color, quint32 hatch)
{
    // Horizontal, vertical, falling, rising, both straight, both slanted.
    constexpr std::array hatches{Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                 Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
    constexpr quint32 None = 1;
    constexpr quint32 Hatched = 2;
    if (style == None)
        return Qt::NoBrush;
    if (style == Hatched && hatch < hatches.size())
        return {color, hatches[hatch]};
    return color;
}

} // namespace Zel
