// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"

#include <QTest>

using namespace ZelTest;

namespace {

const Zel::SqlText sessionsOfProgram(R"sql(
    SELECT COUNT(*) FROM session WHERE app_name = $1
)sql");

const Zel::SqlText blockForAnHour(R"sql(
    UPDATE sign_in_attempt SET blocked_until = blocked_until + 3600000
)sql");

const Zel::SqlText endBlocks(R"sql(
    UPDATE sign_in_attempt SET blocked_until = 1
)sql");

} // namespace

class TestContractSignIn : public ContractTest
{
    Q_OBJECT

private slots:
    void letsInWhoIsKnown_data();
    void letsInWhoIsKnown();
    void saysNoToEverybodyElse_data();
    void saysNoToEverybodyElse();
    void refusesTextsItCannotKeep_data();
    void refusesTextsItCannotKeep();
    void takesTheDefaultServer();
    void forgetsTheFormerSessionWhenASignInIsRefused();
    void slowsDownGuessing();
    void slowsDownGuessingAtANameThatDoesNotExist();

private:
    bool signsIn(const QString &user, const QString &password);
    bool isSlowedDown(const Person &person);
    void runOnAllAttempts(const Zel::SqlText &text);
};

bool TestContractSignIn::signsIn(const QString &user, const QString &password)
{
    Client client;
    const bool success = authenticate(client, service().address(), user, password);
    if (client.isSignedIn() != success)
        qWarning("the client and its answer do not agree");
    return success;
}

void TestContractSignIn::letsInWhoIsKnown_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    const auto row = [](const char *name, const QString &user, const QString &password) {
        QTest::newRow(name) << user << password;
    };
    row("two accounts", maja().user, maja().password);
    row("one account", tomas().user, tomas().password);
    row("no account", ines().user, ines().password);
    row("name in capitals", QStringLiteral("MAJA"), maja().password);
    row("name in wide letters", QString::fromUtf8("ｍａｊａ"), maja().password);
    const QString key = QString::fromUtf8("pä\"ss\\wörd 🔑\r\n ");
    row("astral", QString::fromUtf8("Zoë 🎥"), key);
    row("astral, not composed", QString::fromUtf8("zoe\u0308 🎥"),
        key.normalized(QString::NormalizationForm_D));
}

void TestContractSignIn::letsInWhoIsKnown()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    const QString program = newGuid();
    Client client;
    QVERIFY(authenticate(client, service().address(), user, password, program));
    QVERIFY(client.isSignedIn());
    QVERIFY(accountsOf(client));
    const auto count = database().row(sessionsOfProgram, {program},
                                      [](const Zel::SqlRow &found) { return found.integer(0); });
    QCOMPARE(count.value(), 1);
}

void TestContractSignIn::saysNoToEverybodyElse_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    const auto row = [](const char *name, const QString &user, const QString &password) {
        QTest::newRow(name) << user << password;
    };
    row("wrong password", maja().user, tomas().password);
    row("empty password", tomas().user, QString());
    row("password in capitals", ines().user, ines().password.toUpper());
    row("password with a blank behind", nora().user, nora().password + QLatin1Char(' '));
    row("start of the password", olaf().user, olaf().password.chopped(1));
    row("unknown user", QStringLiteral("nobody"), maja().password);
    row("nothing at all", QString(), QString());
    row("name with a blank behind", vera().user + QLatin1Char(' '), vera().password);
    row("another person's password", QStringLiteral("many"), maja().password);
    row("unknown emoji", QString::fromUtf8("🎬👩‍👩‍👧‍👦"),
        QString::fromUtf8("🔑"));
    row("a condition", QStringLiteral("maja' OR '1'='1"), QStringLiteral("' OR ''='"));
    row("a pattern", QStringLiteral("maj_"), maja().password);
    row("long name", QString(10'000, QLatin1Char('n')), maja().password);
    row("long password", QStringLiteral("no one"), QString(10'000, QLatin1Char('p')));
    row("as long as can be", QString(65'536, QChar(0x65e5)), QString(65'536, QChar(0x65e5)));
}

void TestContractSignIn::saysNoToEverybodyElse()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QVERIFY(!signsIn(user, password));
}

void TestContractSignIn::refusesTextsItCannotKeep_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *name, const QString &user, const QString &password,
                        const char *failure, const QString &program = QStringLiteral("Tests")) {
        QTest::newRow(name) << user << password << program << QString::fromLatin1(failure);
    };
    const QString nul = QStringLiteral("maja") + QChar(0);
    const QString half = QStringLiteral("maja") + QChar(0xd83c);
    row("NUL in the name", nul, maja().password, "Invalid/invalid-text");
    row("NUL in the password", maja().user, maja().password + QChar(0), "Invalid/invalid-text");
    row("NUL in the program", maja().user, maja().password, "Invalid/invalid-text", nul);
    row("half a pair in the name", half, maja().password, "Invalid/invalid-text");
    row("half a pair in the password", maja().user, half, "Invalid/invalid-text");
    row("no program", maja().user, maja().password, "Invalid/invalid", QString());
    row("a name beyond every measure", QString(65'537, QLatin1Char('n')), QString(),
        "Invalid/invalid");
    row("a password of two million", maja().user, QString(2'000'000, QLatin1Char('p')),
        "Invalid/too-large");
}

void TestContractSignIn::refusesTextsItCannotKeep()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QString, program);
    QFETCH(QString, failure);
    Client client;
    bool success = true;
    const auto call = [&] {
        client.authenticate(service().address(), user, password, program, QString(), false, true,
                            success);
    };
    QCOMPARE(failureOf(call), failure);
    QVERIFY(!success);
    QVERIFY(!client.isSignedIn());
    // None of them counts as a guess.
    QVERIFY(signsIn(maja().user, maja().password));
}

void TestContractSignIn::takesTheDefaultServer()
{
    Client client;
    client.setDefaultServer(service().address());
    QVERIFY(authenticate(client, QString(), maja().user, maja().password));
    if (service().address().startsWith(QLatin1String("https")))
        return; // an address without a scheme is a plain one on this machine
    const QString withoutScheme = service().address().mid(7);
    QVERIFY(authenticate(client, withoutScheme, maja().user, maja().password));
    QVERIFY(authenticate(
        client,
        QString(withoutScheme).replace(QLatin1String("127.0.0.1"), QLatin1String("localhost")),
        maja().user, maja().password));
    QCOMPARE(accountsOf(client)->count(), 2);
}

void TestContractSignIn::forgetsTheFormerSessionWhenASignInIsRefused()
{
    const auto client = signIn(nora(), contractStudio);
    QVERIFY(!authenticate(*client, service().address(), nora().user, QStringLiteral("wrong")));
    QCOMPARE(failureOf([&] { accountsOf(*client); }), QStringLiteral("SignedOut"));
    QVERIFY(authenticate(*client, service().address(), nora().user, nora().password));
    // A new session begins without an account.
    QCOMPARE(failureOf([&] { projectsOf(*client, QStringLiteral("session")); }),
             QStringLiteral("Refused/no-account"));
}

bool TestContractSignIn::isSlowedDown(const Person &person)
{
    return failureOf([&] { signsIn(person.user, person.password); }) ==
           QLatin1String("TooManyAttempts/too-many-attempts");
}

void TestContractSignIn::runOnAllAttempts(const Zel::SqlText &text)
{
    database().tx([&] { database().exec(text); });
}

void TestContractSignIn::slowsDownGuessing()
{
    const Person guess{olaf().user, QStringLiteral("guess")};
    // However slow this machine is, the wait after each guess doubles and catches up with it.
    int guesses = 0;
    while (guesses < 25 && !isSlowedDown(guess))
        ++guesses;
    QVERIFY2(guesses >= 4 && guesses < 25, qPrintable(QString::number(guesses)));

    runOnAllAttempts(blockForAnHour);
    // The right password is told from a wrong one to nobody while the wait lasts, in whatever case
    // the name is written; others are not held up.
    QVERIFY(isSlowedDown(olaf()));
    QVERIFY(isSlowedDown({olaf().user.toUpper(), olaf().password}));
    QVERIFY(signsIn(nora().user, nora().password));
    try {
        signsIn(olaf().user, olaf().password);
        QFAIL("the sign-in was not refused");
    } catch (const QXSC::ServiceError &error) {
        QVERIFY2(error.description().contains(QLatin1String("Wait 61 minutes")) ||
                     error.description().contains(QLatin1String("Wait 60 minutes")),
                 qPrintable(error.description()));
        QVERIFY(error.isTransient());
    }

    runOnAllAttempts(endBlocks);
    QVERIFY(signsIn(olaf().user, olaf().password));
    // The guesses are forgotten.
    QVERIFY(!signsIn(guess.user, guess.password));
    QVERIFY(signsIn(olaf().user, olaf().password));
}

void TestContractSignIn::slowsDownGuessingAtANameThatDoesNotExist()
{
    const Person guess{QStringLiteral("no such person"), QStringLiteral("guess")};
    int guesses = 0;
    while (guesses < 25 && !isSlowedDown(guess))
        ++guesses;
    QVERIFY2(guesses >= 4 && guesses < 25, qPrintable(QString::number(guesses)));
}

ZEL_TEST_MAIN(TestContractSignIn)
#include "tst_contractsignin.moc"
