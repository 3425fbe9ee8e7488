// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QTcpSocket>

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

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }

    void send(const QByteArray &bytes);
    /// Reads one answer; with `headOnly` one without a body.
    HttpReply read(bool headOnly = false);
    /// Everything that comes until the server ends the connection; null when it does not.
    QByteArray readToEnd();
    /// Whether the server ends the connection within the time of a test, without another byte.
    bool isClosed();

    /// Leaves what the server sends with the system, but for a little, until it is asked for.
    void takeInLittle() { m_socket.setReadBufferSize(64 * 1024); }

    /// Ends the connection with a reset.
    void abort() { m_socket.abort(); }

    quint16 localPort() const { return m_socket.localPort(); }

    /// One request of its own connection.
    static HttpReply request(quint16 port, const QByteArray &method, const QByteArray &target,
                             const QByteArray &body = QByteArray(),
                             const QByteArrayList &headers = {});

private:
    bool readMore();

    QTcpSocket m_socket;
    QByteArray m_pending;
};

} // namespace ZelTest
