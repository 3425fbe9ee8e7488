// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/control.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>
#include <QTest>

using ZelTest::errorNumber;

/// A control with one property of each kind that matters here.
class Sign : public Zel::Control
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption STORED false)
    Q_PROPERTY(int Size READ Size WRITE setSize STORED false)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked STORED false)

public:
    explicit Sign(QWidget *parent = nullptr)
        : Control(parent)
    {
    }

    QString Caption() const { return m_caption; }

    void setCaption(const QString &caption)
    {
        m_caption = caption;
        markChanged();
    }

    int Size() const { return m_size; }

    void setSize(int size)
    {
        if (size < 0)
            throw Zel::RuntimeError(Zel::RuntimeError::InvalidProcedureCall);
        m_size = size;
        markChanged();
    }

    bool Locked() const { return m_locked; }

    void setLocked(bool locked)
    {
        requireDesignTime();
        m_locked = locked;
        markChanged();
    }

signals:
    void Opened();
    void Chosen(const QString &what, int times = 1);
    void Closed();

protected:
    void readProperties(const Zel::PropertyBag &bag) override
    {
        setCaption(bag.readString(QStringLiteral("Caption"), QStringLiteral("Welcome")));
        setSize(bag.readInt32(QStringLiteral("Size"), 12));
        m_locked = bag.readBool(QStringLiteral("Locked"), false);
    }

    void writeProperties(Zel::PropertyBag &bag) const override
    {
        bag.write(QStringLiteral("Caption"), m_caption, QStringLiteral("Welcome"));
        bag.write(QStringLiteral("Size"), m_size, 12);
        bag.write(QStringLiteral("Locked"), m_locked, false);
    }

private:
    QString m_caption = QStringLiteral("Welcome");
    int m_size = 12;
    bool m_locked = false;
};

class TestControl : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void madeInCodeItIsAFirstPlacementInRunMode()
    {
        const Sign sign;
        QCOMPARE(sign.mode(), Zel::Control::Mode::Run);
        QCOMPARE(sign.Caption(), QStringLiteral("Welcome"));
        QVERIFY(sign.writePropertyBag().isEmpty());
        QCOMPARE(sign.propertyBagText(), QString());
        QVERIFY(sign.propertyProblems().isEmpty());
    }

    void storesOnlyWhatDiffersFromTheDefaults()
    {
        Sign sign;
        sign.setSize(20);
        sign.setCaption(QStringLiteral("Welcome"));
        QCOMPARE(sign.writePropertyBag().names(), QStringList{QStringLiteral("Size")});
        QCOMPARE(sign.writePropertyBag().read(QStringLiteral("Size")), QVariant(20));
    }

    void readsTheDefaultWhereTheBagHasNoValue()
    {
        Sign sign;
        sign.setCaption(QStringLiteral("Closed today"));
        sign.setSize(20);
        Zel::PropertyBag bag;
        bag.write(QStringLiteral("Size"), 30);
        sign.readPropertyBag(bag);
        QCOMPARE(sign.Size(), 30);
        QCOMPARE(sign.Caption(), QStringLiteral("Welcome"));
    }

    void everyLetRaisesChanged()
    {
        Sign sign;
        const QSignalSpy changed(&sign, &Zel::Control::changed);
        sign.setCaption(QStringLiteral("A"));
        sign.setCaption(QStringLiteral("A"));
        QCOMPARE(changed.size(), 2);
    }

    void readingABagRaisesNoChanged()
    {
        Sign sign;
        const QSignalSpy changed(&sign, &Zel::Control::changed);
        Zel::PropertyBag bag;
        bag.write(QStringLiteral("Caption"), QStringLiteral("B"));
        sign.readPropertyBag(bag);
        sign.setPropertyBagText(QString());
        QCOMPARE(changed.size(), 0);
    }

    void aReadThatFailsReachesItsCallerAndLetsRaiseChangedAgain()
    {
        Sign sign;
        Zel::PropertyBag bag;
        bag.write(QStringLiteral("Size"), -1);
        QCOMPARE(errorNumber([&] { sign.readPropertyBag(bag); }), 5);
        const QSignalSpy changed(&sign, &Zel::Control::changed);
        sign.setSize(1);
        QCOMPARE(changed.size(), 1);
    }

    void propertyBagTextIsOnePropertyForAllOfThem()
    {
        Sign sign;
        sign.setMode(Zel::Control::Mode::Design);
        sign.setCaption(QStringLiteral("<\"Türen\" & 'Tore'>\n\t%1"));
        sign.setSize(7);
        sign.setLocked(true);
        Sign other;
        // As the code does that uic makes of a form.
        QVERIFY(other.setProperty("PropertyBagText", sign.property("PropertyBagText")));
        QCOMPARE(other.Caption(), sign.Caption());
        QCOMPARE(other.Size(), 7);
        QCOMPARE(other.Locked(), true);
        QCOMPARE(other.property("PropertyBagText"), sign.property("PropertyBagText"));
    }

    void valuesOfAWrongTypeGiveDefaultsAndAreTold()
    {
        Sign sign;
        Zel::PropertyBag bag;
        bag.write(QStringLiteral("Caption"), QStringLiteral("Kept"));
        bag.write(QStringLiteral("Size"), QStringLiteral("big"));
        bag.write(QStringLiteral("Locked"), QStringLiteral("perhaps"));
        sign.readPropertyBag(bag);
        QCOMPARE(sign.Caption(), QStringLiteral("Kept"));
        QCOMPARE(sign.Size(), 12);
        QCOMPARE(sign.Locked(), false);
        QCOMPARE(sign.propertyProblems().size(), 2);
        QVERIFY(sign.propertyProblems().at(0).contains(QStringLiteral("Size")));
        QVERIFY(sign.propertyProblems().at(1).contains(QStringLiteral("Locked")));
    }

    void aTextThatIsNoBagGivesDefaultsAndIsTold()
    {
        Sign sign;
        sign.setSize(20);
        sign.setPropertyBagText(QStringLiteral("<properties version=\"1\"><property"));
        QCOMPARE(sign.Size(), 12);
        QVERIFY(!sign.propertyProblems().isEmpty());
        sign.setPropertyBagText(QString());
        QVERIFY(sign.propertyProblems().isEmpty());
    }

    void aDesignTimePropertyRefusesToBeSetInRunMode()
    {
        Sign sign;
        const QSignalSpy changed(&sign, &Zel::Control::changed);
        try {
            sign.setLocked(true);
            QFAIL("nothing was thrown");
        } catch (const Zel::RuntimeError &error) {
            QCOMPARE(error.number(), 382);
            QCOMPARE(error.description(), QStringLiteral("Set not supported at runtime"));
            QCOMPARE(error.source(), QStringLiteral("Sign"));
        }
        QCOMPARE(sign.Locked(), false);
        QCOMPARE(changed.size(), 0);
    }

    void aDesignTimePropertyTakesItsValueInDesignModeAndFromABag()
    {
        Sign designed;
        designed.setMode(Zel::Control::Mode::Design);
        QCOMPARE(designed.mode(), Zel::Control::Mode::Design);
        designed.setLocked(true);
        QCOMPARE(designed.Locked(), true);

        Sign running;
        running.readPropertyBag(designed.writePropertyBag());
        QCOMPARE(running.Locked(), true);
    }

    void eventsAreNumberedInTheOrderOfTheirDeclaration()
    {
        const QStringList names{QStringLiteral("Opened"), QStringLiteral("Chosen"),
                                QStringLiteral("Closed")};
        QCOMPARE(Zel::Control::eventNames(&Sign::staticMetaObject), names);
        QCOMPARE(Zel::Control::eventNames(&Zel::Control::staticMetaObject), QStringList());
    }
};

ZEL_TEST_MAIN(TestControl)
#include "tst_control.moc"
