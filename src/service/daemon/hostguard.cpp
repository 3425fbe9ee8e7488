// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/hostguard.h"

#include "service/daemon/problem.h"

#include <QHostAddress>
#include <QUrl>

#include <algorithm>

namespace Zel::Service {

namespace {

constexpr int httpPort = 80;

/// Whether "host:port" names this machine and the port the request came in at.
bool isOwnName(const QByteArray &authority, quint16 localPort)
{
    const QUrl url(QLatin1String("http://") + QString::fromLatin1(authority), QUrl::StrictMode);
    if (!url.isValid() || !url.userInfo().isEmpty() || !url.path().isEmpty() || url.hasQuery() ||
        url.hasFragment())
        return false;
    if (url.port(httpPort) != localPort)
        return false;
    const QString host = url.host();
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

void refuseForeignPages(const HttpRequest &request)
{
    const auto hosts =
        std::count_if(request.headers.begin(), request.headers.end(), [](const HttpHeader &header) {
            return header.name.compare("host", Qt::CaseInsensitive) == 0;
        });
    if (hosts != 1 || !isOwnName(request.header("Host"), request.localPort))
        throw Problem(421, QByteArrayLiteral("wrong-host"),
                      QStringLiteral("This service does not answer for that host name."));
    if (!request.hasHeader("Origin"))
        return;
    const QByteArray origin = request.header("Origin");
    if (!origin.startsWith("http://") || !isOwnName(origin.mid(7), request.localPort))
        throw Problem(403, QByteArrayLiteral("foreign-origin"),
                      QStringLiteral("Pages of other sites may not use this service."));
}

} // namespace Zel::Service
