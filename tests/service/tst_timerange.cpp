// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/timerange.h"
#include "testsupport/testcase.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace Zel;

/// Cutting a range into whole hours and the rest.
class TimeRangeTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void findsTheHourOfATime()
    {
        QCOMPARE(hourOf(0), 0);
        QCOMPARE(hourOf(hourMs - 1), 0);
        QCOMPARE(hourOf(hourMs), 1);
        QCOMPARE(hourOf(-1), -1);
        QCOMPARE(hourOf(-hourMs), -1);
        QCOMPARE(hourOf(-hourMs - 1), -2);
    }

    void partsCoverTheRangeWithoutOverlap()
    {
        QRandomGenerator dice(3);
        for (int round = 0; round < 3000; ++round) {
            const qint64 from = dice.bounded(-4, 4) * hourMs + dice.bounded(-2, 3);
            const qint64 to = from + dice.bounded(-2, 5) * hourMs + dice.bounded(-2, 3);
            const HourCut cut({from, to});
            for (const qint64 edge : {from - 1, from, from + 1, to - 1, to, to + 1,
                                      hourOf(from) * hourMs, hourOf(to) * hourMs - 1}) {
                const int parts = (edge >= cut.headFrom && edge < cut.headTo) +
                                  (edge >= cut.tailFrom && edge < cut.tailTo) +
                                  (hourOf(edge) >= cut.hourFrom && hourOf(edge) < cut.hourTo);
                QCOMPARE(parts, edge >= from && edge <= to ? 1 : 0);
                QCOMPARE(edge >= cut.from && edge < cut.end, parts == 1);
            }
            QVERIFY(cut.headTo - cut.headFrom < hourMs || cut.hourTo == cut.hourFrom);
            QVERIFY(cut.tailTo - cut.tailFrom < hourMs);
        }
    }

    void takesRangesOfAllTime()
    {
        constexpr qint64 least = std::numeric_limits<qint64>::min();
        constexpr qint64 most = std::numeric_limits<qint64>::max();
        const HourCut all({least, most});
        QVERIFY(all.from < -62'000'000'000'000 && all.end > 253'000'000'000'000);
        QVERIFY(all.hourFrom < all.hourTo);
        const HourCut none({most, least});
        QCOMPARE(none.from, none.end);
        QCOMPARE(none.hourFrom, none.hourTo);
        QCOMPARE(HourCut({most - 1, most}).from, HourCut({most - 1, most}).end);
    }
};

ZEL_TEST_MAIN(TimeRangeTest)
#include "tst_timerange.moc"
