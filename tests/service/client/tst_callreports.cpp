// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr const char *noTypes = R"({"types":[]})";

/// Keeps what it is told.
struct Reports
{
    explicit Reports(HttpServiceClient &client)
    {
        client.setCallObserver([this](const CallReport &report) {
            all << report;
            threads << QThread::currentThread();
        });
    }

    QList<CallReport> all;
    QSet<QThread *> threads;
};

/// All that a report holds.
QByteArray textOf(const CallReport &report)
{
    QByteArray text = report.method + report.path + report.query + report.requestBody + report.body;
    for (const auto &[name, value] : report.headers)
        text += name + value;
    return text;
}

/// Takes an upload of one file in one piece.
void takeUpload(const SeenRequest &request, Wire &wire)
{
    if (request.target == "/v1/uploads")
        wire.write(http(201, R"({"uploadId":"u1","chunk":1048576})"));
    else if (request.method == "PUT")
        wire.write(http(200, "{\"received\":" + QByteArray::number(request.body.size()) + "}",
                        "application/json", "X-Sign: 0123456789abcdef\r\n"));
    else
        wire.write(http(201, R"({"guid":"g1"})"));
}

} // namespace

/// What a host that looks for faults is told of calls.
class CallReportsTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void tellsOfACallAndItsAnswer()
    {
        SignedIn there(respond(
            http(200, R"({"projects":null})", "application/json", "X-Sign: 0123456789abcdef\r\n")));
        const Reports reports(there.client);
        ProjectCollectionPtr projects;
        there.client.getProjectList(QStringLiteral("a b"), projects);
        QCOMPARE(reports.all.size(), 1);
        const CallReport report = reports.all.constFirst();
        QCOMPARE(report.method, QByteArray("GET"));
        QCOMPARE(report.path, QByteArray("/v1/projects"));
        QCOMPARE(report.query, QByteArray("type=a%20b"));
        QCOMPARE(report.requestBody, QByteArray());
        QCOMPARE(report.status, 200);
        QCOMPARE(report.header("content-type"), QByteArray("application/json"));
        QCOMPARE(report.header("X-SIGN"), QByteArray("0123456789abcdef"));
        QCOMPARE(report.header("Retry-After"), QByteArray());
        QCOMPARE(report.body, QByteArray(R"({"projects":null})"));
        QCOMPARE(reports.threads, QSet<QThread *>{QThread::currentThread()});
    }

    void tellsOfRefusals()
    {
        SignedIn there(respond(problem(404, "not-found")));
        const Reports reports(there.client);
        QVERIFY(errorOf([&] { there.client.GetAssetValue(QStringLiteral("g")); }));
        QCOMPARE(reports.all.size(), 1);
        QCOMPARE(reports.all.constFirst().status, 404);
        QVERIFY(reports.all.constFirst().body.contains("not-found"));
    }

    void tellsNothingWithoutAnAnswer()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) { wire.reset(); });
        const Reports reports(there.client);
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
        QCOMPARE(reports.all.size(), 0);
    }

    void neverShowsPasswordOrToken()
    {
        ScriptedServer server([](const SeenRequest &request, Wire &wire) {
            wire.write(request.target == "/v1/sessions"
                           ? http(201, R"({"token":"secret-token","expiresAt":4102444800000})")
                           : http(200, noTypes));
        });
        HttpServiceClient client;
        const Reports reports(client);
        bool success = false;
        client.authenticate(server.address(), QStringLiteral("maja"),
                            QStringLiteral("open \"sesame"), QStringLiteral("test"), QString(),
                            false, false, success);
        QVERIFY(success);
        client.projectTypes();
        QCOMPARE(reports.all.size(), 2);
        for (const CallReport &report : reports.all) {
            QVERIFY(!textOf(report).contains("secret-token"));
            QVERIFY(!textOf(report).contains("sesame"));
        }
        const CallReport signedIn = reports.all.constFirst();
        QVERIFY(signedIn.requestBody.contains(R"("user":"maja")"));
        QVERIFY(signedIn.requestBody.contains(R"("password":"xxxxxxxxxxxx")"));
        QVERIFY(signedIn.body.contains(R"("token":"xxxxxxxxxxxx")"));
        QCOMPARE(server.requests().last().header("authorization"),
                 QByteArray("Bearer secret-token"));
    }

    void tellsOfThePiecesOfAnUpload()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.bin"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("twelve bytes");
        file.close();
        SignedIn there(takeUpload);
        const Reports reports(there.client);
        const auto files = std::make_shared<AssetFileCollection>();
        files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path}));
        QCOMPARE(there.client.CreateAsset(QStringLiteral("n"), QString(), 0, files, QString(),
                                          QString(), nullptr),
                 QStringLiteral("g1"));
        QCOMPARE(reports.all.size(), 3);
        const CallReport piece = reports.all.at(1);
        QCOMPARE(piece.method, QByteArray("PUT"));
        QCOMPARE(piece.path, QByteArray("/v1/uploads/u1/files/0"));
        QCOMPARE(piece.query, QByteArray("offset=0"));
        QCOMPARE(piece.requestBody, QByteArray());
        QCOMPARE(piece.status, 200);
        QCOMPARE(piece.body, QByteArray(R"({"received":12})"));
        QCOMPARE(piece.header("x-sign"), QByteArray("0123456789abcdef"));
    }

    void tellsOfCallsThatAreMadeMeanwhile()
    {
        SignedIn there([](const SeenRequest &request, Wire &wire) {
            wire.write(
                http(200, request.target == "/v1/accounts" ? R"({"accounts":[]})" : noTypes));
        });
        QByteArrayList paths;
        there.client.setCallObserver([&](const CallReport &report) {
            if (report.path == "/v1/project-types") {
                AccountCollectionPtr accounts;
                there.client.getAccounts(accounts);
            }
            paths << report.path;
        });
        there.client.projectTypes();
        QCOMPARE(paths, (QByteArrayList{"/v1/accounts", "/v1/project-types"}));
    }

    void survivesTheEndOfItsClient()
    {
        ScriptedServer server([](const SeenRequest &request, Wire &wire) {
            wire.write(request.target == "/v1/sessions"
                           ? http(201, R"({"token":"tok","expiresAt":4102444800000})")
                           : http(200, noTypes));
        });
        auto client = std::make_unique<HttpServiceClient>();
        QVERIFY(signIn(*client, server.address()));
        client->setCallObserver([&](const CallReport &) { client.reset(); });
        HttpServiceClient *const caller = client.get();
        const auto error = errorOf([&] { caller->projectTypes(); });
        QVERIFY(error);
        QVERIFY(!client);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
    }

    void isSilentWhenTakenAway()
    {
        SignedIn there(respond(http(200, noTypes)));
        const Reports reports(there.client);
        there.client.projectTypes();
        there.client.setCallObserver({});
        there.client.projectTypes();
        QCOMPARE(reports.all.size(), 1);
    }
};

ZEL_TEST_MAIN(CallReportsTest)

#include "tst_callreports.moc"
