// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/listcall.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QTest>
#include <QUuid>

#include <array>
#include <memory>

using namespace Zel;
using ZelTest::ApiFixture;
using ZelTest::HttpReply;

namespace {

constexpr qint64 brightwater = 1001;
const QString projectGuid = QStringLiteral("5c400ad7-64e6-55e6-9e0a-11462ba0bba6");
constexpr qint64 noon = 1'770'000'000'000;

/// An id whose text tells the number it was made from.
QString idOf(int number)
{
    return QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 16, QLatin1Char('0'));
}

QByteArray placeOf(const QByteArray &json)
{
    return json.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

/// A list of the interface and how to read it.
struct List
{
    const char *target; ///< with a query; "{d}" and "{s}" are a deployment and a survey
    const char *table;
};

constexpr std::array lists{
    List{"/v1/projects?type=webcast", "projects"},
    List{"/v1/projects/5c400ad7-64e6-55e6-9e0a-11462ba0bba6/deployments?", "deployments"},
    List{"/v1/deployments/{d}/participants?from=0&to=1900000000000", "participants"},
    List{"/v1/deployments/{d}/registrants?from=0&to=1900000000000", "registrants"},
    List{"/v1/deployments/{d}/page-views?from=0&to=1900000000000", "pageViews"},
    List{"/v1/deployments/{d}/questions?from=0&to=1900000000000", "questions"},
    List{"/v1/deployments/{d}/poll-responses?", "responses"},
    List{"/v1/deployments/{d}/surveys/{s}/responses?", "responses"},
    List{"/v1/themes?scope=full", "themes"},
};

} // namespace

/// Long lists page by page, over HTTP and both databases.
class PagesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    void init()
    {
        TestCase::init();
        QFETCH_GLOBAL(bool, postgres);
        std::unique_ptr<ApiFixture> &kept = m_kept[postgres ? 1 : 0];
        if (!kept) {
            kept = std::make_unique<ApiFixture>(m_databases.filled(postgres));
            m_api = kept.get();
            fill();
        }
        m_api = kept.get();
        m_token = m_api->token(QStringLiteral("maja"), brightwater);
    }

    void everyPageGoesOnWhereTheOneBeforeEnded_data();
    void everyPageGoesOnWhereTheOneBeforeEnded();
    void aPageThatHoldsTheWholeListIsTheLast();
    void refusesWhatIsNoPage_data();
    void refusesWhatIsNoPage();
    void refusesThePlaceInAnotherList();
    void viewsOfOneMomentAreNeitherLostNorRepeated();
    void aPageBringsThePeopleItNames();
    void questionsWithoutATimeComeFirstOverAllPages();
    void aPageOfLongRowsEndsEarly();
    void aSectionOfAFolderComesInPages();
    void aRowThatIsGoneIsStillAPlaceToGoOnFrom();

private:
    DeploymentRef ref()
    {
        return m_api->store().deployments.find(brightwater, m_deployment).value();
    }

    /// A deployment in which twelve people looked, registered, asked, voted and answered, and eight
    /// more without anybody.
    void fill()
    {
        Store &store = m_api->store();
        m_api->database().tx([&] {
            for (int i = 0; i < 9; ++i)
                store.deployments.put(
                    brightwater, {idOf(1000 + i), projectGuid, QStringLiteral("d"), noon + i / 2});
        });
        QList<PageView> views;
        QList<Registration> registrations;
        QList<AskedQuestion> questions;
        for (int i = 0; i < 12; ++i) {
            const QString user = QStringLiteral("user %1").arg(i);
            const auto id = [i](int kind) {
                return QUuid::fromString(idOf(100 * kind + 50 - i)).toRfc4122();
            };
            views.append({id(1), user, noon + i / 3, 10, true, {}, {}, {}});
            views.append({id(2), user, noon + 5 * hourMs, 10, false, {}, {}, {}});
            registrations.append({id(3), user, user, {}, {}, noon - i / 2});
            AskedQuestion question{idOf(400 + 37 * i % 100),    user, user,        noon + i / 4,
                                   QStringLiteral("SUBMITTED"), {},   std::nullopt};
            if (i % 3 == 0)
                question.at = std::nullopt;
            questions << question;
        }
        store.audience.takeViews(ref(), views);
        store.audience.takeRegistrations(ref(), registrations);
        store.questions.take(ref(), questions);
        takeResults();
    }

    void takeResults()
    {
        Store &store = m_api->store();
        const QString poll = idOf(500);
        const QString survey = m_survey;
        m_api->database().tx([&] {
            store.polls.define(ref(), {{poll, QStringLiteral("p"), false, {{idOf(501), {}, 0}}}});
            store.surveys.define(
                ref(), {{survey,
                         QStringLiteral("s"),
                         {{idOf(601), {}, false, 1, {{idOf(602), {}, false, 1, 1, 0}}}}}});
        });
        for (int i = 0; i < 12; ++i) {
            const QString user = QStringLiteral("user %1").arg(i);
            const QByteArray id = QUuid::createUuid().toRfc4122();
            QCOMPARE(store.polls.take(ref(), {{id, user, poll, idOf(501), noon}}).added, 1);
            QCOMPARE(
                store.surveys.take(ref(), {{id, user, survey, idOf(601), {idOf(602)}, noon + i}})
                    .added,
                1);
            m_api->advance(i / 4); // some arrive at the same moment
        }
    }

    QByteArray targetOf(const List &list) const
    {
        return QByteArray(list.target)
            .replace("{d}", m_deployment.toLatin1())
            .replace("{s}", m_survey.toLatin1());
    }

    QJsonObject get(const QByteArray &target)
    {
        const HttpReply reply = m_api->call("GET", target, m_token);
        if (reply.status != 200)
            QTest::qFail((target + ' ' + reply.body).constData(), __FILE__, __LINE__);
        return reply.json();
    }

    static QJsonArray rowsOf(const QJsonObject &answer, const char *table)
    {
        return answer.value(QLatin1String(table)).toObject().value(QLatin1String("rows")).toArray();
    }

    /// The rows of all pages, with what their positions stand for.
    QJsonArray allRows(const QByteArray &target, const char *table, int limit,
                       QList<qsizetype> *sizes = nullptr)
    {
        QJsonArray all;
        QByteArray place;
        do {
            QByteArray page = target + "&limit=" + QByteArray::number(limit);
            if (!place.isEmpty())
                page += "&after=" + place;
            const QJsonObject answer = get(page);
            const QJsonArray rows = rowsOf(answer, table);
            if (sizes)
                *sizes << rows.size();
            for (const QJsonValue &value : rows)
                all.append(spelledOut(answer, value.toArray()));
            place = answer.value(QLatin1String("next")).toString().toLatin1();
            if (all.size() > 1000) {
                QTest::qFail("the list does not end", __FILE__, __LINE__);
                return all;
            }
        } while (!place.isEmpty());
        return all;
    }

    /// A row with the person or respondent in place of a position among those of its page.
    static QJsonArray spelledOut(const QJsonObject &answer, QJsonArray row)
    {
        for (const char *table : {"people", "users"}) {
            const QJsonValue people = answer.value(QLatin1String(table));
            if (people.isUndefined())
                continue;
            const QJsonArray list = people.isArray() ? people.toArray() : rowsOf(answer, table);
            row[0] = list.at(row.at(0).toInt());
        }
        return row;
    }

    ZelTest::TestDatabases m_databases;
    std::array<std::unique_ptr<ApiFixture>, 2> m_kept;
    ApiFixture *m_api = nullptr;
    QString m_token;
    const QString m_deployment = idOf(1000);
    const QString m_survey = idOf(600);
};

void PagesTest::everyPageGoesOnWhereTheOneBeforeEnded_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("table");
    for (const List &list : lists)
        QTest::newRow(list.target) << targetOf(list) << QByteArray(list.table);
}

void PagesTest::everyPageGoesOnWhereTheOneBeforeEnded()
{
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, table);
    const QJsonObject whole = get(target);
    QVERIFY(whole.value(QLatin1String("next")).isNull());
    const QJsonArray expected = allRows(target, table.constData(), 50'000);
    QVERIFY(expected.size() >= 3);
    for (const int limit : {1, 2, 5, int(expected.size()) - 1}) {
        QList<qsizetype> sizes;
        QCOMPARE(allRows(target, table.constData(), limit, &sizes), expected);
        for (qsizetype page = 0; page + 1 < sizes.size(); ++page)
            QCOMPARE(sizes.at(page), limit);
        QCOMPARE(sizes.size(), (expected.size() + limit - 1) / limit);
    }
}

void PagesTest::aPageThatHoldsTheWholeListIsTheLast()
{
    const QByteArray target = "/v1/deployments/" + m_deployment.toLatin1() + "/questions?from=0";
    for (const int limit : {12, 13})
        QVERIFY(get(target + "&limit=" + QByteArray::number(limit))
                    .value(QLatin1String("next"))
                    .isNull());
    QVERIFY(get(target + "&limit=11").value(QLatin1String("next")).isString());
}

void PagesTest::refusesWhatIsNoPage_data()
{
    QTest::addColumn<QByteArray>("query");
    const auto row = [](const char *name, const QByteArray &query) {
        QTest::newRow(name) << query;
    };
    for (const char *limit :
         {"", "0", "-1", "50001", "1.5", "1e3", "0x10", "ten", "9223372036854775808", "1&limit=2"})
        row((QByteArray("limit ") + limit).constData(), QByteArray("limit=") + limit);
    row("empty", "after=");
    row("no base64", "after=%2A%2A");
    row("padded", "after=WyJ4Il0=");
    row("no JSON", "after=" + placeOf("[\"projects\","));
    row("no list", "after=" + placeOf("{\"projects\":1}"));
    row("an empty list", "after=" + placeOf("[]"));
    row("another word", "after=" + placeOf("[\"project\",\"a\",\"b\"]"));
    row("too few values", "after=" + placeOf("[\"projects\",\"a\"]"));
    row("the word alone", "after=" + placeOf("[\"projects\"]"));
    row("a number for a text", "after=" + placeOf("[\"projects\",1,\"b\"]"));
    row("null for a text", "after=" + placeOf("[\"projects\",null,\"b\"]"));
    row("U+0000", "after=" + placeOf("[\"projects\",\"\\u0000\",\"b\"]"));
    row("half a surrogate pair", "after=" + placeOf("[\"projects\",\"\\ud800\",\"b\"]"));
    row("endless", "after=" + placeOf("[\"projects\",\"" + QByteArray(8000, 'a') + "\",\"b\"]"));
    row("deep", "after=" + placeOf(QByteArray(2000, '[')));
}

void PagesTest::refusesWhatIsNoPage()
{
    QFETCH(QByteArray, query);
    const HttpReply reply = m_api->call("GET", "/v1/projects?type=webcast&" + query, m_token);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("invalid"));
}

void PagesTest::refusesThePlaceInAnotherList()
{
    const QByteArray views =
        "/v1/deployments/" + m_deployment.toLatin1() + "/page-views?from=0&to=1900000000000";
    const QByteArray votes = "/v1/deployments/" + m_deployment.toLatin1() + "/poll-responses?";
    const QByteArray place =
        get(views + "&limit=1").value(QLatin1String("next")).toString().toLatin1();
    QCOMPARE(m_api->call("GET", votes + "after=" + place, m_token).status, 400);
    for (const char *json : {"[\"page-views\",1,\"0G\"]", "[\"page-views\",1,\"AB\"]",
                             "[\"page-views\",\"1\",\"00\"]", "[\"page-views\",1.5,\"00\"]",
                             "[\"page-views\",1e30,\"00\"]", "[\"page-views\",null,\"00\"]"})
        QCOMPARE(m_api->call("GET", views + "&after=" + placeOf(json), m_token).status, 400);
}

void PagesTest::viewsOfOneMomentAreNeitherLostNorRepeated()
{
    // Twelve of the views are of the very same moment.
    const QByteArray target = "/v1/deployments/" + m_deployment.toLatin1() +
                              "/page-views?from=" + QByteArray::number(noon + 5 * hourMs) +
                              "&to=" + QByteArray::number(noon + 5 * hourMs);
    QSet<QString> people;
    const QJsonArray rows = allRows(target, "pageViews", 5);
    for (const QJsonValue &row : rows)
        people.insert(row.toArray().at(0).toArray().at(0).toString());
    QCOMPARE(rows.size(), 12);
    QCOMPARE(people.size(), 12);
}

void PagesTest::aPageBringsThePeopleItNames()
{
    const QJsonObject answer = get("/v1/deployments/" + m_deployment.toLatin1() +
                                   "/page-views?from=0&to=1900000000000&limit=3");
    QCOMPARE(rowsOf(answer, "people").size(), 3);
    QCOMPARE(rowsOf(answer, "pageViews").size(), 3);
}

void PagesTest::questionsWithoutATimeComeFirstOverAllPages()
{
    const QByteArray target = "/v1/deployments/" + m_deployment.toLatin1() +
                              "/questions?from=" + QByteArray::number(noon + 1) +
                              "&to=" + QByteArray::number(noon + 1);
    for (const int limit : {1, 3, 4, 5}) {
        const QJsonArray rows = allRows(target, "questions", limit);
        // Four have no time; of the four asked at that moment one does not know it.
        QCOMPARE(rows.size(), 4 + 3);
        for (int i = 0; i < rows.size(); ++i)
            QCOMPARE(rows.at(i).toArray().at(9).isNull(), i < 4);
    }
}

void PagesTest::aPageOfLongRowsEndsEarly()
{
    const QString guid = idOf(1008);
    const DeploymentRef deployment = m_api->store().deployments.find(brightwater, guid).value();
    QList<AskedQuestion> questions;
    const QString text(300'000, QLatin1Char('x'));
    constexpr int count = 40;
    for (int i = 0; i < count; ++i)
        questions << AskedQuestion{idOf(700 + i), QStringLiteral("u"),         text,
                                   noon,          QStringLiteral("SUBMITTED"), QString(),
                                   std::nullopt};
    m_api->store().questions.take(deployment, questions);
    const QByteArray target = "/v1/deployments/" + guid.toLatin1() + "/questions?from=0";
    const HttpReply first = m_api->call("GET", target, m_token);
    QVERIFY(first.body.size() < 2 * Service::pageBytes);
    QVERIFY(rowsOf(first.json(), "questions").size() < count);
    QList<qsizetype> sizes;
    QCOMPARE(allRows(target, "questions", 50'000, &sizes).size(), count);
    QVERIFY(sizes.size() > 2);
}

void PagesTest::aSectionOfAFolderComesInPages()
{
    const QByteArray folder = "/v1/asset-folders/0/assets?";
    QJsonArray all = allRows(folder, "assets", 50'000);
    QByteArray target = folder;
    if (all.size() < 4) {
        // The sample keeps its assets in folders of the root.
        target = "/v1/asset-folders/1/assets?";
        all = allRows(target, "assets", 50'000);
    }
    QVERIFY(all.size() >= 4);
    const auto guids = [](const QJsonArray &rows) {
        QStringList result;
        for (const QJsonValue &row : rows)
            result << row.toArray().at(0).toString();
        return result;
    };
    for (const int limit : {1, 2, 3}) {
        QCOMPARE(guids(allRows(target, "assets", limit)), guids(all));
        QCOMPARE(guids(allRows(target + "first=1", "assets", limit)), guids(all).mid(1));
        QCOMPARE(guids(allRows(target + "first=1&count=2", "assets", limit)), guids(all).mid(1, 2));
        QCOMPARE(guids(allRows(target + "count=3", "assets", limit)), guids(all).first(3));
        QVERIFY(allRows(target + "first=100000", "assets", limit).isEmpty());
    }
}

void PagesTest::aRowThatIsGoneIsStillAPlaceToGoOnFrom()
{
    const SqlText drop("DELETE FROM project WHERE account_id = $1 AND guid = $2");
    Project project{
        QString(), QStringLiteral("webcast"), QStringLiteral("!"), {}, {}, {}, {}, {}, {}, false,
        {}};
    const QStringList guids{idOf(1), idOf(2), idOf(3)};
    m_api->database().tx([&] {
        for (const QString &guid : guids) {
            project.guid = guid;
            project.createdById = m_api->store().users.find(QStringLiteral("maja"))->userId;
            m_api->store().projects.add(brightwater, project);
        }
    });
    const QByteArray target = "/v1/projects?type=webcast&limit=2";
    const QJsonObject first = get(target);
    QCOMPARE(rowsOf(first, "projects").at(1).toArray().at(0).toString(), guids.at(1));
    m_api->database().tx([&] { m_api->database().exec(drop, {brightwater, guids.at(1)}); });
    const QJsonObject second =
        get(target + "&after=" + first.value(QLatin1String("next")).toString().toLatin1());
    QCOMPARE(rowsOf(second, "projects").at(0).toArray().at(0).toString(), guids.at(2));
    m_api->database().tx([&] {
        for (const QString &guid : {guids.at(0), guids.at(2)})
            m_api->database().exec(drop, {brightwater, guid});
    });
}

ZEL_TEST_MAIN(PagesTest)
#include "tst_pages.moc"
