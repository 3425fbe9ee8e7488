// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/network/networkroads.h"

#include "common/network/loopback.h"
#include "common/network/proxychoice.h"
#include "common/network/systemauthorities.h"

#include <QNetworkProxy>
#include <QSslCertificate>

namespace QXSC {

namespace {

/// The system's authorities and those of the file; nothing when the file holds none.
std::optional<QSslConfiguration> trusting(const QString &caFile)
{
    const QList<QSslCertificate> own = QSslCertificate::fromPath(caFile, QSsl::Pem);
    if (own.isEmpty())
        return std::nullopt;
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(systemAuthorities() + own);
    return tls;
}

} // namespace

const NetworkRoads::Road *NetworkRoads::to(const QUrl &url, const NetworkPolicy &policy)
{
    const bool useProxy = policy.useSystemProxy && !isLoopbackHost(url.host());
    const bool isEncrypted = url.scheme() == QLatin1String("https");
    const QString caFile = isEncrypted ? policy.caFile : QString();
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
    road.manager = new QNetworkAccessManager(m_parent);
    if (useProxy)
        road.manager->setProxyFactory(new ProxyChoice);
    else
        road.manager->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    return &m_roads.emplace(key, road).first->second;
}

} // namespace QXSC
