// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafileoperations.h"

#include <array>

namespace Zel {

namespace {

quint8 codeOf(quint32 operation)
{
    return quint8(operation >> 16);
}

} // namespace

QPainter::CompositionMode modeOfBinaryOperation(int operation)
{
    // In the order of R2_BLACK, R2_NOTMERGEPEN, ... R2_WHITE.
    constexpr std::array modes{
        QPainter::RasterOp_ClearDestination,        QPainter::RasterOp_NotSourceAndNotDestination,
        QPainter::RasterOp_NotSourceAndDestination, QPainter::RasterOp_NotSource,
        QPainter::RasterOp_SourceAndNotDestination, QPainter::RasterOp_NotDestination,
        QPainter::RasterOp_SourceXorDestination,    QPainter::RasterOp_NotSourceOrNotDestination,
        QPainter::RasterOp_SourceAndDestination,    QPainter::RasterOp_NotSourceXorDestination,
        QPainter::CompositionMode_Destination,      QPainter::RasterOp_NotSourceOrDestination,
        QPainter::CompositionMode_SourceOver,       QPainter::RasterOp_SourceOrNotDestination,
        QPainter::RasterOp_SourceOrDestination,     QPainter::RasterOp_SetDestination};
    if (operation < 1 || operation > int(modes.size()))
        return QPainter::CompositionMode_SourceOver;
    return modes[size_t(operation - 1)];
}

QPainter::CompositionMode modeOfTernaryOperation(quint32 operation)
{
    switch (codeOf(operation)) {
    case 0x00: // BLACKNESS
        return QPainter::RasterOp_ClearDestination;
    case 0xFF: // WHITENESS
        return QPainter::RasterOp_SetDestination;
    case 0x55: // DSTINVERT
        return QPainter::RasterOp_NotDestination;
    case 0xAA: // leaves everything as it is
        return QPainter::CompositionMode_Destination;
    case 0x88: // SRCAND
    case 0xA0: // the same with the brush
        return QPainter::RasterOp_SourceAndDestination;
    case 0xEE: // SRCPAINT
    case 0xFA:
        return QPainter::RasterOp_SourceOrDestination;
    case 0x66: // SRCINVERT
    case 0x5A: // PATINVERT
        return QPainter::RasterOp_SourceXorDestination;
    case 0x44: // SRCERASE
        return QPainter::RasterOp_SourceAndNotDestination;
    case 0x33: // NOTSRCCOPY
    case 0x0F:
        return QPainter::RasterOp_NotSource;
    case 0x11: // NOTSRCERASE
        return QPainter::RasterOp_NotSourceAndNotDestination;
    case 0x22:
        return QPainter::RasterOp_NotSourceAndDestination;
    case 0xBB: // MERGEPAINT
        return QPainter::RasterOp_NotSourceOrDestination;
    default:
        return QPainter::CompositionMode_SourceOver;
    }
}

bool usesPattern(quint32 operation)
{
    const quint8 code = codeOf(operation);
    return ((code >> 4) & 0x0F) != (code & 0x0F);
}

bool usesSource(quint32 operation)
{
    const quint8 code = codeOf(operation);
    return ((code >> 2) & 0x33) != (code & 0x33);
}

} // namespace Zel
