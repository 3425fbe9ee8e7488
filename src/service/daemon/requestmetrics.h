// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"
#include "service/daemon/metricstext.h"

#include <QHash>

#include <array>
#include <atomic>
#include <memory>
#include <vector>

namespace Zel::Service {

/// Counts answers by method, route and status, and how long they took. Any number of threads may
/// count at once, without waiting for each other. What clients make up is not kept: methods and
/// routes that do not exist are counted together.
class ZEL_EXPORT RequestMetrics
{
public:
    /// Upper ends of the ranges that durations are sorted into, in microseconds.
    static constexpr std::array<qint64, 13> bounds{
        1'000,   2'500,   5'000,     10'000,    25'000,    50'000,    100'000,
        250'000, 500'000, 1'000'000, 2'500'000, 5'000'000, 10'000'000};

    /// @param patterns those of the route table; the same one may be there more than once
    explicit RequestMetrics(const QByteArrayList &patterns);
    ~RequestMetrics();

    void count(const HttpLogEntry &entry);

    /// Writes `zel_http_requests_total` and `zel_http_request_duration_seconds`.
    void write(MetricsText &text) const;

    /// Answers in all, and those with a status of 500 or more.
    qint64 answers() const;
    qint64 failures() const;

private:
    struct Series;
    static constexpr std::size_t methodCount = 8;
    using OfRoute = std::array<std::atomic<Series *>, methodCount>;

    Series &series(std::size_t route, std::size_t method);
    template <class Visit>
    void forEach(Visit visit) const;

    std::vector<QByteArray> m_patterns; ///< the first one is that of no route
    QHash<QByteArray, std::size_t> m_places;
    std::unique_ptr<OfRoute[]> m_series;
};

} // namespace Zel::Service
