// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "tests/studio/newprojectfixture.h"
#include "testsupport/testcase.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QMessageBox>

using QXSC::ServiceError;
using Studio::Settings;
using namespace StudioTesting;

namespace {

/// Answers the message box that `open` brings up. Returns whether one came.
template <typename Open>
bool answerBox(const Open &open, QMessageBox::StandardButton answer)
{
    bool came = false;
    QTimer timer;
    timer.callOnTimeout([&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        came = true;
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
    timer.start(0);
    open();
    return came;
}

} // namespace

/// Making a project from a theme, on the projects page.
class TestNewProject : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void theButtonAndTheKeyStartWithTheThemesOfThisVersion()
    {
        NewProjectFixture f;
        f.start();
        QVERIFY(f.isShown("newProjectFlow"));
        QCOMPARE(f.client.takeCalls(),
                 (QStringList{"callListMethod(\"Studio\", \"getFullThemeList_Array\")",
                              "projectTypes()"}));
        QCOMPARE(f.themes().count(), 2);
        QCOMPARE(f.themes().text(0), QStringLiteral("Plain"));
        press(Qt::Key_Escape);
        QVERIFY(!f.isShown("newProjectFlow"));
        QCOMPARE(QApplication::focusWidget()->window(), &f.window);
        press(Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.isShown("newProjectFlow"));
        f.client.takeCalls();
        press(Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.client.calls().isEmpty());
    }

    void anEmptyListOffersTheFirstProject()
    {
        NewProjectFixture f;
        QVERIFY(!f.isShown("firstProject"));
        f.client.projects = ZelTest::projectList({});
        click(f.page, "refreshButton");
        click(f.page, "firstProject");
        QVERIFY(f.isShown("newProjectFlow"));
    }

    void aThemeIsToBeChosenBeforeNext()
    {
        NewProjectFixture f;
        f.start();
        QVERIFY(!f.button("toProjectForm").isEnabled());
        QVERIFY(f.button("toProjectForm").toolTip().contains("Choose a theme first"));
        f.clickTheme(1);
        QVERIFY(f.button("toProjectForm").isEnabled());
        QVERIFY(!f.button("toProjectForm").toolTip().contains("first"));
        QCOMPARE(f.text("chosenTheme"), QStringLiteral("Theme: Stage"));
        QVERIFY(!f.isShown("newName"));
        click(f.page, "toProjectForm");
        QVERIFY(f.isShown("newName"));
        QCOMPARE(QApplication::focusWidget(), child(f.page, "newName"));
    }

    void enterOnAThemeGoesOn()
    {
        NewProjectFixture f;
        f.start();
        press(Qt::Key_Return);
        QVERIFY(f.isShown("newName"));
        QCOMPARE(f.text("chosenTheme"), QStringLiteral("Theme: Plain"));
        QVERIFY(f.text("newNameProblem").isEmpty());
        QVERIFY(!f.errors.hasProblem());
    }

    void aLineSaysHowManyAreHiddenAndWhyEach()
    {
        NewProjectFixture f;
        f.start();
        auto *line = child<QToolButton>(f.page, "hiddenThemesButton");
        QCOMPARE(line->text(), QStringLiteral("6 themes are not shown"));
        click(f.page, "hiddenThemesButton");
        auto *list = child<QTreeWidget>(f.page, "hiddenThemeList");
        QVERIFY(list->isVisible());
        QStringList lines;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            lines << list->topLevelItem(i)->text(0) + ": " + list->topLevelItem(i)->text(1);
        QCOMPARE(lines,
                 (QStringList{"Late: It needs Studio 9.1.0 or later.",
                              "Odd: The version it asks for, \"soon\", cannot be understood.",
                              "Bare: It does not have the field \"type\".",
                              "Slides: Its field \"type\" is \"slides\"; this Studio takes "
                              "webcast, video, audio.",
                              "Broken: Its definition cannot be read.",
                              "Draft: It has no definition yet."}));
        QTest::keyClick(list, Qt::Key_Escape);
        QVERIFY(!list->isVisible());
        QVERIFY(f.isShown("newProjectFlow"));
        // A scope whose themes can all be used has nothing to say.
        click(f.page, "userOption");
        QCOMPARE(f.themes().text(0), QStringLiteral("Mine"));
        QVERIFY(!f.isShown("hiddenThemesButton"));
    }

    void savingMakesTheProjectAndSelectsItInTheListOfItsType()
    {
        NewProjectFixture f;
        type(f.page, "projectFilter", QStringLiteral("Delta"));
        f.fillIn();
        child<QComboBox>(f.page, "newType")->setFocus();
        press(Qt::Key_C);
        child(f.page, "newDescription")->setFocus();
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("All of us"));
        f.client.takeCalls();
        click(f.page, "saveNewProject");
        QCOMPARE(f.client.calls(),
                 (QStringList{"createProject(\"Spring\", \"course\", \"All of us\", "
                              "\"guid of Stage\")",
                              "getProjectList(\"course\")"}));
        QVERIFY(!f.isShown("newProjectFlow"));
        QCOMPARE(f.selectedProject(), QStringLiteral("Spring"));
        QCOMPARE(child<QComboBox>(f.page, "projectType")->currentText(), QStringLiteral("Courses"));
        QCOMPARE(f.text("detailName"), QStringLiteral("Spring"));
        QVERIFY(child<QLineEdit>(f.page, "projectFilter")->text().isEmpty());
        QVERIFY(f.projects->viewport()->rect().contains(
            f.projects->cellRect(f.projects->selectedRow()).center()));
        QVERIFY(!f.client.asked.constLast().eventDate);
    }

    void theDateIsSentWhenItIsKnown()
    {
        NewProjectFixture f;
        f.fillIn();
        QVERIFY(!child(f.page, "newDate")->isEnabled());
        child(f.page, "newHasDate")->setFocus();
        press(Qt::Key_Space);
        QVERIFY(child(f.page, "newDate")->isEnabled());
        press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(f.client.asked.size(), 1);
        QCOMPARE(f.client.asked.constFirst().eventDate->time(), QTime(19, 0));
    }

    void whatIsWrongIsSaidInPlace()
    {
        NewProjectFixture f;
        f.fillIn();
        type(f.page, "newName", QStringLiteral("  "));
        press(Qt::Key_Return);
        QVERIFY(f.isShown("newNameProblem"));
        QCOMPARE(f.text("newNameProblem"), QStringLiteral("A project needs a name."));
        QCOMPARE(QApplication::focusWidget(), child(f.page, "newName"));
        QVERIFY(f.client.asked.isEmpty());
        QVERIFY(!f.errors.hasProblem());
        child<QLineEdit>(f.page, "newName")->setText(QString(10001, QLatin1Char('x')));
        QVERIFY(f.text("newNameProblem").startsWith("A name has at most 10"));
        press(Qt::Key_Return);
        QVERIFY(f.client.asked.isEmpty());
        type(f.page, "newName", QStringLiteral("Fine"));
        QVERIFY(!f.isShown("newNameProblem"));
        child<QPlainTextEdit>(f.page, "newDescription")
            ->setPlainText(QString(100001, QLatin1Char('x')));
        QVERIFY(f.isShown("newDescriptionProblem"));
        click(f.page, "saveNewProject");
        QVERIFY(f.client.asked.isEmpty());
        QCOMPARE(QApplication::focusWidget(), child(f.page, "newDescription"));
    }

    void anAccountWithoutTypesIsToldSo()
    {
        NewProjectFixture f;
        f.client.types.clear();
        f.fillIn();
        click(f.page, "saveNewProject");
        QVERIFY(f.isShown("newTypeProblem"));
        QVERIFY(f.client.asked.isEmpty());
    }

    void backKeepsTheChoiceAndTheEntries()
    {
        NewProjectFixture f;
        f.fillIn();
        click(f.page, "backToThemes");
        QVERIFY(f.isShown("ThemeListView"));
        QVERIFY(f.button("toProjectForm").isEnabled());
        click(f.page, "toProjectForm");
        QCOMPARE(f.name(), QStringLiteral("Spring"));
        QCOMPARE(f.text("chosenTheme"), QStringLiteral("Theme: Stage"));
    }

    void cancelAsksOnlyWhenSomethingWasEntered()
    {
        NewProjectFixture f;
        f.start();
        f.clickTheme(1);
        click(f.page, "cancelNewProject");
        QVERIFY(!f.isShown("newProjectFlow"));
        f.fillIn();
        QVERIFY(answerBox([] { press(Qt::Key_Escape); }, QMessageBox::Cancel));
        f.window.activateWindow();
        QCOMPARE(f.name(), QStringLiteral("Spring"));
        QVERIFY(answerBox([&] { click(f.page, "cancelNewProject"); }, QMessageBox::Discard));
        QVERIFY(!f.isShown("newProjectFlow"));
        // The next one begins with nothing.
        f.start();
        QVERIFY(!f.button("toProjectForm").isEnabled());
        QVERIFY(f.name().isEmpty());
    }

    void nothingIsLostWhenSavingFails_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("no answer") << int(ServiceError::Kind::TimedOut);
        QTest::newRow("lost in the middle") << int(ServiceError::Kind::ConnectionLost);
        QTest::newRow("unavailable") << int(ServiceError::Kind::Unavailable);
    }

    void nothingIsLostWhenSavingFails()
    {
        QFETCH(const int, kind);
        NewProjectFixture f;
        f.fillIn();
        f.client.failNext("createProject", ServiceError(ServiceError::Kind(kind), "It failed."));
        click(f.page, "saveNewProject");
        QCOMPARE(f.errors.problem().what, QStringLiteral("It failed."));
        QVERIFY(f.errors.canRetry());
        QVERIFY(f.isShown("newProjectFlow"));
        QCOMPARE(f.name(), QStringLiteral("Spring"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.client.asked.size(), 2);
        QVERIFY(!f.client.asked[0].guid.isEmpty());
        QCOMPARE(f.client.asked[1].guid, f.client.asked[0].guid);
        QCOMPARE(f.selectedProject(), QStringLiteral("Spring"));
    }

    void anAnswerOfNothingIsAProblemToo()
    {
        NewProjectFixture f;
        f.fillIn();
        f.client.answersNothing = true;
        click(f.page, "saveNewProject");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.name(), QStringLiteral("Spring"));
    }

    void aRefusalOrAnEndedSessionKeepsTheForm()
    {
        NewProjectFixture f;
        f.fillIn();
        f.client.failNext("createProject", ServiceError(ServiceError::Kind::Refused, "No."));
        click(f.page, "saveNewProject");
        QVERIFY(f.errors.hasProblem());
        // Esc is for the strip first.
        QVERIFY(!answerBox([] { press(Qt::Key_Escape); }, QMessageBox::Cancel));
        f.client.failNext("createProject", ServiceError(ServiceError::Kind::SignedOut, "Gone."));
        click(f.page, "saveNewProject");
        QVERIFY(f.errors.problem().needsSignIn);
        // What signing in again does.
        f.errors.attempt([&] { f.page.open(); });
        f.page.setFocus();
        QVERIFY(f.isShown("newProjectFlow"));
        QCOMPARE(f.name(), QStringLiteral("Spring"));
        click(f.page, "saveNewProject");
        QCOMPARE(f.client.asked[2].guid, f.client.asked[0].guid);
        QCOMPARE(f.selectedProject(), QStringLiteral("Spring"));
    }

    void changesAfterALostAnswerDoNotMakeASecondOne()
    {
        NewProjectFixture f;
        f.fillIn();
        f.client.failNext("createProject", ServiceError(ServiceError::Kind::Conflict, "Taken."));
        click(f.page, "saveNewProject");
        QCOMPARE(f.errors.problem().what,
                 QStringLiteral("The project was made before its entries were changed."));
    }

    void somebodyElseFindsNothingOfIt()
    {
        NewProjectFixture f;
        f.fillIn();
        f.page.leave();
        QVERIFY(!f.isShown("newProjectFlow"));
        f.start();
        QVERIFY(f.name().isEmpty());
    }

    void eachFormHasAGuidOfItsOwn()
    {
        NewProjectFixture f;
        f.fillIn();
        click(f.page, "saveNewProject");
        f.fillIn();
        click(f.page, "saveNewProject");
        QCOMPARE(f.client.asked.size(), 2);
        QVERIFY(f.client.asked[0].guid != f.client.asked[1].guid);
    }

    void aListThatFailsAfterSavingIsTriedAgainWithoutASecondProject()
    {
        NewProjectFixture f;
        f.fillIn();
        f.client.failNext("getProjectList", ServiceError(ServiceError::Kind::TimedOut, "Slow."));
        click(f.page, "saveNewProject");
        QVERIFY(f.errors.canRetry());
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.client.asked.size(), 1);
        QCOMPARE(f.selectedProject(), QStringLiteral("Spring"));
    }

    void themesThatFailToLoadAreTriedAgain()
    {
        NewProjectFixture f;
        f.client.failNext("callListMethod", ServiceError(ServiceError::Kind::TimedOut, "Slow."));
        f.start();
        QVERIFY(f.isShown("newProjectFlow"));
        QVERIFY(f.errors.canRetry());
        f.errors.retry();
        QCOMPARE(f.themes().count(), 2);
        QVERIFY(!f.errors.hasProblem());

        f.client.failNext("callListMethod", ServiceError(ServiceError::Kind::TimedOut, "Slow."));
        click(f.page, "userOption");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.themes().count(), 2);
        f.errors.retry();
        QCOMPARE(f.themes().text(0), QStringLiteral("Mine"));
        QVERIFY(!f.errors.hasProblem());
    }

    void aTemplateThatFailsLeavesNoChoiceUntilItIsThere()
    {
        NewProjectFixture f;
        f.start();
        f.clickTheme(0);
        f.client.failNext("getTemplate", ServiceError(ServiceError::Kind::TimedOut, "Slow."));
        f.clickTheme(1);
        QVERIFY(f.errors.canRetry());
        QVERIFY(!f.button("toProjectForm").isEnabled());
        f.errors.retry();
        QVERIFY(f.button("toProjectForm").isEnabled());
        QCOMPARE(f.text("chosenTheme"), QStringLiteral("Theme: Stage"));
        QVERIFY(!f.errors.hasProblem());
    }

    void theTabKeyGoesThroughTheForm()
    {
        NewProjectFixture f;
        f.fillIn();
        QStringList stops;
        for (int i = 0; i < 6; ++i) {
            press(Qt::Key_Tab);
            stops << QApplication::focusWidget()->objectName();
        }
        QCOMPARE(stops, (QStringList{"newType", "newDescription", "newHasDate", "cancelNewProject",
                                     "backToThemes", "saveNewProject"}));
    }
};

ZEL_TEST_MAIN(TestNewProject)
#include "tst_newproject.moc"
