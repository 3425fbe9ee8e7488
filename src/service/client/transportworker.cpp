// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/transportworker.h"

#include "service/client/proxychoice.h"
#include "service/client/replyreader.h"
#include "service/client/singleusebody.h"

#include <QNetworkProxy>
#include <QSslCertificate>

namespace QXSC {

namespace {

QNetworkRequest networkRequest(const Request &call)
{
    QNetworkRequest request(call.server.url(call.path, call.query));
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("User-Agent", "ZelServiceClient");
    if (!call.body.isEmpty())
        request.setRawHeader("Content-Type", call.contentType);
    if (!call.token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + call.token);
    // The token goes where it was meant to go and nowhere else; nothing is remembered between
    // calls.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return request;
}

/// The system's authorities and those of the file; nothing when the file holds none.
std::optional<QSslConfiguration> trusting(const QString &caFile)
{
    const QList<QSslCertificate> own = QSslCertificate::fromPath(caFile, QSsl::Pem);
    if (own.isEmpty())
        return std::nullopt;
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslConfiguration::systemCaCertificates() + own);
    return tls;
}

} // namespace

TransportWorker::TransportWorker() = default;

TransportWorker::~TransportWorker() = default;

void TransportWorker::start(const std::shared_ptr<Exchange> &exchange)
{
    if (exchange->isFinished())
        return;
    const Road *way = road(exchange->request(), exchange->policy());
    if (way) {
        new ReplyReader(send(*way, exchange->request()), exchange);
        return;
    }
    Reply reply;
    reply.ending = Reply::Ending::BadCaFile;
    exchange->finish(std::move(reply));
}

void TransportWorker::abort(const std::shared_ptr<Exchange> &exchange)
{
    const auto readers = findChildren<ReplyReader *>();
    for (ReplyReader *reader : readers) {
        if (reader->reads(exchange))
            reader->abort();
    }
}

const TransportWorker::Road *TransportWorker::road(const Request &call, const NetworkPolicy &policy)
{
    const bool useProxy = policy.useSystemProxy && !call.server.isLoopback();
    const QString caFile = call.server.isEncrypted() ? policy.caFile : QString();
    const auto key = std::make_pair(useProxy, caFile);
    const auto found = m_roads.find(key);
    if (found != m_roads.end())
        return &found->second;

    Road road;
    if (!caFile.isEmpty()) {
        road.tls = trusting(caFile);
        if (!road.tls)
            return nullptr;
    }
    road.manager = new QNetworkAccessManager(this);
    if (useProxy)
        road.manager->setProxyFactory(new ProxyChoice);
    else
        road.manager->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    return &m_roads.emplace(key, road).first->second;
}

QNetworkReply *TransportWorker::send(const Road &road, const Request &call)
{
    QNetworkRequest request = networkRequest(call);
    if (road.tls)
        request.setSslConfiguration(*road.tls);
    if (call.method == "GET")
        return road.manager->get(request);
    if (call.method == "DELETE")
        return road.manager->deleteResource(request);
    if (call.isRepeatable())
        return road.manager->put(request, call.body);
    auto *body = new SingleUseBody(call.body);
    QNetworkReply *reply = road.manager->post(request, body);
    body->setParent(reply);
    return reply;
}

} // namespace QXSC
