// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "webcontrols/imagejob.h"

#include <QCache>
#include <QDeadlineTimer>
#include <QImage>
#include <QMutex>

#include <optional>

namespace ZelWebControls {

/// Decoded pictures, the most recently used ones, by address and size. Use it from any thread.
class ImageMemory
{
public:
    struct Entry
    {
        QImage image;
        ImageValidity validity;
        QDeadlineTimer fresh;
    };

    ImageMemory();

    void setLimit(qint64 bytes);

    std::optional<Entry> find(const QUrl &url, const QSize &pixels) const;
    void keep(const QUrl &url, const QSize &pixels, const QImage &image,
              const ImageValidity &validity);

private:
    mutable QMutex m_mutex;
    mutable QCache<std::pair<QUrl, QSize>, Entry> m_entries; // in KiB
};

} // namespace ZelWebControls
