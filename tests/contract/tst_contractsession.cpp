// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/everycall.h"

#include <QDateTime>
#include <QTest>

using namespace ZelTest;

namespace {

const Zel::SqlText expire(R"sql(
    UPDATE session SET expires_at = $2 WHERE app_name = $1
)sql");

const Zel::SqlText leaveIdle(R"sql(
    UPDATE session SET seen_at = $2 WHERE app_name = $1
)sql");

const Zel::SqlText findSeen(R"sql(
    SELECT seen_at FROM session WHERE app_name = $1
)sql");

const Zel::SqlText disable(R"sql(
    UPDATE app_user SET disabled = $2 WHERE login = $1
)sql");

const Zel::SqlText countSessions(R"sql(
    SELECT COUNT(*) FROM session WHERE app_name = $1
)sql");

constexpr qint64 hourMs = 60LL * 60 * 1000;

} // namespace

class TestContractSession : public ContractTest
{
    Q_OBJECT

private slots:
    void init();

    void anExpiredSessionIsSignedOutInEveryCall_data() { addEveryCall(); }

    void anExpiredSessionIsSignedOutInEveryCall();
    void aSessionLeftIdleIsSignedOut();
    void aSessionLivesUntilItsLastMoment();
    void aUserWhoMayNoLongerSignInIsSignedOut();

    void everyCallAfterSigningOutIsSignedOut_data() { addEveryCall(); }

    void everyCallAfterSigningOutIsSignedOut();
    void signingOutEndsTheSessionOnTheServer();
    void signingOutTwiceDoesNothing();
    void anExpiredSessionIsReplacedByANewOne();
    void everyCallWithoutAnAccountIsRefused();

private:
    void change(const Zel::SqlText &text, const Zel::SqlValues &values);
    qint64 sessionsOfProgram();

    QString m_program;
    std::unique_ptr<Client> m_client;
};

void TestContractSession::init()
{
    ContractTest::init();
    m_program = newGuid();
    m_client = std::make_unique<Client>();
    QVERIFY(authenticate(*m_client, service().address(), nora().user, nora().password, m_program));
    QVERIFY(chooseAccount(*m_client, QString::number(contractStudio)));
    QCOMPARE(sessionsOfProgram(), 1);
}

void TestContractSession::change(const Zel::SqlText &text, const Zel::SqlValues &values)
{
    const qint64 rows = database().tx([&] { return database().exec(text, values); });
    QCOMPARE(rows, 1);
}

qint64 TestContractSession::sessionsOfProgram()
{
    return database()
        .row(countSessions, {m_program}, [](const Zel::SqlRow &row) { return row.integer(0); })
        .value();
}

void TestContractSession::anExpiredSessionIsSignedOutInEveryCall()
{
    QFETCH(Call, call);
    change(expire, {m_program, QDateTime::currentMSecsSinceEpoch()});
    QCOMPARE(failureOf([&] { call(*m_client); }), QStringLiteral("SignedOut/signed-out"));
    QVERIFY(!m_client->isSignedIn());
    QCOMPARE(failureOf([&] { call(*m_client); }), QStringLiteral("SignedOut"));
}

void TestContractSession::aSessionLeftIdleIsSignedOut()
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    change(leaveIdle, {m_program, now - 11 * hourMs});
    QVERIFY(accountsOf(*m_client)); // which counts as use
    const auto seenAt = database().row(findSeen, {m_program},
                                       [](const Zel::SqlRow &row) { return row.integer(0); });
    QVERIFY(seenAt.value() >= now);
    change(leaveIdle, {m_program, now - 12 * hourMs});
    QCOMPARE(failureOf([&] { accountsOf(*m_client); }), QStringLiteral("SignedOut/signed-out"));
}

void TestContractSession::aSessionLivesUntilItsLastMoment()
{
    change(expire, {m_program, QDateTime::currentMSecsSinceEpoch() + hourMs});
    for (const NamedCall &one : everyCall()) {
        const QString failure = failureOf([&] { one.call(*m_client); });
        QVERIFY2(failure == one.ending, qPrintable(QLatin1String(one.name) + failure));
    }
}

void TestContractSession::aUserWhoMayNoLongerSignInIsSignedOut()
{
    change(disable, {nora().user, true});
    const QString failure = failureOf([&] { accountsOf(*m_client); });
    Client again;
    const bool success = authenticate(again, service().address(), nora().user, nora().password);
    change(disable, {nora().user, false});
    QCOMPARE(failure, QStringLiteral("SignedOut/signed-out"));
    QVERIFY(!success);
}

void TestContractSession::everyCallAfterSigningOutIsSignedOut()
{
    QFETCH(Call, call);
    m_client->signOut();
    QVERIFY(!m_client->isSignedIn());
    QCOMPARE(failureOf([&] { call(*m_client); }), QStringLiteral("SignedOut"));
}

void TestContractSession::signingOutEndsTheSessionOnTheServer()
{
    const auto other = signIn(nora());
    m_client->signOut();
    QCOMPARE(sessionsOfProgram(), 0);
    QVERIFY(accountsOf(*other)); // that one only
}

void TestContractSession::signingOutTwiceDoesNothing()
{
    m_client->signOut();
    m_client->signOut();
    QVERIFY(!m_client->isSignedIn());
}

void TestContractSession::anExpiredSessionIsReplacedByANewOne()
{
    change(expire, {m_program, QDateTime::currentMSecsSinceEpoch()});
    QCOMPARE(failureOf([&] { accountsOf(*m_client); }), QStringLiteral("SignedOut/signed-out"));
    m_program = newGuid();
    QVERIFY(authenticate(*m_client, service().address(), nora().user, nora().password, m_program));
    QVERIFY(chooseAccount(*m_client, QString::number(contractStudio)));
    QVERIFY(projectsOf(*m_client, QStringLiteral("session")));
}

void TestContractSession::everyCallWithoutAnAccountIsRefused()
{
    QVERIFY(authenticate(*m_client, service().address(), nora().user, nora().password, m_program));
    QStringList others;
    for (const NamedCall &one : everyCall()) {
        const QString failure = failureOf([&] { one.call(*m_client); });
        if (one.needsAccount && failure != QLatin1String("Refused/no-account"))
            others << QLatin1String(one.name) + QLatin1String(": ") + failure;
        if (!one.needsAccount) // choosing an account is one of these
            QVERIFY(authenticate(*m_client, service().address(), nora().user, nora().password));
    }
    QCOMPARE(others, QStringList());
}

ZEL_TEST_MAIN(TestContractSession)
#include "tst_contractsession.moc"
