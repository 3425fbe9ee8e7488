// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"

#include <QBuffer>
#include <QImage>
#include <QMutexLocker>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

PictureServer::PictureServer(const Reply &reply)
    : m_reply(reply)
{
    moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(this, &PictureServer::open, Qt::BlockingQueuedConnection);
}

PictureServer::~PictureServer()
{
    QMetaObject::invokeMethod(
        this, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void PictureServer::open()
{
    m_server = new QTcpServer(this);
    connect(m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    m_server->listen(QHostAddress::LocalHost);
    m_port = m_server->serverPort();
}

QString PictureServer::url(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(path);
}

QList<PictureServer::Request> PictureServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

int PictureServer::mostAtATime() const
{
    const QMutexLocker lock(&m_mutex);
    return m_most;
}

void PictureServer::read(QTcpSocket *socket)
{
    QByteArray head = socket->property("head").toByteArray() + socket->readAll();
    const qsizetype end = head.indexOf("\r\n\r\n");
    socket->setProperty("head", end < 0 ? head : head.mid(end + 4));
    if (end < 0)
        return;
    QList<QByteArray> lines = head.left(end).split('\n');
    Request request;
    const QList<QByteArray> question = lines.takeFirst().split(' ');
    request.method = question.value(0);
    request.path = question.value(1);
    for (const QByteArray &line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    {
        const QMutexLocker lock(&m_mutex);
        m_requests << request;
        m_most = std::max(m_most, ++m_active);
    }
    Answer given = m_reply(request);
    if (request.method == "HEAD")
        given.cutAfter = 0; // the head alone
    // Counted until it is answered, or until whoever asked has gone.
    auto *guard = new QObject(socket);
    connect(guard, &QObject::destroyed, this, &PictureServer::leave);
    if (given.isSilent)
        return;
    QTimer::singleShot(given.delay, guard, [this, socket, guard, given] {
        answer(socket, given);
        delete guard;
    });
}

void PictureServer::leave()
{
    const QMutexLocker lock(&m_mutex);
    --m_active;
}

void PictureServer::answer(QTcpSocket *socket, const Answer &given)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(given.status) + " Answer\r\n";
    for (const QByteArray &header : given.headers)
        head += header + "\r\n";
    if (given.hasLength && given.status != 304)
        head += "Content-Length: " + QByteArray::number(given.body.size()) + "\r\n";
    const bool isCut = given.cutAfter >= 0;
    socket->write(head + "\r\n" + (isCut ? given.body.left(given.cutAfter) : given.body));
    if (given.isEndless) {
        connect(socket, &QTcpSocket::bytesWritten, this, [socket, body = given.body] {
            if (socket->bytesToWrite() < 1024 * 1024)
                socket->write(body);
        });
    } else if (!given.hasLength || isCut) {
        socket->disconnectFromHost();
    }
}

QByteArray pictureFile(const QSize &size, Qt::GlobalColor color, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}
