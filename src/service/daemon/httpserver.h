// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"
#include "service/daemon/tlscontext.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

namespace Zel::Service {

/// The address cannot be listened on.
class ZEL_EXPORT ListenError : public std::runtime_error
{
public:
    enum class Kind
    {
        InUse,
        Other
    };

    ListenError(Kind kind, const std::string &text);
    ~ListenError() override;

    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

class ServerCore;

/// What one client may take of the server.
struct HttpLimits
{
    quint32 headerBytes = 16 * 1024;
    std::size_t connections = 1024;
    std::size_t workerQueue = 1024; ///< calls that wait for a worker; further ones are answered 503
    std::size_t signInQueue = 64;   ///< the same for sign-ins
    std::size_t healthQueue = 64;   ///< and for those who watch the service
    std::chrono::milliseconds header{15'000}; ///< from the first byte of a request to the end of
                                              ///< its head, and for the handshake of TLS
    std::chrono::milliseconds body{30'000};   ///< for the whole body, of a streamed one for each
                                              ///< piece
    std::chrono::milliseconds idle{75'000};   ///< between two requests of a connection
    std::chrono::milliseconds write{30'000};  ///< for each part of an answer
    std::chrono::milliseconds drain{20'000};  ///< for the calls in flight when the server stops
};

struct HttpServerOptions
{
    QString address = QStringLiteral("127.0.0.1");
    quint16 port = 0; ///< 0: the system chooses
    int ioThreads = 2;
    int workers = 0; ///< 0: twice the processors, 8 at least
    int signInWorkers = 2;
    int healthWorkers = 2;
    HttpLimits limits;
    /// Decides about a request from its head; runs on a socket thread and must not block or throw.
    std::function<HttpPlan(const HttpRequest &)> plan;
    /// Told of every answer, on a socket thread.
    std::function<void(const HttpLogEntry &)> log;
    /// Encrypts every connection; null for plain HTTP.
    std::shared_ptr<const TlsContext> tls;
    /// Told of every client that did not get to encrypt its connection, and why; on a socket
    /// thread.
    std::function<void(const QString &peerAddress, const QString &why)> handshakeFailed;
};

/// What a server has done and has to do at this moment.
struct HttpServerFigures
{
    qint64 connections = 0;        ///< open now
    qint64 connectionsTaken = 0;   ///< since it started
    qint64 connectionsRefused = 0; ///< because there were too many
    qint64 handshakes = 0;         ///< of TLS, that succeeded
    qint64 handshakesFailed = 0;
    qint64 requestsInFlight = 0; ///< from the first byte to the last one of the answer
    qint64 received = 0;         ///< bytes, without what encryption adds
    qint64 sent = 0;
    qint64 waitingForWorker = 0; ///< calls
    qint64 waitingForSignIn = 0;
    qint64 waitingForHealth = 0;
};

/// An HTTP/1.1 server: sockets on a few threads of its own, handlers on worker pools.
///
/// Malformed requests are answered 400 (a head beyond its limit 431, a body beyond its limit 413)
/// and their connection is closed. Nothing of the HTTP library shows outside of the source file.
class ZEL_EXPORT HttpServer
{
public:
    explicit HttpServer(const HttpServerOptions &options);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// Begins to listen; throws `ListenError`.
    void start();
    /// The port that is listened on.
    quint16 port() const;
    /// Takes no new connection, lets the calls in flight finish within the drain limit, then ends
    /// all threads.
    void stop();

    /// Encrypts new connections with another certificate; those that are open keep theirs. Not for
    /// a server that was started without one. Any thread may call it.
    void replaceTls(std::shared_ptr<const TlsContext> tls);
    /// Any thread may ask.
    HttpServerFigures figures() const;

private:
    std::unique_ptr<ServerCore> d;
};

} // namespace Zel::Service
