// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/imagefetch.h"

#include "webcontrols/imageanswer.h"
#include "webcontrols/webimagetexts.h"

#include <QLocale>

namespace ZelWebControls {

namespace {

constexpr int NotModified = 304;
constexpr qint64 BufferBytes = 256 * 1024;

int milliseconds(std::chrono::milliseconds limit)
{
    return int(std::clamp<qint64>(limit.count(), 0, 24 * 60 * 60 * 1000));
}

} // namespace

ImageFetch::ImageFetch(const ImageJob &job, const ImageSettings &settings,
                       const ImageValidity *known, QObject *parent)
    : QObject(parent)
    , m_job(job)
    , m_settings(settings)
    , m_known(known && known->canBeAskedFor() ? std::optional(*known) : std::nullopt)
{
    m_clock.setSingleShot(true);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        giveUp(WebImageTexts::tr("The server %1 did not answer in time.").arg(m_job.url.host()));
    });
}

QNetworkRequest ImageFetch::request(const QXSC::NetworkRoads::Road &road) const
{
    QNetworkRequest request(m_job.url);
    request.setRawHeader("Accept", "image/*");
    // Pictures are packed already, and what Qt unpacks can be of any size.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("User-Agent", "ZelWebControls");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    if (road.tls)
        request.setSslConfiguration(*road.tls);
    request.setTransferTimeout(milliseconds(m_settings.policy.inactivityLimit));
    // A manager with a folder asks on its own whether what is there has changed.
    if (m_known && !road.manager->cache()) {
        if (!m_known->etag.isEmpty())
            request.setRawHeader("If-None-Match", m_known->etag);
        if (!m_known->lastModified.isEmpty())
            request.setRawHeader("If-Modified-Since", m_known->lastModified);
    }
    return request;
}

void ImageFetch::begin(const QXSC::NetworkRoads::Road *road)
{
    if (!road) {
        // Later, like everything that ends: thousands may fail this way, one in the other's hands.
        QTimer::singleShot(0, this, [this] {
            end(Ending::Failed,
                WebImageTexts::tr("The file of certificate authorities cannot be used."));
        });
        return;
    }
    m_reply = road->manager->get(request(*road));
    m_reply->setParent(this);
    m_reply->setReadBufferSize(BufferBytes);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &ImageFetch::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &ImageFetch::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &ImageFetch::readEnd);
    if (m_settings.timeLimit.count() > 0)
        m_clock.start(milliseconds(m_settings.timeLimit));
}

void ImageFetch::abort()
{
    giveUp(QString());
}

void ImageFetch::readHead()
{
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (length > m_settings.limits.bytes)
        giveUp(WebImageTexts::tr("The picture is larger than %1.")
                   .arg(QLocale().formattedDataSize(m_settings.limits.bytes)));
}

void ImageFetch::readBody()
{
    if (m_hasEnded || !m_reply->isOpen())
        return;
    m_bytes += m_reply->readAll();
    if (m_bytes.size() > m_settings.limits.bytes)
        giveUp(WebImageTexts::tr("The picture is larger than %1.")
                   .arg(QLocale().formattedDataSize(m_settings.limits.bytes)));
}

void ImageFetch::readEnd()
{
    if (m_hasEnded)
        return;
    readBody();
    if (m_hasEnded)
        return;
    m_validity = validityOf(*m_reply);
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (m_known && status == NotModified) {
        // An answer without a body may leave out what has not changed.
        if (m_validity.etag.isEmpty())
            m_validity.etag = m_known->etag;
        if (m_validity.lastModified.isEmpty())
            m_validity.lastModified = m_known->lastModified;
        end(Ending::Unchanged);
        return;
    }
    if (m_target.isValid() && m_reply->error() == QNetworkReply::NoError) {
        m_target = m_job.url.resolved(m_target);
        if (mayFollow(m_job.url, m_target))
            end(Ending::Moved);
        else
            end(Ending::Failed,
                WebImageTexts::tr("The server %1 sends to another server.").arg(m_job.url.host()));
        return;
    }
    const QString problem = problemOf(*m_reply);
    if (!problem.isEmpty())
        end(Ending::Failed, problem);
    else if (m_bytes.size() < m_reply->rawHeader("Content-Length").toLongLong())
        end(Ending::Failed,
            WebImageTexts::tr("The connection to the server %1 was lost.").arg(m_job.url.host()));
    else
        end(m_known && m_known->isSameAs(m_validity) ? Ending::Unchanged : Ending::Bytes);
}

void ImageFetch::giveUp(const QString &problem)
{
    if (m_hasEnded)
        return;
    end(Ending::Failed, problem);
    // Its end ends the request without a word. Aborted, it would fail a second time when its server
    // has just gone away, which Qt complains of.
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->deleteLater();
        m_reply = nullptr;
    }
}

void ImageFetch::end(Ending ending, const QString &problem)
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    m_clock.stop();
    m_ending = ending;
    m_problem = problem;
    emit ended(this);
}

} // namespace ZelWebControls
