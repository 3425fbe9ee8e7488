// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/runtimeerror.h"
#include "platform/widgets/vscroll.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>
#include <QTest>

using namespace Zel;

class TestVScroll : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void beginsFrom0To32767()
    {
        const VScroll bar;
        QCOMPARE(bar.orientation(), Qt::Vertical);
        QCOMPARE(bar.Min(), 0);
        QCOMPARE(bar.Max(), 32767);
        QCOMPARE(bar.Value(), 0);
        QCOMPARE(bar.LargeChange(), 1);
        QCOMPARE(bar.SmallChange(), 1);
    }

    void runsDownToANegativeMax()
    {
        VScroll bar;
        bar.setMax(-125);
        bar.setLargeChange(1000);
        bar.setSmallChange(25);
        QCOMPARE(bar.Min(), 0);
        QCOMPARE(bar.Max(), -125);
        QCOMPARE(bar.LargeChange(), 1000);
        QCOMPARE(bar.Value(), 0);
        // The thumb stands at the top for 0 and at the bottom for -125.
        QCOMPARE(bar.sliderPosition(), bar.minimum());
        bar.setValue(-125);
        QCOMPARE(bar.Value(), -125);
        QCOMPARE(bar.sliderPosition(), bar.maximum());
        QCOMPARE(bar.maximum() - bar.minimum(), 125);
        bar.setValue(-40);
        QCOMPARE(bar.Value(), -40);
    }

    void runsUpLikeAnyOther()
    {
        VScroll bar;
        bar.setMin(-10);
        bar.setMax(10);
        bar.setValue(3);
        QCOMPARE(bar.Value(), 3);
        QCOMPARE(bar.value(), 13);
    }

    void aPersonScrollsDown()
    {
        VScroll bar;
        bar.setMax(-1000);
        bar.setSmallChange(100);
        bar.setLargeChange(400);
        bar.resize(20, 300);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy scrolled(&bar, &VScroll::scrolled);
        QSignalSpy changed(&bar, &VScroll::changed);
        QTest::keyClick(&bar, Qt::Key_Down);
        QCOMPARE(bar.Value(), -100);
        QTest::keyClick(&bar, Qt::Key_PageDown);
        QCOMPARE(bar.Value(), -500);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(10, 295));
        QCOMPARE(bar.Value(), -600);
        QTest::keyClick(&bar, Qt::Key_End);
        QCOMPARE(bar.Value(), -1000);
        QTest::keyClick(&bar, Qt::Key_Up);
        QCOMPARE(bar.Value(), -900);
        QCOMPARE(scrolled.size(), 5);
        QCOMPARE(scrolled.last().first(), QVariant(-900));
        QCOMPARE(changed.size(), 5);
    }

    void draggingTheThumbScrollsAllTheWhile()
    {
        VScroll bar;
        bar.setMax(-1000);
        bar.setLargeChange(500);
        bar.resize(20, 300);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy scrolled(&bar, &VScroll::scrolled);
        QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(10, 50));
        for (int y : {60, 80, 120})
            QTest::mouseMove(&bar, QPoint(10, y));
        QVERIFY(scrolled.size() >= 3);
        const int dragged = bar.Value();
        QVERIFY(dragged < -200 && dragged > -1000);
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(10, 120));
        QCOMPARE(bar.Value(), dragged);
    }

    void codeChangesWithoutScrolling()
    {
        VScroll bar;
        bar.setMax(-125);
        QSignalSpy scrolled(&bar, &VScroll::scrolled);
        QSignalSpy changed(&bar, &VScroll::changed);
        bar.setValue(-5);
        bar.setValue(-5);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first(), QVariant(-5));
        QCOMPARE(scrolled.size(), 0);
    }

    void theValueStaysInTheRange()
    {
        VScroll bar;
        bar.setMax(-125);
        bar.setValue(-500);
        QCOMPARE(bar.Value(), -125);
        bar.setValue(40);
        QCOMPARE(bar.Value(), 0);
        bar.setValue(-100);
        QSignalSpy changed(&bar, &VScroll::changed);
        bar.setMax(-60);
        QCOMPARE(bar.Value(), -60);
        QCOMPARE(changed.size(), 1);
        bar.setMax(-200);
        QCOMPARE(bar.Value(), -60);
        QCOMPARE(changed.size(), 1);
        bar.setMin(50);
        QCOMPARE(bar.Value(), -60);
        bar.setMax(32767);
        QCOMPARE(bar.Value(), 50);
    }

    void greaterThan16BitsIsError6_data()
    {
        QTest::addColumn<int>("value");
        QTest::newRow("above") << 32768;
        QTest::newRow("below") << -32769;
    }

    void greaterThan16BitsIsError6()
    {
        QFETCH(int, value);
        VScroll bar;
        bar.setMax(-125);
        using Setter = void (VScroll::*)(int);
        for (Setter set : {&VScroll::setMin, &VScroll::setMax, &VScroll::setValue,
                           &VScroll::setLargeChange, &VScroll::setSmallChange}) {
            int number = 0;
            try {
                (bar.*set)(value);
            } catch (const RuntimeError &error) {
                number = error.number();
            }
            QCOMPARE(number, 6);
        }
        QCOMPARE(bar.Max(), -125);
        QCOMPARE(bar.LargeChange(), 1);
        bar.setMin(32767);
        bar.setMax(-32768);
        bar.setValue(-32768);
        QCOMPARE(bar.Value(), -32768);
    }
};

ZEL_TEST_MAIN(TestVScroll)
#include "tst_vscroll.moc"
