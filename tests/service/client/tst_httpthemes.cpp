// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QString full = QStringLiteral("getFullThemeList_Array");

QByteArray themesAnswer(const QByteArray &rows)
{
    return http(200, R"({"themes":{"columns":["guid","name","description","width","height",)"
                     R"("created","modified","wizardXml","previewUrl","templates"],"rows":)" +
                         rows + "}}");
}

/// A list as its only row has it, with one piece of it replaced.
QByteArray themeWith(const QByteArray &from, const QByteArray &to)
{
    QByteArray row = R"(["g","n","d",1,2,3,4,"<x/>","u",[["k","v",true]]])";
    if (!row.contains(from))
        throw std::logic_error("the row has nothing to replace");
    return themesAnswer("[" + row.replace(from, to) + "]");
}

ThemeCollectionPtr themesOf(HttpServiceClient &client, const QString &method = full)
{
    auto list = std::make_shared<const ThemeCollection>();
    client.callListMethod(QStringLiteral("Studio"), method, list);
    return list;
}

TemplateRecordPtr templateOf(HttpServiceClient &client, const QString &key, const QString &version)
{
    auto record = std::make_shared<const TemplateRecord>();
    client.getTemplate(key, version, record);
    return record;
}

} // namespace

class TestHttpThemes : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void asksForTheScopeThatTheMethodNames_data()
    {
        QTest::addColumn<QString>("scope");
        QTest::newRow("getAccountThemeList_Array") << QStringLiteral("account");
        QTest::newRow("getFullThemeList_Array") << QStringLiteral("full");
        QTest::newRow("getGlobalThemeList_Array") << QStringLiteral("global");
        QTest::newRow("getUserThemeList_Array") << QStringLiteral("user");
    }

    void asksForTheScopeThatTheMethodNames()
    {
        QFETCH(QString, scope);
        SignedIn there(respond(themesAnswer("[]")));
        themesOf(there.client, QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(there.calls(), 1);
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target, "/v1/themes?scope=" + scope.toLatin1());
        QCOMPARE(there.lastRequest().header("authorization"),
                 QByteArray("Bearer ") + SignedIn::token);
    }

    void anotherMethodIsAnErrorThatNamesIt()
    {
        SignedIn there(respond(themesAnswer("[]")));
        const auto error =
            errorOf([&] { themesOf(there.client, QStringLiteral("getThemes & %1")); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::Invalid);
        QVERIFY2(error->description().contains(QLatin1String("\"getThemes & %1\"")),
                 qPrintable(error->description()));
        QVERIFY(!error->isTransient());
        QCOMPARE(there.calls(), 0);
        QVERIFY(there.client.isSignedIn());
    }

    void themesComeWithEveryField()
    {
        SignedIn there(respond(themesAnswer(
            R"([["g-1","Łódź","d\r\n",2147483647,-2147483648,1168371904005,0,"<WIZARD a=\u0022b\u0022/>",)"
            R"("http:\/\/h/p?a=1",[["k","v",true],["","",false]]],)"
            R"(["g-2","","",0,0,null,null,"","",[]]])")));
        const auto themes = themesOf(there.client);
        QVERIFY(themes);
        QCOMPARE(themes->count(), 2);
        const ThemeRecord &first = *themes->item(1);
        QCOMPARE(first.guid, QStringLiteral("g-1"));
        QCOMPARE(first.name, QStringLiteral("Łódź"));
        QCOMPARE(first.description, QStringLiteral("d\r\n"));
        QCOMPARE(first.width, std::numeric_limits<qint32>::max());
        QCOMPARE(first.height, std::numeric_limits<qint32>::min());
        // The tests run in New York's time zone.
        QCOMPARE(first.created, QDateTime(QDate(2007, 1, 9), QTime(14, 45, 4, 5)));
        QCOMPARE(first.modified, QDateTime(QDate(1969, 12, 31), QTime(19, 0)));
        QCOMPARE(first.wizardXml, QStringLiteral("<WIZARD a=\"b\"/>"));
        QCOMPARE(first.previewUrl, QStringLiteral("http://h/p?a=1"));
        QCOMPARE(first.templates->count(), 2);
        QCOMPARE(first.templates->item(1)->templateKey, QStringLiteral("k"));
        QCOMPARE(first.templates->item(1)->templateVersionKey, QStringLiteral("v"));
        QVERIFY(first.templates->item(1)->required);
        QVERIFY(!first.templates->item(2)->required);
        const ThemeRecord &second = *themes->item(2);
        QVERIFY(second.created.isNull() && second.modified.isNull());
        QVERIFY(second.templates);
        QCOMPARE(second.templates->count(), 0);
    }

    void nothingAndAnEmptyListDiffer()
    {
        SignedIn nothing(respond(http(200, R"({"themes":null})")));
        QVERIFY(!themesOf(nothing.client));
        SignedIn none(respond(themesAnswer("[]")));
        QVERIFY(themesOf(none.client));
        QCOMPARE(themesOf(none.client)->count(), 0);
    }

    void answersThatAreNoneNameTheProblem_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("says");
        const auto row = [](const char *name, const QByteArray &answer, const char *says) {
            QTest::newRow(name) << answer << QString::fromUtf8(says);
        };
        row("no themes", http(200, "{}"), "\"themes\" is missing");
        row("column missing", http(200, R"({"themes":{"columns":["guid"],"rows":[]}})"),
            "column \"name\" is missing");
        row("guid null", themeWith("\"g\"", "null"), "row 1: \"guid\" is not a text");
        row("width a text", themeWith("1,2", "\"1\",2"), "\"width\" is not a 32-bit number");
        row("height too large", themeWith("1,2", "1,2147483648"),
            "\"height\" is not a 32-bit number");
        row("created a text", themeWith("3,4", "\"3\",4"), "\"created\" is neither a time");
        row("definition null", themeWith("\"<x/>\"", "null"), "\"wizardXml\" is not a text");
        row("preview null", themeWith("\"u\"", "null"), "\"previewUrl\" is not a text");
        row("templates null", themeWith("[[\"k\",\"v\",true]]", "null"),
            "\"templates\" is not a list");
        row("template no list", themeWith("[\"k\",\"v\",true]", "7"),
            "template 1: \"template\" is not a list");
        row("template short", themeWith("\"v\",true", "\"v\""),
            "row 1: template 1: 2 values instead of 3");
        row("key a number", themeWith("\"k\"", "7"), "\"templateKey\" is not a text");
        row("version null", themeWith("\"v\"", "null"), "\"templateVersionKey\" is not a text");
        row("required a number", themeWith("true", "1"), "\"required\" is neither true nor false");
        row("a web page", http(200, "<html>Log in here</html>", "text/html"),
            "text/html instead of JSON");
    }

    void answersThatAreNoneNameTheProblem()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, says);
        SignedIn there(respond(answer));
        const auto kept = std::make_shared<const ThemeCollection>();
        ThemeCollectionPtr list = kept;
        const auto error =
            errorOf([&] { there.client.callListMethod(QStringLiteral("Studio"), full, list); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
        QCOMPARE(list, kept);
    }

    void definitionsOfEightMebibytesComeWhole()
    {
        QString definition = QString::fromUtf8("<a>\"\\\n😀</a>").repeated(600'000);
        const QByteArray row =
            QByteArray(R"(["g","n","d",1,2,3,4,)") +
            QJsonDocument(QJsonArray{definition}).toJson(QJsonDocument::Compact).mid(1).chopped(1) +
            R"(,"",[]])";
        SignedIn there(respond(themesAnswer("[" + row + "," + row + "]")));
        const auto themes = themesOf(there.client);
        QCOMPARE(themes->count(), 2);
        QVERIFY(themes->item(2)->wizardXml == definition);
    }

    void keysGoOutEscaped()
    {
        SignedIn there(respond(http(200, R"({"template":null})")));
        QVERIFY(!templateOf(there.client, QStringLiteral("a&b=c+d %2B#"), QStringLiteral("ü?/")));
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target,
                 "/v1/templates?key=a%26b%3Dc%2Bd%20%252B%23&version=%C3%BC%3F%2F");
        QVERIFY(!templateOf(there.client, QString(), QString()));
        QCOMPARE(there.lastRequest().target, "/v1/templates?key=&version=");
    }

    void templatesComeWithEveryField()
    {
        SignedIn there(
            respond(http(200, R"({"template":{"name":"N\n","description":"","later":1}})")));
        const auto record = templateOf(there.client, QStringLiteral("k"), QStringLiteral("v"));
        QVERIFY(record);
        QCOMPARE(record->name, QStringLiteral("N\n"));
        QCOMPARE(record->description, QString());
    }

    void templatesThatAreNoneNameTheProblem_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("says");
        const auto row = [](const char *json, const char *says) {
            QTest::newRow(json) << QByteArray(json) << QString::fromLatin1(says);
        };
        row("{}", "\"template\" is missing");
        row(R"({"template":[]})", "\"template\" is not an object");
        row(R"({"template":{"name":"n"}})", "\"description\" is missing");
        row(R"({"template":{"name":null,"description":""}})", "\"name\" is not a text");
    }

    void templatesThatAreNoneNameTheProblem()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, says);
        SignedIn there(respond(http(200, json)));
        const auto error =
            errorOf([&] { templateOf(there.client, QStringLiteral("k"), QStringLiteral("v")); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
    }

    void refusalsBecomeErrors_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("kind");
        using Kind = ServiceError::Kind;
        QTest::newRow("signed out") << problem(401, "signed-out") << int(Kind::SignedOut);
        QTest::newRow("no account") << problem(403, "no-account") << int(Kind::Refused);
        QTest::newRow("invalid") << problem(400, "invalid") << int(Kind::Invalid);
        QTest::newRow("unavailable") << problem(503, "unavailable") << int(Kind::Unavailable);
    }

    void refusalsBecomeErrors()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, kind);
        SignedIn lists(respond(answer));
        const auto list = errorOf([&] { themesOf(lists.client); });
        QVERIFY(list);
        QCOMPARE(int(list->kind()), kind);
        SignedIn finds(respond(answer));
        const auto found =
            errorOf([&] { templateOf(finds.client, QStringLiteral("k"), QStringLiteral("v")); });
        QVERIFY(found);
        QCOMPARE(int(found->kind()), kind);
    }

    void aListCutInTheMiddleIsAnError()
    {
        const QByteArray answer = themesAnswer(R"([["g","n","d",1,2,3,4,"","",[]]])");
        SignedIn there([answer](const SeenRequest &, Wire &wire) {
            wire.write(answer.chopped(20));
            wire.reset();
        });
        const auto error = errorOf([&] { themesOf(there.client); });
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
        QVERIFY(there.client.isSignedIn());
    }

    void theThemeGoesWithTheNewProject()
    {
        SignedIn there(respond(http(
            201, R"({"project":{"guid":"g","name":"n","description":"","created":1,)"
                 R"("modified":null,"createdBy":"Ada","eventDate":null,"published":false}})")));
        const auto sent = [&] {
            return QJsonDocument::fromJson(there.lastRequest().body).object();
        };
        NewProject project;
        there.client.createProject(project);
        QVERIFY(!sent().contains(QLatin1String("themeGuid")));
        project.themeGuid = QStringLiteral("t-1");
        there.client.createProject(project);
        QCOMPARE(sent().value(QLatin1String("themeGuid")).toString(), QStringLiteral("t-1"));
    }
};

ZEL_TEST_MAIN(TestHttpThemes)
#include "tst_httpthemes.moc"
