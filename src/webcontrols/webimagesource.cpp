// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/webimagesource.h"

#include "webcontrols/imagefetcher.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

namespace ZelWebControls {

namespace {

constexpr qint64 MostBytes = qint64(32) * 1024 * 1024;
constexpr qint64 MostPixels = 64'000'000;

QPointer<WebImageSource> sharedSource;

void deleteShared()
{
    delete sharedSource.data();
}

} // namespace

struct WebImageSource::Private
{
    std::shared_ptr<ImageMemory> memory = std::make_shared<ImageMemory>();
    ImageSettings settings;
    QThread thread;
    ImageFetcher *fetcher = nullptr; // lives in the thread
};

WebImageSource::WebImageSource(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->settings.limits.bytes = MostBytes;
    d->settings.limits.pixels = MostPixels;
    const auto post = [this](quint64 number, const QImage &image, const QString &problem) {
        QMetaObject::invokeMethod(
            this, [this, number, image, problem] { deliver(number, image, problem); },
            Qt::QueuedConnection);
    };
    d->fetcher = new ImageFetcher(d->memory, post);
    d->fetcher->moveToThread(&d->thread);
    connect(&d->thread, &QThread::finished, d->fetcher, &QObject::deleteLater);
    d->thread.setObjectName(QStringLiteral("WebImages"));
    d->thread.start();
    configure();
}

WebImageSource::~WebImageSource()
{
    cancel(m_waiting.keys());
    QMetaObject::invokeMethod(d->fetcher, &ImageFetcher::stop, Qt::BlockingQueuedConnection);
    d->thread.quit();
    d->thread.wait();
}

WebImageSource *WebImageSource::shared()
{
    if (!sharedSource && QCoreApplication::instance()) {
        sharedSource = new WebImageSource;
        qAddPostRoutine(deleteShared);
    }
    return sharedSource;
}

void WebImageSource::configure()
{
    QMetaObject::invokeMethod(
        d->fetcher,
        [fetcher = d->fetcher, settings = d->settings] { fetcher->configure(settings); },
        Qt::QueuedConnection);
}

void WebImageSource::setNetworkPolicy(const QXSC::NetworkPolicy &policy)
{
    d->settings.policy = policy;
    configure();
}

void WebImageSource::setTimeLimit(std::chrono::milliseconds limit)
{
    d->settings.timeLimit = limit;
    configure();
}

void WebImageSource::setPictureLimits(const Zel::PictureLimits &limits)
{
    d->settings.limits = limits;
    configure();
}

void WebImageSource::setCacheFolder(const QString &folder, qint64 bytes)
{
    d->settings.cacheFolder = folder;
    d->settings.cacheBytes = bytes;
    configure();
}

void WebImageSource::setMemoryLimit(qint64 bytes)
{
    d->memory->setLimit(bytes);
}

std::optional<QImage> WebImageSource::remembered(const QUrl &url, const QSize &pixels) const
{
    const std::optional<ImageMemory::Entry> entry = d->memory->find(url, pixels);
    return entry && !entry->fresh.hasExpired() ? std::optional(entry->image) : std::nullopt;
}

quint64 WebImageSource::fetch(const QUrl &url, const QSize &pixels, const Taker &taker)
{
    ImageJob job;
    job.number = ++m_last;
    job.asked = url;
    job.url = url;
    job.pixels = pixels;
    job.isCancelled = std::make_shared<std::atomic<bool>>(false);
    m_waiting.insert(job.number, {taker, job.isCancelled});
    QMetaObject::invokeMethod(
        d->fetcher, [fetcher = d->fetcher, job] { fetcher->start(job); }, Qt::QueuedConnection);
    return job.number;
}

void WebImageSource::cancel(const QList<quint64> &numbers)
{
    bool any = false;
    for (const quint64 number : numbers) {
        const auto found = m_waiting.constFind(number);
        if (found == m_waiting.cend())
            continue;
        *found->isCancelled = true;
        m_waiting.erase(found);
        any = true;
    }
    if (any)
        QMetaObject::invokeMethod(d->fetcher, &ImageFetcher::sweep, Qt::QueuedConnection);
}

void WebImageSource::deliver(quint64 number, const QImage &image, const QString &problem)
{
    const auto found = m_waiting.constFind(number);
    if (found == m_waiting.cend())
        return; // cancelled meanwhile
    const Taker taker = found->taker;
    m_waiting.erase(found);
    taker(image, problem);
}

bool WebImageSource::isFetchable(const QUrl &url)
{
    const bool isWeb =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return isWeb && url.isValid() && !url.host().isEmpty();
}

} // namespace ZelWebControls
