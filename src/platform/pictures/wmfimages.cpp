// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/dib.h"
#include "platform/pictures/metafileoperations.h"
#include "platform/pictures/metafilereading.h"
#include "platform/pictures/wmffunctions.h"
#include "platform/pictures/wmfplayer.h"

namespace Zel {

namespace {

constexpr quint32 CopySource = 0x00CC0020;

/// Height, width, y, x.
QRectF readReversedArea(ByteReader &in)
{
    const QPointF extent = readReversed(in);
    const QPointF at = readReversed(in);
    return {at.x(), at.y(), extent.x(), extent.y()};
}

bool stretches(quint16 function)
{
    return function == WmfStretchBlock || function == WmfDibStretchBlock ||
           function == WmfStretchDib;
}

/// Whether a record has no image, only a brush: such records have exactly the words that the
/// function's upper byte counts.
bool isBare(quint16 function, const ByteReader &in)
{
    return function != WmfStretchDib && in.size() == (function >> 8) * 2;
}

bool isDib(quint16 function)
{
    return function != WmfBlock && function != WmfStretchBlock;
}

} // namespace

bool WmfPlayer::playImages(quint16 function, ByteReader &in)
{
    switch (function) {
    case WmfPatternBlock: {
        const quint32 operation = in.u32();
        m_canvas.fillRectangle(readReversedArea(in), operation);
        return true;
    }
    case WmfBlock:
    case WmfDibBlock:
    case WmfStretchBlock:
    case WmfDibStretchBlock:
    case WmfStretchDib:
        playBlock(function, in);
        return true;
    case WmfDibToDevice:
        playDibToDevice(in);
        return true;
    default:
        return false;
    }
}

void WmfPlayer::playBlock(quint16 function, ByteReader &in)
{
    const quint32 operation = in.u32();
    const bool bare = isBare(function, in);
    in.skip(function == WmfStretchDib ? 2 : 0); // what the colours are
    QRectF from;
    if (stretches(function)) {
        from = readReversedArea(in);
    } else {
        from.moveTo(readReversed(in));
    }
    in.skip(bare ? 2 : 0);
    const QRectF to = readReversedArea(in);
    if (!stretches(function))
        from.setSize(to.size());
    if (bare || !usesSource(operation)) {
        if (!usesSource(operation))
            m_canvas.fillRectangle(to, operation);
        return;
    }
    if (!isDib(function))
        return; // bits as some screen of the past kept them
    const QByteArrayView dib = in.bytes(in.left());
    const QImage image = imageOfDib(dib, m_limits);
    const bool fromTop = function != WmfStretchDib || DibHeader(dib).isTopDown();
    m_canvas.drawImage(to, image, sectionFromBottom(from, image, fromTop), operation);
}

void WmfPlayer::playDibToDevice(ByteReader &in)
{
    in.skip(6);
    const QPointF source = readReversed(in);
    const QRectF to = readReversedArea(in);
    const QByteArrayView dib = in.bytes(in.left());
    const QImage image = imageOfDib(dib, m_limits);
    const QRectF from(source, to.size());
    m_canvas.drawImage(to, image, sectionFromBottom(from, image, DibHeader(dib).isTopDown()),
                       CopySource);
}

} // namespace Zel
