// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "listtesting.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Zel;
using namespace ListTesting;

namespace {

/// The records a signal with a record number came with.
QList<qsizetype> rowsOf(const QSignalSpy &spy)
{
    QList<qsizetype> rows;
    for (const QVariantList &arguments : spy)
        rows.append(arguments.first().value<qsizetype>());
    return rows;
}

using Rows = QList<qsizetype>;

} // namespace

/// What a person's mouse and keyboard do in a ListView.
class TestListInput : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListView> m_list;
    std::unique_ptr<QSignalSpy> m_clicks;
    std::unique_ptr<QSignalSpy> m_doubleClicks;

    void key(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(m_list->view(), static_cast<Qt::Key>(key), modifiers);
    }

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        QApplication::setKeyboardInputInterval(300);
    }

    void init()
    {
        TestCase::init();
        m_list = std::make_unique<ListView>();
        m_list->addColumn(QStringLiteral("Name"), 3000);
        m_list->addColumn(QStringLiteral("Description"), 3000);
        m_list->setRows(lines({"delta", "alpha", "charlie", "bravo", "Beta"}));
        // On the screen: alpha (1), Beta (4), bravo (3), charlie (2), delta (0).
        m_list->sortBy(0, Qt::AscendingOrder);
        show(*m_list);
        m_clicks = std::make_unique<QSignalSpy>(m_list.get(), &ListView::lineClicked);
        m_doubleClicks = std::make_unique<QSignalSpy>(m_list.get(), &ListView::lineDoubleClicked);
    }

    void cleanup()
    {
        m_clicks.reset();
        m_doubleClicks.reset();
        m_list.reset();
    }

    void aClickOnAnyCellClicksItsRecord()
    {
        click(*m_list, 3, 1);
        QCOMPARE(rowsOf(*m_clicks), Rows({3}));
        QCOMPARE(m_list->selectedRow(), 3);
        click(*m_list, 3);
        QCOMPARE(rowsOf(*m_clicks), Rows({3, 3}));
        QCOMPARE(m_doubleClicks->size(), 0);
    }

    void theClickComesWhenTheButtonIsLetGo()
    {
        const QPoint on = m_list->cellRect(3).center();
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, on);
        QCOMPARE(m_list->selectedRow(), 3);
        QCOMPARE(m_clicks->size(), 0);
        // Moving away does not drag the selection along, and the line selected is the line clicked.
        QTest::mouseMove(m_list->viewport(), m_list->cellRect(2).center());
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, m_list->cellRect(2).center());
        QCOMPARE(rowsOf(*m_clicks), Rows({3}));
        QCOMPARE(m_list->selectedRow(), 3);
    }

    void aDoubleClickIsOneClickAndOneDoubleClick()
    {
        doubleClick(*m_list, 2, 1);
        QCOMPARE(rowsOf(*m_clicks), Rows({2}));
        QCOMPARE(rowsOf(*m_doubleClicks), Rows({2}));
    }

    void aSecondPressOnAnotherLineIsAClick()
    {
        click(*m_list, 1);
        const QPoint other = m_list->cellRect(4).center();
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, other);
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, other);
        QCOMPARE(rowsOf(*m_clicks), Rows({1, 4}));
        QCOMPARE(m_doubleClicks->size(), 0);
    }

    void aDoubleClickMayHitAnotherCellOfTheLine()
    {
        const QPoint first = m_list->cellRect(1, 0).center();
        const QPoint second = m_list->cellRect(1, 1).center();
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, first);
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, second);
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, second);
        QCOMPARE(rowsOf(*m_clicks), Rows({1}));
        QCOMPARE(rowsOf(*m_doubleClicks), Rows({1}));
    }

    void emptyGroundRaisesNothingAndClearsTheSelection()
    {
        click(*m_list, 1);
        m_clicks->clear();
        clickGround(*m_list);
        QCOMPARE(m_list->selectedRow(), -1);
        // Right of the last column is ground too.
        click(*m_list, 1);
        m_clicks->clear();
        const QPoint right(m_list->viewport()->width() - 5, m_list->cellRect(1).center().y());
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, right);
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, right);
        QCOMPARE(m_list->selectedRow(), -1);
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_doubleClicks->size(), 0);
    }

    void aPressOnGroundLetGoOnALineRaisesNothing()
    {
        const QPoint ground = m_list->viewport()->rect().bottomLeft() + QPoint(20, -5);
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, ground);
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, m_list->cellRect(1).center());
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_list->selectedRow(), -1);
    }

    void aRightClickSelectsAndClicksBeforeTheMenu()
    {
        QStringList events;
        connect(m_list.get(), &ListView::lineClicked, this,
                [&](qsizetype row) { events << QStringLiteral("click %1").arg(row); });
        connect(
            m_list.get(), &ListView::contextMenuRequested, this,
            [&](qsizetype row, const QPoint &) { events << QStringLiteral("menu %1").arg(row); });
        const QPoint on = m_list->cellRect(2).center();
        QTest::mousePress(m_list->viewport(), Qt::RightButton, {}, on);
        QCOMPARE(m_list->selectedRow(), 2);
        QContextMenuEvent menu(QContextMenuEvent::Mouse, on, m_list->viewport()->mapToGlobal(on));
        QApplication::sendEvent(m_list->viewport(), &menu);
        QTest::mouseRelease(m_list->viewport(), Qt::RightButton, {}, on);
        QCOMPARE(events, QStringList({"click 2", "menu 2"}));
        QVERIFY(menu.isAccepted());
        QContextMenuEvent onGround(QContextMenuEvent::Mouse, {20, 200}, {});
        QApplication::sendEvent(m_list->viewport(), &onGround);
        QCOMPARE(events.last(), QStringLiteral("menu -1"));
    }

    void theMenuKeyMeansTheSelectedLine()
    {
        QSignalSpy menus(m_list.get(), &ListView::contextMenuRequested);
        m_list->selectRow(3);
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, {1, 1}, {1, 1});
        QApplication::sendEvent(m_list->view(), &menu);
        QCOMPARE(rowsOf(menus), Rows({3}));
        const QPoint at = m_list->viewport()->mapFromGlobal(menus.first().at(1).toPoint());
        QVERIFY(m_list->cellRect(3).contains(at));
        m_list->clearSelection();
        QApplication::sendEvent(m_list->view(), &menu);
        QCOMPARE(rowsOf(menus), Rows({3, -1}));
    }

    void withoutAListenerTheWidgetsOwnMenuPolicyCounts()
    {
        m_list->setContextMenuPolicy(Qt::CustomContextMenu);
        QSignalSpy menus(m_list.get(), &QWidget::customContextMenuRequested);
        const QPoint on = m_list->cellRect(1).center();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, on, m_list->viewport()->mapToGlobal(on));
        QApplication::sendEvent(m_list->viewport(), &menu);
        QCOMPARE(menus.size(), 1);
        QCOMPARE(menus.first().first().toPoint(), m_list->viewport()->mapTo(m_list.get(), on));
    }

    void otherButtonsDoNothing()
    {
        click(*m_list, 1);
        m_clicks->clear();
        click(*m_list, 2, 0, {}, Qt::MiddleButton);
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_list->selectedRow(), 1);
    }

    void aKeyThatMovesTheCurrentLineClicksItOnce()
    {
        click(*m_list, 4);
        m_clicks->clear();
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        key(Qt::Key_Up);
        key(Qt::Key_End);
        key(Qt::Key_Home);
        key(Qt::Key_PageDown);
        key(Qt::Key_PageUp);
        QCOMPARE(rowsOf(*m_clicks), Rows({3, 2, 3, 0, 1, 0, 1}));
        QCOMPARE(m_list->selectedRow(), 1);
    }

    void aKeyThatCannotMoveClicksNothing()
    {
        click(*m_list, 1);
        m_clicks->clear();
        key(Qt::Key_Up);
        key(Qt::Key_Home);
        key(Qt::Key_PageUp);
        key(Qt::Key_Left);
        key(Qt::Key_Right);
        key(Qt::Key_F5);
        key(Qt::Key_Shift);
        QCOMPARE(m_clicks->size(), 0);
    }

    void theFirstArrowKeySelectsTheCurrentLine()
    {
        m_list->setFocus();
        QCOMPARE(m_list->selectedRow(), -1);
        key(Qt::Key_Down);
        QCOMPARE(rowsOf(*m_clicks), Rows({1}));
        key(Qt::Key_Down);
        QCOMPARE(rowsOf(*m_clicks), Rows({1, 4}));
        // The same from where the current line was left.
        clickGround(*m_list);
        key(Qt::Key_Up);
        QCOMPARE(rowsOf(*m_clicks), Rows({1, 4, 4}));
    }

    void anEmptyListTakesKeysInPeace()
    {
        m_list->clear();
        for (int each : {Qt::Key_Down, Qt::Key_End, Qt::Key_Space, Qt::Key_Return, Qt::Key_A})
            key(each);
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_doubleClicks->size(), 0);
    }

    void enterIsADoubleClickOnTheSelectedLine()
    {
        key(Qt::Key_Return);
        QCOMPARE(m_doubleClicks->size(), 0);
        click(*m_list, 4);
        key(Qt::Key_Return);
        key(Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(rowsOf(*m_doubleClicks), Rows({4, 4}));
        QCOMPARE(rowsOf(*m_clicks), Rows({4}));
        clickGround(*m_list);
        key(Qt::Key_Return);
        QCOMPARE(m_doubleClicks->size(), 2);
    }

    void typingGoesToTheLineThatBeginsSo()
    {
        key(Qt::Key_B);
        QCOMPARE(rowsOf(*m_clicks), Rows({4}));
        key(Qt::Key_R);
        QCOMPARE(rowsOf(*m_clicks), Rows({4, 3}));
        key(Qt::Key_Z);
        QCOMPARE(rowsOf(*m_clicks), Rows({4, 3}));
        QTest::qWait(QApplication::keyboardInputInterval() + 20);
        key(Qt::Key_D);
        QCOMPARE(rowsOf(*m_clicks), Rows({4, 3, 0}));
        QCOMPARE(m_list->selectedRow(), 0);
    }

    void aBlankBelongsToWhatIsTyped()
    {
        m_list->setRows(lines({"new file", "new page", "newest"}));
        QTest::keyClicks(m_list->view(), QStringLiteral("new p"));
        QCOMPARE(m_list->selectedRow(), 1);
    }

    void signsThatTreesTakeAreTyped()
    {
        m_list->setRows(lines({"a", "+1", "-1", "*"}));
        key(Qt::Key_Plus);
        QCOMPARE(m_list->selectedRow(), 1);
        QTest::qWait(QApplication::keyboardInputInterval() + 20);
        key(Qt::Key_Asterisk);
        QCOMPARE(m_list->selectedRow(), 3);
    }

    void keysOfTheWindowReachIt()
    {
        QDialog dialog;
        auto *layout = new QVBoxLayout(&dialog);
        auto *button = new QPushButton(&dialog);
        button->setDefault(true);
        layout->addWidget(m_list.get());
        layout->addWidget(button);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        m_list->setFocus();
        QSignalSpy pressed(button, &QPushButton::clicked);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        key(Qt::Key_Return);
        QCOMPARE(pressed.size(), 1);
        m_list->selectRow(1);
        key(Qt::Key_Return);
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(m_doubleClicks->size(), 1);
        key(Qt::Key_Escape);
        QCOMPARE(rejected.size(), 1);
        m_list->setParent(nullptr);
    }

    void controlASelectsAllWhereSeveralMayBe()
    {
        key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(m_list->selectedCount(), 0);
        m_list->setMultiSelect(true);
        key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(m_list->selectedCount(), 5);
        QCOMPARE(m_clicks->size(), 0);
    }

    void shiftExtendsAndClicks()
    {
        m_list->setMultiSelect(true);
        click(*m_list, 4);
        key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(m_list->selectedRows(), Rows({4, 3}));
        QCOMPARE(rowsOf(*m_clicks), Rows({4, 3}));
        click(*m_list, 0, 0, Qt::ShiftModifier);
        QCOMPARE(m_list->selectedRows(), Rows({4, 3, 2, 0}));
    }

    void draggingSelectsSeveralAndClicksTheLast()
    {
        m_list->setMultiSelect(true);
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, m_list->cellRect(4).center());
        QTest::mouseMove(m_list->viewport(), m_list->cellRect(3).center());
        QTest::mouseMove(m_list->viewport(), m_list->cellRect(2).center());
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, m_list->cellRect(2).center());
        QCOMPARE(m_list->selectedRows(), Rows({4, 3, 2}));
        QCOMPARE(rowsOf(*m_clicks), Rows({2}));
    }

    void movingTheCurrentLineLeavesTheColumnsWhereTheyAre()
    {
        m_list->setColumnWidth(1, 20000);
        QTest::qWait(0);
        QScrollBar *across = m_list->view()->horizontalScrollBar();
        QVERIFY(across->maximum() > 0);
        across->setValue(across->maximum());
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QCOMPARE(m_list->selectedRow(), 4);
        QCOMPARE(across->value(), across->maximum());
    }

    void aSlotMayDestroyTheList_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"click", "right click", "double click", "key", "enter", "menu"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void aSlotMayDestroyTheList()
    {
        QFETCH(QString, how);
        const bool second = how == QLatin1String("double click") || how == QLatin1String("enter");
        const auto destroy = [this] { m_list.reset(); };
        if (how == QLatin1String("menu"))
            connect(m_list.get(), &ListView::contextMenuRequested, this, destroy);
        else if (second)
            connect(m_list.get(), &ListView::lineDoubleClicked, this, destroy);
        else
            connect(m_list.get(), &ListView::lineClicked, this, destroy);

        QWidget *viewport = m_list->viewport();
        QAbstractItemView *view = m_list->view();
        const QPoint on = m_list->cellRect(1).center();
        if (how == QLatin1String("click"))
            QTest::mouseClick(viewport, Qt::LeftButton, {}, on);
        else if (how == QLatin1String("right click"))
            QTest::mousePress(viewport, Qt::RightButton, {}, on);
        else if (how == QLatin1String("double click")) {
            QTest::mouseClick(viewport, Qt::LeftButton, {}, on);
            QTest::mouseDClick(viewport, Qt::LeftButton, {}, on);
        } else if (how == QLatin1String("menu")) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, on, on);
            QApplication::sendEvent(viewport, &menu);
        } else if (how == QLatin1String("enter")) {
            m_list->selectRow(1);
            QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, {});
            QApplication::sendEvent(view, &enter);
        } else {
            QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, {});
            QApplication::sendEvent(view, &down);
        }
        QVERIFY(!m_list);
    }

    void aSlotMayReplaceTheLines()
    {
        connect(m_list.get(), &ListView::lineClicked, this, [this] {
            m_list->setRows(lines({"x", "y"}));
        });
        doubleClick(*m_list, 1);
        // The second press fell on a line that was not there at the first one.
        QCOMPARE(m_doubleClicks->size(), 0);
        QCOMPARE(m_list->count(), 2);
        key(Qt::Key_Down);
        QCOMPARE(m_list->count(), 2);
    }
};

ZEL_TEST_MAIN(TestListInput)
#include "tst_listinput.moc"
