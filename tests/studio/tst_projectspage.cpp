// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "tests/studio/projectspagefixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using QXSC::ServiceError;
using Studio::Settings;
using namespace StudioTesting;

namespace {

ServiceError timedOut()
{
    return ServiceError(ServiceError::Kind::TimedOut,
                        QStringLiteral("No answer came in time. Try again."));
}

} // namespace

/// Loading, refreshing, sorting and the details of the projects page.
class TestProjectsPage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void opensWithTheTypesAndTheProjectsOfTheFirst()
    {
        ProjectsPageFixture f;
        QVERIFY(f.errors.attempt([&] { f.page.open(); }));
        QCOMPARE(f.client.calls(), (QStringList{QStringLiteral("projectTypes()"),
                                                QStringLiteral("getProjectList(\"webcast\")")}));
        auto *types = child<QComboBox>(f.page, "projectType");
        QCOMPARE(types->count(), 2);
        QCOMPARE(f.typeShown(), QStringLiteral("Webcasts"));
        QCOMPARE(f.names(), (QStringList{"Delta", "Alpha launch", "Beta", "Gamma rays"}));
        QCOMPARE(f.text("projectCount"), QStringLiteral("4 projects"));
    }

    void anotherTypeIsLoadedAndRemembered()
    {
        ProjectsPageFixture f;
        f.open();
        f.client.projects = ZelTest::projectList({makeProject("c-1", "Camera course")});
        f.chooseType(QStringLiteral("Courses"));
        QCOMPARE(f.client.calls(), QStringList{QStringLiteral("getProjectList(\"course\")")});
        QCOMPARE(f.names(), QStringList{QStringLiteral("Camera course")});
        QCOMPARE(f.text("projectCount"), QStringLiteral("1 project"));

        ProjectsPageFixture next;
        next.errors.attempt([&] { next.page.open(); });
        QCOMPARE(next.client.calls().constLast(), QStringLiteral("getProjectList(\"course\")"));
        QCOMPARE(next.typeShown(), QStringLiteral("Courses"));
    }

    void aTypeThatFailsToLoadLeavesTheScreenAsItWas()
    {
        ProjectsPageFixture f;
        f.open();
        const QStringList before = f.names();
        f.client.failNext(QStringLiteral("getProjectList"), timedOut());
        f.chooseType(QStringLiteral("Courses"));
        QVERIFY(f.errors.hasProblem());
        QCOMPARE(f.names(), before);
        QCOMPARE(f.typeShown(), QStringLiteral("Webcasts"));
        QVERIFY(f.settings.projectType().isEmpty());
        f.client.takeCalls();
        f.client.projects = ZelTest::projectList({makeProject("c-1", "Camera course")});
        f.errors.retry();
        QCOMPARE(f.client.calls(), QStringList{QStringLiteral("getProjectList(\"course\")")});
        QCOMPARE(f.typeShown(), QStringLiteral("Courses"));
        QCOMPARE(f.names(), QStringList{QStringLiteral("Camera course")});
        QVERIFY(!f.errors.hasProblem());
    }

    void aRememberedTypeThatIsGoneIsReplacedByTheFirst()
    {
        Settings().setProjectType(QStringLiteral("gone"));
        ProjectsPageFixture f;
        f.open();
        QCOMPARE(f.typeShown(), QStringLiteral("Webcasts"));
    }

    void anAccountWithoutTypesShowsNothing()
    {
        ProjectsPageFixture f;
        f.client.types.clear();
        f.client.projects = nullptr;
        f.open();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(f.text("projectCount"), QStringLiteral("0 projects"));
    }

    void failingToOpenSaysSoAndRetryOpens()
    {
        ProjectsPageFixture f;
        f.client.failNext(QStringLiteral("projectTypes"), timedOut());
        f.open();
        QVERIFY(f.errors.hasProblem());
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(f.list->emptyText(), QStringLiteral("The projects could not be loaded"));
        QVERIFY(f.text("projectCount").isEmpty());
        f.errors.retry();
        QCOMPARE(f.list->count(), 4);
        QVERIFY(!f.errors.hasProblem());
    }

    void refreshLoadsAgainByButtonAndKey()
    {
        ProjectsPageFixture f;
        f.open();
        click(f.page, "refreshButton");
        QCOMPARE(f.client.takeCalls(), QStringList{QStringLiteral("getProjectList(\"webcast\")")});
        f.list->setFocus();
        press(Qt::Key_F5); // the button looks pressed for a moment first
        QTRY_COMPARE(f.client.calls(), QStringList{QStringLiteral("getProjectList(\"webcast\")")});
    }

    void refreshKeepsSelectionAndSorting()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickHeader(0);
        f.clickHeader(0);
        QCOMPARE(f.names(), (QStringList{"Alpha launch", "Beta", "Delta", "Gamma rays"}));
        f.clickLine(2);
        QCOMPARE(f.text("detailName"), QStringLiteral("Beta"));
        f.client.projects =
            ZelTest::projectList({makeProject("g-9", "Zeta"), makeProject("g-3", "Beta", "Changed"),
                                  makeProject("g-8", "Aleph")});
        click(f.page, "refreshButton");
        QCOMPARE(f.names(), (QStringList{"Aleph", "Beta", "Zeta"}));
        QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-3"));
        QCOMPARE(f.text("detailDescription"), QStringLiteral("Changed"));
        // The next click flips the order as it would have before.
        f.clickHeader(0);
        QCOMPARE(f.names(), (QStringList{"Zeta", "Beta", "Aleph"}));
    }

    void refreshLetsGoOfAProjectThatIsGone()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        QVERIFY(child(f.page, "detailName")->isVisible());
        f.client.projects = ZelTest::projectList({makeProject("g-2", "Alpha launch")});
        click(f.page, "refreshButton");
        QVERIFY(!f.projects->GetSelectedProject());
        QVERIFY(!child(f.page, "detailName")->isVisible());
        QVERIFY(child(f.page, "projectHint")->isVisible());
    }

    void aFailingRefreshKeepsEverythingOnScreen()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickHeader(0);
        f.clickLine(1);
        const QStringList before = f.names();
        f.client.failNext(QStringLiteral("getProjectList"), timedOut());
        click(f.page, "refreshButton");
        QCOMPARE(f.errors.problem().what, QStringLiteral("No answer came in time."));
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.names(), before);
        QVERIFY(f.list->isSorted());
        QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-2"));
        QCOMPARE(f.text("detailName"), QStringLiteral("Alpha launch"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.names(), before);
        QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-2"));
    }

    void anAnswerOfNothingEmptiesTheList()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(1);
        f.client.projects = nullptr;
        click(f.page, "refreshButton");
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(f.list->emptyText(), QStringLiteral("No projects of this type yet"));
        QCOMPARE(f.text("projectCount"), QStringLiteral("0 projects"));
        QVERIFY(child(f.page, "projectHint")->isVisible());
        // The next answer is shown again.
        f.client.projects = ZelTest::projectList({makeProject("g-2", "Alpha launch")});
        click(f.page, "refreshButton");
        QCOMPARE(f.list->count(), 1);
    }

    void showsTheDetailsOfTheSelectedProject()
    {
        const ZelTest::LocaleFixture locale(QLocale(QLocale::English, QLocale::UnitedStates));
        ProjectsPageFixture f;
        QXSC::ProjectRecord whole = makeProject("g-7", "<b>Town & hall</b>", "Line one\nLine two");
        whole.hasModified = true;
        whole.modified = QDateTime(QDate(2026, 4, 20), QTime(9, 31, 45));
        whole.published = true;
        f.client.projects = ZelTest::projectList({whole, makeProject("g-8", "Other")});
        f.open();
        QVERIFY(child(f.page, "projectHint")->isVisible());
        f.clickLine(0);
        QVERIFY(!child(f.page, "projectHint")->isVisible());
        QCOMPARE(f.text("detailName"), whole.name);
        QCOMPARE(child<QLabel>(f.page, "detailName")->textFormat(), Qt::PlainText);
        QCOMPARE(f.text("detailDescription"), whole.description);
        QCOMPARE(f.text("detailModified"), QStringLiteral("4/20/2026 9:31:45 AM"));
        QCOMPARE(f.text("detailEventDate"), QStringLiteral("–"));
        QCOMPARE(f.text("detailCreatedBy"), QStringLiteral("Maja"));
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        // By keyboard, too; and an empty description leaves no gap.
        f.list->setFocus();
        press(Qt::Key_Down);
        QCOMPARE(f.text("detailName"), QStringLiteral("Other"));
        QVERIFY(!child(f.page, "detailDescription")->isVisible());
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Not yet"));
    }

    void deselectingShowsTheHint()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        QTest::mouseClick(f.list->viewport(), Qt::LeftButton, {},
                          f.list->viewport()->rect().bottomLeft() + QPoint(30, -10));
        QVERIFY(!f.projects->GetSelectedProject());
        QVERIFY(child(f.page, "projectHint")->isVisible());
    }

    void checksThePublishedStateWithOneCall()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        f.client.published.insert(QStringLiteral("g-1"), true);
        click(f.page, "checkPublished");
        QCOMPARE(f.client.takeCalls(),
                 QStringList{QStringLiteral("isProjectPublished(\"g-1\", \"\")")});
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        QVERIFY(f.list->smallIcon(0) > 0);
        // What the service said stays true when the project is looked at again.
        f.clickLine(1);
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        f.clickLine(2);
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Not yet"));
        f.clickLine(0);
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        // A list that is loaded again tells anew.
        click(f.page, "refreshButton");
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Not yet"));
    }

    void checksThePublishedStateWithoutTheMarker()
    {
        Settings().setProjectListBag(QString());
        ProjectsPageFixture f;
        f.open();
        QVERIFY(!f.projects->ShowPublished());
        f.clickLine(0);
        f.client.published.insert(QStringLiteral("g-1"), true);
        click(f.page, "checkPublished");
        QCOMPARE(f.client.takeCalls().size(), 1);
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        QCOMPARE(f.list->smallIcon(0), 0);
    }

    void aFailingCheckCanBeRetried()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        f.client.published.insert(QStringLiteral("g-1"), true);
        f.client.failNext(QStringLiteral("isProjectPublished"), timedOut());
        click(f.page, "checkPublished");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Not yet"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
    }

    void livesWithAProjectWithoutGuid()
    {
        ProjectsPageFixture f;
        f.client.projects = ZelTest::projectList(
            {makeProject("", "Nameless one", "First"), makeProject("", "Nameless two", "Second")});
        f.open();
        f.clickLine(1);
        QCOMPARE(f.text("detailName"), QStringLiteral("Nameless two"));
        click(f.page, "refreshButton");
        // It cannot be told which one it was; better none than the wrong one.
        QVERIFY(!f.projects->GetSelectedProject());
        QVERIFY(!f.errors.hasProblem());
        f.clickLine(0);
        f.client.published.insert(QString(), true);
        click(f.page, "checkPublished");
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Yes"));
        f.clickLine(1);
        QCOMPARE(f.text("detailPublished"), QStringLiteral("Not yet"));
    }

    void livesWithAVeryLongName()
    {
        ProjectsPageFixture f;
        const int widthBefore = f.window.minimumSizeHint().width();
        const QString name(10000, QLatin1Char('x'));
        f.client.projects = ZelTest::projectList({makeProject("g-1", name, name, name)});
        f.open();
        f.clickLine(0);
        QCOMPARE(f.projects->GetSelectedProject()->name, name);
        const QString shown = f.text("detailName").remove(QChar(0x200b));
        QCOMPARE(shown, name.left(2000) + QChar(0x2026));
        QCOMPARE(f.window.minimumSizeHint().width(), widthBefore);
        // Everything in the panel can still be reached and is inside of it.
        const QWidget *details = child(f.page, "projectDetails");
        for (const char *part : {"detailName", "checkPublished"}) {
            const QWidget *widget = child(f.page, part);
            const QPoint right = widget->mapTo(details, widget->rect().topRight());
            QVERIFY2(right.x() < details->width(), part);
        }
        type(f.page, "projectFilter", QStringLiteral("xxx"));
        QCOMPARE(f.text("projectCount"), QStringLiteral("1 project"));
    }

    void aLongDescriptionScrollsByKeyboard()
    {
        ProjectsPageFixture f;
        f.client.projects = ZelTest::projectList(
            {makeProject("g-1", "Long", QStringLiteral("line\n").repeated(300))});
        f.open();
        f.clickLine(0);
        auto *details = child(f.page, "projectDetails");
        details->setFocus();
        auto *bar = details->findChild<QScrollArea *>()->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        press(Qt::Key_PageDown);
        QVERIFY(bar->value() > 0);
        press(Qt::Key_End);
        QCOMPARE(bar->value(), bar->maximum());
        press(Qt::Key_Up);
        QVERIFY(bar->value() < bar->maximum());
        press(Qt::Key_Home);
        QCOMPARE(bar->value(), 0);
    }

    void leavingForgetsTheAccount()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        type(f.page, "projectFilter", QStringLiteral("Delta"));
        f.page.leave();
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(child<QComboBox>(f.page, "projectType")->count(), 0);
        QVERIFY(child<QLineEdit>(f.page, "projectFilter")->text().isEmpty());
        QVERIFY(child(f.page, "projectHint")->isVisible());
        QVERIFY(f.text("projectCount").isEmpty());
        QVERIFY(!f.text("detailName").contains(QLatin1String("Delta")));
    }

    void openingAgainKeepsWhatWasArranged()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickHeader(0);
        type(f.page, "projectFilter", QStringLiteral("a"));
        f.clickLine(2);
        f.dragColumn(1, -60);
        const double width = f.list->columnWidth(1);
        const QStringList before = f.names();
        f.open();
        QCOMPARE(f.names(), before);
        QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-3"));
        QCOMPARE(f.list->columnWidth(1), width);
    }

    void theTabKeyGoesThroughTheWholePage()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        child(f.page, "projectType")->setFocus();
        QStringList visited{QStringLiteral("projectType")};
        for (int i = 0; i < 9; ++i) {
            press(Qt::Key_Tab);
            QWidget *widget = QApplication::focusWidget();
            visited << (f.list->isAncestorOf(widget) ? QStringLiteral("list")
                                                     : widget->objectName());
        }
        QCOMPARE(visited.join(u' '),
                 QStringLiteral("projectType newProject projectFilter columnsButton refreshButton "
                                "list projectDetails openStatistics checkPublished projectType"));
    }

    void aDoubleClickAndEnterOpenTheProject()
    {
        ProjectsPageFixture f;
        f.open();
        QStringList opened;
        connect(&f.page, &Studio::ProjectsPage::openRequested, &f.page,
                [&](const QXSC::ProjectRecordPtr &project) { opened << project->name; });
        const QPoint at = f.list->cellRect(1).center();
        QTest::mouseClick(f.list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(f.list->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(opened, QStringList{"Alpha launch"});
        press(Qt::Key_Return);
        QCOMPARE(opened.size(), 2);
        click(f.page, "openStatistics");
        QCOMPARE(opened, (QStringList{"Alpha launch", "Alpha launch", "Alpha launch"}));
    }
};

ZEL_TEST_MAIN(TestProjectsPage)
#include "tst_projectspage.moc"
