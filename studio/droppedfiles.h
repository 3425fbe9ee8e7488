// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace Studio {

/// What a person dropped, walked through.
struct DroppedFiles
{
    /// The most files taken of one drop.
    static constexpr int Most = 5000;

    /// Whole paths: each folder in the order of names ("2" before "10"), its files before its
    /// folders, no file twice.
    QStringList files;
    /// What cannot be looked at: addresses on the web, what has gone, folders that do not open.
    QStringList unreachable;
    /// Whether there were more than `most`.
    bool isCut = false;
};

/// Walks through what was dropped. Folders are entered, but each only once, whatever links lead to
/// it; hidden files and folders in them are left out. Stops when `isCancelled` answers true.
DroppedFiles walkDropped(const QList<QUrl> &dropped, int most,
                         const std::function<bool()> &isCancelled);

} // namespace Studio
