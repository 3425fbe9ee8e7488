// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/listsort.h"

#include "listtesting.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Zel;
using namespace ListTesting;

namespace {

/// A key for whole numbers from 0: padded, empty for other texts.
QString paddedKey(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? QStringLiteral("%1").arg(number, 9, 10, QLatin1Char('0')) : QString();
}

/// Names, and numbers that sort otherwise as texts.
std::shared_ptr<ListLines> sample()
{
    auto rows = std::make_shared<ListLines>();
    rows->add(QStringLiteral("delta"), {QStringLiteral("10"), QStringLiteral("x")}, 0);
    rows->add(QStringLiteral("Alpha"), {QStringLiteral("9"), QStringLiteral("x")}, 1);
    rows->add(QStringLiteral("charlie"), {QStringLiteral("none"), QStringLiteral("x")}, 2);
    rows->add(QStringLiteral("alpha"), {QStringLiteral("10"), QStringLiteral("x")}, 3);
    return rows;
}

/// Numbers with sort values; some cells have no number, and one of them throws.
class NumberRows : public ListRowProvider
{
public:
    explicit NumberRows(std::vector<int> numbers)
        : m_numbers(std::move(numbers))
    {
    }

    qsizetype rowCount() const override { return static_cast<qsizetype>(m_numbers.size()); }

    QString text(qsizetype row, int) const override
    {
        ++textsMade;
        const int number = m_numbers[static_cast<size_t>(row)];
        if (number == throwing)
            throw RuntimeError(RuntimeError::TypeMismatch);
        return number < 0 ? QString() : QString::number(number);
    }

    bool sortValues(int column, std::span<qint64> out) const override
    {
        if (!hasValues || column != 0)
            return false;
        std::transform(m_numbers.begin(), m_numbers.end(), out.begin(),
                       [](int number) { return number < 0 ? NoSortValue : qint64(number); });
        return true;
    }

    static constexpr int throwing = -2;
    bool hasValues = true;
    mutable int textsMade = 0;

private:
    std::vector<int> m_numbers;
};

} // namespace

class TestListSort : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListView> m_list;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    QList<qsizetype> order() const
    {
        QList<qsizetype> rows;
        for (qsizetype position = 0; position < m_list->filteredCount(); ++position)
            rows.append(m_list->rowAt(position));
        return rows;
    }

    using Rows = QList<qsizetype>;

private slots:

    void init()
    {
        TestCase::init();
        m_list = std::make_unique<ListView>();
        m_list->addColumn(QStringLiteral("Name"), 3000);
        m_list->addColumn(QStringLiteral("Size"), 2000, QStringLiteral("NUMBER"));
        m_list->addColumn(QStringLiteral("Same"), 2000);
        m_list->setSortKeyMaker(QStringLiteral("NUMBER"), paddedKey);
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_list->view()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_list->setRows(sample());
        connect(m_list.get(), &ListView::columnClicked, m_list.get(),
                [this](int column) { sortByHeaderClick(*m_list, column); });
    }

    void cleanup()
    {
        m_tester.reset();
        m_list.reset();
    }

    void aFreshListKeepsTheOrderOfTheRecords()
    {
        QVERIFY(!m_list->isSorted());
        QCOMPARE(m_list->sortOrder(), Qt::AscendingOrder);
        QCOMPARE(m_list->sortKey(), 0);
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
        QVERIFY(!header(*m_list)->isSortIndicatorShown());
    }

    void theFirstHeaderClickSortsDescendingAndEachFlips()
    {
        show(*m_list);
        clickHeader(*m_list, 0);
        QVERIFY(m_list->isSorted());
        QCOMPARE(m_list->sortOrder(), Qt::DescendingOrder);
        QCOMPARE(order(), Rows({0, 2, 1, 3}));
        clickHeader(*m_list, 0);
        QCOMPARE(m_list->sortOrder(), Qt::AscendingOrder);
        QCOMPARE(order(), Rows({1, 3, 2, 0}));
        // The flag is one for the whole list.
        clickHeader(*m_list, 1);
        QCOMPARE(m_list->sortKey(), 1);
        QCOMPARE(m_list->sortOrder(), Qt::DescendingOrder);
        QCOMPARE(order(), Rows({0, 3, 1, 2}));
        clickHeader(*m_list, 1);
        QCOMPARE(order(), Rows({2, 1, 0, 3}));
    }

    void keyColumnsSortByKeysAndShowTheirTexts()
    {
        sortByHeaderClick(*m_list, 1);
        sortByHeaderClick(*m_list, 1);
        QCOMPARE(shownTexts(*m_list, 1), QStringList({"none", "9", "10", "10"}));
        for (qsizetype row = 0; row < 4; ++row)
            QVERIFY(!m_list->cellTag(row, 1).isValid());
        // Without a maker the texts themselves are sorted.
        m_list->setSortKeyMaker(QStringLiteral("NUMBER"), {});
        QCOMPARE(shownTexts(*m_list, 1), QStringList({"10", "10", "9", "none"}));
    }

    void equalCellsKeepTheOrderOfTheRecordsInBothDirections()
    {
        sortByHeaderClick(*m_list, 2);
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
        sortByHeaderClick(*m_list, 2);
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
    }

    void theArrowShowsColumnAndOrderWhileSorted()
    {
        show(*m_list);
        const QHeaderView *head = header(*m_list);
        clickHeader(*m_list, 1);
        QVERIFY(head->isSortIndicatorShown());
        QCOMPARE(head->sortIndicatorSection(), 1);
        QCOMPARE(head->sortIndicatorOrder(), Qt::DescendingOrder);
        clickHeader(*m_list, 1);
        QCOMPARE(head->sortIndicatorOrder(), Qt::AscendingOrder);
        m_list->setSorted(false);
        QVERIFY(!head->isSortIndicatorShown());
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
    }

    void theArrowStaysWhereTheListSaysWhenNobodySorts()
    {
        show(*m_list);
        m_list->sortBy(0, Qt::AscendingOrder);
        disconnect(m_list.get(), &ListView::columnClicked, nullptr, nullptr);
        QSignalSpy clicked(m_list.get(), &ListView::columnClicked);
        clickHeader(*m_list, 2);
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(clicked.first().first(), QVariant(2));
        QCOMPARE(header(*m_list)->sortIndicatorSection(), 0);
        QCOMPARE(header(*m_list)->sortIndicatorOrder(), Qt::AscendingOrder);
    }

    void theSecondOfTwoQuickHeaderClicksCounts()
    {
        show(*m_list);
        clickHeader(*m_list, 0);
        const QHeaderView *head = header(*m_list);
        QTest::mouseDClick(head->viewport(), Qt::LeftButton, {}, QPoint(20, head->height() / 2));
        QCOMPARE(m_list->sortOrder(), Qt::AscendingOrder);
    }

    void aHiddenColumnSorts()
    {
        m_list->setColumnWidth(1, 0);
        sortByHeaderClick(*m_list, 1);
        QCOMPARE(order(), Rows({0, 3, 1, 2}));
    }

    void aColumnThatDoesNotExistIsIgnored()
    {
        sortByHeaderClick(*m_list, 3);
        sortByHeaderClick(*m_list, -1);
        QVERIFY(!m_list->isSorted());
        QCOMPARE(m_list->sortOrder(), Qt::AscendingOrder);
        m_list->setSortKey(99);
        m_list->setSorted(true);
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
    }

    void theHourglassShowsAndNothingIsPaintedMeanwhile()
    {
        show(*m_list);
        m_list->setCursor(Qt::PointingHandCursor);
        int seen = 0;
        m_list->setSortKeyMaker(QStringLiteral("NUMBER"), [&](const QString &text) {
            ++seen;
            if (m_list->cursor().shape() != Qt::WaitCursor || m_list->view()->updatesEnabled())
                seen = -1000;
            return paddedKey(text);
        });
        sortByHeaderClick(*m_list, 1);
        QCOMPARE(seen, 4);
        QCOMPARE(m_list->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(m_list->view()->updatesEnabled());

        // A list without a pointer of its own goes on showing that of the window around it.
        QWidget window;
        m_list->setParent(&window);
        m_list->unsetCursor();
        sortByHeaderClick(*m_list, 1);
        window.setCursor(Qt::CrossCursor);
        QCOMPARE(m_list->cursor().shape(), Qt::CrossCursor);
        m_list->setParent(nullptr);
    }

    void aBadCellCannotStopTheSort()
    {
        m_list->setSortKeyMaker(QStringLiteral("NUMBER"), [](const QString &text) {
            if (text == QLatin1String("9"))
                throw RuntimeError(RuntimeError::Overflow);
            return paddedKey(text);
        });
        sortByHeaderClick(*m_list, 1);
        sortByHeaderClick(*m_list, 1);
        QCOMPARE(order(), Rows({1, 2, 0, 3}));

        auto rows = std::make_shared<NumberRows>(std::vector<int>{5, NumberRows::throwing, 3});
        rows->hasValues = false;
        m_list->setRows(rows);
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(order(), Rows({1, 2, 0}));
    }

    void sortValuesSpareTheTexts()
    {
        m_tester.reset(); // It asks for texts, too.
        std::vector<int> numbers;
        for (int i = 0; i < 5000; ++i)
            numbers.push_back(i % 7 == 0 ? -1 : (i * 7919) % 1000);
        auto rows = std::make_shared<NumberRows>(numbers);
        m_list->setColumnTag(0, QStringLiteral("NUMBER"));
        m_list->setRows(rows);
        for (auto direction : {Qt::DescendingOrder, Qt::AscendingOrder}) {
            rows->hasValues = true;
            rows->textsMade = 0;
            m_list->sortBy(0, direction);
            QCOMPARE(rows->textsMade, 0);
            const Rows byValue = order();
            rows->hasValues = false;
            m_list->sortBy(0, direction);
            QVERIFY(rows->textsMade >= 5000);
            QCOMPARE(order(), byValue);
        }
    }

    void aTextThatCodeHasSetIsSortedToo()
    {
        m_list->setColumnTag(0, QStringLiteral("NUMBER"));
        m_list->setRows(std::make_shared<NumberRows>(std::vector<int>{30, 20, 10}));
        m_list->setText(0, 0, QStringLiteral("5"));
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(shownTexts(*m_list), QStringList({"5", "10", "20"}));
    }

    void otherColumnsSortByValueOnlyWhereAskedTo()
    {
        m_list->setRows(std::make_shared<NumberRows>(std::vector<int>{100, 20, 3}));
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(shownTexts(*m_list), QStringList({"100", "20", "3"}));
        QVERIFY(!m_list->sortsByValue());
        m_list->setSortByValue(true);
        QCOMPARE(shownTexts(*m_list), QStringList({"3", "20", "100"}));
    }

    void aProviderThatGrewUnannouncedIsSortedByItsTexts()
    {
        struct Growing : NumberRows
        {
            using NumberRows::NumberRows;

            qsizetype rowCount() const override { return NumberRows::rowCount() - hidden; }

            int hidden = 1;
        };

        auto rows = std::make_shared<Growing>(std::vector<int>{30, 4, 100});
        m_list->setColumnTag(0, QStringLiteral("NUMBER"));
        m_list->setRows(rows);
        rows->hidden = 0;
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(order(), Rows({1, 0}));
    }

    void settersSortWhileSorted()
    {
        m_list->setSortKey(1);
        m_list->setSortOrder(Qt::DescendingOrder);
        QCOMPARE(order(), Rows({0, 1, 2, 3}));
        m_list->setSorted(true);
        QCOMPARE(order(), Rows({0, 3, 1, 2}));
        m_list->setSortOrder(Qt::AscendingOrder);
        QCOMPARE(order(), Rows({2, 1, 0, 3}));
        m_list->setSortKey(0);
        QCOMPARE(order(), Rows({1, 3, 2, 0}));
        // A text changed by code waits for the next sort.
        m_list->setText(0, 0, QStringLiteral("aaa"));
        QCOMPARE(order(), Rows({1, 3, 2, 0}));
        m_list->setSorted(true);
        QCOMPARE(order(), Rows({0, 1, 3, 2}));
        m_list->setRows(sample());
        QCOMPARE(order(), Rows({1, 3, 2, 0}));
    }

    void selectionAndCurrentLineFollowTheirRecords()
    {
        m_list->setMultiSelect(true);
        show(*m_list);
        click(*m_list, 0);
        click(*m_list, 2, 0, Qt::ControlModifier);
        QSignalSpy changed(m_list.get(), &ListView::selectionChanged);
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(m_list->selectedRows(), Rows({2, 0}));
        QCOMPARE(m_list->selectedRow(), 2);
        QCOMPARE(m_list->view()->currentIndex().data(RecordIndexRole).value<qsizetype>(), 2);
        QCOMPARE(changed.size(), 0);
    }

    void theCurrentLineStaysInSightIfItWas()
    {
        std::vector<int> numbers(1000);
        for (int i = 0; i < 1000; ++i)
            numbers[static_cast<size_t>(i)] = i;
        m_list->setColumnTag(0, QStringLiteral("NUMBER"));
        m_list->setRows(std::make_shared<NumberRows>(numbers));
        show(*m_list);
        m_list->selectRow(2);
        m_list->sortBy(0, Qt::DescendingOrder);
        QVERIFY(m_list->viewport()->rect().contains(m_list->cellRect(2).center()));
        // Scrolled away from, it stays away.
        m_list->view()->verticalScrollBar()->setValue(0);
        m_list->sortBy(0, Qt::AscendingOrder);
        m_list->view()->verticalScrollBar()->setValue(500);
        m_list->sortBy(0, Qt::DescendingOrder);
        QCOMPARE(m_list->view()->verticalScrollBar()->value(), 500);
    }

    void clicksAfterASortHitTheLineSeen()
    {
        show(*m_list);
        m_list->viewport()->repaint();
        m_list->sortBy(0, Qt::AscendingOrder);
        QSignalSpy clicks(m_list.get(), &ListView::lineClicked);
        const QRect top = m_list->view()->visualRect(m_list->view()->model()->index(0, 0));
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, top.center());
        QCOMPARE(clicks.first().first().value<qsizetype>(), 1);
    }

    void theIconViewShowsTheSameOrder()
    {
        show(*m_list);
        m_list->setViewMode(ListView::ViewMode::Icon);
        m_list->sortBy(0, Qt::AscendingOrder);
        QCOMPARE(shownTexts(*m_list), QStringList({"Alpha", "alpha", "charlie", "delta"}));
        QVERIFY(m_list->cellRect(1).left() < m_list->cellRect(0).left());
    }

    void aFilterHidesLinesAndKeepsTheSort()
    {
        m_list->sortBy(0, Qt::AscendingOrder);
        m_list->setRowFilter([](qsizetype row) { return row != 3; });
        QCOMPARE(order(), Rows({1, 2, 0}));
        QCOMPARE(m_list->filteredCount(), 3);
        QCOMPARE(m_list->count(), 4);
        QCOMPARE(m_list->positionOf(3), -1);
        QCOMPARE(m_list->text(3), QStringLiteral("alpha"));
        m_list->setSortOrder(Qt::DescendingOrder);
        QCOMPARE(order(), Rows({0, 2, 1}));
        m_list->setRowFilter({});
        QCOMPARE(order(), Rows({0, 2, 1, 3}));
    }

    void filteringMakesNoSort()
    {
        int keys = 0;
        m_list->setSortKeyMaker(QStringLiteral("NUMBER"), [&keys](const QString &text) {
            ++keys;
            return paddedKey(text);
        });
        m_list->sortBy(1, Qt::AscendingOrder);
        QCOMPARE(keys, 4);
        m_list->setRowFilter([](qsizetype row) { return row > 1; });
        m_list->setRowFilter({});
        QCOMPARE(keys, 4);
        QCOMPARE(order(), Rows({2, 1, 0, 3}));
    }

    void aSelectedLineThatIsFilteredOutIsDeselected()
    {
        QSignalSpy changed(m_list.get(), &ListView::selectionChanged);
        m_list->selectRow(2);
        QCOMPARE(changed.size(), 1);
        m_list->setRowFilter([](qsizetype row) { return row > 0; });
        QCOMPARE(m_list->selectedRow(), 2);
        QCOMPARE(changed.size(), 1);
        m_list->setRowFilter([](qsizetype row) { return row < 2; });
        QCOMPARE(m_list->selectedRow(), -1);
        QCOMPARE(changed.size(), 2);
        m_list->selectRow(2);
        QCOMPARE(m_list->selectedRow(), -1);
        m_list->setRowFilter({});
        QCOMPARE(m_list->selectedRow(), -1);
        QCOMPARE(changed.size(), 2);
    }

    void theFilterAppliesToNewRows()
    {
        m_list->setRowFilter(
            [this](qsizetype row) { return m_list->text(row) != QLatin1String("delta"); });
        QCOMPARE(order(), Rows({1, 2, 3}));
        m_list->setRows(lines({"x", "delta", "y"}));
        QCOMPARE(order(), Rows({0, 2}));
    }

    void aFilterThatThrowsChangesNothing()
    {
        m_list->setRowFilter([](qsizetype row) { return row != 0; });
        m_list->selectRow(1);
        const auto bad = [](qsizetype) -> bool { throw RuntimeError(5); };
        QVERIFY_THROWS_EXCEPTION(RuntimeError, m_list->setRowFilter(bad));
        QCOMPARE(order(), Rows({1, 2, 3}));
        QCOMPARE(m_list->selectedRow(), 1);
        m_list->setRows(sample());
        QCOMPARE(order(), Rows({1, 2, 3}));
    }
};

ZEL_TEST_MAIN(TestListSort)
#include "tst_listsort.moc"
