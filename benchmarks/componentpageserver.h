// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>

/// Serves one component page to one program, and notes when the page says that it is loaded and
/// that it has its value.
class ComponentPageServer
{
public:
    ComponentPageServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
                QObject::connect(socket, &QTcpSocket::readyRead, socket,
                                 [this, socket] { answer(*socket); });
            }
        });
    }

    QString url() const
    {
        return QStringLiteral("http://127.0.0.1:%1/page").arg(m_server.serverPort());
    }

    /// Begins to count: the moment of the click.
    void begin()
    {
        m_times.clear();
        m_timer.start();
    }

    /// Milliseconds since the click until the page told this ("/loaded", "/value"), 0 when it has
    /// not.
    double time(const char *what) const { return m_times.value(what); }

private:
    void answer(QTcpSocket &socket)
    {
        QByteArray head = socket.property("head").toByteArray() + socket.readAll();
        if (!head.contains("\r\n\r\n")) {
            socket.setProperty("head", head);
            return;
        }
        socket.setProperty("head", QByteArray());
        const QByteArray path = head.split(' ').value(1);
        const bool isPage = path.startsWith("/page");
        if (!isPage)
            m_times.insert(path, static_cast<double>(m_timer.nsecsElapsed()) / 1e6);
        const QByteArray body = isPage ? page() : QByteArray("noted");
        socket.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                     QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }

    static QByteArray page()
    {
        QByteArray rows;
        for (int i = 0; i < 200; ++i)
            rows +=
                "<li><label>Slide " + QByteArray::number(i) + " <input value='text'></label></li>";
        return "<!DOCTYPE html><html lang='en'><title>Page</title><body><ul>" + rows +
               "</ul><script>addEventListener('load', function () { fetch('/loaded'); });"
               "function external_load(value) { fetch('/value'); }</script></body></html>";
    }

    QTcpServer m_server;
    QElapsedTimer m_timer;
    QHash<QByteArray, double> m_times;
};
