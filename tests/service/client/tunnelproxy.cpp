// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tunnelproxy.h"

#include <array>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ZelTest {

namespace {

constexpr int pollTime = 5; // milliseconds between looks at the stop flag

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool hasInput(int socket)
{
    pollfd one{socket, POLLIN, 0};
    return ::poll(&one, 1, pollTime) > 0;
}

bool send(int socket, const char *bytes, qsizetype count)
{
    while (count > 0) {
        const ssize_t sent = ::send(socket, bytes, std::size_t(count), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        count -= sent;
    }
    return true;
}

/// Passes on what is there; false at the end.
bool passOn(int from, int to)
{
    std::array<char, 64 * 1024> buffer{};
    const ssize_t count = ::recv(from, buffer.data(), buffer.size(), 0);
    return count > 0 && send(to, buffer.data(), count);
}

} // namespace

TunnelProxy::TunnelProxy(quint16 target, int mostTunnels)
    : m_target(target)
    , m_mostTunnels(mostTunnels)
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(m_listener, generic, length) != 0 || ::listen(m_listener, 16) != 0 ||
        ::getsockname(m_listener, generic, &length) != 0)
        qFatal("the test proxy cannot listen");
    m_port = ntohs(address.sin_port);
    m_acceptor.reset(QThread::create([this] { accept(); }));
    m_acceptor->start();
}

TunnelProxy::~TunnelProxy()
{
    m_stopping = true;
    m_acceptor->wait();
    for (const auto &thread : m_threads)
        thread->wait();
    ::close(m_listener);
}

QByteArrayList TunnelProxy::heads() const
{
    const QMutexLocker lock(&m_mutex);
    return m_heads;
}

void TunnelProxy::accept()
{
    while (!m_stopping) {
        if (!hasInput(m_listener))
            continue;
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        m_threads.emplace_back(QThread::create([this, client] {
            serve(client);
            ::close(client);
        }));
        m_threads.back()->start();
    }
}

void TunnelProxy::serve(int client)
{
    QByteArray head;
    if (!readHead(client, head))
        return;
    bool isRefused = false;
    {
        const QMutexLocker lock(&m_mutex);
        m_heads << head;
        isRefused = m_heads.size() > m_mostTunnels;
    }
    const QByteArray answer = isRefused ? "HTTP/1.1 403 No\r\nContent-Length: 0\r\n\r\n"
                                        : "HTTP/1.1 200 Connected\r\n\r\n";
    const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(m_target);
    if (::connect(server, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        send(client, answer.constData(), answer.size()) && !isRefused)
        relay(client, server);
    ::close(server);
}

bool TunnelProxy::readHead(int client, QByteArray &head) const
{
    while (!head.endsWith("\r\n\r\n")) {
        char byte = 0;
        if (m_stopping)
            return false;
        if (!hasInput(client))
            continue;
        if (::recv(client, &byte, 1, 0) != 1)
            return false;
        head += byte;
    }
    return true;
}

void TunnelProxy::relay(int client, int server) const
{
    std::array<pollfd, 2> ends{pollfd{client, POLLIN, 0}, pollfd{server, POLLIN, 0}};
    while (!m_stopping) {
        if (::poll(ends.data(), ends.size(), pollTime) <= 0)
            continue;
        if (ends[0].revents != 0 && !passOn(client, server))
            return;
        if (ends[1].revents != 0 && !passOn(server, client))
            return;
    }
}

} // namespace ZelTest
