// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArrayList>
#include <QSemaphore>
#include <QString>
#include <QStringList>

#include <chrono>

namespace Zel::Service {

/// What one picture may take of the machine.
struct ThumbnailLimits
{
    std::chrono::milliseconds time{10'000};
    /// How many are decoded at once; further callers wait as long as one may take.
    int atOnce = 2;
    qint64 outputBytes = 4LL * 1024 * 1024;
};

/// Makes thumbnails in a process of its own for each picture, `zel-service thumbnail`, which has
/// no more than the picture, a pipe, and limits on its memory and time: a picture made to hurt
/// ends that process and nothing else. Used by many threads at once.
class ZEL_EXPORT ThumbnailProcess
{
public:
    /// @param command program and arguments
    explicit ThumbnailProcess(const QStringList &command = ownCommand(),
                              const ThumbnailLimits &limits = ThumbnailLimits());

    /// See `ThumbnailMaker`. A process that fails is told of in the log.
    QByteArrayList make(const QString &path);

private:
    static QStringList ownCommand();
    QByteArray outputOf(int picture) const;

    QStringList m_command;
    ThumbnailLimits m_limits;
    QSemaphore m_free;
};

/// What the process writes, and back. Nothing comes of bytes that are none of it.
ZEL_EXPORT QByteArray packedThumbnails(const QByteArrayList &thumbnails);
ZEL_EXPORT QByteArrayList unpackedThumbnails(const QByteArray &bytes);

} // namespace Zel::Service
