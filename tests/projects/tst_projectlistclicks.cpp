// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLineEdit>

#include <numeric>

using ZelWebServiceControls::ProjectList;

/// Choosing a project by mouse, keyboard and code.
class tst_ProjectListClicks : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void aClickRaisesProjectClickWithTheRecord();
    void everyColumnOfALineCounts();
    void clickingTheSelectedLineClicksAgain();
    void aDoubleClickRaisesProjectDblClick();
    void keysThatMoveAreClicks();
    void enterIsADoubleClick();
    void emptyGroundRaisesNothing();
    void nothingIsRaisedWithoutASelection();
    void theSelectedProjectIsTheRecordItself();
    void selectProjectSelectsScrollsAndClicks();
    void selectProjectComparesExactly_data();
    void selectProjectComparesExactly();
    void selectProjectTakesTheFirstOfTwoWithOneGuid();
    void selectProjectWorksOnASortedList();
    void selectProjectLeavesOutWhatTheFilterHides();
    void selectProjectOnAnEmptyListChangesNothing();
    void aHostMayDestroyTheControl_data();
    void aHostMayDestroyTheControl();
    void aHostMayReloadInAClick();
    void tabReachesTheListAndLeavesIt();
};

void tst_ProjectListClicks::aClickRaisesProjectClickWithTheRecord()
{
    ProjectListFixture f;
    f.load();
    QXSC::ProjectRecordPtr clicked;
    connect(f.list, &ProjectList::ProjectClick, this,
            [&clicked](const QXSC::ProjectRecordPtr &pi) { clicked = pi; });
    f.takeTrail();
    ListTesting::click(f.view(), 1);
    QCOMPARE(f.trail, QStringList{QStringLiteral("click g2 | arrow, 3 lines")});
    QCOMPARE(clicked, f.client.projects->item(2));
}

void tst_ProjectListClicks::everyColumnOfALineCounts()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2}));
    for (int column = 0; column < 6; ++column) {
        ListTesting::click(f.view(), column % 2, column);
        QCOMPARE(f.takeTrail().size(), 1);
        QCOMPARE(f.selected(), column % 2 ? QStringLiteral("g2") : QStringLiteral("g1"));
    }
}

void tst_ProjectListClicks::clickingTheSelectedLineClicksAgain()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2}));
    ListTesting::click(f.view(), 1);
    QTest::qWait(QApplication::doubleClickInterval() + 10);
    ListTesting::click(f.view(), 1);
    const QString click = QStringLiteral("click g2 | arrow, 2 lines");
    QCOMPARE(f.trail, QStringList({click, click}));
}

void tst_ProjectListClicks::aDoubleClickRaisesProjectDblClick()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    ListTesting::doubleClick(f.view(), 2);
    const QStringList expected{QStringLiteral("click g3 | arrow, 3 lines"),
                               QStringLiteral("double click g3 | arrow, 3 lines")};
    QCOMPARE(f.trail, expected);
}

void tst_ProjectListClicks::keysThatMoveAreClicks()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    ListTesting::click(f.view(), 0);
    f.takeTrail();
    const std::pair<Qt::Key, const char *> moves[]{
        {Qt::Key_Down, "g2"}, {Qt::Key_End, "g3"}, {Qt::Key_Up, "g2"}, {Qt::Key_Home, "g1"}};
    for (const auto &[key, guid] : moves) {
        QTest::keyClick(f.view().view(), key);
        QCOMPARE(f.takeTrail(),
                 QStringList{QStringLiteral("click %1 | arrow, 3 lines").arg(QLatin1String(guid))});
    }
    // A key that does not move clicks nothing.
    QTest::keyClick(f.view().view(), Qt::Key_Up);
    QCOMPARE(f.trail, QStringList());
    QTest::keyClicks(f.view().view(), QStringLiteral("project 3"));
    QCOMPARE(f.selected(), QStringLiteral("g3"));
    QCOMPARE(f.takeTrail().constLast(), QStringLiteral("click g3 | arrow, 3 lines"));
}

void tst_ProjectListClicks::enterIsADoubleClick()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2}));
    ListTesting::click(f.view(), 1);
    f.takeTrail();
    QTest::keyClick(f.view().view(), Qt::Key_Return);
    QCOMPARE(f.trail, QStringList{QStringLiteral("double click g2 | arrow, 2 lines")});
}

void tst_ProjectListClicks::emptyGroundRaisesNothing()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2}));
    ListTesting::clickGround(f.view());
    QCOMPARE(f.trail, QStringList());
    const QPoint ground = f.view().viewport()->rect().bottomLeft() + QPoint(20, -5);
    QTest::mouseDClick(f.view().viewport(), Qt::LeftButton, {}, ground);
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.selected(), QStringLiteral("nothing"));
}

void tst_ProjectListClicks::nothingIsRaisedWithoutASelection()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2}));
    QTest::keyClick(f.view().view(), Qt::Key_Return);
    QCOMPARE(f.trail, QStringList());
    QVERIFY(!f.list->GetSelectedProject());
}

void tst_ProjectListClicks::theSelectedProjectIsTheRecordItself()
{
    ProjectListFixture f;
    f.load();
    ListTesting::click(f.view(), 2);
    QCOMPARE(f.list->GetSelectedProject(), f.client.projects->item(3));
    ListTesting::clickGround(f.view());
    QVERIFY(!f.list->GetSelectedProject());
}

void tst_ProjectListClicks::selectProjectSelectsScrollsAndClicks()
{
    ProjectListFixture f;
    QList<int> many(500);
    std::iota(many.begin(), many.end(), 1);
    f.load(projectsNumbered(many));
    const QRect viewport = f.view().viewport()->rect();
    QVERIFY(!viewport.intersects(f.view().cellRect(449)));
    f.list->SelectProject(QStringLiteral("g450"));
    QCOMPARE(f.trail, QStringList{QStringLiteral("click g450 | arrow, 500 lines")});
    QCOMPARE(f.selected(), QStringLiteral("g450"));
    QVERIFY(viewport.intersects(f.view().cellRect(449)));
    QCOMPARE(f.view().selectedCount(), 1);
    QCOMPARE(f.client.calls().size(), 1); // the load
    // Also the project that is selected already.
    f.view().ensureVisible(0);
    QVERIFY(!viewport.intersects(f.view().cellRect(449)));
    f.list->SelectProject(QStringLiteral("g450"));
    QVERIFY(viewport.intersects(f.view().cellRect(449)));
    QCOMPARE(f.trail.size(), 2);
}

void tst_ProjectListClicks::selectProjectComparesExactly_data()
{
    QTest::addColumn<QString>("guid");
    for (const char *guid : {"G2", "g2 ", " g2", "g", "g22", "", "Project 2"})
        QTest::newRow(guid) << QString::fromLatin1(guid);
}

void tst_ProjectListClicks::selectProjectComparesExactly()
{
    QFETCH(QString, guid);
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    f.list->SelectProject(QStringLiteral("g3"));
    f.takeTrail();
    f.list->SelectProject(guid);
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.selected(), QStringLiteral("g3"));
}

void tst_ProjectListClicks::selectProjectTakesTheFirstOfTwoWithOneGuid()
{
    ProjectListFixture f;
    QXSC::ProjectRecord twin = project(2);
    twin.name = QStringLiteral("Twin");
    f.load({project(1), project(2), twin});
    f.list->SelectProject(QStringLiteral("g2"));
    QCOMPARE(f.list->GetSelectedProject()->name, QStringLiteral("Project 2"));
    QCOMPARE(f.trail.size(), 1);
}

void tst_ProjectListClicks::selectProjectWorksOnASortedList()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    ListTesting::clickHeader(f.view(), 0);
    f.list->SelectProject(QStringLiteral("g1"));
    QCOMPARE(f.selected(), QStringLiteral("g1"));
    QCOMPARE(f.view().positionOf(f.view().selectedRow()), 2);
}

void tst_ProjectListClicks::selectProjectLeavesOutWhatTheFilterHides()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    f.list->SelectProject(QStringLiteral("g1"));
    f.view().setRowFilter([](qsizetype row) { return row != 1; });
    f.takeTrail();
    f.list->SelectProject(QStringLiteral("g2"));
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.selected(), QStringLiteral("g1"));
    f.list->SelectProject(QStringLiteral("g3"));
    QCOMPARE(f.selected(), QStringLiteral("g3"));
}

void tst_ProjectListClicks::selectProjectOnAnEmptyListChangesNothing()
{
    ProjectListFixture f;
    f.list->SelectProject(QString());
    f.list->SelectProject(QStringLiteral("g1"));
    QCOMPARE(f.trail, QStringList());
}

void tst_ProjectListClicks::aHostMayDestroyTheControl_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"click", "double click", "arrow key", "Enter", "code"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_ProjectListClicks::aHostMayDestroyTheControl()
{
    QFETCH(QString, way);
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    f.view().selectRow(0);
    const bool twice = way == QStringLiteral("double click") || way == QStringLiteral("Enter");
    connect(f.list, twice ? &ProjectList::ProjectDblClick : &ProjectList::ProjectClick, this,
            [&f] { delete f.list; });
    QAbstractItemView *view = f.view().view();
    if (way == QStringLiteral("click"))
        ListTesting::click(f.view(), 1);
    else if (way == QStringLiteral("double click")) {
        const QPoint at = f.view().cellRect(1).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
    } else if (way == QStringLiteral("arrow key"))
        QTest::keyPress(view, Qt::Key_Down);
    else if (way == QStringLiteral("Enter"))
        QTest::keyPress(view, Qt::Key_Return);
    else
        f.list->SelectProject(QStringLiteral("g3"));
    QVERIFY(!f.list);
}

void tst_ProjectListClicks::aHostMayReloadInAClick()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    connect(f.list, &ProjectList::ProjectClick, this, [&f] { f.list->Refresh(); });
    ListTesting::click(f.view(), 1);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    QCOMPARE(f.selected(), QStringLiteral("nothing"));
    QCOMPARE(f.trail.size(), 2);
}

void tst_ProjectListClicks::tabReachesTheListAndLeavesIt()
{
    QWidget form;
    QLineEdit before(&form);
    ProjectList list(&form);
    QLineEdit after(&form);
    QWidget::setTabOrder(&after, &list);
    QWidget::setTabOrder(&list, &before);
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    after.setFocus();
    QTest::keyClick(&after, Qt::Key_Tab);
    QWidget *view = list.findChild<Zel::ListView *>()->view();
    QCOMPARE(form.focusWidget(), view);
    QTest::keyClick(view, Qt::Key_Tab);
    QCOMPARE(form.focusWidget(), &before);
    QTest::keyClick(&before, Qt::Key_Backtab);
    QCOMPARE(form.focusWidget(), view);
}

ZEL_TEST_MAIN(tst_ProjectListClicks)
#include "tst_projectlistclicks.moc"
