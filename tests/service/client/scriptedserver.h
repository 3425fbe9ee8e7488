// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/httpserviceclient.h"

#include <QMap>
#include <QMutex>
#include <QSslConfiguration>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QSslSocket;

namespace ZelTest {

/// A request as it came over the wire.
struct SeenRequest
{
    QByteArray method;
    QByteArray target;
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;

    QByteArray header(const QByteArray &name) const { return headers.value(name); }
};

/// The server's end of a connection, for one request. All functions block.
class Wire
{
public:
    Wire(QSslSocket &socket, const std::atomic_bool &stopping);

    /// Returns false when the other side has gone.
    bool write(const QByteArray &bytes);
    /// Ends the connection in order, after what was written.
    void close();
    /// Ends it with a reset, as a process that was killed does.
    void reset();
    /// Does nothing until the other side or the test gives up.
    void stall();
    /// Sends a byte every few milliseconds until the other side or the test gives up.
    void drip();
    void sleep(int milliseconds);

private:
    QSslSocket &m_socket;
    const std::atomic_bool &m_stopping;
};

/// A server that does what a test wants, bytes included, in threads of its own: it answers while
/// the thread of the test is inside a call.
class ScriptedServer
{
public:
    using Script = std::function<void(const SeenRequest &, Wire &)>;

    enum class Ask
    {
        WholeRequest, ///< the script runs when the request is complete
        HeadOnly      ///< the script runs before the body is read
    };

    explicit ScriptedServer(Script script, Ask ask = Ask::WholeRequest,
                            const QSslConfiguration &tls = QSslConfiguration());
    ~ScriptedServer();
    Q_DISABLE_COPY_MOVE(ScriptedServer)

    quint16 port() const { return m_port; }

    /// "127.0.0.1:port"
    QString address() const;
    QList<SeenRequest> requests() const;

    /// How many connections were made, with or without a request.
    int connections() const { return m_connections; }

private:
    void accept(std::function<void(quint16)> listening);
    void serve(qintptr descriptor);
    void talk(QSslSocket &socket);
    bool readHead(QSslSocket &socket, SeenRequest &request) const;
    bool readBody(QSslSocket &socket, SeenRequest &request) const;

    const Script m_script;
    const Ask m_ask;
    const QSslConfiguration m_tls;
    std::atomic_bool m_stopping = false;
    std::atomic_int m_connections = 0;
    quint16 m_port = 0;
    mutable QMutex m_mutex;
    QList<SeenRequest> m_requests;
    std::vector<std::unique_ptr<QThread>> m_threads;
    std::unique_ptr<QThread> m_acceptor;
};

/// A complete HTTP answer with its Content-Length.
QByteArray http(int status, const QByteArray &body,
                const QByteArray &contentType = "application/json",
                const QByteArray &moreHeaders = QByteArray());
/// A refusal as the service words it.
QByteArray problem(int status, const QByteArray &code, const QByteArray &detail = "A detail.",
                   const QByteArray &moreHeaders = QByteArray());

/// The answer to a project list; `rows` is the JSON list of rows, in the service's order of
/// columns.
QByteArray projectsAnswer(const QByteArray &rows);

ScriptedServer::Script respond(const QByteArray &bytes);

/// A server that lets anybody sign in and treats every other call by the script, and a client that
/// is signed in there.
struct SignedIn
{
    static constexpr const char *token = "tok-4711-secret";

    explicit SignedIn(const ScriptedServer::Script &script,
                      ScriptedServer::Ask ask = ScriptedServer::Ask::WholeRequest);

    /// The last request after the sign-in.
    SeenRequest lastRequest() const;

    /// How many came after it.
    qsizetype calls() const { return server.requests().size() - 1; }

    ScriptedServer server;
    QXSC::HttpServiceClient client;
};

bool signIn(QXSC::HttpServiceClient &client, const QString &address, bool useProxy = false);

/// What a call threw, null when it threw nothing.
template <typename Call>
std::unique_ptr<QXSC::ServiceError> errorOf(const Call &call)
{
    try {
        call();
    } catch (const QXSC::ServiceError &error) {
        return std::unique_ptr<QXSC::ServiceError>(error.clone());
    }
    return nullptr;
}

} // namespace ZelTest
