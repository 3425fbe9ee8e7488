// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArrayList>
#include <QString>

#include <functional>

namespace Zel {

class BlobPart;

/// Makes the thumbnails of the picture in a file: PNG, one for each of `BlobStore::thumbnailSizes`
/// in their order. None for a file that is no picture, or none that can be read within the limits.
using ThumbnailMaker = std::function<QByteArrayList(const QString &path)>;

/// Small pictures of pictures, made once when a picture is stored.
class ZEL_EXPORT Thumbnails
{
public:
    /// Files that are longer have no thumbnail.
    static constexpr qint64 longestFile = 32LL * 1024 * 1024;

    explicit Thumbnails(ThumbnailMaker maker);

    /// Whether thumbnails are made in this size: 64, 128 or 256 pixels along the longer edge.
    static bool isSize(int size);

    /// The thumbnails of a picture that has arrived, in every size; none where there can be none.
    QByteArrayList make(BlobPart &picture);

    /// A `ThumbnailMaker`'s work on the bytes of a picture, done here and now.
    static QByteArrayList decode(const QByteArray &picture);
    /// The `ThumbnailMaker` that decodes in this process: for pictures one trusts.
    static QByteArrayList decodeFile(const QString &path);

private:
    ThumbnailMaker m_maker;
};

} // namespace Zel
