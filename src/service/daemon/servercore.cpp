// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/servercore.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>

namespace Zel::Service {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;
using boost::system::error_code;

ListenError::ListenError(Kind kind, const std::string &text)
    : std::runtime_error(text)
    , m_kind(kind)
{
}

ListenError::~ListenError() = default;

ServerCore::ServerCore(const HttpServerOptions &serverOptions, Take take)
    : options(serverOptions)
    , m_take(std::move(take))
    , m_tls(serverOptions.tls)
    , m_context(serverOptions.ioThreads)
    , m_acceptor(asio::make_strand(m_context))
{
}

void ServerCore::listen()
{
    openAcceptor();
    startThreads();
    m_running = true;
}

void ServerCore::openAcceptor()
{
    error_code error;
    const auto address = asio::ip::make_address(options.address.toStdString(), error);
    const auto check = [&error] {
        if (error)
            throw ListenError(error == asio::error::address_in_use ? ListenError::Kind::InUse
                                                                   : ListenError::Kind::Other,
                              error.message());
    };
    check();
    const tcp::endpoint endpoint(address, options.port);
    m_acceptor.open(endpoint.protocol(), error);
    check();
    m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
    check();
    if (address.is_v6() && address.is_unspecified())
        m_acceptor.set_option(asio::ip::v6_only(false), error); // "[::]" is every address
    check();
    m_acceptor.bind(endpoint, error);
    check();
    m_acceptor.listen(asio::socket_base::max_listen_connections, error);
    check();
    m_port = m_acceptor.local_endpoint(error).port();
}

void ServerCore::startThreads()
{
    const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
    const auto count =
        options.workers > 0 ? static_cast<unsigned>(options.workers) : std::max(8U, 2 * processors);
    m_workers = std::make_unique<WorkerPool>(count, options.limits.workerQueue);
    m_signInWorkers = std::make_unique<WorkerPool>(static_cast<std::size_t>(options.signInWorkers),
                                                   options.limits.signInQueue);
    m_healthWorkers = std::make_unique<WorkerPool>(static_cast<std::size_t>(options.healthWorkers),
                                                   options.limits.healthQueue);
    asio::co_spawn(m_acceptor.get_executor(), acceptAll(), asio::detached);
    for (int i = 0; i < options.ioThreads; ++i)
        m_threads.emplace_back([this] { m_context.run(); });
}

WorkerPool &ServerCore::pool(Lane lane)
{
    switch (lane) {
    case Lane::SignIn:
        return *m_signInWorkers;
    case Lane::Health:
        return *m_healthWorkers;
    default:
        return *m_workers;
    }
}

std::shared_ptr<const TlsContext> ServerCore::tls() const
{
    const std::lock_guard lock(m_mutex);
    return m_tls;
}

void ServerCore::replaceTls(std::shared_ptr<const TlsContext> tls)
{
    const std::lock_guard lock(m_mutex);
    m_tls.swap(tls);
}

void ServerCore::add(LiveConnection *connection)
{
    const std::lock_guard lock(m_mutex);
    m_connections.insert(connection);
}

void ServerCore::remove(LiveConnection *connection)
{
    {
        const std::lock_guard lock(m_mutex);
        m_connections.erase(connection);
    }
    m_connectionsChanged.notify_all();
}

asio::awaitable<void> ServerCore::acceptAll()
{
    asio::steady_timer pause(m_acceptor.get_executor());
    while (!m_draining) {
        error_code error;
        tcp::socket socket(asio::make_strand(m_context));
        co_await m_acceptor.async_accept(socket, asio::redirect_error(asio::use_awaitable, error));
        if (error && !m_draining) {
            // Most often no file handle is left; there will be when a connection ends.
            pause.expires_after(std::chrono::milliseconds(100));
            co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
            continue;
        }
        if (error || m_draining)
            continue;
        bool full = false;
        {
            const std::lock_guard lock(m_mutex);
            full = m_connections.size() >= options.limits.connections;
        }
        ++(full ? m_refused : m_taken);
        if (!full)
            m_take(*this, std::move(socket));
    }
}

void ServerCore::endConnections(bool atOnce)
{
    std::vector<std::shared_ptr<LiveConnection>> alive; // let go of after the lock: they take it
    const std::lock_guard lock(m_mutex);
    for (LiveConnection *connection : m_connections) {
        // One on its way out cannot be locked any more; it needs no telling.
        if (auto one = connection->weak_from_this().lock()) {
            one->end(atOnce);
            alive.push_back(std::move(one));
        }
    }
}

bool ServerCore::waitForConnections(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_connectionsChanged.wait_for(lock, time, [this] { return m_connections.empty(); });
}

void ServerCore::stop()
{
    if (!m_running)
        return;
    m_running = false;
    m_draining = true;
    asio::post(m_acceptor.get_executor(), [this] {
        error_code ignored;
        m_acceptor.close(ignored);
    });
    endConnections(false);
    if (!waitForConnections(options.limits.drain)) {
        endConnections(true);
        waitForConnections(std::chrono::milliseconds(2000));
    }
    m_workers->stop();
    m_signInWorkers->stop();
    m_healthWorkers->stop();
    m_context.stop();
    for (std::thread &thread : m_threads)
        thread.join();
    m_threads.clear();
}

HttpServerFigures ServerCore::figures() const
{
    const auto waiting = [](const std::unique_ptr<WorkerPool> &pool) {
        return pool ? static_cast<qint64>(pool->waiting()) : 0;
    };
    HttpServerFigures result;
    {
        const std::lock_guard lock(m_mutex);
        result.connections = static_cast<qint64>(m_connections.size());
    }
    result.connectionsTaken = m_taken;
    result.connectionsRefused = m_refused;
    result.handshakes = handshakes;
    result.handshakesFailed = handshakesFailed;
    result.requestsInFlight = inFlight;
    result.received = received;
    result.sent = sent;
    result.waitingForWorker = waiting(m_workers);
    result.waitingForSignIn = waiting(m_signInWorkers);
    result.waitingForHealth = waiting(m_healthWorkers);
    return result;
}

} // namespace Zel::Service
