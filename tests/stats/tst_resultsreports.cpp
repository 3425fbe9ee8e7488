// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/flexgrid.h"
#include "stats/pollreport.h"
#include "stats/pollvisualization.h"
#include "stats/surveyreport.h"
#include "stats/surveyvisualization.h"
#include "surveyfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

/// A chart that understands what it is told to understand.
class ReportChart : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    static inline QString workbook;
    static inline bool understands = true;

    Q_INVOKABLE bool LoadWorkbookXml(const QString &excelXML)
    {
        workbook = excelXML;
        return understands;
    }

    Q_INVOKABLE void ShowQuestionDetails(qint16) {}
};

namespace {

QStringList rows(const Zel::FlexGrid *grid)
{
    QStringList texts;
    for (int row = 0; row < grid->rowCount(); ++row)
        texts.append(grid->rowText(row));
    return texts;
}

/// A report in a frame of its own over a client with two polls and two surveys.
template <typename Report>
struct ReportFixture
{
    ReportFixture()
        : report(new Report(&frame))
    {
        client.polls = ZelTest::recordList(
            QList{poll("p1", "Lunch?", {{"Yes", 1}, {"No", 1}, {"Per\thaps", 1}}),
                  poll("p2", "Again?", {{"Of course", 400}, {"Never", 0}}),
                  poll("p3", "Silence?", {{"%1 & <b>", 0}})});
        auto surveys = std::make_shared<QXSC::SurveyCollection>();
        surveys->add(threeQuestions());
        auto second = std::make_shared<QXSC::SurveyRecord>();
        second->guid = QStringLiteral("s2");
        second->name = QStringLiteral("Quiz");
        second->questions = ZelTest::recordList(QList{question("x", "X?", {})});
        surveys->add(second);
        client.surveys = surveys;
        // Three respondents; two answered the first question, one of them twice.
        client.surveyResponses[QStringLiteral("s1")] =
            QList{response("u1", "q1", "a1", "1"), response("u1", "q1", "a2", "2"),
                  response("u2", "q1", "a2", "2"), response("u3", "q3", "c1", "1"),
                  response("u1", "q3", "c1", "1"), response("u2", "q3", "c1", "1")};
        frame.resize(700, 400);
        frame.show();
    }

    template <typename Child>
    Child *child(const char *name)
    {
        return frame.template findChild<Child *>(QLatin1String(name));
    }

    void click(const char *name) { QTest::mouseClick(child<QPushButton>(name), Qt::LeftButton); }

    ZelTest::RecordingClient client;
    QFrame frame;
    Report *report;
};

/// Closes the form that comes up next and tells its class, questions and respondents.
template <typename Form>
void whenShown(QObject *context, QStringList *seen)
{
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, seen] {
        auto *form = qobject_cast<Form *>(QApplication::activeModalWidget());
        if (!form)
            return;
        timer->deleteLater();
        seen->append(
            QStringLiteral("%1 questions, %2 respondents, %3")
                .arg(form->questionCount())
                .arg(form->userCount())
                .arg(form->template findChild<QPushButton *>(QStringLiteral("saveWorkbook"))
                             ->isVisible()
                         ? "can be saved"
                         : "cannot be saved"));
        form->close();
    });
    timer->start(10);
}

} // namespace

/// The reports of polls and of surveys.
class tst_ResultsReports : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void childrenAreFindable();
    void aPollIsShownWithItsVotes();
    void aPollWithoutVotesShowsZero();
    void choosingAPollShowsIt();
    void aDeploymentWithoutPollsChangesNothing();
    void pollsAreCharted();
    void pollsWithoutVotesAreChartedWithoutVoters();
    void votesBeyondThirtyTwoBitsOverflow();
    void aSurveyIsShownWithItsRespondents();
    void choosingAQuestionShowsIt();
    void responsesAreFetchedOnceForASurvey();
    void aSurveyNobodyAnsweredShowsZero();
    void aDeploymentWithoutSurveysChangesNothing();
    void aSurveyIsCharted();
    void aSurveyWithoutRespondentsSaysSo();
    void whatTheChartRejectsIsSaid();
    void buttonsWithoutActionAreHiddenAtDesignTime();
    void withoutAClientThereIsAnError();
    void aReportMayBeDestroyedInTheCall();
};

void tst_ResultsReports::initTestCase()
{
    TestCase::initTestCase();
    Zel::ControlRegistry::add(QStringLiteral("ZelDataVisualization.GridChart"),
                              [](QWidget *parent) -> QWidget * { return new ReportChart(parent); });
}

void tst_ResultsReports::init()
{
    TestCase::init();
    ReportChart::understands = true;
    ReportChart::workbook.clear();
}

void tst_ResultsReports::childrenAreFindable()
{
    ReportFixture<PollReport> polls;
    QCOMPARE(polls.child<QLabel>("Label15")->text(), QStringLiteral("Poll Question"));
    QVERIFY(polls.child<QComboBox>("PollQuestionCombo"));
    QVERIFY(polls.child<Zel::FlexGrid>("poll"));
    QCOMPARE(polls.child<QPushButton>("pollVis")->text(), QStringLiteral("Data Visualization"));
    QVERIFY(!polls.child<QPushButton>("pollVis")->isEnabled());
    ReportFixture<SurveyReport> surveys;
    QCOMPARE(surveys.child<QLabel>("Label10")->text(), QStringLiteral("Survey Name"));
    QCOMPARE(surveys.child<QLabel>("qlabel")->text(), QStringLiteral("Question"));
    QVERIFY(surveys.child<QComboBox>("surveyListCombo"));
    QVERIFY(surveys.child<QComboBox>("surveyQuestionCombo"));
    QVERIFY(surveys.child<Zel::FlexGrid>("surveyGrid"));
    QVERIFY(!surveys.child<QPushButton>("dataVis")->isEnabled());
}

void tst_ResultsReports::aPollIsShownWithItsVotes()
{
    ReportFixture<PollReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    QCOMPARE(f.client.calls(), QStringList{"GetPolls(\"d1\")"});
    const auto *grid = f.child<Zel::FlexGrid>("poll");
    QCOMPARE(rows(grid),
             QStringList({"\t\t\t\t\t", "\t\tYes\tYes\t1 votes\t33%", "\t\tNo\tNo\t1 votes\t33%",
                          "\t\tPer haps\tPer haps\t1 votes\t33%", "\t\t\tTotal\t3 votes\t100%"}));
    QCOMPARE(grid->columnSpan(1, 2), 2);
    QCOMPARE(grid->columnSpan(4, 2), 1);
    QCOMPARE(grid->columnWidth(2), 200); // 3000 twips
    QCOMPARE(f.report->percentages(),
             (PollReport::Percentages{{"A1", 33}, {"A2", 33}, {"A3", 33}}));
    QVERIFY(f.child<QPushButton>("pollVis")->isEnabled());
}

void tst_ResultsReports::aPollWithoutVotesShowsZero()
{
    ReportFixture<PollReport> f;
    f.client.polls = ZelTest::recordList(QList{poll("p3", "Silence?", {{"%1 & <b>", 0}})});
    f.report->load(&f.client, QStringLiteral("d1"));
    QCOMPARE(rows(f.child<Zel::FlexGrid>("poll")),
             QStringList({"\t\t\t\t\t", "\t\t%1 & <b>\t%1 & <b>\t0 votes\t0%",
                          "\t\t\tTotal\t0 votes\t0%"}));
}

void tst_ResultsReports::choosingAPollShowsIt()
{
    ReportFixture<PollReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    auto *combo = f.child<QComboBox>("PollQuestionCombo");
    QCOMPARE(combo->count(), 3);
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(combo->currentText(), QStringLiteral("Again?"));
    const QStringList again{"\t\t\t\t\t", "\t\tOf course\tOf course\t400 votes\t100%",
                            "\t\tNever\tNever\t0 votes\t0%", "\t\t\tTotal\t400 votes\t100%"};
    QCOMPARE(rows(f.child<Zel::FlexGrid>("poll")), again);
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Up);
    QCOMPARE(rows(f.child<Zel::FlexGrid>("poll")), again);
    QCOMPARE(f.client.calls().size(), 1);
}

void tst_ResultsReports::aDeploymentWithoutPollsChangesNothing()
{
    ReportFixture<PollReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    const QStringList before = rows(f.child<Zel::FlexGrid>("poll"));
    for (const bool nothing : {true, false}) {
        f.client.polls = nothing ? nullptr : std::make_shared<QXSC::PollQuestionCollection>();
        f.report->load(&f.client, QStringLiteral("d2"));
        f.client.takeCalls();
        QCOMPARE(f.child<QComboBox>("PollQuestionCombo")->count(), 3);
        QTest::keyClick(f.child<QComboBox>("PollQuestionCombo"), Qt::Key_Down);
        QCOMPARE(rows(f.child<Zel::FlexGrid>("poll")), before);
        QVERIFY(f.child<QPushButton>("pollVis")->isEnabled());
        f.click("pollVis");
        QCOMPARE(f.client.calls(), QStringList());
    }
}

void tst_ResultsReports::pollsAreCharted()
{
    ReportFixture<PollReport> f;
    f.client.pollResponses =
        QList{vote("u1", "p1", "p11"), vote("u2", "p1", "p12"), vote("u2", "p2", "p21")};
    f.report->load(&f.client, QStringLiteral("d1"));
    QStringList seen;
    whenShown<PollVisualization>(f.report, &seen);
    f.click("pollVis");
    QCOMPARE(seen, QStringList{"3 questions, 2 respondents, can be saved"});
    QCOMPARE(f.client.calls().last(), QStringLiteral("GetPollResponses(\"d1\")"));
    QVERIFY(ReportChart::workbook.contains(QLatin1String("<Data ss:Type='String'>p21</Data>")));
}

void tst_ResultsReports::pollsWithoutVotesAreChartedWithoutVoters()
{
    ReportFixture<PollReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    for (const QXSC::PollResponseArray &votes :
         {QXSC::PollResponseArray(), QXSC::PollResponseArray(QList<QXSC::PollResponse>())}) {
        f.client.pollResponses = votes;
        QStringList seen;
        whenShown<PollVisualization>(f.report, &seen);
        f.click("pollVis");
        QCOMPARE(seen, QStringList{"3 questions, 0 respondents, can be saved"});
        QVERIFY(!ReportChart::workbook.contains(QLatin1String("User ID")));
    }
}

void tst_ResultsReports::votesBeyondThirtyTwoBitsOverflow()
{
    ReportFixture<PollReport> f;
    f.client.polls = ZelTest::recordList(QList{poll("p", "?", {{"a", 2147483647}, {"b", 1}})});
    QCOMPARE(errorNumber([&] { f.report->load(&f.client, QStringLiteral("d1")); }), 6);
}

void tst_ResultsReports::aSurveyIsShownWithItsRespondents()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    const auto *grid = f.child<Zel::FlexGrid>("surveyGrid");
    QCOMPARE(rows(grid), QStringList({"\t\t\t\t\t", "\t\ta-1\ta-1\t500%\t10",
                                      "\tX\ta-2\ta-2\t1000%\t20", "\t\ta-3\ta-3\t1500%\t30",
                                      "\t\t\tTotal Respondents\tTotal Respondents\t2",
                                      "\t\t\t(skipped question)\t(skipped question)\t1"}));
    QCOMPARE(grid->columnSpan(2, 2), 2);
    QCOMPARE(grid->columnSpan(4, 3), 2);
    QCOMPARE(grid->columnSpan(5, 3), 2);
    QCOMPARE(grid->rowSpan(4, 3), 1);
    QVERIFY(f.child<QPushButton>("dataVis")->isEnabled());
}

void tst_ResultsReports::choosingAQuestionShowsIt()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    auto *combo = f.child<QComboBox>("surveyQuestionCombo");
    QCOMPARE(combo->count(), 3);
    QTest::keyClick(combo, Qt::Key_End);
    // Everyone answered it: nobody skipped.
    QCOMPARE(rows(f.child<Zel::FlexGrid>("surveyGrid")),
             QStringList({"\t\t\t\t\t", "\t\tc-1\tc-1\t333%\t10", "\t\tc-2\tc-2\t667%\t20",
                          "\t\t\tTotal Respondents\tTotal Respondents\t3"}));
    QTest::keyClick(combo, Qt::Key_Up);
    // Nobody answered it.
    QCOMPARE(f.child<Zel::FlexGrid>("surveyGrid")->rowText(1),
             QStringLiteral("\t\tb-1\tb-1\t0%\t10"));
    QCOMPARE(f.child<Zel::FlexGrid>("surveyGrid")->rowText(6),
             QStringLiteral("\t\t\t(skipped question)\t(skipped question)\t3"));
}

void tst_ResultsReports::responsesAreFetchedOnceForASurvey()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    QTest::keyClick(f.child<QComboBox>("surveyQuestionCombo"), Qt::Key_Down);
    QTest::keyClick(f.child<QComboBox>("surveyQuestionCombo"), Qt::Key_Down);
    QCOMPARE(f.client.takeCalls(),
             QStringList({"GetSurveys(\"d1\")", "GetSurveyResponses(\"d1\", \"s1\")"}));
    QTest::keyClick(f.child<QComboBox>("surveyListCombo"), Qt::Key_Down);
    QCOMPARE(f.client.calls(), QStringList{"GetSurveyResponses(\"d1\", \"s2\")"});
    QCOMPARE(f.child<QComboBox>("surveyQuestionCombo")->currentText(), QStringLiteral("X?"));
}

void tst_ResultsReports::aSurveyNobodyAnsweredShowsZero()
{
    ReportFixture<SurveyReport> f;
    for (const bool dimensioned : {false, true}) {
        f.client.surveyResponses.clear();
        if (dimensioned)
            f.client.surveyResponses[QStringLiteral("s1")] = QList<QXSC::SurveyResponse>();
        f.report->load(&f.client, QStringLiteral("d1"));
        QCOMPARE(
            rows(f.child<Zel::FlexGrid>("surveyGrid")).mid(3),
            QStringList({"\t\ta-3\ta-3\t0%\t30", "\t\t\tTotal Respondents\tTotal Respondents\t0"}));
    }
}

void tst_ResultsReports::aDeploymentWithoutSurveysChangesNothing()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    const QStringList before = rows(f.child<Zel::FlexGrid>("surveyGrid"));
    f.client.surveys = nullptr;
    f.report->load(&f.client, QStringLiteral("d2"));
    f.client.takeCalls();
    QTest::keyClick(f.child<QComboBox>("surveyListCombo"), Qt::Key_Down);
    QTest::keyClick(f.child<QComboBox>("surveyQuestionCombo"), Qt::Key_Down);
    f.click("dataVis");
    QCOMPARE(rows(f.child<Zel::FlexGrid>("surveyGrid")), before);
    QCOMPARE(f.client.calls(), QStringList());
}

void tst_ResultsReports::aSurveyIsCharted()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    QStringList seen;
    whenShown<SurveyVisualization>(f.report, &seen);
    f.click("dataVis");
    QCOMPARE(seen, QStringList{"3 questions, 3 respondents, can be saved"});
    QVERIFY(ReportChart::workbook.contains(QLatin1String("=AVERAGE(R[-3]C:R[-1]C)")));
}

void tst_ResultsReports::aSurveyWithoutRespondentsSaysSo()
{
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    f.client.surveyResponses.clear();
    ZelTest::MessageBoxDriver boxes;
    boxes.click(QMessageBox::Ok);
    f.click("dataVis");
    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().at(0).text,
             QStringLiteral("There are currently no respondents to the survey/quiz"));
    QCOMPARE(boxes.shown().at(0).title, QStringLiteral("No respondents"));
    QVERIFY(ReportChart::workbook.isEmpty());
}

void tst_ResultsReports::whatTheChartRejectsIsSaid()
{
    ReportChart::understands = false;
    ReportFixture<SurveyReport> f;
    f.report->load(&f.client, QStringLiteral("d1"));
    ZelTest::MessageBoxDriver boxes;
    boxes.click(QMessageBox::Ok);
    f.click("dataVis");
    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().at(0).text, QStringLiteral("The results could not be charted."));
}

void tst_ResultsReports::buttonsWithoutActionAreHiddenAtDesignTime()
{
    ReportFixture<PollReport> polls;
    ReportFixture<SurveyReport> surveys;
    for (const char *const name : {"pollChart2D", "pollChart3D", "pollChartPie"}) {
        QVERIFY(polls.child<QPushButton>(name)->isVisible());
        QVERIFY(polls.child<QPushButton>(name)->isEnabled());
        polls.click(name);
    }
    for (const char *const name : {"surveyChart2D", "surveyChart3D", "surveyChartPie"}) {
        QVERIFY(surveys.child<QPushButton>(name)->isEnabled());
        surveys.click(name);
    }
    QCOMPARE(polls.client.calls() + surveys.client.calls(), QStringList());
    polls.report->setDesignTime(true);
    surveys.report->setDesignTime(true);
    QVERIFY(!polls.child<QPushButton>("pollChart3D")->isVisible());
    QVERIFY(!surveys.child<QPushButton>("surveyChartPie")->isVisible());
    QVERIFY(polls.child<QPushButton>("pollVis")->isVisible());
    polls.report->setDesignTime(false);
    QVERIFY(polls.child<QPushButton>("pollChart3D")->isVisible());
}

void tst_ResultsReports::withoutAClientThereIsAnError()
{
    ReportFixture<PollReport> polls;
    ReportFixture<SurveyReport> surveys;
    QCOMPARE(errorNumber([&] { polls.report->load(nullptr, "d"); }), 91);
    QCOMPARE(errorNumber([&] { surveys.report->load(nullptr, "d"); }), 91);
}

void tst_ResultsReports::aReportMayBeDestroyedInTheCall()
{
    for (const int atCall : {1, 2, 3}) {
        ReportFixture<PollReport> polls;
        ReportFixture<SurveyReport> surveys;
        int calls = 0;
        polls.client.atCall = [&](const QString &) {
            if (++calls == atCall)
                delete polls.report;
        };
        int surveyCalls = 0;
        surveys.client.atCall = [&](const QString &) {
            if (++surveyCalls == atCall)
                delete surveys.report;
        };
        polls.report->load(&polls.client, QStringLiteral("d1"));
        surveys.report->load(&surveys.client, QStringLiteral("d1"));
        if (atCall == 2)
            polls.click("pollVis");
        if (atCall == 3)
            surveys.click("dataVis");
        QCOMPARE(surveyCalls, atCall);
        QVERIFY(ReportChart::workbook.isEmpty());
    }
}

ZEL_TEST_MAIN(tst_ResultsReports)
#include "tst_resultsreports.moc"
