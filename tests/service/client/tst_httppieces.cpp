// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "service/client/waitobserver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

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
ScriptedServer::Script taking(const ScriptedServer::Script &piece)
{
    return [piece](const SeenRequest &request, Wire &wire) {
        if (request.target == "/v1/sessions")
            wire.write(http(201, R"({"token":"tok","expiresAt":4102444800000})"));
        else if (request.target == "/v1/uploads")
            wire.write(
                http(201, "{\"uploadId\":\"u1\",\"chunk\":" + QByteArray::number(chunk) + "}"));
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

QSslConfiguration serverTls(const QString &folder)
{
    QFile key(folder + QLatin1String("server.key"));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("no key for the test server");
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain(QSslCertificate::fromPath(folder + QLatin1String("server.pem")));
    tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    return tls;
}

/// Destroys the client in the first wait that lasts long enough.
class Destroyer : public WaitObserver
{
public:
    Destroyer(std::unique_ptr<HttpServiceClient> &client, std::chrono::milliseconds after)
        : m_client(client)
        , m_after(after)
    {
    }

    void waiting(std::chrono::milliseconds waited) noexcept override
    {
        if (waited >= m_after)
            m_client.reset();
    }

    void finished() noexcept override {}

private:
    std::unique_ptr<HttpServiceClient> &m_client;
    const std::chrono::milliseconds m_after;
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
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(m_bytes), m_bytes.size());
    }

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
        QVERIFY2(error->description().contains(QLatin1String("Why it is refused.")),
                 qPrintable(error->description()));
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
        Destroyer destroyer(client, std::chrono::milliseconds(0));
        client->setWaitObserver(&destroyer);
        const auto error = errorOf([&] { upload(*client); });
        QVERIFY(error);
        QVERIFY(!client);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
    }

    void trustsTheAuthoritiesOfThePolicyAndNoLonger()
    {
        const QString folder = QStringLiteral(ZEL_SOURCE_DIR "/tests/service/client/certificates/");
        ScriptedServer server(taking(takePiece), ScriptedServer::Ask::WholeRequest,
                              serverTls(folder));
        auto client = std::make_unique<HttpServiceClient>();
        NetworkPolicy policy;
        policy.caFile = folder + QLatin1String("authority.pem");
        client->setNetworkPolicy(policy);
        QVERIFY(signIn(*client, QLatin1String("https://") + server.address()));
        QCOMPARE(upload(*client), QStringLiteral("g1"));
        QCOMPARE(piecesOf(server).size(), 4);

        // From the second piece on nobody trusts the server. The retries are cut short in a pause
        // that is longer than any of the calls.
        Destroyer destroyer(client, std::chrono::milliseconds(1500));
        connect(client.get(), &ServiceClient::CreateAssetFileProgress, client.get(), [&] {
            client->setNetworkPolicy(NetworkPolicy());
            client->setWaitObserver(&destroyer);
        });
        const auto error = errorOf([&] { upload(*client); });
        QVERIFY(error);
        QVERIFY2(error->kind() == ServiceError::Kind::Unreachable,
                 qPrintable(error->description() + error->details()));
        QVERIFY2(error->description().contains(QLatin1String("nothing was sent")),
                 qPrintable(error->description() + error->details()));
        QCOMPARE(piecesOf(server).size(), 5);
    }

private:
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
