// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/network/proxychoice.h"

#include <algorithm>

namespace QXSC {

namespace {

bool namesAProxy(const QList<QNetworkProxy> &proxies)
{
    return std::any_of(proxies.begin(), proxies.end(), [](const QNetworkProxy &proxy) {
        return proxy.type() != QNetworkProxy::NoProxy &&
               proxy.type() != QNetworkProxy::DefaultProxy;
    });
}

} // namespace

QList<QNetworkProxy> ProxyChoice::queryProxy(const QNetworkProxyQuery &query)
{
    const QList<QNetworkProxy> application = proxyForQuery(query);
    return namesAProxy(application) ? application : systemProxyForQuery(query);
}

} // namespace QXSC
