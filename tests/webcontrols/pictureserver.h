// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QThread>

#include <functional>

class QTcpServer;
class QTcpSocket;

/// A web server on loopback, in a thread of its own, that answers as a test says and counts what it
/// is asked.
class PictureServer : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray method;
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; ///< names in lower case
    };

    struct Answer
    {
        int status = 200;
        QList<QByteArray> headers; ///< "Name: value"
        QByteArray body;
        int delay = 0;           ///< milliseconds
        bool isSilent = false;   ///< nothing is ever answered
        bool hasLength = true;   ///< Content-Length; without it the end of the connection ends it
        qsizetype cutAfter = -1; ///< bytes of the body after which the connection is closed
        bool isEndless = false;  ///< the body is sent again and again
    };

    using Reply = std::function<Answer(const Request &)>;

    /// @param reply called in the server's thread
    explicit PictureServer(const Reply &reply);
    ~PictureServer() override;

    QString url(const QString &path) const;

    quint16 port() const { return m_port; }

    /// Every request so far.
    QList<Request> requests() const;

    int count() const { return int(requests().size()); }

    /// The most requests that were being answered at a moment.
    int mostAtATime() const;

private:
    void open();
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Answer &answer);
    void leave();

    Reply m_reply;
    QThread m_thread;
    QTcpServer *m_server = nullptr;
    quint16 m_port = 0;
    mutable QMutex m_mutex;
    QList<Request> m_requests;
    int m_active = 0;
    int m_most = 0;
};

/// A picture of one colour as the bytes of a file.
QByteArray pictureFile(const QSize &size, Qt::GlobalColor color, const char *format = "PNG");
