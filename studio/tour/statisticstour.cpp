// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/statisticstour.h"

#include "platform/widgets/listview.h"
#include "studio/tour/listacts.h"
#include "studio/tour/touractor.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

namespace Studio {

namespace {

const QString projectName = QStringLiteral("Ask an engineer: captions from the first word");

enum Column
{
    Status
};

void openProject(TourActor &actor)
{
    actor.click(QStringLiteral("railPage_3"));
    actor.shoot(QStringLiteral("Statistics without a project"));
    actor.click(QStringLiteral("chooseProject"));
    auto &list = actor.find<Zel::ListView>(QStringLiteral("projectList"));
    clickLine(actor, list, projectName);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       list.cellRect(list.selectedRow()).center());
    const auto &participants = actor.find<Zel::ListView>(QStringLiteral("participantList"));
    const auto &run = actor.find<QPushButton>(QStringLiteral("runReportCmd"));
    actor.waitFor(QStringLiteral("the report"),
                  [&] { return participants.count() > 0 && run.isEnabled(); });
    actor.shoot(QStringLiteral("Participants of an event"));
}

void chooseTab(TourActor &actor, int tab, const char *list, const QString &caption)
{
    auto &tabs = actor.find<QTabBar>(QStringLiteral("reportsTabs"));
    actor.clickAt(tabs, tabs.tabRect(tab).center());
    actor.expect(actor.find<Zel::ListView>(QLatin1String(list)).count() > 0, caption);
    actor.shoot(caption);
}

/// The first question in that state, or one in no state.
void clickQuestion(TourActor &actor, Zel::ListView &questions, const QString &status)
{
    for (qsizetype position = 0; position < questions.filteredCount(); ++position) {
        if (questions.text(questions.rowAt(position), Status) != status)
            continue;
        questions.ensureVisible(questions.rowAt(position));
        clickLine(actor, questions, position);
        return;
    }
    throw TourFailure(QStringLiteral("expected a question that is \"%1\"").arg(status));
}

QString selectedStatus(const Zel::ListView &questions)
{
    return questions.selectedRow() < 0 ? QStringLiteral("nothing selected")
                                       : questions.text(questions.selectedRow(), Status);
}

void answer(TourActor &actor, Zel::ListView &questions)
{
    clickQuestion(actor, questions, QString());
    actor.withDialog([&] { actor.click(QStringLiteral("replyCmd")); },
                     [&] {
                         auto &box = actor.find<QPlainTextEdit>(QStringLiteral("answerTxt"));
                         box.setFocus();
                         QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
                         QTest::keyClicks(&box, QStringLiteral("Yes, and the text stays."));
                         actor.shoot(QStringLiteral("Answering a question"));
                         actor.click(QStringLiteral("OKButton"));
                     });
    actor.waitFor(QStringLiteral("the same question to be selected again"),
                  [&] { return selectedStatus(questions) == QLatin1String("STAGED"); });
    actor.shoot(QStringLiteral("An answered question"));
}

void retractAndDelete(TourActor &actor, Zel::ListView &questions)
{
    actor.click(QStringLiteral("retractCmd"));
    actor.waitFor(QStringLiteral("the question to be retracted"),
                  [&] { return selectedStatus(questions) == QLatin1String("RETRACT"); });
    actor.shoot(QStringLiteral("A retracted question"));
    questions.view()->setFocus();
    actor.withDialog([&] { actor.press(Qt::Key_Delete); },
                     [&] {
                         auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                         TourActor::expect(box, QStringLiteral("to be asked before deleting"));
                         actor.shoot(QStringLiteral("Deleting a question"));
                         QWidget *yes = box->button(QMessageBox::Yes);
                         actor.clickAt(*yes, yes->rect().center());
                     });
    actor.waitFor(QStringLiteral("the question to be deleted"),
                  [&] { return selectedStatus(questions) == QLatin1String("DELETE"); });
    actor.shoot(QStringLiteral("A deleted question"));
}

/// Clicks the mark of an option: beside its words there is nothing to click.
void chooseOption(TourActor &actor, const char *name)
{
    QWidget &option = actor.find(QLatin1String(name));
    actor.clickAt(option, {8, option.height() / 2});
}

void showModes(TourActor &actor, const QString &kind)
{
    actor.shoot(kind + QStringLiteral(": the answers to a question"));
    chooseOption(actor, "sortByQuestion");
    actor.shoot(kind + QStringLiteral(": right answers by question"));
    chooseOption(actor, "sortByUser");
    actor.shoot(kind + QStringLiteral(": right answers by respondent"));
    chooseOption(actor, "sortByQuestionDetails");
    chooseOption(actor, "rotateChart");
    actor.shoot(kind + QStringLiteral(": the chart rotated"));
}

void saveWorkbook(TourActor &actor)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Quiz.xlsx"));
    actor.withDialog([&] { actor.click(QStringLiteral("saveWorkbook")); },
                     [&] {
                         actor.type(QStringLiteral("fileNameEdit"), path);
                         actor.shoot(QStringLiteral("Saving the workbook"));
                         actor.press(Qt::Key_Return);
                     });
    TourActor::expect(QFileInfo(path).size() > 10000, QStringLiteral("a saved workbook"));
}

void showPolls(TourActor &actor)
{
    auto &tabs = actor.find<QTabBar>(QStringLiteral("reportsTabs"));
    actor.clickAt(tabs, tabs.tabRect(4).center());
    actor.expect(actor.find<QComboBox>(QStringLiteral("PollQuestionCombo")).count() == 5,
                 QStringLiteral("the polls of the event"));
    actor.shoot(QStringLiteral("Polls"));
    actor.withDialog([&] { actor.click(QStringLiteral("pollVis")); },
                     [&] {
                         showModes(actor, QStringLiteral("Poll"));
                         QApplication::activeModalWidget()->close();
                     });
}

void showSurveys(TourActor &actor)
{
    auto &tabs = actor.find<QTabBar>(QStringLiteral("reportsTabs"));
    actor.clickAt(tabs, tabs.tabRect(5).center());
    auto &surveys = actor.find<QComboBox>(QStringLiteral("surveyListCombo"));
    actor.expect(surveys.count() == 2, QStringLiteral("a survey and a quiz"));
    actor.shoot(QStringLiteral("A survey"));
    surveys.setFocus();
    actor.press(Qt::Key_Down);
    actor.shoot(QStringLiteral("A quiz"));
    actor.withDialog([&] { actor.click(QStringLiteral("dataVis")); },
                     [&] {
                         showModes(actor, QStringLiteral("Quiz"));
                         saveWorkbook(actor);
                         QApplication::activeModalWidget()->close();
                     });
}

} // namespace

void tourStatistics(TourActor &actor)
{
    openProject(actor);
    chooseTab(actor, 1, "registrantList", QStringLiteral("Registrants of an event"));
    chooseTab(actor, 2, "pageViewList", QStringLiteral("Page views of an event"));
    chooseTab(actor, 3, "qaListView", QStringLiteral("Questions of an audience"));
    auto &questions = actor.find<Zel::ListView>(QStringLiteral("qaListView"));
    actor.press(Qt::Key_Home);
    answer(actor, questions);
    retractAndDelete(actor, questions);
    showPolls(actor);
    showSurveys(actor);
}

} // namespace Studio
