// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "testsupport/testcase.h"

using ZelTest::accountList;

namespace {

/// A client that answers without writing to its out arguments.
class SilentClient : public ZelTest::RecordingClient
{
    using RecordingClient::RecordingClient;

    void authenticate(const QString &, const QString &, const QString &, const QString &,
                      const QString &, bool, bool, bool &) override
    {
        record(QStringLiteral("authenticate"));
    }
};

} // namespace

/// What a click on the two buttons does: the calls and events, in order, and the view meanwhile.
class tst_LoginSequence : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void passesWhatIsTypedAndTheConstants();
    void passesTheProxySwitch();
    void choosesASingleAccountByItself();
    void waitsForAPersonWithSeveralAccounts();
    void listsNamesAndNumbersInTheOrderOfTheAnswer();
    void sendsTheNumberOfTheChosenLine();
    void sendsZeroWhenThereIsNoAccount();
    void sendsNegativeAndLargeNumbersAsDecimalText();
    void takesANewListOnEverySignIn();
    void raisesFailureWhenRefused();
    void countsAnUnansweredSuccessAsARefusal();
    void returnsToTheCredentialsWhenRefusedInAnotherView();
    void staysInTheAccountViewWhenTheAccountIsRefused();
    void staysInTheAccountViewWhenTheSingleAccountIsRefused();
    void signsInAgainAfterAReset();
    void keepsWhatWasTypedOnReset();
    void showsAccountNamesAsTheyStand();
    void readsTheBoxesAtTheMomentOfTheClick();
};

void tst_LoginSequence::passesWhatIsTypedAndTheConstants()
{
    LoginFixture f;
    f.bind();
    f.typeCredentials();
    f.click("login");
    QCOMPARE(f.client.calls().constFirst(),
             QStringLiteral("authenticate(\"https://media.example.org\", \"mira\", \"s3cret\", "
                            "\"Stage\", \"\", False, True)"));
}

void tst_LoginSequence::passesTheProxySwitch()
{
    LoginFixture f;
    f.login->setMode(Zel::Control::Mode::Design);
    f.login->setUseProxy(true);
    f.login->setMode(Zel::Control::Mode::Run);
    f.bind();
    f.click("login");
    QCOMPARE(f.client.calls().constFirst(),
             QStringLiteral("authenticate(\"\", \"\", \"\", \"Stage\", \"\", True, True)"));
}

void tst_LoginSequence::choosesASingleAccountByItself()
{
    LoginFixture f;
    f.bind();
    f.typeCredentials();
    f.click("login");
    const QStringList expected{
        QStringLiteral("authenticate(\"https://media.example.org\", \"mira\", \"s3cret\", "
                       "\"Stage\", \"\", False, True) | credentials"),
        QStringLiteral("getAccounts() | credentials"),
        QStringLiteral("setActiveAccount(\"7\") | accounts"),
        QStringLiteral("Success | neither view"),
    };
    QCOMPARE(f.trail, expected);
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginSequence::waitsForAPersonWithSeveralAccounts()
{
    LoginFixture f;
    f.client.accounts =
        accountList({{QStringLiteral("Aurora"), 7}, {QStringLiteral("Borealis"), 8}});
    f.bind();
    f.click("login");
    QCOMPARE(f.client.takeCalls().size(), 2);
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    QCOMPARE(f.child<QComboBox>("accountsList")->currentIndex(), 0);
    f.takeTrail();
    f.click("selectAccount");
    const QStringList expected{QStringLiteral("setActiveAccount(\"7\") | accounts"),
                               QStringLiteral("Success | neither view")};
    QCOMPARE(f.trail, expected);
}

void tst_LoginSequence::listsNamesAndNumbersInTheOrderOfTheAnswer()
{
    LoginFixture f;
    f.client.accounts = accountList({{QStringLiteral("Zenith"), 3},
                                     {QStringLiteral("Aurora"), 2147483647},
                                     {QStringLiteral("Zenith"), -1}});
    f.bind();
    f.click("login");
    auto *list = f.child<QComboBox>("accountsList");
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->itemText(0), QStringLiteral("Zenith"));
    QCOMPARE(list->itemText(1), QStringLiteral("Aurora"));
    QCOMPARE(list->itemText(2), QStringLiteral("Zenith"));
    QCOMPARE(list->itemData(0), QVariant(3));
    QCOMPARE(list->itemData(1), QVariant(2147483647));
    QCOMPARE(list->itemData(2), QVariant(-1));
}

void tst_LoginSequence::sendsTheNumberOfTheChosenLine()
{
    LoginFixture f;
    f.client.accounts = accountList({{QStringLiteral("Aurora"), 7},
                                     {QStringLiteral("Borealis"), 8},
                                     {QStringLiteral("Zenith"), 9}});
    f.bind();
    f.click("login");
    QTest::keyClick(f.child("accountsList"), Qt::Key_Down);
    QTest::keyClick(f.child("accountsList"), Qt::Key_Down);
    f.click("selectAccount");
    QCOMPARE(f.client.calls().constLast(), QStringLiteral("setActiveAccount(\"9\")"));
}

void tst_LoginSequence::sendsZeroWhenThereIsNoAccount()
{
    LoginFixture f;
    f.client.accounts = accountList({});
    f.bind();
    f.click("login");
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    QCOMPARE(f.child<QComboBox>("accountsList")->count(), 0);
    QCOMPARE(f.client.takeCalls().size(), 2);
    f.click("selectAccount");
    QCOMPARE(f.client.calls(), QStringList{QStringLiteral("setActiveAccount(\"0\")")});
}

void tst_LoginSequence::sendsNegativeAndLargeNumbersAsDecimalText()
{
    for (const qint32 number : {-2147483647 - 1, -1, 0, 1000000, 2147483647}) {
        LoginFixture f;
        f.client.accounts = accountList({{QStringLiteral("Aurora"), number}});
        f.bind();
        f.click("login");
        QCOMPARE(f.client.calls().constLast(),
                 QStringLiteral("setActiveAccount(\"%1\")").arg(QString::number(number)));
    }
}

void tst_LoginSequence::takesANewListOnEverySignIn()
{
    LoginFixture f;
    f.client.accounts =
        accountList({{QStringLiteral("Aurora"), 7}, {QStringLiteral("Borealis"), 8}});
    f.bind();
    f.click("login");
    QTest::keyClick(f.child("accountsList"), Qt::Key_Down);
    f.login->Reset();
    f.client.accounts = accountList({{QStringLiteral("Zenith"), 9}, {QStringLiteral("Aurora"), 7}});
    f.click("login");
    auto *list = f.child<QComboBox>("accountsList");
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->currentIndex(), 0);
    QCOMPARE(list->currentText(), QStringLiteral("Zenith"));
}

void tst_LoginSequence::raisesFailureWhenRefused()
{
    LoginFixture f;
    f.client.authenticated = false;
    f.bind();
    f.typeCredentials();
    f.click("login");
    QCOMPARE(f.trail.size(), 2);
    QVERIFY(f.trail.at(0).startsWith(QStringLiteral("authenticate(")));
    QCOMPARE(f.trail.at(1), QStringLiteral("Failure | credentials"));
    QCOMPARE(f.boxes.shown().size(), 0);
    QCOMPARE(f.login->UserName(), QStringLiteral("mira"));
    QCOMPARE(f.login->Password(), QStringLiteral("s3cret"));
}

void tst_LoginSequence::countsAnUnansweredSuccessAsARefusal()
{
    LoginFixture f;
    SilentClient client;
    f.login->Init(&client, QStringLiteral("Stage"));
    f.click("login");
    QCOMPARE(f.trail, QStringList{QStringLiteral("Failure | credentials")});
}

void tst_LoginSequence::returnsToTheCredentialsWhenRefusedInAnotherView()
{
    LoginFixture f;
    f.client.authenticated = false;
    f.bind();
    // Whatever was on screen when the answer came, a refusal shows the credentials.
    f.client.atCall = [&f](const QString &) {
        f.child("loginFrame")->hide();
        f.child("selectAccountFrame")->show();
    };
    f.click("login");
    QCOMPARE(f.trail, QStringList{QStringLiteral("Failure | credentials")});
}

void tst_LoginSequence::staysInTheAccountViewWhenTheAccountIsRefused()
{
    LoginFixture f;
    f.client.accounts =
        accountList({{QStringLiteral("Aurora"), 7}, {QStringLiteral("Borealis"), 8}});
    f.client.accountAccepted = false;
    f.bind();
    f.click("login");
    f.takeTrail();
    f.click("selectAccount");
    QCOMPARE(f.trail, QStringList{QStringLiteral("setActiveAccount(\"7\") | accounts")});
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    QCOMPARE(f.child<QComboBox>("accountsList")->count(), 2);

    f.client.accountAccepted = true;
    QTest::keyClick(f.child("accountsList"), Qt::Key_Down);
    f.click("selectAccount");
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginSequence::staysInTheAccountViewWhenTheSingleAccountIsRefused()
{
    LoginFixture f;
    f.client.accountAccepted = false;
    f.bind();
    f.click("login");
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    QVERIFY(f.trail.constLast().startsWith(QStringLiteral("setActiveAccount")));
}

void tst_LoginSequence::signsInAgainAfterAReset()
{
    LoginFixture f;
    f.bind();
    f.click("login");
    QCOMPARE(f.view(), QStringLiteral("neither view"));
    f.login->Reset();
    QCOMPARE(f.view(), QStringLiteral("credentials"));
    QVERIFY(f.isShown("login"));
    f.takeTrail();
    f.click("login");
    QCOMPARE(f.trail.size(), 4);
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginSequence::keepsWhatWasTypedOnReset()
{
    LoginFixture f;
    f.client.accounts = accountList({});
    f.bind();
    f.typeCredentials();
    f.click("login");
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    f.login->Reset();
    QCOMPARE(f.view(), QStringLiteral("credentials"));
    QCOMPARE(f.login->LoginURL(), QStringLiteral("https://media.example.org"));
    QCOMPARE(f.login->UserName(), QStringLiteral("mira"));
    QCOMPARE(f.login->Password(), QStringLiteral("s3cret"));
}

void tst_LoginSequence::showsAccountNamesAsTheyStand()
{
    LoginFixture f;
    const QString name = QStringLiteral("  <b>R&D</b>\r\nNorth \U0001F30C") + QString(40000, u'x');
    f.client.accounts = accountList({{name, 1}, {QString(), 2}});
    f.bind();
    f.click("login");
    QCOMPARE(f.child<QComboBox>("accountsList")->itemText(0), name);
    QCOMPARE(f.child<QComboBox>("accountsList")->itemText(1), QString());
}

void tst_LoginSequence::readsTheBoxesAtTheMomentOfTheClick()
{
    LoginFixture f;
    f.bind();
    f.type("qxUserName", QStringLiteral("mira"));
    f.client.atCall = [&f](const QString &) { f.login->setUserName(QStringLiteral("later")); };
    f.click("login");
    QCOMPARE(f.client.calls().constFirst(),
             QStringLiteral("authenticate(\"\", \"mira\", \"\", \"Stage\", \"\", False, True)"));
    QCOMPARE(f.login->UserName(), QStringLiteral("later"));
}

ZEL_TEST_MAIN(tst_LoginSequence)
#include "tst_loginsequence.moc"
