// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "studio/errorcenter.h"
#include "studio/sampleworkspace.h"
#include "studio/settings.h"
#include "studio/signinpage.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using QXSC::ServiceError;
using Studio::SamplePerson;
using Studio::Settings;
using Studio::SignInPage;
using namespace StudioTesting;

namespace {

const QString maja = QStringLiteral("maja");
const QString secret = QStringLiteral("s3cret-of-maja");

QList<SamplePerson> people()
{
    return {{maja, QStringLiteral("Maja Lindqvist"), secret, QStringLiteral("2 accounts")},
            {QStringLiteral("tomas"), QStringLiteral("Tomás & Co"), QStringLiteral("pw-tomas"),
             QStringLiteral("1 account")},
            {QStringLiteral("ines"), QStringLiteral("Ines Okafor"), QStringLiteral("pw-ines"),
             QStringLiteral("no account yet")}};
}

ServiceError lost()
{
    return ServiceError(ServiceError::Kind::ConnectionLost,
                        QStringLiteral("The connection was lost. Try again."));
}

/// The page in a window, over a client that lets everybody in.
struct Page
{
    Page()
        : page(errors, settings)
    {
        client.accounts = ZelTest::accountList(
            {{QStringLiteral("Brightwater"), 7}, {QStringLiteral("Harbour"), 9}});
        page.resize(800, 640);
        StudioTesting::show(page);
    }

    void open() { page.open(&client); }

    void typeCredentials()
    {
        type(page, "qxUserName", maja);
        type(page, "qxPassword", secret);
    }

    QString box(const char *name) const { return child<QLineEdit>(page, name)->text(); }

    QString message() const
    {
        auto *label = child<QLabel>(page, "signInMessage");
        return label->isVisible() ? label->text() : QString();
    }

    QString title() const { return child<QLabel>(page, "signInTitle")->text(); }

    bool isShown(const char *name) const { return child(page, name)->isVisible(); }

    Settings settings;
    Studio::ErrorCenter errors;
    ZelTest::RecordingClient client;
    SignInPage page;
};

/// Everything Studio has written into its configuration folder.
QByteArray writtenSettings()
{
    QByteArray all;
    QDir folder(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/zel"));
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : files) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll();
    }
    return all;
}

} // namespace

class TestSignInPage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void hasTheServerAddressRow()
    {
        Page f;
        f.page.setServerHint(QStringLiteral("This computer"));
        QVERIFY(f.isShown("qxUrl"));
        QCOMPARE(child<QLineEdit>(f.page, "qxUrl")->placeholderText(),
                 QStringLiteral("This computer"));
        QVERIFY(f.page.server().isEmpty());
        type(f.page, "qxUrl", QStringLiteral(" media.example.org "));
        QCOMPARE(f.page.server(), QStringLiteral("media.example.org"));
    }

    void letsNobodyInBeforeThereIsAClient()
    {
        Page f;
        f.page.setStarting(true);
        QCOMPARE(f.message(), QStringLiteral("Starting the service on this computer…"));
        QVERIFY(!f.isShown("login"));
        f.page.setStarting(false);
        f.open();
        QVERIFY(f.message().isEmpty());
        QVERIFY(f.isShown("login"));
    }

    void namesThePeopleOfTheSampleAndFillsTheFirstIn()
    {
        Page f;
        QVERIFY(!f.isShown("samplePeople"));
        f.page.offerPeople(people());
        f.open();
        QVERIFY(f.isShown("samplePeople"));
        QCOMPARE(child<QPushButton>(f.page, "samplePerson_tomas")->text(),
                 QStringLiteral("Tomás && Co\n1 account"));
        QCOMPARE(f.box("qxUserName"), maja);
        QCOMPARE(f.box("qxPassword"), secret);
        QCOMPARE(QApplication::focusWidget(), child(f.page, "login"));
        click(f.page, "samplePerson_tomas");
        QCOMPARE(f.box("qxUserName"), QStringLiteral("tomas"));
        QCOMPARE(f.box("qxPassword"), QStringLiteral("pw-tomas"));
        press(Qt::Key_Space); // the keyboard is on Sign In
        QCOMPARE(f.client.calls().constFirst(),
                 QStringLiteral("authenticate(\"\", \"tomas\", \"pw-tomas\", \"Studio\", \"\", "
                                "False, True)"));
    }

    void fillsTheRememberedPersonIn()
    {
        Settings().setUserName(QStringLiteral("ines"));
        Page f;
        f.page.offerPeople(people());
        QCOMPARE(f.box("qxUserName"), QStringLiteral("ines"));
        QCOMPARE(f.box("qxPassword"), QStringLiteral("pw-ines"));
    }

    void leavesARememberedStrangerAlone()
    {
        Settings().setUserName(QStringLiteral("zoe"));
        Page f;
        f.page.offerPeople(people());
        f.open();
        QCOMPARE(f.box("qxUserName"), QStringLiteral("zoe"));
        QVERIFY(f.box("qxPassword").isEmpty());
        QCOMPARE(QApplication::focusWidget(), child(f.page, "qxPassword"));
    }

    void doesNotGiveARememberedServerTheSamplesPassword()
    {
        Settings().setServer(QStringLiteral("https://media.example.org"));
        Settings().setUserName(maja);
        Page f;
        f.page.offerPeople(people());
        QCOMPARE(f.box("qxUrl"), QStringLiteral("https://media.example.org"));
        QCOMPARE(f.box("qxUserName"), maja);
        QVERIFY(f.box("qxPassword").isEmpty());
        // Choosing one is choosing this computer.
        click(f.page, "samplePerson_maja");
        QVERIFY(f.box("qxUrl").isEmpty());
        QCOMPARE(f.box("qxPassword"), secret);
    }

    void startsAtTheUserNameWhenNothingIsKnown()
    {
        Page f;
        f.open();
        QCOMPARE(QApplication::focusWidget(), child(f.page, "qxUserName"));
    }

    void aRefusalIsSaidOnThePage()
    {
        Page f;
        f.open();
        f.client.authenticated = false;
        f.typeCredentials();
        press(Qt::Key_Return);
        QCOMPARE(f.message(), QStringLiteral("The service did not accept this user name and "
                                             "password. Check both and try again."));
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.isShown("qxUserName"));
        // The next attempt starts with typing.
        auto *password = child<QLineEdit>(f.page, "qxPassword");
        QCOMPARE(QApplication::focusWidget(), password);
        QCOMPARE(password->selectedText().size(), secret.size());
        f.client.authenticated = true;
        press(Qt::Key_Return);
        QVERIFY(f.message().isEmpty());
    }

    void severalAccountsAreOffered()
    {
        Page f;
        const QSignalSpy signedIn(&f.page, &SignInPage::signedIn);
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        QCOMPARE(f.title(), QStringLiteral("Choose an account"));
        QCOMPARE(child<QLabel>(f.page, "signInSubtitle")->text(),
                 QStringLiteral("Signed in as maja."));
        QVERIFY(f.isShown("signInBack"));
        QVERIFY(signedIn.isEmpty());
        QTest::keyClick(child(f.page, "accountsList"), Qt::Key_Down);
        click(f.page, "selectAccount");
        QCOMPARE(signedIn.size(), 1);
        QCOMPARE(f.page.accountName(), QStringLiteral("Harbour"));
        QCOMPARE(f.page.userName(), maja);
        QCOMPARE(f.client.calls().constLast(), QStringLiteral("setActiveAccount(\"9\")"));
    }

    void theSameAccountIsOfferedNextTime()
    {
        Page f;
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        QTest::keyClick(child(f.page, "accountsList"), Qt::Key_Down);
        click(f.page, "selectAccount");
        f.page.returnToCredentials();
        type(f.page, "qxPassword", secret);
        press(Qt::Key_Return);
        QCOMPARE(child<QComboBox>(f.page, "accountsList")->currentText(),
                 QStringLiteral("Harbour"));
    }

    void aPersonWithoutAnAccountIsTold()
    {
        Page f;
        f.client.accounts = ZelTest::accountList({});
        f.client.accountAccepted = false;
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        QCOMPARE(f.title(), QStringLiteral("No account yet"));
        const QString told = f.message();
        QVERIFY(told.startsWith(QLatin1String("This user has no account yet.")));
        click(f.page, "selectAccount");
        QCOMPARE(f.client.calls().constLast(), QStringLiteral("setActiveAccount(\"0\")"));
        QCOMPARE(f.message(), told);
        QVERIFY(!f.errors.hasProblem());
    }

    void aRefusedAccountIsSaid_data()
    {
        QTest::addColumn<int>("accounts");
        QTest::newRow("taken by itself") << 1;
        QTest::newRow("chosen") << 2;
    }

    void aRefusedAccountIsSaid()
    {
        QFETCH(const int, accounts);
        Page f;
        if (accounts == 1)
            f.client.accounts = ZelTest::accountList({{QStringLiteral("Brightwater"), 7}});
        f.client.accountAccepted = false;
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        if (accounts > 1) {
            QVERIFY(f.message().isEmpty());
            click(f.page, "selectAccount");
        }
        QVERIFY(f.message().startsWith(
            QLatin1String("The service does not let you work in this account.")));
        QVERIFY(f.isShown("signInBack"));
    }

    void goingBackEndsTheSessionAndForgetsThePassword()
    {
        Page f;
        const QSignalSpy abandoned(&f.page, &SignInPage::abandoned);
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        click(f.page, "signInBack");
        QCOMPARE(abandoned.size(), 1);
        QCOMPARE(f.title(), QStringLiteral("Sign in to Studio"));
        QVERIFY(f.isShown("login"));
        QVERIFY(!f.isShown("signInBack"));
        QCOMPARE(f.box("qxUserName"), maja);
        QVERIFY(f.box("qxPassword").isEmpty());
        QCOMPARE(QApplication::focusWidget(), child(f.page, "qxPassword"));
        f.page.returnToCredentials();
        QCOMPARE(abandoned.size(), 1);
    }

    void anotherPersonCanBeFilledInInsteadOfChoosingAnAccount()
    {
        Page f;
        const QSignalSpy abandoned(&f.page, &SignInPage::abandoned);
        f.page.offerPeople(people());
        f.open();
        click(f.page, "login");
        click(f.page, "samplePerson_ines");
        QCOMPARE(abandoned.size(), 1);
        QVERIFY(f.isShown("login"));
        QCOMPARE(f.box("qxPassword"), QStringLiteral("pw-ines"));
    }

    void remembersServerAndUserNameButNoPassword()
    {
        {
            Page f;
            f.open();
            type(f.page, "qxUrl", QStringLiteral("https://media.example.org"));
            f.typeCredentials();
            click(f.page, "login");
            QVERIFY(f.settings.userName().isEmpty()); // not before it has worked
            click(f.page, "selectAccount");
            QVERIFY(f.box("qxPassword").isEmpty());
            QCOMPARE(f.settings.server(), QStringLiteral("https://media.example.org"));
        }
        // The file as it lies on the disk.
        const QByteArray written = writtenSettings();
        QVERIFY(written.contains("maja"));
        QVERIFY(written.contains("media.example.org"));
        QVERIFY(!written.contains(secret.toUtf8()));
        QVERIFY(!written.contains(secret.toUtf8().toBase64()));
        Page next;
        QCOMPARE(next.box("qxUrl"), QStringLiteral("https://media.example.org"));
        QCOMPARE(next.box("qxUserName"), maja);
        QVERIFY(next.box("qxPassword").isEmpty());
    }

    void aFailingCallIsReportedAndRetried_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QStringList>("again");
        const QString authenticate =
            QStringLiteral("authenticate(\"\", \"maja\", \"%1\", \"Studio\", \"\", False, True)")
                .arg(secret);
        QTest::newRow("authenticate")
            << "authenticate" << QStringList{authenticate, "getAccounts()"};
        QTest::newRow("getAccounts") << "getAccounts" << QStringList{authenticate, "getAccounts()"};
        QTest::newRow("setActiveAccount")
            << "setActiveAccount" << QStringList{"setActiveAccount(\"7\")"};
    }

    void aFailingCallIsReportedAndRetried()
    {
        QFETCH(const QString, operation);
        Page f;
        const QSignalSpy signedIn(&f.page, &SignInPage::signedIn);
        f.open();
        f.typeCredentials();
        f.client.failNext(operation, lost());
        click(f.page, "login");
        if (operation == QLatin1String("setActiveAccount"))
            click(f.page, "selectAccount");
        QCOMPARE(f.errors.problem().what, QStringLiteral("The connection was lost."));
        QVERIFY(f.errors.canRetry());
        QVERIFY(f.message().isEmpty());
        f.client.takeCalls();
        f.errors.retry();
        QTEST(f.client.takeCalls(), "again");
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(signedIn.size(), operation == QLatin1String("setActiveAccount") ? 1 : 0);
    }

    void aRetryThatFailsAgainReplacesTheProblem()
    {
        Page f;
        f.open();
        f.typeCredentials();
        f.client.failNext(QStringLiteral("authenticate"), lost());
        click(f.page, "login");
        f.client.failNext(
            QStringLiteral("authenticate"),
            ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No answer came. Wait.")));
        f.errors.retry();
        QCOMPARE(f.errors.problem().what, QStringLiteral("No answer came."));
        QVERIFY(f.errors.canRetry());
    }

    void aRetryThatIsRefusedWithdrawsTheProblem()
    {
        Page f;
        f.open();
        f.typeCredentials();
        f.client.failNext(QStringLiteral("authenticate"), lost());
        click(f.page, "login");
        f.client.authenticated = false;
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.message().startsWith(QLatin1String("The service did not accept")));
    }

    void signingInByHandWithdrawsTheProblem()
    {
        Page f;
        f.open();
        f.typeCredentials();
        f.client.failNext(QStringLiteral("authenticate"), lost());
        click(f.page, "login");
        QVERIFY(f.errors.hasProblem());
        click(f.page, "login");
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.title(), QStringLiteral("Choose an account"));
    }

    void anAnswerOfNoAccountsAtAllIsAnError()
    {
        Page f;
        f.client.accounts = nullptr;
        f.open();
        f.typeCredentials();
        click(f.page, "login");
        QVERIFY(f.errors.hasProblem());
        QVERIFY(f.errors.problem().details.contains(QLatin1String("91")));
        QVERIFY(f.isShown("login"));
    }

    void readsThePeopleOfASampleFolder()
    {
        const QString folder = QStringLiteral(ZEL_SOURCE_DIR "/samples/workspace");
        const QList<SamplePerson> found = Studio::samplePeople(folder);
        QCOMPARE(found.size(), 3);
        QCOMPARE(found.at(0).userName, maja);
        QCOMPARE(found.at(0).note, QStringLiteral("2 accounts"));
        QCOMPARE(found.at(1).note, QStringLiteral("1 account"));
        QCOMPARE(found.at(2).note, QStringLiteral("no account yet"));
        QVERIFY(Studio::samplePeople(QStringLiteral("/nowhere")).isEmpty());
        QCOMPARE(Studio::sampleFolder(), QDir(folder).canonicalPath());
    }
};

ZEL_TEST_MAIN(TestSignInPage)
#include "tst_signinpage.moc"
