// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_service_stats [views]
// The eleven figures of a summary over many page views, asked of the service by its client, beside
// the same SQL typed into the database's own program, on SQLite and PostgreSQL, and how they grow;
// and 100,000 page views as records of the client beside a bare scan of the database into structs.
#include "audiencefill.h"
#include "barescan.h"
#include "measuring.h"
#include "platform/core/runtimeerror.h"
#include "service/client/httpserviceclient.h"
#include "service/store/statistics.h"
#include "tests/contract/postgresserver.h"
#include "tests/contract/serviceprocess.h"

#include <QCoreApplication>

#include <stdexcept>

using namespace Bench;
using QXSC::HttpServiceClient;

namespace {

constexpr int runs = 5;
constexpr qint64 fewViews = 10'000;
constexpr qint64 listedViews = 100'000;
constexpr double summaryGoal = 1.5;
constexpr double listGoal = 3.0;

void signIn(HttpServiceClient &client, const QString &address)
{
    bool ok = false;
    client.authenticate(address, QStringLiteral("maja"), QStringLiteral("sample-maja"),
                        QStringLiteral("bench_service_stats"), QString(), false, true, ok);
    if (ok)
        client.setActiveAccount(QString::number(AudienceFill::account), ok);
    if (!ok)
        throw std::runtime_error("the sample's author may not sign in");
}

/// The eleven calls of a summary in the order in which the control makes them. A count beyond 16
/// bits is an error of the client, made after all the work.
std::vector<double> summaryCalls(HttpServiceClient &client, const QString &guid,
                                 const QDateTime &start, const QDateTime &end)
{
    std::vector<double> times;
    const auto call = [&times](const auto &function) {
        times.push_back(milliseconds([&] {
            try {
                function();
            } catch (const Zel::RuntimeError &error) {
                if (error.number() != Zel::RuntimeError::Overflow)
                    throw;
            }
        }));
    };
    const auto hits = [&](const char *attribute, const char *value) {
        call([&] {
            client.GetPageHitCountByAttribute(guid, start, end, QLatin1String(attribute),
                                              QStringLiteral("="), QLatin1String(value));
        });
    };
    const auto statistic = [&](const char *name) {
        call([&] { client.GetDeploymentStatistic(guid, start, end, QLatin1String(name)); });
    };
    statistic("TotalPageHits");
    call([&] { client.GetUniqueParticipantCount(guid, start, end); });
    call([&] { client.GetRegistrantCount(guid); });
    call([&] { client.GetRegisteredParticipantCount(guid, start, end); });
    call([&] { client.GetRegisteredNonParticipantCount(guid, start, end); });
    hits("BrowserType", "IE");
    hits("BrowserType", "NS");
    hits("JSVersion", "1.3");
    hits("ScreenDepth", "24");
    hits("ScreenDepth", "32");
    statistic("TotalPageViewTime");
    return times;
}

double sum(const std::vector<double> &values)
{
    double total = 0;
    for (const double value : values)
        total += value;
    return total;
}

/// Milliseconds of a summary and of its longest call; medians.
struct Summary
{
    double all = 0;
    double longest = 0;
};

Summary measureSummary(HttpServiceClient &client, const AudienceFill::Filled &filled)
{
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(filled.range.from);
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(filled.range.to);
    std::vector<double> all;
    std::vector<double> longest;
    for (int run = 0; run < runs; ++run) {
        const std::vector<double> times = summaryCalls(client, filled.guid, start, end);
        all.push_back(sum(times));
        longest.push_back(*std::max_element(times.begin(), times.end()));
    }
    return {medianOf(all), medianOf(longest)};
}

double measureTyped(AudienceFill &fill, const AudienceFill::Filled &filled)
{
    const QStringList statements =
        Zel::Statistics::typedSummary({AudienceFill::account, filled.number}, filled.range);
    std::vector<double> all;
    for (int run = 0; run < runs; ++run)
        all.push_back(fill.typed(statements));
    return medianOf(all);
}

void measureList(HttpServiceClient &client, AudienceFill &fill, const QString &file)
{
    const AudienceFill::Filled filled = fill.fill(listedViews);
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(filled.range.from);
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(filled.range.to);
    std::vector<double> ours;
    std::vector<double> bare;
    for (int run = 0; run < runs; ++run) {
        QXSC::PageViewCollectionPtr views;
        ours.push_back(milliseconds([&] { views = client.GetPageViews(filled.guid, start, end); }));
        if (views->count() != filled.views)
            throw std::runtime_error("the list has lost views");
        bare.push_back(bareScan(file, filled));
    }
    std::printf("\n%lld page views from SQLite: to records of the client %.0f ms, a bare scan into "
                "structs %.0f ms\n",
                static_cast<long long>(filled.views), medianOf(ours), medianOf(bare));
    printGoal("page views to records", medianOf(ours), medianOf(bare), "a bare scan", listGoal);
}

void measure(bool postgres, qint64 manyViews)
{
    const char *const name = postgres ? "PostgreSQL" : "SQLite";
    ZelTest::PostgresServer server;
    ZelTest::ServiceProcess service;
    if (postgres) {
        if (!server.start())
            throw std::runtime_error(server.error().toStdString());
        service.database = server.newDatabase();
    }
    if (!service.start())
        throw std::runtime_error(service.error().toStdString());
    AudienceFill fill(service.database);
    HttpServiceClient client;
    signIn(client, service.address());
    std::printf("\n%s\n%12s %16s %14s %16s\n", name, "views", "eleven calls, ms", "longest, ms",
                "typed SQL, ms");
    Summary few;
    for (const qint64 count : {fewViews, manyViews}) {
        const AudienceFill::Filled filled = fill.fill(count);
        const Summary ours = measureSummary(client, filled);
        const double typed = measureTyped(fill, filled);
        std::printf("%12lld %16.1f %14.1f %16.1f\n", static_cast<long long>(count), ours.all,
                    ours.longest, typed);
        if (count == fewViews)
            few = ours;
        else {
            printGoal("eleven calls", ours.all, typed, "the same SQL typed", summaryGoal);
            std::printf("%-32s %12.1f times for %.0f times the views\n", "growth",
                        ours.all / few.all, double(manyViews) / double(fewViews));
        }
        std::fflush(stdout);
    }
    if (!postgres)
        measureList(client, fill, service.database);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    try {
        const qint64 views = argc > 1 ? std::atoll(argv[1]) : 10'000'000;
        measure(false, std::max(fewViews, views));
        measure(true, std::max(fewViews, views));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench_service_stats: %s\n", error.what());
        return 1;
    }
    return 0;
}
