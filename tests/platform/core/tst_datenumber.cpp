// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/datenumber.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <limits>

using namespace Zel;

class TestDateNumber : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void countsDaysFromDayZero_data()
    {
        QTest::addColumn<QDateTime>("moment");
        QTest::addColumn<double>("number");
        const auto row = [](const char *name, int y, int m, int d, QTime time, double number) {
            QTest::newRow(name) << QDateTime(QDate(y, m, d), time) << number;
        };
        row("day zero", 1899, 12, 30, QTime(0, 0), 0);
        row("noon of day zero", 1899, 12, 30, QTime(12, 0), 0.5);
        row("the day after", 1899, 12, 31, QTime(0, 0), 1);
        row("the day before", 1899, 12, 29, QTime(0, 0), -1);
        row("six in the morning of the day before", 1899, 12, 29, QTime(6, 0), -1.25);
        row("2007", 2007, 1, 9, QTime(18, 0), 39091.75);
        row("first", 100, 1, 1, QTime(0, 0), -657434);
        row("last", 9999, 12, 31, QTime(12, 0), 2958465.5);
        row("first noon", 100, 1, 1, QTime(12, 0), -657434.5);
    }

    void countsDaysFromDayZero()
    {
        QFETCH(QDateTime, moment);
        QFETCH(double, number);
        QCOMPARE(dateNumber(moment), number);
        QCOMPARE(dateFromNumber(number), moment);
    }

    void everySecondOfADayComesBack()
    {
        for (const QDate day : {QDate(2007, 6, 9), QDate(1850, 6, 9), QDate(9999, 6, 9)}) {
            for (int second = 0; second < 86400; second += 7) {
                const QDateTime moment(day, QTime::fromMSecsSinceStartOfDay(second * 1000));
                QCOMPARE(dateFromNumber(dateNumber(moment)), moment);
            }
        }
    }

    void theLastMillisecondRoundsIntoTheNextDay()
    {
        QCOMPARE(dateFromNumber(1 - 1e-12), QDateTime(QDate(1899, 12, 31), QTime(0, 0)));
        QCOMPARE(errorNumber([] { dateFromNumber(2958465.9999999999); }), 6);
    }

    void numbersBeyondTheYearsAreAnOverflow()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        for (const double number : {2958466.0, -657435.0, 1e300, -1e300, nan})
            QCOMPARE(errorNumber([number] { dateFromNumber(number); }), 6);
    }

    void aDateThatIsNoneIsZero() { QCOMPARE(dateNumber(QDateTime()), 0.0); }

    void anotherZoneCountsInLocalTime()
    {
        const QDateTime utc(QDate(2007, 1, 9), QTime(23, 0), Qt::UTC);
        QCOMPARE(dateNumber(utc), 39091.75);
    }
};

ZEL_TEST_MAIN(TestDateNumber)
#include "tst_datenumber.moc"
