// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"
#include "platform/pictures/picturelimits.h"

#include <QByteArray>
#include <QSize>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <memory>

namespace ZelWebControls {

/// A picture to be fetched.
struct ImageJob
{
    quint64 number = 0;
    QUrl asked; ///< the address given; the picture is remembered under it
    QUrl url;   ///< where it is to be fetched after redirections
    QSize pixels;
    int redirections = 0;
    std::shared_ptr<std::atomic<bool>> isCancelled;
};

/// How pictures are fetched.
struct ImageSettings
{
    QXSC::NetworkPolicy policy;
    std::chrono::milliseconds timeLimit = std::chrono::seconds(30);
    Zel::PictureLimits limits;
    QString cacheFolder;
    qint64 cacheBytes = 0;
};

/// What the server said about how long a picture holds.
struct ImageValidity
{
    QByteArray etag;
    QByteArray lastModified;
    std::chrono::seconds freshFor{0};
    bool mayBeKept = true;

    bool canBeAskedFor() const { return !etag.isEmpty() || !lastModified.isEmpty(); }

    /// Whether two answers were the same picture.
    bool isSameAs(const ImageValidity &other) const
    {
        return canBeAskedFor() && etag == other.etag && lastModified == other.lastModified;
    }
};

} // namespace ZelWebControls
