// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/httpserver.h"
#include "service/daemon/workerpool.h"

#include <utility> // before asio's awaitable, which forgets it

#include <boost/asio/awaitable.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace Zel::Service {

/// A connection as the server's core knows it.
class LiveConnection : public std::enable_shared_from_this<LiveConnection>
{
public:
    virtual ~LiveConnection() = default;
    /// Ends the connection: at once, or when it is not answering a request. Any thread may ask.
    virtual void end(bool atOnce) = 0;
};

/// The part of the server that does not know what is said on a connection: it listens, has the
/// threads, knows who is connected and ends it all in order.
class ServerCore
{
public:
    using Socket = boost::asio::ip::tcp::socket;
    /// Makes a connection of a socket, on a socket thread.
    using Take = std::function<void(ServerCore &, Socket)>;

    ServerCore(const HttpServerOptions &serverOptions, Take take);

    void listen();
    void stop();

    quint16 port() const { return m_port; }

    bool isDraining() const { return m_draining; }

    WorkerPool &pool(Lane lane);

    /// What new connections are encrypted with; null for plain HTTP.
    std::shared_ptr<const TlsContext> tls() const;
    void replaceTls(std::shared_ptr<const TlsContext> tls);

    /// A connection is here from when it is made until it is destroyed.
    void add(LiveConnection *connection);
    void remove(LiveConnection *connection);

    HttpServerFigures figures() const;

    const HttpServerOptions options;

    // What the connections count.
    std::atomic<qint64> handshakes{0};
    std::atomic<qint64> handshakesFailed{0};
    std::atomic<qint64> inFlight{0};
    std::atomic<qint64> received{0};
    std::atomic<qint64> sent{0};

private:
    boost::asio::awaitable<void> acceptAll();
    void openAcceptor();
    void startThreads();
    void endConnections(bool atOnce);
    bool waitForConnections(std::chrono::milliseconds time);

    const Take m_take;
    std::atomic<qint64> m_taken{0};
    std::atomic<qint64> m_refused{0};

    // The living connections, for draining. Each takes itself out when it is destroyed, the last of
    // them by the context below.
    mutable std::mutex m_mutex;
    std::condition_variable m_connectionsChanged;
    std::set<LiveConnection *> m_connections;
    std::shared_ptr<const TlsContext> m_tls;
    std::atomic<bool> m_draining{false};

    // What the context still holds when it is destroyed ends its work in the pools.
    std::unique_ptr<WorkerPool> m_workers;
    std::unique_ptr<WorkerPool> m_signInWorkers;
    std::unique_ptr<WorkerPool> m_healthWorkers;
    boost::asio::io_context m_context;
    quint16 m_port = 0;

    boost::asio::ip::tcp::acceptor m_acceptor;
    std::vector<std::thread> m_threads;
    bool m_running = false;
};

} // namespace Zel::Service
