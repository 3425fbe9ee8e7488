// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;
using namespace std::chrono_literals;

namespace {

constexpr const char *session = R"({"token":"t","expiresAt":1})";

/// Stands for what a host application set as its proxy, and notes what was asked.
class NotingFactory : public QNetworkProxyFactory
{
public:
    explicit NotingFactory(quint16 port)
        : m_port(port)
    {
    }

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        asked << query.url().toString();
        return {QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), m_port)};
    }

    static inline QStringList asked; // read after the call only

private:
    const quint16 m_port;
};

QString certificate(const char *name)
{
    return QStringLiteral(ZEL_SOURCE_DIR "/tests/service/client/certificates/") +
           QLatin1String(name);
}

QSslConfiguration serverTls(const char *certificateName = "server.pem",
                            const char *keyName = "server.key")
{
    QFile key(certificate(keyName));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("no key for the test server");
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain(QSslCertificate::fromPath(certificate(certificateName)));
    tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    return tls;
}

QString secure(const ScriptedServer &server)
{
    return QLatin1String("https://") + server.address();
}

NetworkPolicy trusting(const QString &caFile)
{
    NetworkPolicy policy;
    policy.caFile = caFile;
    return policy;
}

} // namespace

class TestHttpNetworkPolicy : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void cleanup()
    {
        QNetworkProxyFactory::setApplicationProxyFactory(nullptr);
        for (const char *name : {"http_proxy", "https_proxy", "no_proxy"})
            qunsetenv(name);
        NotingFactory::asked.clear();
    }

    void hasTheLimitsPeopleExpect()
    {
        const NetworkPolicy policy;
        QCOMPARE(policy.inactivityLimit, std::chrono::milliseconds(30000));
        QCOMPARE(policy.callLimit, std::chrono::milliseconds(300000));
        QCOMPARE(policy.retryLimit, std::chrono::milliseconds(16000));
        QVERIFY(!policy.useSystemProxy);
        QVERIFY(policy.caFile.isEmpty());
        QCOMPARE(policy.answerLimit, 268435456);
    }

    // Proxies -------------------------------------------------------------------------------------

    void theProxyOfTheApplicationIsUsedWhenAskedFor()
    {
        ScriptedServer proxy(respond(http(403, "")));
        QNetworkProxyFactory::setApplicationProxyFactory(new NotingFactory(proxy.port()));
        HttpServiceClient client;
        const auto error =
            errorOf([&] { signIn(client, QStringLiteral("service.invalid"), true); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("proxy")),
                 qPrintable(error->description()));
        QVERIFY(client.networkPolicy().useSystemProxy);
        QCOMPARE(NotingFactory::asked.value(0),
                 QStringLiteral("https://service.invalid/v1/sessions"));
        QCOMPARE(proxy.requests().value(0).method, "CONNECT");
        QCOMPARE(proxy.requests().value(0).target, "service.invalid:443");
        QVERIFY(!proxy.requests().value(0).headers.contains("authorization"));
    }

    void theSystemsProxyIsUsedWhenTheApplicationHasNone()
    {
        ScriptedServer proxy(respond(http(403, "")));
        qputenv("https_proxy", "http://" + proxy.address().toLatin1());
        HttpServiceClient client;
        QVERIFY(errorOf([&] { signIn(client, QStringLiteral("service.invalid"), true); }));
        QCOMPARE(proxy.requests().value(0).target, "service.invalid:443");
    }

    void noProxyIsUsedUnlessAskedFor()
    {
        ScriptedServer proxy(respond(http(403, "")));
        qputenv("https_proxy", "http://" + proxy.address().toLatin1());
        QNetworkProxyFactory::setApplicationProxyFactory(new NotingFactory(proxy.port()));
        HttpServiceClient client;
        NetworkPolicy policy;
        policy.callLimit = 2s; // looking a name up may take long where there is no network
        client.setNetworkPolicy(policy);
        QVERIFY(errorOf([&] { signIn(client, QStringLiteral("service.invalid"), false); }));
        QVERIFY(!client.networkPolicy().useSystemProxy);
        QVERIFY(NotingFactory::asked.isEmpty());
        QCOMPARE(proxy.connections(), 0);
    }

    void aServiceOnThisMachineIsCalledDirectly()
    {
        ScriptedServer proxy(respond(http(403, "")));
        ScriptedServer server(respond(http(201, session)));
        qputenv("http_proxy", "http://" + proxy.address().toLatin1());
        QNetworkProxyFactory::setApplicationProxyFactory(new NotingFactory(proxy.port()));
        HttpServiceClient client;
        QVERIFY(signIn(client, server.address(), true));
        QVERIFY(signIn(client, QStringLiteral("localhost:%1").arg(server.port()), true));
        QVERIFY(NotingFactory::asked.isEmpty());
        QCOMPARE(proxy.connections(), 0);
    }

    void aProxyThatIsGoneIsSaidSo()
    {
        quint16 port = 0;
        {
            ScriptedServer proxy(respond(""));
            port = proxy.port();
        }
        QNetworkProxyFactory::setApplicationProxyFactory(new NotingFactory(port));
        HttpServiceClient client;
        const auto error =
            errorOf([&] { signIn(client, QStringLiteral("service.invalid"), true); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("proxy")),
                 qPrintable(error->description() + error->details()));
    }

    void aProxyThatWantsAPasswordIsSaidSo()
    {
        ScriptedServer proxy(
            respond(http(407, "", "text/plain", "Proxy-Authenticate: Basic realm=\"x\"\r\n")));
        QNetworkProxyFactory::setApplicationProxyFactory(new NotingFactory(proxy.port()));
        HttpServiceClient client;
        const auto error =
            errorOf([&] { signIn(client, QStringLiteral("service.invalid"), true); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("proxy")),
                 qPrintable(error->description() + error->details()));
    }

    // Encryption ----------------------------------------------------------------------------------

    void anUnknownAuthorityIsRefusedBeforeAnythingIsSent()
    {
        ScriptedServer server(respond(http(201, session)), ScriptedServer::Ask::WholeRequest,
                              serverTls());
        HttpServiceClient client;
        const auto error = errorOf([&] { signIn(client, secure(server)); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("nothing was sent")),
                 qPrintable(error->description()));
        QVERIFY2(error->details().contains(QLatin1String("certificate")),
                 qPrintable(error->details()));
        QVERIFY(server.connections() > 0);
        QVERIFY(server.requests().isEmpty());
    }

    void anAuthorityOfTheHostIsTrusted()
    {
        ScriptedServer server(respond(http(201, session)), ScriptedServer::Ask::WholeRequest,
                              serverTls());
        HttpServiceClient client;
        client.setNetworkPolicy(trusting(certificate("authority.pem")));
        QVERIFY(signIn(client, secure(server)));
        QCOMPARE(server.requests().size(), 1);
        // And no longer than the host says.
        client.setNetworkPolicy(NetworkPolicy());
        QVERIFY(errorOf([&] { signIn(client, secure(server)); }));
        QCOMPARE(server.requests().size(), 1);
    }

    void aCertificateOfAnotherNameIsRefused()
    {
        ScriptedServer server(respond(http(201, session)), ScriptedServer::Ask::WholeRequest,
                              serverTls());
        HttpServiceClient client;
        client.setNetworkPolicy(trusting(certificate("authority.pem")));
        const auto error = errorOf(
            [&] { signIn(client, QStringLiteral("https://localhost:%1").arg(server.port())); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY(server.requests().isEmpty());
    }

    void anExpiredCertificateIsRefused()
    {
        ScriptedServer server(respond(http(201, session)), ScriptedServer::Ask::WholeRequest,
                              serverTls("expired.pem", "expired.key"));
        HttpServiceClient client;
        client.setNetworkPolicy(trusting(certificate("expired-authority.pem")));
        const auto error = errorOf([&] { signIn(client, secure(server)); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Unreachable);
        QVERIFY2(error->description().contains(QLatin1String("nothing was sent")),
                 qPrintable(error->description()));
        QVERIFY2(error->details().contains(QLatin1String("expired")), qPrintable(error->details()));
        QVERIFY(server.connections() > 0);
        QVERIFY(server.requests().isEmpty());
    }

    void aServerThatDoesNotEncryptIsRefused()
    {
        ScriptedServer server(respond(http(201, session)));
        HttpServiceClient client;
        NetworkPolicy policy;
        policy.inactivityLimit = 300ms; // either side may wait for the other
        client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { signIn(client, secure(server)); });
        QVERIFY(error);
        QVERIFY(error->isTransient());
        for (const SeenRequest &request : server.requests())
            QVERIFY(!request.body.contains("open sesame"));
    }

    void aBadFileOfAuthoritiesIsSaidSo_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("empty") << QByteArray(" ");
        QTest::newRow("garbage") << QByteArray(5000, '\xff');
        QTest::newRow("broken") << QByteArray(
            "-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n");
    }

    void aBadFileOfAuthoritiesIsSaidSo()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("ca.pem")));
        if (!content.isEmpty()) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
            file.close();
        }
        ScriptedServer server(respond(http(201, session)), ScriptedServer::Ask::WholeRequest,
                              serverTls());
        HttpServiceClient client;
        client.setNetworkPolicy(trusting(file.fileName()));
        const auto error = errorOf([&] { signIn(client, secure(server)); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QVERIFY2(error->description().contains(file.fileName()), qPrintable(error->description()));
        QCOMPARE(server.connections(), 0);
        // Without encryption there is nothing to trust, and the file does not matter.
        ScriptedServer plain(respond(http(201, session)));
        QVERIFY(signIn(client, plain.address()));
    }
};

ZEL_TEST_MAIN(TestHttpNetworkPolicy)
#include "tst_httpnetworkpolicy.moc"
