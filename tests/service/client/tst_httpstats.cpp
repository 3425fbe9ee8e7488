// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QString deployment = QStringLiteral("d-1");
const QDateTime start = QDateTime::fromMSecsSinceEpoch(1'000'000'000'500);
const QDateTime end = QDateTime::fromMSecsSinceEpoch(-1); // the last millisecond of 1969

const QByteArray people =
    R"("people":{"columns":["user","firstName","lastName","email","registered"],)"
    R"("rows":[["u","F","L","e",null],["v","","","",7]]})";

QByteArray viewsWith(const QByteArray &rows)
{
    return "{" + people +
           R"(,"pageViews":{"columns":["at","person","closed","timeSpent","later"],)" +
           R"("rows":[)" + rows + "]}}";
}

const QByteArray survey =
    R"({"users":["u1"],"answers":{"columns":["question","choice","answer","answerTxt"],)"
    R"("rows":[["q","c","1:3","t"]]},"responses":{"columns":["user","answer","at"],"rows":[[0,0,5]]}})";

QByteArray surveyWith(const QByteArray &from, const QByteArray &to)
{
    QByteArray text = survey;
    if (!text.contains(from))
        throw std::logic_error("the answer has nothing to replace");
    return text.replace(from, to);
}

} // namespace

/// What the client asks for and how it reads the answers; a scripted server plays the service.
class TestHttpStats : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void asksForWholeSecondsInUtc()
    {
        SignedIn there(respond(http(200, R"({"count":3})")));
        QCOMPARE(there.client.GetUniqueParticipantCount(QStringLiteral("a/b c"), start, end), 3);
        QCOMPARE(there.lastRequest().method, "GET");
        QCOMPARE(there.lastRequest().target,
                 "/v1/deployments/a%2Fb%20c/participants/count?from=1000000000000&to=-1");
        there.client.GetPageHitCountByAttribute(deployment, end, start, QStringLiteral("A&B"),
                                                QStringLiteral("="), QStringLiteral("1+1=\u00fc"));
        QCOMPARE(there.lastRequest().target,
                 "/v1/deployments/d-1/page-views/count?attribute=A%26B&op=%3D&value=1%2B1%3D%C3%BC&"
                 "from=-1000&to=1000000000999");
        there.client.GetRegisteredNonParticipantCount(deployment, start, start);
        QCOMPARE(there.lastRequest().target,
                 "/v1/deployments/d-1/registrants/count?participated=false&from=1000000000000&"
                 "to=1000000000999");
        there.client.GetRegistrantCount(deployment);
        QCOMPARE(there.lastRequest().target, "/v1/deployments/d-1/registrants/count");
    }

    void leavesTheEndOutWhereThereIsNone()
    {
        SignedIn there(respond(http(200, R"({"questions":null})")));
        QVERIFY(!there.client.GetQuestions(deployment, start, QDateTime()));
        QCOMPARE(there.lastRequest().target, "/v1/deployments/d-1/questions?from=1000000000000");
        there.client.GetQuestions(deployment, start, start);
        QCOMPARE(there.lastRequest().target,
                 "/v1/deployments/d-1/questions?from=1000000000000&to=1000000000999");
    }

    void nothingAndAnEmptyListAreTwoThings()
    {
        SignedIn none(respond(http(200, R"({"participants":null,"registrants":null,"polls":null,)"
                                        R"("pageViews":null,"responses":null,"surveys":null})")));
        QVERIFY(!none.client.GetParticipants(deployment, start, end));
        QVERIFY(!none.client.GetRegistrants(deployment, start, end));
        QVERIFY(!none.client.GetPageViews(deployment, start, end));
        QVERIFY(!none.client.GetPolls(deployment));
        QVERIFY(!none.client.GetPollResponses(deployment).has_value());
        QVERIFY(!none.client.GetSurveys(deployment));
        QVERIFY(!none.client.GetSurveyResponses(deployment, QStringLiteral("s")).has_value());
        SignedIn empty(respond(http(200, viewsWith(QByteArray()))));
        QCOMPARE(empty.client.GetPageViews(deployment, start, end)->count(), 0);
    }

    void readsViewsInAnyOrderOfColumns()
    {
        SignedIn there(
            respond(http(200, viewsWith("[5,1,true,9,0],[6,1,false,0,0],[7,0,true,1,0]"))));
        const auto views = there.client.GetPageViews(deployment, start, end);
        QCOMPARE(views->count(), 3);
        QCOMPARE(views->item(1)->User->UserID, QStringLiteral("v"));
        QCOMPARE(views->item(1)->User, views->item(2)->User); // one person, one object
        QCOMPARE(views->item(1)->ViewDate.toMSecsSinceEpoch(), 5);
        QCOMPARE(views->item(1)->TimeSpent, 9);
        QVERIFY(views->item(1)->Closed && !views->item(2)->Closed);
        QVERIFY(!views->item(3)->User->DateRegistered.isValid());
    }

    void aNumberWithoutRoomIsAnOverflow_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("fits");
        QTest::newRow("most") << QByteArray(R"({"count":32767})") << true;
        QTest::newRow("one more") << QByteArray(R"({"count":32768})") << false;
        QTest::newRow("ten million") << QByteArray(R"({"count":10000000})") << false;
        QTest::newRow("64 bits") << QByteArray(R"({"count":9223372036854775807})") << false;
    }

    void aNumberWithoutRoomIsAnOverflow()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, fits);
        SignedIn there(respond(http(200, body)));
        int number = 0;
        QString words;
        try {
            there.client.GetRegistrantCount(deployment);
        } catch (const Zel::RuntimeError &error) {
            number = error.number();
            words = error.description();
        }
        QCOMPARE(number, fits ? 0 : 6);
        QCOMPARE(words, fits ? QString()
                             : QStringLiteral("There are more than 32,767 registrants."));
        QVERIFY(there.client.isSignedIn());
    }

    void anAnswerOfAnotherFormIsAnError_data()
    {
        QTest::addColumn<QByteArray>("body");
        const auto row = [](const char *name, const QByteArray &body) {
            QTest::newRow(name) << body;
        };
        row("nothing", QByteArray());
        row("no count and no views", "{}");
        row("words", R"({"count":"3","value":"3","pageViews":"x","responses":1,"users":1})");
        row("no people", R"({"pageViews":{"columns":[],"rows":[]},"count":1.5})");
        row("an unknown person", viewsWith("[5,2,true,9,0]"));
        row("a person below 0", viewsWith("[5,-1,true,9,0]"));
        row("no time", viewsWith("[null,1,true,9,0]"));
        row("a value less", viewsWith("[5,1,true,9]"));
        row("closed in numbers", viewsWith("[5,1,1,9,0]"));
    }

    void anAnswerOfAnotherFormIsAnError()
    {
        QFETCH(QByteArray, body);
        SignedIn there(respond(http(200, body)));
        const auto isBad = [&](const auto &call) {
            const auto error = errorOf(call);
            return error && error->kind() == ServiceError::Kind::BadAnswer;
        };
        QVERIFY(isBad([&] { there.client.GetPageViews(deployment, start, end); }));
        QVERIFY(isBad([&] { there.client.GetRegistrantCount(deployment); }));
        QVERIFY(isBad([&] {
            there.client.GetDeploymentStatistic(deployment, start, end, QStringLiteral("x"));
        }));
        QVERIFY(isBad([&] { there.client.GetSurveyResponses(deployment, QStringLiteral("s")); }));
        QVERIFY(isBad([&] { there.client.deployments(QStringLiteral("p")); }));
    }

    void readsResponsesByTheirTables()
    {
        SignedIn there(respond(http(200, surveyWith("[[0,0,5]]", "[[0,0,5],[0,0,6]]"))));
        const auto responses = there.client.GetSurveyResponses(deployment, QStringLiteral("s/t"));
        QCOMPARE(there.lastRequest().target, "/v1/deployments/d-1/surveys/s%2Ft/responses");
        QCOMPARE(responses->size(), 2);
        const SurveyResponse &one = responses->at(1);
        QCOMPARE(
            QStringList({one.userGuid, one.questionGuid, one.answerGuid, one.answer, one.answerTxt})
                .join(QLatin1Char('|')),
            QStringLiteral("u1|q|c|1:3|t"));
        QCOMPARE(one.answerDate.toMSecsSinceEpoch(), 6);
        for (const char *row :
             {"[[1,0,5]]", "[[-1,0,5]]", "[[0,1,5]]", "[[0,0,null]]", "[[0,0]]"}) {
            SignedIn bad(respond(http(200, surveyWith("[[0,0,5]]", row))));
            const auto error =
                errorOf([&] { bad.client.GetSurveyResponses(deployment, QStringLiteral("s")); });
            QVERIFY(error);
            QCOMPARE(error->kind(), ServiceError::Kind::BadAnswer);
        }
    }

    void sendsTextsAsTyped()
    {
        SignedIn there(respond(http(204, QByteArray())));
        const QString text = QStringLiteral("<b>\"&\"</b>\r\n");
        QCOMPARE(there.client.UpdateQuestion(QStringLiteral("q/1"), text, QStringLiteral("?"),
                                             QStringLiteral("x"), QStringLiteral("y")),
                 0);
        QCOMPARE(there.lastRequest().method, "PUT");
        QCOMPARE(there.lastRequest().target, "/v1/questions/q%2F1");
        const QJsonObject body = QJsonDocument::fromJson(there.lastRequest().body).object();
        QCOMPARE(body.keys(), (QStringList{QStringLiteral("answer"), QStringLiteral("question")}));
        QCOMPARE(body.value(QLatin1String("answer")).toString(), text);
        QCOMPARE(there.client.SetQuestionStatus(QStringLiteral("q"), QStringLiteral("STAGED")), 0);
        QCOMPARE(there.lastRequest().target, "/v1/questions/q/status");
        QCOMPARE(there.lastRequest().body, R"({"status":"STAGED"})");
    }

    void aQuestionThatIsGoneIsAnAnswer()
    {
        SignedIn gone(respond(problem(404, "not-found")));
        QCOMPARE(gone.client.SetQuestionStatus(QStringLiteral("q"), QStringLiteral("STAGED")), 1);
        QCOMPARE(gone.client.UpdateQuestion(QStringLiteral("q"), {}, {}, {}, {}), 1);
        QVERIFY(gone.client.deployments(QStringLiteral("p")).isEmpty());
        // A page of a network in between is none.
        SignedIn page(respond(http(404, "<html/>", "text/html")));
        QVERIFY(errorOf(
            [&] { page.client.SetQuestionStatus(QStringLiteral("q"), QStringLiteral("STAGED")); }));
        QVERIFY(errorOf([&] { page.client.deployments(QStringLiteral("p")); }));
        SignedIn ok(respond(http(200, "{}")));
        QVERIFY(errorOf(
            [&] { ok.client.SetQuestionStatus(QStringLiteral("q"), QStringLiteral("STAGED")); }));
    }
};

ZEL_TEST_MAIN(TestHttpStats)
#include "tst_httpstats.moc"
