// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "gridchartfixture.h"
#include "testsupport/testcase.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalSpy>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace ZelDataVisualization;

namespace {

/// What a screen reader says the person is at; the offscreen platform tells nobody by itself.
QString announcedBy(GraphView *graph)
{
    const QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(graph)->focusChild();
    return bar ? bar->text(QAccessible::Name) : QString();
}

} // namespace

/// What keys, mouse and assistive technology do in a chart.
class tst_GridChartKeys : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void arrowsWalkTheBarsAndTheValueIsAnnounced();
    void homeAndEndGoToBothEnds();
    void pagesScrollThroughManyRespondents();
    void arrowsWalkGroupsWhereABarStandsForMany();
    void zooms();
    void theWheelScrollsAndZooms();
    void scrollBarsFollowTheRotation();
    void aClickGoesToABar();
    void graphAndTableGoTogether();
    void theTabKeyGoesFromTheGraphToTheTable();
    void takesItsPlaceInTheTabOrderOfAForm();
    void theContextMenuOpens();
    void toolTipsTellTheValue();
    void assistiveTechnologySeesTheBars();
    void copiesLinesOfTheTable();
    void copiesThePicture();
    void keysOfTheHostAreNotInTheWay();
    void theMenusOfferEverything();
};

void tst_GridChartKeys::arrowsWalkTheBarsAndTheValueIsAnnounced()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    QVERIFY(on.graph()->hasFocus());
    QStringList announced;
    // Right from the third bar there is none.
    for (const Qt::Key key :
         {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Up}) {
        QTest::keyClick(on.graph(), key);
        announced << announcedBy(on.graph());
    }
    QCOMPARE(announced,
             (QStringList{QStringLiteral("2 - No: 10 (125 %)"), QStringLiteral("3 - None: 0 (0 %)"),
                          QStringLiteral("3 - None: 0 (0 %)"), QStringLiteral("2 - No: 10 (125 %)"),
                          QStringLiteral("1 - <i>Yes</i>: 30 (375 %), correct")}));
    QCOMPARE(on.graph()->content().current, 0);
    on.table()->setFocus();
    QCOMPARE(on.graph()->content().current, -1);
    QCOMPARE(announcedBy(on.graph()), QString());
}

void tst_GridChartKeys::homeAndEndGoToBothEnds()
{
    GridChartFixture on;
    QVERIFY(on.load(3'000));
    on.chart.ShowPercentCorrect(false);
    QTest::keyClick(on.graph(), Qt::Key_End);
    QCOMPARE(on.graph()->current(), 2'999);
    QCOMPARE(on.graph()->content().bars.back().label, QStringLiteral("person-3000"));
    QTest::keyClick(on.graph(), Qt::Key_Home);
    QCOMPARE(on.graph()->current(), 0);
    QCOMPARE(on.graph()->content().bars.front().label, QStringLiteral("person-1"));
}

void tst_GridChartKeys::pagesScrollThroughManyRespondents()
{
    GridChartFixture on;
    QVERIFY(on.load(100));
    on.chart.ShowPercentCorrect(false);
    const qsizetype shown = on.graph()->extent().shown();
    QVERIFY(shown > 5 && shown <= 30);
    QTest::keyClick(on.graph(), Qt::Key_PageDown);
    QCOMPARE(on.graph()->current(), shown);
    QCOMPARE(on.graph()->extent().first(), 1);
    QTest::keyClick(on.graph(), Qt::Key_PageUp);
    QTest::keyClick(on.graph(), Qt::Key_PageUp);
    QCOMPARE(on.graph()->current(), 0);
    QCOMPARE(on.graph()->extent().first(), 0);
}

void tst_GridChartKeys::arrowsWalkGroupsWhereABarStandsForMany()
{
    GridChartFixture on;
    QVERIFY(on.load(3'000));
    on.chart.ShowPercentCorrect(false);
    QTest::keyClick(on.graph(), Qt::Key_0);
    QCOMPARE(on.graph()->content().bars.size(), size_t(60));
    QTest::keyClick(on.graph(), Qt::Key_Right);
    QCOMPARE(on.graph()->current(), 50);
    QCOMPARE(announcedBy(on.graph()), QStringLiteral("51 to 100, average: 41.3 %"));
}

void tst_GridChartKeys::zooms()
{
    GridChartFixture on;
    QVERIFY(on.load(3'000));
    on.chart.ShowPercentCorrect(false);
    const qsizetype shown = on.graph()->extent().shown();
    QTest::keyClick(on.graph(), Qt::Key_Minus);
    QCOMPARE(on.graph()->extent().shown(), 2 * shown);
    QTest::keyClick(on.graph(), Qt::Key_Plus);
    QTest::keyClick(on.graph(), Qt::Key_Plus);
    QCOMPARE(on.graph()->extent().shown(), shown / 2);
    QTest::keyClick(on.graph(), Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(on.graph()->extent().shown(), 3'000);
    QTest::keyClick(on.graph(), Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(on.graph()->extent().shown(), 3'000);
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(on.graph(), Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(on.graph()->extent().shown(), 3);
    // What a person has said about it stays when the window changes.
    on.chart.resize(900, 600);
    QCOMPARE(on.graph()->extent().shown(), 3);
}

void tst_GridChartKeys::theWheelScrollsAndZooms()
{
    GridChartFixture on;
    QVERIFY(on.load(300));
    on.chart.ShowPercentCorrect(false);
    const auto turn = [&on](int by, Qt::KeyboardModifiers modifiers) {
        const QPointF at(50, 50);
        QWheelEvent event(at, on.graph()->viewport()->mapToGlobal(at), {}, {0, by}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(on.graph()->viewport(), &event);
    };
    const qsizetype shown = on.graph()->extent().shown();
    turn(-120, Qt::NoModifier);
    const qsizetype first = on.graph()->extent().first();
    QVERIFY(first > 0);
    QCOMPARE(on.graph()->current(), first);
    turn(120, Qt::NoModifier);
    QCOMPARE(on.graph()->extent().first(), 0);
    turn(120, Qt::ControlModifier);
    QCOMPARE(on.graph()->extent().shown(), shown / 2);
    turn(-120, Qt::ControlModifier);
    QCOMPARE(on.graph()->extent().shown(), shown / 2 * 2);
}

void tst_GridChartKeys::scrollBarsFollowTheRotation()
{
    GridChartFixture on;
    QVERIFY(on.load(300));
    on.chart.ShowPercentCorrect(false);
    QScrollBar *across = nullptr;
    QScrollBar *down = nullptr;
    for (auto *bar : on.graph()->parentWidget()->findChildren<QScrollBar *>(
             QString(), Qt::FindDirectChildrenOnly))
        (bar->orientation() == Qt::Horizontal ? across : down) = bar;
    QVERIFY(across->isVisible() && !down->isVisible());
    across->setValue(100);
    QCOMPARE(on.graph()->extent().first(), 100);
    on.chart.RotateChart(1);
    QVERIFY(!across->isVisible() && down->isVisible());
    QCOMPARE(on.graph()->extent().first(), 100);
    on.chart.ShowQuestionDetails(1);
    QVERIFY(!across->isVisible() && !down->isVisible());
}

void tst_GridChartKeys::aClickGoesToABar()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    for (const qint16 rotation : {qint16(0), qint16(1)}) {
        on.chart.RotateChart(rotation);
        for (const qsizetype bar : {2, 0, 1}) {
            QTest::mouseClick(on.graph()->viewport(), Qt::LeftButton, {},
                              on.graph()->rectOfBar(bar).center());
            QCOMPARE(on.graph()->current(), bar);
        }
    }
    QTest::mouseClick(on.graph()->viewport(), Qt::LeftButton, {}, QPoint(1, 1));
    QCOMPARE(on.graph()->current(), 1);
}

void tst_GridChartKeys::graphAndTableGoTogether()
{
    GridChartFixture on;
    QVERIFY(on.load(100));
    on.chart.ShowPercentCorrect(false);
    QTest::keyClick(on.graph(), Qt::Key_End);
    QCOMPARE(on.table()->currentIndex().row(), 99);
    on.table()->setFocus();
    QTest::keyClick(on.table(), Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(on.graph()->current(), 0);
    QTest::keyClick(on.table(), Qt::Key_Down);
    QCOMPARE(on.graph()->current(), 1);
    QCOMPARE(on.graph()->extent().first(), 0);
}

void tst_GridChartKeys::theTabKeyGoesFromTheGraphToTheTable()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QVERIFY(on.graph()->hasFocus());
    QTest::keyClick(on.graph(), Qt::Key_Tab);
    QVERIFY(on.table()->hasFocus());
    QTest::keyClick(on.table(), Qt::Key_Backtab);
    QVERIFY(on.graph()->hasFocus());
}

void tst_GridChartKeys::takesItsPlaceInTheTabOrderOfAForm()
{
    QWidget form;
    QPushButton before(&form);
    GridChart chart(&form);
    QPushButton after(&form);
    QVBoxLayout column(&form);
    for (QWidget *widget : std::initializer_list<QWidget *>{&before, &chart, &after})
        column.addWidget(widget);
    QVERIFY(chart.LoadWorkbookXml(GridChartFixture::survey(4).text()));
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    const auto way = [&](int steps) {
        before.setFocus();
        QStringList names;
        for (int i = 0; i < steps; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QWidget *at = QApplication::focusWidget();
            names << (at == &after ? QStringLiteral("after") : at->objectName());
        }
        return names;
    };
    const QStringList graphAndTable{QStringLiteral("graph"), QStringLiteral("figures"),
                                    QStringLiteral("after")};
    QCOMPARE(way(3), graphAndTable);
    chart.SetShowGraph(false);
    QCOMPARE(way(2), graphAndTable.mid(1));
    chart.setFocus();
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("figures"));
    chart.SetShowGraph(true);
    QCOMPARE(way(3), graphAndTable);
}

void tst_GridChartKeys::theContextMenuOpens()
{
    GridChartFixture on;
    QVERIFY(on.load());
    for (QAbstractScrollArea *view :
         std::initializer_list<QAbstractScrollArea *>{on.graph(), on.table()}) {
        qsizetype offered = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&offered] {
            if (QWidget *menu = QApplication::activePopupWidget()) {
                offered = menu->actions().size();
                menu->close();
            }
        });
        timer.start(10);
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(30, 30),
                                view->viewport()->mapToGlobal(QPoint(30, 30)));
        QApplication::sendEvent(view->viewport(), &event);
        QCOMPARE(offered, view->actions().size());
    }
}

void tst_GridChartKeys::toolTipsTellTheValue()
{
    GridChartFixture on;
    QVERIFY(on.load(40));
    on.chart.ShowQuestionDetails(1);
    const QPoint at = on.graph()->rectOfBar(0).center();
    QHelpEvent event(QEvent::ToolTip, at, on.graph()->viewport()->mapToGlobal(at));
    QApplication::sendEvent(on.graph()->viewport(), &event);
    QCOMPARE(QToolTip::text(),
             QStringLiteral("<p>1 - &lt;i&gt;Yes&lt;/i&gt;: 30 (75 %), correct</p>"));
    QHelpEvent beside(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(on.graph()->viewport(), &beside);
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_GridChartKeys::assistiveTechnologySeesTheBars()
{
    GridChartFixture on;
    QVERIFY(on.load(40));
    on.chart.ShowQuestionDetails(1);
    QAccessibleInterface *graph = QAccessible::queryAccessibleInterface(on.graph());
    QCOMPARE(graph->role(), QAccessible::Chart);
    QCOMPARE(graph->text(QAccessible::Name), QStringLiteral("Question 1: Is <b>this</b> & that?"));
    QVERIFY(graph->text(QAccessible::Description).contains(QStringLiteral("Answered by: 40.")));
    QCOMPARE(graph->childCount(), 3);
    QAccessibleInterface *bar = graph->child(1);
    QCOMPARE(bar->text(QAccessible::Value), QStringLiteral("10 (25 %)"));
    QCOMPARE(bar->parent(), graph);
    QCOMPARE(graph->indexOfChild(bar), 1);
    QCOMPARE(graph->child(1), bar);
    QVERIFY(bar->state().focusable && !bar->state().focused);
    QTest::keyClick(on.graph(), Qt::Key_Right);
    QVERIFY(bar->state().focused);
    QCOMPARE(graph->focusChild(), bar);
    const QPoint center = bar->rect().center();
    QCOMPARE(graph->childAt(center.x(), center.y()), bar);
    QCOMPARE(graph->child(3), nullptr);
    on.chart.ShowPercentCorrect(false);
    QVERIFY(graph->text(QAccessible::Name) == QStringLiteral("Percentage correct by respondent"));
    // A bar that is no longer there answers nothing.
    QAccessibleInterface *third = graph->child(2);
    QVERIFY(on.chart.LoadWorkbookXml(GridChartFixture::survey(1).text()));
    on.chart.ShowPercentCorrect(false);
    QVERIFY(!third->isValid());
    QCOMPARE(third->text(QAccessible::Name), QString());
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(on.table());
    QCOMPARE(table->text(QAccessible::Name), QStringLiteral("Figures"));
}

void tst_GridChartKeys::copiesLinesOfTheTable()
{
    GridChartFixture on;
    QVERIFY(on.load(40));
    on.chart.ShowQuestionDetails(1);
    on.table()->setFocus();
    on.table()->selectRow(1);
    QTest::keySequence(on.table(), QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("Answer\tCount\tPercentage\tCorrect\n2 - No\t10\t25 %\t\n"));
    QTest::keySequence(on.table(), QKeySequence::SelectAll);
    QTest::keySequence(on.table(), QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text().count(u'\n'), 4);
    on.table()->clearSelection();
    QApplication::clipboard()->clear();
    QTest::keySequence(on.table(), QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text().count(u'\n'), 4);
}

void tst_GridChartKeys::copiesThePicture()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    QApplication::clipboard()->clear();
    QTest::keySequence(on.graph(), QKeySequence::Copy);
    const QImage image = QApplication::clipboard()->image();
    QCOMPARE(image.size(), on.graph()->viewport()->size().expandedTo({480, 320}) * 2);
    QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white));
}

void tst_GridChartKeys::keysOfTheHostAreNotInTheWay()
{
    GridChartFixture on;
    QVERIFY(on.load());
    const QShortcut copy(QKeySequence::Copy, &on.chart);
    const QSignalSpy ofHost(&copy, &QShortcut::activated);
    QApplication::clipboard()->clear();
    QTest::keySequence(on.graph(), QKeySequence::Copy);
    QVERIFY(!QApplication::clipboard()->image().isNull());
    QCOMPARE(ofHost.count(), 0);
}

void tst_GridChartKeys::theMenusOfferEverything()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QStringList texts;
    for (const QAction *action : on.graph()->actions()) {
        if (!action->isSeparator())
            texts << action->text() + u' ' + action->shortcut().toString();
    }
    QCOMPARE(texts,
             (QStringList{QStringLiteral("&Copy Picture Ctrl+C"),
                          QStringLiteral("&Save Picture As… Ctrl+S"),
                          QStringLiteral("&Print… Ctrl+P"), QStringLiteral("Zoom &In Ctrl++"),
                          QStringLiteral("Zoom &Out Ctrl+-"), QStringLiteral("Show &All Ctrl+0")}));
    QCOMPARE(on.graph()->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(on.table()->contextMenuPolicy(), Qt::ActionsContextMenu);
    // Three bars cannot be zoomed.
    QVERIFY(!on.graph()->actions().at(4)->isEnabled());
    QVERIFY(!on.graph()->actions().at(5)->isEnabled());
}

ZEL_TEST_MAIN(tst_GridChartKeys)
#include "tst_gridchartkeys.moc"
