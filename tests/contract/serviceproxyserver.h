// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/serviceproxy.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <atomic>

namespace ZelTest {

/// The side of `ServiceProxy` that lives in its thread.
class ServiceProxyServer : public QTcpServer
{
    Q_OBJECT

public:
    explicit ServiceProxyServer(quint16 servicePort);

    void forwardTo(quint16 servicePort);
    void setFate(ServiceProxy::Fate fate);
    void endConnections();

    std::atomic_int requests = 0;

protected:
    void incomingConnection(qintptr handle) override;

private:
    void take(QTcpSocket *client);
    void passToService(QTcpSocket *client, QTcpSocket *service);
    void passToClient(QTcpSocket *service, QTcpSocket *client);

    quint16 m_servicePort;
    ServiceProxy::Fate m_fate = ServiceProxy::Fate::PassOn;
};

} // namespace ZelTest
