// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/listorder.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <stdexcept>

using Zel::ListOrder;

namespace {

QList<qsizetype> shown(const ListOrder &order)
{
    QList<qsizetype> rows;
    for (qsizetype position = 0; position < order.count(); ++position)
        rows.append(order.rowAt(position));
    return rows;
}

using Rows = QList<qsizetype>;

} // namespace

class TestListOrder : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void recordsStandInTheirOwnOrder()
    {
        ListOrder order;
        QCOMPARE(order.count(), 0);
        QCOMPARE(order.positionOf(0), -1);
        order.reset(3);
        QCOMPARE(shown(order), Rows({0, 1, 2}));
        QCOMPARE(order.positionOf(2), 2);
        QCOMPARE(order.positionOf(3), -1);
        QCOMPARE(order.positionOf(-1), -1);
    }

    void positionsFollowTheSort()
    {
        ListOrder order;
        order.reset(4);
        order.setSorted({2, 0, 3, 1});
        QVERIFY(order.isSorted());
        QCOMPARE(shown(order), Rows({2, 0, 3, 1}));
        for (qsizetype position = 0; position < 4; ++position)
            QCOMPARE(order.positionOf(order.rowAt(position)), position);
        order.setSorted({});
        QVERIFY(!order.isSorted());
        QCOMPARE(shown(order), Rows({0, 1, 2, 3}));
        QCOMPARE(order.positionOf(2), 2);
    }

    void theFilterKeepsTheSortAndGivesItBack()
    {
        ListOrder order;
        order.reset(6);
        order.setSorted({5, 4, 3, 2, 1, 0});
        order.setFilter([](qsizetype row) { return row % 2 == 0; });
        QVERIFY(order.isFiltered());
        QCOMPARE(order.total(), 6);
        QCOMPARE(shown(order), Rows({4, 2, 0}));
        QCOMPARE(order.positionOf(0), 2);
        QCOMPARE(order.positionOf(5), -1);
        order.setFilter({});
        QCOMPARE(shown(order), Rows({5, 4, 3, 2, 1, 0}));
    }

    void sortingWhileFilteredKeepsWhatIsShown()
    {
        ListOrder order;
        order.reset(6);
        int calls = 0;
        order.setFilter([&calls](qsizetype row) { return ++calls, row >= 2; });
        QCOMPARE(calls, 6);
        order.setSorted({5, 0, 4, 1, 3, 2});
        QCOMPARE(calls, 6);
        QCOMPARE(shown(order), Rows({5, 4, 3, 2}));
        order.setSorted({});
        QCOMPARE(shown(order), Rows({2, 3, 4, 5}));
        order.setFilter({});
        QCOMPARE(order.count(), 6);
    }

    void aFilterMayHideEverything()
    {
        ListOrder order;
        order.reset(2);
        order.setFilter([](qsizetype) { return false; });
        QCOMPARE(order.count(), 0);
        QCOMPARE(order.positionOf(1), -1);
    }

    void aFilterThatThrowsChangesNothing()
    {
        ListOrder order;
        order.reset(4);
        order.setFilter([](qsizetype row) { return row < 2; });
        const auto bad = [](qsizetype row) -> bool {
            if (row == 3)
                throw std::runtime_error("no");
            return true;
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, order.setFilter(bad));
        QCOMPARE(shown(order), Rows({0, 1}));
    }

    void resetForgetsSortAndFilter()
    {
        ListOrder order;
        order.reset(3);
        order.setSorted({2, 1, 0});
        order.setFilter([](qsizetype row) { return row == 1; });
        order.reset(2);
        QCOMPARE(shown(order), Rows({0, 1}));
    }
};

ZEL_TEST_MAIN(TestListOrder)
#include "tst_listorder.moc"
