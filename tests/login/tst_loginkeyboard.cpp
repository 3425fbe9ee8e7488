// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "testsupport/testcase.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>

using ZelTest::accountList;

/// Using the control without a mouse, and what assistive technology is told.
class tst_LoginKeyboard : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void enterSignsInFromEveryBox();
    void enterDoesNothingBeforeTheControlIsBound();
    void enterThatIsHeldDownSignsInOnce();
    void enterContinuesFromTheAccounts();
    void tabGoesThroughTheCredentialsInReadingOrder();
    void tabLeavesOutTheAddressWhenItIsHidden();
    void tabGoesThroughTheAccountView();
    void tabKeepsTheControlsPlaceAmongTheHostsWidgets();
    void focusArrivesAtTheFirstBox();
    void focusMovesToTheAccountsAndBack();
    void focusElsewhereIsLeftAlone();
    void mnemonicsPressTheButtons();
    void everyEditorHasAName();
    void everyLabelHasItsEditor();
    void thePasswordIsHidden();

private:
    /// Where the focus is, and where the Tab key takes it.
    static QStringList tabStops(const LoginFixture &f, int count)
    {
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names << focused(f);
            QTest::keyClick(f.form.focusWidget(), Qt::Key_Tab);
        }
        return names;
    }

    static QString focused(const LoginFixture &f)
    {
        const QWidget *widget = f.form.focusWidget();
        return widget ? widget->objectName() : QString();
    }
};

void tst_LoginKeyboard::enterSignsInFromEveryBox()
{
    for (const char *name : {"qxUrl", "qxUserName", "qxPassword", "login"}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            LoginFixture f;
            f.bind();
            QTest::keyClick(f.child(name), key,
                            key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
            QCOMPARE(f.client.calls().size(), 3);
            QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
        }
    }
}

void tst_LoginKeyboard::enterDoesNothingBeforeTheControlIsBound()
{
    LoginFixture f;
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
    QCOMPARE(f.trail, QStringList());
}

void tst_LoginKeyboard::enterThatIsHeldDownSignsInOnce()
{
    LoginFixture f;
    f.client.authenticated = false;
    f.bind();
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QApplication::sendEvent(f.child("qxPassword"), &repeat);
    QCOMPARE(f.client.calls().size(), 1);
}

void tst_LoginKeyboard::enterContinuesFromTheAccounts()
{
    LoginFixture f;
    f.client.accounts = accountList({{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}});
    f.bind();
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
    QTest::keyClick(f.child("accountsList"), Qt::Key_Down);
    QTest::keyClick(f.child("accountsList"), Qt::Key_Return);
    QCOMPARE(f.client.calls().constLast(), QStringLiteral("setActiveAccount(\"2\")"));
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginKeyboard::tabGoesThroughTheCredentialsInReadingOrder()
{
    LoginFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.bind();
    f.login->setFocus();
    const QStringList expected{QStringLiteral("qxUrl"), QStringLiteral("qxUserName"),
                               QStringLiteral("qxPassword"), QStringLiteral("login"),
                               QStringLiteral("qxUrl")};
    QCOMPARE(tabStops(f, 5), expected);
    // The same after the address row and the account view have come and gone.
    f.login->SetControlShowLoginURL(false);
    f.client.accounts = accountList({});
    f.click("login");
    f.login->Reset();
    f.login->SetControlShowLoginURL(true);
    f.login->setFocus();
    QCOMPARE(tabStops(f, 5), expected);
    QTest::keyClick(f.child("qxUserName"), Qt::Key_Backtab);
    QCOMPARE(focused(f), QStringLiteral("qxUrl"));
}

void tst_LoginKeyboard::tabLeavesOutTheAddressWhenItIsHidden()
{
    LoginFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.login->SetControlShowLoginURL(false);
    f.login->setFocus();
    QCOMPARE(focused(f), QStringLiteral("qxUserName"));
    QTest::keyClick(f.form.focusWidget(), Qt::Key_Tab);
    QCOMPARE(focused(f), QStringLiteral("qxPassword"));
    QTest::keyClick(f.form.focusWidget(), Qt::Key_Tab);
    QCOMPARE(focused(f), QStringLiteral("qxUserName"));
}

void tst_LoginKeyboard::tabGoesThroughTheAccountView()
{
    LoginFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.client.accounts = accountList({});
    f.bind();
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
    f.login->setFocus();
    const QStringList expected{QStringLiteral("accountsList"), QStringLiteral("selectAccount"),
                               QStringLiteral("accountsList")};
    QCOMPARE(tabStops(f, 3), expected);
}

void tst_LoginKeyboard::tabKeepsTheControlsPlaceAmongTheHostsWidgets()
{
    LoginFixture f;
    QLineEdit before(&f.form);
    QLineEdit after(&f.form);
    before.setObjectName(QStringLiteral("before"));
    after.setObjectName(QStringLiteral("after"));
    before.show();
    after.show();
    QWidget::setTabOrder(&before, f.login);
    QWidget::setTabOrder(f.login, &after);
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.bind();
    const auto stops = [&](int count) {
        before.setFocus();
        return tabStops(f, count).join(u' ');
    };
    const QString all = QStringLiteral("before qxUrl qxUserName qxPassword login after before");
    QCOMPARE(stops(7), all);
    f.login->SetControlShowLoginURL(false);
    QCOMPARE(stops(6), QStringLiteral("before qxUserName qxPassword login after before"));
    f.client.accountAccepted = false;
    f.click("login");
    QCOMPARE(stops(5), QStringLiteral("before accountsList selectAccount after before"));
    f.client.accountAccepted = true;
    f.click("selectAccount");
    QCOMPARE(stops(3), QStringLiteral("before after before"));
    f.login->Reset();
    f.login->SetControlShowLoginURL(true);
    QCOMPARE(stops(7), all);
}

void tst_LoginKeyboard::focusArrivesAtTheFirstBox()
{
    LoginFixture f;
    f.login->setFocus();
    QCOMPARE(focused(f), QStringLiteral("qxUrl"));
    f.login->SetControlShowLoginURL(false);
    f.login->setFocus();
    QCOMPARE(focused(f), QStringLiteral("qxUserName"));
    f.login->SetControlShowLoginURL(true);
    f.login->setFocus();
    QCOMPARE(focused(f), QStringLiteral("qxUrl"));
}

void tst_LoginKeyboard::focusMovesToTheAccountsAndBack()
{
    LoginFixture f;
    QLineEdit hostsOwn(&f.form);
    hostsOwn.show();
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.client.accounts = accountList({});
    f.bind();
    f.child("qxPassword")->setFocus();
    // On its way it does not pass through a box of the host, which might act on it.
    QStringList visited;
    const QObject untilTheEnd;
    connect(qApp, &QApplication::focusChanged, &untilTheEnd, [&visited](QWidget *, QWidget *now) {
        visited << (now ? now->objectName() : QString());
    });
    QTest::keyClick(f.child("qxPassword"), Qt::Key_Return);
    QCOMPARE(visited, QStringList{QStringLiteral("accountsList")});
    visited.clear();
    f.login->Reset();
    QCOMPARE(visited, QStringList{QStringLiteral("qxPassword")});
}

void tst_LoginKeyboard::focusElsewhereIsLeftAlone()
{
    LoginFixture f;
    QLineEdit hostsOwn(&f.form);
    hostsOwn.setObjectName(QStringLiteral("hostsOwn"));
    hostsOwn.show();
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.client.accounts = accountList({});
    f.bind();
    f.child("qxPassword")->setFocus();
    hostsOwn.setFocus();
    f.child<QPushButton>("login")->click();
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    QCOMPARE(focused(f), QStringLiteral("hostsOwn"));
    f.login->Reset();
    QCOMPARE(focused(f), QStringLiteral("hostsOwn"));
}

void tst_LoginKeyboard::mnemonicsPressTheButtons()
{
    LoginFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.client.accounts = accountList({});
    f.bind();
    f.login->setFocus();
    QTest::keyClick(f.form.focusWidget(), Qt::Key_I, Qt::AltModifier);
    QTRY_COMPARE(f.view(), QStringLiteral("accounts"));
    QTest::keyClick(f.form.focusWidget(), Qt::Key_C, Qt::AltModifier);
    QTRY_COMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
}

void tst_LoginKeyboard::everyEditorHasAName()
{
    LoginFixture f;
    const std::pair<const char *, QString> names[]{
        {"qxUrl", QStringLiteral("Server address")}, {"qxUserName", QStringLiteral("User name")},
        {"qxPassword", QStringLiteral("Password")},  {"login", QStringLiteral("Sign In")},
        {"accountsList", QStringLiteral("Account")}, {"selectAccount", QStringLiteral("Continue")},
    };
    for (const auto &[name, text] : names) {
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(f.child(name));
        QVERIFY2(spoken, name);
        QCOMPARE(spoken->text(QAccessible::Name), text);
    }
}

void tst_LoginKeyboard::everyLabelHasItsEditor()
{
    LoginFixture f;
    QCOMPARE(f.child<QLabel>("urlLabel")->buddy(), f.child("qxUrl"));
    QCOMPARE(f.child<QLabel>("Label1")->buddy(), f.child("qxUserName"));
    QCOMPARE(f.child<QLabel>("Label2")->buddy(), f.child("qxPassword"));
    QCOMPARE(f.child<QLabel>("Label1")->text(), QStringLiteral("User Name"));
    for (const QLabel *label : f.login->findChildren<QLabel *>()) {
        QVERIFY2(label->buddy(), qPrintable(label->objectName()));
        QVERIFY(!label->text().isEmpty());
    }
}

void tst_LoginKeyboard::thePasswordIsHidden()
{
    LoginFixture f;
    f.type("qxPassword", QStringLiteral("s3cret"));
    QCOMPARE(f.child<QLineEdit>("qxPassword")->displayText().contains(QStringLiteral("s3")), false);
    QCOMPARE(f.login->Password(), QStringLiteral("s3cret"));
    const QAccessibleInterface *spoken =
        QAccessible::queryAccessibleInterface(f.child("qxPassword"));
    QVERIFY(spoken->state().passwordEdit);
}

ZEL_TEST_MAIN(tst_LoginKeyboard)
#include "tst_loginkeyboard.moc"
