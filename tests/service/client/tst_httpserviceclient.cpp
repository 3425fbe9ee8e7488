// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTimeZone>
#include <QUuid>

using namespace QXSC;
using namespace ZelTest;

namespace {

QJsonObject jsonOf(const QByteArray &body)
{
    return QJsonDocument::fromJson(body).object();
}

QByteArray createdAnswer(int status)
{
    return http(status,
                R"({"project":{"guid":"g","name":"Launch","description":"d","created":1000,)"
                R"("modified":null,"createdBy":"Ada","eventDate":null,"published":false}})");
}

ProjectCollectionPtr projectsOf(const QByteArray &answer)
{
    SignedIn there(respond(answer));
    ProjectCollectionPtr projects;
    there.client.getProjectList(QStringLiteral("event"), projects);
    return projects;
}

} // namespace

class TestHttpServiceClient : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    // Signing in ----------------------------------------------------------------------------------

    void authenticateSendsWhatItWasGiven()
    {
        ScriptedServer server(respond(http(201, R"({"token":"t","expiresAt":1})")));
        HttpServiceClient client;
        QVERIFY(!client.isSignedIn());
        bool success = false;
        client.authenticate(server.address(), QStringLiteral("Zoë \"x\" 😀"),
                            QStringLiteral("p\\w\r\n"), QStringLiteral("Studio"), QString(), false,
                            true, success);
        QVERIFY(success);
        QVERIFY(client.isSignedIn());
        const SeenRequest seen = server.requests().value(0);
        QCOMPARE(seen.method, "POST");
        QCOMPARE(seen.target, "/v1/sessions");
        QCOMPARE(seen.header("content-type"), "application/json");
        QVERIFY(!seen.headers.contains("authorization"));
        QVERIFY(!seen.headers.contains("cookie"));
        QCOMPARE(jsonOf(seen.body),
                 (QJsonObject{{QStringLiteral("user"), QStringLiteral("Zoë \"x\" 😀")},
                              {QStringLiteral("password"), QStringLiteral("p\\w\r\n")},
                              {QStringLiteral("appName"), QStringLiteral("Studio")}}));
    }

    void wrongCredentialsAreAnAnswer()
    {
        ScriptedServer server(respond(problem(401, "bad-credentials")));
        HttpServiceClient client;
        QVERIFY(!signIn(client, server.address()));
        QVERIFY(!client.isSignedIn());
        QCOMPARE(server.requests().size(), 1);
    }

    void wrongCredentialsWithAnAuthenticationHeaderAreAnAnswer()
    {
        ScriptedServer server(respond(
            problem(401, "bad-credentials", "No.", "WWW-Authenticate: Basic realm=\"x\"\r\n")));
        HttpServiceClient client;
        QVERIFY(!signIn(client, server.address()));
    }

    void emptyAddressMeansTheDefaultServer()
    {
        ScriptedServer server(respond(http(201, R"({"token":"t","expiresAt":1})")));
        HttpServiceClient client;
        client.setDefaultServer(server.address());
        QVERIFY(signIn(client, QString()));
        QVERIFY(signIn(client, QStringLiteral("  ")));
        QCOMPARE(server.requests().size(), 2);
    }

    void emptyAddressWithoutADefaultServerIsAnError()
    {
        HttpServiceClient client;
        const auto error = errorOf([&] { signIn(client, QString()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QVERIFY(error->description().contains(QLatin1String("Enter the address")));
    }

    void aFailedSignInForgetsTheSession_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("throws");
        QTest::newRow("refused") << problem(401, "bad-credentials") << false;
        QTest::newRow("failed") << problem(500, "internal") << true;
        QTest::newRow("garbage") << http(201, "{]") << true;
        QTest::newRow("no token") << http(201, "{}") << true;
        QTest::newRow("empty token") << http(201, R"({"token":""})") << true;
        QTest::newRow("token breaks the header") << http(201, R"({"token":"a\r\nX: y"})") << true;
        QTest::newRow("token not ASCII") << http(201, R"({"token":"ä"})") << true;
    }

    void aFailedSignInForgetsTheSession()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, throws);
        ScriptedServer other(respond(answer));
        SignedIn there(respond(http(200, R"({"accounts":[]})")));
        bool success = true;
        const auto error = errorOf([&] {
            there.client.authenticate(other.address(), QString(), QString(), QString(), QString(),
                                      false, true, success);
        });
        QCOMPARE(error != nullptr, throws);
        QVERIFY(!success);
        QVERIFY(!there.client.isSignedIn());
        AccountCollectionPtr accounts;
        const auto after = errorOf([&] { there.client.getAccounts(accounts); });
        QVERIFY(after);
        QCOMPARE(after->kind(), ServiceError::Kind::SignedOut);
        QCOMPARE(there.calls(), 0);
    }

    void anUnreadableAddressForgetsTheSessionToo()
    {
        SignedIn there(respond(http(200, "{}")));
        QVERIFY(errorOf([&] { signIn(there.client, QStringLiteral("ftp://x")); }));
        QVERIFY(!there.client.isSignedIn());
    }

    // Calls without a session ---------------------------------------------------------------------

    void callsWithoutASessionDoNotTouchTheNetwork_data()
    {
        QTest::addColumn<int>("call");
        QTest::newRow("getAccounts") << 0;
        QTest::newRow("setActiveAccount") << 1;
        QTest::newRow("getProjectList") << 2;
        QTest::newRow("isProjectPublished") << 3;
        QTest::newRow("projectTypes") << 4;
        QTest::newRow("createProject") << 5;
    }

    void callsWithoutASessionDoNotTouchTheNetwork()
    {
        QFETCH(int, call);
        ScriptedServer server(respond(http(200, "{}")));
        HttpServiceClient client;
        client.setDefaultServer(server.address());
        bool flag = true;
        AccountCollectionPtr accounts;
        ProjectCollectionPtr projects;
        const auto error = errorOf([&] {
            switch (call) {
            case 0:
                return client.getAccounts(accounts);
            case 1:
                return client.setActiveAccount(QStringLiteral("1"), flag);
            case 2:
                return client.getProjectList(QStringLiteral("event"), projects);
            case 3:
                return client.isProjectPublished(QStringLiteral("g"), QString(), flag);
            case 4:
                client.projectTypes();
                return;
            default:
                client.createProject({});
            }
        });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::SignedOut);
        QVERIFY(!error->isTransient());
        QCOMPARE(server.connections(), 0);
    }

    void aSessionThatEndedIsForgotten()
    {
        SignedIn there(respond(problem(401, "signed-out")));
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::SignedOut);
        QVERIFY(!there.client.isSignedIn());
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
        QCOMPARE(there.calls(), 1);
    }

    void signOutEndsTheSessionOnTheServer()
    {
        SignedIn there(respond("HTTP/1.1 204 Done\r\n\r\n"));
        there.client.signOut();
        QCOMPARE(there.lastRequest().method, "DELETE");
        QCOMPARE(there.lastRequest().target, "/v1/sessions/current");
        QCOMPARE(there.lastRequest().header("authorization"),
                 QByteArray("Bearer ") + SignedIn::token);
        QVERIFY(!there.client.isSignedIn());
        there.client.signOut();
        QCOMPARE(there.calls(), 1);
    }

    void signOutForgetsTheSessionWhateverTheServerDoes_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("signed out before") << problem(401, "signed-out");
        QTest::newRow("failure") << problem(500, "internal");
        QTest::newRow("garbage") << QByteArray("no HTTP at all\r\n\r\n");
    }

    void signOutForgetsTheSessionWhateverTheServerDoes()
    {
        QFETCH(QByteArray, answer);
        SignedIn there([answer](const SeenRequest &, Wire &wire) {
            wire.write(answer);
            wire.close();
        });
        there.client.signOut();
        QVERIFY(!there.client.isSignedIn());
    }

    // Accounts ------------------------------------------------------------------------------------

    void accountsComeInTheirOrder()
    {
        SignedIn there(
            respond(http(200, R"({"accounts":[{"accountID":2147483647,"accountName":"Ärzte"},)"
                              R"({"accountID":-2147483648,"accountName":"","more":1},)"
                              R"({"accountID":7.0,"accountName":"Zoo"}],"later":true})")));
        AccountCollectionPtr accounts;
        there.client.getAccounts(accounts);
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target, "/v1/accounts");
        QCOMPARE(there.lastRequest().header("authorization"),
                 QByteArray("Bearer ") + SignedIn::token);
        QVERIFY(accounts);
        QCOMPARE(accounts->count(), 3);
        QCOMPARE(accounts->item(1)->accountID, std::numeric_limits<qint32>::max());
        QCOMPARE(accounts->item(1)->accountName, QStringLiteral("Ärzte"));
        QCOMPARE(accounts->item(2)->accountID, std::numeric_limits<qint32>::min());
        QCOMPARE(accounts->item(2)->accountName, QString());
        QCOMPARE(accounts->item(3)->accountID, 7);
    }

    void noAccountsAndNothingDiffer()
    {
        SignedIn none(respond(http(200, R"({"accounts":[]})")));
        AccountCollectionPtr accounts;
        none.client.getAccounts(accounts);
        QVERIFY(accounts);
        QCOMPARE(accounts->count(), 0);

        SignedIn nothing(respond(http(200, R"({"accounts":null})")));
        nothing.client.getAccounts(accounts);
        QVERIFY(!accounts);
    }

    void choosingAnAccountSendsItsNumberAsText()
    {
        SignedIn there(respond("HTTP/1.1 204 Done\r\nX-Request-Id: a\r\n\r\n"));
        bool success = false;
        there.client.setActiveAccount(QStringLiteral("-12"), success);
        QVERIFY(success);
        QCOMPARE(there.lastRequest().method, "PUT");
        QCOMPARE(there.lastRequest().target, "/v1/sessions/current/account");
        QCOMPARE(jsonOf(there.lastRequest().body),
                 (QJsonObject{{QStringLiteral("accountId"), QStringLiteral("-12")}}));
    }

    void aRefusedAccountIsAnAnswer()
    {
        SignedIn there(respond(problem(403, "account-refused")));
        bool success = true;
        there.client.setActiveAccount(QStringLiteral("0"), success);
        QVERIFY(!success);
        QVERIFY(there.client.isSignedIn());
    }

    void aWebPageDoesNotChooseAnAccount()
    {
        SignedIn there(
            respond(http(200, "<html>Please log in to the network</html>", "text/html")));
        bool success = true;
        const auto error =
            errorOf([&] { there.client.setActiveAccount(QStringLiteral("1"), success); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QVERIFY(!success);
    }

    // Projects ------------------------------------------------------------------------------------

    void projectsComeWithEveryField()
    {
        const ProjectCollectionPtr projects = projectsOf(projectsAnswer(
            R"([["g-1","Launch","First\r\nsecond",1168371904005,1168371905000,"Ada",0,true],)"
            R"(["g-2","","",null,null,"",null,false],)"
            R"(["g-3","old","",-2208988800000,null,"Bo",4102444800000,false]])"));
        QVERIFY(projects);
        QCOMPARE(projects->count(), 3);
        const ProjectRecord &first = *projects->item(1);
        QCOMPARE(first.guid, QStringLiteral("g-1"));
        QCOMPARE(first.name, QStringLiteral("Launch"));
        QCOMPARE(first.description, QStringLiteral("First\r\nsecond"));
        QVERIFY(first.hasCreated && first.hasModified && first.hasEventDate);
        // The tests run in New York's time zone.
        QCOMPARE(first.created, QDateTime(QDate(2007, 1, 9), QTime(14, 45, 4, 5)));
        QCOMPARE(first.created.timeSpec(), Qt::LocalTime);
        QCOMPARE(first.eventDate, QDateTime(QDate(1969, 12, 31), QTime(19, 0)));
        QCOMPARE(first.createdBy, QStringLiteral("Ada"));
        QVERIFY(first.published);
        const ProjectRecord &second = *projects->item(2);
        QVERIFY(!second.hasCreated && !second.hasModified && !second.hasEventDate);
        QVERIFY(second.created.isNull());
        QVERIFY(!second.published);
        const ProjectRecord &third = *projects->item(3);
        QCOMPARE(third.created.toUTC(),
                 QDateTime(QDate(1900, 1, 1), QTime(0, 0), QTimeZone::utc()));
        QCOMPARE(third.eventDate.toUTC(),
                 QDateTime(QDate(2100, 1, 1), QTime(0, 0), QTimeZone::utc()));
    }

    void bothHoursOfTheAutumnNightStayApart()
    {
        // 2007-11-04 01:30 came twice in New York, an hour apart.
        const ProjectCollectionPtr projects = projectsOf(
            projectsAnswer(R"([["g","n","",1194154200000,1194157800000,"",null,false]])"));
        const ProjectRecord &record = *projects->item(1);
        QCOMPARE(record.created.time(), QTime(1, 30));
        QCOMPARE(record.modified.time(), QTime(1, 30));
        QCOMPARE(record.created.toMSecsSinceEpoch(), 1194154200000);
        QCOMPARE(record.modified.toMSecsSinceEpoch(), 1194157800000);
    }

    void anUnknownTypeAndAnEmptyListDiffer()
    {
        QVERIFY(!projectsOf(http(200, R"({"projects":null})")));
        const ProjectCollectionPtr empty = projectsOf(projectsAnswer("[]"));
        QVERIFY(empty);
        QCOMPARE(empty->count(), 0);
    }

    void theTypeGoesOutEscaped()
    {
        SignedIn there(respond(http(200, R"({"projects":null})")));
        ProjectCollectionPtr projects;
        there.client.getProjectList(QStringLiteral("a&b=c+d %2B#ü?"), projects);
        QCOMPARE(there.lastRequest().target, "/v1/projects?type=a%26b%3Dc%2Bd%20%252B%23%C3%BC%3F");
        there.client.getProjectList(QString(), projects);
        QCOMPARE(there.lastRequest().target, "/v1/projects?type=");
    }

    void aLongListComesWholeAndInOrder()
    {
        constexpr int count = 100000;
        QByteArray rows;
        for (int i = 0; i < count; ++i)
            rows += (i == 0 ? "[[\"" : ",[\"") + QByteArray::number(i) +
                    "\",\"n\",\"d\",1168371904005,null,\"Ada\",null,false]";
        const ProjectCollectionPtr projects = projectsOf(projectsAnswer(rows + "]"));
        QVERIFY(projects);
        QCOMPARE(projects->count(), count);
        for (int i = 0; i < count; ++i) {
            if (projects->item(i + 1)->guid.toInt() != i)
                QFAIL(qPrintable(projects->item(i + 1)->guid));
        }
    }

    void columnsAreTakenByName()
    {
        const ProjectCollectionPtr projects = projectsOf(
            http(200, R"({"projects":{"rows":[[true,"x","N","G",1,2,3,"D","C"]],"columns":)"
                      R"(["published","later","name","guid","created","modified","eventDate",)"
                      R"("description","createdBy"]}})"));
        const ProjectRecord &record = *projects->item(1);
        QCOMPARE(record.guid, QStringLiteral("G"));
        QCOMPARE(record.name, QStringLiteral("N"));
        QCOMPARE(record.description, QStringLiteral("D"));
        QCOMPARE(record.createdBy, QStringLiteral("C"));
        QCOMPARE(record.created.toMSecsSinceEpoch(), 1);
        QCOMPARE(record.eventDate.toMSecsSinceEpoch(), 3);
        QVERIFY(record.published);
    }

    void textsArriveCodeUnitForCodeUnit_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("text");
        QTest::newRow("long") << QByteArray(10000, 'n') << QString(10000, QLatin1Char('n'));
        QString manyEmoji;
        QByteArray manyEmojiBytes;
        for (int i = 0; i < 5000; ++i) {
            manyEmoji += QStringLiteral("😀");
            manyEmojiBytes += "😀";
        }
        QTest::newRow("10,000 units of emoji") << manyEmojiBytes << manyEmoji;
        QTest::newRow("escaped emoji") << QByteArray(R"(\ud83d\ude00)") << QStringLiteral("😀");
        QTest::newRow("CR LF") << QByteArray(R"(a\r\nb\rc\nd)") << QStringLiteral("a\r\nb\rc\nd");
        QTest::newRow("separators")
            << QByteArray(R"(\u2028\u00a0\ufeff\t)") << QString::fromUtf16(u"\u2028\u00a0\ufeff\t");
        QTest::newRow("quotes") << QByteArray(R"(\"<&>\\\/)") << QStringLiteral("\"<&>\\/");
        QTest::newRow("right to left") << QByteArray("שלום") << QStringLiteral("שלום");
        QTest::newRow("combining") << QByteArray(R"(e\u0301)") << QString::fromUtf16(u"e\u0301");
        const char16_t high[] = {u'a', 0xd800, u'b', 0};
        QTest::newRow("lone high surrogate")
            << QByteArray(R"(a\ud800b)") << QString::fromUtf16(high);
        const char16_t low[] = {u'a', 0xdc00, u'b', 0};
        QTest::newRow("lone low surrogate") << QByteArray(R"(a\udc00b)") << QString::fromUtf16(low);
        QTest::newRow("nul") << QByteArray(R"(a\u0000b)")
                             << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    }

    void textsArriveCodeUnitForCodeUnit()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, text);
        const ProjectCollectionPtr projects =
            projectsOf(projectsAnswer("[[\"g\",\"" + json + "\",\"\",null,null,\"\",null,false]]"));
        QCOMPARE(projects->item(1)->name, text);
    }

    void askingWhetherAProjectIsPublished_data()
    {
        QTest::addColumn<QString>("guid");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<bool>("published");
        QTest::newRow("yes") << QStringLiteral("g-1") << QByteArray("/v1/projects/g-1/published")
                             << true;
        QTest::newRow("no") << QStringLiteral("g-1") << QByteArray("/v1/projects/g-1/published")
                            << false;
        QTest::newRow("escaped") << QStringLiteral("a/b?c#d %ü")
                                 << QByteArray("/v1/projects/a%2Fb%3Fc%23d%20%25%C3%BC/published")
                                 << true;
    }

    void askingWhetherAProjectIsPublished()
    {
        QFETCH(QString, guid);
        QFETCH(QByteArray, target);
        QFETCH(bool, published);
        SignedIn there(
            respond(http(200, published ? R"({"published":true})" : R"({"published":false})")));
        bool answer = !published;
        there.client.isProjectPublished(guid, QString(), answer);
        QCOMPARE(answer, published);
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target, target);
    }

    void aProjectWithoutGuidIsNotAskedFor()
    {
        SignedIn there(respond(http(200, R"({"published":true})")));
        bool published = true;
        const auto error =
            errorOf([&] { there.client.isProjectPublished(QString(), QString(), published); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::NotFound);
        QVERIFY(!published);
        QCOMPARE(there.calls(), 0);
    }

    void projectTypesComeInTheirOrder()
    {
        SignedIn there(respond(http(
            200, R"({"types":[{"typeID":"event","name":"Ereignis"},{"name":"n","typeID":"t"}]})")));
        const QList<ProjectType> types = there.client.projectTypes();
        QCOMPARE(there.lastRequest().target, "/v1/project-types");
        QCOMPARE(types.size(), 2);
        QCOMPARE(types[0].typeID, QStringLiteral("event"));
        QCOMPARE(types[0].name, QStringLiteral("Ereignis"));
        QCOMPARE(types[1].typeID, QStringLiteral("t"));
    }

    void creatingAProjectSendsIt()
    {
        SignedIn there(respond(createdAnswer(201)));
        NewProject project;
        project.guid = QStringLiteral("0f0e");
        project.name = QStringLiteral("Launch");
        project.typeID = QStringLiteral("event");
        project.description = QStringLiteral("d\r\n");
        project.eventDate = QDateTime(QDate(2007, 1, 9), QTime(14, 45, 4));
        const ProjectRecordPtr record = there.client.createProject(project);
        QCOMPARE(there.lastRequest().method, "POST");
        QCOMPARE(there.lastRequest().target, "/v1/projects");
        QCOMPARE(jsonOf(there.lastRequest().body),
                 (QJsonObject{{QStringLiteral("guid"), QStringLiteral("0f0e")},
                              {QStringLiteral("name"), QStringLiteral("Launch")},
                              {QStringLiteral("typeID"), QStringLiteral("event")},
                              {QStringLiteral("description"), QStringLiteral("d\r\n")},
                              {QStringLiteral("eventDate"), qint64(1168371904000)}}));
        QCOMPARE(record->guid, QStringLiteral("g"));
        QCOMPARE(record->name, QStringLiteral("Launch"));
        QVERIFY(record->hasCreated);
        QVERIFY(!record->hasModified);
        QVERIFY(!record->published);
    }

    void aProjectMadeBeforeIsReturned()
    {
        SignedIn there(respond(createdAnswer(200)));
        QCOMPARE(there.client.createProject({})->guid, QStringLiteral("g"));
    }

    void aProjectWithoutGuidGetsOne()
    {
        SignedIn there(respond(createdAnswer(201)));
        there.client.createProject({});
        const QJsonObject first = jsonOf(there.lastRequest().body);
        there.client.createProject({});
        const QJsonObject second = jsonOf(there.lastRequest().body);
        const QString guid = first.value(QLatin1String("guid")).toString();
        QCOMPARE(QUuid(guid).toString(QUuid::WithoutBraces), guid);
        QVERIFY(!QUuid(guid).isNull());
        QVERIFY(guid != second.value(QLatin1String("guid")).toString());
        QVERIFY(first.value(QLatin1String("eventDate")).isNull());
    }

    void anEventDateThatIsNoneIsNotSent()
    {
        SignedIn there(respond(createdAnswer(201)));
        NewProject project;
        project.eventDate = QDateTime();
        const auto error = errorOf([&] { there.client.createProject(project); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QCOMPARE(there.calls(), 0);
    }

    void callsShareAConnection()
    {
        SignedIn there(respond(http(200, R"({"types":[]})")));
        for (int i = 0; i < 10; ++i)
            there.client.projectTypes();
        QCOMPARE(there.calls(), 10);
        QCOMPARE(there.server.connections(), 1);
    }

    void servesTwoClientsAtOnce()
    {
        SignedIn there(respond(http(200, R"({"types":[]})")));
        HttpServiceClient other;
        QVERIFY(signIn(other, there.server.address()));
        other.projectTypes();
        there.client.projectTypes();
        other.signOut();
        QVERIFY(there.client.isSignedIn());
    }
};

ZEL_TEST_MAIN(TestHttpServiceClient)
#include "tst_httpserviceclient.moc"
