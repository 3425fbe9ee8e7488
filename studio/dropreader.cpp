// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/dropreader.h"

#include "platform/pictures/pictureloader.h"

#include <QPromise>
#include <QThread>
#include <QtConcurrent>

namespace Studio {

namespace {

/// Reads files in groups, so that giving up and telling how far it is come between them.
void readPictures(QPromise<DropContents> &promise, const QStringList &files, DropContents &contents)
{
    const qsizetype group = qMax(1, QThread::idealThreadCount());
    for (qsizetype first = 0; first < files.size() && !promise.isCanceled(); first += group) {
        const QStringList paths = files.mid(first, group);
        const QList<bool> good = QtConcurrent::blockingMapped<QList<bool>>(
            paths, [](const QString &path) { return Zel::PictureLoader::canRead(path); });
        for (qsizetype i = 0; i < paths.size(); ++i)
            (good.at(i) ? contents.pictures : contents.refused) << paths.at(i);
        promise.setProgressValue(static_cast<int>(first + paths.size()));
    }
}

void readDrop(QPromise<DropContents> &promise, const QList<QUrl> &dropped, int most)
{
    const DroppedFiles walked =
        walkDropped(dropped, most, [&promise] { return promise.isCanceled(); });
    DropContents contents;
    contents.refused = walked.unreachable;
    contents.isCut = walked.isCut;
    promise.setProgressRange(0, static_cast<int>(walked.files.size()));
    readPictures(promise, walked.files, contents);
    promise.addResult(contents);
}

} // namespace

DropReader::DropReader(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFutureWatcherBase::progressValueChanged, this, [this](int done) {
        if (m_isReading)
            emit progressed(done, m_watcher.progressMaximum());
    });
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &DropReader::end);
}

DropReader::~DropReader()
{
    m_watcher.disconnect(this);
    m_watcher.cancel();
    m_watcher.waitForFinished();
}

void DropReader::read(const QList<QUrl> &dropped, int most)
{
    if (m_isReading)
        return;
    m_isReading = true;
    m_watcher.setFuture(QtConcurrent::run(readDrop, dropped, most));
    emit progressed(0, 0);
}

void DropReader::cancel()
{
    m_isReading = false;
    m_watcher.cancel();
}

void DropReader::end()
{
    if (!m_isReading || m_watcher.isCanceled())
        return;
    m_isReading = false;
    emit finished(m_watcher.result());
}

} // namespace Studio
