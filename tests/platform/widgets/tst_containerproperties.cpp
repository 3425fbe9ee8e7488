// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The properties that every widget has from its container, reached by name.

#include "platform/widgets/containerproperties.h"

#include "platform/widgets/latebound.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <limits>

using Zel::LateBound;
using ZelTest::errorNumber;

/// A host's widget with members that bear the names of container properties.
class Crate : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int top READ wrong)
    Q_PROPERTY(int Width READ wrong)

public:
    using QWidget::QWidget;

    int wrong() const { return -1; }

    Q_INVOKABLE int Left() const { return -1; }
};

class TestContainerProperties : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void placesAreExactTwips_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("twips");
        for (const char *name :
             {"Left", "Top", "Width", "Height", "left", "TOP", "width", "hEIGHT"}) {
            for (double twips : {0.0, 1.0, 4150.0, 5850.0, 1234.5})
                QTest::addRow("%s %g", name, twips) << QString::fromLatin1(name) << twips;
        }
        QTest::newRow("left of the form") << QStringLiteral("Left") << -75.25;
    }

    void placesAreExactTwips()
    {
        QFETCH(QString, name);
        QFETCH(double, twips);
        QWidget form;
        QLineEdit box(&form);
        const LateBound late(&box);
        late.let(name, twips);
        QCOMPARE(late.get(name), QVariant(twips));
    }

    void pixelsAreDrawnFromTheTwips()
    {
        QWidget form;
        QLineEdit box(&form);
        const LateBound late(&box);
        late.let(QStringLiteral("Left"), 1440);
        late.let(QStringLiteral("Width"), 2880);
        QCOMPARE(box.x(), Zel::logicalDpi(&box));
        QCOMPARE(box.width(), 2 * Zel::logicalDpi(&box));
    }

    void onePropertyLeavesTheOthersExact()
    {
        QWidget form;
        QLineEdit box(&form);
        Zel::setTwipsGeometry(&box, {101, 202, 3003, 404});
        LateBound(&box).let(QStringLiteral("Top"), 1);
        QCOMPARE(Zel::twipsGeometry(&box), (Zel::TwipsRect{101, 1, 3003, 404}));
        LateBound(&box).let(QStringLiteral("Height"), 555);
        QCOMPARE(Zel::twipsGeometry(&box), (Zel::TwipsRect{101, 1, 3003, 555}));
    }

    void theyComeBeforeMembersOfTheSameName()
    {
        QWidget form;
        Crate crate(&form);
        Zel::setTwipsGeometry(&crate, {30, 60, 90, 120});
        const LateBound late(&crate);
        QCOMPARE(late.get(QStringLiteral("top")), QVariant(60.0));
        QCOMPARE(late.get(QStringLiteral("Width")), QVariant(90.0));
        QCOMPARE(late.get(QStringLiteral("Left")), QVariant(30.0));
        QCOMPARE(late.call(QStringLiteral("Left")), QVariant(30.0));
        QCOMPARE(errorNumber([&] { late.call(QStringLiteral("Left"), {1}); }), 450);
    }

    void visibleMeansNotHidden()
    {
        QWidget form;
        QLineEdit box(&form);
        const LateBound late(&box);
        late.let(QStringLiteral("Visible"), true);
        // The form itself is not on screen.
        QVERIFY(!box.isVisible());
        QCOMPARE(late.get(QStringLiteral("Visible")), QVariant(true));
        late.let(QStringLiteral("visible"), false);
        QCOMPARE(late.get(QStringLiteral("VISIBLE")), QVariant(false));
        form.show();
        QVERIFY(!box.isVisible());
        late.let(QStringLiteral("Visible"), QStringLiteral("True"));
        QVERIFY(box.isVisible());
        late.let(QStringLiteral("Visible"), 0);
        QVERIFY(!box.isVisible());
        late.let(QStringLiteral("Visible"), -1);
        QVERIFY(box.isVisible());
    }

    void valuesConvert()
    {
        QWidget form;
        QLineEdit box(&form);
        const LateBound late(&box);
        late.let(QStringLiteral("Width"), QStringLiteral("4150"));
        QCOMPARE(late.get(QStringLiteral("Width")), QVariant(4150.0));
        late.let(QStringLiteral("Width"), qint16(300));
        QCOMPARE(late.get(QStringLiteral("Width")), QVariant(300.0));
    }

    void valuesThatAreNoPlaceChangeNothing()
    {
        QWidget form;
        QLineEdit box(&form);
        const LateBound late(&box);
        Zel::setTwipsGeometry(&box, {15, 30, 450, 600});
        const auto refuses = [&](const char *name, const QVariant &value) {
            return errorNumber([&] { late.let(QString::fromLatin1(name), value); });
        };
        QCOMPARE(refuses("Left", QStringLiteral("far")), 13);
        QCOMPARE(refuses("Visible", QStringLiteral("perhaps")), 13);
        QCOMPARE(refuses("Visible", QVariant::fromValue<QObject *>(&form)), 13);
        QCOMPARE(refuses("Top", std::numeric_limits<double>::infinity()), 6);
        QCOMPARE(refuses("Top", std::nan("")), 6);
        QCOMPARE(Zel::twipsGeometry(&box), (Zel::TwipsRect{15, 30, 450, 600}));
    }

    void objectsThatAreNoWidgetsHaveNone()
    {
        QTimer timer;
        const LateBound late(&timer);
        for (const char *name : {"Visible", "Left", "Top", "Width", "Height"})
            QCOMPARE(errorNumber([&] { late.get(QString::fromLatin1(name)); }), 438);
    }

    void otherNamesAreNone()
    {
        QWidget widget;
        for (const char *name : {"", "Lef", "Leftt", "x", "geometry", "Right"})
            QVERIFY(!Zel::ContainerProperty::find(widget, QString::fromLatin1(name)));
    }
};

ZEL_TEST_MAIN(TestContainerProperties)
#include "tst_containerproperties.moc"
