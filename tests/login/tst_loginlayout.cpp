// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "platform/widgets/latebound.h"
#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>

using ZelWebServiceControls::Login;

/// Where the children are. Runs at 96 dots per inch and, as a test of its own, at 144.
class tst_LoginLayout : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void runsAtTheWantedResolution();
    void placesTheRowsAtOnce();
    void movesTheRowsToExactTwips();
    void keepsTheExactTopThroughResizes();
    void showsAndHidesTheAddressRow();
    void marksOnlyThePropertyAsChanged();
    void keepsTheAddressWhileItIsHidden();
    void letsNothingOverlap_data();
    void letsNothingOverlap();
    void centresInAWideForm();
    void survivesAFormWithoutRoom();
    void asksForRoomForAllRows();

private:
    static double top(const LoginFixture &f, const char *name)
    {
        return Zel::LateBound(f.child(name)).get(QStringLiteral("Top")).toDouble();
    }

    static QRect inControl(const LoginFixture &f, const char *name)
    {
        const QWidget *child = f.child(name);
        return QRect(child->mapTo(f.login.data(), QPoint()), child->size());
    }

    static int dpi()
    {
        return qEnvironmentVariableIsSet("EXPECTED_DPI")
                   ? qEnvironmentVariableIntValue("EXPECTED_DPI")
                   : 96;
    }
};

void tst_LoginLayout::runsAtTheWantedResolution()
{
    LoginFixture f;
    QCOMPARE(Zel::logicalDpi(f.login), dpi());
}

void tst_LoginLayout::placesTheRowsAtOnce()
{
    const Login login;
    auto *rows = login.findChild<QWidget *>(QStringLiteral("upFrame"));
    QCOMPARE(Zel::LateBound(rows).get(QStringLiteral("Top")).toDouble(), 840.0);
    QCOMPARE(login.ShowLoginURL(), true);
    QCOMPARE(login.UseProxy(), false);
}

void tst_LoginLayout::movesTheRowsToExactTwips()
{
    LoginFixture f;
    QCOMPARE(top(f, "upFrame"), 840.0);
    QCOMPARE(f.child("upFrame")->y(), 840 * dpi() / 1440);
    f.login->SetControlShowLoginURL(false);
    QCOMPARE(top(f, "upFrame"), 360.0);
    QCOMPARE(f.child("upFrame")->y(), 360 * dpi() / 1440);
    f.login->SetControlShowLoginURL(true);
    QCOMPARE(top(f, "upFrame"), 840.0);
    f.login->setShowLoginURL(false);
    QCOMPARE(top(f, "upFrame"), 360.0);
    Zel::LateBound(f.login).call(QStringLiteral("SetControlShowLoginURL"), {true});
    QCOMPARE(top(f, "upFrame"), 840.0);
}

void tst_LoginLayout::keepsTheExactTopThroughResizes()
{
    LoginFixture f;
    for (const QSize &size : {QSize(301, 203), QSize(777, 555), QSize(40, 40), QSize(480, 320)}) {
        f.login->resize(size);
        QCOMPARE(top(f, "upFrame"), 840.0);
    }
    f.login->SetControlShowLoginURL(false);
    for (const QSize &size : {QSize(301, 203), QSize(777, 555)}) {
        f.login->resize(size);
        QCOMPARE(top(f, "upFrame"), 360.0);
    }
}

void tst_LoginLayout::showsAndHidesTheAddressRow()
{
    LoginFixture f;
    f.login->SetControlShowLoginURL(false);
    QVERIFY(!f.isShown("urlLabel"));
    QVERIFY(!f.isShown("qxUrl"));
    QVERIFY(f.isShown("qxUserName"));
    QCOMPARE(f.login->ShowLoginURL(), false);
    f.login->SetControlShowLoginURL(true);
    QVERIFY(f.isShown("urlLabel"));
    QVERIFY(f.isShown("qxUrl"));
    QCOMPARE(f.login->ShowLoginURL(), true);
}

void tst_LoginLayout::marksOnlyThePropertyAsChanged()
{
    LoginFixture f;
    const QSignalSpy changed(f.login, &Login::changed);
    f.login->SetControlShowLoginURL(false);
    f.login->SetControlShowLoginURL(true);
    QCOMPARE(changed.count(), 0);
    f.login->setShowLoginURL(false);
    QCOMPARE(changed.count(), 1);
}

void tst_LoginLayout::keepsTheAddressWhileItIsHidden()
{
    LoginFixture f;
    f.login->setLoginURL(QStringLiteral("https://media.example.org"));
    f.login->SetControlShowLoginURL(false);
    f.bind();
    f.click("login");
    QVERIFY(f.client.calls().constFirst().startsWith(
        QStringLiteral("authenticate(\"https://media.example.org\"")));
}

void tst_LoginLayout::letsNothingOverlap_data()
{
    QTest::addColumn<bool>("showAddress");
    QTest::newRow("with the address row") << true;
    QTest::newRow("without the address row") << false;
}

void tst_LoginLayout::letsNothingOverlap()
{
    QFETCH(bool, showAddress);
    LoginFixture f;
    f.bind();
    f.login->SetControlShowLoginURL(showAddress);
    f.login->resize(f.login->sizeHint());
    QList<const char *> names{"Label1", "qxUserName", "Label2", "qxPassword", "login"};
    if (showAddress)
        names << "urlLabel"
              << "qxUrl";
    for (const char *a : std::as_const(names)) {
        QVERIFY2(f.login->rect().contains(inControl(f, a)), a);
        for (const char *b : std::as_const(names))
            QVERIFY2(a == b || !inControl(f, a).intersects(inControl(f, b)), a);
    }
    QVERIFY(inControl(f, "qxUserName").bottom() < inControl(f, "qxPassword").top());
    QVERIFY(inControl(f, "qxPassword").bottom() < inControl(f, "login").top());
    QVERIFY(!showAddress || inControl(f, "qxUrl").bottom() < inControl(f, "qxUserName").top());

    f.client.accounts = ZelTest::accountList({});
    f.click("login");
    QVERIFY(f.login->rect().contains(inControl(f, "accountsList")));
    QVERIFY(inControl(f, "accountsList").bottom() < inControl(f, "selectAccount").top());
}

void tst_LoginLayout::centresInAWideForm()
{
    LoginFixture f;
    f.login->resize(4000, 400);
    const QRect frame = inControl(f, "loginFrame");
    QCOMPARE(frame, inControl(f, "selectAccountFrame"));
    QVERIFY(frame.width() < 4000);
    QVERIFY(qAbs(frame.left() - (3999 - frame.right())) <= 1);
}

void tst_LoginLayout::survivesAFormWithoutRoom()
{
    LoginFixture f;
    f.login->resize(0, 0);
    f.login->resize(1, 1);
    QCOMPARE(top(f, "upFrame"), 840.0);
    f.login->resize(f.login->sizeHint());
    QVERIFY(inControl(f, "qxPassword").width() > 100);
}

void tst_LoginLayout::asksForRoomForAllRows()
{
    LoginFixture f;
    f.bind();
    f.login->resize(f.login->minimumSizeHint());
    QVERIFY(f.login->rect().contains(inControl(f, "login")));
    QVERIFY(f.login->rect().contains(inControl(f, "qxUserName")));
    QVERIFY(f.login->sizeHint().width() >= f.login->minimumSizeHint().width());
}

ZEL_TEST_MAIN(tst_LoginLayout)
#include "tst_loginlayout.moc"
