// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/api.h"
#include "service/daemon/exitcodes.h"
#include "service/daemon/httpserver.h"
#include "service/daemon/logline.h"
#include "service/daemon/program.h"
#include "service/daemon/shutdownwatch.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/store/databaseerror.h"
#include "service/store/store.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHostAddress>
#include <QUrl>

#include <csignal>

namespace Zel::Service {

namespace {

/// Files up to this size are checked for damage at every start; it takes some milliseconds a
/// megabyte.
constexpr qint64 checkedAtStartBytes = 64LL * 1024 * 1024;

struct ListenAddress
{
    QString host;
    quint16 port = 0;
};

ListenAddress listenAddress(const QString &text)
{
    const QUrl url(QLatin1String("http://") + text, QUrl::StrictMode);
    const bool plain = url.isValid() && url.path().isEmpty() && !url.hasQuery() &&
                       !url.hasFragment() && url.userInfo().isEmpty() && url.port() >= 0;
    const QHostAddress host(url.host() == QLatin1String("localhost") ? QStringLiteral("127.0.0.1")
                                                                     : url.host());
    if (!plain || host.isNull())
        throw UsageError(QStringLiteral("--listen takes an address like 127.0.0.1:8080."));
    if (!host.isLoopback())
        throw UsageError(QStringLiteral("without TLS only this machine's own addresses (127.0.0.1 "
                                        "or [::1]) can be listened on."));
    return {host.toString(), static_cast<quint16>(url.port())};
}

void logRequest(const HttpLogEntry &entry)
{
    logLine("info", {{"id", QString::fromLatin1(entry.requestId)},
                     {"method", QString::fromLatin1(entry.method.left(32))},
                     {"route", QString::fromLatin1(entry.route)},
                     {"status", QString::number(entry.status)},
                     {"ms", QString::number(entry.milliseconds)},
                     {"peer", entry.peerAddress}});
}

void refuseDamagedFile(Database &database)
{
    const DatabaseAddress &address = database.address();
    if (address.engine != DatabaseAddress::Engine::Sqlite ||
        QFileInfo(address.file).size() > checkedAtStartBytes)
        return;
    const QString result = database.runNative(QStringLiteral("PRAGMA quick_check(1)")).toString();
    if (result != QLatin1String("ok"))
        throw DatabaseError(
            DatabaseError::Kind::Corrupt,
            QStringLiteral("The file %1 is damaged: %2.").arg(address.file, result));
}

QString displayAddress(const ListenAddress &address, quint16 port)
{
    const bool v6 = address.host.contains(QLatin1Char(':'));
    return QStringLiteral("http://%1:%2")
        .arg(v6 ? QLatin1Char('[') + address.host + QLatin1Char(']') : address.host)
        .arg(port);
}

void startListening(HttpServer &server, const ListenAddress &address)
{
    try {
        server.start();
    } catch (const ListenError &error) {
        const QString shown = displayAddress(address, address.port);
        throw ListenError(error.kind(),
                          (error.kind() == ListenError::Kind::InUse
                               ? QStringLiteral("%1 is in use by another program. Choose another "
                                                "port with --listen, or port 0 for a free one.")
                                     .arg(shown)
                               : QStringLiteral("%1 cannot be listened on: %2.")
                                     .arg(shown, QString::fromUtf8(error.what())))
                              .toStdString());
    }
}

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addCostOption(parser);
    addFilesOption(parser);
    parser.addOptions(
        {{QStringLiteral("listen"), QStringLiteral("Where to listen; port 0 takes a free one."),
          QStringLiteral("address:port"), QStringLiteral("127.0.0.1:0")},
         {QStringLiteral("parent-pid"), QStringLiteral("Stop when this process ends."),
          QStringLiteral("pid")},
         {QStringLiteral("exit-with-parent"), QStringLiteral("Stop when standard input ends.")}});
    parseCommand(
        parser, QStringLiteral("serve"),
        QStringLiteral("Answers requests until it is told to stop (SIGTERM, SIGINT); calls "
                       "in flight are finished first. A missing SQLite file is made."),
        arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("serve takes no further arguments."));
}

void watchParent(ShutdownWatch &watch, const QCommandLineParser &parser)
{
    if (parser.isSet(QStringLiteral("exit-with-parent")))
        watch.watchStandardInput();
    if (!parser.isSet(QStringLiteral("parent-pid")))
        return;
    bool ok = false;
    const qint64 pid = parser.value(QStringLiteral("parent-pid")).toLongLong(&ok);
    if (!ok || pid <= 0)
        throw UsageError(QStringLiteral("--parent-pid takes the number of a process."));
    watch.watchProcess(pid);
}

} // namespace

int serveCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    const ListenAddress address = listenAddress(parser.value(QStringLiteral("listen")));
    const PasswordHasher::Cost cost = costOf(parser);
    Database database(databaseAddress(parser), Database::Missing::Create);
    ShutdownWatch watch;
    watchParent(watch, parser);

    database.open();
    refuseDamagedFile(database);
    makeReady(database);
    // A limit on the size of files is to be an error that can be answered, not the end.
    std::signal(SIGXFSZ, SIG_IGN);
    ThumbnailProcess thumbnails;
    Store store(database, cost, systemClock(), blobPlace(parser, database),
                [&thumbnails](const QString &path) { return thumbnails.make(path); });
    const Api api(store);
    HttpServerOptions options;
    options.address = address.host;
    options.port = address.port;
    options.plan = [&api](const HttpRequest &head) { return api.plan(head); };
    options.log = logRequest;
    HttpServer server(options);
    startListening(server, address);
    print(QStringLiteral("listening on ") + displayAddress(address, server.port()));
    logLine("info",
            {{"event", QStringLiteral("started")}, {"database", database.address().display()}});

    QCoreApplication::exec();
    watch.restoreSignals();
    logLine("info", {{"event", QStringLiteral("stopping")}});
    server.stop();
    logLine("info", {{"event", QStringLiteral("stopped")}});
    return ExitFine;
}

} // namespace Zel::Service
