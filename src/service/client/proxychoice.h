// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QNetworkProxyFactory>

namespace QXSC {

/// Which proxy a call takes: none unless the policy asks for one, and never one for a service on
/// this machine, where plain http is allowed only because nothing leaves the machine.
class ProxyChoice : public QNetworkProxyFactory
{
public:
    void setUsingProxy(bool use) { m_useProxy = use; }

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;

private:
    bool m_useProxy = false;
};

} // namespace QXSC
