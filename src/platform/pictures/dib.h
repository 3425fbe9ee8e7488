// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QByteArrayView>
#include <QImage>
#include <QRectF>
#include <QSize>

namespace Zel {

/// The header of a device-independent bitmap, as it stands in BMP files, icons and metafiles
/// (BITMAPCOREHEADER and BITMAPINFOHEADER up to version 5).
class DibHeader
{
public:
    enum Compression
    {
        Plain = 0,
        Rle8 = 1,
        Rle4 = 2,
        BitFields = 3,
        Jpeg = 4,
        Png = 5,
        AlphaBitFields = 6
    };

    /// @param bytes begin with the header; more may follow
    explicit DibHeader(QByteArrayView bytes);

    /// Whether the numbers make sense and the size is within the limits.
    bool isSound(const PictureLimits &limits) const;

    /// Width and height; a bitmap stored from the top has a positive height all the same.
    QSize size() const { return m_size; }

    /// Whether the first row stored is the uppermost; most bitmaps begin with the lowest.
    bool isTopDown() const { return m_topDown; }

    int depth() const { return m_depth; }

    quint32 compression() const { return m_compression; }

    bool isRunLength() const { return m_compression == Rle8 || m_compression == Rle4; }

    /// Bytes of the header with masks and colours, which is where packed pixels begin.
    qint64 pixelOffset() const { return m_headerBytes + m_maskBytes + m_colorBytes; }

    /// Bytes that `rows` rows of uncompressed pixels take.
    qint64 rowBytes(qint64 rows) const { return rowBytes(rows, m_depth); }

    /// The same for another depth, such as the one bit of an icon's mask.
    qint64 rowBytes(qint64 rows, int depth) const;

private:
    QSize m_size;
    bool m_topDown = false;
    int m_planes = 0;
    int m_depth = 0;
    quint32 m_compression = 0;
    qint64 m_headerBytes = 0;
    qint64 m_maskBytes = 0;
    qint64 m_colorBytes = 0;
};

/// Whether run-length encoded pixels come to their end mark.
bool runLengthEnds(QByteArrayView pixels, bool fourBits);

/// Decodes a bitmap of a metafile; null when it is broken or beyond the limits.
/// @param header the header with masks and colours
/// @param pixels what follows it, here or elsewhere in the file
QImage imageOfDib(QByteArrayView header, QByteArrayView pixels, const PictureLimits &limits);

/// An image of 32 bits a pixel, the fourth byte of which is the opacity, already multiplied into
/// the others.
QImage imageOfDibWithAlpha(QByteArrayView header, QByteArrayView pixels,
                           const PictureLimits &limits);

/// A section counted from the lowest row, as some records count, as one counted from the top.
QRectF sectionFromBottom(const QRectF &section, const QImage &image, bool topDown);

/// The same when both are in one piece.
QImage imageOfDib(QByteArrayView packed, const PictureLimits &limits);

} // namespace Zel
