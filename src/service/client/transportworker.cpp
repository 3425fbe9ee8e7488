// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/transportworker.h"

#include "service/client/replyreader.h"
#include "service/client/singleusebody.h"

namespace QXSC {

namespace {

QNetworkRequest networkRequest(const Request &call)
{
    QNetworkRequest request(call.server.url(call.path, call.query));
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("User-Agent", "ZelServiceClient");
    if (!call.body.isEmpty())
        request.setRawHeader("Content-Type", call.contentType);
    if (!call.idempotencyKey.isEmpty())
        request.setRawHeader("Idempotency-Key", call.idempotencyKey);
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

TransportWorker::TransportWorker()
    : m_roads(this)
{
}

TransportWorker::~TransportWorker() = default;

void TransportWorker::start(const std::shared_ptr<Exchange> &exchange)
{
    if (exchange->isFinished())
        return;
    const Request &call = exchange->request();
    const NetworkRoads::Road *way = m_roads.to(call.server.url(call.path), exchange->policy());
    if (way) {
        new ReplyReader(send(*way, call), exchange);
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

QNetworkReply *TransportWorker::send(const NetworkRoads::Road &road, const Request &call)
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
