// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/thumbnails.h"

#include "platform/pictures/pictureloader.h"
#include "service/store/blobstore.h"

#include <QBuffer>

#include <algorithm>
#include <array>

namespace Zel {

namespace {

constexpr std::array sizes{256, 128, 64};

/// Decoding goes on while somebody waits for the answer, on a thread that others need, too: larger
/// pictures are kept, without a thumbnail.
PictureLimits serverLimits()
{
    PictureLimits limits;
    limits.bytes = qint64(32) * 1024 * 1024;
    limits.pixels = 50'000'000;
    limits.canvas = 1024;
    return limits;
}

QByteArray png(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return QByteArray();
    return buffer.data();
}

} // namespace

bool Thumbnails::isSize(int size)
{
    return std::find(sizes.begin(), sizes.end(), size) != sizes.end();
}

bool Thumbnails::make(const QString &sha)
{
    const PictureLoader loader(serverLimits());
    QImage image = loader.loadFile(m_blobs.blobPath(sha), QSize(sizes[0], sizes[0])).image;
    if (image.isNull())
        return false;
    for (const int size : sizes) {
        if (image.width() > size || image.height() > size)
            image = image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QByteArray bytes = png(image);
        if (bytes.isEmpty())
            return false;
        m_blobs.writeWhole(m_blobs.thumbnailPath(sha, size), bytes);
    }
    return true;
}

} // namespace Zel
