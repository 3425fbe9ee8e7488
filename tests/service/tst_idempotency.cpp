// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/housekeeper.h"
#include "service/daemon/idempotency.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonDocument>
#include <QTest>
#include <QUuid>

#include <array>
#include <memory>
#include <thread>
#include <vector>

using namespace Zel;
using ZelTest::ApiFixture;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;

namespace {

constexpr qint64 brightwater = 1001;
constexpr qint64 harbour = 1002;

QByteArray newKey()
{
    return QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

QByteArray folderNamed(const QByteArray &name)
{
    return "{\"parentId\":0,\"name\":\"" + name + "\"}";
}

} // namespace

/// Calls that come again under the same key, over HTTP and both databases.
class IdempotencyTest : public ZelTest::TestCase
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
        if (!kept)
            kept = std::make_unique<ApiFixture>(m_databases.filled(postgres));
        m_api = kept.get();
        m_token = m_api->token(QStringLiteral("maja"), brightwater);
        m_name = newKey();
    }

    void everyChangeIsKnownWhenItComesAgain();
    void aCallThatComesAgainIsAnsweredAgain();
    void anAnswerWithoutABodyIsKeptAsOne();
    void withoutAKeyACallIsDoneAgain();
    void aKeyOfAnotherCallIsRefused();
    void aRefusalIsNotKept();
    void refusesWhatIsNoKey_data();
    void refusesWhatIsNoKey();
    void everyPersonAndAccountHasKeysOfItsOwn();
    void theSameCallTwiceAtOnceIsDoneOnce();
    void anAnswerIsForgottenAfterADay();
    void allExpiredAnswersGo();

private:
    HttpReply call(const QByteArray &method, const QByteArray &target, const QByteArray &key,
                   const QByteArray &body = QByteArray(), const QString &token = QString()) const
    {
        const QByteArray session = token.isEmpty() ? m_token.toUtf8() : token.toUtf8();
        return HttpProbe::request(m_api->port(), method, target, body,
                                  {"Authorization: Bearer " + session, "Idempotency-Key: " + key});
    }

    HttpReply makeFolder(const QByteArray &key, const QByteArray &name,
                         const QString &token = QString()) const
    {
        return call("POST", "/v1/asset-folders", key, folderNamed(name), token);
    }

    qint64 keptAnswers()
    {
        return m_api->database()
            .runNative(QStringLiteral("SELECT COUNT(*) FROM idem"))
            .toLongLong();
    }

    ZelTest::TestDatabases m_databases;
    std::array<std::unique_ptr<ApiFixture>, 2> m_kept;
    ApiFixture *m_api = nullptr;
    QString m_token;
    QByteArray m_name; ///< of a folder, new in each test
};

/// A new route that changes something belongs to one of these.
void IdempotencyTest::everyChangeIsKnownWhenItComesAgain()
{
    const QByteArrayList knownByWhatTheyBring{
        "POST /v1/projects",                 // the guid
        "PUT /v1/themes/{guid}/data-record", // the same values straight after
        "POST /v1/uploads",                  // an empty one is forgotten by itself
        "PUT /v1/uploads/{id}/files/{n}",    // the offset
        "POST /v1/uploads/{id}/commit",      // answers with the same asset again
        "DELETE /v1/uploads/{id}",           // nothing is left to be done
    };
    int keyed = 0;
    for (const Service::Route &route : Service::Api::routes()) {
        if (route.method == "GET" || route.access != Service::Access::Account) {
            QVERIFY(!Service::takesIdempotencyKey(route));
            continue;
        }
        const QByteArray name = route.method + ' ' + route.pattern;
        QVERIFY2(Service::takesIdempotencyKey(route) != knownByWhatTheyBring.contains(name),
                 name.constData());
        keyed += Service::takesIdempotencyKey(route) ? 1 : 0;
    }
    QVERIFY(keyed >= 5);
}

void IdempotencyTest::aCallThatComesAgainIsAnsweredAgain()
{
    const QByteArray key = newKey();
    const HttpReply first = makeFolder(key, m_name);
    QCOMPARE(first.status, 201);
    for (int i = 0; i < 3; ++i) {
        const HttpReply again = makeFolder(key, m_name);
        QCOMPARE(again.status, first.status);
        QCOMPARE(again.body, first.body);
        QCOMPARE(again.headers.value("content-type"), first.headers.value("content-type"));
        QVERIFY(again.headers.value("x-request-id") != first.headers.value("x-request-id"));
    }
}

void IdempotencyTest::anAnswerWithoutABodyIsKeptAsOne()
{
    const QByteArray id = QByteArray::number(
        makeFolder(newKey(), m_name).json().value(QLatin1String("folderId")).toInt());
    const QByteArray key = newKey();
    for (int i = 0; i < 2; ++i) {
        const HttpReply gone = call("DELETE", "/v1/asset-folders/" + id, key);
        QCOMPARE(gone.status, 204);
        QVERIFY(gone.body.isEmpty());
        QVERIFY(!gone.headers.contains("content-type"));
    }
    QCOMPARE(call("DELETE", "/v1/asset-folders/" + id, newKey()).status, 404);
}

void IdempotencyTest::withoutAKeyACallIsDoneAgain()
{
    const auto make = [&] {
        return m_api->call("POST", "/v1/asset-folders", m_token, folderNamed(m_name));
    };
    QCOMPARE(make().status, 201);
    QCOMPARE(make().code(), QStringLiteral("conflict"));
}

void IdempotencyTest::aKeyOfAnotherCallIsRefused()
{
    const QByteArray key = newKey();
    QCOMPARE(makeFolder(key, m_name).status, 201);
    const HttpReply otherBody = makeFolder(key, m_name + "2");
    QCOMPARE(otherBody.status, 422);
    QCOMPARE(otherBody.code(), QStringLiteral("key-reused"));
    QCOMPARE(call("DELETE", "/v1/asset-folders/1", key).status, 422);
    QCOMPARE(call("POST", "/v1/asset-folders?x", key, folderNamed(m_name)).status, 422);
    QCOMPARE(makeFolder(newKey(), m_name + "2").status, 201); // had not been made
}

void IdempotencyTest::aRefusalIsNotKept()
{
    const qint64 before = keptAnswers();
    const QByteArray key = newKey();
    QCOMPARE(makeFolder(key, "a/b").status, 400);
    QCOMPARE(call("DELETE", "/v1/assets/" + newKey(), key).status, 404);
    QCOMPARE(keptAnswers(), before);
    QCOMPARE(makeFolder(key, m_name).status, 201);
    QCOMPARE(keptAnswers(), before + 1);
}

void IdempotencyTest::refusesWhatIsNoKey_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("long") << QByteArray(65, 'k');
    QTest::newRow("blank") << QByteArray("a b");
    QTest::newRow("not ASCII") << QByteArray("\xc3\xa4");
}

void IdempotencyTest::refusesWhatIsNoKey()
{
    QFETCH(QByteArray, key);
    const HttpReply reply = makeFolder(key, m_name);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("invalid"));
    QCOMPARE(makeFolder(QByteArray(64, '~'), m_name).status, 201);
    m_api->advance(Repeats::lifeMs); // so that the key may be used again
}

void IdempotencyTest::everyPersonAndAccountHasKeysOfItsOwn()
{
    const QByteArray key = newKey();
    QCOMPARE(makeFolder(key, m_name).status, 201);
    const QString tomas = m_api->token(QStringLiteral("tomas"), brightwater);
    QCOMPARE(makeFolder(key, m_name, tomas).code(), QStringLiteral("conflict"));
    QCOMPARE(makeFolder(key, m_name, m_api->token(QStringLiteral("maja"), harbour)).status, 201);
}

void IdempotencyTest::theSameCallTwiceAtOnceIsDoneOnce()
{
    for (int round = 0; round < 5; ++round) {
        const QByteArray key = newKey();
        const QByteArray name = m_name + QByteArray::number(round);
        constexpr std::size_t callers = 6;
        std::array<HttpReply, callers> replies;
        std::vector<std::thread> threads;
        for (HttpReply &reply : replies)
            threads.emplace_back([&] { reply = makeFolder(key, name); });
        for (std::thread &thread : threads)
            thread.join();
        for (const HttpReply &reply : replies) {
            QCOMPARE(reply.status, 201);
            QCOMPARE(reply.body, replies.front().body);
        }
    }
}

void IdempotencyTest::anAnswerIsForgottenAfterADay()
{
    const QByteArray key = newKey();
    QCOMPARE(makeFolder(key, m_name).status, 201);
    m_api->advance(Repeats::lifeMs - 1);
    m_token = m_api->token(QStringLiteral("maja"), brightwater); // the session has ended meanwhile
    QCOMPARE(makeFolder(key, m_name).status, 201);
    m_api->advance(1);
    QCOMPARE(makeFolder(key, m_name).code(), QStringLiteral("conflict"));
    QCOMPARE(makeFolder(key, m_name + "2").status, 201); // the key is free
}

void IdempotencyTest::allExpiredAnswersGo()
{
    Store &store = m_api->store();
    const auto user = store.users.find(QStringLiteral("maja"));
    QVERIFY(user);
    m_api->advance(2 * Repeats::lifeMs);
    Service::tidyUp(store);
    QCOMPARE(keptAnswers(), 0);
    constexpr int many = 1200;
    m_api->database().tx([&] {
        for (int i = 0; i < many; ++i)
            store.repeats.put({brightwater, user->userId, QString::number(i)},
                              {QByteArray(32, 'h'), 204, QByteArray()});
    });
    m_api->advance(Repeats::lifeMs);
    m_token = m_api->token(QStringLiteral("maja"), brightwater);
    QCOMPARE(makeFolder(newKey(), m_name).status, 201);
    QCOMPARE(keptAnswers(), many + 1); // a call clears up nothing of others
    Service::tidyUp(store);
    QCOMPARE(keptAnswers(), 1);
}

ZEL_TEST_MAIN(IdempotencyTest)
#include "tst_idempotency.moc"
