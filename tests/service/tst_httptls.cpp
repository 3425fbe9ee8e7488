// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/httpserver.h"
#include "tests/contract/testauthority.h"
#include "tests/service/httpprobe.h"
#include "tests/service/rawtls.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTest>

#include <openssl/ssl.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

using namespace Zel::Service;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;
using ZelTest::RawTls;
using ZelTest::TestAuthority;

namespace {

constexpr qint64 uploadLimit = 64 * 1024 * 1024;

HttpResponse plain(const QByteArray &body)
{
    HttpResponse response;
    response.contentType = "text/plain";
    response.body = body;
    return response;
}

/// Answers the checksum of what it took in.
class ChecksumSink : public BodySink
{
public:
    explicit ChecksumSink(std::atomic<int> &alive)
        : m_alive(alive)
    {
        ++m_alive;
    }

    ~ChecksumSink() override { --m_alive; }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        m_hash.addData(piece);
        return std::nullopt;
    }

    HttpResponse finish() override { return plain(m_hash.result().toHex()); }

private:
    std::atomic<int> &m_alive;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

/// Bytes that do not repeat themselves at the borders of buffers.
QByteArray content(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

QByteArray chunked(const QByteArray &body, qsizetype size)
{
    QByteArray result;
    for (qsizetype at = 0; at < body.size(); at += size) {
        const QByteArray chunk = body.mid(at, size);
        result += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    return result + "0\r\n\r\n";
}

QByteArray checksum(const QByteArray &body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex();
}

} // namespace

/// What the server does because it encrypts. /upload answers a checksum, /wait waits until it is
/// released, /big answers 10 MB.
class HttpTlsTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void speaksNewVersionsOnly_data();
    void speaksNewVersionsOnly();
    void takesStrongCiphersOnly_data();
    void takesStrongCiphersOnly();
    void speaksHttp11Only_data();
    void speaksHttp11Only();
    void refusesToRenegotiate();
    void showsACertificateThatClientsCanCheck();
    void tellsAPlainClientToEncrypt_data();
    void tellsAPlainClientToEncrypt();
    void cutsASlowHandshake_data();
    void cutsASlowHandshake();
    void tellsWhyAHandshakeFailed();
    void goesOnBesideClientsThatLeaveDuringTheHandshake();
    void saysGoodbyeBeforeItEndsAConnection();
    void saysGoodbyeToIdleClientsWhenItStops();
    void answersAClientThatHasFinishedSending();
    void answersBesideBytesThatCameInTheClear();
    void takesUploadsWhole_data();
    void takesUploadsWhole();
    void deliversARefusalToAClientThatIsStillSending_data();
    void deliversARefusalToAClientThatIsStillSending();
    void dropsAnUploadThatIsCut();
    void sendsLongAnswersWhole();
    void changesItsCertificateUnderOpenConnections();
    void countsWhatComesAndGoes();

private:
    HttpPlan plan(const HttpRequest &head);
    void startServer();

    quint16 port() const { return m_server->port(); }

    QList<QByteArray> failures()
    {
        const std::lock_guard lock(m_mutex);
        return m_failures;
    }

    TestAuthority m_authority;
    TestAuthority::Files m_files = m_authority.make();
    HttpServerOptions m_options;
    std::unique_ptr<HttpServer> m_server;
    qint64 m_bodyLimit = uploadLimit;
    std::atomic<int> m_calls{0};
    std::atomic<int> m_sinks{0};
    std::counting_semaphore<100> m_entered{0};
    std::counting_semaphore<100> m_released{0};
    std::mutex m_mutex;
    QList<QByteArray> m_failures;
};

void HttpTlsTest::init()
{
    TestCase::init();
    m_options = HttpServerOptions();
    m_options.workers = 4;
    m_options.tls = TlsContext::load(m_files.certificate, m_files.key);
    m_options.plan = [this](const HttpRequest &head) { return plan(head); };
    m_options.handshakeFailed = [this](const QString &peer, const QString &why) {
        const std::lock_guard lock(m_mutex);
        m_failures << peer.toUtf8() + ": " + why.toUtf8();
    };
    m_failures.clear();
    m_calls = 0;
    m_bodyLimit = uploadLimit;
    HttpProbe::encrypt(m_authority.caFile());
}

void HttpTlsTest::cleanup()
{
    m_server.reset();
    HttpProbe::encrypt({});
}

HttpPlan HttpTlsTest::plan(const HttpRequest &head)
{
    HttpPlan plan;
    plan.route = head.target;
    plan.bodyLimit = m_bodyLimit;
    plan.lane = Lane::Worker;
    if (head.target == "/upload") {
        plan.begin = [this](const HttpRequest &) {
            return std::make_shared<ChecksumSink>(m_sinks);
        };
        return plan;
    }
    plan.handler = [this](const HttpRequest &request) {
        ++m_calls;
        if (request.target == "/wait") {
            m_entered.release();
            m_released.acquire();
        }
        if (request.target == "/big")
            return plain(content(10 * 1024 * 1024));
        return plain(request.isEncrypted ? "encrypted " + request.body : "in the clear");
    };
    return plan;
}

void HttpTlsTest::startServer()
{
    m_server = std::make_unique<HttpServer>(m_options);
    m_server->start();
    QVERIFY(port() != 0);
}

void HttpTlsTest::speaksNewVersionsOnly_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("1.0") << TLS1_VERSION << QByteArray() << QByteArray("protocol version");
    QTest::newRow("1.1") << TLS1_1_VERSION << QByteArray() << QByteArray("protocol version");
    QTest::newRow("1.2") << TLS1_2_VERSION << QByteArray("TLSv1.2") << QByteArray();
    QTest::newRow("1.3") << TLS1_3_VERSION << QByteArray("TLSv1.3") << QByteArray();
}

void HttpTlsTest::speaksNewVersionsOnly()
{
    QFETCH(int, version);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, error);
    startServer();
    RawTls client(port(), {version, version, {}, {}, {}});
    QCOMPARE(client.isEncrypted(), error.isEmpty());
    if (!error.isEmpty()) {
        QVERIFY2(client.error().contains(error), client.error().constData());
        QTRY_COMPARE(m_server->figures().handshakesFailed, 1);
        QCOMPARE(m_server->figures().handshakes, 0);
        return;
    }
    QCOMPARE(client.version(), name);
    QVERIFY(client.send("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"));
    QVERIFY(client.readToEnd().endsWith("\r\n\r\nencrypted "));
    QCOMPARE(m_server->figures().handshakes, 1);
}

void HttpTlsTest::takesStrongCiphersOnly_data()
{
    QTest::addColumn<QByteArray>("cipher");
    QTest::addColumn<bool>("taken");
    QTest::newRow("strong") << QByteArray("ECDHE-ECDSA-AES128-GCM-SHA256") << true;
    QTest::newRow("strong without AES") << QByteArray("ECDHE-ECDSA-CHACHA20-POLY1305") << true;
    QTest::newRow("blocks in a chain") << QByteArray("ECDHE-ECDSA-AES128-SHA") << false;
    QTest::newRow("no encryption") << QByteArray("ECDHE-ECDSA-NULL-SHA") << false;
    QTest::newRow("nobody's certificate") << QByteArray("AECDH-AES128-SHA") << false;
}

void HttpTlsTest::takesStrongCiphersOnly()
{
    QFETCH(QByteArray, cipher);
    QFETCH(bool, taken);
    startServer();
    const RawTls client(port(), {TLS1_2_VERSION, TLS1_2_VERSION, cipher, {}, {}});
    QCOMPARE(client.isEncrypted(), taken);
    if (!taken)
        QVERIFY2(client.error().contains("handshake failure"), client.error().constData());
}

void HttpTlsTest::speaksHttp11Only_data()
{
    QTest::addColumn<QByteArrayList>("offered");
    QTest::addColumn<QByteArray>("chosen");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("nothing") << QByteArrayList() << QByteArray() << QByteArray();
    QTest::newRow("1.1") << QByteArrayList{"http/1.1"} << QByteArray("http/1.1") << QByteArray();
    QTest::newRow("2 and 1.1") << QByteArrayList{"h2", "http/1.1"} << QByteArray("http/1.1")
                               << QByteArray();
    QTest::newRow("2") << QByteArrayList{"h2"} << QByteArray()
                       << QByteArray("no application protocol");
}

void HttpTlsTest::speaksHttp11Only()
{
    QFETCH(QByteArrayList, offered);
    QFETCH(QByteArray, chosen);
    QFETCH(QByteArray, error);
    startServer();
    const RawTls client(port(), {0, 0, {}, offered, {}});
    QVERIFY2(error.isEmpty() ? client.isEncrypted() : client.error().contains(error),
             client.error().constData());
    QCOMPARE(client.protocol(), chosen);
}

void HttpTlsTest::refusesToRenegotiate()
{
    startServer();
    RawTls client(port(), {TLS1_2_VERSION, TLS1_2_VERSION, {}, {}, {}});
    QVERIFY2(client.isEncrypted(), client.error().constData());
    QVERIFY(!client.renegotiate());
    QCOMPARE(client.error(), QByteArray("no renegotiation"));
    QCOMPARE(HttpProbe::request(port(), "GET", "/").status, 200);
}

void HttpTlsTest::showsACertificateThatClientsCanCheck()
{
    startServer();
    const RawTls trusting(port(), {0, 0, {}, {}, m_authority.caFile()});
    QVERIFY2(trusting.isEncrypted(), trusting.error().constData());
    const TestAuthority another;
    const RawTls stranger(port(), {0, 0, {}, {}, another.caFile()});
    QCOMPARE(stranger.error(), QByteArray("certificate verify failed"));
}

void HttpTlsTest::tellsAPlainClientToEncrypt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("HTTP") << QByteArray("GET /healthz HTTP/1.1\r\nHost: x\r\n\r\n");
    QTest::newRow("HTTP with a body")
        << "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 200000\r\n\r\n" +
               QByteArray(200'000, 'b');
    QTest::newRow("something else") << QByteArray("hello\r\n");
    QTest::newRow("one byte") << QByteArray("G");
}

void HttpTlsTest::tellsAPlainClientToEncrypt()
{
    QFETCH(QByteArray, bytes);
    startServer();
    HttpProbe::encrypt({});
    HttpProbe probe(port());
    probe.send(bytes);
    const HttpReply reply = probe.read();
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("not-encrypted"));
    QVERIFY(
        reply.json().value(QLatin1String("detail")).toString().contains(QLatin1String("https://")));
    QVERIFY(probe.isClosed());
    QCOMPARE(m_calls.load(), 0);
}

void HttpTlsTest::cutsASlowHandshake_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("silent") << QByteArray();
    QTest::newRow("half a hello") << QByteArray("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11);
    QTest::newRow("one byte") << QByteArray("\x16");
}

void HttpTlsTest::cutsASlowHandshake()
{
    QFETCH(QByteArray, bytes);
    m_options.limits.header = std::chrono::milliseconds(300);
    m_options.limits.idle = std::chrono::hours(1);
    startServer();
    HttpProbe::encrypt({});
    HttpProbe probe(port());
    probe.send(bytes);
    QVERIFY(probe.isClosed());
    QTRY_COMPARE(m_server->figures().connections, 0);
}

void HttpTlsTest::tellsWhyAHandshakeFailed()
{
    startServer();
    const TestAuthority another;
    const RawTls stranger(port(), {TLS1_2_VERSION, TLS1_2_VERSION, {}, {}, another.caFile()});
    QVERIFY(!stranger.isEncrypted());
    QTRY_COMPARE(failures().size(), 1);
    QVERIFY2(failures().first().startsWith("127.0.0.1: ") &&
                 failures().first().contains("unknown ca"),
             failures().first().constData());
    QCOMPARE(m_server->figures().handshakesFailed, 1);
}

void HttpTlsTest::goesOnBesideClientsThatLeaveDuringTheHandshake()
{
    startServer();
    HttpProbe::encrypt({});
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("\x16"),
          QByteArray("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11),
          QByteArray("\x16\x03\x01\x00\x05hello") + QByteArray(500, 'x')}) {
        HttpProbe probe(port());
        probe.send(bytes);
        probe.abort();
    }
    HttpProbe::encrypt(m_authority.caFile());
    QCOMPARE(HttpProbe::request(port(), "GET", "/").status, 200);
    QTRY_COMPARE(m_server->figures().connections, 0);
}

void HttpTlsTest::saysGoodbyeBeforeItEndsAConnection()
{
    startServer();
    for (const QByteArray &request :
         {QByteArray("GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"),
          QByteArray("no HTTP\r\n\r\n"),
          QByteArray("POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999999\r\n\r\nabc")}) {
        RawTls client(port(), {});
        QVERIFY(client.send(request));
        QVERIFY(client.readToEnd().startsWith("HTTP/1.1 "));
        QVERIFY2(client.hadGoodbye(), client.error().constData());
    }
}

void HttpTlsTest::saysGoodbyeToIdleClientsWhenItStops()
{
    startServer();
    RawTls fresh(port(), {});
    RawTls used(port(), {});
    QVERIFY(used.send("GET / HTTP/1.1\r\nHost: x\r\n\r\n"));
    QTRY_COMPARE(m_calls.load(), 1);
    std::thread stopping([this] { m_server->stop(); });
    QCOMPARE(fresh.readToEnd(), QByteArray());
    QVERIFY2(fresh.hadGoodbye(), fresh.error().constData());
    fresh.sayGoodbye();
    QVERIFY(used.readToEnd().startsWith("HTTP/1.1 200"));
    QVERIFY2(used.hadGoodbye(), used.error().constData());
    used.sayGoodbye();
    stopping.join();
}

void HttpTlsTest::answersAClientThatHasFinishedSending()
{
    startServer();
    RawTls client(port(), {});
    QVERIFY(client.send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n"));
    m_entered.acquire();
    client.sayGoodbye();
    m_released.release();
    QVERIFY(client.readToEnd().endsWith("\r\n\r\nencrypted "));
    QVERIFY2(client.hadGoodbye(), client.error().constData());
}

void HttpTlsTest::answersBesideBytesThatCameInTheClear()
{
    startServer();
    HttpProbe::encrypt({});
    HttpProbe probe(port());
    // Something that begins like TLS and goes on as HTTP is nobody's request.
    probe.send(QByteArray("\x16\x03\x01\x00\x02\x01\x00", 7) + "GET / HTTP/1.1\r\nHost: x\r\n\r\n");
    QVERIFY(!probe.readToEnd().contains("HTTP/1.1"));
    QCOMPARE(m_calls.load(), 0);
}

void HttpTlsTest::takesUploadsWhole_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<qsizetype>("chunk");
    for (const qsizetype size :
         {qsizetype(0), qsizetype(1), qsizetype(16'384), qsizetype(16'385), qsizetype(256 * 1024),
          qsizetype(256 * 1024 + 1), qsizetype(24 * 1024 * 1024 + 7)}) {
        QTest::addRow("%lld bytes", static_cast<long long>(size)) << size << qsizetype(0);
        QTest::addRow("%lld bytes in chunks", static_cast<long long>(size))
            << size << qsizetype(100'000);
    }
}

void HttpTlsTest::takesUploadsWhole()
{
    QFETCH(qsizetype, size);
    QFETCH(qsizetype, chunk);
    startServer();
    const QByteArray body = content(size);
    HttpProbe probe(port());
    const QByteArray head = "PUT /upload HTTP/1.1\r\nHost: x\r\n";
    if (chunk > 0)
        probe.send(head + "Transfer-Encoding: chunked\r\n\r\n" + chunked(body, chunk));
    else
        probe.send(head + "Content-Length: " + QByteArray::number(size) + "\r\n\r\n" + body);
    const HttpReply reply = probe.read();
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.body, checksum(body));
    // The connection is of use for another one.
    probe.send(head + "Content-Length: 3\r\n\r\nabc");
    QCOMPARE(probe.read().body, checksum("abc"));
}

void HttpTlsTest::deliversARefusalToAClientThatIsStillSending_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("a little more") << qint64(2'000'000);
    QTest::newRow("far more than is waited for") << qint64(40'000'000);
}

/// Such a client looks for an answer only when it has sent everything, or cannot go on.
void HttpTlsTest::deliversARefusalToAClientThatIsStillSending()
{
    QFETCH(qint64, size);
    m_bodyLimit = 1000;
    startServer();
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(QStringLiteral("https://127.0.0.1:%1/").arg(port())));
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(m_authority.caFile()));
    request.setSslConfiguration(tls);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("text/plain"));
    const std::unique_ptr<QNetworkReply> reply(network.post(request, content(size)));
    QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 30'000);
    if (size < 4'000'000)
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 413);
    else
        QVERIFY(reply->error() != QNetworkReply::NoError);
    QCOMPARE(m_calls.load(), 0);
    QTRY_COMPARE(m_server->figures().connections, 0);
}

void HttpTlsTest::dropsAnUploadThatIsCut()
{
    startServer();
    HttpProbe probe(port());
    probe.send("PUT /upload HTTP/1.1\r\nHost: x\r\nContent-Length: 9000000\r\n\r\n" +
               content(3'000'000));
    QTRY_COMPARE(m_sinks.load(), 1);
    probe.abort();
    QTRY_COMPARE(m_sinks.load(), 0);
    QTRY_COMPARE(m_server->figures().connections, 0);
    QCOMPARE(m_server->figures().requestsInFlight, 0);
}

void HttpTlsTest::sendsLongAnswersWhole()
{
    startServer();
    const HttpReply reply = HttpProbe::request(port(), "GET", "/big");
    QCOMPARE(reply.body.size(), 10 * 1024 * 1024);
    QCOMPARE(checksum(reply.body), checksum(content(10 * 1024 * 1024)));
}

void HttpTlsTest::changesItsCertificateUnderOpenConnections()
{
    startServer();
    HttpProbe before(port());
    HttpProbe waiting(port());
    waiting.send("GET /wait HTTP/1.1\r\nHost: x\r\n\r\n");
    m_entered.acquire();
    TestAuthority::Wish wish;
    wish.validUntilSeconds = 5 * 86'400;
    const auto next = m_authority.make(wish);
    const auto tls = TlsContext::load(next.certificate, next.key);
    m_server->replaceTls(tls);
    HttpProbe after(port());
    QCOMPARE(after.certificateEnd(), tls->validUntil());
    QVERIFY(before.certificateEnd() > tls->validUntil());
    for (HttpProbe *probe : {&before, &after}) {
        probe->send("GET / HTTP/1.1\r\nHost: x\r\n\r\n");
        QCOMPARE(probe->read().status, 200);
    }
    m_released.release();
    QCOMPARE(waiting.read().status, 200);
}

void HttpTlsTest::countsWhatComesAndGoes()
{
    startServer();
    const QByteArray request = "GET / HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
    RawTls client(port(), {});
    QVERIFY(client.send(request));
    const QByteArray answer = client.readToEnd();
    client.sayGoodbye();
    QTRY_COMPARE(m_server->figures().connections, 0);
    const HttpServerFigures figures = m_server->figures();
    QCOMPARE(figures.received, request.size());
    QCOMPARE(figures.sent, answer.size());
    QCOMPARE(figures.connectionsTaken, 1);
    QCOMPARE(figures.handshakes, 1);
    QCOMPARE(figures.requestsInFlight, 0);
}

ZEL_TEST_MAIN(HttpTlsTest)
#include "tst_httptls.moc"
