// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/requestmetrics.h"

#include <algorithm>

namespace Zel::Service {

namespace {

constexpr double microsecondsPerSecond = 1e6;

/// The last one stands for every method that is not here.
constexpr std::array<const char *, 8> methods{"GET",    "HEAD",  "POST",    "PUT",
                                              "DELETE", "PATCH", "OPTIONS", "other"};

constexpr int firstStatus = 100;
constexpr int lastStatus = 599;

std::size_t methodPlace(const QByteArray &method)
{
    const auto found = std::find_if(methods.begin(), methods.end() - 1,
                                    [&](const char *name) { return method == name; });
    return static_cast<std::size_t>(found - methods.begin());
}

std::size_t boundPlace(qint64 microseconds)
{
    return static_cast<std::size_t>(std::lower_bound(RequestMetrics::bounds.begin(),
                                                     RequestMetrics::bounds.end(), microseconds) -
                                    RequestMetrics::bounds.begin());
}

} // namespace

/// One method of one route.
struct RequestMetrics::Series
{
    std::array<std::atomic<quint64>, lastStatus - firstStatus + 1> statuses{};
    std::array<std::atomic<quint64>, bounds.size() + 1> durations{}; ///< the last: all longer ones
    std::atomic<quint64> microseconds{0};

    qint64 answers(int from = firstStatus) const
    {
        qint64 sum = 0;
        for (std::size_t i = static_cast<std::size_t>(from - firstStatus); i < statuses.size(); ++i)
            sum += statuses[i];
        return sum;
    }
};

RequestMetrics::RequestMetrics(const QByteArrayList &patterns)
    : m_patterns{QByteArrayLiteral("-")}
{
    for (const QByteArray &pattern : patterns) {
        if (m_places.contains(pattern))
            continue;
        m_places.insert(pattern, m_patterns.size());
        m_patterns.push_back(pattern);
    }
    m_series = std::make_unique<OfRoute[]>(m_patterns.size());
}

RequestMetrics::~RequestMetrics()
{
    for (std::size_t route = 0; route < m_patterns.size(); ++route) {
        for (const auto &series : m_series[route])
            delete series.load();
    }
}

RequestMetrics::Series &RequestMetrics::series(std::size_t route, std::size_t method)
{
    std::atomic<Series *> &slot = m_series[route][method];
    if (Series *there = slot.load(std::memory_order_acquire))
        return *there;
    auto made = std::make_unique<Series>();
    Series *there = nullptr;
    return slot.compare_exchange_strong(there, made.get()) ? *made.release() : *there;
}

void RequestMetrics::count(const HttpLogEntry &entry)
{
    Series &counted = series(m_places.value(entry.route, 0), methodPlace(entry.method));
    const int status = std::clamp(entry.status, firstStatus, lastStatus);
    constexpr auto relaxed = std::memory_order_relaxed;
    counted.statuses[static_cast<std::size_t>(status - firstStatus)].fetch_add(1, relaxed);
    counted.durations[boundPlace(entry.microseconds)].fetch_add(1, relaxed);
    counted.microseconds.fetch_add(static_cast<quint64>(entry.microseconds), relaxed);
}

template <class Visit>
void RequestMetrics::forEach(Visit visit) const
{
    for (std::size_t route = 0; route < m_patterns.size(); ++route) {
        for (std::size_t method = 0; method < methods.size(); ++method) {
            if (const Series *series = m_series[route][method].load(std::memory_order_acquire))
                visit(QByteArray(methods[method]), m_patterns[route], *series);
        }
    }
}

void RequestMetrics::write(MetricsText &text) const
{
    text.metric("zel_http_requests_total", "counter", "Answers by method, route and status.");
    forEach([&](const QByteArray &method, const QByteArray &route, const Series &series) {
        for (int status = firstStatus; status <= lastStatus; ++status) {
            const quint64 count = series.statuses[static_cast<std::size_t>(status - firstStatus)];
            if (count > 0)
                text.value(
                    qint64(count),
                    {{"method", method}, {"route", route}, {"status", QByteArray::number(status)}});
        }
    });
    text.metric("zel_http_request_duration_seconds", "histogram",
                "From the first byte of a request to its answer.");
    forEach([&](const QByteArray &method, const QByteArray &route, const Series &series) {
        qint64 sum = 0;
        for (std::size_t i = 0; i <= bounds.size(); ++i) {
            sum += static_cast<qint64>(series.durations[i]);
            const QByteArray bound =
                i < bounds.size()
                    ? QByteArray::number(double(bounds[i]) / microsecondsPerSecond, 'g', 15)
                    : QByteArrayLiteral("+Inf");
            text.value(sum, {{"method", method}, {"route", route}, {"le", bound}}, "_bucket");
        }
        text.value(double(series.microseconds) / microsecondsPerSecond,
                   {{"method", method}, {"route", route}}, "_sum");
        text.value(sum, {{"method", method}, {"route", route}}, "_count");
    });
}

qint64 RequestMetrics::answers() const
{
    qint64 sum = 0;
    forEach([&](const QByteArray &, const QByteArray &, const Series &series) {
        sum += series.answers();
    });
    return sum;
}

qint64 RequestMetrics::failures() const
{
    constexpr int firstFailure = 500;
    qint64 sum = 0;
    forEach([&](const QByteArray &, const QByteArray &, const Series &series) {
        sum += series.answers(firstFailure);
    });
    return sum;
}

} // namespace Zel::Service
