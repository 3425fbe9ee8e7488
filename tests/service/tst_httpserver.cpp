// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/httpserver.h"

#include "service/daemon/workerpool.h"
#include "tests/contract/testauthority.h"
#include "tests/service/httpprobe.h"
#include "testsupport/testcase.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

using namespace Zel::Service;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;

namespace {

HttpResponse plain(const QByteArray &body)
{
    HttpResponse response;
    response.contentType = "text/plain";
    response.body = body;
    return response;
}

/// Gives back what it was given, at the end.
class EchoSink : public BodySink
{
public:
    explicit EchoSink(std::atomic<int> &ends)
        : m_ends(ends)
    {
    }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        m_body.append(piece);
        return std::nullopt;
    }

    HttpResponse finish() override
    {
        ++m_ends;
        return plain(m_body);
    }

private:
    std::atomic<int> &m_ends;
    QByteArray m_body;
};

/// Ends late: when it is released.
class SlowEndSink : public EchoSink
{
public:
    using Gate = std::counting_semaphore<1000>;

    SlowEndSink(std::atomic<int> &ends, Gate &entered, Gate &released)
        : EchoSink(ends)
        , m_entered(entered)
        , m_released(released)
    {
    }

    ~SlowEndSink() override
    {
        m_entered.release();
        m_released.acquire();
    }

private:
    Gate &m_entered;
    Gate &m_released;
};

QByteArray chunkOf(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

} // namespace

/// The server with handlers of the test's own: /echo gives the body back, /wait waits until it is
/// released, /big answers 10 MB, /sleep takes a while, /stream gives back a body taken in piece by
/// piece, /slowend does so too and ends when it is released.
///
/// With ZEL_TEST_TLS in the environment all of it is done by TLS.
class HttpServerTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void answersOnAKeptConnection();
    void answersPipelinedRequestsInOrder();
    void endsAConnectionThatIsNotToBeKept_data();
    void endsAConnectionThatIsNotToBeKept();
    void takesChunkedBodiesWithExtensionsAndTrailers();
    void answersMalformedRequestsOnceAndCloses_data();
    void answersMalformedRequestsOnceAndCloses();
    void refusesAHeadBeyondItsLimit();
    void refusesAHeadBeyondItsLimitInSmallPieces();
    void takesAHeadUpToItsLimitInSmallPieces();
    void refusesABodyBeyondItsLimit_data();
    void refusesABodyBeyondItsLimit();
    void deliversARefusalToAClientThatIsStillSending();
    void saysToGoOnWhenAsked();
    void answersHeadWithoutABody();
    void cutsAHeadThatDrips();
    void cutsABodyThatStalls();
    void closesAConnectionThatStaysSilent();
    void answersBesideStalledUploadsAndIdleClients();
    void closesConnectionsBeyondTheLimit();
    void refusesCallsBeyondTheQueue();
    void answersSignInsBesideBusyWorkers();
    void sendsLongAnswersWhole();
    void survivesAClientThatGoesAwayDuringACall();
    void finishesCallsInFlightWhenItStops();
    void stopsAtTheDrainLimit();
    void stopsAtOnceWhenIdle();
    void refusesAPortInUse();
    void logsEveryAnswer();
    void takesChunkedBodiesIntoASink();
    void answersMalformedChunksOfAStreamedBodyAndCloses_data();
    void answersMalformedChunksOfAStreamedBodyAndCloses();
    void answersBesideSixtyStreamedUploads();
    void answersWhileCutUploadsComeToTheirEnd();

private:
    HttpPlan plan(const HttpRequest &head);
    void startServer();

    quint16 port() const { return m_server->port(); }

    QList<int> loggedStatuses()
    {
        const std::lock_guard lock(m_logMutex);
        QList<int> statuses;
        for (const HttpLogEntry &entry : m_log)
            statuses << entry.status;
        return statuses;
    }

    ZelTest::TestAuthority m_authority;
    HttpServerOptions m_options;
    std::unique_ptr<HttpServer> m_server;
    std::atomic<int> m_calls{0};
    std::counting_semaphore<1000> m_entered{0};
    std::counting_semaphore<1000> m_released{0};
    std::mutex m_logMutex;
    QList<HttpLogEntry> m_log;
};

void HttpServerTest::init()
{
    TestCase::init();
    m_options = HttpServerOptions();
    m_options.workers = 4;
    if (qEnvironmentVariableIsSet("ZEL_TEST_TLS")) {
        const auto files = m_authority.make();
        m_options.tls = TlsContext::load(files.certificate, files.key);
        HttpProbe::encrypt(m_authority.caFile());
    }
    m_options.plan = [this](const HttpRequest &head) { return plan(head); };
    m_options.log = [this](const HttpLogEntry &entry) {
        const std::lock_guard lock(m_logMutex);
        m_log << entry;
    };
    m_calls = 0;
    m_log.clear();
}

void HttpServerTest::cleanup()
{
    m_server.reset();
}

HttpPlan HttpServerTest::plan(const HttpRequest &head)
{
    HttpPlan plan;
    plan.route = head.target;
    plan.bodyLimit = 1000;
    plan.lane = head.target == "/signin" ? Lane::SignIn : Lane::Worker;
    if (head.target == "/immediate")
        plan.lane = Lane::Immediate;
    if (head.target == "/stream") {
        plan.bodyLimit = 1'000'000;
        plan.begin = [this](const HttpRequest &) -> BodyStart {
            return std::make_shared<EchoSink>(m_calls);
        };
        return plan;
    }
    if (head.target == "/slowend") {
        plan.begin = [this](const HttpRequest &) -> BodyStart {
            return std::make_shared<SlowEndSink>(m_calls, m_entered, m_released);
        };
        return plan;
    }
    plan.handler = [this](const HttpRequest &request) {
        ++m_calls;
        if (request.target == "/wait") {
            m_entered.release();
            m_released.acquire();
        }
        if (request.target == "/sleep")
            std::this_thread::sleep_for(std::chrono::milliseconds(600));
        if (request.target == "/big")
            return plain(QByteArray(10 * 1024 * 1024, 'b'));
        return plain(request.method + ' ' + request.target + ' ' + request.body);
    };
    return plan;
}

void HttpServerTest::startServer()
{
    m_server = std::make_unique<HttpServer>(m_options);
    m_server->start();
    QVERIFY(port() != 0);
}

void HttpServerTest::answersOnAKeptConnection()
{
    startServer();
    HttpProbe probe(port());
    for (const char *target : {"/a", "/immediate", "/b"}) {
        probe.send(QByteArray("GET ") + target + " HTTP/1.1\r\nHost: x\r\n\r\n");
        const HttpReply reply = probe.read();
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.body, QByteArray("GET ") + target + ' ');
        QCOMPARE(reply.headers.value("x-request-id").size(), 16);
        QCOMPARE(reply.headers.value("x-content-type-options"), QByteArray("nosniff"));
        QVERIFY(reply.headers.value("date").endsWith(" GMT"));
    }
    QVERIFY(probe.isConnected());
}

void HttpServerTest::answersPipelinedRequestsInOrder()
{
    startServer();
    HttpProbe probe(port());
    probe.send("GET /1 HTTP/1.1\r\nHost: x\r\n\r\n"
               "POST /2 HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\n\r\nabc"
               "GET /3 HTTP/1.1\r\nHost: x\r\n\r\n");
    QCOMPARE(probe.read().body, QByteArray("GET /1 "));
    QCOMPARE(probe.read().body, QByteArray("POST /2 abc"));
    QCOMPARE(probe.read().body, QByteArray("GET /3 "));
}

void HttpServerTest::endsAConnectionThatIsNotToBeKept_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("close") << QByteArray("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    QTest::newRow("1.0") << QByteArray("GET / HTTP/1.0\r\n\r\n");
}

void HttpServerTest::endsAConnectionThatIsNotToBeKept()
{
    QFETCH(QByteArray, head);
    startServer();
    HttpProbe probe(port());
    probe.send(head);
    QCOMPARE(probe.read().status, 200);
    QVERIFY(probe.isClosed());
}

void HttpServerTest::takesChunkedBodiesWithExtensionsAndTrailers()
{
    startServer();
    HttpProbe probe(port());
    probe.send("POST /c HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n"
               "3;name=\"value\"\r\nabc\r\n2\r\nde\r\n0\r\nX-Trailer: 1\r\n\r\n"
               "GET /next HTTP/1.1\r\nHost: x\r\n\r\n");
    QCOMPARE(probe.read().body, QByteArray("POST /c abcde"));
    QCOMPARE(probe.read().body, QByteArray("GET /next "));
}

void HttpServerTest::answersMalformedRequestsOnceAndCloses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray hidden = "GET /hidden HTTP/1.1\r\nHost: x\r\n\r\n";
    QTest::newRow("transfer encoding and content length")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\nContent-Length: 4\r\n\r\n"
           "0\r\n\r\n" +
               hidden;
    QTest::newRow("content length and transfer encoding")
        << "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\n"
           "0\r\n\r\n" +
               hidden;
    QTest::newRow("two content lengths")
        << "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\nContent-Length: 0\r\n\r\nabc" +
               hidden;
    QTest::newRow("content length that is none")
        << "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: -1\r\n\r\n" + hidden;
    QTest::newRow("content length past 64 bits")
        << "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999999999999999999\r\n\r\n" + hidden;
    QTest::newRow("chunk size that is none")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n" + hidden;
    // Whoever stands before the service may see a body where it sees a further request.
    QTest::newRow("a transfer coding it does not know")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: gzip\r\n\r\n" + hidden;
    QTest::newRow("identity beside a content length")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: identity\r\nContent-Length: 3\r\n\r\n"
           "abc" +
               hidden;
    QTest::newRow("chunked, but not at last")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked, gzip\r\n\r\n" + hidden;
    QTest::newRow("chunked behind another coding")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n" + hidden;
    QTest::newRow("two transfer codings")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n"
           "\r\n0\r\n\r\n" +
               hidden;
    QTest::newRow("a chunk extension without end")
        << "POST / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n1;x=" +
               QByteArray(300'000, 'e');
    QTest::newRow("no HTTP") << QByteArray("hello there\r\n\r\n") + hidden;
    QTest::newRow("an unknown version") << "GET / HTTP/3.0\r\nHost: x\r\n\r\n" + hidden;
    QTest::newRow("a blank before the colon") << "GET / HTTP/1.1\r\nHost : x\r\n\r\n" + hidden;
    QTest::newRow("a control in a header")
        << QByteArray("GET / HTTP/1.1\r\nHost: x\r\nA: b") + '\0' + "c\r\n\r\n" + hidden;
    QTest::newRow("a TLS hello") << QByteArray("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11) +
                                        QByteArray(200, '\x01');
}

void HttpServerTest::answersMalformedRequestsOnceAndCloses()
{
    QFETCH(QByteArray, bytes);
    startServer();
    HttpProbe probe(port());
    probe.send(bytes);
    const HttpReply reply = probe.read();
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("bad-request"));
    QCOMPARE(reply.headers.value("connection"), QByteArray("close"));
    QVERIFY(probe.isClosed());
    QCOMPARE(m_calls.load(), 0);
}

void HttpServerTest::refusesAHeadBeyondItsLimit()
{
    startServer();
    QByteArray many = "GET / HTTP/1.1\r\nHost: x\r\n";
    for (int i = 0; i < 2000; ++i)
        many += "X-Header-" + QByteArray::number(i) + ": value\r\n";
    const QByteArray longTarget =
        "GET /" + QByteArray(100'000, 'a') + " HTTP/1.1\r\nHost: x\r\n\r\n";
    for (const QByteArray &bytes : {many + "\r\n", longTarget}) {
        HttpProbe probe(port());
        probe.send(bytes);
        QCOMPARE(probe.read().status, 431);
        QVERIFY(probe.isClosed());
    }
    QCOMPARE(m_calls.load(), 0);
}

void HttpServerTest::refusesAHeadBeyondItsLimitInSmallPieces()
{
    startServer();
    HttpProbe probe(port());
    probe.send("GET / HTTP/1.1\r\nHost: x\r\n");
    for (int i = 0; i < 40 && probe.isConnected(); ++i) {
        probe.send("X-Header: " + QByteArray(490, 'a') + "\r\n");
        QTest::qWait(2); // so that the pieces arrive as pieces
    }
    QCOMPARE(probe.read().status, 431);
    QVERIFY(probe.isClosed());
}

void HttpServerTest::takesAHeadUpToItsLimitInSmallPieces()
{
    startServer();
    HttpProbe probe(port());
    probe.send("GET /head HTTP/1.1\r\nHost: x\r\n");
    for (int i = 0; i < 30; ++i) {
        probe.send("X-Header: " + QByteArray(490, 'a') + "\r\n");
        QTest::qWait(2);
    }
    probe.send("\r\n");
    QCOMPARE(probe.read().body, QByteArray("GET /head "));
}

void HttpServerTest::refusesABodyBeyondItsLimit_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    const QByteArray head = "POST / HTTP/1.1\r\nHost: x\r\n";
    const QByteArray chunk = "1f4\r\n" + QByteArray(500, 'c') + "\r\n";
    QTest::newRow("at the limit") << head + "Content-Length: 1000\r\n\r\n" + QByteArray(1000, 'x')
                                  << 200;
    QTest::newRow("one more") << head + "Content-Length: 1001\r\n\r\n" + QByteArray(1001, 'x')
                              << 413;
    QTest::newRow("far more, not sent") << head + "Content-Length: 9000000000000000000\r\n\r\n"
                                        << 413;
    QTest::newRow("chunks at the limit")
        << head + "Transfer-Encoding: chunked\r\n\r\n" + chunk + chunk + "0\r\n\r\n"
        << 200;
    QTest::newRow("chunks beyond")
        << head + "Transfer-Encoding: chunked\r\n\r\n" + chunk + chunk + "1\r\nx\r\n0\r\n\r\n"
        << 413;
    QTest::newRow("one chunk far beyond")
        << head + "Transfer-Encoding: chunked\r\n\r\n7fffffffffffffff\r\nabc" << 413;
}

void HttpServerTest::refusesABodyBeyondItsLimit()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    startServer();
    HttpProbe probe(port());
    probe.send(bytes);
    const HttpReply reply = probe.read();
    QCOMPARE(reply.status, status);
    if (status == 413) {
        QCOMPARE(reply.code(), QStringLiteral("too-large"));
        QVERIFY(probe.isClosed());
    }
    QCOMPARE(m_calls.load(), status == 200 ? 1 : 0);
}

void HttpServerTest::deliversARefusalToAClientThatIsStillSending()
{
    startServer();
    HttpProbe probe(port());
    probe.send("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 2000000\r\n\r\n");
    probe.send(QByteArray(2'000'000, 'x'));
    QCOMPARE(probe.read().status, 413);
}

void HttpServerTest::saysToGoOnWhenAsked()
{
    startServer();
    HttpProbe probe(port());
    probe.send("POST /e HTTP/1.1\r\nHost: x\r\nContent-Length: 3\r\nExpect: 100-continue\r\n\r\n");
    QCOMPARE(probe.read(true).status, 100);
    probe.send("abc");
    QCOMPARE(probe.read().body, QByteArray("POST /e abc"));
}

void HttpServerTest::answersHeadWithoutABody()
{
    startServer();
    HttpProbe probe(port());
    probe.send("HEAD /h HTTP/1.1\r\nHost: x\r\n\r\nGET /g HTTP/1.1\r\nHost: x\r\n\r\n");
    const HttpReply reply = probe.read(true);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.headers.value("content-length"), QByteArray("8"));
    QCOMPARE(probe.read().body, QByteArray("GET /g "));
}

void HttpServerTest::cutsAHeadThatDrips()
{
    m_options.limits.header = std::chrono::milliseconds(400);
    startServer();
    HttpProbe probe(port());
    const QByteArray head = "GET / HTTP/1.1\r\nHost: x\r\nX-Long: " + QByteArray(10'000, 'd');
    qsizetype sent = 0;
    while (probe.isConnected() && sent < head.size()) {
        probe.send(head.mid(sent++, 1));
        QTest::qWait(20);
    }
    QVERIFY(!probe.isConnected());
    QVERIFY(sent < head.size());
    QCOMPARE(m_calls.load(), 0);
}

void HttpServerTest::cutsABodyThatStalls()
{
    m_options.limits.body = std::chrono::milliseconds(300);
    startServer();
    HttpProbe probe(port());
    probe.send("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 10\r\n\r\nabc");
    QVERIFY(probe.isClosed());
    QCOMPARE(m_calls.load(), 0);
}

void HttpServerTest::closesAConnectionThatStaysSilent()
{
    m_options.limits.idle = std::chrono::milliseconds(300);
    startServer();
    HttpProbe fresh(port());
    HttpProbe used(port());
    used.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    QCOMPARE(used.read().status, 200);
    QVERIFY(fresh.isClosed());
    QVERIFY(used.isClosed());
}

void HttpServerTest::answersBesideStalledUploadsAndIdleClients()
{
    startServer();
    std::vector<std::unique_ptr<HttpProbe>> others;
    for (int i = 0; i < 260; ++i) {
        others.push_back(std::make_unique<HttpProbe>(port()));
        if (i < 60)
            others.back()->send("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 900\r\n\r\nabc");
    }
    QCOMPARE(HttpProbe::request(port(), "GET", "/small").status, 200);
    QCOMPARE(m_calls.load(), 1);
}

void HttpServerTest::closesConnectionsBeyondTheLimit()
{
    m_options.limits.connections = 3;
    startServer();
    std::vector<std::unique_ptr<HttpProbe>> kept;
    for (int i = 0; i < 3; ++i) {
        kept.push_back(std::make_unique<HttpProbe>(port()));
        kept.back()->send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        QCOMPARE(kept.back()->read().status, 200);
    }
    HttpProbe oneTooMany(port());
    QVERIFY(oneTooMany.isClosed());
    kept.front()->send("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    QCOMPARE(kept.front()->read().status, 200);
    QVERIFY(kept.front()->isClosed());
    // Asked until it is answered and not once more, because the room for one is taken then.
    const auto isAnswered = [this] { return HttpProbe::request(port(), "GET", "/").status == 200; };
    QVERIFY(QTest::qWaitFor(isAnswered));
}

void HttpServerTest::refusesCallsBeyondTheQueue()
{
    m_options.workers = 1;
    m_options.limits.workerQueue = 1;
    startServer();
    HttpProbe running(port());
    running.send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n");
    m_entered.acquire();
    // One of these waits in the queue, the other finds it full.
    HttpProbe first(port());
    HttpProbe second(port());
    first.send("GET /first HTTP/1.1\r\nHost: x\r\n\r\n");
    second.send("GET /second HTTP/1.1\r\nHost: x\r\n\r\n");
    QTRY_COMPARE(loggedStatuses(), QList<int>{503});
    m_released.release();
    const HttpReply one = first.read();
    const HttpReply two = second.read();
    QCOMPARE(std::min(one.status, two.status), 200);
    QCOMPARE(std::max(one.status, two.status), 503);
    const HttpReply &refused = one.status == 503 ? one : two;
    QCOMPARE(refused.code(), QStringLiteral("unavailable"));
    QCOMPARE(refused.headers.value("retry-after"), QByteArray("1"));
    QCOMPARE(running.read().status, 200);
}

void HttpServerTest::answersSignInsBesideBusyWorkers()
{
    m_options.workers = 1;
    startServer();
    HttpProbe running(port());
    running.send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n");
    m_entered.acquire();
    QCOMPARE(HttpProbe::request(port(), "GET", "/signin").status, 200);
    QCOMPARE(HttpProbe::request(port(), "GET", "/immediate").status, 200);
    m_released.release();
    QCOMPARE(running.read().status, 200);
}

void HttpServerTest::sendsLongAnswersWhole()
{
    startServer();
    const HttpReply reply = HttpProbe::request(port(), "GET", "/big");
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.body.size(), 10 * 1024 * 1024);
    QCOMPARE(reply.body.count('b'), reply.body.size());
}

void HttpServerTest::survivesAClientThatGoesAwayDuringACall()
{
    startServer();
    for (int i = 0; i < 3; ++i) {
        HttpProbe probe(port());
        probe.send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n");
        m_entered.acquire();
        probe.abort();
        m_released.release();
    }
    QCOMPARE(HttpProbe::request(port(), "GET", "/after").status, 200);
}

void HttpServerTest::finishesCallsInFlightWhenItStops()
{
    startServer();
    const quint16 served = port();
    HttpProbe idle(served);
    HttpProbe idleAfterCall(served);
    idleAfterCall.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    QCOMPARE(idleAfterCall.read().status, 200);
    std::vector<std::unique_ptr<HttpProbe>> calls;
    for (int i = 0; i < 4; ++i) {
        calls.push_back(std::make_unique<HttpProbe>(served));
        calls.back()->send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n");
        m_entered.acquire();
    }
    std::thread stopping([this] { m_server->stop(); });
    QVERIFY(idle.isClosed());
    QVERIFY(idleAfterCall.isClosed());
    m_released.release(4);
    for (const auto &call : calls) {
        const HttpReply reply = call->read();
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.headers.value("connection"), QByteArray("close"));
        QVERIFY(call->isClosed());
    }
    stopping.join();
    QVERIFY(!HttpProbe(served).isConnected());
}

void HttpServerTest::stopsAtTheDrainLimit()
{
    m_options.limits.drain = std::chrono::milliseconds(100);
    startServer();
    HttpProbe sleeping(port());
    sleeping.send("GET /sleep HTTP/1.1\r\nHost: x\r\n\r\n");
    HttpProbe halfSent(port());
    halfSent.send("GET / HTTP/1.1\r\n");
    QTRY_COMPARE(m_calls.load(), 1);
    m_server->stop();
    QVERIFY(sleeping.isClosed());
    QVERIFY(halfSent.isClosed());
}

void HttpServerTest::stopsAtOnceWhenIdle()
{
    startServer();
    std::vector<std::unique_ptr<HttpProbe>> idle;
    for (int i = 0; i < 20; ++i)
        idle.push_back(std::make_unique<HttpProbe>(port()));
    QCOMPARE(HttpProbe::request(port(), "GET", "/").status, 200);
    QElapsedTimer timer;
    timer.start();
    m_server->stop();
    QVERIFY(timer.elapsed() < m_options.limits.drain.count());
}

void HttpServerTest::refusesAPortInUse()
{
    startServer();
    HttpServerOptions options = m_options;
    options.port = port();
    HttpServer second(options);
    try {
        second.start();
        QFAIL("it listens on a port in use");
    } catch (const ListenError &error) {
        QCOMPARE(error.kind(), ListenError::Kind::InUse);
    }
}

void HttpServerTest::logsEveryAnswer()
{
    startServer();
    const HttpReply reply = HttpProbe::request(port(), "GET", "/logged");
    HttpProbe malformed(port());
    malformed.send("nonsense\r\n\r\n");
    QCOMPARE(malformed.read().status, 400);
    const std::lock_guard lock(m_logMutex);
    QCOMPARE(m_log.size(), 2);
    QCOMPARE(m_log.first().requestId, reply.headers.value("x-request-id"));
    QCOMPARE(m_log.first().method, QByteArray("GET"));
    QCOMPARE(m_log.first().route, QByteArray("/logged"));
    QCOMPARE(m_log.first().status, 200);
    QCOMPARE(m_log.first().peerAddress, QStringLiteral("127.0.0.1"));
    QCOMPARE(m_log.last().route, QByteArray("-"));
    QCOMPARE(m_log.last().status, 400);
}

void HttpServerTest::takesChunkedBodiesIntoASink()
{
    startServer();
    HttpProbe probe(port());
    const QByteArray head = "PUT /stream HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n";
    probe.send(head + "3;name=\"value\"\r\nabc\r\n2\r\nd");
    QTest::qWait(2); // so that a chunk arrives in two pieces
    probe.send("e\r\n0\r\nX-Trailer: 1\r\n\r\nGET /next HTTP/1.1\r\nHost: x\r\n\r\n");
    QCOMPARE(probe.read().body, QByteArray("abcde"));
    QCOMPARE(probe.read().body, QByteArray("GET /next "));

    // Longer than what is handed on at once, in chunks that do not end where the pieces do.
    QByteArray body;
    QByteArray chunks;
    for (int i = 0; i < 100; ++i) {
        const QByteArray bytes(6997, static_cast<char>('a' + i % 26));
        body += bytes;
        chunks += chunkOf(bytes);
    }
    probe.send(head + chunks + "0\r\n\r\n");
    QVERIFY(probe.read().body == body);
    probe.send(head + "0\r\n\r\n");
    const HttpReply empty = probe.read();
    QCOMPARE(empty.status, 200);
    QCOMPARE(empty.body, QByteArray());
    QCOMPARE(m_calls.load(), 4);
}

void HttpServerTest::answersMalformedChunksOfAStreamedBodyAndCloses_data()
{
    QTest::addColumn<QByteArray>("chunks");
    QTest::addColumn<int>("status");
    const QByteArray good = chunkOf(QByteArray(300'000, 'g'));
    const QByteArray hidden = "GET /hidden HTTP/1.1\r\nHost: x\r\n\r\n";
    QTest::newRow("a size that is none") << "zz\r\n" + hidden << 400;
    QTest::newRow("a size that is none behind a good chunk") << good + "zz\r\n" + hidden << 400;
    QTest::newRow("no size") << "\r\n" + hidden << 400;
    QTest::newRow("a negative size") << "-1\r\nx\r\n" + hidden << 400;
    QTest::newRow("a size past 64 bits") << "fffffffffffffffff\r\nx\r\n" + hidden << 400;
    QTest::newRow("more than its size") << "3\r\nabcdef\r\n0\r\n\r\n" + hidden << 400;
    QTest::newRow("an extension without end") << "1;x=" + QByteArray(300'000, 'e') << 400;
    QTest::newRow("more than the limit") << good + good + good + good + "0\r\n\r\n" << 413;
    QTest::newRow("a chunk far beyond the limit") << QByteArray("7fffffffffffffff\r\nabc") << 413;
}

void HttpServerTest::answersMalformedChunksOfAStreamedBodyAndCloses()
{
    QFETCH(QByteArray, chunks);
    QFETCH(int, status);
    startServer();
    HttpProbe probe(port());
    probe.send("PUT /stream HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks);
    const HttpReply reply = probe.read();
    QCOMPARE(reply.status, status);
    QCOMPARE(reply.code(),
             status == 400 ? QStringLiteral("bad-request") : QStringLiteral("too-large"));
    QCOMPARE(reply.headers.value("connection"), QByteArray("close"));
    QVERIFY(probe.isClosed());
    QCOMPARE(m_calls.load(), 0); // never said to be whole, and what is hidden behind is not run
}

/// A body on its way holds no worker, however slowly it comes.
void HttpServerTest::answersBesideSixtyStreamedUploads()
{
    startServer();
    const QByteArray half(300'000, 'h');
    std::vector<std::unique_ptr<HttpProbe>> uploads;
    for (int i = 0; i < 60; ++i) {
        uploads.push_back(std::make_unique<HttpProbe>(port()));
        uploads.back()->send("PUT /stream HTTP/1.1\r\nHost: x\r\nContent-Length: 600000\r\n\r\n" +
                             half);
    }
    QCOMPARE(HttpProbe::request(port(), "GET", "/small").body, QByteArray("GET /small "));
    QCOMPARE(m_calls.load(), 1);
    for (const auto &upload : uploads)
        upload->send(half);
    for (const auto &upload : uploads)
        QVERIFY(upload->read().body == half + half);
    QCOMPARE(m_calls.load(), 61);
}

/// What a sink does at its end may take as long as the database lets it wait.
void HttpServerTest::answersWhileCutUploadsComeToTheirEnd()
{
    startServer();
    const int uploads = m_options.workers;
    const auto releaseAll = qScopeGuard([&] { m_released.release(uploads); });
    for (int i = 0; i < uploads; ++i) {
        HttpProbe probe(port());
        probe.send("PUT /slowend HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n"
                   "Expect: 100-continue\r\n\r\n");
        QCOMPARE(probe.read(true).status, 100); // the sink is there
        probe.send("a part of it");
    }
    for (int i = 0; i < uploads; ++i)
        m_entered.acquire();
    QCOMPARE(HttpProbe::request(port(), "GET", "/immediate").status, 200);
}

ZEL_TEST_MAIN(HttpServerTest)
#include "tst_httpserver.moc"
