// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/transportworker.h"

#include "service/client/proxychoice.h"
#include "service/client/replyreader.h"
#include "service/client/singleusebody.h"

#include <QFile>
#include <QSslCertificate>

namespace QXSC {

namespace {

QNetworkRequest networkRequest(const Request &call)
{
    QNetworkRequest request(call.server.url(call.path, call.query));
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("User-Agent", "ZelServiceClient");
    if (!call.body.isEmpty())
        request.setRawHeader("Content-Type", "application/json");
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

} // namespace

TransportWorker::TransportWorker() = default;

TransportWorker::~TransportWorker() = default;

void TransportWorker::start(const std::shared_ptr<Exchange> &exchange)
{
    if (exchange->isFinished())
        return;
    const NetworkPolicy &policy = exchange->policy();
    if (exchange->request().server.isEncrypted() && !trust(policy.caFile)) {
        Reply reply;
        reply.ending = Reply::Ending::BadCaFile;
        reply.networkText = policy.caFile;
        exchange->finish(std::move(reply));
        return;
    }
    new ReplyReader(send(exchange->request(), policy), exchange);
}

void TransportWorker::abort(const std::shared_ptr<Exchange> &exchange)
{
    if (!m_manager)
        return;
    const auto readers = m_manager->findChildren<ReplyReader *>();
    for (ReplyReader *reader : readers) {
        if (reader->reads(exchange))
            reader->abort();
    }
}

bool TransportWorker::trust(const QString &caFile)
{
    if (caFile == m_caFile)
        return true;
    const QList<QSslCertificate> own = QSslCertificate::fromPath(caFile, QSsl::Pem);
    if (!caFile.isEmpty() && own.isEmpty())
        return false;
    m_tls = QSslConfiguration::defaultConfiguration();
    if (!own.isEmpty())
        m_tls.setCaCertificates(QSslConfiguration::systemCaCertificates() + own);
    m_caFile = caFile;
    return true;
}

QNetworkReply *TransportWorker::send(const Request &call, const NetworkPolicy &policy)
{
    if (!m_manager) {
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_proxies = new ProxyChoice;
        m_manager->setProxyFactory(m_proxies);
    }
    m_proxies->setUsingProxy(policy.useSystemProxy);
    QNetworkRequest request = networkRequest(call);
    if (!m_caFile.isEmpty())
        request.setSslConfiguration(m_tls);
    if (call.method == "GET")
        return m_manager->get(request);
    if (call.method == "DELETE")
        return m_manager->deleteResource(request);
    if (call.isRepeatable())
        return m_manager->put(request, call.body);
    auto *body = new SingleUseBody(call.body);
    QNetworkReply *reply = m_manager->post(request, body);
    body->setParent(reply);
    return reply;
}

} // namespace QXSC
