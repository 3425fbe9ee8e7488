// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "service/client/waitobserver.h"
#include "testsupport/testcase.h"
#include "tunnelproxy.h"

#include <QCoreApplication>
#include <QFile>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr qint64 chunk = 256 * 1024;

QByteArray largeBytes()
{
    QByteArray bytes(3 * chunk + 17, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char((i * 7919) >> 5);
    return bytes;
}

bool isPiece(const SeenRequest &request)
{
    return request.method == "PUT";
}

qint64 offsetOf(const SeenRequest &request)
{
    return request.target.mid(request.target.indexOf("offset=") + 7).toLongLong();
}

QByteArray received(qint64 count)
{
    return http(200, "{\"received\":" + QByteArray::number(count) + "}");
}

/// Takes everything, except where a test does the pieces itself.
ScriptedServer::Script taking(const ScriptedServer::Script &piece, qint64 longest = chunk)
{
    return [piece, longest](const SeenRequest &request, Wire &wire) {
        if (request.target == "/v1/sessions")
            wire.write(http(201, R"({"token":"tok","expiresAt":4102444800000})"));
        else if (request.target == "/v1/uploads")
            wire.write(
                http(201, "{\"uploadId\":\"u1\",\"chunk\":" + QByteArray::number(longest) + "}"));
        else if (request.target == "/v1/uploads/u1/commit")
            wire.write(http(201, R"({"guid":"g1"})"));
        else if (isPiece(request))
            piece(request, wire);
        else
            wire.write(http(204, ""));
    };
}

void takePiece(const SeenRequest &request, Wire &wire)
{
    wire.write(received(offsetOf(request) + request.body.size()));
}

QString certificate(const char *name)
{
    return QStringLiteral(ZEL_SOURCE_DIR "/tests/service/client/certificates/") +
           QLatin1String(name);
}

/// One that gives up at the first failure.
NetworkPolicy impatient()
{
    NetworkPolicy policy;
    policy.retryLimit = std::chrono::milliseconds(0);
    return policy;
}

NetworkPolicy trusting()
{
    NetworkPolicy policy = impatient();
    policy.caFile = certificate("authority.pem");
    return policy;
}

QSslConfiguration serverTls()
{
    QFile key(certificate("server.key"));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("no key for the test server");
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain(QSslCertificate::fromPath(certificate("server.pem")));
    tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    return tls;
}

/// Destroys the client in the first wait.
class Destroyer : public WaitObserver
{
public:
    explicit Destroyer(std::unique_ptr<HttpServiceClient> &client)
        : m_client(client)
    {
    }

    void waiting(std::chrono::milliseconds) noexcept override { m_client.reset(); }

    void finished() noexcept override {}

private:
    std::unique_ptr<HttpServiceClient> &m_client;
};

/// Stands for the proxy a host application set for itself.
class OneProxy : public QNetworkProxyFactory
{
public:
    explicit OneProxy(quint16 port)
        : m_port(port)
    {
    }

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &) override
    {
        return {QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), m_port)};
    }

private:
    const quint16 m_port;
};

} // namespace

class TestHttpPieces : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_bytes = largeBytes();
        QVERIFY(write(m_bytes));
    }

    void cleanup() { QNetworkProxyFactory::setApplicationProxyFactory(nullptr); }

    void sendsTheWholeFileOverOneMoreConnection()
    {
        ScriptedServer server(taking(takePiece));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        QCOMPARE(upload(client), QStringLiteral("g1"));
        const QList<SeenRequest> pieces = piecesOf(server);
        QCOMPARE(pieces.size(), 4);
        QByteArray sent;
        for (const SeenRequest &piece : pieces) {
            QCOMPARE(offsetOf(piece), sent.size());
            QCOMPARE(piece.header("content-type"), "application/octet-stream");
            QCOMPARE(piece.header("accept"), "application/json");
            QCOMPARE(piece.header("authorization"), "Bearer tok");
            QVERIFY(!piece.headers.contains("expect"));
            sent += piece.body;
        }
        QVERIFY(sent == m_bytes);
        QCOMPARE(server.connections(), 2);
    }

    void readsARefusalThatComesBeforeThePieceIsTakenIn_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<ServiceError::Kind>("kind");
        QTest::newRow("too large") << 413 << QByteArray("too-large") << ServiceError::Kind::Invalid;
        QTest::newRow("not allowed")
            << 403 << QByteArray("not-allowed") << ServiceError::Kind::Refused;
        QTest::newRow("signed out")
            << 401 << QByteArray("signed-out") << ServiceError::Kind::SignedOut;
        QTest::newRow("conflict") << 409 << QByteArray("conflict") << ServiceError::Kind::Conflict;
    }

    void readsARefusalThatComesBeforeThePieceIsTakenIn()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, code);
        QFETCH(ServiceError::Kind, kind);
        const auto script = taking([&](const SeenRequest &, Wire &wire) {
            wire.write(problem(status, code, "Why it is refused.", "Connection: close\r\n"));
        });
        ScriptedServer server(
            [script](const SeenRequest &request, Wire &wire) { script(request, wire); },
            ScriptedServer::Ask::HeadOnly);
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QVERIFY2(error->kind() == kind, qPrintable(error->description() + error->details()));
        QCOMPARE(error->code(), QString::fromLatin1(code));
        // Of the end of a session the client tells in its own words.
        const QLatin1String sentence(status == 401 ? "Sign in again." : "Why it is refused.");
        QVERIFY2(error->description().contains(sentence), qPrintable(error->description()));
    }

    void goesOnBehindWhatArrivedWhenTheConnectionBreaks()
    {
        // Twice, because what breaks on a connection kept open is sent again without a word.
        std::atomic_int broken = 0;
        ScriptedServer server(taking([&](const SeenRequest &request, Wire &wire) {
            if (offsetOf(request) == chunk && !request.body.isEmpty() && broken++ < 2)
                wire.reset();
            else if (request.body.isEmpty())
                wire.write(received(chunk + 1000)); // part of it had arrived
            else
                takePiece(request, wire);
        }));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        QCOMPARE(upload(client), QStringLiteral("g1"));
        const QList<SeenRequest> pieces = piecesOf(server);
        const auto asking = std::find_if(pieces.begin(), pieces.end(),
                                         [](const SeenRequest &one) { return one.body.isEmpty(); });
        QVERIFY(asking != pieces.end() && asking + 1 != pieces.end());
        QCOMPARE(offsetOf(*(asking + 1)), chunk + 1000);
        QVERIFY((asking + 1)->body == m_bytes.mid(chunk + 1000, chunk));
    }

    void followsNoRedirect()
    {
        ScriptedServer other(respond(received(chunk)));
        ScriptedServer server(taking([&](const SeenRequest &, Wire &wire) {
            wire.write(http(307, "", "text/plain",
                            "Location: http://" + other.address().toLatin1() + "/x\r\n"));
        }));
        HttpServiceClient client;
        client.setNetworkPolicy(impatient());
        QVERIFY(signIn(client, server.address()));
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QCOMPARE(other.connections(), 0);
    }

    void usesNoProxyOfTheEnvironment()
    {
        ScriptedServer proxy(respond(http(403, "")));
        qputenv("http_proxy", "http://" + proxy.address().toLatin1());
        ScriptedServer server(taking(takePiece));
        HttpServiceClient client;
        const bool ok = signIn(client, server.address());
        const QString guid = upload(client);
        qunsetenv("http_proxy");
        QVERIFY(ok);
        QCOMPARE(guid, QStringLiteral("g1"));
        QCOMPARE(proxy.connections(), 0);
    }

    void endsAtOnceWhenTheClientIsDestroyedWhileAPieceWaits()
    {
        ScriptedServer server(taking([](const SeenRequest &, Wire &wire) { wire.stall(); }));
        auto client = std::make_unique<HttpServiceClient>();
        QVERIFY(signIn(*client, server.address()));
        Destroyer destroyer(client);
        client->setWaitObserver(&destroyer);
        const auto error = errorOf([&] { upload(*client); });
        QVERIFY(error);
        QVERIFY(!client);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
    }

    void trustsTheAuthoritiesOfThePolicyAndNoLonger()
    {
        ScriptedServer server(taking(takePiece), ScriptedServer::Ask::WholeRequest, serverTls());
        HttpServiceClient client;
        client.setNetworkPolicy(trusting());
        QVERIFY(signIn(client, QLatin1String("https://") + server.address()));
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QCOMPARE(piecesOf(server).size(), 4);

        // From the second piece on nobody trusts the server.
        connect(&client, &ServiceClient::CreateAssetFileProgress, &client,
                [&] { client.setNetworkPolicy(impatient()); });
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QVERIFY2(error->kind() == ServiceError::Kind::Unreachable,
                 qPrintable(error->description() + error->details()));
        QVERIFY2(error->description().contains(QLatin1String("nothing was sent")),
                 qPrintable(error->description() + error->details()));
        QCOMPARE(piecesOf(server).size(), 5);
    }

    void sendsPiecesThroughTheProxyThatIsChosen()
    {
        ScriptedServer server(taking(takePiece), ScriptedServer::Ask::WholeRequest, serverTls());
        TunnelProxy proxy(server.port());
        QNetworkProxyFactory::setApplicationProxyFactory(new OneProxy(proxy.port()));
        HttpServiceClient client;
        client.setNetworkPolicy(trusting());
        QVERIFY(signIn(client, QStringLiteral("service.invalid"), true));
        QCOMPARE(proxy.heads().size(), 1);
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QByteArray sent;
        for (const SeenRequest &piece : piecesOf(server))
            sent += piece.body;
        QVERIFY(sent == m_bytes);
        // One tunnel for the calls and one for the pieces; what is for the service goes inside.
        const QByteArrayList heads = proxy.heads();
        QCOMPARE(heads.size(), 2);
        QVERIFY2(heads.last().startsWith("CONNECT service.invalid:443 HTTP/1."),
                 heads.last().constData());
        QVERIFY2(!heads.last().toLower().contains("authorization"), heads.last().constData());
        QVERIFY2(!heads.last().contains("octet-stream"), heads.last().constData());
    }

    void saysSoWhenTheProxyRefusesThePieces()
    {
        ScriptedServer server(taking(takePiece), ScriptedServer::Ask::WholeRequest, serverTls());
        TunnelProxy proxy(server.port(), 1);
        QNetworkProxyFactory::setApplicationProxyFactory(new OneProxy(proxy.port()));
        HttpServiceClient client;
        client.setNetworkPolicy(trusting());
        QVERIFY(signIn(client, QStringLiteral("service.invalid"), true));
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("proxy")),
                 qPrintable(error->description() + error->details()));
        QVERIFY(piecesOf(server).isEmpty());
    }

    void endsWithAClearErrorWhenTheServerGoesSilent()
    {
        ScriptedServer server(taking([](const SeenRequest &request, Wire &wire) {
            if (offsetOf(request) == 0)
                takePiece(request, wire);
            else
                wire.stall();
        }));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        NetworkPolicy policy = impatient();
        policy.inactivityLimit = std::chrono::milliseconds(200);
        client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::TimedOut);
        QVERIFY2(error->description().contains(QLatin1String("large.bin")) &&
                     error->description().contains(QLatin1String("did not answer within 0.2")),
                 qPrintable(error->description()));
        // What had begun is dropped, and nobody tried again.
        QCOMPARE(piecesOf(server).size(), 2);
        QCOMPARE(server.requests().last().method, "DELETE");
    }

    void asksForMoreAtOnceButNotForMuchOfTheFile()
    {
        m_bytes = QByteArray(9 * 1024 * 1024 + 5, 'x');
        QVERIFY(write(m_bytes));
        ScriptedServer server(taking(takePiece, 64 * 1024 * 1024));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        QCOMPARE(upload(client), QStringLiteral("g1"));
        const QList<SeenRequest> pieces = piecesOf(server);
        QCOMPARE(pieces.first().body.size(), chunk);
        QByteArray sent;
        for (const SeenRequest &piece : pieces) {
            QCOMPARE(offsetOf(piece), sent.size());
            QVERIFY(piece.body.size() <= m_bytes.size() / 16);
            sent += piece.body;
        }
        QVERIFY(sent == m_bytes);
    }

    void namesTheFileThatIsCutOffOnTheWay()
    {
        // Much longer than what is read ahead.
        QVERIFY(write(QByteArray(24 * 1024 * 1024, 'x')));
        ScriptedServer server(taking(takePiece));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        connect(&client, &ServiceClient::CreateAssetFileProgress, &client,
                [this] { QVERIFY(QFile::resize(path(), 1000)); });
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QVERIFY2(error->description().contains(QLatin1String("large.bin\" was changed")),
                 qPrintable(error->description()));
        QCOMPARE(server.requests().last().method, "DELETE");
    }

    void nothingOfTheHostRunsInsideAnUpload()
    {
        ScriptedServer server(taking([](const SeenRequest &request, Wire &wire) {
            wire.sleep(50);
            takePiece(request, wire);
        }));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        int timeouts = 0;
        int events = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] { ++timeouts; });
        timer.start(1);
        QMetaObject::invokeMethod(
            this, [&] { ++events; }, Qt::QueuedConnection);
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QCOMPARE(timeouts, 0);
        QCOMPARE(events, 0);
        QTRY_VERIFY(timeouts > 0); // they were due all the time
        QCOMPARE(events, 1);
    }

    void aCallInsideAProgressSlotIsAnswered()
    {
        const auto script = taking(takePiece);
        ScriptedServer server([script](const SeenRequest &request, Wire &wire) {
            if (request.target == "/v1/accounts")
                wire.write(http(200, R"({"accounts":[{"accountID":7,"accountName":"Seven"}]})"));
            else
                script(request, wire);
        });
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        int answers = 0;
        connect(&client, &ServiceClient::CreateAssetFileProgress, &client, [&] {
            AccountCollectionPtr accounts;
            client.getAccounts(accounts);
            answers += accounts->item(1)->accountID == 7;
        });
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QVERIFY(answers > 2);
        QByteArray sent;
        for (const SeenRequest &piece : piecesOf(server))
            sent += piece.body;
        QVERIFY(sent == m_bytes);
    }

    void aProgressSlotMayHandleEvents()
    {
        ScriptedServer server(taking(takePiece));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        int timeouts = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] { ++timeouts; });
        timer.start(0);
        QList<int> seen;
        connect(&client, &ServiceClient::CreateAssetFileProgress, &client, [&](qint32 percent) {
            seen << percent;
            QCoreApplication::processEvents();
        });
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QVERIFY(timeouts > 0);
        QVERIFY(seen.size() > 2);
        QVERIFY(std::is_sorted(seen.begin(), seen.end()));
        QCOMPARE(seen.count(100), 1);
        QCOMPARE(seen.last(), 100);
    }

    void anAnswerToAPieceThatDripsIsGivenUp()
    {
        ScriptedServer server(taking([](const SeenRequest &, Wire &wire) {
            wire.write("HTTP/1.1 200 OK\r\nContent-Length: 100000000\r\n\r\n");
            wire.drip();
        }));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        NetworkPolicy policy = impatient();
        policy.callLimit = std::chrono::milliseconds(500);
        client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { upload(client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::TimedOut);
        QVERIFY2(error->description().contains(QLatin1String("after 0.5 seconds")),
                 qPrintable(error->description()));
        QCOMPARE(piecesOf(server).size(), 1);
        QCOMPARE(server.requests().last().method, "DELETE");
    }

    /// Another call, one whose connection broke perhaps, has the file or the upload for a moment.
    void busyIsTriedAgain()
    {
        std::atomic_int pieces = 0;
        std::atomic_int commits = 0;
        const auto script = taking([&](const SeenRequest &request, Wire &wire) {
            if (++pieces == 2)
                wire.write(problem(409, "busy"));
            else if (request.body.isEmpty())
                wire.write(received(chunk));
            else
                takePiece(request, wire);
        });
        ScriptedServer server([&](const SeenRequest &request, Wire &wire) {
            if (request.target.endsWith("/commit") && ++commits == 1)
                wire.write(problem(409, "busy"));
            else
                script(request, wire);
        });
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address()));
        QCOMPARE(upload(client), QStringLiteral("g1"));
        QCOMPARE(commits.load(), 2);
        QCOMPARE(piecesOf(server).size(), 6); // four, the one refused and the one that asked
    }

private:
    bool write(const QByteArray &bytes) const
    {
        QFile file(path());
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    QString path() const { return m_folder.filePath(QStringLiteral("large.bin")); }

    QString upload(HttpServiceClient &client) const
    {
        auto files = std::make_shared<AssetFileCollection>();
        files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path()}));
        return client.CreateAsset(QStringLiteral("Large"), QString(), 0, files, QString(),
                                  QString(), nullptr);
    }

    static QList<SeenRequest> piecesOf(const ScriptedServer &server)
    {
        QList<SeenRequest> pieces = server.requests();
        pieces.erase(std::remove_if(pieces.begin(), pieces.end(), std::not_fn(isPiece)),
                     pieces.end());
        return pieces;
    }

    QTemporaryDir m_folder;
    QByteArray m_bytes;
};

ZEL_TEST_MAIN(TestHttpPieces)
#include "tst_httppieces.moc"
