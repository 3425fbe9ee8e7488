// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/httpprobe.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QJsonDocument>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>

namespace ZelTest {

namespace {

constexpr int patienceMs = 20'000;

/// The file of the authority that encrypting probes trust.
QString authority;

} // namespace

QJsonObject HttpReply::json() const
{
    return QJsonDocument::fromJson(body).object();
}

QString HttpReply::code() const
{
    return json().value(QLatin1String("code")).toString();
}

HttpProbe::HttpProbe(quint16 port)
{
    if (authority.isEmpty()) {
        m_socket = std::make_unique<QTcpSocket>();
        m_socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        m_socket->waitForConnected(patienceMs);
        return;
    }
    auto socket = std::make_unique<QSslSocket>();
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(authority));
    socket->setSslConfiguration(tls);
    socket->connectToHostEncrypted(QStringLiteral("127.0.0.1"), port);
    socket->waitForEncrypted(patienceMs);
    m_socket = std::move(socket);
}

HttpProbe::~HttpProbe() = default;

void HttpProbe::encrypt(const QString &caFile)
{
    authority = caFile;
}

QDateTime HttpProbe::certificateEnd() const
{
    const auto *socket = qobject_cast<const QSslSocket *>(m_socket.get());
    return socket ? socket->peerCertificate().expiryDate() : QDateTime();
}

void HttpProbe::send(const QByteArray &bytes)
{
    m_socket->write(bytes);
    while (m_socket->bytesToWrite() > 0 && m_socket->waitForBytesWritten(patienceMs)) {
    }
}

bool HttpProbe::readMore()
{
    if (m_socket->bytesAvailable() == 0 &&
        (m_socket->state() == QAbstractSocket::UnconnectedState ||
         !m_socket->waitForReadyRead(patienceMs)))
        return false;
    m_pending += m_socket->readAll();
    return true;
}

HttpReply HttpProbe::read(bool headOnly)
{
    while (!m_pending.contains("\r\n\r\n")) {
        if (!readMore())
            return {};
    }
    const qsizetype end = m_pending.indexOf("\r\n\r\n");
    const QByteArrayList lines = m_pending.left(end).split('\n');
    m_pending.remove(0, end + 4);
    HttpReply reply;
    reply.status = lines.first().mid(9, 3).toInt();
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        reply.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    const qsizetype length = headOnly ? 0 : reply.headers.value("content-length").toLongLong();
    while (m_pending.size() < length) {
        if (!readMore())
            return {};
    }
    reply.body = m_pending.left(length);
    m_pending.remove(0, length);
    return reply;
}

QByteArray HttpProbe::readToEnd()
{
    const QDeadlineTimer deadline(patienceMs);
    while (readMore() && !deadline.hasExpired()) {
    }
    if (m_socket->state() == QAbstractSocket::ConnectedState)
        return QByteArray();
    const QByteArray all = m_pending.isNull() ? QByteArray("") : m_pending;
    m_pending.clear();
    return all;
}

bool HttpProbe::isClosed()
{
    const QByteArray rest = readToEnd();
    return !rest.isNull() && rest.isEmpty();
}

HttpReply HttpProbe::request(quint16 port, const QByteArray &method, const QByteArray &target,
                             const QByteArray &body, const QByteArrayList &headers)
{
    HttpProbe probe(port);
    QByteArray text = method + ' ' + target +
                      " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
                      "\r\nConnection: close\r\n";
    for (const QByteArray &header : headers)
        text += header + "\r\n";
    if (!body.isNull())
        text += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    probe.send(text + "\r\n" + body);
    return probe.read(method == "HEAD");
}

} // namespace ZelTest
