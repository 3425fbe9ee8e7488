// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "webcontrols/imagefetch.h"
#include "webcontrols/imagememory.h"

#include <QHash>
#include <QQueue>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <vector>

namespace ZelWebControls {

/// The side of a source that works in a thread of its own: keeps the queues of the servers, reads
/// the answers, and has the pictures decoded by as many threads as there are processors.
class ImageFetcher : public QObject
{
    Q_OBJECT

public:
    /// The most requests at a time to one server.
    static constexpr int MostPerServer = 6;

    /// Called from any thread with the number of a job and what came of it.
    using Deliver =
        std::function<void(quint64 number, const QImage &image, const QString &problem)>;

    ImageFetcher(const std::shared_ptr<ImageMemory> &memory, const Deliver &deliver);
    ~ImageFetcher() override;

    void configure(const ImageSettings &settings);
    void start(const ZelWebControls::ImageJob &job);
    /// Aborts what is under way for jobs that were cancelled; those that wait are passed over when
    /// it is their turn.
    void sweep();
    /// Gives everything up and waits for the decoding threads.
    void stop();

private:
    struct Server
    {
        QQueue<ImageJob> queue;
        int active = 0;
    };

    void pump();
    void pump(Server &server);
    void begin(const ImageJob &job);
    void finish(ImageFetch *fetch);
    void decode(const ImageJob &job, const QByteArray &bytes, const ImageValidity &validity);
    const QXSC::NetworkRoads::Road *roadTo(const QUrl &url);
    Server &serverOf(const QUrl &url);

    const std::shared_ptr<ImageMemory> m_memory;
    const Deliver m_deliver;
    ImageSettings m_settings;
    std::unique_ptr<QObject> m_managers; ///< parent of the network managers
    std::unique_ptr<QXSC::NetworkRoads> m_roads;
    std::vector<std::unique_ptr<QObject>> m_retired; ///< managers of former settings
    QHash<QString, Server> m_servers;
    QList<ImageFetch *> m_fetches;
    QThreadPool m_pool;
    int m_decoding = 0;
};

} // namespace ZelWebControls
