// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/imagememory.h"

#include <QMutexLocker>

namespace ZelWebControls {

namespace {

constexpr qint64 Unit = 1024;

} // namespace

ImageMemory::ImageMemory()
{
    setLimit(qint64(64) * 1024 * 1024);
}

void ImageMemory::setLimit(qint64 bytes)
{
    const QMutexLocker lock(&m_mutex);
    m_entries.setMaxCost(qsizetype(bytes / Unit));
}

std::optional<ImageMemory::Entry> ImageMemory::find(const QUrl &url, const QSize &pixels) const
{
    const QMutexLocker lock(&m_mutex);
    const Entry *entry = m_entries.object({url, pixels});
    return entry ? std::optional(*entry) : std::nullopt;
}

void ImageMemory::keep(const QUrl &url, const QSize &pixels, const QImage &image,
                       const ImageValidity &validity)
{
    const QMutexLocker lock(&m_mutex);
    if (!validity.mayBeKept) {
        m_entries.remove({url, pixels});
        return;
    }
    auto *entry = new Entry{image, validity, QDeadlineTimer(validity.freshFor)};
    m_entries.insert({url, pixels}, entry, qsizetype(image.sizeInBytes() / Unit + 1));
}

} // namespace ZelWebControls
