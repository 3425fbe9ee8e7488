// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/thumbnails.h"

#include "platform/pictures/pictureloader.h"
#include "service/store/blobstore.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>

namespace Zel {

namespace {

constexpr auto sizes = BlobStore::thumbnailSizes;

/// Somebody waits for the answer meanwhile: larger pictures are kept, without a thumbnail.
PictureLimits serverLimits()
{
    PictureLimits limits;
    limits.bytes = Thumbnails::longestFile;
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

Thumbnails::Thumbnails(ThumbnailMaker maker)
    : m_maker(std::move(maker))
{
}

bool Thumbnails::isSize(int size)
{
    return std::find(sizes.begin(), sizes.end(), size) != sizes.end();
}

QByteArrayList Thumbnails::make(BlobPart &picture)
{
    if (picture.size() > longestFile)
        return {};
    const auto file = picture.localFile();
    const QByteArrayList made = m_maker(file->path());
    return made.size() == qsizetype(sizes.size()) ? made : QByteArrayList();
}

QByteArrayList Thumbnails::decode(const QByteArray &picture)
{
    const PictureLoader loader(serverLimits());
    QImage image = loader.load(picture, QSize(sizes[0], sizes[0])).image;
    QByteArrayList made;
    for (const int size : sizes) {
        if (image.width() > size || image.height() > size)
            image = image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QByteArray bytes = png(image);
        if (bytes.isEmpty())
            return {};
        made.append(bytes);
    }
    return made;
}

QByteArrayList Thumbnails::decodeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return decode(file.read(longestFile + 1));
}

} // namespace Zel
