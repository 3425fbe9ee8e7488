// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"

#include <QSemaphore>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

#include <sys/socket.h>

namespace ZelTest {

namespace {

constexpr int poll = 5; // milliseconds between looks at the stop flag

class Listener : public QTcpServer
{
public:
    std::function<void(qintptr)> connected;

protected:
    void incomingConnection(qintptr descriptor) override { connected(descriptor); }
};

bool isOpen(const QSslSocket &socket)
{
    return socket.state() == QAbstractSocket::ConnectedState;
}

} // namespace

Wire::Wire(QSslSocket &socket, const std::atomic_bool &stopping)
    : m_socket(socket)
    , m_stopping(stopping)
{
}

bool Wire::write(const QByteArray &bytes)
{
    if (m_stopping || !isOpen(m_socket))
        return false;
    m_socket.write(bytes);
    while (m_socket.bytesToWrite() > 0 || m_socket.encryptedBytesToWrite() > 0) {
        if (m_stopping || !isOpen(m_socket))
            return false;
        m_socket.waitForBytesWritten(poll);
    }
    return isOpen(m_socket);
}

void Wire::close()
{
    m_socket.disconnectFromHost();
    while (!m_stopping && m_socket.state() != QAbstractSocket::UnconnectedState)
        m_socket.waitForDisconnected(poll);
}

void Wire::reset()
{
    const linger hard{1, 0};
    ::setsockopt(static_cast<int>(m_socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                 sizeof hard);
    m_socket.abort();
}

void Wire::stall()
{
    while (!m_stopping && isOpen(m_socket))
        m_socket.waitForReadyRead(poll);
}

void Wire::drip()
{
    while (write(" "))
        sleep(poll);
}

void Wire::sleep(int milliseconds)
{
    for (int slept = 0; slept < milliseconds && !m_stopping; slept += poll)
        QThread::msleep(poll);
}

ScriptedServer::ScriptedServer(Script script, Ask ask, const QSslConfiguration &tls)
    : m_script(std::move(script))
    , m_ask(ask)
    , m_tls(tls)
{
    QSemaphore listening;
    m_acceptor.reset(QThread::create([this, &listening] {
        accept([this, &listening](quint16 port) {
            m_port = port;
            listening.release();
        });
    }));
    m_acceptor->start();
    listening.acquire();
}

ScriptedServer::~ScriptedServer()
{
    m_stopping = true;
    m_acceptor->wait();
    for (const auto &thread : m_threads)
        thread->wait();
}

QString ScriptedServer::address() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

QList<SeenRequest> ScriptedServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

void ScriptedServer::accept(std::function<void(quint16)> listening)
{
    Listener listener;
    listener.connected = [this](qintptr descriptor) {
        ++m_connections;
        m_threads.emplace_back(QThread::create([this, descriptor] { serve(descriptor); }));
        m_threads.back()->start();
    };
    listener.listen(QHostAddress::LocalHost);
    listening(listener.serverPort());
    while (!m_stopping)
        listener.waitForNewConnection(poll);
}

void ScriptedServer::serve(qintptr descriptor)
{
    QSslSocket socket;
    socket.setSocketDescriptor(descriptor);
    if (!m_tls.privateKey().isNull()) {
        socket.setSslConfiguration(m_tls);
        socket.startServerEncryption();
        while (!m_stopping && !socket.isEncrypted() && isOpen(socket))
            socket.waitForEncrypted(poll * 200);
    }
    talk(socket);
}

void ScriptedServer::talk(QSslSocket &socket)
{
    SeenRequest request;
    while (readHead(socket, request)) {
        if (m_ask == Ask::WholeRequest && !readBody(socket, request))
            return;
        {
            const QMutexLocker lock(&m_mutex);
            m_requests.append(request);
        }
        Wire wire(socket, m_stopping);
        m_script(request, wire);
        if (m_ask == Ask::HeadOnly && !readBody(socket, request))
            return;
        request = SeenRequest();
    }
}

bool ScriptedServer::readHead(QSslSocket &socket, SeenRequest &request) const
{
    while (true) {
        while (!socket.canReadLine()) {
            if (m_stopping || (!isOpen(socket) && socket.bytesAvailable() == 0))
                return false;
            socket.waitForReadyRead(poll);
        }
        const QByteArray line = socket.readLine().trimmed();
        if (line.isEmpty())
            return true;
        if (request.method.isEmpty()) {
            const QList<QByteArray> words = line.split(' ');
            request.method = words.value(0);
            request.target = words.value(1);
            continue;
        }
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
}

bool ScriptedServer::readBody(QSslSocket &socket, SeenRequest &request) const
{
    const qsizetype length = request.header("content-length").toLongLong();
    while (request.body.size() < length && socket.isOpen()) {
        request.body += socket.read(length - request.body.size());
        if (request.body.size() == length)
            break;
        if (m_stopping || !isOpen(socket))
            return false;
        socket.waitForReadyRead(poll);
    }
    return request.body.size() >= length;
}

QByteArray http(int status, const QByteArray &body, const QByteArray &contentType,
                const QByteArray &moreHeaders)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Words\r\nContent-Type: " + contentType +
           "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nX-Request-Id: req-17\r\n" + moreHeaders + "\r\n" + body;
}

QByteArray problem(int status, const QByteArray &code, const QByteArray &detail,
                   const QByteArray &moreHeaders)
{
    return http(status,
                "{\"code\":\"" + code + "\",\"detail\":\"" + detail +
                    "\",\"requestId\":\"req-42\"}",
                "application/problem+json", moreHeaders);
}

QByteArray projectsAnswer(const QByteArray &rows)
{
    return http(200, R"({"projects":{"columns":["guid","name","description","created","modified",)"
                     R"("createdBy","eventDate","published"],"rows":)" +
                         rows + "}}");
}

ScriptedServer::Script respond(const QByteArray &bytes)
{
    return [bytes](const SeenRequest &, Wire &wire) { wire.write(bytes); };
}

SignedIn::SignedIn(const ScriptedServer::Script &script, ScriptedServer::Ask ask)
    : server(
          [script](const SeenRequest &request, Wire &wire) {
              if (request.target == "/v1/sessions")
                  wire.write(http(201, QByteArray("{\"token\":\"") + token +
                                           "\",\"expiresAt\":4102444800000}"));
              else
                  script(request, wire);
          },
          ask)
{
    if (!signIn(client, server.address()))
        qFatal("the scripted server did not let the client sign in");
}

SeenRequest SignedIn::lastRequest() const
{
    const QList<SeenRequest> all = server.requests();
    return all.size() > 1 ? all.last() : SeenRequest();
}

bool signIn(QXSC::HttpServiceClient &client, const QString &address, bool useProxy)
{
    bool success = false;
    client.authenticate(address, QStringLiteral("ada"), QStringLiteral("open sesame"),
                        QStringLiteral("Studio"), QString(), useProxy, true, success);
    return success;
}

} // namespace ZelTest
