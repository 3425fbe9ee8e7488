// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/monitor.h"

#include "service/daemon/problem.h"
#include "service/daemon/readiness.h"
#include "tests/service/apifixture.h"
#include "tests/service/metricsamples.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Zel::Service;
using ZelTest::ApiFixture;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;
using ZelTest::metricSamples;

namespace {

constexpr qint64 brightwater = 1001;
const QString tomas = QStringLiteral("tomas");

} // namespace

/// What the service tells those who watch over it.
class MonitorTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isReadyWhenEverythingIsThere_data();
    void isReadyWhenEverythingIsThere();
    void isNotReadyWithoutItsDatabase();
    void isNotReadyWithAnotherFormOfDatabase();
    void isNotReadyWithoutItsFolderOfFiles();
    void isNotReadyWhenItIsAboutToStop();
    void tellsOfItsHealthUnderAnyName();
    void answersThoseWhoWatchBesideBusyWorkers();
    void doesNotWaitForWhatHangs();
    void looksOnceForManyWhoAsk();
    void countsCallsByRouteAndStatus();
    void countsWhatClientsMakeUpTogether();
    void sortsDurationsIntoRanges();
    void countsHashesBytesAndConnections();
    void countsRepeatedTransactions();
    void showsFiguresToItsOwnMachineOnly();
    void showsFiguresToWhoeverHasTheToken();
    void tellsNoSecretInItsFigures();

private:
    QMap<QByteArray, double> samples(const ApiFixture &api)
    {
        return metricSamples(api.call("GET", "/metrics", QString()).body);
    }

    ZelTest::TestDatabases m_databases;
};

void MonitorTest::isReadyWhenEverythingIsThere_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::newRow("sqlite") << false;
    QTest::newRow("postgres") << true;
}

void MonitorTest::isReadyWhenEverythingIsThere()
{
    QFETCH(bool, postgres);
    const ApiFixture api(m_databases.filled(postgres));
    const HttpReply reply = api.call("GET", "/readyz", QString());
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.body, QByteArray("{\"status\":\"ready\"}"));
    QVERIFY(QDir(api.files()).entryList({QStringLiteral("ready*")}).isEmpty());
}

void MonitorTest::isNotReadyWithoutItsDatabase()
{
    ApiFixture api(m_databases.filled(true));
    QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
    m_databases.server().stop(true);
    for (int i = 0; i < 2; ++i) {
        const HttpReply reply = api.call("GET", "/readyz", QString());
        QCOMPARE(reply.status, 503);
        QCOMPARE(reply.code(), QStringLiteral("not-ready"));
        QCOMPARE(reply.headers.value("retry-after"), QByteArray("1"));
        QCOMPARE(reply.json().value(QLatin1String("detail")).toString(),
                 QStringLiteral("The database does not answer."));
    }
    QCOMPARE(api.call("GET", "/healthz", QString()).status, 200);
    QVERIFY2(m_databases.server().startAgain(), qPrintable(m_databases.server().error()));
    QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
}

void MonitorTest::isNotReadyWithAnotherFormOfDatabase()
{
    ApiFixture api(m_databases.filled(false));
    api.database().tx([&] {
        api.database().runNative(QStringLiteral("INSERT INTO schema_version VALUES (999, 0)"));
    });
    const HttpReply reply = api.call("GET", "/readyz", QString());
    QCOMPARE(reply.status, 503);
    QVERIFY(reply.json()
                .value(QLatin1String("detail"))
                .toString()
                .contains(QLatin1String("another form")));
    api.database().tx([&] {
        api.database().runNative(QStringLiteral("DELETE FROM schema_version WHERE version = 999"));
    });
    QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
}

void MonitorTest::isNotReadyWithoutItsFolderOfFiles()
{
    const ApiFixture api(m_databases.filled(false));
    QVERIFY(QDir(api.files()).removeRecursively());
    QFile inItsPlace(api.files());
    QVERIFY(inItsPlace.open(QIODevice::WriteOnly));
    const HttpReply reply = api.call("GET", "/readyz", QString());
    QCOMPARE(reply.status, 503);
    QVERIFY(
        reply.json().value(QLatin1String("detail")).toString().contains(QLatin1String("files")));
    QVERIFY(!reply.body.contains(api.files().toUtf8()));
    QVERIFY(inItsPlace.remove());
    QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
}

void MonitorTest::isNotReadyWhenItIsAboutToStop()
{
    const ApiFixture api(m_databases.filled(false));
    QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
    api.monitor().beginDraining();
    const HttpReply reply = api.call("GET", "/readyz", QString());
    QCOMPARE(reply.status, 503);
    QVERIFY(reply.json().value(QLatin1String("detail")).toString().contains(QLatin1String("stop")));
    QCOMPARE(api.call("GET", "/healthz", QString()).status, 200);
}

void MonitorTest::tellsOfItsHealthUnderAnyName()
{
    const ApiFixture api(m_databases.filled(false));
    for (const auto &[target, status] :
         {std::pair("/healthz", 200), std::pair("/readyz", 200), std::pair("/metrics", 421)}) {
        HttpProbe probe(api.port());
        probe.send(QByteArray("GET ") + target + " HTTP/1.1\r\nHost: 10.9.8.7\r\n\r\n");
        QCOMPARE(probe.read().status, status);
    }
}

void MonitorTest::answersThoseWhoWatchBesideBusyWorkers()
{
    ApiFixture api(m_databases.filled(false));
    const QString token = api.token(tomas, brightwater);
    Zel::Database other(api.database().address());
    std::vector<std::unique_ptr<HttpProbe>> waiting;
    constexpr int calls = ApiFixture::workers + 3;
    other.tx([&] {
        // Nobody else can write now, so that every worker waits with a call and three calls wait
        // for a worker.
        for (int i = 0; i < calls; ++i) {
            const QByteArray body =
                R"({"guid":"0f8fad5b-d9cb-469f-a165-70867728950)" + QByteArray::number(i % 10) +
                R"(","name":"n","typeID":"webcast","description":"","eventDate":null})";
            waiting.push_back(std::make_unique<HttpProbe>(api.port()));
            waiting.back()->send(
                "POST /v1/projects HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(api.port()) +
                "\r\nAuthorization: Bearer " + token.toLatin1() +
                "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        }
        const QByteArray queue = "zel_worker_queue_length{lane=\"worker\"}";
        QTRY_COMPARE(samples(api).value(queue, -1), double(calls - ApiFixture::workers));
        QCOMPARE(api.call("GET", "/readyz", QString()).status, 200);
        QVERIFY(samples(api).value("zel_http_requests_in_flight") >= calls);
    });
    for (const auto &probe : waiting)
        QVERIFY(probe->read().status != 0);
}

void MonitorTest::doesNotWaitForWhatHangs()
{
    std::atomic<bool> hangs{true};
    std::atomic<int> looks{0};
    Readiness readiness(
        [&] {
            ++looks;
            hangs.wait(true);
            return QString();
        },
        std::chrono::milliseconds(100));
    const auto letGo = qScopeGuard([&] {
        hangs = false;
        hangs.notify_all();
    });
    const QString late = QStringLiteral("What the service needs does not answer in time.");
    QCOMPARE(readiness.missing(), late);
    QCOMPARE(readiness.missing(), late); // and at once, because the time of that look is over
    QCOMPARE(looks.load(), 1);
    hangs = false;
    hangs.notify_all();
    QTRY_COMPARE(readiness.missing(), QString());
}

void MonitorTest::looksOnceForManyWhoAsk()
{
    std::atomic<bool> hangs{true};
    std::atomic<int> looks{0};
    std::atomic<int> answers{0};
    Readiness readiness(
        [&] {
            ++looks;
            hangs.wait(true);
            return QStringLiteral("missing");
        },
        std::chrono::hours(1));
    std::vector<std::thread> asking;
    for (int i = 0; i < 5; ++i)
        asking.emplace_back(
            [&] { answers += readiness.missing() == QLatin1String("missing") ? 1 : 0; });
    const bool looked = QTest::qWaitFor([&] { return looks == 1; });
    QTest::qWait(50); // for the others to ask, too
    hangs = false;
    hangs.notify_all();
    for (std::thread &one : asking)
        one.join();
    QVERIFY(looked);
    QCOMPARE(answers.load(), 5);
    QVERIFY(looks.load() < 5); // more than one may be needed by those who came late
}

void MonitorTest::countsCallsByRouteAndStatus()
{
    const ApiFixture api(m_databases.filled(false));
    const QString token = api.token(tomas, brightwater);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(api.call("GET", "/v1/projects?type=webcast", token).status, 200);
    QCOMPARE(api.call("GET", "/v1/projects", token).status, 400);
    QCOMPARE(api.call("GET", "/v1/projects?type=webcast", QString()).status, 401);
    QCOMPARE(api.call("HEAD", "/healthz", QString()).status, 200);
    const auto found = samples(api);
    const auto count = [&](const char *method, const char *route, int status) {
        return found.value(QByteArray("zel_http_requests_total{method=\"") + method +
                               "\",route=\"" + route + "\",status=\"" + QByteArray::number(status) +
                               "\"}",
                           0);
    };
    QCOMPARE(count("GET", "/v1/projects", 200), 3);
    QCOMPARE(count("GET", "/v1/projects", 400), 1);
    QCOMPARE(count("GET", "/v1/projects", 401), 1);
    QCOMPARE(count("POST", "/v1/projects", 201), 0);
    QCOMPARE(count("POST", "/v1/sessions", 201), 1);
    QCOMPARE(count("PUT", "/v1/sessions/current/account", 204), 1);
    QCOMPARE(count("HEAD", "/healthz", 200), 1);
    QCOMPARE(count("GET", "/healthz", 200), 0);
    const QByteArray labels = "{method=\"GET\",route=\"/v1/projects\"}";
    QCOMPARE(found.value("zel_http_request_duration_seconds_count" + labels), 5);
    QVERIFY(found.value("zel_http_request_duration_seconds_sum" + labels) > 0);
    // The call that asks is not answered yet; the next one sees it.
    QCOMPARE(count("GET", "/metrics", 200), 0);
    QCOMPARE(samples(api).value(
                 "zel_http_requests_total{method=\"GET\",route=\"/metrics\",status=\"200\"}"),
             1);
}

void MonitorTest::countsWhatClientsMakeUpTogether()
{
    const ApiFixture api(m_databases.filled(false));
    for (int i = 0; i < 20; ++i) {
        const QByteArray made = QByteArray::number(i);
        QCOMPARE(api.call("GET", "/made-up-" + made, QString()).status, 404);
        QCOMPARE(api.call("MADEUP" + made, "/healthz", QString()).status, 405);
    }
    const auto found = samples(api);
    QCOMPARE(found.value("zel_http_requests_total{method=\"GET\",route=\"-\",status=\"404\"}"), 20);
    QCOMPARE(found.value("zel_http_requests_total{method=\"other\",route=\"-\",status=\"405\"}"),
             20);
    for (const QByteArray &key : found.keys())
        QVERIFY2(!key.toLower().contains("made"), key.constData());
}

void MonitorTest::sortsDurationsIntoRanges()
{
    RequestMetrics metrics({"/a"});
    for (const qint64 microseconds : {0, 1'000, 1'001, 24'000, 25'000, 9'000'000, 10'000'001}) {
        HttpLogEntry entry;
        entry.method = "GET";
        entry.route = "/a";
        entry.status = microseconds > 9'000'000 ? 503 : 200;
        entry.microseconds = microseconds;
        metrics.count(entry);
    }
    MetricsText text;
    metrics.write(text);
    const auto found = metricSamples(text.text());
    const auto upTo = [&](const QByteArray &bound) {
        return found.value("zel_http_request_duration_seconds_bucket{method=\"GET\",route=\"/a\","
                           "le=\"" +
                               bound + "\"}",
                           -1);
    };
    QCOMPARE(upTo("0.001"), 2);
    QCOMPARE(upTo("0.0025"), 3);
    QCOMPARE(upTo("0.01"), 3);
    QCOMPARE(upTo("0.025"), 5);
    QCOMPARE(upTo("5"), 5);
    QCOMPARE(upTo("10"), 6);
    QCOMPARE(upTo("+Inf"), 7);
    QCOMPARE(found.value("zel_http_request_duration_seconds_sum{method=\"GET\",route=\"/a\"}"),
             19.051002);
    QCOMPARE(metrics.answers(), 7);
    QCOMPARE(metrics.failures(), 1);
}

void MonitorTest::countsHashesBytesAndConnections()
{
    const ApiFixture api(m_databases.filled(false));
    const auto before = samples(api);
    QCOMPARE(api.signIn(tomas, QStringLiteral("wrong")).status, 401);
    QCOMPARE(api.signIn(QStringLiteral("nobody"), QStringLiteral("wrong")).status, 401);
    QCOMPARE(api.signIn(tomas, QStringLiteral("sample-tomas")).status, 201);
    const auto after = samples(api);
    const auto grown = [&](const char *name) { return after.value(name) - before.value(name); };
    QCOMPARE(grown("zel_password_hashes_total"), 3); // for nobody as well
    // Three calls and the look at the figures before.
    QCOMPARE(grown("zel_http_connections_total{result=\"taken\"}"), 4);
    QCOMPARE(grown("zel_http_connections_total{result=\"refused\"}"), 0);
    QVERIFY(grown("zel_http_received_bytes_total") > 300);
    QVERIFY(grown("zel_http_sent_bytes_total") > 1000);
    QVERIFY(after.value("zel_http_connections") >= 1);
    QCOMPARE(after.value("zel_tls_handshakes_total{result=\"done\"}", -1), 0);
    QVERIFY(after.value("zel_uptime_seconds") >= before.value("zel_uptime_seconds"));
    QVERIFY(after.value("process_start_time_seconds") > 1.7e9);
    QVERIFY(!after.contains("zel_tls_certificate_expiry_timestamp_seconds"));
    api.monitor().setCertificateEnd(QDateTime::fromSecsSinceEpoch(1'900'000'000, Qt::UTC));
    QCOMPARE(samples(api).value("zel_tls_certificate_expiry_timestamp_seconds"), 1.9e9);
}

void MonitorTest::countsRepeatedTransactions()
{
    ApiFixture api(m_databases.filled(true));
    const char *const repeated = "zel_database_repeated_transactions_total";
    QCOMPARE(samples(api).value(repeated), 0);
    int runs = 0;
    api.database().tx([&] {
        if (++runs <= 3)
            api.database().runNative(QStringLiteral(
                "DO $$ BEGIN RAISE EXCEPTION 'in the way' USING ERRCODE = '40001'; END $$"));
    });
    QCOMPARE(runs, 4);
    QCOMPARE(samples(api).value(repeated), 3);
}

void MonitorTest::showsFiguresToItsOwnMachineOnly()
{
    const ApiFixture api(m_databases.filled(false));
    QCOMPARE(api.call("GET", "/metrics", QString()).headers.value("content-type"),
             QByteArray("text/plain; version=0.0.4; charset=utf-8"));
    HttpRequest request;
    const auto mayRead = [&](const char *peer) {
        request.peerAddress = QString::fromLatin1(peer);
        try {
            api.monitor().requireMetricsReader(request);
            return 200;
        } catch (const Problem &problem) {
            return problem.status();
        }
    };
    QCOMPARE(mayRead("127.0.0.1"), 200);
    QCOMPARE(mayRead("::1"), 200);
    QCOMPARE(mayRead("10.0.0.1"), 403);
    QCOMPARE(mayRead("2001:db8::1"), 403);
    QCOMPARE(mayRead(""), 403);
    // A proxy on this machine passes on what others ask.
    for (const char *header :
         {"X-Forwarded-For: 10.0.0.1", "Forwarded: for=10.0.0.1", "Via: 1.1 x"})
        QCOMPARE(HttpProbe::request(api.port(), "GET", "/metrics", {}, {header}).status, 403);
}

void MonitorTest::showsFiguresToWhoeverHasTheToken()
{
    const ApiFixture api(m_databases.filled(false));
    const QString token = QStringLiteral("0123456789abcdef-metrics");
    api.monitor().setMetricsToken(token.toLatin1());
    const HttpReply without = api.call("GET", "/metrics", QString());
    QCOMPARE(without.status, 401);
    QCOMPARE(without.code(), QStringLiteral("bad-key"));
    QCOMPARE(without.headers.value("www-authenticate"), QByteArray("Bearer"));
    for (const QString &wrong : {token.chopped(1), token + QLatin1Char('x'), token.toUpper(),
                                 QStringLiteral(" "), api.token(tomas)})
        QCOMPARE(api.call("GET", "/metrics", wrong).status, 401);
    QCOMPARE(api.call("GET", "/metrics", token).status, 200);
    HttpRequest distant;
    distant.peerAddress = QStringLiteral("10.0.0.1");
    distant.headers.append({"authorization", "bearer " + token.toLatin1()});
    api.monitor().requireMetricsReader(distant);
}

void MonitorTest::tellsNoSecretInItsFigures()
{
    ApiFixture api(m_databases.filled(false));
    const QString token = api.token(tomas, brightwater);
    QCOMPARE(api.call("GET", "/v1/projects/" + token.toLatin1() + "/published", token).status, 404);
    QCOMPARE(api.call("GET", "/t/x/64?s=signature-of-it", token).status, 403);
    const QByteArray text = api.call("GET", "/metrics", QString()).body;
    for (const QByteArray &secret :
         {token.toLatin1(), QByteArray("sample-tomas"), QByteArray("signature-of-it"),
          QByteArray("tomas"), api.database().address().file.toUtf8()})
        QVERIFY2(!text.contains(secret), secret.constData());
}

ZEL_TEST_MAIN(MonitorTest)
#include "tst_monitor.moc"
