// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpserver.h"
#include "service/daemon/readiness.h"
#include "service/daemon/requestmetrics.h"

#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <mutex>

namespace Zel {
class Store;
}

namespace Zel::Service {

/// What the service tells those who run it about itself: whether it is ready, and figures.
class ZEL_EXPORT Monitor
{
public:
    /// @param patterns those of the route table
    Monitor(Store &store, const QByteArrayList &patterns);
    ~Monitor();

    /// Where the figures of the server come from. Before the server starts.
    void setServer(const std::function<HttpServerFigures()> &figures) { m_server = figures; }

    /// Whoever brings this token may read the figures, and nobody else. Before the server starts.
    void setMetricsToken(const QByteArray &token) { m_token = token; }

    /// When the certificate expires, for the figures.
    void setCertificateEnd(const QDateTime &end);

    void count(const HttpLogEntry &entry) { m_requests.count(entry); }

    /// What is missing for the service to be ready, as a sentence; empty when nothing is.
    QString missing() { return m_readiness.missing(); }

    /// From now on the service is not ready, because it is about to stop.
    void beginDraining() { m_readiness.beginDraining(); }

    /// Throws a `Problem` unless the figures may be read: with the token where there is one, else
    /// by this machine alone.
    void requireMetricsReader(const HttpRequest &request) const;

    /// All figures, as text for Prometheus.
    QByteArray metrics() const;

    /// Writes what was done in all to the log.
    void logSummary() const;

private:
    QString look();
    QString lookAtDatabase() const;
    QString lookAtFiles() const;

    Store &m_store;
    std::function<HttpServerFigures()> m_server;
    QByteArray m_token;
    const qint64 m_startedAt; ///< milliseconds since 1970
    QElapsedTimer m_running;
    std::atomic<qint64> m_certificateEnd{0}; ///< seconds since 1970
    RequestMetrics m_requests;
    QString m_lastMissing; ///< of the thread that looks
    Readiness m_readiness;
};

} // namespace Zel::Service
