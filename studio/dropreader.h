// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/droppedfiles.h"

#include <QFutureWatcher>

namespace Studio {

/// What came of a drop.
struct DropContents
{
    QStringList pictures;
    /// What cannot be read as a picture, or not at all.
    QStringList refused;
    bool isCut = false;
};

/// Walks through dropped files and folders and tries to read every file as a picture, aside from
/// the user interface and on every core.
class DropReader : public QObject
{
    Q_OBJECT

public:
    explicit DropReader(QObject *parent = nullptr);
    /// Gives up what is under way; waits for the pictures just being read.
    ~DropReader() override;

    /// Starts reading; nothing while it reads already.
    void read(const QList<QUrl> &dropped, int most = DroppedFiles::Most);
    /// Gives up; `finished` does not come.
    void cancel();

    bool isReading() const { return m_isReading; }

signals:
    /// How many files have been read; of 0 while they are still being looked for.
    void progressed(int done, int count);
    void finished(const Studio::DropContents &contents);

private:
    void end();

    QFutureWatcher<DropContents> m_watcher;
    bool m_isReading = false;
};

} // namespace Studio
