// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "keptconnection.h"

#include <array>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Bench {

KeptConnection::KeptConnection(quint16 port)
    : m_handle(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_host("Host: 127.0.0.1:" + QByteArray::number(port) + "\r\n")
{
    sockaddr_in server = {};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1;
    ::setsockopt(m_handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (::connect(m_handle, reinterpret_cast<sockaddr *>(&server), sizeof server) != 0)
        throw std::runtime_error("the service does not take a connection");
}

KeptConnection::~KeptConnection()
{
    ::close(m_handle);
}

void KeptConnection::send(const QByteArray &method, const QByteArray &target,
                          const QByteArray &body)
{
    QByteArray text = method + ' ' + target + " HTTP/1.1\r\n" + m_host + m_headers;
    if (!body.isNull())
        text += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    text += "\r\n" + body;
    if (::send(m_handle, text.constData(), static_cast<std::size_t>(text.size()), MSG_NOSIGNAL) !=
        text.size())
        throw std::runtime_error("the service does not take a request");
}

void KeptConnection::readMore()
{
    std::array<char, 16 * 1024> piece;
    const ssize_t count = ::recv(m_handle, piece.data(), piece.size(), 0);
    if (count <= 0)
        throw std::runtime_error("the service ended a connection");
    m_buffer.append(piece.data(), count);
}

qint64 KeptConnection::readHead(int status)
{
    while (!m_buffer.contains("\r\n\r\n"))
        readMore();
    const qsizetype end = m_buffer.indexOf("\r\n\r\n");
    const QByteArray head = m_buffer.left(end).toLower();
    if (head.mid(9, 3).toInt() != status)
        throw std::runtime_error("the service answers " + m_buffer.left(end).toStdString());
    m_buffer.remove(0, end + 4);
    const QByteArray name = "\r\ncontent-length:";
    const qsizetype at = head.indexOf(name);
    if (at < 0)
        return 0;
    const qsizetype from = at + name.size();
    const qsizetype lineEnd = head.indexOf('\r', from);
    return head.mid(from, lineEnd < 0 ? -1 : lineEnd - from).trimmed().toLongLong();
}

QByteArray KeptConnection::call(const QByteArray &method, const QByteArray &target, int status,
                                const QByteArray &body)
{
    send(method, target, body);
    const qint64 length = readHead(status);
    while (m_buffer.size() < length)
        readMore();
    const QByteArray answer = m_buffer.left(length);
    m_buffer.remove(0, length);
    return answer;
}

qint64 KeptConnection::download(const QByteArray &target)
{
    send("GET", target, QByteArray());
    const qint64 length = readHead(200);
    qint64 left = length - m_buffer.size();
    m_buffer.clear();
    QByteArray piece(256 * 1024, Qt::Uninitialized);
    while (left > 0) {
        const ssize_t count =
            ::recv(m_handle, piece.data(), static_cast<std::size_t>(piece.size()), 0);
        if (count <= 0)
            throw std::runtime_error("the service ended a connection");
        left -= count;
    }
    return length;
}

} // namespace Bench
