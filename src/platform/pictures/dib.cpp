// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/dib.h"

#include "platform/pictures/bytereader.h"
#include "platform/pictures/picturesize.h"
#include "platform/pictures/rasterpicture.h"

#include <cstdlib>
#include <limits>

namespace Zel {

namespace {

constexpr quint32 CoreHeader = 12;
constexpr quint32 InfoHeader = 40;

bool depthFits(int depth, quint32 compression)
{
    switch (compression) {
    case DibHeader::Plain:
        return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
    case DibHeader::Rle8:
        return depth == 8;
    case DibHeader::Rle4:
        return depth == 4;
    case DibHeader::BitFields:
    case DibHeader::AlphaBitFields:
        return depth == 16 || depth == 32;
    case DibHeader::Jpeg:
    case DibHeader::Png:
        return true;
    default:
        return false;
    }
}

/// A height may be negative; the least number there is has no positive twin.
int positive(qint32 height)
{
    return height == std::numeric_limits<qint32>::min() ? 0 : std::abs(height);
}

QByteArray bmpFile(QByteArrayView header, QByteArrayView pixels)
{
    QByteArray file("BM");
    const auto put = [&file](quint32 number) {
        const quint32 little = qToLittleEndian(number);
        file.append(reinterpret_cast<const char *>(&little), sizeof little);
    };
    put(quint32(14 + header.size() + pixels.size()));
    put(0);
    put(quint32(14 + header.size()));
    file.append(header.data(), header.size());
    file.append(pixels.data(), pixels.size());
    return file;
}

} // namespace

DibHeader::DibHeader(QByteArrayView bytes)
{
    ByteReader in(bytes);
    const quint32 size = in.u32();
    quint32 colors = 0;
    if (size == CoreHeader) {
        const int width = in.u16();
        m_size = {width, in.u16()};
        m_planes = in.u16();
        m_depth = in.u16();
    } else if (size >= InfoHeader && size <= 1024) {
        const qint32 width = in.s32();
        const qint32 height = in.s32();
        m_size = {width, positive(height)};
        m_topDown = height < 0;
        m_planes = in.u16();
        m_depth = in.u16();
        m_compression = in.u32();
        in.skip(12);
        colors = in.u32();
    }
    m_headerBytes = size;
    if (m_depth <= 8 && m_depth > 0 && (colors == 0 || colors > (1U << m_depth)))
        colors = 1U << m_depth;
    m_colorBytes = qint64(colors) * (size == CoreHeader ? 3 : 4);
    if (size == InfoHeader && m_compression == BitFields)
        m_maskBytes = 12;
    if (size == InfoHeader && m_compression == AlphaBitFields)
        m_maskBytes = 16;
    if (!in.isGood())
        m_size = {};
}

bool DibHeader::isSound(const PictureLimits &limits) const
{
    return !m_size.isEmpty() && m_planes == 1 && depthFits(m_depth, m_compression) &&
           isWithin(m_size, limits);
}

qint64 DibHeader::rowBytes(qint64 rows, int depth) const
{
    return (qint64(m_size.width()) * depth + 31) / 32 * 4 * rows;
}

bool runLengthEnds(QByteArrayView pixels, bool fourBits)
{
    ByteReader in(pixels);
    while (in.left() >= 2) {
        const quint8 count = in.u8();
        const quint8 value = in.u8();
        if (count > 0 || value == 0)
            continue;
        if (value == 1)
            return true;
        if (value == 2) {
            in.skip(2);
        } else {
            const int bytes = fourBits ? (value + 1) / 2 : value;
            in.skip(bytes + bytes % 2);
        }
        if (!in.isGood())
            return false;
    }
    return false;
}

QImage imageOfDib(QByteArrayView header, QByteArrayView pixels, const PictureLimits &limits)
{
    const DibHeader dib(header);
    if (!dib.isSound(limits))
        return {};
    if (dib.compression() == DibHeader::Jpeg || dib.compression() == DibHeader::Png)
        return loadRaster(pixels.toByteArray(), limits, {}).image;
    if (dib.pixelOffset() > header.size())
        return {};
    return loadRaster(bmpFile(header.first(dib.pixelOffset()), pixels), limits, {}).image;
}

QImage imageOfDibWithAlpha(QByteArrayView header, QByteArrayView pixels,
                           const PictureLimits &limits)
{
    const DibHeader dib(header);
    if (!dib.isSound(limits) || dib.depth() != 32 || dib.compression() != DibHeader::Plain ||
        pixels.size() < dib.rowBytes(dib.size().height()))
        return imageOfDib(header, pixels, limits);
    QImage image(dib.size(), QImage::Format_ARGB32_Premultiplied);
    const qint64 stride = dib.rowBytes(1);
    for (int y = 0; y < image.height(); ++y) {
        const int row = dib.isTopDown() ? y : image.height() - 1 - y;
        ByteReader in(pixels.sliced(row * stride, stride));
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = in.u32();
    }
    return image;
}

QRectF sectionFromBottom(const QRectF &section, const QImage &image, bool topDown)
{
    if (topDown)
        return section;
    QRectF turned = section;
    turned.moveTop(image.height() - section.y() - section.height());
    return turned;
}

QImage imageOfDib(QByteArrayView packed, const PictureLimits &limits)
{
    const DibHeader dib(packed);
    const qint64 header = std::min<qint64>(dib.pixelOffset(), packed.size());
    return imageOfDib(packed.first(header), packed.sliced(header), limits);
}

} // namespace Zel
