// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using namespace QXSC;
using namespace ZelTest;
using namespace std::chrono_literals;

namespace {

const QString deployment = QStringLiteral("d-1");
const QDateTime start = QDateTime::fromMSecsSinceEpoch(1'000'000'000'000);

QByteArray rowNamed(const QByteArray &name)
{
    return "[\"" + name + "\",\"n\",\"\",null,null,\"\",null,false]";
}

QByteArray page(const QByteArray &rows, const QByteArray &next)
{
    return R"({"projects":{"columns":["guid","name","description","created","modified","createdBy",)"
           R"("eventDate","published"],"rows":[)" +
           rows + R"(]},"next":)" + next + "}";
}

/// Answers each call with the next of the answers, and the last one again and again.
ScriptedServer::Script inTurn(const QByteArrayList &answers)
{
    const auto count = std::make_shared<std::atomic_int>(0);
    return [answers, count](const SeenRequest &, Wire &wire) {
        wire.write(answers.at(qMin(qsizetype((*count)++), answers.size() - 1)));
    };
}

ProjectCollectionPtr projectsOf(HttpServiceClient &client)
{
    ProjectCollectionPtr projects;
    client.getProjectList(QStringLiteral("t"), projects);
    return projects;
}

QByteArray participants(const QByteArray &rows, const QByteArray &next)
{
    return R"({"participants":{"columns":["user","firstName","lastName","email","registered",)"
           R"("participated","timeSpent","firstViewed","lastViewed"],"rows":[)" +
           rows + R"(]},"next":)" + next + "}";
}

} // namespace

/// Long lists that come page by page, and changes that are sent twice; a scripted server plays the
/// service.
class TestHttpLists : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void allPagesAreOneList()
    {
        SignedIn there(
            inTurn({http(200, page(rowNamed("a") + "," + rowNamed("b"), "\"x-1\"")),
                    http(200, page(rowNamed("c"), "\"y_2\"")), http(200, page("", "null"))}));
        const auto projects = projectsOf(there.client);
        QCOMPARE(projects->count(), 3);
        QCOMPARE(projects->item(3)->guid, QStringLiteral("c"));
        QCOMPARE(there.calls(), 3);
        const QList<SeenRequest> requests = there.server.requests();
        QCOMPARE(requests.at(1).target, "/v1/projects?type=t");
        QCOMPARE(requests.at(2).target, "/v1/projects?type=t&after=x-1");
        QCOMPARE(requests.at(3).target, "/v1/projects?type=t&after=y_2");
    }

    void asksForPagesOfTheSizeThePolicySays()
    {
        SignedIn there(
            inTurn({http(200, page("", "\"x\"")), http(200, page(rowNamed("c"), "null"))}));
        NetworkPolicy policy;
        policy.pageRows = 20;
        there.client.setNetworkPolicy(policy);
        QCOMPARE(projectsOf(there.client)->count(), 1);
        QCOMPARE(there.lastRequest().target, "/v1/projects?type=t&limit=20&after=x");
    }

    void aServiceWithoutPagesIsRead()
    {
        SignedIn there(respond(projectsAnswer("[" + rowNamed("a") + "]")));
        QCOMPARE(projectsOf(there.client)->count(), 1);
        QCOMPARE(there.calls(), 1);
    }

    void nothingIsNotAnEmptyList()
    {
        SignedIn none(respond(http(200, R"({"projects":null,"next":null})")));
        QVERIFY(!projectsOf(none.client));
        SignedIn empty(respond(http(200, page("", "null"))));
        QCOMPARE(projectsOf(empty.client)->count(), 0);
        // What goes away while it is read is not there.
        SignedIn gone(inTurn({http(200, page(rowNamed("a"), "\"x\"")),
                              http(200, R"({"projects":null,"next":null})")}));
        QVERIFY(!projectsOf(gone.client));
    }

    void aFailureOfALaterPageIsTheFailureOfTheCall_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<ServiceError::Kind>("kind");
        using Kind = ServiceError::Kind;
        QTest::newRow("refused") << problem(500, "internal") << Kind::Unavailable;
        QTest::newRow("no answer of the service") << http(200, "{") << Kind::BadAnswer;
        QTest::newRow("a bad row") << http(200, page("[1]", "null")) << Kind::BadAnswer;
        QTest::newRow("no place") << http(200, page("", "7")) << Kind::BadAnswer;
        QTest::newRow("an empty place") << http(200, page("", "\"\"")) << Kind::BadAnswer;
        QTest::newRow("a place with more in it")
            << http(200, page("", "\"y&type=u\"")) << Kind::BadAnswer;
        QTest::newRow("the same place again") << http(200, page("", "\"x\"")) << Kind::BadAnswer;
        QTest::newRow("the session has ended") << problem(401, "signed-out") << Kind::SignedOut;
    }

    void aFailureOfALaterPageIsTheFailureOfTheCall()
    {
        QFETCH(QByteArray, answer);
        QFETCH(ServiceError::Kind, kind);
        SignedIn there(inTurn({http(200, page(rowNamed("a"), "\"x\"")), answer}));
        auto projects = std::make_shared<const ProjectCollection>();
        ProjectCollectionPtr result = projects;
        const auto error =
            errorOf([&] { there.client.getProjectList(QStringLiteral("t"), result); });
        QVERIFY(error);
        QCOMPARE(error->kind(), kind);
        QCOMPARE(result, projects); // nothing half
        QCOMPARE(there.client.isSignedIn(), kind != ServiceError::Kind::SignedOut);
    }

    void allPagesShareTheTimeOfOneCall()
    {
        // Each page is quick; there is no end of them.
        const auto count = std::make_shared<std::atomic_int>(0);
        SignedIn there([count](const SeenRequest &, Wire &wire) {
            wire.sleep(50);
            wire.write(http(200, page("", "\"p" + QByteArray::number((*count)++) + "\"")));
        });
        NetworkPolicy policy;
        policy.callLimit = 700ms;
        there.client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { projectsOf(there.client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::TimedOut);
        QVERIFY2(error->description().contains(QLatin1String("after 0.7 seconds")),
                 qPrintable(error->description()));
        QVERIFY(there.calls() > 2);
    }

    void withoutALimitThereIsNone()
    {
        SignedIn there(
            inTurn({http(200, page("", "\"x\"")), http(200, page(rowNamed("c"), "null"))}));
        NetworkPolicy policy;
        policy.callLimit = 0ms;
        there.client.setNetworkPolicy(policy);
        QCOMPARE(projectsOf(there.client)->count(), 1);
    }

    void everyPageMayBeAsLongAsAnAnswerMayBe()
    {
        const QByteArray long1 = page(rowNamed(QByteArray(700, 'a')), "\"x\"");
        SignedIn there(
            inTurn({http(200, long1), http(200, page(rowNamed(QByteArray(700, 'b')), "null"))}));
        NetworkPolicy policy;
        policy.answerLimit = long1.size() + 10; // far less than both
        there.client.setNetworkPolicy(policy);
        QCOMPARE(projectsOf(there.client)->count(), 2);
    }

    void theRangeOfTimeStaysOverAllPages()
    {
        SignedIn there(
            inTurn({http(200, participants(R"(["v","","","",null,true,1,5000,6000])", "\"x\"")),
                    http(200, participants(R"(["u","","","",null,true,1,4000,6000],)"
                                           R"(["t","","","",null,true,1,5000,6000])",
                                           "null"))}));
        const auto list =
            there.client.GetParticipants(deployment, start, QDateTime::currentDateTime());
        const QList<SeenRequest> requests = there.server.requests();
        QCOMPARE(requests.at(2).target, requests.at(1).target + "&after=x");
        // By their first view, whatever order they came in.
        QStringList order;
        for (const ParticipantRecordPtr &record : *list)
            order << record->User->UserID;
        QCOMPARE(order,
                 (QStringList{QStringLiteral("u"), QStringLiteral("t"), QStringLiteral("v")}));
    }

    void aListIsReadToItsEndWithTheSessionItBeganWith()
    {
        SignedIn there(
            inTurn({http(200, page("", "\"x\"")), http(200, page(rowNamed("c"), "null"))}));
        QCOMPARE(projectsOf(there.client)->count(), 1);
        const QByteArray token = QByteArray("Bearer ") + SignedIn::token;
        QCOMPARE(there.server.requests().at(1).header("authorization"), token);
        QCOMPARE(there.server.requests().at(2).header("authorization"), token);
    }

    // Changes -------------------------------------------------------------------------------------

    void aChangeGoesOutOnceMoreWhenTheConnectionBreaks_data()
    {
        QTest::addColumn<bool>("isReset");
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("closed") << false << QByteArray();
        QTest::newRow("reset") << true << QByteArray();
        QTest::newRow("inside the answer")
            << false << QByteArray("HTTP/1.1 201 Created\r\nContent-Length: 14\r\n\r\n{\"fold");
    }

    void aChangeGoesOutOnceMoreWhenTheConnectionBreaks()
    {
        QFETCH(bool, isReset);
        QFETCH(QByteArray, before);
        const auto count = std::make_shared<std::atomic_int>(0);
        SignedIn there([=](const SeenRequest &, Wire &wire) {
            if ((*count)++ > 0) {
                wire.write(http(201, R"({"folderId":7})"));
                return;
            }
            wire.write(before);
            if (isReset)
                wire.reset();
            else
                wire.close();
        });
        QCOMPARE(there.client.CreateAssetFolder(0, QStringLiteral("f")), 7);
        QCOMPARE(there.calls(), 2);
        const QList<SeenRequest> requests = there.server.requests();
        const QByteArray key = requests.at(1).header("idempotency-key");
        QVERIFY(!QUuid::fromString(QString::fromLatin1(key)).isNull());
        QCOMPARE(requests.at(2).header("idempotency-key"), key);
        QCOMPARE(requests.at(2).body, requests.at(1).body);
        there.client.CreateAssetFolder(0, QStringLiteral("f"));
        QVERIFY(there.lastRequest().header("idempotency-key") != key);
    }

    void aChangeGoesOutNoThirdTime()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) { wire.close(); });
        const auto error = errorOf([&] { there.client.CreateAssetFolder(0, QStringLiteral("f")); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
        QCOMPARE(there.calls(), 2);
    }

    void aRefusedChangeIsNotRepeated()
    {
        SignedIn there(respond(problem(503, "unavailable")));
        QVERIFY(errorOf([&] { there.client.CreateAssetFolder(0, QStringLiteral("f")); }));
        QCOMPARE(there.calls(), 1);
    }

    void bothTriesShareTheTimeOfOneCall()
    {
        const auto count = std::make_shared<std::atomic_int>(0);
        SignedIn there([count](const SeenRequest &, Wire &wire) {
            if ((*count)++ > 0) {
                wire.drip();
            } else {
                wire.sleep(300);
                wire.close();
            }
        });
        NetworkPolicy policy;
        policy.callLimit = 600ms;
        there.client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { there.client.CreateAssetFolder(0, QStringLiteral("f")); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::TimedOut);
        QVERIFY(error->description().contains(QLatin1String("0.6 seconds")));
    }

    void allPiecesOfAnUploadShareItsTime()
    {
        // Each piece is answered in time, and the file never gets any further.
        SignedIn there([](const SeenRequest &request, Wire &wire) {
            if (request.method == "PUT") {
                wire.sleep(100);
                wire.write(http(200, R"({"received":1})"));
            } else {
                wire.write(http(201, R"({"uploadId":"u-1","chunk":4096})"));
            }
        });
        NetworkPolicy policy;
        policy.callLimit = 800ms;
        there.client.setNetworkPolicy(policy);
        QTemporaryDir folder;
        auto entry = std::make_shared<AssetFileEntry>();
        entry->localPath = folder.filePath(QStringLiteral("f.txt"));
        QFile file(entry->localPath);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("bytes") == 5);
        file.close();
        auto files = std::make_shared<AssetFileCollection>();
        files->add(entry);
        const auto error = errorOf(
            [&] { there.client.CreateAsset(QStringLiteral("n"), {}, 0, files, {}, {}, nullptr); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::TimedOut);
        QVERIFY2(error->description().contains(QLatin1String("after 0.8 seconds")),
                 qPrintable(error->description()));
        QVERIFY(there.calls() > 3);
    }

    void everyChangeCarriesAKey()
    {
        SignedIn there(respond("HTTP/1.1 204 No Content\r\n\r\n"));
        const auto keyOf = [&](auto change) {
            change();
            return there.lastRequest().header("idempotency-key");
        };
        HttpServiceClient &client = there.client;
        const QString guid = QStringLiteral("g");
        QVERIFY(!keyOf([&] { client.DeleteAssetFolder(3); }).isEmpty());
        QVERIFY(!keyOf([&] { client.DeleteAsset(guid); }).isEmpty());
        QVERIFY(!keyOf([&] { client.SetQuestionStatus(guid, guid); }).isEmpty());
        QVERIFY(!keyOf([&] { client.UpdateQuestion(guid, guid, guid, {}, {}); }).isEmpty());
        QVERIFY(keyOf([&] { errorOf([&] { client.projectTypes(); }); }).isEmpty());
    }
};

ZEL_TEST_MAIN(TestHttpLists)
#include "tst_httplists.moc"
