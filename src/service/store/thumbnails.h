// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArrayList>
#include <QString>

#include <functional>

namespace Zel {

class BlobStore;

/// Makes the thumbnails of the picture in a file: PNG, one for each of `BlobStore::thumbnailSizes`
/// in their order. None for a file that is no picture, or none that can be read within the limits.
using ThumbnailMaker = std::function<QByteArrayList(const QString &path)>;

/// Small pictures of blobs, made once when the blob is stored.
class ZEL_EXPORT Thumbnails
{
public:
    /// Files that are longer have no thumbnail.
    static constexpr qint64 longestFile = 32LL * 1024 * 1024;

    Thumbnails(BlobStore &blobs, ThumbnailMaker maker);

    /// Whether thumbnails are made in this size: 64, 128 or 256 pixels along the longer edge.
    static bool isSize(int size);

    /// Makes and keeps the thumbnails of a picture in every size; false when there are none.
    bool make(const QString &sha);

    /// A `ThumbnailMaker`'s work on the bytes of a picture, done here and now.
    static QByteArrayList decode(const QByteArray &picture);
    /// The `ThumbnailMaker` that decodes in this process: for pictures one trusts.
    static QByteArrayList decodeFile(const QString &path);

private:
    BlobStore &m_blobs;
    ThumbnailMaker m_maker;
};

} // namespace Zel
