// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "listtesting.h"
#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"

#include <QAccessible>
#include <QClipboard>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Zel;
using namespace ListTesting;

/// Columns, lines, selection and views of a ListView.
class TestListView : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListView> m_list;

private slots:

    void init()
    {
        TestCase::init();
        m_list = std::make_unique<ListView>();
        m_list->addColumn(QStringLiteral("Name"), 4145);
        m_list->addColumn(QStringLiteral("Created"), 1900, QStringLiteral("DATE"), Qt::AlignRight);
    }

    void cleanup() { m_list.reset(); }

    void columnsReadBackWhatWasSet()
    {
        QCOMPARE(m_list->columnCount(), 2);
        QCOMPARE(m_list->columnCaption(0), QStringLiteral("Name"));
        QCOMPARE(m_list->columnTag(0), QString());
        QCOMPARE(m_list->columnTag(1), QStringLiteral("DATE"));
        m_list->setColumnCaption(0, QStringLiteral("Title"));
        m_list->setColumnTag(0, QStringLiteral("NUMBER"));
        QCOMPARE(header(*m_list)->model()->headerData(0, Qt::Horizontal).toString(),
                 QStringLiteral("Title"));
        QCOMPARE(m_list->columnTag(0), QStringLiteral("NUMBER"));
        // What does not exist is empty, and setting it does nothing.
        m_list->setColumnCaption(7, QStringLiteral("x"));
        m_list->setColumnWidth(-1, 5);
        QCOMPARE(m_list->columnCaption(7), QString());
        QCOMPARE(m_list->columnWidth(-1), 0.0);
        m_list->clearColumns();
        QCOMPARE(m_list->columnCount(), 0);
    }

    void columnsMayComeAfterTheRows()
    {
        m_list->clearColumns();
        m_list->setRows(lines({"b", "a"}));
        show(*m_list);
        m_list->addColumn(QStringLiteral("Name"), 3000);
        m_list->sortBy(0, Qt::AscendingOrder);
        QTest::qWait(0);
        QVERIFY(m_list->cellRect(0).isValid());
        QVERIFY(m_list->cellRect(0).top() > m_list->cellRect(1).top());
        click(*m_list, 0);
        QCOMPARE(m_list->selectedRow(), 0);
    }

    void widthsAreExactTwips()
    {
        show(*m_list);
        const int dpi = logicalDpi(m_list.get());
        for (double twips : {4145.0, 1450.0, 3351.0, 2558.0, 1900.5, 31.0}) {
            m_list->setColumnWidth(0, twips);
            QCOMPARE(m_list->columnWidth(0), twips);
            QCOMPARE(header(*m_list)->sectionSize(0), std::max(8, pixelsFromTwips(twips, dpi)));
        }
    }

    void aWidthOfNothingHidesTheColumn()
    {
        show(*m_list);
        m_list->setRows(lines({QStringLiteral("a")}));
        m_list->setColumnWidth(1, 0);
        QVERIFY(header(*m_list)->isSectionHidden(1));
        QCOMPARE(m_list->columnWidth(1), 0.0);
        QCOMPARE(m_list->columnCount(), 2);
        m_list->setColumnWidth(1, 1900);
        QVERIFY(!header(*m_list)->isSectionHidden(1));
        QCOMPARE(header(*m_list)->sectionSize(1), pixelsFromTwips(1900, logicalDpi(m_list.get())));
        m_list->addColumn(QStringLiteral("Event Date"), 0);
        QVERIFY(header(*m_list)->isSectionHidden(2));
    }

    void aPersonDragsADivider()
    {
        show(*m_list);
        QSignalSpy resized(m_list.get(), &ListView::columnResized);
        QHeaderView *head = header(*m_list);
        const int edge = head->sectionViewportPosition(1);
        const QPoint from(edge - 1, head->height() / 2);
        QTest::mousePress(head->viewport(), Qt::LeftButton, {}, from);
        QTest::mouseMove(head->viewport(), from + QPoint(40, 0));
        QTest::mouseRelease(head->viewport(), Qt::LeftButton, {}, from + QPoint(40, 0));
        const double expected = twipsFromPixels(
            pixelsFromTwips(4145, logicalDpi(m_list.get())) + 40, logicalDpi(m_list.get()));
        QCOMPARE(m_list->columnWidth(0), expected);
        QVERIFY(!resized.isEmpty());
        QCOMPARE(resized.last().first(), QVariant(0));
        QCOMPARE(m_list->columnWidth(1), 1900.0);
    }

    void aDoubleClickOnADividerFitsTheLinesInSight()
    {
        show(*m_list);
        auto rows = std::make_shared<WatchedRows>(100000);
        m_list->setRows(rows);
        m_list->viewport()->repaint();
        QHeaderView *head = header(*m_list);
        const QPoint divider(head->sectionViewportPosition(1) - 1, head->height() / 2);
        QTest::mouseMove(head->viewport(), divider);
        QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, divider);
        QTest::mouseDClick(head->viewport(), Qt::LeftButton, {}, divider);
        const int needed = m_list->fontMetrics().horizontalAdvance(QStringLiteral("line 9 cell 0"));
        QVERIFY(head->sectionSize(0) > needed);
        QVERIFY(head->sectionSize(0) < needed + 60);
        QVERIFY(rows->asked.size() < 50);
    }

    void aMillionLinesAskForWhatIsSeen()
    {
        auto rows = std::make_shared<WatchedRows>(1'000'000);
        m_list->setRows(rows);
        QCOMPARE(m_list->count(), 1'000'000);
        QVERIFY(rows->asked.isEmpty());
        show(*m_list);
        QVERIFY(rows->asked.contains(0));
        QVERIFY(rows->asked.size() < 40);
        m_list->ensureVisible(700'000);
        m_list->viewport()->repaint();
        QVERIFY(rows->asked.contains(700'000));
        QVERIFY(m_list->viewport()->rect().contains(m_list->cellRect(700'000).center()));
        m_list->selectRow(999'999);
        m_list->viewport()->repaint();
        QCOMPARE(m_list->selectedRow(), 999'999);
        QCOMPARE(m_list->tag(999'999), QVariant(9'999'990));
        QVERIFY(rows->asked.size() < 120);
    }

    void linesAnswerTextTagAndState()
    {
        auto rows = std::make_shared<ListLines>();
        const qsizetype row = rows->add(QStringLiteral("Launch"), {QStringLiteral("9/1/2007")}, 42);
        m_list->setRows(rows);
        QCOMPARE(m_list->rows(), rows.get());
        QCOMPARE(m_list->text(row), QStringLiteral("Launch"));
        QCOMPARE(m_list->text(row, 1), QStringLiteral("9/1/2007"));
        QCOMPARE(m_list->tag(row), QVariant(42));
        m_list->setText(row, 1, QStringLiteral("later"));
        m_list->setCellTag(row, 1, 7);
        m_list->setSmallIcon(row, 1);
        m_list->setLargeIcon(row, 2);
        m_list->setChecked(row, true);
        m_list->setGhosted(row, true);
        m_list->setLineColour(row, QColor(160, 160, 160));
        m_list->setCellColour(row, 1, Qt::red);
        QCOMPARE(m_list->text(row, 1), QStringLiteral("later"));
        QCOMPARE(m_list->cellTag(row, 1), QVariant(7));
        QCOMPARE(m_list->smallIcon(row), 1);
        QCOMPARE(m_list->largeIcon(row), 2);
        QVERIFY(m_list->isChecked(row));
        QVERIFY(m_list->isGhosted(row));
        QCOMPARE(m_list->colour(row, 0), QColor(160, 160, 160));
        QCOMPARE(m_list->colour(row, 1), QColor(Qt::red));
    }

    void aLineThatDoesNotExistIsEmptyAndCannotBeSet()
    {
        m_list->setRows(lines({QStringLiteral("only")}));
        for (qsizetype row : {-1, 1, 5000}) {
            m_list->setText(row, 0, QStringLiteral("x"));
            m_list->setSmallIcon(row, 1);
            m_list->setLargeIcon(row, 1);
            m_list->setChecked(row, true);
            m_list->setGhosted(row, true);
            m_list->setLineColour(row, Qt::red);
            m_list->setCellColour(row, 0, Qt::red);
            m_list->setCellTag(row, 0, 1);
            m_list->updateRow(row);
            m_list->ensureVisible(row);
            QCOMPARE(m_list->text(row), QString());
            QVERIFY(!m_list->tag(row).isValid());
            QVERIFY(!m_list->cellTag(row, 0).isValid());
            QCOMPARE(m_list->smallIcon(row), 0);
            QCOMPARE(m_list->largeIcon(row), 0);
            QVERIFY(!m_list->isChecked(row));
            QVERIFY(!m_list->isGhosted(row));
            QVERIFY(!m_list->colour(row).isValid());
            QCOMPARE(m_list->positionOf(row), -1);
            QCOMPARE(m_list->rowAt(row), -1);
            QVERIFY(!m_list->indexOf(row).isValid());
        }
    }

    void newRowsForgetSelectionStateAndScroll()
    {
        show(*m_list);
        m_list->setRows(std::make_shared<WatchedRows>(500));
        m_list->selectRow(400);
        m_list->setGhosted(3, true);
        QVERIFY(m_list->view()->verticalScrollBar()->value() > 0);
        QSignalSpy changed(m_list.get(), &ListView::selectionChanged);
        m_list->setRows(std::make_shared<WatchedRows>(500));
        QCOMPARE(m_list->selectedRow(), -1);
        QCOMPARE(changed.size(), 1);
        QVERIFY(!m_list->isGhosted(3));
        QCOMPARE(m_list->view()->verticalScrollBar()->value(), 0);
        m_list->clear();
        QCOMPARE(m_list->count(), 0);
        QCOMPARE(m_list->rows(), nullptr);
        QCOMPARE(changed.size(), 1);
    }

    void rowsAtTheEndKeepTheRest()
    {
        auto rows = lines({QStringLiteral("b"), QStringLiteral("a")});
        m_list->setRows(rows);
        m_list->selectRow(1);
        m_list->setGhosted(0, true);
        rows->add(QStringLiteral("aa"));
        m_list->rowsAppended();
        QCOMPARE(shownTexts(*m_list), QStringList({"b", "a", "aa"}));
        QCOMPARE(m_list->selectedRow(), 1);

        m_list->sortBy(0, Qt::AscendingOrder);
        m_list->setRowFilter([](qsizetype row) { return row != 0; });
        rows->add(QStringLiteral("A0"));
        m_list->rowsAppended();
        QCOMPARE(shownTexts(*m_list), QStringList({"a", "A0", "aa"}));
        QCOMPARE(m_list->selectedRow(), 1);
        QVERIFY(m_list->isGhosted(0));
        m_list->setRowFilter({});
        QCOMPARE(shownTexts(*m_list), QStringList({"a", "A0", "aa", "b"}));
    }

    void selectingByCodeRaisesNoClick()
    {
        show(*m_list);
        m_list->setRows(lines({QStringLiteral("a"), QStringLiteral("b")}));
        QSignalSpy clicked(m_list.get(), &ListView::lineClicked);
        QSignalSpy changed(m_list.get(), &ListView::selectionChanged);
        QCOMPARE(m_list->selectedRow(), -1);
        m_list->selectRow(1);
        QCOMPARE(m_list->selectedRow(), 1);
        QCOMPARE(m_list->selectedRows(), QList<qsizetype>({1}));
        QCOMPARE(changed.size(), 1);
        m_list->selectRow(9);
        QCOMPARE(m_list->selectedRow(), 1);
        m_list->selectRow(-1);
        QCOMPARE(m_list->selectedRow(), -1);
        m_list->selectRow(0);
        m_list->clearSelection();
        QCOMPARE(m_list->selectedCount(), 0);
        QCOMPARE(changed.size(), 4);
        QCOMPARE(clicked.size(), 0);
    }

    void severalLinesAreSelectedFromTopToBottom()
    {
        show(*m_list);
        m_list->setRows(lines({"a", "b", "c", "d", "e"}));
        m_list->sortBy(0, Qt::DescendingOrder);
        QVERIFY(!m_list->isMultiSelect());
        m_list->setMultiSelect(true);
        click(*m_list, 0);
        click(*m_list, 3, 0, Qt::ControlModifier);
        click(*m_list, 1, 0, Qt::ControlModifier);
        QCOMPARE(m_list->selectedRows(), QList<qsizetype>({3, 1, 0}));
        QCOMPARE(m_list->selectedRow(), 1);
        QCOMPARE(m_list->selectedCount(), 3);
        m_list->setMultiSelect(false);
        QCOMPARE(m_list->selectedRows(), QList<qsizetype>({1}));
    }

    void theViewsShareModelAndSelection()
    {
        show(*m_list);
        m_list->setRows(std::make_shared<WatchedRows>(300));
        QVERIFY(qobject_cast<QTreeView *>(m_list->view()));
        m_list->selectRow(200);
        m_list->setViewMode(ListView::ViewMode::Icon);
        QCOMPARE(m_list->viewMode(), ListView::ViewMode::Icon);
        QVERIFY(qobject_cast<QListView *>(m_list->view()));
        QCOMPARE(m_list->selectedRow(), 200);
        QVERIFY(m_list->view()->isVisible());
        QVERIFY(m_list->viewport()->rect().contains(m_list->cellRect(200).center()));
        QSignalSpy clicked(m_list.get(), &ListView::lineClicked);
        click(*m_list, 199);
        QCOMPARE(clicked.size(), 1);
        m_list->setViewMode(ListView::ViewMode::Report);
        QVERIFY(qobject_cast<QTreeView *>(m_list->view()));
        QCOMPARE(m_list->selectedRow(), 199);
        QVERIFY(m_list->viewport()->rect().contains(m_list->cellRect(199).center()));
    }

    void theFocusFollowsTheView()
    {
        show(*m_list);
        m_list->setFocus();
        QVERIFY(m_list->view()->hasFocus());
        m_list->setViewMode(ListView::ViewMode::Icon);
        QVERIFY(m_list->view()->hasFocus());
        QCOMPARE(m_list->focusProxy(), m_list->view());
    }

    void theViewsHaveTheAccessibleName()
    {
        m_list->setAccessibleName(QStringLiteral("Projects"));
        QCOMPARE(m_list->view()->accessibleName(), QStringLiteral("Projects"));
        m_list->setViewMode(ListView::ViewMode::Icon);
        QCOMPARE(m_list->view()->accessibleName(), QStringLiteral("Projects"));
        // A form file sets the name through QWidget.
        m_list->setProperty("accessibleName", QStringLiteral("Themes"));
        show(*m_list);
        QCOMPARE(m_list->view()->accessibleName(), QStringLiteral("Themes"));
    }

    void aScreenReaderFindsHeadersAndCells()
    {
        show(*m_list);
        auto rows = std::make_shared<ListLines>();
        rows->add(QStringLiteral("Launch"), {QStringLiteral("9/1/2007")});
        m_list->setRows(rows);
        QCoreApplication::processEvents();
        QAccessibleInterface *view = QAccessible::queryAccessibleInterface(m_list->view());
        QVERIFY(view && view->tableInterface());
        QCOMPARE(view->tableInterface()->rowCount(), 1);
        QCOMPARE(view->tableInterface()->columnDescription(1), QStringLiteral("Created"));
        QCOMPARE(view->tableInterface()->cellAt(0, 1)->text(QAccessible::Name),
                 QStringLiteral("9/1/2007"));
    }

    void copyingGivesVisibleColumnsWithTabs()
    {
        show(*m_list);
        m_list->addColumn(QStringLiteral("Hidden"), 0);
        auto rows = std::make_shared<ListLines>();
        rows->add(QStringLiteral("two\tparts"),
                  {QStringLiteral("a\r\nb\nc"), QStringLiteral("no")});
        rows->add(QStringLiteral("not this"));
        rows->add(QStringLiteral("last"), {QStringLiteral("x")});
        m_list->setRows(rows);
        QCOMPARE(m_list->selectionAsText(), QString());
        m_list->setMultiSelect(true);
        click(*m_list, 2);
        click(*m_list, 0, 0, Qt::ControlModifier);
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        QTest::keyClick(m_list->view(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("two parts\ta b c\nlast\tx"));
        // Nothing selected leaves the clipboard alone.
        m_list->clearSelection();
        QTest::keyClick(m_list->view(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("two parts\ta b c\nlast\tx"));
    }
};

ZEL_TEST_MAIN(TestListView)
#include "tst_listview.moc"
