// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "testsupport/testcase.h"

#include <QGuiApplication>
#include <QScopeGuard>

/// Binding the control to a client, and what it looks like before that.
class tst_LoginInit : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void startsWithTheCredentialsAndWithoutAButton();
    void showsTheButtonOnceBound();
    void refusesAnEmptyApplicationName_data();
    void refusesAnEmptyApplicationName();
    void bindsAfterARefusal();
    void keepsTheFormerBindingWhenRefused();
    void bindsToTheLastClientAndName();
    void bindingChangesNoViewAndCallsNothing();
    void acceptsNoClientAndFailsOnTheClick();
    void failsOnceTheClientIsGone();
    void failsWhenTheClientGoesBetweenTheTwoClicks();
};

void tst_LoginInit::startsWithTheCredentialsAndWithoutAButton()
{
    LoginFixture f;
    QCOMPARE(f.view(), QStringLiteral("credentials"));
    QVERIFY(!f.isShown("login"));
    for (const char *name :
         {"urlLabel", "qxUrl", "upFrame", "Label1", "qxUserName", "Label2", "qxPassword"})
        QVERIFY2(f.isShown(name), name);
    for (const char *name : {"selectAccountFrame", "accountsList", "selectAccount"})
        QVERIFY2(!f.isShown(name), name);
    QCOMPARE(f.login->UserName(), QString());
    QCOMPARE(f.login->LoginURL(), QString());
    QCOMPARE(f.login->Password(), QString());
}

void tst_LoginInit::showsTheButtonOnceBound()
{
    LoginFixture f;
    f.bind();
    QVERIFY(f.isShown("login"));
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginInit::refusesAnEmptyApplicationName_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("display name") << QStringLiteral("Stage Manager");
    QTest::newRow("no display name") << QString();
}

void tst_LoginInit::refusesAnEmptyApplicationName()
{
    QFETCH(QString, title);
    QGuiApplication::setApplicationDisplayName(title);
    const auto restored = qScopeGuard([] { QGuiApplication::setApplicationDisplayName({}); });
    LoginFixture f;
    f.boxes.click(QMessageBox::Ok);
    f.login->Init(&f.client, QString());
    QCOMPARE(f.boxes.shown().size(), 1);
    const auto box = f.boxes.shown().constFirst();
    QCOMPARE(box.text,
             QStringLiteral("Please supply a valid application name to the Login component"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.title, QGuiApplication::applicationDisplayName());
    QVERIFY(!f.isShown("login"));
    QCOMPARE(f.trail, QStringList());
}

void tst_LoginInit::bindsAfterARefusal()
{
    LoginFixture f;
    f.boxes.press(Qt::Key_Escape);
    f.login->Init(&f.client, QString());
    f.bind();
    QVERIFY(f.isShown("login"));
    f.click("login");
    QCOMPARE(f.trail.constLast(), QStringLiteral("Success | neither view"));
    QCOMPARE(f.boxes.shown().size(), 1);
}

void tst_LoginInit::keepsTheFormerBindingWhenRefused()
{
    LoginFixture f;
    ZelTest::RecordingClient other;
    f.bind();
    f.boxes.click(QMessageBox::Ok);
    f.login->Init(&other, QStringLiteral(""));
    QVERIFY(f.isShown("login"));
    f.click("login");
    QCOMPARE(other.calls(), QStringList());
    QCOMPARE(f.client.calls().constFirst(),
             QStringLiteral("authenticate(\"\", \"\", \"\", \"Stage\", \"\", False, True)"));
}

void tst_LoginInit::bindsToTheLastClientAndName()
{
    LoginFixture f;
    ZelTest::RecordingClient other;
    f.bind();
    f.login->Init(&other, QStringLiteral(" "));
    f.click("login");
    QCOMPARE(f.client.calls(), QStringList());
    QCOMPARE(other.calls().constFirst(),
             QStringLiteral("authenticate(\"\", \"\", \"\", \" \", \"\", False, True)"));
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginInit::bindingChangesNoViewAndCallsNothing()
{
    LoginFixture f;
    f.client.accounts = ZelTest::accountList({});
    f.bind();
    QCOMPARE(f.client.calls(), QStringList());
    f.click("login");
    QCOMPARE(f.view(), QStringLiteral("accounts"));
    f.bind();
    QCOMPARE(f.view(), QStringLiteral("accounts"));
}

void tst_LoginInit::acceptsNoClientAndFailsOnTheClick()
{
    LoginFixture f;
    f.login->Init(nullptr, QStringLiteral("Stage"));
    QVERIFY(f.isShown("login"));
    QCOMPARE(f.trail, QStringList());
    f.click("login");
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91 | credentials")});
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_LoginInit::failsOnceTheClientIsGone()
{
    LoginFixture f;
    {
        ZelTest::RecordingClient shortLived;
        f.login->Init(&shortLived, QStringLiteral("Stage"));
    }
    f.click("login");
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91 | credentials")});
}

void tst_LoginInit::failsWhenTheClientGoesBetweenTheTwoClicks()
{
    LoginFixture f;
    auto client = std::make_unique<ZelTest::RecordingClient>();
    client->accounts = ZelTest::accountList({{QStringLiteral("A"), 1}, {QStringLiteral("B"), 2}});
    f.login->Init(client.get(), QStringLiteral("Stage"));
    f.click("login");
    client.reset();
    f.click("selectAccount");
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91 | accounts")});
    QCOMPARE(f.view(), QStringLiteral("accounts"));
}

ZEL_TEST_MAIN(tst_LoginInit)
#include "tst_logininit.moc"
