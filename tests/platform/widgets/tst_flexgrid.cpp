// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/flexgrid.h"

#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QTest>

using Zel::FlexGrid;

/// A table filled with tab-separated rows.
class TestFlexGrid : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void rowsAreTabSeparatedTexts();
    void widthsAreTwips();
    void widthsOutliveTheRows();
    void cellsAreMergedInTheirRowOnly();
    void clearingTakesRowsAndSpans();
    void numbersAreAlignedToTheRight();
    void theKeyboardWalksTheRows();
    void copyingGivesEachMergedTextOnce();
    void nothingIsEdited();
    void theModelKeepsItsPromises();

private:
    static void fill(FlexGrid &grid)
    {
        grid.setColumnWidths({150, 3000, 1100});
        grid.addRow(QStringLiteral("a\tb\tc"));
        grid.addRow(QStringLiteral("d\te\tf"));
        grid.mergeLastRow(1, 2);
    }
};

void TestFlexGrid::rowsAreTabSeparatedTexts()
{
    FlexGrid grid;
    fill(grid);
    grid.addRow(QStringLiteral("g"));
    grid.addRow(QStringLiteral("h\ti\tj\tbeyond"));
    QCOMPARE(grid.rowCount(), 4);
    QCOMPARE(grid.text(0, 2), QStringLiteral("c"));
    QCOMPARE(grid.rowText(1), QStringLiteral("d\te\tf"));
    QCOMPARE(grid.rowText(2), QStringLiteral("g\t\t"));
    QCOMPARE(grid.rowText(3), QStringLiteral("h\ti\tj"));
    QCOMPARE(grid.text(9, 9), QString());
}

void TestFlexGrid::widthsAreTwips()
{
    FlexGrid grid;
    grid.setColumnWidths({150, 205, 205, 3000});
    const int dpi = Zel::logicalDpi(&grid);
    int edge = 0;
    int right = 0;
    for (const int twips : {150, 205, 205, 3000}) {
        edge += twips;
        right += grid.columnWidth(edge == 150 ? 0 : edge == 355 ? 1 : edge == 560 ? 2 : 3);
        QCOMPARE(right, Zel::pixelsFromTwips(edge, dpi));
    }
}

void TestFlexGrid::widthsOutliveTheRows()
{
    FlexGrid grid;
    fill(grid);
    const int width = grid.columnWidth(1);
    grid.clear();
    grid.addRow(QStringLiteral("x"));
    QCOMPARE(grid.columnWidth(1), width);
    grid.setColumnWidths({150, 3000, 1100});
    QCOMPARE(grid.columnWidth(1), width);
    QCOMPARE(grid.columnCount(), 3);
}

void TestFlexGrid::cellsAreMergedInTheirRowOnly()
{
    FlexGrid grid;
    fill(grid);
    grid.addRow(QStringLiteral("d\te\tf"));
    QCOMPARE(grid.columnSpan(1, 1), 2);
    QCOMPARE(grid.rowSpan(1, 1), 1);
    QCOMPARE(grid.columnSpan(0, 1), 1);
    QCOMPARE(grid.columnSpan(2, 1), 1);
    grid.mergeLastRow(2, 5);
    QCOMPARE(grid.columnSpan(2, 2), 1);
}

void TestFlexGrid::clearingTakesRowsAndSpans()
{
    FlexGrid grid;
    fill(grid);
    grid.clear();
    grid.clear();
    QCOMPARE(grid.rowCount(), 0);
    grid.addRow(QStringLiteral("a\tb\tc"));
    grid.addRow(QStringLiteral("a\tb\tc"));
    QCOMPARE(grid.columnSpan(1, 1), 1);
}

void TestFlexGrid::numbersAreAlignedToTheRight()
{
    FlexGrid grid;
    fill(grid);
    grid.setColumnAlignment(2, Qt::AlignRight);
    const auto alignment = [&grid](int column) {
        return grid.model()->index(0, column).data(Qt::TextAlignmentRole).toInt();
    };
    QCOMPARE(alignment(2), int(Qt::AlignRight | Qt::AlignVCenter));
    QCOMPARE(alignment(1), int(Qt::AlignLeft | Qt::AlignVCenter));
}

void TestFlexGrid::theKeyboardWalksTheRows()
{
    FlexGrid grid;
    fill(grid);
    grid.show();
    grid.setCurrentIndex(grid.model()->index(0, 0));
    QTest::keyClick(&grid, Qt::Key_Down);
    QCOMPARE(grid.currentIndex().row(), 1);
    QVERIFY(grid.selectionModel()->isRowSelected(1));
}

void TestFlexGrid::copyingGivesEachMergedTextOnce()
{
    FlexGrid grid;
    fill(grid);
    grid.show();
    grid.selectAll();
    QTest::keySequence(&grid, QKeySequence::Copy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("a\tb\tc\nd\te\n"));
    grid.clearSelection();
    QCOMPARE(grid.selectedText(), QString());
}

void TestFlexGrid::nothingIsEdited()
{
    FlexGrid grid;
    fill(grid);
    grid.show();
    grid.setCurrentIndex(grid.model()->index(0, 1));
    QTest::keyClicks(&grid, QStringLiteral("zz"));
    QTest::keyClick(&grid, Qt::Key_F2);
    QVERIFY(!grid.isPersistentEditorOpen(grid.currentIndex()));
    QCOMPARE(grid.rowText(0), QStringLiteral("a\tb\tc"));
}

void TestFlexGrid::theModelKeepsItsPromises()
{
    FlexGrid grid;
    const QAbstractItemModelTester tester(grid.model(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    fill(grid);
    grid.clear();
    fill(grid);
    grid.setColumnWidths({10, 10});
    QCOMPARE(grid.rowCount(), 2);
}

ZEL_TEST_MAIN(TestFlexGrid)
#include "tst_flexgrid.moc"
