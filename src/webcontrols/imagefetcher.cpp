// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/imagefetcher.h"

#include "platform/pictures/pictureloader.h"
#include "webcontrols/webimagetexts.h"

#include <QDir>
#include <QNetworkDiskCache>

namespace ZelWebControls {

namespace {

constexpr int MostRedirections = 5;

/// The forms that pictures on the screen have, so that nothing is left to be converted, or copied,
/// in the thread of the user interface.
void toScreenFormat(QImage &image)
{
    if (!image.isNull())
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                : QImage::Format_RGB32);
}

/// Qt would write to the log for every picture that it cannot keep.
bool isUsable(const QString &folder)
{
    return !folder.isEmpty() && QDir().mkpath(folder) && QFileInfo(folder).isWritable();
}

} // namespace

ImageFetcher::ImageFetcher(const std::shared_ptr<ImageMemory> &memory, const Deliver &deliver)
    : m_memory(memory)
    , m_deliver(deliver)
{
}

ImageFetcher::~ImageFetcher()
{
    // Before their managers.
    qDeleteAll(findChildren<ImageFetch *>(Qt::FindDirectChildrenOnly));
}

void ImageFetcher::configure(const ImageSettings &settings)
{
    const bool isNewCache = settings.cacheFolder != m_settings.cacheFolder ||
                            settings.cacheBytes != m_settings.cacheBytes;
    m_settings = settings;
    if (!isNewCache)
        return;
    // An answer that is under way needs its manager to the end.
    m_roads.reset();
    if (m_managers)
        m_retired.push_back(std::move(m_managers));
}

const QXSC::NetworkRoads::Road *ImageFetcher::roadTo(const QUrl &url)
{
    if (!m_roads) {
        m_managers = std::make_unique<QObject>();
        m_roads = std::make_unique<QXSC::NetworkRoads>(m_managers.get());
    }
    const QXSC::NetworkRoads::Road *road = m_roads->to(url, m_settings.policy);
    if (road && !road->manager->cache() && isUsable(m_settings.cacheFolder)) {
        auto *cache = new QNetworkDiskCache(road->manager);
        cache->setCacheDirectory(m_settings.cacheFolder);
        cache->setMaximumCacheSize(m_settings.cacheBytes);
        road->manager->setCache(cache);
    }
    return road;
}

ImageFetcher::Server &ImageFetcher::serverOf(const QUrl &url)
{
    return m_servers[url.scheme() + QLatin1String("://") + url.authority(QUrl::FullyEncoded)];
}

void ImageFetcher::start(const ImageJob &job)
{
    Server &server = serverOf(job.url);
    server.queue.enqueue(job);
    pump(server);
}

void ImageFetcher::pump()
{
    for (Server &server : m_servers)
        pump(server);
}

void ImageFetcher::pump(Server &server)
{
    // Answers must not pile up before the threads that decode them.
    const int mostDecoding = 4 * m_pool.maxThreadCount();
    while (!server.queue.isEmpty() && server.active < MostPerServer && m_decoding < mostDecoding) {
        const ImageJob job = server.queue.dequeue();
        if (!*job.isCancelled) {
            ++server.active;
            begin(job);
        }
    }
}

void ImageFetcher::begin(const ImageJob &job)
{
    const std::optional<ImageMemory::Entry> known = m_memory->find(job.asked, job.pixels);
    auto *fetch = new ImageFetch(job, m_settings, known ? &known->validity : nullptr, this);
    m_fetches << fetch;
    connect(fetch, &ImageFetch::ended, this, &ImageFetcher::finish);
    fetch->begin(roadTo(job.url));
}

void ImageFetcher::finish(ImageFetch *fetch)
{
    m_fetches.removeOne(fetch);
    fetch->deleteLater();
    --serverOf(fetch->job().url).active;
    ImageJob job = fetch->job();
    switch (fetch->ending()) {
    case ImageFetch::Ending::Bytes:
        decode(job, fetch->bytes(), fetch->validity());
        break;
    case ImageFetch::Ending::Unchanged:
        if (const auto known = m_memory->find(job.asked, job.pixels)) {
            m_memory->keep(job.asked, job.pixels, known->image, fetch->validity());
            m_deliver(job.number, known->image, QString());
        } else if (!fetch->bytes().isEmpty()) {
            decode(job, fetch->bytes(), fetch->validity());
        } else {
            start(job); // forgotten meanwhile: without it, the whole picture comes
        }
        break;
    case ImageFetch::Ending::Moved:
        job.url = fetch->target();
        if (++job.redirections > MostRedirections)
            m_deliver(job.number, QImage(),
                      WebImageTexts::tr("The server %1 sends from one address to the next.")
                          .arg(job.url.host()));
        else
            start(job);
        break;
    case ImageFetch::Ending::Failed:
        m_deliver(job.number, QImage(), fetch->problem());
        break;
    }
    pump();
}

void ImageFetcher::decode(const ImageJob &job, const QByteArray &bytes,
                          const ImageValidity &validity)
{
    ++m_decoding;
    m_pool.start([this, job, bytes, validity, limits = m_settings.limits] {
        if (!*job.isCancelled) {
            Zel::Picture picture = Zel::PictureLoader(limits).load(bytes, job.pixels);
            toScreenFormat(picture.image);
            if (!picture.isNull())
                m_memory->keep(job.asked, job.pixels, picture.image, validity);
            m_deliver(job.number, picture.image, picture.problem);
        }
        QMetaObject::invokeMethod(
            this,
            [this] {
                --m_decoding;
                pump();
            },
            Qt::QueuedConnection);
    });
}

void ImageFetcher::sweep()
{
    const QList<ImageFetch *> fetches = m_fetches;
    for (ImageFetch *fetch : fetches) {
        if (*fetch->job().isCancelled)
            fetch->abort();
    }
}

void ImageFetcher::stop()
{
    m_servers.clear();
    const QList<ImageFetch *> fetches = m_fetches;
    for (ImageFetch *fetch : fetches)
        fetch->abort();
    m_pool.clear();
    m_pool.waitForDone();
}

} // namespace ZelWebControls
