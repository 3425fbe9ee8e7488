// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "platform/widgets/listview.h"
#include "stats/statscontrol.h"
#include "studio/errorcenter.h"
#include "studio/statisticspage.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>

using QXSC::ServiceError;
using namespace StudioTesting;

namespace {

QXSC::ProjectRecordPtr project(const QString &guid, const QString &name)
{
    auto record = std::make_shared<QXSC::ProjectRecord>();
    record->guid = guid;
    record->name = name;
    return record;
}

QXSC::QuestionRecord question(const QString &guid, const QString &status = QString())
{
    QXSC::QuestionRecord record;
    record.QuestionGuid = guid;
    record.Status = status;
    record.QuestionText = QStringLiteral("Question ") + guid;
    auto user = std::make_shared<QXSC::StatsUser>();
    user->UserID = QStringLiteral("u-") + guid;
    record.User = user;
    return record;
}

/// The statistics page over a client with a project of two deployments and three questions.
struct Stats
{
    Stats()
        : page(client, client, errors, &window)
        , control(*child<ZelWebServiceControls::StatsControl>(page, "statistics"))
        , list(*child<Zel::ListView>(page, "qaListView"))
    {
        client.projectDeployments[QStringLiteral("p-1")] = {
            {QStringLiteral("d-2"), QStringLiteral("Broadcast"), published},
            {QStringLiteral("d-1"), QStringLiteral("Rehearsal"), published.addDays(-2)}};
        ask({"a", "b", "c"});
        window.resize(1300, 800);
        page.resize(1300, 800);
        QObject::connect(&page, &Studio::StatisticsPage::newQuestions, &window,
                         [this](int fresh) { count = fresh; });
        StudioTesting::show(window);
    }

    void ask(const QStringList &guids)
    {
        QList<QXSC::QuestionRecord> records;
        for (const QString &guid : guids)
            records << question(guid);
        client.questions = ZelTest::recordList<QXSC::QuestionRecord>(records);
    }

    void open(const QString &guid = QStringLiteral("p-1"))
    {
        page.setProject(project(guid, QStringLiteral("Captions")));
        errors.attempt([this] { page.open(); });
    }

    bool comesToRest() const
    {
        return QTest::qWaitFor(
            [this] { return client.calls().contains(lastCall()) && run().isEnabled(); });
    }

    QString lastCall() const
    {
        const QStringList calls = client.calls();
        for (const QString &call : calls) {
            if (call.startsWith(QLatin1String("GetParticipants")))
                return call;
        }
        return QStringLiteral("no participants yet");
    }

    QPushButton &run() const { return *child<QPushButton>(page, "runReportCmd"); }

    bool isShown(const char *name) const { return child(page, name)->isVisible(); }

    QString text(const char *name) const { return child<QLabel>(page, name)->text(); }

    void showQuestions() const
    {
        auto *tabs = child<QTabBar>(page, "reportsTabs");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(3).center());
        QVERIFY(list.isVisible());
    }

    void clickQuestion(qsizetype row) const
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.cellRect(row).center());
    }

    QString selected() const
    {
        const qsizetype row = list.selectedRow();
        return row < 0 ? QString() : list.tag(row).value<QXSC::QuestionRecordPtr>()->QuestionGuid;
    }

    bool selectsAgain(const QString &guid) const
    {
        return QTest::qWaitFor([&] { return selected() == guid; });
    }

    const QDateTime published{QDate(2026, 5, 7), QTime(9, 30)};
    Studio::ErrorCenter errors;
    ZelTest::RecordingClient client;
    QWidget window;
    Studio::StatisticsPage page;
    ZelWebServiceControls::StatsControl &control;
    Zel::ListView &list;
    int count = 0;
};

} // namespace

/// Studio's page around the statistics.
class TestStatisticsPage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void withoutAProjectItSaysHowToChooseOne()
    {
        Stats f;
        const QSignalSpy asked(&f.page, &Studio::StatisticsPage::projectsRequested);
        f.errors.attempt([&] { f.page.open(); });
        QVERIFY(f.isShown("statisticsEmpty"));
        QVERIFY(!f.isShown("statistics"));
        QVERIFY(f.client.calls().isEmpty());
        click(f.page, "chooseProject");
        QCOMPARE(asked.count(), 1);
    }

    void aProjectOpensOnItsNewestDeployment()
    {
        Stats f;
        f.open();
        QCOMPARE(f.text("statisticsProject"), QStringLiteral("Captions"));
        QCOMPARE(child<QComboBox>(f.page, "deployments")->count(), 2);
        QVERIFY(f.comesToRest());
        QVERIFY(f.client.calls().at(1).startsWith(
            QLatin1String("GetDeploymentStatistic(\"d-2\", \"2026-05-07T09:30:00\"")));
        // Shown again it is left as it is.
        f.client.takeCalls();
        f.errors.attempt([&] { f.page.open(); });
        QTest::qWait(200);
        QVERIFY(f.client.takeCalls().isEmpty());
    }

    void anotherDeploymentIsReported()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.client.takeCalls();
        auto *deployments = child<QComboBox>(f.page, "deployments");
        deployments->setFocus();
        QTest::keyClick(deployments, Qt::Key_Down);
        QVERIFY(f.comesToRest());
        QVERIFY(f.client.calls().at(0).startsWith(
            QLatin1String("GetDeploymentStatistic(\"d-1\", \"2026-05-05T09:30:00\"")));
    }

    void aProjectWithoutDeploymentsSaysSo()
    {
        Stats f;
        f.open(QStringLiteral("p-2"));
        QVERIFY(f.text("statisticsEmpty").contains(QLatin1String("no deployment")));
        QVERIFY(!f.isShown("statistics"));
    }

    void deploymentsThatCannotBeLoadedAreLoadedByRetry()
    {
        Stats f;
        f.client.failNext("deployments", ServiceError(ServiceError::Kind::Unavailable, "Out."));
        f.open();
        QVERIFY(f.errors.canRetry());
        QVERIFY(f.text("statisticsEmpty").contains(QLatin1String("could not be loaded")));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.isShown("statistics"));
    }

    void aReportThatFailsComesBackByRetry()
    {
        Stats f;
        f.client.failNext("GetRegistrantCount",
                          ServiceError(ServiceError::Kind::ConnectionLost, "Gone."));
        f.open();
        QVERIFY(QTest::qWaitFor([&] { return f.errors.hasProblem(); }));
        QVERIFY(!f.run().isEnabled());
        auto *end = child<QDateTimeEdit>(f.page, "endDateTime");
        end->setDateTime(QDateTime(QDate(2026, 5, 8), QTime(12, 0)));
        f.client.takeCalls();
        f.errors.retry();
        QVERIFY(f.comesToRest());
        QVERIFY(!f.errors.hasProblem());
        // The range a person had chosen stays.
        QVERIFY(f.client.calls().at(0).contains(QLatin1String("2026-05-08T12:00:00")));
        QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    }

    void aCountThatIsTooLargeIsSaidAndTheControlComesBack()
    {
        Stats f;
        f.client.failNext("GetUniqueParticipantCount",
                          Zel::RuntimeError(Zel::RuntimeError::Overflow));
        f.open();
        QVERIFY(QTest::qWaitFor([&] { return f.errors.hasProblem(); }));
        QVERIFY(f.errors.problem().what.contains(QLatin1String("more than 32,767")));
        QVERIFY(f.errors.problem().advice.contains(QLatin1String("shorter")));
        QVERIFY(!f.errors.canRetry());
        QVERIFY(f.run().isEnabled());
        QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
        QTest::qWait(300);
        QVERIFY(f.run().isEnabled()); // it is not run again by itself
        QTest::mouseClick(&f.run(), Qt::LeftButton);
        QVERIFY(f.comesToRest());
    }

    void theOverflowsOwnWordsAreUsed()
    {
        Stats f;
        f.client.failNext("GetUniqueParticipantCount",
                          Zel::RuntimeError(Zel::RuntimeError::Overflow,
                                            "There are more than 32,767 participants in this "
                                            "range."));
        f.open();
        QVERIFY(QTest::qWaitFor([&] { return f.errors.hasProblem(); }));
        QVERIFY(f.errors.problem().what.contains(QLatin1String("participants")));
    }

    void refreshRunsTheReportOrFetchesTheQuestions()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.client.takeCalls();
        press(Qt::Key_F5);
        QVERIFY(QTest::qWaitFor([&] { return f.client.calls().size() > 10; }));
        f.showQuestions();
        f.client.takeCalls();
        f.clickQuestion(0);
        press(Qt::Key_F5);
        QVERIFY(QTest::qWaitFor([&] { return !f.client.calls().isEmpty(); }));
        QCOMPARE(f.client.takeCalls(),
                 QStringList{"GetQuestions(\"d-2\", \"2026-05-07T09:30:00\", \"\")"});
    }

    void theSameQuestionIsSelectedAfterARefresh()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(1);
        QCOMPARE(f.selected(), QStringLiteral("b"));
        f.ask({"new", "a", "b", "c"});
        click(f.page, "refreshStatistics");
        QVERIFY(f.selectsAgain(QStringLiteral("b")));
        QCOMPARE(f.list.selectedRow(), 2);
        // One that has gone leaves nothing selected.
        f.ask({"new", "a"});
        click(f.page, "refreshStatistics");
        QTest::qWait(50);
        QCOMPARE(f.selected(), QString());
    }

    void newQuestionsAreCountedUntilTheyAreLookedAt()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        QCOMPARE(f.count, 0); // nobody waits for what was there at the first look
        f.ask({"a", "d", "b", "c", "e"});
        click(f.page, "refreshStatistics");
        QCOMPARE(f.count, 2);
        f.ask({"a", "d", "b", "c", "e", "f"});
        click(f.page, "refreshStatistics");
        QCOMPARE(f.count, 3);
        f.clickQuestion(0);
        QCOMPARE(f.count, 0);
        click(f.page, "refreshStatistics");
        QCOMPARE(f.count, 0);
        f.ask({"g"});
        click(f.page, "refreshStatistics");
        QCOMPARE(f.count, 1);
        QVERIFY(f.page.mayLeave());
        QCOMPARE(f.count, 0);
    }

    void deleteAsksAndDeletes()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(2);
        f.client.takeCalls();
        QVERIFY(answerBox([] { press(Qt::Key_Delete); }, QMessageBox::No));
        QVERIFY(f.client.takeCalls().isEmpty());
        f.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&f.window));
        f.list.view()->setFocus();
        QVERIFY(answerBox([] { press(Qt::Key_Delete); }, QMessageBox::Yes));
        QCOMPARE(f.client.takeCalls().constFirst(),
                 QStringLiteral("SetQuestionStatus(\"c\", \"DELETE\")"));
    }

    void aChangeThatFailedIsMadeAgain()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(0);
        f.client.failNext("SetQuestionStatus",
                          ServiceError(ServiceError::Kind::ConnectionLost, "Gone."));
        click(f.page, "retractCmd");
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.calls().size(), 2);
        QCOMPARE(f.client.calls().at(0), QStringLiteral("SetQuestionStatus(\"a\", \"RETRACT\")"));
        QVERIFY(!f.errors.hasProblem());
    }

    void anAnswerThatCouldNotBeSentIsNotLost()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(0);
        f.client.failNext("UpdateQuestion",
                          ServiceError(ServiceError::Kind::ConnectionLost, "Gone."));
        QTimer timer;
        timer.callOnTimeout([] {
            if (QWidget *dialog = QApplication::activeModalWidget()) {
                auto *box = child<QPlainTextEdit>(*dialog, "answerTxt");
                if (box->toPlainText().isEmpty())
                    QTest::keyClicks(box, QStringLiteral("Because."));
                click(*dialog, "OKButton");
            }
        });
        timer.start(20);
        click(f.page, "replyCmd");
        timer.stop();
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.calls().at(0),
                 QStringLiteral("UpdateQuestion(\"a\", \"Because.\", \"Question a\", \"\", \"\")"));
        QCOMPARE(f.client.calls().at(1), QStringLiteral("SetQuestionStatus(\"a\", \"STAGED\")"));
        QVERIFY(!f.errors.hasProblem());
    }

    void aChangeThatWasGivenUpIsNeverMade()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(0);
        QVERIFY(answerBox([&] { click(f.page, "deleteCmd"); }, QMessageBox::No));
        f.client.failNext("GetQuestions", ServiceError(ServiceError::Kind::Unavailable, "Out."));
        click(f.page, "refreshStatistics");
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.takeCalls(),
                 QStringList{"GetQuestions(\"d-2\", \"2026-05-07T09:30:00\", \"\")"});
    }

    void anAnswerOutlivesTheEndOfTheSession()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(0);
        f.client.failNext("SetQuestionStatus",
                          ServiceError(ServiceError::Kind::SignedOut, "Sign in again."));
        click(f.page, "retractCmd");
        QVERIFY(f.errors.problem().needsSignIn);
        f.errors.clear(); // as signing in again does
        f.errors.attempt([&] { f.page.open(); });
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.calls().at(0), QStringLiteral("SetQuestionStatus(\"a\", \"RETRACT\")"));
        QVERIFY(!f.errors.hasProblem());
        f.errors.attempt([&] { f.page.open(); });
        QVERIFY(!f.errors.hasProblem());
    }

    void aDeploymentThatIsGoneLeavesTheControlReady()
    {
        Stats f;
        f.client.failNext("GetRegistrantCount",
                          ServiceError(ServiceError::Kind::NotFound, "Gone."));
        f.open();
        QVERIFY(QTest::qWaitFor([&] { return f.errors.hasProblem(); }));
        QVERIFY(!f.errors.canRetry());
        QVERIFY(f.run().isEnabled());
        QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    }

    void anotherDeploymentShowsNothingOfTheFormer()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        QCOMPARE(f.list.count(), 3);
        f.client.failNext("GetUniqueParticipantCount",
                          ServiceError(ServiceError::Kind::Unavailable, "Out."));
        auto *deployments = child<QComboBox>(f.page, "deployments");
        deployments->setFocus();
        QTest::keyClick(deployments, Qt::Key_Down);
        QVERIFY(QTest::qWaitFor([&] { return f.errors.hasProblem(); }));
        QCOMPARE(f.list.count(), 0);
        QCOMPARE(child<QLineEdit>(f.page, "summaryReg")->text(), QString());
    }

    void questionsAreNewWhenThereWereNoneAtTheFirstLook()
    {
        Stats f;
        f.ask({});
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        QCOMPARE(f.count, 0);
        f.ask({"a", "b"});
        click(f.page, "refreshStatistics");
        QCOMPARE(f.count, 2);
    }

    void theListsSortByWhatTheirTextsMean()
    {
        Stats f;
        const QList<Zel::ListView *> lists = f.control.findChildren<Zel::ListView *>();
        QCOMPARE(lists.size(), 4);
        for (const Zel::ListView *list : lists)
            QVERIFY2(list->sortsByValue(), qPrintable(list->objectName()));
    }

    void theKeysOfTheQuestionsWorkHere()
    {
        Stats f;
        f.open();
        QVERIFY(f.comesToRest());
        f.showQuestions();
        f.clickQuestion(1);
        f.client.takeCalls();
        press(Qt::Key_T, Qt::AltModifier);
        QCOMPARE(f.client.takeCalls().constFirst(),
                 QStringLiteral("SetQuestionStatus(\"b\", \"RETRACT\")"));
        f.clickQuestion(1);
        QVERIFY(answerBox([] { press(Qt::Key_D, Qt::AltModifier); }, QMessageBox::Yes));
        QCOMPARE(f.client.takeCalls().constFirst(),
                 QStringLiteral("SetQuestionStatus(\"b\", \"DELETE\")"));
    }

    void leavingForgetsTheProject()
    {
        Stats f;
        f.open();
        f.page.leave(); // before the report is run
        f.client.takeCalls();
        QTest::qWait(300);
        QVERIFY(f.client.takeCalls().isEmpty());
        f.errors.attempt([&] { f.page.open(); });
        QVERIFY(f.isShown("statisticsEmpty"));
    }
};

ZEL_TEST_MAIN(TestStatisticsPage)
#include "tst_statisticspage.moc"
