// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/serviceproxy.h"

#include "tests/contract/contracttls.h"
#include "tests/contract/serviceproxyserver.h"

#include <QSslSocket>

#include <stdexcept>

namespace ZelTest {

using Fate = ServiceProxy::Fate;

ServiceProxyServer::ServiceProxyServer(quint16 servicePort)
    : m_servicePort(servicePort)
{
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *client = nextPendingConnection())
            take(client);
    });
}

void ServiceProxyServer::incomingConnection(qintptr handle)
{
    const ContractTls *tls = ContractTls::get();
    if (!tls) {
        QTcpServer::incomingConnection(handle);
        return;
    }
    auto *client = new QSslSocket(this);
    client->setSocketDescriptor(handle);
    client->setSslConfiguration(tls->configuration());
    client->setPeerVerifyMode(QSslSocket::VerifyNone);
    client->startServerEncryption();
    addPendingConnection(client);
}

void ServiceProxyServer::forwardTo(quint16 servicePort)
{
    m_servicePort = servicePort;
    endConnections();
}

void ServiceProxyServer::setFate(Fate fate)
{
    m_fate = fate;
}

void ServiceProxyServer::endConnections()
{
    const auto sockets = findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : sockets)
        socket->abort();
}

void ServiceProxyServer::take(QTcpSocket *client)
{
    const ContractTls *tls = ContractTls::get();
    auto *service = tls ? new QSslSocket(this) : new QTcpSocket(this);
    connect(client, &QTcpSocket::readyRead, service,
            [this, client, service] { passToService(client, service); });
    connect(service, &QTcpSocket::readyRead, client,
            [this, client, service] { passToClient(service, client); });
    // One end goes with the other, after what was on its way.
    connect(client, &QTcpSocket::disconnected, service, &QTcpSocket::disconnectFromHost);
    connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    connect(service, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
    connect(service, &QTcpSocket::disconnected, service, &QObject::deleteLater);
    connect(service, &QTcpSocket::errorOccurred, client, &QTcpSocket::disconnectFromHost);
    if (auto *encrypted = qobject_cast<QSslSocket *>(service)) {
        encrypted->setSslConfiguration(tls->configuration());
        encrypted->connectToHostEncrypted(QStringLiteral("127.0.0.1"), m_servicePort);
    } else {
        service->connectToHost(QHostAddress(QHostAddress::LocalHost), m_servicePort);
    }
}

void ServiceProxyServer::passToService(QTcpSocket *client, QTcpSocket *service)
{
    QByteArray bytes = client->readAll();
    // The service answers only to its own address. The head of a request comes in one piece.
    const QByteArray host = "Host: 127.0.0.1:";
    const QByteArray ours = host + QByteArray::number(serverPort());
    if (bytes.contains(ours)) {
        ++requests;
        bytes.replace(ours, host + QByteArray::number(m_servicePort));
    }
    if (m_fate == Fate::LoseRequest)
        client->abort();
    else
        service->write(bytes);
}

void ServiceProxyServer::passToClient(QTcpSocket *service, QTcpSocket *client)
{
    const QByteArray bytes = service->readAll();
    if (m_fate != Fate::LoseAnswer && m_fate != Fate::LoseNextAnswer) {
        client->write(bytes);
        return;
    }
    if (m_fate == Fate::LoseNextAnswer)
        m_fate = Fate::PassOn;
    client->abort();
}

QString ServiceProxy::address() const
{
    return QStringLiteral("%1://127.0.0.1:%2")
        .arg(ContractTls::get() ? QStringLiteral("https") : QStringLiteral("http"))
        .arg(m_port);
}

ServiceProxy::ServiceProxy(quint16 servicePort)
    : m_server(new ServiceProxyServer(servicePort))
{
    const bool listening = m_server->listen(QHostAddress::LocalHost);
    m_port = m_server->serverPort();
    m_server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    m_thread.start();
    if (listening)
        return;
    endThread();
    throw std::runtime_error("the proxy cannot listen");
}

ServiceProxy::~ServiceProxy()
{
    endThread();
}

void ServiceProxy::endThread()
{
    m_thread.quit();
    m_thread.wait();
}

void ServiceProxy::forwardTo(quint16 servicePort)
{
    QMetaObject::invokeMethod(
        m_server, [&] { m_server->forwardTo(servicePort); }, Qt::BlockingQueuedConnection);
}

void ServiceProxy::setFate(Fate fate)
{
    QMetaObject::invokeMethod(
        m_server, [&] { m_server->setFate(fate); }, Qt::BlockingQueuedConnection);
}

int ServiceProxy::requests() const
{
    return m_server->requests;
}

} // namespace ZelTest
