// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// componentprobe [--without-attribute] [--quit-while-shown]
// A host that gets the dialog for component pages and says what came of it, one fact a line. What
// must not happen to a host is that it crashes, so every case is a process of its own.
#include "records/componentdialog.h"

#include <QApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <cstdio>

using ZelWebServiceControls::ComponentDialog;
using ZelWebServiceControls::componentDialog;

namespace {

void say(const char *what, const QString &value)
{
    std::printf("%s: %s\n", what, qPrintable(value));
    std::fflush(stdout);
}

/// Whether this process has the browser engine in its memory.
QString engineState()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return QStringLiteral("unknown");
    return maps.readAll().contains("libQt6WebEngineCore") ? QStringLiteral("loaded")
                                                          : QStringLiteral("absent");
}

/// Answers everybody with one page.
void serve(QTcpServer &server)
{
    server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            const QByteArray page = "<script>function external_load(value) {"
                                    " returnValue = value + '!'; location.href = 'close'; }"
                                    "</script>";
            if (!socket->readAll().contains("\r\n\r\n"))
                return;
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                          QByteArray::number(page.size()) + "\r\n\r\n" + page);
        });
    });
}

void useDialog(ComponentDialog &dialog, const QTcpServer &server, bool quits)
{
    const QString url = QStringLiteral("http://127.0.0.1:%1/page").arg(server.serverPort());
    dialog.ShowModalDialog(nullptr, url, QStringLiteral("Probe"), QStringLiteral("value"),
                           QString());
    dialog.resize(300, 200);
    if (quits)
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    dialog.showModal(nullptr);
    if (quits)
        return;
    say("code", QString::number(dialog.returnCode()));
    say("value", dialog.GetValue());
}

} // namespace

int main(int argc, char **argv)
{
    QStringList options;
    for (int i = 1; i < argc; ++i)
        options << QString::fromLocal8Bit(argv[i]);
    if (options.contains(QLatin1String("--without-attribute")))
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts, false);
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QTcpServer server;
    serve(server);
    say("engine at start", engineState());
    QTimer::singleShot(0, &app, [&] {
        try {
            ComponentDialog &dialog = componentDialog();
            say("dialog", QString::fromLatin1(dialog.metaObject()->className()));
            say("engine now", engineState());
            const bool quits = options.contains(QLatin1String("--quit-while-shown"));
            useDialog(dialog, server, quits);
            say("same again",
                &componentDialog() == &dialog ? QStringLiteral("yes") : QStringLiteral("no"));
        } catch (const Zel::RuntimeError &error) {
            say("error", QString::number(error.number()) + u' ' + error.description());
            say("engine now", engineState());
        }
        QCoreApplication::quit();
    });
    const int code = QApplication::exec();
    say("ended", QString::number(code));
    return code;
}
