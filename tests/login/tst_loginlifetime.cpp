// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "testsupport/testcase.h"

#include <QDialog>

using ZelWebServiceControls::Login;

namespace {

using Act = std::function<void(LoginFixture &)>;

void clickSignIn(LoginFixture &f)
{
    f.click("login");
}

void pressEnter(LoginFixture &f)
{
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
}

void pressSpace(LoginFixture &f)
{
    f.child("login")->setFocus();
    QTest::keyClick(f.child("login"), Qt::Key_Space);
}

} // namespace

Q_DECLARE_METATYPE(Act)

/// A host may destroy the control, or bring up a window, in whatever the control raises.
class tst_LoginLifetime : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void survivesBeingDeletedInSuccess_data() { addWays(); }

    void survivesBeingDeletedInSuccess();

    void survivesBeingDeletedInFailure_data() { addWays(); }

    void survivesBeingDeletedInFailure();

    void survivesBeingDeletedInRuntimeError_data() { addWays(); }

    void survivesBeingDeletedInRuntimeError();
    void survivesItsWindowBeingDeletedInSuccess();
    void survivesBeingDeletedByTheSecondButton_data();
    void survivesBeingDeletedByTheSecondButton();
    void signsInOnceInADialog();
    void leavesTheClientAlone();

private:
    static void addWays();
};

void tst_LoginLifetime::addWays()
{
    QTest::addColumn<Act>("act");
    QTest::newRow("click") << Act(clickSignIn);
    QTest::newRow("Enter in a box") << Act(pressEnter);
    QTest::newRow("Space on the button") << Act(pressSpace);
}

void tst_LoginLifetime::survivesBeingDeletedInSuccess()
{
    QFETCH(Act, act);
    LoginFixture f;
    f.bind();
    connect(f.login, &Login::Success, this, [&f] { delete f.login; });
    act(f);
    QVERIFY(!f.login);
    QVERIFY(f.trail.constLast().startsWith(QStringLiteral("Success")));
}

void tst_LoginLifetime::survivesBeingDeletedInFailure()
{
    QFETCH(Act, act);
    LoginFixture f;
    f.client.authenticated = false;
    f.bind();
    connect(f.login, &Login::Failure, this, [&f] { delete f.login; });
    act(f);
    QVERIFY(!f.login);
    QVERIFY(f.trail.constLast().startsWith(QStringLiteral("Failure")));
}

void tst_LoginLifetime::survivesBeingDeletedInRuntimeError()
{
    QFETCH(Act, act);
    LoginFixture f;
    f.client.accounts = nullptr;
    f.bind();
    connect(f.login, &Login::runtimeError, this, [&f] { delete f.login; });
    act(f);
    QVERIFY(!f.login);
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginLifetime::survivesItsWindowBeingDeletedInSuccess()
{
    ZelTest::RecordingClient client;
    client.accounts = ZelTest::accountList({{QStringLiteral("A"), 1}});
    QPointer<QWidget> window(new QWidget);
    auto *login = new Login(window);
    login->Init(&client, QStringLiteral("Stage"));
    window->show();
    connect(login, &Login::Success, this, [window] { delete window; });
    QTest::keyClick(login->findChild<QLineEdit *>(QStringLiteral("qxUserName")), Qt::Key_Enter);
    QVERIFY(!window);
}

void tst_LoginLifetime::survivesBeingDeletedByTheSecondButton_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("click") << false;
    QTest::newRow("Enter in the list") << true;
}

void tst_LoginLifetime::survivesBeingDeletedByTheSecondButton()
{
    QFETCH(bool, byKey);
    LoginFixture f;
    f.client.accounts = ZelTest::accountList({{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}});
    f.bind();
    f.click("login");
    connect(f.login, &Login::Success, this, [&f] { delete f.login; });
    if (byKey)
        QTest::keyClick(f.child("accountsList"), Qt::Key_Return);
    else
        f.click("selectAccount");
    QVERIFY(!f.login);
}

void tst_LoginLifetime::signsInOnceInADialog()
{
    // A dialog clicks its default button for an Enter key that nobody has taken.
    ZelTest::RecordingClient client;
    client.authenticated = false;
    QDialog dialog;
    auto *login = new Login(&dialog);
    login->Init(&client, QStringLiteral("Stage"));
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const char *name : {"qxUrl", "qxUserName", "qxPassword", "login"}) {
        auto *widget = login->findChild<QWidget *>(QLatin1String(name));
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
        QCOMPARE(client.takeCalls().size(), 1);
    }
    QVERIFY(dialog.isVisible());
}

void tst_LoginLifetime::leavesTheClientAlone()
{
    QPointer<ZelTest::RecordingClient> client(new ZelTest::RecordingClient);
    {
        Login login;
        login.Init(client, QStringLiteral("Stage"));
        QCOMPARE(client->parent(), nullptr);
    }
    QVERIFY(client);
    QCOMPARE(client->calls(), QStringList());
    delete client;
}

ZEL_TEST_MAIN(tst_LoginLifetime)
#include "tst_loginlifetime.moc"
