// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/gridchart.h"
#include "stats/pollusers.h"
#include "stats/surveyusers.h"
#include "stats/workbook.h"
#include "surveyfixture.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModel>
#include <QTableView>
#include <QTest>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelDataVisualization::GridChart;

namespace {

const QString hostile = QStringLiteral("<b>&\"</b>");

/// A survey of two questions with three choices each, every text hostile; the second choice is
/// right, of the second question the first and the third.
QXSC::SurveyRecordPtr hostileSurvey()
{
    const auto choicesOf = [](const QString &prefix, const QList<qint16> &right) {
        QList<QXSC::SurveyAnswer> answers;
        for (qint16 k = 1; k <= 3; ++k)
            answers << choice(prefix + QString::number(k), hostile, right.contains(k),
                              k == 2 ? 2 : 1, k);
        return answers;
    };
    return survey({question("q1", hostile, choicesOf("q1a", {2})),
                   question("q2", hostile, choicesOf("q2a", {1, 3}))});
}

QXSC::SurveyResponse given(const QString &user, const QString &question, const QString &positions)
{
    return response(user, question, question + QLatin1Char('a') + positions.left(1), positions,
                    hostile);
}

/// The table below the chart, a line each, cells parted by "|".
QStringList figures(const GridChart &chart)
{
    const QAbstractItemModel *model =
        chart.findChild<QTableView *>(QStringLiteral("figures"))->model();
    QStringList lines;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells << model->index(row, column).data().toString();
        lines << cells.join(QLatin1Char('|'));
    }
    return lines;
}

} // namespace

/// The chart over the very workbooks that are written.
class TestChartedWorkbook : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void aSurveyOfHostileTextsChartsRight()
    {
        const QXSC::SurveyRecordPtr record = hostileSurvey();
        SurveyUsers users;
        users.SortResponse(
            QList<QXSC::SurveyResponse>{given(hostile, "q1", "2"), given(hostile, "q2", "1:3"),
                                        given("u2", "q1", "2"), given("u2", "q2", "2"),
                                        given("u3", "q1", "1"), given("u4", "q2", "1:3")},
            record);
        GridChart chart;
        QVERIFY2(chart.LoadWorkbookXml(surveyWorkbook(*record, users)),
                 qPrintable(chart.problem()));
        chart.ShowPercentCorrect(true, QString());
        const QStringList byQuestion = figures(chart);
        QCOMPARE(byQuestion.size(), 2);
        // Two of four respondents are right each time.
        for (const QString &line : byQuestion) {
            QVERIFY2(line.contains(hostile), qPrintable(line));
            QVERIFY2(line.contains(QLatin1String("|2|")), qPrintable(line));
            QVERIFY2(line.contains(QLatin1String("50")), qPrintable(line));
        }
        chart.ShowPercentCorrect(false, QString());
        QCOMPARE(figures(chart).size(), 4);
        QVERIFY(figures(chart).constFirst().contains(QLatin1String("100")));
        chart.ShowQuestionDetails(1);
        const QStringList details = figures(chart);
        QCOMPARE(details.size(), 3);
        QVERIFY2(details.at(1).contains(hostile), qPrintable(details.at(1)));
        QVERIFY2(details.at(1).contains(QLatin1String("|2|")), qPrintable(details.at(1)));
    }

    void aPollWithoutVotesCharts()
    {
        const auto polls = ZelTest::recordList<QXSC::PollQuestion>(
            {poll("p", hostile, {{hostile, 0}, {hostile, 0}})});
        GridChart chart;
        QVERIFY2(chart.LoadWorkbookXml(pollWorkbook(*polls, nullptr)), qPrintable(chart.problem()));
        chart.ShowQuestionDetails(1);
        const QStringList details = figures(chart);
        QCOMPARE(details.size(), 2);
        QVERIFY2(details.at(0).contains(QLatin1String("|0|")), qPrintable(details.at(0)));
    }
};

ZEL_TEST_MAIN(TestChartedWorkbook)
#include "tst_chartedworkbook.moc"
