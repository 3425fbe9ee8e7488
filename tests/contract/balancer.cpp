// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/balancer.h"

#include "tests/contract/balancerserver.h"
#include "tests/contract/ports.h"

namespace ZelTest {

BalancerServer::BalancerServer()
{
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *client = nextPendingConnection())
            take(client, services.size());
    });
}

/// Looks for a service that takes the connection; it ends when none does.
void BalancerServer::take(QTcpSocket *client, qsizetype attempts)
{
    if (attempts == 0) {
        client->abort();
        client->deleteLater();
        return;
    }
    const quint16 port = services.at(m_next++ % services.size());
    auto *service = new QTcpSocket(client); // ends with the client at the latest
    connect(service, &QTcpSocket::connected, client, [this, client, service] {
        service->disconnect(client);
        join(client, service);
    });
    connect(service, &QTcpSocket::errorOccurred, client, [this, client, service, attempts] {
        service->disconnect(client);
        service->deleteLater();
        take(client, attempts - 1);
    });
    service->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
}

void BalancerServer::join(QTcpSocket *client, QTcpSocket *service)
{
    const auto pass = [](QTcpSocket *from, QTcpSocket *to) { to->write(from->readAll()); };
    connect(client, &QTcpSocket::readyRead, service, [=] { pass(client, service); });
    connect(service, &QTcpSocket::readyRead, client, [=] { pass(service, client); });
    // One end goes with the other, after what was on its way.
    connect(client, &QTcpSocket::disconnected, service, &QTcpSocket::disconnectFromHost);
    connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    connect(service, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
    pass(client, service); // what came meanwhile
    if (client->state() != QAbstractSocket::ConnectedState)
        client->deleteLater();
}

Balancer::Balancer()
    : m_server(new BalancerServer)
{
    m_server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    m_thread.start();
}

Balancer::~Balancer()
{
    m_thread.quit();
    m_thread.wait();
}

bool Balancer::open(const QList<quint16> &services)
{
    bool listening = false;
    QMetaObject::invokeMethod(
        m_server,
        [&] {
            m_server->services = services;
            if (m_port == 0)
                m_port = freePort();
            listening =
                m_server->isListening() || m_server->listen(QHostAddress::LocalHost, m_port);
        },
        Qt::BlockingQueuedConnection);
    return listening;
}

void Balancer::close()
{
    QMetaObject::invokeMethod(
        m_server, [this] { m_server->close(); }, Qt::BlockingQueuedConnection);
}

} // namespace ZelTest
