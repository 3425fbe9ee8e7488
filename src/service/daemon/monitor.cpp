// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/monitor.h"

#include "service/daemon/logline.h"
#include "service/daemon/problem.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/securebytes.h"
#include "service/store/store.h"

#include <QCoreApplication>
#include <QHostAddress>

namespace Zel::Service {

namespace {

constexpr double millisecondsPerSecond = 1000;

/// Whether a request came from this machine itself, and not for somebody else by a proxy on it.
bool isFromHere(const HttpRequest &request)
{
    return QHostAddress(request.peerAddress).isLoopback() && !request.hasHeader("Forwarded") &&
           !request.hasHeader("X-Forwarded-For") && !request.hasHeader("Via");
}

void writeServer(MetricsText &text, const HttpServerFigures &server)
{
    text.metric("zel_http_requests_in_flight", "gauge", "Requests that are being answered.")
        .value(server.requestsInFlight);
    text.metric("zel_http_connections", "gauge", "Open connections.").value(server.connections);
    text.metric("zel_http_connections_total", "counter", "Connections since the start.")
        .value(server.connectionsTaken, {{"result", "taken"}})
        .value(server.connectionsRefused, {{"result", "refused"}});
    text.metric("zel_http_received_bytes_total", "counter", "Bytes from clients.")
        .value(server.received);
    text.metric("zel_http_sent_bytes_total", "counter", "Bytes to clients.").value(server.sent);
    text.metric("zel_worker_queue_length", "gauge", "Calls that wait for a thread.")
        .value(server.waitingForWorker, {{"lane", "worker"}})
        .value(server.waitingForSignIn, {{"lane", "sign-in"}})
        .value(server.waitingForHealth, {{"lane", "health"}});
    text.metric("zel_tls_handshakes_total", "counter", "Handshakes of TLS since the start.")
        .value(server.handshakes, {{"result", "done"}})
        .value(server.handshakesFailed, {{"result", "failed"}});
}

} // namespace

Monitor::Monitor(Store &store, const QByteArrayList &patterns)
    : m_store(store)
    , m_startedAt(QDateTime::currentMSecsSinceEpoch())
    , m_requests(patterns)
    , m_readiness([this] { return look(); })
{
    m_running.start();
}

Monitor::~Monitor() = default;

void Monitor::setCertificateEnd(const QDateTime &end)
{
    m_certificateEnd = end.toSecsSinceEpoch();
}

QString Monitor::look()
{
    QString missing = lookAtDatabase();
    if (missing.isEmpty())
        missing = lookAtFiles();
    if (missing != m_lastMissing) {
        if (missing.isEmpty())
            logLine("info", {{"event", QStringLiteral("ready-again")}});
        else
            logLine("warning", {{"event", QStringLiteral("not-ready")}, {"cause", missing}});
    }
    m_lastMissing = missing;
    return missing;
}

QString Monitor::lookAtDatabase() const
{
    // A connection is often found dead at its first use after the database server restarted.
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            Migrations(m_store.database).requireCurrent();
            return QString();
        } catch (const DatabaseError &error) {
            if (error.kind() == DatabaseError::Kind::Outdated ||
                error.kind() == DatabaseError::Kind::Newer)
                return QStringLiteral("The database has another form than this program needs.");
        } catch (const std::exception &) {
            break;
        }
    }
    return QStringLiteral("The database does not answer.");
}

QString Monitor::lookAtFiles() const
{
    const QString missing = QStringLiteral("The folder of files cannot be written to.");
    try {
        if (m_store.blobs.room() <= 0)
            return QStringLiteral("There is no room for files.");
        return m_store.blobs.isWritable() ? QString() : missing;
    } catch (const std::exception &) {
        return missing;
    }
}

void Monitor::requireMetricsReader(const HttpRequest &request) const
{
    if (m_token.isEmpty()) {
        if (isFromHere(request))
            return;
        throw Problem(403, QByteArrayLiteral("not-allowed"),
                      QStringLiteral("The figures can be read on the service's own machine only."));
    }
    static const QByteArray scheme = QByteArrayLiteral("bearer ");
    const QByteArray value = request.header("Authorization");
    if (value.left(scheme.size()).toLower() == scheme &&
        isSameSecret(value.mid(scheme.size()).trimmed(), m_token))
        return;
    throw Problem(401, QByteArrayLiteral("bad-key"),
                  QStringLiteral("The figures can be read with their token only."),
                  {{QByteArrayLiteral("WWW-Authenticate"), QByteArrayLiteral("Bearer")}});
}

QByteArray Monitor::metrics() const
{
    MetricsText text;
    m_requests.write(text);
    writeServer(text, m_server ? m_server() : HttpServerFigures());
    text.metric("zel_password_hashes_total", "counter", "Password hashes made or compared with.")
        .value(m_store.hasher.hashes());
    text.metric("zel_database_repeated_transactions_total", "counter",
                "Transactions run again because another one got in their way.")
        .value(m_store.database.repeatedTransactions());
    if (const qint64 end = m_certificateEnd)
        text.metric("zel_tls_certificate_expiry_timestamp_seconds", "gauge",
                    "When the certificate expires, in seconds since 1970.")
            .value(end);
    text.metric("zel_build_info", "gauge", "1, with the version of the program.")
        .value(qint64(1), {{"version", QCoreApplication::applicationVersion().toUtf8()}});
    text.metric("zel_uptime_seconds", "gauge", "Seconds since the start.")
        .value(double(m_running.elapsed()) / millisecondsPerSecond);
    text.metric("process_start_time_seconds", "gauge", "The start, in seconds since 1970.")
        .value(double(m_startedAt) / millisecondsPerSecond);
    return text.text();
}

void Monitor::logSummary() const
{
    const HttpServerFigures server = m_server ? m_server() : HttpServerFigures();
    const auto number = [](qint64 value) { return QString::number(value); };
    logLine("info", {{"event", QStringLiteral("stopped")},
                     {"answers", number(m_requests.answers())},
                     {"failures", number(m_requests.failures())},
                     {"connections", number(server.connectionsTaken)},
                     {"in", number(server.received)},
                     {"out", number(server.sent)},
                     {"seconds", number(m_running.elapsed() / qint64(millisecondsPerSecond))}});
}

} // namespace Zel::Service
