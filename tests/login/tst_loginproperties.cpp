// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "loginfixture.h"
#include "platform/core/propertybag.h"
#include "platform/widgets/latebound.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>

using Zel::PropertyBag;
using ZelTest::errorNumber;
using ZelWebServiceControls::Login;

namespace {

QString awkwardText()
{
    QString text = QStringLiteral("a\r\nb\rc\nd\te \u00a0f\u2028g\u2029h <&>\"' \U0001F30C\u0001");
    text += QChar(0xD83C); // half a pair
    return text + QString(40000, u'x') + QStringLiteral("\nend");
}

} // namespace

/// The persisted properties and how a host stores them.
class tst_LoginProperties : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void useProxyIsRefusedInRunMode();
    void useProxyIsTakenInDesignMode();
    void useProxyIsReadFromABagInRunMode();
    void storeOnlyWhatDiffers();
    void storeNothingAgainAtTheDefault();
    void fallBackToTheDefaults();
    void readingAppliesEverything();
    void readingMarksNothingAsChanged();
    void everyLetMarksAsChanged();
    void textsAreTheBoxesThemselves();
    void textsComeBackCodeUnitForCodeUnit();
    void aBagWithWrongTypesIsReportedAndOtherwiseRead();
};

void tst_LoginProperties::useProxyIsRefusedInRunMode()
{
    LoginFixture f;
    const QSignalSpy changed(f.login, &Login::changed);
    QCOMPARE(errorNumber([&f] { f.login->setUseProxy(true); }), 382);
    QCOMPARE(errorNumber([&f] { f.login->setUseProxy(false); }), 382);
    QCOMPARE(errorNumber([&f] { Zel::LateBound(f.login).let(QStringLiteral("UseProxy"), true); }),
             382);
    QCOMPARE(f.login->UseProxy(), false);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(f.trail, QStringList());
}

void tst_LoginProperties::useProxyIsTakenInDesignMode()
{
    Login login;
    login.setMode(Zel::Control::Mode::Design);
    const QSignalSpy changed(&login, &Login::changed);
    login.setUseProxy(true);
    QCOMPARE(login.UseProxy(), true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(login.writePropertyBag().readBool(QStringLiteral("UseProxy"), false), true);
}

void tst_LoginProperties::useProxyIsReadFromABagInRunMode()
{
    PropertyBag bag;
    bag.write(QStringLiteral("UseProxy"), true, false);
    LoginFixture f;
    f.login->readPropertyBag(bag);
    QCOMPARE(f.login->UseProxy(), true);
    f.bind();
    f.click("login");
    QVERIFY(f.client.calls().constFirst().endsWith(QStringLiteral(", True, True)")));
    QCOMPARE(errorNumber([&f] { f.login->setUseProxy(false); }), 382);
    QCOMPARE(f.login->UseProxy(), true);
    f.login->readPropertyBag(PropertyBag());
    QCOMPARE(f.login->UseProxy(), false);
}

void tst_LoginProperties::storeOnlyWhatDiffers()
{
    Login login;
    login.setMode(Zel::Control::Mode::Design);
    QVERIFY(login.writePropertyBag().isEmpty());
    QCOMPARE(login.propertyBagText(), QString());
    login.setLoginURL(QStringLiteral("https://media.example.org"));
    login.setBackColor(0x00336699);
    const PropertyBag bag = login.writePropertyBag();
    QCOMPARE(bag.names(), QStringList({QStringLiteral("BackColor"), QStringLiteral("LoginURL")}));
    QCOMPARE(bag.readColor(QStringLiteral("BackColor"), 0), 0x00336699u);
    QCOMPARE(bag.readString(QStringLiteral("LoginURL"), QString()),
             QStringLiteral("https://media.example.org"));
}

void tst_LoginProperties::storeNothingAgainAtTheDefault()
{
    Login login;
    login.setMode(Zel::Control::Mode::Design);
    login.setBackColor(1);
    login.setLoginURL(QStringLiteral("a"));
    login.setUserName(QStringLiteral("b"));
    login.setPassword(QStringLiteral("c"));
    login.setShowLoginURL(false);
    login.setUseProxy(true);
    QCOMPARE(login.writePropertyBag().names().size(), 6);
    login.setBackColor(0x8000000F);
    login.setLoginURL(QStringLiteral(""));
    login.setUserName(QString());
    login.setPassword(QString());
    login.setShowLoginURL(true);
    login.setUseProxy(false);
    QVERIFY(login.writePropertyBag().isEmpty());
}

void tst_LoginProperties::fallBackToTheDefaults()
{
    Login login;
    login.setMode(Zel::Control::Mode::Design);
    login.setBackColor(1);
    login.setUserName(QStringLiteral("b"));
    login.setShowLoginURL(false);
    login.setUseProxy(true);
    login.readPropertyBag(PropertyBag());
    QCOMPARE(login.BackColor(), 0x8000000Fu);
    QCOMPARE(login.UserName(), QString());
    QCOMPARE(login.ShowLoginURL(), true);
    QCOMPARE(login.UseProxy(), false);
}

void tst_LoginProperties::readingAppliesEverything()
{
    PropertyBag bag;
    bag.write(QStringLiteral("BackColor"), 0x000000FFu);
    bag.write(QStringLiteral("UserName"), QStringLiteral("mira"));
    bag.write(QStringLiteral("Password"), QStringLiteral("s3cret"));
    bag.write(QStringLiteral("LoginURL"), QStringLiteral("https://media.example.org"));
    bag.write(QStringLiteral("ShowLoginURL"), false);
    LoginFixture f;
    f.login->readPropertyBag(bag);
    QCOMPARE(f.login->BackColor(), 0x000000FFu);
    QCOMPARE(f.child("upFrame")->palette().color(QPalette::Window), QColor(Qt::red));
    QCOMPARE(f.child<QLineEdit>("qxUserName")->text(), QStringLiteral("mira"));
    QCOMPARE(f.child<QLineEdit>("qxPassword")->text(), QStringLiteral("s3cret"));
    QCOMPARE(f.child<QLineEdit>("qxUrl")->text(), QStringLiteral("https://media.example.org"));
    QVERIFY(!f.isShown("qxUrl"));
    QCOMPARE(Zel::LateBound(f.child("upFrame")).get(QStringLiteral("Top")).toDouble(), 360.0);
}

void tst_LoginProperties::readingMarksNothingAsChanged()
{
    LoginFixture f;
    const QSignalSpy changed(f.login, &Login::changed);
    f.login->setPropertyBagText(QStringLiteral(
        "<properties version=\"1\"><property name=\"UserName\" value=\"mira\"/></properties>"));
    QCOMPARE(f.login->UserName(), QStringLiteral("mira"));
    QCOMPARE(changed.count(), 0);
    QVERIFY(f.login->propertyProblems().isEmpty());
}

void tst_LoginProperties::everyLetMarksAsChanged()
{
    LoginFixture f;
    const QSignalSpy changed(f.login, &Login::changed);
    f.login->setBackColor(1);
    f.login->setLoginURL(QStringLiteral("a"));
    f.login->setUserName(QStringLiteral("b"));
    f.login->setPassword(QStringLiteral("c"));
    f.login->setShowLoginURL(true);
    QCOMPARE(changed.count(), 5);
}

void tst_LoginProperties::textsAreTheBoxesThemselves()
{
    LoginFixture f;
    f.typeCredentials();
    QCOMPARE(f.login->LoginURL(), QStringLiteral("https://media.example.org"));
    QCOMPARE(f.login->UserName(), QStringLiteral("mira"));
    QCOMPARE(f.login->Password(), QStringLiteral("s3cret"));
    f.login->setUserName(QStringLiteral("noor"));
    QCOMPARE(f.child<QLineEdit>("qxUserName")->text(), QStringLiteral("noor"));
    QCOMPARE(Zel::LateBound(f.login).get(QStringLiteral("username")).toString(),
             QStringLiteral("noor"));
}

void tst_LoginProperties::textsComeBackCodeUnitForCodeUnit()
{
    const QString text = awkwardText();
    LoginFixture f;
    f.login->setLoginURL(text);
    f.login->setUserName(text);
    f.login->setPassword(text);
    QCOMPARE(f.login->LoginURL(), text);
    QCOMPARE(f.login->UserName(), text);
    QCOMPARE(f.login->Password(), text);

    Login other;
    other.setPropertyBagText(f.login->propertyBagText());
    QVERIFY(other.propertyProblems().isEmpty());
    QCOMPARE(other.LoginURL(), text);
    QCOMPARE(other.UserName(), text);
    QCOMPARE(other.Password(), text);

    f.bind();
    f.click("login");
    QCOMPARE(f.client.calls().constFirst(),
             QStringLiteral("authenticate(\"%1\", \"%1\", \"%1\", \"Stage\", \"\", False, True)")
                 .arg(text));
}

void tst_LoginProperties::aBagWithWrongTypesIsReportedAndOtherwiseRead()
{
    LoginFixture f;
    f.login->setShowLoginURL(false);
    f.login->setPropertyBagText(QStringLiteral(
        "<properties version=\"1\"><property name=\"ShowLoginURL\" value=\"perhaps\"/>"
        "<property name=\"BackColor\" value=\"sunny\"/>"
        "<property name=\"UserName\" value=\"mira\"/></properties>"));
    QCOMPARE(f.login->propertyProblems().size(), 2);
    QCOMPARE(f.login->ShowLoginURL(), true);
    QCOMPARE(f.login->BackColor(), 0x8000000Fu);
    QCOMPARE(f.login->UserName(), QStringLiteral("mira"));
}

ZEL_TEST_MAIN(tst_LoginProperties)
#include "tst_loginproperties.moc"
