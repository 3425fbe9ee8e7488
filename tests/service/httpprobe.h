// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QMap>
#include <QTcpSocket>

#include <memory>

namespace ZelTest {

/// An answer taken apart. `status` is 0 when there was none.
struct HttpReply
{
    int status = 0;
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;

    QJsonObject json() const;
    /// The "code" of a problem answer.
    QString code() const;
};

/// A client that sends exactly the bytes it is given.
class HttpProbe
{
public:
    explicit HttpProbe(quint16 port);
    ~HttpProbe();

    /// Whether all probes from now on encrypt, and the file of the authority they trust; not when
    /// it is empty.
    static void encrypt(const QString &caFile);

    bool isConnected() const { return m_socket->state() == QAbstractSocket::ConnectedState; }

    /// The certificate that the server showed, by the time of its end; not valid without one.
    QDateTime certificateEnd() const;

    void send(const QByteArray &bytes);
    /// Reads one answer; with `headOnly` one without a body.
    HttpReply read(bool headOnly = false);
    /// Everything that comes until the server ends the connection; null when it does not.
    QByteArray readToEnd();
    /// Whether the server ends the connection within the time of a test, without another byte.
    bool isClosed();

    /// Leaves what the server sends with the system, but for a little, until it is asked for.
    void takeInLittle() { m_socket->setReadBufferSize(64 * 1024); }

    /// Ends the connection with a reset.
    void abort() { m_socket->abort(); }

    quint16 localPort() const { return m_socket->localPort(); }

    /// One request of its own connection.
    static HttpReply request(quint16 port, const QByteArray &method, const QByteArray &target,
                             const QByteArray &body = QByteArray(),
                             const QByteArrayList &headers = {});

private:
    bool readMore();

    std::unique_ptr<QTcpSocket> m_socket;
    QByteArray m_pending;
};

} // namespace ZelTest
