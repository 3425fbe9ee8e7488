// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QUuid>

#include <array>
#include <atomic>
#include <memory>
#include <thread>

using namespace Zel;
using ZelTest::ApiFixture;
using ZelTest::HttpReply;

namespace {

constexpr qint64 brightwater = 1001;
const QString project = QStringLiteral("5c400ad7-64e6-55e6-9e0a-11462ba0bba6");

QString newId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QJsonObject view(const QString &id, const QString &user, qint64 at, qint64 timeSpent,
                 bool closed = false)
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("user"), user},
            {QStringLiteral("at"), at},
            {QStringLiteral("timeSpent"), timeSpent},
            {QStringLiteral("closed"), closed},
            {QStringLiteral("browserType"), QStringLiteral("IE")},
            {QStringLiteral("jsVersion"), QStringLiteral("1.3")},
            {QStringLiteral("screenDepth"), QStringLiteral("24")}};
}

QJsonObject vote(const QString &user, const QString &poll, const QString &answer,
                 const QString &id = newId())
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("user"), user},
            {QStringLiteral("poll"), poll},
            {QStringLiteral("answer"), answer},
            {QStringLiteral("at"), 5}};
}

QByteArray body(const QJsonArray &rows)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("rows"), rows}}).toJson();
}

/// "added changed known", then the refused rows with what is said of them.
QString outcome(const HttpReply &reply)
{
    if (reply.status != 200)
        return QStringLiteral("%1 %2").arg(reply.status).arg(reply.code());
    const QJsonObject json = reply.json();
    QString text = QStringLiteral("%1 %2 %3")
                       .arg(json.value(QLatin1String("added")).toInteger())
                       .arg(json.value(QLatin1String("changed")).toInteger())
                       .arg(json.value(QLatin1String("known")).toInteger());
    const QJsonArray refused = json.value(QLatin1String("refused")).toArray();
    for (const QJsonValue &one : refused)
        text += QStringLiteral(" | %1: %2")
                    .arg(one[QLatin1String("row")].toInt())
                    .arg(one[QLatin1String("why")].toString());
    return text;
}

} // namespace

/// What players report, over HTTP and both databases.
class IntakeRoutesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanupTestCase();

    void readsNoBodyWithoutTheKey();
    void storesEachRowOnce();
    void aViewGoesOnUntilItIsClosed();
    void namesTheRowsItRefuses();
    void refusesBodiesOfAnotherForm();
    void registersAPersonOnce();
    void takesQuestionsAndWhatBecameOfThem();
    void aPersonHasOneVoteInAPollOfOne();
    void countsStayRightWithManyPosting();
    void aRespondentAnswersAQuestionOnce();

private:
    HttpReply post(const QByteArray &what, const QJsonArray &rows)
    {
        return send(what, body(rows), "Authorization: Deployment " + m_deployment.toUtf8());
    }

    HttpReply send(const QByteArray &what, const QByteArray &json, const QByteArray &header) const
    {
        return m_api->request("POST", "/v1/deployments/" + m_deployment.toUtf8() + '/' + what, json,
                              {header});
    }

    DeploymentRef ref()
    {
        return m_api->store().deployments.find(brightwater, m_deployment).value();
    }

    QString sums(const char *columns, const char *table);
    void verifyTallies();

    ZelTest::TestDatabases m_databases;
    std::array<std::unique_ptr<ApiFixture>, 2> m_fixtures;
    ApiFixture *m_api = nullptr;
    QString m_deployment; ///< new for each function; its key is its guid
};

void IntakeRoutesTest::initTestCase_data()
{
    QTest::addColumn<int>("database");
    QTest::newRow("sqlite") << 0;
    QTest::newRow("postgres") << 1;
}

void IntakeRoutesTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(int, database);
    auto &fixture = m_fixtures.at(static_cast<std::size_t>(database));
    if (!fixture)
        fixture = std::make_unique<ApiFixture>(m_databases.filled(database == 1));
    m_api = fixture.get();
    m_deployment = newId();
    m_api->database().tx([&] {
        m_api->store().deployments.put(brightwater,
                                       {m_deployment, project, QStringLiteral("A deployment"), 0});
        m_api->store().deployments.setKey(brightwater, m_deployment, m_deployment);
    });
}

void IntakeRoutesTest::cleanupTestCase()
{
    for (auto &fixture : m_fixtures)
        fixture.reset();
}

QString IntakeRoutesTest::sums(const char *columns, const char *table)
{
    return m_api->database()
        .runNative(QStringLiteral("SELECT %1 FROM %2 WHERE account_id = 1001 AND dep_no = %3")
                       .arg(QLatin1String(columns), QLatin1String(table))
                       .arg(ref().number))
        .toString();
}

void IntakeRoutesTest::verifyTallies()
{
    QCOMPARE(sums("SUM(hits)", "view_tally"), sums("COUNT(*)", "page_view"));
    QCOMPARE(sums("SUM(seconds)", "view_tally"), sums("SUM(time_spent)", "page_view"));
    QCOMPARE(sums("MIN(first_at)", "view_tally"), sums("MIN(view_at)", "page_view"));
    QCOMPARE(sums("MAX(last_at)", "view_tally"), sums("MAX(view_at)", "page_view"));
}

void IntakeRoutesTest::readsNoBodyWithoutTheKey()
{
    const QByteArray rows = body({view(newId(), QStringLiteral("u"), 1, 2)});
    for (const QByteArray &header :
         {QByteArray("X-Nothing: 1"), QByteArray("Authorization: Deployment "),
          QByteArray("Authorization: Deployment sample-key-captions-live"),
          "Authorization: Bearer " + m_deployment.toUtf8(),
          "Authorization: Bearer " + m_api->token(QStringLiteral("maja"), brightwater).toUtf8(),
          "Authorization: Deployment " + m_deployment.toUtf8() + 'x'})
        QCOMPARE(outcome(send("page-views", rows, header)), QStringLiteral("401 bad-key"));
    // Only the head: the answer must not wait for a body that is allowed to be this long.
    const HttpReply reply = send("page-views", QByteArray(3 * 1024 * 1024, 'x'), "X-Nothing: 1");
    QCOMPARE(reply.status, 401);
    QCOMPARE(sums("COUNT(*)", "page_view"), QStringLiteral("0"));
    QCOMPARE(
        outcome(send("page-views", rows, "authorization: deployment " + m_deployment.toUtf8())),
        QStringLiteral("1 0 0"));
}

void IntakeRoutesTest::storesEachRowOnce()
{
    const QString first = newId();
    QJsonArray rows{view(first, QStringLiteral("a"), 1000, 5),
                    view(newId(), QStringLiteral("b"), 3'600'000, 7),
                    view(first, QStringLiteral("a"), 1000, 5)};
    QCOMPARE(outcome(post("page-views", rows)), QStringLiteral("2 0 1"));
    rows.append(view(newId(), QStringLiteral("a"), -1, 9));
    QCOMPARE(outcome(post("page-views", rows)), QStringLiteral("1 0 3"));
    QCOMPARE(sums("COUNT(*)", "page_view"), QStringLiteral("3"));
    QCOMPARE(sums("COUNT(*)", "view_tally"), QStringLiteral("3"));
    QCOMPARE(outcome(post("page-views", {})), QStringLiteral("0 0 0"));
    verifyTallies();
    QJsonArray many;
    for (int i = 0; i < 5000; ++i)
        many.append(view(newId(), QStringLiteral("user %1").arg(i % 77), i * 100'000LL, i % 90));
    QCOMPARE(outcome(post("page-views", many)), QStringLiteral("5000 0 0"));
    verifyTallies();
    many.append(many.first());
    QCOMPARE(outcome(post("page-views", many)), QStringLiteral("413 too-large"));
}

void IntakeRoutesTest::aViewGoesOnUntilItIsClosed()
{
    const QString id = newId();
    const QString user = QStringLiteral("u");
    const auto report = [&](qint64 seconds, bool closed) {
        const QString result = outcome(post("page-views", {view(id, user, 1000, seconds, closed)}));
        verifyTallies();
        return result;
    };
    QCOMPARE(report(5, false), QStringLiteral("1 0 0"));
    QCOMPARE(report(20, false), QStringLiteral("0 1 0"));
    QCOMPARE(report(10, false), QStringLiteral("0 0 1")); // overtaken on its way
    QCOMPARE(report(30, true), QStringLiteral("0 1 0"));
    QCOMPARE(report(30, true), QStringLiteral("0 0 1"));
    QCOMPARE(report(20, false), QStringLiteral("0 0 1"));
    QCOMPARE(report(40, true), QStringLiteral("0 0 0 | 0: the page was closed before."));
    QCOMPARE(sums("SUM(time_spent)", "page_view"), QStringLiteral("30"));
    QCOMPARE(outcome(post("page-views", {view(id, QStringLiteral("v"), 1000, 30, true)})),
             QStringLiteral("0 0 0 | 0: another row has this id."));
    // Within one call, too.
    const QString other = newId();
    QCOMPARE(outcome(post("page-views", {view(other, user, 5, 1), view(other, user, 5, 3),
                                         view(other, user, 5, 9, true)})),
             QStringLiteral("1 2 0"));
    verifyTallies();
}

void IntakeRoutesTest::namesTheRowsItRefuses()
{
    const auto with = [](const char *name, const QJsonValue &value) {
        QJsonObject row = view(newId(), QStringLiteral("u"), 1, 2);
        row.insert(QLatin1String(name), value);
        return row;
    };
    QJsonObject without = view(newId(), QStringLiteral("u"), 1, 2);
    without.remove(QStringLiteral("id"));
    const QJsonArray rows{with("user", QStringLiteral("good")),
                          with("timeSpent", -1),
                          with("timeSpent", 2147483648.0),
                          with("user", QString()),
                          with("user", QString(QChar(0))),
                          with("at", QStringLiteral("yesterday")),
                          with("at", 1.5),
                          with("at", QJsonValue::Null),
                          with("closed", 1),
                          with("browserType", QString(65, QLatin1Char('x'))),
                          with("id", QStringLiteral("17")),
                          with("account", 1001),
                          without,
                          with("at", QStringLiteral("2026-05-07T15:00:00+02:00"))};
    const HttpReply reply = post("page-views", rows);
    const QString text = outcome(reply);
    QVERIFY2(text.startsWith(QLatin1String("2 0 0 | 1: \"timeSpent\" must be a whole number")),
             qPrintable(text));
    const QJsonArray refused = reply.json().value(QLatin1String("refused")).toArray();
    QCOMPARE(refused.size(), 12);
    for (int i = 0; i < 12; ++i) {
        QCOMPARE(refused.at(i)[QLatin1String("row")].toInt(), i + 1);
        QCOMPARE(refused.at(i)[QLatin1String("id")].toString(),
                 rows.at(i + 1)[QLatin1String("id")].toString());
        QVERIFY(!refused.at(i)[QLatin1String("why")].toString().isEmpty());
    }
    QCOMPARE(sums("COUNT(*)", "page_view"), QStringLiteral("2"));
    verifyTallies();
}

void IntakeRoutesTest::refusesBodiesOfAnotherForm()
{
    const QByteArray key = "Authorization: Deployment " + m_deployment.toUtf8();
    for (const char *what :
         {"page-views", "registrations", "questions", "question-states", "votes", "responses"}) {
        QCOMPARE(outcome(send(what, "{", key)), QStringLiteral("400 bad-json"));
        QCOMPARE(outcome(send(what, "[]", key)), QStringLiteral("400 invalid"));
        QCOMPARE(outcome(send(what, "{}", key)), QStringLiteral("400 invalid"));
        QCOMPARE(outcome(send(what, R"({"rows":[1]})", key)), QStringLiteral("400 invalid"));
        QCOMPARE(outcome(send(what, R"({"rows":[],"more":1})", key)),
                 QStringLiteral("400 invalid"));
        QCOMPARE(outcome(send(what, R"({"rows":[]})", key)), QStringLiteral("0 0 0"));
        QCOMPARE(outcome(send(what, R"({"rows":[{}]})", key)),
                 QStringLiteral("0 0 0 | 0: \"id\" is missing."));
    }
    const HttpReply reply =
        m_api->request("DELETE", "/v1/deployments/" + m_deployment.toUtf8() + "/page-views");
    QCOMPARE(reply.status, 405);
    QCOMPARE(reply.headers.value("allow"), QByteArray("GET, POST"));
}

void IntakeRoutesTest::registersAPersonOnce()
{
    const auto row = [](const QString &id, const char *user, const char *name) {
        return QJsonObject{{QStringLiteral("id"), id},
                           {QStringLiteral("user"), QLatin1String(user)},
                           {QStringLiteral("firstName"), QLatin1String(name)},
                           {QStringLiteral("lastName"), QString()},
                           {QStringLiteral("email"), QString()},
                           {QStringLiteral("at"), 77}};
    };
    const QString id = newId();
    QCOMPARE(outcome(post("registrations", {row(id, "a", "Ada"), row(newId(), "b", "Ben")})),
             QStringLiteral("2 0 0"));
    QCOMPARE(outcome(post("registrations",
                          {row(id, "a", "Ada"), row(newId(), "a", "Ada"), row(id, "c", "Cem")})),
             QStringLiteral("0 0 1 | 1: \"a\" has registered already. | 2: another row has this "
                            "id."));
    QCOMPARE(m_api->store().statistics.registrantCount(ref()), 2);
}

void IntakeRoutesTest::takesQuestionsAndWhatBecameOfThem()
{
    const QString id = newId();
    QJsonObject question{{QStringLiteral("id"), id},
                         {QStringLiteral("user"), QStringLiteral("u")},
                         {QStringLiteral("text"), QStringLiteral("<why & how>")},
                         {QStringLiteral("at"), 1000}};
    QCOMPARE(outcome(post("questions", {question, question})), QStringLiteral("1 0 1"));
    const auto stored = [&] { return m_api->store().questions.list(ref(), {0, 2000}).first(); };
    QCOMPARE(stored().questionText, QStringLiteral("&lt;why &amp; how&gt;"));
    QCOMPARE(stored().status, QStringLiteral("SUBMITTED"));
    QJsonObject answered = question;
    answered.insert(QStringLiteral("id"), newId());
    answered.insert(QStringLiteral("answer"), QStringLiteral("so"));
    QCOMPARE(outcome(post("questions", {answered})),
             QStringLiteral("0 0 0 | 0: \"answer\" is not known."));
    question.insert(QStringLiteral("user"), QStringLiteral("v"));
    QCOMPARE(outcome(post("questions", {question})),
             QStringLiteral("0 0 0 | 0: another row has this id."));

    const auto play = [&](const QString &guid, const char *status) {
        return outcome(post("question-states",
                            {QJsonObject{{QStringLiteral("id"), guid},
                                         {QStringLiteral("status"), QLatin1String(status)}}}));
    };
    QCOMPARE(play(id, "PUBLISH"), QStringLiteral("0 0 0 | 0: the question is not staged."));
    m_api->store().questions.setStatus(brightwater, id, QStringLiteral("STAGED"));
    QCOMPARE(play(id, "PUBLISH"), QStringLiteral("0 1 0"));
    QCOMPARE(play(id, "PUBLISH"), QStringLiteral("0 0 1"));
    QCOMPARE(play(id, "ANSWERED"), QStringLiteral("0 1 0"));
    QCOMPARE(stored().status, QStringLiteral("ANSWERED"));
    // A report that comes late does not move the question back.
    QCOMPARE(play(id, "PUBLISH"), QStringLiteral("0 0 1"));
    QCOMPARE(stored().status, QStringLiteral("ANSWERED"));
    QCOMPARE(play(id, "DELETE"),
             QStringLiteral("0 0 0 | 0: \"status\" must be PUBLISH or ANSWERED."));
    QCOMPARE(play(newId(), "PUBLISH"), QStringLiteral("0 0 0 | 0: there is no such question."));
    m_api->store().questions.setStatus(brightwater, id, QStringLiteral("RETRACT"));
    QCOMPARE(play(id, "PUBLISH"), QStringLiteral("0 0 0 | 0: the question is not staged."));
}

void IntakeRoutesTest::aPersonHasOneVoteInAPollOfOne()
{
    const Poll one{newId(),
                   QStringLiteral("One?"),
                   false,
                   {{newId(), QStringLiteral("a"), 0}, {newId(), QStringLiteral("b"), 0}}};
    const Poll many{newId(),
                    QStringLiteral("Many?"),
                    true,
                    {{newId(), QStringLiteral("a"), 0}, {newId(), QStringLiteral("b"), 0}}};
    m_api->database().tx([&] { return m_api->store().polls.define(ref(), {one, many}); });
    const QString id = newId();
    const QString user = QStringLiteral("u");
    QCOMPARE(outcome(post("votes", {vote(user, one.guid, one.choices.at(0).guid, id),
                                    vote(user, one.guid, one.choices.at(1).guid),
                                    vote(user, many.guid, many.choices.at(0).guid),
                                    vote(user, many.guid, QStringLiteral("2")),
                                    vote(user, many.guid, one.choices.at(0).guid),
                                    vote(user, newId(), one.choices.at(0).guid)})),
             QStringLiteral("3 0 0 | 1: \"u\" has voted already. | 4: there is no such poll or "
                            "answer. | 5: there is no such poll or answer."));
    QCOMPARE(outcome(post("votes", {vote(user, one.guid, one.choices.at(0).guid, id),
                                    vote(user, one.guid, one.choices.at(0).guid),
                                    vote(user, one.guid, QStringLiteral("2")),
                                    vote(user, many.guid, QStringLiteral("1"))})),
             QStringLiteral("0 0 1 | 1: \"u\" has voted already. | 2: \"u\" has voted already. | "
                            "3: \"u\" has voted already."));
    const QList<Poll> polls = m_api->store().polls.list(ref());
    QCOMPARE(polls.at(0).choices.at(0).votes, 1);
    QCOMPARE(polls.at(0).choices.at(1).votes, 0);
    QCOMPARE(polls.at(1).choices.at(0).votes, 1);
    QCOMPARE(polls.at(1).choices.at(1).votes, 1);
}

void IntakeRoutesTest::countsStayRightWithManyPosting()
{
    constexpr int connections = 32;
    constexpr int people = 12; // each votes over every connection, as a retrying player would
    const Poll poll{newId(),
                    QStringLiteral("One?"),
                    false,
                    {{newId(), QStringLiteral("a"), 0}, {newId(), QStringLiteral("b"), 0}}};
    SurveyItem item{newId(), QStringLiteral("Q"), true, 1, {}};
    for (int k = 1; k <= 3; ++k)
        item.choices << SurveyChoice{newId(), QString::number(k), false, k, 1, 0};
    const Survey survey{newId(), QStringLiteral("S"), {item}};
    m_api->database().tx([&] {
        return m_api->store().polls.define(ref(), {poll}) &&
               m_api->store().surveys.define(ref(), {survey});
    });
    std::array<std::atomic<int>, 2> votes{};
    std::array<std::atomic<int>, 3> chosen{};
    std::atomic<int> views = 0;
    std::atomic<int> failures = 0;
    const auto run = [&](int connection) {
        for (int person = 0; person < people; ++person) {
            // A person is shared by all connections, so that they contend for the same rows.
            const QString user = QStringLiteral("p%1").arg(person);
            const int choice = (connection + person) % 2;
            const HttpReply voted =
                post("votes", {vote(user, poll.guid, poll.choices.at(choice).guid)});
            const int part = (connection + person) % 3;
            const HttpReply replied = post(
                "responses",
                {QJsonObject{{QStringLiteral("id"), newId()},
                             {QStringLiteral("user"), user},
                             {QStringLiteral("survey"), survey.guid},
                             {QStringLiteral("question"), item.guid},
                             {QStringLiteral("answers"), QJsonArray{item.choices.at(part).guid}},
                             {QStringLiteral("at"), 9}}});
            const HttpReply viewed =
                post("page-views", {view(newId(), user, person * 1000, connection),
                                    view(newId(), user, 3'600'000 + connection, 1)});
            failures += (voted.status != 200) + (replied.status != 200) + (viewed.status != 200);
            votes.at(static_cast<std::size_t>(choice)) +=
                voted.json().value(QLatin1String("added")).toInt();
            chosen.at(static_cast<std::size_t>(part)) +=
                replied.json().value(QLatin1String("added")).toInt();
            views += viewed.json().value(QLatin1String("added")).toInt();
        }
    };
    std::vector<std::thread> threads;
    for (int connection = 0; connection < connections; ++connection)
        threads.emplace_back(run, connection);
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
    QCOMPARE(views.load(), connections * people * 2);
    QCOMPARE(votes[0] + votes[1], people);
    QCOMPARE(chosen[0] + chosen[1] + chosen[2], people);
    const Poll counted = m_api->store().polls.list(ref()).first();
    QCOMPARE(counted.choices.at(0).votes, votes[0].load());
    QCOMPARE(counted.choices.at(1).votes, votes[1].load());
    const SurveyItem answered = m_api->store().surveys.list(ref()).first().items.first();
    for (int k = 0; k < 3; ++k)
        QCOMPARE(answered.choices.at(k).respondents, chosen.at(static_cast<std::size_t>(k)).load());
    QCOMPARE(sums("COUNT(*)", "page_view"), QString::number(views.load()));
    QCOMPARE(sums("COUNT(*)", "view_tally"), QString::number(people * 2));
    verifyTallies();
}

void IntakeRoutesTest::aRespondentAnswersAQuestionOnce()
{
    SurveyItem item{newId(), QStringLiteral("Q"), false, 1, {}};
    SurveyItem several{newId(), QStringLiteral("R"), true, 2, {}};
    for (int k = 1; k <= 4; ++k) {
        item.choices << SurveyChoice{newId(), QString::number(k), false, k, 1, 0};
        several.choices << SurveyChoice{newId(),     QString::number(k), false,
                                        (k + 1) / 2, 2 - k % 2,          0};
    }
    const Survey survey{newId(), QStringLiteral("S"), {item, several}};
    m_api->database().tx([&] { return m_api->store().surveys.define(ref(), {survey}); });
    const auto reply = [&](const QString &id, const QString &question, const QJsonValue &answers) {
        return QJsonObject{{QStringLiteral("id"), id},
                           {QStringLiteral("user"), QStringLiteral("u")},
                           {QStringLiteral("survey"), survey.guid},
                           {QStringLiteral("question"), question},
                           {QStringLiteral("answers"), answers},
                           {QStringLiteral("at"), 5}};
    };
    const QString id = newId();
    const QString unknown =
        QStringLiteral("\"answers\" names none, an unknown or a repeated answer.");
    QCOMPARE(outcome(post("responses", {reply(newId(), item.guid, QStringLiteral("1:2")),
                                        reply(newId(), item.guid, QStringLiteral("9")),
                                        reply(newId(), newId(), QStringLiteral("1")),
                                        reply(newId(), item.guid, QJsonArray()),
                                        reply(id, item.guid, QStringLiteral("3")),
                                        reply(newId(), several.guid,
                                              QJsonArray{several.choices.at(3).guid,
                                                         several.choices.at(0).guid}),
                                        reply(newId(), item.guid, QStringLiteral("3"))})),
             QStringLiteral("2 0 0 | 0: the question takes one answer. | 1: %1 | 2: there is no "
                            "such survey or question. | 3: %1 | 6: \"u\" has answered this "
                            "question already.")
                 .arg(unknown));
    QCOMPARE(outcome(post("responses", {reply(id, item.guid, QStringLiteral("3")),
                                        reply(id, item.guid, QStringLiteral("4"))})),
             QStringLiteral("0 0 1 | 1: another row has this id."));
    const HttpReply list = m_api->call("GET",
                                       "/v1/deployments/" + m_deployment.toUtf8() + "/surveys/" +
                                           survey.guid.toUtf8() + "/responses",
                                       m_api->token(QStringLiteral("maja"), brightwater));
    const QJsonArray answers =
        list.json()[QLatin1String("answers")][QLatin1String("rows")].toArray();
    QCOMPARE(answers.size(), 2);
    QCOMPARE(answers.at(1).toArray().at(2).toString(), QStringLiteral("1:4"));
    QCOMPARE(answers.at(1).toArray().at(1).toString(), several.choices.at(0).guid);
}

ZEL_TEST_MAIN(IntakeRoutesTest)
#include "tst_intakeroutes.moc"
