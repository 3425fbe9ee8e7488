// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/controlregistry.h"

#include "platform/widgets/control.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QTest>

using Zel::ControlRegistry;
using ZelTest::errorNumber;

namespace Gallery {

class Lamp : public Zel::Control
{
    Q_OBJECT

public:
    using Control::Control;
};

} // namespace Gallery

/// A widget class of a host's own.
class HostBox : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;
};

class TestControlRegistry : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        ControlRegistry::add<Gallery::Lamp>();
        ControlRegistry::add(QStringLiteral("Host.Box"), [](QWidget *parent) -> QWidget * {
            auto *box = new HostBox(parent);
            box->setText(QStringLiteral("from the host"));
            return box;
        });
    }

    void aControlGoesByItsClassName()
    {
        QWidget form;
        QWidget *made =
            ControlRegistry::create(QStringLiteral("ZelWebServiceControls.Lamp"), &form);
        auto *lamp = qobject_cast<Gallery::Lamp *>(made);
        QVERIFY(lamp);
        QCOMPARE(lamp->parentWidget(), &form);
        QCOMPARE(lamp->mode(), Zel::Control::Mode::Run);
        QVERIFY(lamp->writePropertyBag().isEmpty());
    }

    void progIdsIgnoreCase()
    {
        const std::unique_ptr<QWidget> lamp(
            ControlRegistry::create(QStringLiteral("zelwebservicecontrols.LAMP")));
        QVERIFY(qobject_cast<Gallery::Lamp *>(lamp.get()));
        QVERIFY(ControlRegistry::contains(QStringLiteral("HOST.box")));
        QVERIFY(!ControlRegistry::contains(QStringLiteral("Host.Boxes")));
    }

    void aClassOfTheHostTakesPart()
    {
        QWidget form;
        QWidget *box = ControlRegistry::create(QStringLiteral("Host.Box"), &form);
        QVERIFY(qobject_cast<HostBox *>(box));
        QCOMPARE(qobject_cast<HostBox *>(box)->text(), QStringLiteral("from the host"));
    }

    void everyCallMakesAnotherControl()
    {
        QWidget form;
        QVERIFY(ControlRegistry::create(QStringLiteral("Host.Box"), &form) !=
                ControlRegistry::create(QStringLiteral("Host.Box"), &form));
    }

    void anUnknownProgIdIsError429()
    {
        for (const char *progId : {"ZelWebServiceControls.Lantern", "Lamp", "", "Host.Box "}) {
            const QString name = QString::fromLatin1(progId);
            QCOMPARE(errorNumber([&] { delete ControlRegistry::create(name); }), 429);
        }
        try {
            delete ControlRegistry::create(QStringLiteral("No.Such"));
        } catch (const Zel::RuntimeError &error) {
            QVERIFY(error.description().contains(QStringLiteral("\"No.Such\"")));
        }
    }

    void theLastClassUnderAProgIdCounts()
    {
        ControlRegistry::add(QStringLiteral("Host.Lamp"),
                             [](QWidget *parent) -> QWidget * { return new HostBox(parent); });
        ControlRegistry::add(QStringLiteral("HOST.LAMP"), [](QWidget *parent) -> QWidget * {
            return new Gallery::Lamp(parent);
        });
        const std::unique_ptr<QWidget> made(ControlRegistry::create(QStringLiteral("Host.Lamp")));
        QVERIFY(qobject_cast<Gallery::Lamp *>(made.get()));
    }

    void listsTheProgIdsSorted()
    {
        const QStringList names = ControlRegistry::progIds();
        QVERIFY(names.contains(QStringLiteral("ZelWebServiceControls.Lamp")));
        QVERIFY(names.indexOf(QStringLiteral("Host.Box")) <
                names.indexOf(QStringLiteral("ZelWebServiceControls.Lamp")));
    }

    void theProgIdIsMadeOfTheBareClassName()
    {
        const QString expected = QStringLiteral("ZelWebServiceControls.Login");
        QCOMPARE(ControlRegistry::progIdOf("ZelWebServiceControls::Login"), expected);
        QCOMPARE(ControlRegistry::progIdOf("A::B::Login"), expected);
        QCOMPARE(ControlRegistry::progIdOf("Login"), expected);
    }
};

ZEL_TEST_MAIN(TestControlRegistry)
#include "tst_controlregistry.moc"
