// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/api.h"
#include "service/daemon/exitcodes.h"
#include "service/daemon/filelimit.h"
#include "service/daemon/housekeeper.h"
#include "service/daemon/httpserver.h"
#include "service/daemon/listenaddress.h"
#include "service/daemon/logline.h"
#include "service/daemon/program.h"
#include "service/daemon/shutdownwatch.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/daemon/tlsfiles.h"
#include "service/store/databaseerror.h"
#include "service/store/store.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace Zel::Service {

namespace {

/// Files up to this size are checked for damage at every start; it takes some milliseconds a
/// megabyte.
constexpr qint64 checkedAtStartBytes = 64LL * 1024 * 1024;
/// How often, more or less, what is of no use any more is cleared away.
constexpr std::chrono::hours housekeepingTime{1};

constexpr qsizetype shortestToken = 16;
constexpr qint64 longestToken = 4096;
constexpr int longestStopDelay = 600;

void logRequest(const HttpLogEntry &entry)
{
    logLine("info", {{"id", QString::fromLatin1(entry.requestId)},
                     {"method", QString::fromLatin1(entry.method.left(32))},
                     {"route", QString::fromLatin1(entry.route)},
                     {"status", QString::number(entry.status)},
                     {"ms", QString::number(entry.microseconds / 1000)},
                     {"in", QString::number(entry.received)},
                     {"out", QString::number(entry.sent)},
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

void startListening(HttpServer &server, const ListenAddress &address)
{
    try {
        server.start();
    } catch (const ListenError &error) {
        const QString shown = address.shown(address.port);
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
    TlsFiles::addOptions(parser);
    parser.addOptions(
        {{QStringLiteral("metrics-token-file"),
          QStringLiteral("Lets whoever brings the token that is this file's first line read "
                         "/metrics; without it only this machine may."),
          QStringLiteral("file")},
         {QStringLiteral("stop-delay"),
          QStringLiteral("How long /readyz says 503, while everything is still answered, before "
                         "the service stops; 0 unless given."),
          QStringLiteral("seconds"), QStringLiteral("0")},
         {QStringLiteral("listen"), QStringLiteral("Where to listen; port 0 takes a free one."),
          QStringLiteral("address:port"), QStringLiteral("127.0.0.1:0")},
         {QStringLiteral("drain"),
          QStringLiteral("How long calls in flight may take to finish when it is told to stop."),
          QStringLiteral("seconds"), QStringLiteral("20")},
         {QStringLiteral("parent-pid"), QStringLiteral("Stop when this process ends."),
          QStringLiteral("pid")},
         {QStringLiteral("exit-with-parent"), QStringLiteral("Stop when standard input ends.")}});
    parseCommand(
        parser, QStringLiteral("serve"),
        QStringLiteral("Answers requests until it is told to stop (SIGTERM, SIGINT); calls "
                       "in flight are finished first, unless it is told a second time. A missing "
                       "SQLite file is made."),
        arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("serve takes no further arguments."));
}

std::chrono::milliseconds drainLimit(const QCommandLineParser &parser)
{
    constexpr int longestSeconds = 3600;
    bool ok = false;
    const int seconds = parser.value(QStringLiteral("drain")).toInt(&ok);
    if (!ok || seconds < 0 || seconds > longestSeconds)
        throw UsageError(QStringLiteral("--drain takes a number of seconds from 0 to 3600."));
    return std::chrono::seconds(seconds);
}

QByteArray metricsToken(const QCommandLineParser &parser)
{
    if (!parser.isSet(QStringLiteral("metrics-token-file")))
        return QByteArray();
    QFile file(parser.value(QStringLiteral("metrics-token-file")));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(QStringLiteral("The token file %1 cannot be read: %2.")
                                                .arg(file.fileName(), file.errorString())));
    const QByteArray token = file.readLine(longestToken).trimmed();
    if (token.size() < shortestToken)
        throw std::runtime_error(
            qPrintable(QStringLiteral("The first line of %1 is to be a token of %2 characters or "
                                      "more.")
                           .arg(file.fileName())
                           .arg(shortestToken)));
    return token;
}

std::chrono::seconds stopDelay(const QCommandLineParser &parser)
{
    bool ok = false;
    const int seconds = parser.value(QStringLiteral("stop-delay")).toInt(&ok);
    if (!ok || seconds < 0 || seconds > longestStopDelay)
        throw UsageError(
            QStringLiteral("--stop-delay takes seconds from 0 to %1.").arg(longestStopDelay));
    return std::chrono::seconds(seconds);
}

HttpServerOptions serverOptions(const ListenAddress &address, Api &api)
{
    HttpServerOptions options;
    options.address = address.host;
    options.port = address.port;
    options.plan = [&api](const HttpRequest &head) { return api.plan(head); };
    options.log = [&api](const HttpLogEntry &entry) {
        api.monitor().count(entry);
        logRequest(entry);
    };
    options.handshakeFailed = [](const QString &peer, const QString &why) {
        logLine("info",
                {{"event", QStringLiteral("handshake-failed")}, {"peer", peer}, {"cause", why}});
    };
    return options;
}

void useTls(Api &api, const TlsFiles &files, const std::shared_ptr<const TlsContext> &tls)
{
    api.setHostGuard(files.guard(tls.get()));
    if (!tls)
        return;
    api.monitor().setCertificateEnd(tls->validUntil());
    logLine("info", {{"event", QStringLiteral("certificate")},
                     {"names", tls->names().join(QLatin1Char(','))},
                     {"until", tls->validUntil().toString(Qt::ISODate)}});
}

/// Takes a new certificate for new connections; one that cannot be used changes nothing.
void reloadTls(HttpServer &server, Api &api, const TlsFiles &files)
{
    try {
        const auto tls = files.load();
        server.replaceTls(tls);
        useTls(api, files, tls);
    } catch (const std::exception &error) {
        logLine("error", {{"event", QStringLiteral("certificate-kept")},
                          {"cause", QString::fromUtf8(error.what())}});
    }
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
    const TlsFiles files(parser);
    const ListenAddress address =
        ListenAddress::parse(parser.value(QStringLiteral("listen")), files.areGiven());
    const auto tls = files.load();
    const QByteArray token = metricsToken(parser);
    const std::chrono::seconds delay = stopDelay(parser);
    const PasswordHasher::Cost cost = costOf(parser);
    const std::chrono::milliseconds drain = drainLimit(parser);
    Database database(databaseAddress(parser), Database::Missing::Create);
    ShutdownWatch watch;
    watchParent(watch, parser);

    database.open();
    refuseDamagedFile(database);
    makeReady(database);
    ThumbnailProcess thumbnails;
    Store store(database, cost, systemClock(), blobPlace(parser, database),
                [&thumbnails](const QString &path) { return thumbnails.make(path); });
    Api api(store);
    api.monitor().setMetricsToken(token);
    useTls(api, files, tls);
    HttpServerOptions options = serverOptions(address, api);
    options.tls = tls;
    options.limits.drain = drain;
    options.limits.connections = connectionsWithin(raiseFileLimit(), options.limits.connections);
    HttpServer server(options);
    api.monitor().setServer([&server] { return server.figures(); });
    if (tls)
        watch.onHangUp([&] { reloadTls(server, api, files); });
    startListening(server, address);
    print(QStringLiteral("listening on ") + address.shown(server.port()));
    logLine("info",
            {{"event", QStringLiteral("started")}, {"database", database.address().display()}});

    const Housekeeper housekeeper(housekeepingTime,
                                  [&store](const std::stop_token &stop) { tidyUp(store, stop); });
    QCoreApplication::exec();
    watch.restoreSignals();
    logLine("info", {{"event", QStringLiteral("stopping")}});
    api.monitor().beginDraining();
    // Whatever shares out the calls gets to know before connections are refused.
    std::this_thread::sleep_for(delay);
    server.stop();
    api.monitor().logSummary();
    return ExitFine;
}

} // namespace Zel::Service
