// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/dib.h"
#include "platform/pictures/emfplayer.h"
#include "platform/pictures/metafileoperations.h"
#include "platform/pictures/metafilereading.h"

#include <uemf.h>

namespace Zel {

namespace {

constexpr quint32 CopySource = 0x00CC0020;

/// A place and an extent.
QRectF readArea(ByteReader &in)
{
    const QPointF at = readPoint(in);
    const QPointF extent = readPoint(in);
    return {at.x(), at.y(), extent.x(), extent.y()};
}

} // namespace

bool EmfPlayer::playImages(quint32 type, ByteReader &in)
{
    switch (type) {
    case U_EMR_BITBLT:
    case U_EMR_STRETCHBLT:
    case U_EMR_MASKBLT:
    case U_EMR_ALPHABLEND:
    case U_EMR_TRANSPARENTBLT:
        playBlock(type, in);
        return true;
    case U_EMR_SETDIBITSTODEVICE:
        playDeviceImage(in);
        return true;
    case U_EMR_STRETCHDIBITS:
        playStretchedImage(in);
        return true;
    default:
        return false;
    }
}

QImage EmfPlayer::readImage(ByteReader &in, bool keepAlpha, bool *topDown)
{
    ByteReader record(m_record);
    record.seek(in.u32());
    const QByteArrayView header = record.bytes(in.u32());
    record.seek(in.u32());
    const QByteArrayView pixels = record.bytes(in.u32());
    if (!record.isGood() || header.isEmpty())
        return {};
    if (topDown)
        *topDown = DibHeader(header).isTopDown();
    return keepAlpha ? imageOfDibWithAlpha(header, pixels, m_limits)
                     : imageOfDib(header, pixels, m_limits);
}

void EmfPlayer::playBlock(quint32 type, ByteReader &in)
{
    in.skip(16);
    const QRectF to = readArea(in);
    const quint32 operation = in.u32(); // or how to blend, or the colour to leave out
    QRectF from(readPoint(in), to.size());
    in.skip(32);
    const bool blends = type == U_EMR_ALPHABLEND;
    const bool hasOperation = !blends && type != U_EMR_TRANSPARENTBLT;
    if (hasOperation && !usesSource(operation)) {
        m_canvas.fillRectangle(to, operation);
        return;
    }
    QImage image = readImage(in, blends && operation >> 24 == 1);
    if (type == U_EMR_STRETCHBLT || !hasOperation) {
        const QPointF extent = readPoint(in);
        from.setSize({extent.x(), extent.y()});
    }
    if (type == U_EMR_TRANSPARENTBLT && !image.isNull()) {
        const QRgb hole =
            qRgb(int(operation & 0xFF), int(operation >> 8 & 0xFF), int(operation >> 16 & 0xFF));
        image.setAlphaChannel(image.createMaskFromColor(hole, Qt::MaskOutColor));
    }
    m_canvas.drawImage(to, image, from, hasOperation ? operation : CopySource,
                       blends ? (operation >> 16 & 0xFF) / 255.0 : 1);
}

void EmfPlayer::playDeviceImage(ByteReader &in)
{
    in.skip(16);
    const QPointF at = readPoint(in);
    const QRectF from = readArea(in);
    bool topDown = false;
    const QImage image = readImage(in, false, &topDown);
    // One pixel of the image is one of the screen.
    const QTransform screen = state().mapping.toScreen();
    const double x = screen.m11() == 0 ? 1 : std::abs(screen.m11());
    const double y = screen.m22() == 0 ? 1 : std::abs(screen.m22());
    const QRectF to(at, QSizeF(from.width() / x, from.height() / y));
    m_canvas.drawImage(to, image, sectionFromBottom(from, image, topDown), CopySource);
}

void EmfPlayer::playStretchedImage(ByteReader &in)
{
    in.skip(16);
    const QPointF at = readPoint(in);
    const QRectF from = readArea(in);
    bool topDown = false;
    const QImage image = readImage(in, false, &topDown);
    in.skip(4);
    const quint32 operation = in.u32();
    const QPointF extent = readPoint(in);
    const QRectF to(at, QSizeF(extent.x(), extent.y()));
    if (!usesSource(operation))
        m_canvas.fillRectangle(to, operation);
    else
        m_canvas.drawImage(to, image, sectionFromBottom(from, image, topDown), operation);
}

} // namespace Zel
