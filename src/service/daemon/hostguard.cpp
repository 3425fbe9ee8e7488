// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/hostguard.h"

#include "service/daemon/problem.h"

#include <QHostAddress>
#include <QUrl>

#include <algorithm>
#include <stdexcept>

namespace Zel::Service {

namespace {

constexpr int httpPort = 80;
constexpr int httpsPort = 443;
constexpr int noPort = -1;
const QLatin1String anyLabel("*.");

/// "host:port" taken apart; an empty address for anything else.
QUrl authorityOf(const QString &text)
{
    const QUrl url(QLatin1String("http://") + text, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty() ||
        !url.path().isEmpty() || url.hasQuery() || url.hasFragment())
        return QUrl();
    return url;
}

bool isLoopback(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

/// Whether a host has a name, in which "*." stands for one label.
bool matches(const QString &name, const QString &host)
{
    if (!name.startsWith(anyLabel))
        return name == host;
    const qsizetype dot = host.indexOf(QLatin1Char('.'));
    return dot > 0 && host.mid(dot + 1) == name.mid(anyLabel.size());
}

/// Addresses can be written in more than one way.
QString plainHost(const QString &host)
{
    const QHostAddress address(host);
    return address.isNull() ? host.toLower() : address.toString();
}

} // namespace

QByteArray originOf(const HttpRequest &request)
{
    const QByteArray authority = request.header("Host");
    const bool isPlain =
        !request.isEncrypted && isLoopback(authorityOf(QString::fromLatin1(authority)).host());
    return (isPlain ? "http://" : "https://") + authority;
}

HostGuard::HostGuard(const QStringList &names)
{
    for (const QString &text : names) {
        const bool wild = text.startsWith(anyLabel);
        // An IPv6 address may stand there as a certificate has it.
        const bool bare = !QHostAddress(text).isNull() && text.contains(QLatin1Char(':'));
        const QUrl url = authorityOf(bare   ? QLatin1Char('[') + text + QLatin1Char(']')
                                     : wild ? text.mid(anyLabel.size())
                                            : text);
        if (url.isEmpty() || url.port() == 0)
            throw std::invalid_argument("no host name");
        Name name{plainHost(url.host()), std::nullopt};
        if (wild)
            name.host.prepend(anyLabel);
        if (url.port() != noPort)
            name.port = url.port();
        m_names << name;
    }
}

bool HostGuard::isNamed(const QString &host, int port) const
{
    return std::any_of(m_names.begin(), m_names.end(), [&](const Name &name) {
        // The scheme a client saw is not known behind a proxy, so both usual ports may be left out.
        const bool samePort =
            !name.port || *name.port == port ||
            (port == noPort && (*name.port == httpPort || *name.port == httpsPort));
        return samePort && matches(name.host, host);
    });
}

bool HostGuard::isOwn(const QByteArray &authority, const HttpRequest &request) const
{
    const QUrl url = authorityOf(QString::fromLatin1(authority));
    if (url.isEmpty())
        return false;
    const int usualPort = request.isEncrypted ? httpsPort : httpPort;
    const QString host = plainHost(url.host());
    return (isLoopback(host) && url.port(usualPort) == request.localPort) ||
           isNamed(host, url.port());
}

void HostGuard::check(const HttpRequest &request) const
{
    const auto hosts =
        std::count_if(request.headers.begin(), request.headers.end(), [](const HttpHeader &header) {
            return header.name.compare("host", Qt::CaseInsensitive) == 0;
        });
    if (hosts != 1 || !isOwn(request.header("Host"), request))
        throw Problem(421, QByteArrayLiteral("wrong-host"),
                      QStringLiteral("This service does not answer for that host name."));
    if (!request.hasHeader("Origin"))
        return;
    const QByteArray origin = request.header("Origin");
    const bool https = origin.startsWith("https://");
    // Without encryption of its own the service may stand behind something that encrypts, which is
    // said by giving it a name.
    const bool rightScheme = https ? request.isEncrypted || !m_names.isEmpty()
                                   : origin.startsWith("http://") && !request.isEncrypted;
    if (!rightScheme || !isOwn(origin.mid(origin.indexOf("//") + 2), request))
        throw Problem(403, QByteArrayLiteral("foreign-origin"),
                      QStringLiteral("Pages of other sites may not use this service."));
}

} // namespace Zel::Service
