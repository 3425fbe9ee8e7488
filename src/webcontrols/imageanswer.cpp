// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/imageanswer.h"

#include "webcontrols/webimagetexts.h"

namespace ZelWebControls {

namespace {

constexpr int HttpPort = 80;
constexpr int HttpsPort = 443;

int portOf(const QUrl &url)
{
    return url.port(url.scheme() == QLatin1String("https") ? HttpsPort : HttpPort);
}

QString networkProblem(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
        return WebImageTexts::tr("The server %1 cannot be reached.").arg(reply.url().host());
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError:
        return WebImageTexts::tr("The server %1 did not answer in time.").arg(reply.url().host());
    case QNetworkReply::SslHandshakeFailedError:
        return WebImageTexts::tr("The server %1 cannot prove that it is the one it says it is.")
            .arg(reply.url().host());
    default:
        return WebImageTexts::tr("The connection to the server %1 was lost.")
            .arg(reply.url().host());
    }
}

} // namespace

ImageValidity validityOf(const QNetworkReply &reply)
{
    ImageValidity validity;
    validity.etag = reply.rawHeader("ETag");
    validity.lastModified = reply.rawHeader("Last-Modified");
    bool mustAsk = false;
    const QList<QByteArray> words = reply.rawHeader("Cache-Control").toLower().split(',');
    for (const QByteArray &word : words) {
        const QByteArray rule = word.trimmed();
        constexpr QByteArrayView Age("max-age=");
        if (rule.startsWith(Age))
            validity.freshFor = std::chrono::seconds(
                std::clamp(rule.mid(Age.size()).toLongLong(), 0LL, 31'536'000LL));
        mustAsk |= rule == "no-cache";
        validity.mayBeKept &= rule != "no-store";
    }
    const std::chrono::seconds age(std::max(reply.rawHeader("Age").toLongLong(), 0LL));
    validity.freshFor = mustAsk ? std::chrono::seconds(0)
                                : std::max(validity.freshFor - age, std::chrono::seconds(0));
    return validity;
}

bool mayFollow(const QUrl &from, const QUrl &to)
{
    if (from.host() != to.host() || !to.userInfo().isEmpty())
        return false;
    const bool isUpgrade =
        from.scheme() == QLatin1String("http") && to.scheme() == QLatin1String("https");
    return isUpgrade || (from.scheme() == to.scheme() && portOf(from) == portOf(to));
}

QString problemOf(const QNetworkReply &reply)
{
    constexpr int NotFound = 404;
    constexpr int Gone = 410;
    constexpr int Success = 200;
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == NotFound || status == Gone)
        return WebImageTexts::tr("The picture is no longer there.");
    if (status >= 300)
        return WebImageTexts::tr("The server %1 does not give the picture out (status %2).")
            .arg(reply.url().host())
            .arg(status);
    if (reply.error() != QNetworkReply::NoError)
        return networkProblem(reply);
    return status == Success ? QString()
                             : WebImageTexts::tr("The server %1 answered something else.")
                                   .arg(reply.url().host());
}

} // namespace ZelWebControls
