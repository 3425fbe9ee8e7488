// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/listtypeahead.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QTest>

using Zel::ListTypeAhead;

namespace {

const QStringList fruits{"Apple", "avocado", "Banana", "blueberry", "black currant", "Cherry"};

} // namespace

class TestListTypeAhead : public ZelTest::TestCase
{
    Q_OBJECT

    static qsizetype find(ListTypeAhead &search, const QString &typed, qsizetype current)
    {
        return search.find(typed, current, fruits.size(),
                           [](qsizetype position) { return fruits.at(position); });
    }

    static void pause() { QTest::qWait(QApplication::keyboardInputInterval() + 20); }

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        QApplication::setKeyboardInputInterval(300);
    }

    void findsTheBeginningWhateverItsCase()
    {
        ListTypeAhead search;
        QCOMPARE(find(search, QStringLiteral("C"), -1), 5);
        ListTypeAhead other;
        QCOMPARE(find(other, QStringLiteral("b"), -1), 2);
    }

    void keysInARowMakeALongerBeginning()
    {
        ListTypeAhead search;
        QVERIFY(!search.isActive());
        QCOMPARE(find(search, QStringLiteral("b"), -1), 2);
        QVERIFY(search.isActive());
        QCOMPARE(find(search, QStringLiteral("l"), 2), 3);
        QCOMPARE(find(search, QStringLiteral("a"), 3), 4);
        QCOMPARE(find(search, QStringLiteral("x"), 4), -1);
    }

    void aLongerBeginningMayFitTheSameLine()
    {
        ListTypeAhead search;
        QCOMPARE(find(search, QStringLiteral("c"), 0), 5);
        QCOMPARE(find(search, QStringLiteral("h"), 5), 5);
    }

    void theSameKeyGoesFromMatchToMatchAndRound()
    {
        ListTypeAhead search;
        QCOMPARE(find(search, QStringLiteral("b"), -1), 2);
        QCOMPARE(find(search, QStringLiteral("b"), 2), 3);
        QCOMPARE(find(search, QStringLiteral("b"), 3), 4);
        QCOMPARE(find(search, QStringLiteral("b"), 4), 2);
    }

    void aPauseBeginsAnew()
    {
        ListTypeAhead search;
        QCOMPARE(find(search, QStringLiteral("b"), -1), 2);
        pause();
        QVERIFY(!search.isActive());
        QCOMPARE(find(search, QStringLiteral("a"), 2), 0);
    }

    void anEmptyListHasNoMatch()
    {
        ListTypeAhead search;
        QCOMPARE(search.find(QStringLiteral("a"), -1, 0, [](qsizetype) { return QString(); }), -1);
        QCOMPARE(search.find(QString(), -1, 3, [](qsizetype) { return QString(); }), -1);
    }
};

ZEL_TEST_MAIN(TestListTypeAhead)
#include "tst_listtypeahead.moc"
