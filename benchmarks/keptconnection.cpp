// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "keptconnection.h"

#include <array>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Bench {

KeptConnection::Trust KeptConnection::trustIn(const QString &caFile)
{
    Trust trust(SSL_CTX_new(TLS_client_method()), SSL_CTX_free);
    SSL_CTX_set_verify(trust.get(), SSL_VERIFY_PEER, nullptr);
    if (SSL_CTX_load_verify_file(trust.get(), caFile.toUtf8().constData()) != 1)
        throw std::runtime_error("the authority cannot be read");
    return trust;
}

KeptConnection::KeptConnection(quint16 port, const Trust &trust)
    : m_handle(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_tls(nullptr, SSL_free)
    , m_host("Host: 127.0.0.1:" + QByteArray::number(port) + "\r\n")
{
    connect(port);
    if (trust)
        encrypt(trust.get());
}

void KeptConnection::connect(quint16 port)
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

void KeptConnection::encrypt(ssl_ctx_st *trust)
{
    m_tls.reset(SSL_new(trust));
    X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(m_tls.get()), "127.0.0.1");
    if (SSL_set_fd(m_tls.get(), m_handle) != 1 || SSL_connect(m_tls.get()) != 1)
        throw std::runtime_error("the service and this program do not agree how to encrypt");
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
    const auto length = static_cast<std::size_t>(text.size());
    const qsizetype sent = m_tls
                               ? SSL_write(m_tls.get(), text.constData(), static_cast<int>(length))
                               : ::send(m_handle, text.constData(), length, MSG_NOSIGNAL);
    if (sent != text.size())
        throw std::runtime_error("the service does not take a request");
}

void KeptConnection::readMore()
{
    std::array<char, 16 * 1024> piece;
    m_buffer.append(piece.data(), receive(piece.data(), piece.size()));
}

qsizetype KeptConnection::receive(char *bytes, qsizetype atMost)
{
    const qsizetype count = m_tls ? SSL_read(m_tls.get(), bytes, static_cast<int>(atMost))
                                  : ::recv(m_handle, bytes, static_cast<std::size_t>(atMost), 0);
    if (count <= 0)
        throw std::runtime_error("the service ended a connection");
    return count;
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
    while (left > 0)
        left -= receive(piece.data(), piece.size());
    return length;
}

} // namespace Bench
