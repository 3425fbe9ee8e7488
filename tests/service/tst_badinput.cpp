// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/repeatedfield.h"
#include "tests/service/apifixture.h"
#include "tests/service/goodcalls.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <array>
#include <memory>

using namespace Zel;
using namespace ZelTest;

namespace {

/// What stands in a body until raw JSON takes its place.
const QString hole = QStringLiteral("@hole@");

QByteArray filled(const QJsonObject &body, const QByteArray &json)
{
    QByteArray text = QJsonDocument(body).toJson(QJsonDocument::Compact);
    return text.replace('"' + hole.toLatin1() + '"', json);
}

/// JSON that a field with such a value does not take.
QByteArrayList wrongFor(const QString &name, const QJsonValue &good)
{
    const QByteArrayList texts{"\"a\\u0000b\"", "\"\\ud800\"", "\"\\udc00a\"", "\"\\ufffe\""};
    const QByteArrayList numbers{"9223372036854775808", "-9223372036854775809", "1e30", "1.5",
                                 "123456789012345678901234567890"};
    QByteArrayList wrong{"true", "[[]]", "{\"a\":1}"};
    if (name != QLatin1String("eventDate"))
        wrong << "null";
    if (good.isString())
        return wrong << "7" << numbers << texts;
    if (good.isDouble())
        return wrong << "\"7\"" << numbers;
    return wrong << "\"x\""
                 << "7"
                 << "{}";
}

/// The bodies that come from a good one by spoiling one place of it.
QByteArrayList spoilt(const QJsonObject &good)
{
    QByteArrayList bodies;
    for (auto field = good.begin(); field != good.end(); ++field) {
        QJsonObject body = good;
        body.insert(field.key(), hole);
        const QByteArrayList wrong = wrongFor(field.key(), field.value());
        for (const QByteArray &json : wrong)
            bodies << filled(body, json);
        body.remove(field.key());
        bodies << filled(body, {});
        const QByteArray once = QJsonDocument(good).toJson(QJsonDocument::Compact);
        QByteArray name = QJsonDocument(QJsonArray{field.key()}).toJson(QJsonDocument::Compact);
        name = name.sliced(1, name.size() - 2);
        bodies << '{' + name + ":0," + once.sliced(1); // twice, the good one last
        const QJsonArray list = field.value().toArray();
        if (!list.isEmpty() && list.first().isObject()) {
            const QByteArrayList inner = spoilt(list.first().toObject());
            for (const QByteArray &json : inner) {
                body.insert(field.key(), QJsonArray{hole});
                bodies << filled(body, json);
            }
        }
    }
    QJsonObject more = good;
    more.insert(QStringLiteral("noSuchField"), 1);
    return bodies << filled(more, {});
}

/// What is no JSON object at all, or is hardly one.
QByteArrayList noObjects()
{
    const QByteArray deep(20'000, '[');
    return {"",
            " ",
            "null",
            "7",
            "\"text\"",
            "[]",
            "[{}]",
            "{",
            "{}{}",
            "{\"a\":}",
            "{'a':1}",
            "\xff\xfe{\0}\0",
            "{\"a\":\"\xff\"}",
            "{\"a\":NaN}",
            deep,
            deep + QByteArray(20'000, ']'),
            QByteArray("{\"a\":").repeated(5000),
            QByteArray("\0\0\0\0", 4)};
}

/// What of the service's insides must not be in an answer.
const QByteArrayList inside{"SELECT", "INSERT", "UPDATE ", "DELETE FROM", "sqlite",   "SQLite",
                            "PG",     "QSql",   "QPSQL",   "constraint",  "std::",    ".cpp",
                            "/tmp",   "/home",  "/work",   "/usr",        "exception"};

} // namespace

/// Everything that a client can send wrongly, to every route of the table, over both databases: a
/// plain refusal, and nothing changed.
class BadInputTest : public TestCase
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
        std::unique_ptr<GoodCalls> &kept = m_kept[postgres ? 1 : 0];
        if (!kept)
            kept = std::make_unique<GoodCalls>(m_databases.filled(postgres));
        m_calls = kept.get();
        m_before = m_calls->checksum();
    }

    void cleanup()
    {
        if (m_calls && !QTest::currentTestFailed())
            QCOMPARE(m_calls->checksum(), m_before);
    }

    void knowsAGoodCallOfEveryRoute();
    void everyGoodCallIsGood();
    void refusesAddressesThatAreNone();
    void refusesOtherMethods();
    void refusesEveryFieldThatIsWrong();
    void refusesWhatIsNoObject();
    void refusesWhatIsNoQuery();
    void refusesCallersWithoutASession();
    void refusesCallersWithoutAnAccount();
    void refusesCallersWithoutTheKeyOfADeployment();
    void tellsNothingOfOtherAccounts();
    void tellsNothingOfWhoThereIs();
    void aCallThatBreaksOffChangesNothing();
    void anUploadIsNotCommittedTwice();
    void findsFieldsThatAreGivenTwice_data();
    void findsFieldsThatAreGivenTwice();

private:
    /// Fails the test unless the answer is a refusal that says what people may know.
    void verifyRefusal(const HttpReply &reply, const QByteArray &call)
    {
        const QString what = QString::fromLatin1(call.left(300)) + QLatin1String(" -> ") +
                             QString::number(reply.status) + QLatin1Char(' ') +
                             QString::fromUtf8(reply.body.left(500));
        const QJsonObject json = reply.json();
        QVERIFY2(reply.status >= 400 && reply.status < 500, qPrintable(what));
        QVERIFY2(reply.headers.value("content-type") == "application/problem+json",
                 qPrintable(what));
        QVERIFY2(!reply.code().isEmpty(), qPrintable(what));
        const QString detail = json.value(QLatin1String("detail")).toString();
        const bool isSentence = detail.endsWith(QLatin1Char('.')) &&
                                (detail.at(0).isUpper() || detail.startsWith(QLatin1Char('"')));
        QVERIFY2(isSentence, qPrintable(what));
        QVERIFY2(json.value(QLatin1String("requestId")).toString().toLatin1() ==
                     reply.headers.value("x-request-id"),
                 qPrintable(what));
        for (const QByteArray &word : inside)
            QVERIFY2(!detail.toUtf8().contains(word), qPrintable(what));
    }

    void send(const QByteArray &method, const QByteArray &target, const QByteArray &authorization,
              const QByteArray &body)
    {
        verifyRefusal(m_calls->send(method, target, authorization, body),
                      method + ' ' + target + ' ' + body);
    }

    TestDatabases m_databases;
    std::array<std::unique_ptr<GoodCalls>, 2> m_kept;
    GoodCalls *m_calls = nullptr;
    QByteArray m_before;
};

void BadInputTest::knowsAGoodCallOfEveryRoute()
{
    for (const Service::Route &route : Service::Api::routes())
        QVERIFY2(m_calls->knows(route), (route.method + ' ' + route.pattern).constData());
}

/// Else nothing that is refused below would say anything.
void BadInputTest::everyGoodCallIsGood()
{
    QFETCH_GLOBAL(bool, postgres);
    GoodCalls fresh(m_databases.filled(postgres));
    // What takes away what others need comes last.
    for (const bool takesAway : {false, true}) {
        for (const Service::Route &route : Service::Api::routes()) {
            if ((route.method == "DELETE") != takesAway || fresh.isOnlyAnAddress(route))
                continue;
            const HttpReply reply = fresh.send(fresh.of(route));
            QVERIFY2(reply.status >= 200 && reply.status < 300,
                     (route.method + ' ' + route.pattern + ' ' + reply.body).constData());
        }
    }
}

void BadInputTest::refusesAddressesThatAreNone()
{
    for (const char *target : {"/",
                               "/v1",
                               "/v1/",
                               "/v2/projects",
                               "/v1/Projects",
                               "/v1/projects/",
                               "//v1/projects",
                               "/v1//projects",
                               "/v1/projects/a/b",
                               "/v1/projects%2F",
                               "/v1/../v1/projects",
                               "/a/b",
                               "/v1/%00",
                               "/v1/projects/%ff/published",
                               "/v1/projects/%ed%a0%80/published",
                               "/v1/projects/a%00b/published",
                               "/%2e%2e/%2e%2e/etc/passwd",
                               "/healthz/x",
                               "/nexo/tools_v2/Components/../../../etc/passwd",
                               "/v1/projects;x=1?type=a"}) {
        for (const QByteArray &token : {m_calls->token(), QByteArray()})
            send("GET", target, token, QByteArray());
    }
}

void BadInputTest::refusesOtherMethods()
{
    for (const Service::Route &route : Service::Api::routes()) {
        const GoodCall call = m_calls->of(route);
        QByteArrayList allowed;
        for (const Service::Route &other : Service::Api::routes()) {
            if (Service::matchPath(other.pattern, call.path()))
                allowed << other.method;
        }
        for (const char *method : {"GET", "POST", "PUT", "DELETE", "PATCH", "OPTIONS", "BREW"}) {
            if (allowed.contains(method))
                continue;
            const HttpReply reply =
                m_calls->send(method, call.target, call.authorization, QByteArray("{}"));
            verifyRefusal(reply, QByteArray(method) + ' ' + call.target);
            QCOMPARE(reply.status, 405);
            QVERIFY(reply.headers.value("allow").contains(route.method));
        }
    }
}

void BadInputTest::refusesEveryFieldThatIsWrong()
{
    int sent = 0;
    for (const Service::Route &route : Service::Api::routes()) {
        const GoodCall call = m_calls->of(route);
        if (call.body.isEmpty())
            continue;
        // What players report is refused row by row, so a wrong row is no wrong call.
        QJsonObject good = call.body;
        if (good.contains(QLatin1String("rows")))
            good.insert(QStringLiteral("rows"), QJsonArray());
        const QByteArrayList bodies = spoilt(good);
        for (const QByteArray &body : bodies) {
            send(route.method, call.target, call.authorization, body);
            ++sent;
        }
        QVERIFY2(m_calls->checksum() == m_before, (route.method + ' ' + route.pattern).constData());
    }
    QVERIFY(sent > 300);
}

void BadInputTest::refusesWhatIsNoObject()
{
    for (const Service::Route &route : Service::Api::routes()) {
        const GoodCall call = m_calls->of(route);
        if (call.body.isEmpty())
            continue;
        const QByteArrayList bodies = noObjects();
        for (const QByteArray &body : bodies)
            send(route.method, call.target, call.authorization, body);
    }
}

void BadInputTest::refusesWhatIsNoQuery()
{
    for (const Service::Route &route : Service::Api::routes()) {
        const GoodCall call = m_calls->of(route);
        const QByteArray query = call.target.mid(call.path().size() + 1);
        const QByteArrayList items = query.isEmpty() ? QByteArrayList() : query.split('&');
        if (m_calls->isOnlyAnAddress(route))
            continue;
        for (const QByteArray &item : items) {
            const QByteArray name = item.left(item.indexOf('='));
            for (const char *value : {"%ff", "a%00", "%ed%a0%80"})
                send(route.method, call.path() + '?' + name + '=' + value, call.authorization,
                     QByteArray());
            send(route.method, call.target + '&' + item, call.authorization, QByteArray());
            const QByteArray text = item.mid(name.size() + 1);
            bool isNumber = false;
            text.toLongLong(&isNumber);
            if (!isNumber)
                continue;
            for (const char *value : {"1.5", "1e3", "9223372036854775808", "ten", "0x1", "-"})
                send(route.method, QByteArray(call.target).replace(item, name + '=' + value),
                     call.authorization, QByteArray());
        }
    }
}

void BadInputTest::refusesCallersWithoutASession()
{
    const QByteArray forged = "Bearer " + QByteArray(43, 'A');
    for (const Service::Route &route : Service::Api::routes()) {
        if (route.access == Service::Access::Public)
            continue;
        const GoodCall call = m_calls->of(route);
        const QByteArray body = call.bodyText();
        for (const QByteArray &authorization :
             {QByteArray(), QByteArray("Bearer"), QByteArray("Bearer "), forged,
              QByteArray("Basic bWFqYTpz"), m_calls->token().mid(7), m_calls->token() + "A",
              m_calls->token().chopped(1), m_calls->expiredToken(), m_calls->endedToken(),
              QByteArray("Bearer \xff\xfe"), "Bearer " + QByteArray(5000, 'x')}) {
            const HttpReply reply = m_calls->send(route.method, call.target, authorization, body);
            verifyRefusal(reply, route.method + ' ' + call.target + ' ' + authorization);
            QCOMPARE(reply.status, 401);
            QCOMPARE(reply.code(), QStringLiteral("signed-out"));
            QCOMPARE(reply.headers.value("www-authenticate"), QByteArray("Bearer"));
        }
    }
}

void BadInputTest::refusesCallersWithoutAnAccount()
{
    const QByteArray token = m_calls->tokenWithoutAccount();
    m_before = m_calls->checksum(); // with that session
    for (const Service::Route &route : Service::Api::routes()) {
        if (route.access != Service::Access::Account)
            continue;
        const GoodCall call = m_calls->of(route);
        const HttpReply reply = m_calls->send(route.method, call.target, token, call.bodyText());
        verifyRefusal(reply, route.method + ' ' + call.target);
        QCOMPARE(reply.code(), QStringLiteral("no-account"));
    }
}

void BadInputTest::refusesCallersWithoutTheKeyOfADeployment()
{
    int routes = 0;
    for (const Service::Route &route : Service::Api::routes()) {
        const GoodCall call = m_calls->of(route);
        if (!call.authorization.startsWith("Deployment "))
            continue;
        ++routes;
        const QByteArray unknown =
            QByteArray(call.target).replace(m_calls->deployment(), GoodCalls::unknownGuid());
        for (const QByteArray &key :
             {QByteArray(), QByteArray("Deployment "), call.authorization + "x", m_calls->token(),
              m_calls->otherKey()}) {
            const HttpReply here = m_calls->send(route.method, call.target, key, call.bodyText());
            verifyRefusal(here, route.method + ' ' + call.target + ' ' + key);
            QCOMPARE(here.code(), QStringLiteral("bad-key"));
            // A deployment that is not there gives the same answer.
            const HttpReply there = m_calls->send(route.method, unknown, key, call.bodyText());
            QCOMPARE(GoodCalls::comparable(there), GoodCalls::comparable(here));
        }
    }
    QCOMPARE(routes, 6);
}

/// An id of another account is answered as one that nobody has.
void BadInputTest::tellsNothingOfOtherAccounts()
{
    int compared = 0;
    for (const Service::Route &route : Service::Api::routes()) {
        if (route.access != Service::Access::Account)
            continue;
        const GoodCall call = m_calls->of(route);
        for (const auto &[mine, theirs] : m_calls->idsOfBoth()) {
            if (!call.target.contains(mine))
                continue;
            ++compared;
            const auto ask = [&](const QByteArray &id) {
                const HttpReply reply =
                    m_calls->send(route.method, QByteArray(call.target).replace(mine, id),
                                  call.authorization, call.bodyText());
                return GoodCalls::comparable(reply).replace(id, "ID");
            };
            QCOMPARE(ask(theirs), ask(GoodCalls::unknownGuid()));
        }
    }
    QVERIFY(compared >= 15);
}

void BadInputTest::tellsNothingOfWhoThereIs()
{
    const auto bodyOf = [](const QByteArray &user, const QByteArray &password) {
        return "{\"user\":\"" + user + "\",\"password\":\"" + password + "\",\"appName\":\"t\"}";
    };
    const QByteArray longText(5000, 'x');
    QByteArray expected;
    const QList<std::pair<QByteArray, QByteArray>> attempts{{"maja", "wrong"},
                                                            {"nobody-of-that-name", "wrong"},
                                                            {"MAJA", ""},
                                                            {"", "wrong"},
                                                            {"disabled", "sample-disabled"},
                                                            {"disabled", "wrong"},
                                                            {longText, "wrong"},
                                                            {"maja", longText}};
    for (const auto &[user, password] : attempts) {
        const qint64 before = m_calls->hashes();
        const HttpReply reply = m_calls->send("POST", "/v1/sessions", {}, bodyOf(user, password));
        QCOMPARE(m_calls->hashes(), before + 1); // the time a hash takes
        QCOMPARE(reply.status, 401);
        if (expected.isEmpty())
            expected = GoodCalls::comparable(reply);
        QCOMPARE(GoodCalls::comparable(reply), expected);
    }
}

void BadInputTest::aCallThatBreaksOffChangesNothing()
{
    for (const Service::Route &route : Service::Api::routes()) {
        if (route.method == "GET")
            continue;
        const GoodCall call = m_calls->of(route);
        const QByteArray body = call.bodyText().isEmpty() ? QByteArray("{}") : call.bodyText();
        const QByteArray head = route.method + ' ' + call.target + " HTTP/1.1\r\nHost: 127.0.0.1:" +
                                QByteArray::number(m_calls->port()) +
                                "\r\nAuthorization: " + call.authorization + "\r\n";
        const QByteArray whole =
            head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
        const QByteArray chunked = head + "Transfer-Encoding: chunked\r\n\r\n" +
                                   QByteArray::number(body.size(), 16) + "\r\n" + body;
        const qsizetype headSize = whole.size() - body.size();
        for (const qsizetype size :
             {qsizetype(1), route.method.size() + 1, head.size() / 2, head.size(), headSize - 2,
              headSize, headSize + 1, whole.size() - 1})
            m_calls->breakOff(whole.left(size));
        for (const qsizetype left :
             {body.size() + 3, body.size() + 1, body.size(), body.size() / 2, qsizetype(0)})
            m_calls->breakOff(chunked.chopped(left));
    }
    QCOMPARE(m_calls->send("GET", "/healthz", {}, {}).status, 200);
}

void BadInputTest::anUploadIsNotCommittedTwice()
{
    QFETCH_GLOBAL(bool, postgres);
    GoodCalls calls(m_databases.filled(postgres));
    const QByteArray upload = calls.newUpload("bytes");
    const auto put = [&](const QByteArray &offset, const QByteArray &bytes) {
        return calls.send("PUT", upload + "/files/0?offset=" + offset, calls.token(), bytes);
    };
    const QByteArray good = calls.checksums("bytes");
    const auto commit = [&](const QByteArray &body) {
        return calls.send("POST", upload + "/commit", calls.token(), body);
    };
    const QByteArray reserved = calls.checksum();
    for (const char *offset : {"1", "5", "6", "9223372036854775807"})
        QCOMPARE(put(offset, "b").code(), QStringLiteral("offset"));
    verifyRefusal(put("9223372036854775808", "b"), "an offset past 64 bits");
    verifyRefusal(put("-1", "b"), "an offset before the beginning");
    verifyRefusal(put("0", "too many bytes"), "more than was said");
    verifyRefusal(calls.send("PUT", upload + "/files/1?offset=0", calls.token(), "b"), "a file");
    verifyRefusal(commit(good), "nothing has come");
    QCOMPARE(calls.checksum(), reserved);
    QCOMPARE(put("0", "bytes").status, 200);
    verifyRefusal(commit(calls.checksums("other")), "another checksum");
    // What did not arrive as it was sent has to be sent again.
    QCOMPARE(put("0", "bytes").status, 200);
    QCOMPARE(calls.checksum(), reserved);
    const HttpReply done = commit(good);
    QCOMPARE(done.status, 201);
    const QByteArray committed = calls.checksum();
    const HttpReply again = commit(good);
    QCOMPARE(again.status, 201);
    QCOMPARE(again.body, done.body);
    verifyRefusal(put("5", "b"), "a piece of what is done");
    QCOMPARE(calls.checksum(), committed);
}

void BadInputTest::findsFieldsThatAreGivenTwice_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("name");
    QTest::newRow("none") << QByteArray(R"({"a":1,"b":{"a":2},"c":[{"a":1},{"a":2}]})")
                          << QString();
    QTest::newRow("twice") << QByteArray(R"({"a":1,"b":2,"a":1})") << QStringLiteral("a");
    QTest::newRow("inside") << QByteArray(R"([{"x":{"y":1, "y" :2}}])") << QStringLiteral("y");
    QTest::newRow("written otherwise")
        << QByteArray(R"({"a":1,"\u0061":2})") << QStringLiteral("a");
    QTest::newRow("a value like a name") << QByteArray(R"({"a":"a","b":"\"a\":"})") << QString();
    QTest::newRow("after an object")
        << QByteArray(R"({"a":{"b":1},"b":1,"a":2})") << QStringLiteral("a");
    QTest::newRow("brackets in texts")
        << QByteArray(R"({"a":"}{][","b":"{\"a\":1}"})") << QString();
    QTest::newRow("empty names") << QByteArray(R"({"":1,"":2})") << QString(QLatin1String(""));
}

void BadInputTest::findsFieldsThatAreGivenTwice()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, name);
    const auto found = Service::repeatedField(json);
    QCOMPARE(found.has_value(), !name.isNull());
    QCOMPARE(found.value_or(QString()), name);
}

ZEL_TEST_MAIN(BadInputTest)
#include "tst_badinput.moc"
