// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/rounding.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <cfenv>
#include <cmath>
#include <limits>

using namespace Zel;

class TestRounding : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void halvesGoToTheEvenNeighbour_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("rounded");
        QTest::newRow("0.5") << 0.5 << 0.0;
        QTest::newRow("1.5") << 1.5 << 2.0;
        QTest::newRow("2.5") << 2.5 << 2.0;
        QTest::newRow("-0.5") << -0.5 << 0.0;
        QTest::newRow("-1.5") << -1.5 << -2.0;
        QTest::newRow("-2.5") << -2.5 << -2.0;
        QTest::newRow("59.6") << 59.6 << 60.0;
        QTest::newRow("just below a half") << std::nextafter(0.5, 0.0) << 0.0;
        QTest::newRow("just above a half") << std::nextafter(2.5, 3.0) << 3.0;
        QTest::newRow("whole") << 1234567.0 << 1234567.0;
        QTest::newRow("the last double with a half") << 4503599627370495.5 << 4503599627370496.0;
        QTest::newRow("too large for a half") << 1e300 << 1e300;
    }

    void halvesGoToTheEvenNeighbour()
    {
        QFETCH(double, value);
        QTEST(roundHalfEven(value), "rounded");
    }

    void theRoundingModeOfTheProcessDoesNotMatter()
    {
        const int former = std::fegetround();
        std::fesetround(FE_UPWARD);
        const double up = roundHalfEven(2.2);
        std::fesetround(FE_DOWNWARD);
        const double down = roundHalfEven(2.8);
        std::fesetround(former);
        QCOMPARE(up, 2.0);
        QCOMPARE(down, 3.0);
    }

    void whatIsNoFiniteNumberIsAnOverflow()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        for (const double value : {nan, infinity, -infinity}) {
            QCOMPARE(errorNumber([value] { roundHalfEven(value); }), 6);
            QCOMPARE(errorNumber([value] { roundToInt32(value); }), 6);
            QCOMPARE(errorNumber([value] { roundToInt16(value); }), 6);
        }
    }

    void theRangeIsCheckedAfterRounding()
    {
        QCOMPARE(roundToInt32(2147483647.4), 2147483647);
        QCOMPARE(errorNumber([] { roundToInt32(2147483647.5); }), 6);
        QCOMPARE(roundToInt32(-2147483648.5), std::numeric_limits<qint32>::min());
        QCOMPARE(errorNumber([] { roundToInt32(-2147483648.51); }), 6);
        QCOMPARE(roundToInt16(32767.49).value(), qint16(32767));
        QCOMPARE(errorNumber([] { roundToInt16(32767.5); }), 6);
        QCOMPARE(errorNumber([] { roundToInt16(1e10); }), 6);
    }
};

ZEL_TEST_MAIN(TestRounding)
#include "tst_rounding.moc"
