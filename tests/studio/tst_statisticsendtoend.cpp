// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/httpserviceclient.h"
#include "tests/studio/runningstudio.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>

#include <csignal>

using namespace StudioTesting;
using namespace WorkspaceFiles;

namespace {

const QString projectName = QStringLiteral("Ask an engineer: captions from the first word");

/// Studio over the sample content, with the statistics of a project open.
struct RunningStatistics : RunningStudio
{
    explicit RunningStatistics(const Studio::Options &options)
        : RunningStudio(options)
        , questions(*child<Zel::ListView>(window, "qaListView"))
        , isReady(isWorking() && open())
    {
    }

    bool open() const
    {
        for (qsizetype row = 0; row < list->count(); ++row) {
            if (list->text(row) != projectName)
                continue;
            list->ensureVisible(row);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->cellRect(row).center());
            click(window, "openStatistics");
        }
        return comes([this] { return rows("participantList") > 0 && canRun(); });
    }

    bool canRun() const { return child(window, "runReportCmd")->isEnabled(); }

    qsizetype rows(const char *name) const { return child<Zel::ListView>(window, name)->count(); }

    QString figure(const char *name) const { return child<QLineEdit>(window, name)->text(); }

    void showTab(int index) const
    {
        auto *tabs = child<QTabBar>(window, "reportsTabs");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
    }

    /// Selects the first question that is in that state; returns its guid.
    QString selectQuestion(const QString &status) const
    {
        for (qsizetype row = 0; row < questions.count(); ++row) {
            const auto question = questions.tag(row).value<QXSC::QuestionRecordPtr>();
            if (question->Status != status)
                continue;
            questions.ensureVisible(row);
            QTest::mouseClick(questions.viewport(), Qt::LeftButton, {},
                              questions.cellRect(row).center());
            return question->QuestionGuid;
        }
        return {};
    }

    QXSC::QuestionRecordPtr selected() const
    {
        const qsizetype row = questions.selectedRow();
        return row < 0 ? nullptr : questions.tag(row).value<QXSC::QuestionRecordPtr>();
    }

    void answer(const QString &text) const
    {
        QTimer timer;
        timer.callOnTimeout([&] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog)
                return;
            auto *box = child<QPlainTextEdit>(*dialog, "answerTxt");
            box->setFocus();
            box->selectAll();
            QTest::keyClicks(box, text);
            click(*dialog, "OKButton");
        });
        timer.start(20);
        click(window, "replyCmd");
    }

    Zel::ListView &questions;
    bool isReady;
};

} // namespace

/// Statistics and questions in Studio over the real service.
class TestStatisticsEndToEnd : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(makeSample(workspace()));
    }

    void rowsSumToTheFigures()
    {
        RunningStatistics f(options());
        QVERIFY(f.isReady);
        f.showTab(1);
        f.showTab(2);
        QCOMPARE(f.figure("summaryUniqueHits"), QString::number(f.rows("participantList")));
        QCOMPARE(f.figure("summaryReg"), QString::number(f.rows("registrantList")));
        QCOMPARE(f.figure("summaryTotalHits"), QString::number(f.rows("pageViewList")));
        QCOMPARE(f.figure("summaryRegPart").toInt() + f.figure("summaryRegNonPart").toInt(),
                 f.figure("summaryReg").toInt());
        QVERIFY(!f.isShown("errorBar"));
    }

    void anAnswerIsKeptByTheServiceAndSeenByAnotherModerator()
    {
        RunningStatistics f(options());
        QVERIFY(f.isReady);
        f.showTab(3);
        const QString guid = f.selectQuestion(QStringLiteral("SUBMITTED"));
        QVERIFY(!guid.isEmpty());
        f.answer(QStringLiteral("5 < 6 & \"so\" on"));
        QVERIFY(f.comes([&] { return f.selected() && f.selected()->QuestionGuid == guid; }));
        QCOMPARE(f.selected()->Status, QStringLiteral("STAGED"));
        QCOMPARE(f.selected()->AnswerText, QStringLiteral("5 &lt; 6 &amp; &quot;so&quot; on"));

        // Another moderator retracts it; the first sees that after the refresh.
        QXSC::HttpServiceClient other;
        other.setDefaultServer(f.app.embeddedService()->address());
        bool isIn = false;
        other.authenticate({}, QStringLiteral("maja"), QStringLiteral("sample-maja"),
                           QStringLiteral("Studio"), {}, false, true, isIn);
        QVERIFY(isIn);
        other.setActiveAccount(QStringLiteral("1001"), isIn);
        QVERIFY(isIn);
        QCOMPARE(other.SetQuestionStatus(guid, QStringLiteral("RETRACT")), 0);
        click(f.window, "refreshCmd");
        QVERIFY(f.comes([&] { return f.selected() && f.selected()->QuestionGuid == guid; }));
        QCOMPARE(f.selected()->Status, QStringLiteral("RETRACT"));
    }

    void aServiceThatDiesIsBroughtBack()
    {
        RunningStatistics f(options());
        QVERIFY(f.isReady);
        ::kill(f.process(), SIGKILL);
        QVERIFY(f.comes([&] { return !f.app.embeddedService()->isRunning(); }));
        click(f.window, "runReportCmd");
        QVERIFY(f.isShown("errorBar"));
        QVERIFY(!f.canRun());
        click(f.window, "errorRetry");
        QVERIFY(f.comes([&] { return f.canRun() && f.rows("participantList") > 0; }));
        QVERIFY(!f.isShown("errorBar"));
    }

private:
    QString workspace() const { return m_folder->filePath(QStringLiteral("sample.workspace")); }

    Studio::Options options() const
    {
        Studio::Options options;
        options.workspace = workspace();
        options.serviceProgram = serviceProgram();
        return options;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ZEL_TEST_MAIN(TestStatisticsEndToEnd)
#include "tst_statisticsendtoend.moc"
