// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/httpprobe.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <memory>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace Zel::Service;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;
using ZelTest::ServiceProcess;

/// People and accounts as they are changed on the command line, while the service answers. Each
/// function runs on SQLite and on PostgreSQL.
class PeopleCommandsTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    void init();
    void cleanupTestCase();

    void makesAnAccountThatSomebodyCanWorkFor();
    void numbersAccountsOnward();
    void listsAccountsMembersAndPeople();
    void refusesARemovedMemberAtOnce();
    void givesAnotherRoleAtOnce();
    void keepsTheLastOwner();
    void signsADisabledPersonOutAtOnce();
    void endsSessionsWithANewPassword();
    void signsOutOnRequest();
    void renamesPeople();
    void renamesAccounts();
    void namesWhatIsNotThere_data();
    void namesWhatIsNotThere();
    void refusesWhatIsNoNumberOfAnAccount_data();
    void refusesWhatIsNoNumberOfAnAccount();
    void asksTwiceAtATerminalAndShowsNothing_data();
    void asksTwiceAtATerminalAndShowsNothing();

private:
    /// Runs a command line; its words are parted by blanks, "~" is one.
    int run(const QString &line)
    {
        QStringList words = line.split(QLatin1Char(' '));
        for (QString &word : words)
            word.replace(QLatin1Char('~'), QLatin1Char(' '));
        return m_service->runCommand(words, &m_output);
    }

    /// The path of a file with a password.
    QString passwordFile(const QByteArray &password)
    {
        const QString path = m_databases.folder() + QLatin1String("/password");
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(password + '\n') < 0)
            throw std::runtime_error("the password cannot be written");
        return path;
    }

    HttpReply call(const QByteArray &method, const QByteArray &path, const QByteArray &token,
                   const QByteArray &body = {})
    {
        return HttpProbe::request(m_service->port(), method, path, body,
                                  {"Authorization: Bearer " + token});
    }

    HttpReply signIn(const QByteArray &user, const QByteArray &password)
    {
        return HttpProbe::request(m_service->port(), "POST", "/v1/sessions",
                                  R"({"appName":"t","user":")" + user + R"(","password":")" +
                                      password + R"("})");
    }

    QByteArray tokenOf(const QByteArray &user, const QByteArray &password)
    {
        return signIn(user, password).json().value(QLatin1String("token")).toString().toLatin1();
    }

    HttpReply choose(const QByteArray &token, const QByteArray &account)
    {
        return call("PUT", "/v1/sessions/current/account", token,
                    R"({"accountId":")" + account + R"("})");
    }

    QByteArray codeOf(const HttpReply &reply)
    {
        return reply.json().value(QLatin1String("code")).toString().toLatin1();
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<ServiceProcess> m_service;
    QByteArray m_function; ///< that the service was started for
    QByteArray m_output;
};

void PeopleCommandsTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    // One service for all rows of a function.
    const QByteArray function = QTest::currentTestFunction() + QByteArray::number(postgres);
    if (m_service && m_service->isRunning() && m_function == function)
        return;
    m_function = function;
    m_service = std::make_unique<ServiceProcess>();
    m_service->importPaths = {ServiceProcess::sampleFolder() + QLatin1String("/accounts.json"),
                              ServiceProcess::sampleFolder() + QLatin1String("/people.json"),
                              ServiceProcess::sampleFolder() +
                                  QLatin1String("/project-types.json")};
    if (postgres) {
        const Zel::DatabaseAddress address = m_databases.fresh(true);
        m_service->database = QStringLiteral("postgresql://%1:%2@%3:%4/%5")
                                  .arg(address.user, address.password, address.host)
                                  .arg(address.port)
                                  .arg(address.database);
    }
    QVERIFY2(m_service->start(), qPrintable(m_service->error()));
}

void PeopleCommandsTest::cleanupTestCase()
{
    m_service.reset();
}

void PeopleCommandsTest::makesAnAccountThatSomebodyCanWorkFor()
{
    QVERIFY(run(QStringLiteral("account add New~House --number 7")) == ExitFine);
    QVERIFY2(m_output.contains("Account 7 \"New House\" was added."), m_output.constData());
    QCOMPARE(run(QStringLiteral("user add ann --account 7 --role owner --sign-in-cost minimal "
                                "--password-file ") +
                 passwordFile("of ann")),
             int(ExitFine));
    const QByteArray token = tokenOf("ANN", "of ann");
    QCOMPARE(choose(token, "7").status, 204);
    QCOMPARE(choose(token, "1001").status, 403);
    QVERIFY(call("GET", "/v1/accounts", token).body.contains("New House"));
    QCOMPARE(run(QStringLiteral("account member 7 tomas viewer")), int(ExitFine));
    QCOMPARE(choose(tokenOf("tomas", "sample-tomas"), "7").status, 204);
}

void PeopleCommandsTest::numbersAccountsOnward()
{
    QCOMPARE(run(QStringLiteral("account add Next")), int(ExitFine));
    QVERIFY2(m_output.contains("Account 1003 "), m_output.constData());
    QCOMPARE(run(QStringLiteral("account add Again --number 1003")), int(ExitFailed));
    QVERIFY2(m_output.contains("there is an account 1003 already"), m_output.constData());
    QCOMPARE(run(QStringLiteral("account add Last --number 2147483647")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("account add Beyond")), int(ExitFailed));
    QVERIFY2(m_output.contains("--number"), m_output.constData());
}

void PeopleCommandsTest::listsAccountsMembersAndPeople()
{
    QCOMPARE(run(QStringLiteral("account list")), int(ExitFine));
    QCOMPARE(m_output, QByteArray("1001  Brightwater Media  (2 members)\n"
                                  "1002  Harbour Learning  (1 members)\n2 accounts\n"));
    QCOMPARE(run(QStringLiteral("account members 1001")), int(ExitFine));
    QCOMPARE(m_output, QByteArray("maja  owner\ntomas  author\n2 members\n"));
    QCOMPARE(run(QStringLiteral("user disable ines")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("user list")), int(ExitFine));
    QCOMPARE(m_output, QByteArray("ines  \"Ines Okafor\"  no account  disabled\n"
                                  "maja  \"Maja Lindqvist\"  1001 owner, 1002 author\n"
                                  "tomas  \"Tom\xc3\xa1s Herrera\"  1001 author\n3 people\n"));
}

void PeopleCommandsTest::refusesARemovedMemberAtOnce()
{
    const QByteArray token = tokenOf("tomas", "sample-tomas");
    QCOMPARE(choose(token, "1001").status, 204);
    QCOMPARE(call("GET", "/v1/project-types", token).status, 200);
    QCOMPARE(run(QStringLiteral("account remove-member 1001 TOMAS")), int(ExitFine));
    const HttpReply refused = call("GET", "/v1/project-types", token);
    QCOMPARE(refused.status, 403);
    QCOMPARE(codeOf(refused), QByteArray("no-account"));
    QCOMPARE(choose(token, "1001").status, 403);
    QVERIFY(!call("GET", "/v1/accounts", token).body.contains("1001"));
    QCOMPARE(run(QStringLiteral("account remove-member 1001 tomas")), int(ExitFailed));
    QVERIFY2(m_output.contains("no member of account 1001"), m_output.constData());
}

void PeopleCommandsTest::givesAnotherRoleAtOnce()
{
    const QByteArray token = tokenOf("tomas", "sample-tomas");
    QCOMPARE(choose(token, "1001").status, 204);
    const auto create = [&](const QByteArray &guid) {
        return call("POST", "/v1/projects", token,
                    R"({"guid":")" + guid +
                        R"(","name":"n","typeID":"webcast","description":"","eventDate":null})")
            .status;
    };
    QCOMPARE(create("0f8fad5b-d9cb-469f-a165-70867728950e"), 201);
    QCOMPARE(run(QStringLiteral("account member 1001 tomas viewer")), int(ExitFine));
    QVERIFY2(m_output.contains("is viewer of account 1001 now"), m_output.constData());
    QCOMPARE(create("0f8fad5b-d9cb-469f-a165-70867728950f"), 403);
    QCOMPARE(run(QStringLiteral("account member 1001 tomas viewer")), int(ExitFine));
    QVERIFY2(m_output.contains("already"), m_output.constData());
}

void PeopleCommandsTest::keepsTheLastOwner()
{
    for (const char *line :
         {"account remove-member 1001 maja", "account member 1001 maja author"}) {
        QCOMPARE(run(QLatin1String(line)), int(ExitFailed));
        QVERIFY2(m_output.contains("last owner") && m_output.contains("--force"),
                 m_output.constData());
    }
    // With another one, or asked for twice, it is done.
    QCOMPARE(run(QStringLiteral("account member 1001 tomas owner")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("account member 1001 maja author")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("account remove-member 1001 tomas")), int(ExitFailed));
    QCOMPARE(run(QStringLiteral("account remove-member 1001 tomas --force")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("account remove-member 1001 maja")), int(ExitFine));
}

void PeopleCommandsTest::signsADisabledPersonOutAtOnce()
{
    const QByteArray token = tokenOf("tomas", "sample-tomas");
    QCOMPARE(call("GET", "/v1/accounts", token).status, 200);
    QCOMPARE(run(QStringLiteral("user disable Tomas")), int(ExitFine));
    QVERIFY2(m_output.contains("1 session(s) ended"), m_output.constData());
    QCOMPARE(call("GET", "/v1/accounts", token).status, 401);
    // Nothing tells a disabled person from a wrong password or nobody.
    const HttpReply disabled = signIn("tomas", "sample-tomas");
    const HttpReply wrong = signIn("maja", "wrong");
    const HttpReply nobody = signIn("nobody", "sample-tomas");
    QCOMPARE(disabled.status, 401);
    for (const HttpReply *reply : {&wrong, &nobody}) {
        QCOMPARE(reply->status, 401);
        QCOMPARE(codeOf(*reply), codeOf(disabled));
        QCOMPARE(reply->json().value(QLatin1String("detail")),
                 disabled.json().value(QLatin1String("detail")));
    }
    QCOMPARE(run(QStringLiteral("user enable tomas")), int(ExitFine));
    QCOMPARE(call("GET", "/v1/accounts", token).status, 401); // the old session stays ended
    QCOMPARE(signIn("tomas", "sample-tomas").status, 201);
}

void PeopleCommandsTest::endsSessionsWithANewPassword()
{
    const QByteArray token = tokenOf("tomas", "sample-tomas");
    QCOMPARE(run(QStringLiteral("user password tomas --sign-in-cost minimal --password-file ") +
                 passwordFile("quite new")),
             int(ExitFine));
    QVERIFY2(!m_output.contains("quite new"), m_output.constData());
    QCOMPARE(call("GET", "/v1/accounts", token).status, 401);
    QCOMPARE(signIn("tomas", "sample-tomas").status, 401);
    QCOMPARE(signIn("tomas", "quite new").status, 201);
    QCOMPARE(run(QStringLiteral("user password tomas --password-file ") + passwordFile("")),
             int(ExitFailed));
    QCOMPARE(signIn("tomas", "quite new").status, 201);
}

void PeopleCommandsTest::signsOutOnRequest()
{
    const QByteArray first = tokenOf("tomas", "sample-tomas");
    const QByteArray second = tokenOf("tomas", "sample-tomas");
    const QByteArray other = tokenOf("maja", "sample-maja");
    QCOMPARE(run(QStringLiteral("user sign-out tomas")), int(ExitFine));
    QVERIFY2(m_output.contains("2 session(s) of user \"tomas\" ended."), m_output.constData());
    QCOMPARE(call("GET", "/v1/accounts", first).status, 401);
    QCOMPARE(call("GET", "/v1/accounts", second).status, 401);
    QCOMPARE(call("GET", "/v1/accounts", other).status, 200);
    QCOMPARE(signIn("tomas", "sample-tomas").status, 201);
}

void PeopleCommandsTest::renamesPeople()
{
    QCOMPARE(run(QStringLiteral("user rename tomas MAJA")), int(ExitFailed));
    QVERIFY2(m_output.contains("there is a user \"MAJA\" already"), m_output.constData());
    QCOMPARE(run(QStringLiteral("user rename tomas Tomas")), int(ExitFine)); // in other letters
    QCOMPARE(run(QStringLiteral("user rename tomas t.brandt --display-name T.~Brandt")),
             int(ExitFine));
    QCOMPARE(signIn("tomas", "sample-tomas").status, 401);
    QCOMPARE(signIn("T.Brandt", "sample-tomas").status, 201);
    QCOMPARE(run(QStringLiteral("user rename t.brandt --display-name Tom")), int(ExitFine));
    QCOMPARE(run(QStringLiteral("user list")), int(ExitFine));
    QVERIFY2(m_output.contains("t.brandt  \"Tom\"  1001 author"), m_output.constData());
    QCOMPARE(run(QStringLiteral("user rename t.brandt")), int(ExitUsage));
}

void PeopleCommandsTest::renamesAccounts()
{
    QCOMPARE(run(QStringLiteral("account rename 1001 Still~Water")), int(ExitFine));
    QVERIFY(
        call("GET", "/v1/accounts", tokenOf("tomas", "sample-tomas")).body.contains("Still Water"));
}

void PeopleCommandsTest::namesWhatIsNotThere_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *line, int code, const char *word) {
        QTest::newRow(line) << QString::fromLatin1(line) << code << QString::fromLatin1(word);
    };
    row("account rename 7 X", ExitFailed, "no account 7");
    row("account members 7", ExitFailed, "no account 7");
    row("account member 7 maja owner", ExitFailed, "no account 7");
    row("account member 1001 eve owner", ExitFailed, "no user \"eve\"");
    row("account member 1001 maja boss", ExitUsage, "role");
    row("account member x maja owner", ExitUsage, "number");
    row("account member 99999999999999999999999 maja owner", ExitUsage, "number");
    row("account remove-member 1001 eve", ExitFailed, "no user \"eve\"");
    row("account add ~", ExitUsage, "name of an account");
    row("account add X --number 0", ExitUsage, "--number");
    row("account", ExitUsage, "account add NAME");
    row("account dance", ExitUsage, "account add NAME");
    row("account list more", ExitUsage, "account add NAME");
    row("user password eve", ExitFailed, "no user \"eve\"");
    row("user disable eve", ExitFailed, "no user \"eve\"");
    row("user enable eve", ExitFailed, "no user \"eve\"");
    row("user sign-out eve", ExitFailed, "no user \"eve\"");
    row("user rename eve adam", ExitFailed, "no user \"eve\"");
    row("user add maja", ExitFailed, "already");
    row("user add eve --account 7", ExitFailed, "no account 7");
    row("user add eve --display-name ~", ExitUsage, "--display-name");
    row("user add ~", ExitUsage, "name");
    row("user add eve adam", ExitUsage, "user add NAME");
    row("user add eve", ExitFailed, "password");
}

void PeopleCommandsTest::namesWhatIsNotThere()
{
    QFETCH(QString, line);
    QFETCH(int, code);
    QFETCH(QString, word);
    QCOMPARE(run(line), code);
    QVERIFY2(m_output.contains(word.toUtf8()), m_output.constData());
    QCOMPARE(run(QStringLiteral("doctor")), int(ExitFine));
    QVERIFY2(m_output.contains("3 people, 2 accounts, 3 memberships"), m_output.constData());
}

void PeopleCommandsTest::refusesWhatIsNoNumberOfAnAccount_data()
{
    QTest::addColumn<QByteArray>("account");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a word") << QByteArray("one");
    QTest::newRow("0") << QByteArray("0");
    QTest::newRow("below 0") << QByteArray("-1001");
    QTest::newRow("blank around") << QByteArray(" 1001");
    QTest::newRow("past 64 bits") << QByteArray("18446744073709552617");
    QTest::newRow("very long") << QByteArray(5000, '1');
}

void PeopleCommandsTest::refusesWhatIsNoNumberOfAnAccount()
{
    QFETCH(QByteArray, account);
    const HttpReply reply = choose(tokenOf("tomas", "sample-tomas"), account);
    QCOMPARE(reply.status, 403);
    QCOMPARE(codeOf(reply), QByteArray("account-refused"));
}

void PeopleCommandsTest::asksTwiceAtATerminalAndShowsNothing_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<int>("code");
    QTest::newRow("the same") << QStringLiteral("typist") << QByteArray("typed 1") << int(ExitFine);
    QTest::newRow("another one") << QStringLiteral("mistypist") << QByteArray("typed 2")
                                 << int(ExitFailed);
}

void PeopleCommandsTest::asksTwiceAtATerminalAndShowsNothing()
{
    QFETCH(QString, user);
    QFETCH(QByteArray, second);
    QFETCH(int, code);
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    const QByteArray name = ::ptsname(terminal);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setChildProcessModifier([&name] {
        const int input = ::open(name.constData(), O_RDWR | O_NOCTTY);
        ::dup2(input, STDIN_FILENO);
        ::close(input);
    });
    process.start(QStringLiteral(ZEL_BIN_DIR "/zel-service"),
                  {QStringLiteral("user"), QStringLiteral("add"), user,
                   QStringLiteral("--sign-in-cost"), QStringLiteral("minimal"),
                   QStringLiteral("--database"), m_service->database});
    QByteArray shown;
    const auto waitFor = [&](const char *prompt) {
        while (!shown.contains(prompt) && process.waitForReadyRead())
            shown += process.readAll();
        return shown.contains(prompt);
    };
    QVERIFY2(waitFor("Password: "), shown.constData());
    QCOMPARE(::write(terminal, "typed 1\n", 8), 8);
    QVERIFY2(waitFor("Once more: "), shown.constData());
    const QByteArray line = second + '\n';
    QCOMPARE(::write(terminal, line.constData(), static_cast<size_t>(line.size())), line.size());
    QVERIFY(process.waitForFinished());
    shown += process.readAll();
    QCOMPARE(process.exitCode(), code);
    QVERIFY2(!shown.contains("typed"), shown.constData());
    ::fcntl(terminal, F_SETFL, O_NONBLOCK);
    char echoed[256];
    const auto count = ::read(terminal, echoed, sizeof echoed);
    QVERIFY(!QByteArray(echoed, std::max<qsizetype>(count, 0)).contains("typed"));
    ::close(terminal);
    QCOMPARE(signIn(user.toLatin1(), "typed 1").status, code == ExitFine ? 201 : 401);
}

ZEL_TEST_MAIN(PeopleCommandsTest)
#include "tst_peoplecommands.moc"
