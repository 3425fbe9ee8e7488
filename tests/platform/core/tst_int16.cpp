// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/int16.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <limits>

using Zel::Int16;

// What the compiler can know it must compute itself.
static_assert((Int16(4150) + Int16(150)).value() == 4300);
static_assert((Int16(3) - 5).value() == -2);
static_assert((-Int16(7)).value() == -7);
static_assert(Int16::from(32767) > Int16(-32768));

class TestInt16 : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void holdsTheWholeRangeAndNothingBeyond()
    {
        QCOMPARE(Int16::from(32767).value(), qint16(32767));
        QCOMPARE(Int16::from(-32768).value(), qint16(-32768));
        QCOMPARE(errorNumber([] { Int16::from(32768); }), 6);
        QCOMPARE(errorNumber([] { Int16::from(-32769); }), 6);
        QCOMPARE(errorNumber([] { Int16::from(65536); }), 6);
        QCOMPARE(errorNumber([] { Int16::from(std::numeric_limits<qint64>::min()); }), 6);
        QCOMPARE(errorNumber([] { Int16::from(std::numeric_limits<quint64>::max()); }), 6);
    }

    void startsAtZero() { QCOMPARE(Int16().value(), qint16(0)); }

    void roundsHalvesToTheEvenNeighbour()
    {
        QCOMPARE(Int16::from(0.5).value(), qint16(0));
        QCOMPARE(Int16::from(1.5).value(), qint16(2));
        QCOMPARE(Int16::from(2.5).value(), qint16(2));
        QCOMPARE(Int16::from(-2.5).value(), qint16(-2));
        QCOMPARE(Int16::from(32767.4).value(), qint16(32767));
        QCOMPARE(errorNumber([] { Int16::from(32767.5); }), 6);
        QCOMPARE(Int16::from(-32768.5).value(), qint16(-32768));
        QCOMPARE(errorNumber([] { Int16::from(-32768.6); }), 6);
        QCOMPARE(errorNumber([] { Int16::from(std::numeric_limits<double>::quiet_NaN()); }), 6);
    }

    void sumsEndInAnErrorInsteadOfWrapping()
    {
        QCOMPARE((Int16(32617) + 150).value(), qint16(32767));
        QCOMPARE(errorNumber([] { Int16(32618) + 150; }), 6);
        QCOMPARE(errorNumber([] { Int16(-32768) - 1; }), 6);
        QCOMPARE((Int16(-32768) + 32767).value(), qint16(-1));
    }

    void productsEndInAnErrorInsteadOfWrapping()
    {
        QCOMPARE((Int16(327) * 100).value(), qint16(32700));
        QCOMPARE(errorNumber([] { Int16(328) * 100; }), 6);
        QCOMPARE((Int16(-32768) * 1).value(), qint16(-32768));
        QCOMPARE(errorNumber([] { Int16(-32768) * -1; }), 6);
        QCOMPARE(errorNumber([] { Int16(-32768) * -32768; }), 6);
    }

    void theLeastNumberHasNoNegative()
    {
        QCOMPARE((-Int16(-32767)).value(), qint16(32767));
        QCOMPARE(errorNumber([] { -Int16(-32768); }), 6);
    }

    void aFailedAssignmentLeavesTheValue()
    {
        Int16 top = 32000;
        top += 700;
        QCOMPARE(top.value(), qint16(32700));
        QCOMPARE(errorNumber([&top] { top += 100; }), 6);
        QCOMPARE(top.value(), qint16(32700));
        top -= 32000;
        top *= 2;
        QCOMPARE(top.value(), qint16(1400));
        QCOMPARE(errorNumber([&top] { top *= 1400; }), 6);
        QCOMPARE(top.value(), qint16(1400));
    }

    void comparesAsNumbersDo()
    {
        const Int16 a = -5;
        const Int16 b = 3;
        QVERIFY(a < b);
        QVERIFY(b >= a);
        QVERIFY(a != b);
        QVERIFY(a == Int16(qint16(-5)));
    }
};

ZEL_TEST_MAIN(TestInt16)
#include "tst_int16.moc"
