// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace Zel {

class BlobStore;

/// Small pictures of blobs, made once when the blob is stored.
class ZEL_EXPORT Thumbnails
{
public:
    explicit Thumbnails(BlobStore &blobs)
        : m_blobs(blobs)
    {
    }

    /// Whether thumbnails are made in this size: 64, 128 or 256 pixels along the longer edge.
    static bool isSize(int size);

    /// Makes the thumbnails of a picture in every size, PNG. False for a blob that is no picture,
    /// or none that can be read within the limits.
    bool make(const QString &sha);

private:
    BlobStore &m_blobs;
};

} // namespace Zel
