// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphlook.h"
#include "gridchartfixture.h"
#include "platform/widgets/latebound.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModelTester>

using namespace ZelDataVisualization;

class tst_GridChart : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void saysThatThereIsNothingYet();
    void showsPercentagesByQuestionOnceLoaded();
    void showsTheAnswersToAQuestion();
    void showsPercentagesByRespondent();
    void optionalArgumentsMayBeLeftOut();
    void aPollHasNoPercentages();
    void aPollCountsVotes();
    void aPollWithoutVotesIsShown();
    void refusesQuestionsThatAreNotThere();
    void aRefusedWorkbookSaysWhy();
    void hidesAndShowsTheGraph();
    void rotatesAndResets();
    void drawsBarsInTheTenColours();
    void marksCorrectAnswersByPattern();
    void readsWithThreeAndWithThreeThousandRespondents();
    void followsADarkPalette();
    void textsAreNeverMarkup();
    void theTableIsAProperModel();
    void anEmptyWorkbookSaysThatItHasNoQuestions();
};

void tst_GridChart::saysThatThereIsNothingYet()
{
    const GridChartFixture on;
    QVERIFY(on.message()->isVisible());
    QCOMPARE(on.message()->text(), QStringLiteral("There are no results to show yet."));
    QVERIFY(!on.graph()->isVisible());
    QVERIFY(!on.table()->isVisible());
}

void tst_GridChart::showsPercentagesByQuestionOnceLoaded()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QCOMPARE(on.chart.problem(), QString());
    QVERIFY(on.graph()->isVisible());
    QCOMPARE(on.graph()->content().title, QString());
    QVERIFY(on.graph()->content().isShare);
    QCOMPARE(on.lines(), (QStringList{QStringLiteral("Question|Correct|Percentage Correct"),
                                      QStringLiteral("1. Is <b>this</b> & that?|6|75.0 %"),
                                      QStringLiteral("2. Which city?|4|50.0 %"),
                                      QStringLiteral("3. |0|0.0 %")}));
}

void tst_GridChart::showsTheAnswersToAQuestion()
{
    GridChartFixture on;
    QVERIFY(on.load(40));
    on.chart.ShowQuestionDetails(1);
    QCOMPARE(on.graph()->content().title, QStringLiteral("Question 1: Is <b>this</b> & that?"));
    QCOMPARE(on.lines(),
             (QStringList{QStringLiteral("Answer|Count|Percentage|Correct"),
                          QStringLiteral("1 - <i>Yes</i>|30|75 %|✓ Correct"),
                          QStringLiteral("2 - No|10|25 %|"), QStringLiteral("3 - None|0|0 %|")}));
    QCOMPARE(on.graph()->content().bars[0].valueText, QStringLiteral("30 (75 %)"));
    QCOMPARE(on.graph()->content().bars[0].spoken,
             QStringLiteral("1 - <i>Yes</i>: 30 (75 %), correct"));
    on.chart.ShowQuestionDetails(2);
    QCOMPARE(on.lines().size(), 13);
    QVERIFY(on.graph()->content().bars[10].isCorrect);
    on.chart.ShowQuestionDetails(3);
    QVERIFY(on.message()->isVisible());
    QCOMPARE(on.message()->text(), QStringLiteral("This question has no answers."));
    on.chart.ShowQuestionDetails(1);
    QVERIFY(!on.message()->isVisible());
}

void tst_GridChart::showsPercentagesByRespondent()
{
    GridChartFixture on;
    QVERIFY(on.load(4));
    on.chart.ShowPercentCorrect(false, QStringLiteral("Percentage Correct By User"));
    QCOMPARE(on.graph()->content().title, QStringLiteral("Percentage Correct By User"));
    QCOMPARE(
        on.lines(),
        (QStringList{QStringLiteral("Respondent|Correct|Percentage Correct"),
                     QStringLiteral("person-1|2|66.7 %"), QStringLiteral("person-2|1|33.3 %"),
                     QStringLiteral("person-3|2|66.7 %"), QStringLiteral("person-4|0|0.0 %")}));
    on.chart.ShowPercentCorrect(true, QStringLiteral("Percentage Correct By Question"));
    QCOMPARE(on.graph()->content().title, QStringLiteral("Percentage Correct By Question"));
    QCOMPARE(on.lines().size(), 4);
}

void tst_GridChart::optionalArgumentsMayBeLeftOut()
{
    GridChartFixture on;
    const Zel::LateBound member(&on.chart);
    QCOMPARE(member.call(QStringLiteral("LoadWorkbookXml"), {GridChartFixture::survey(2).text()}),
             QVariant(true));
    member.call(QStringLiteral("ShowPercentCorrect"), {false});
    QCOMPARE(on.lines().constFirst(), QStringLiteral("Respondent|Correct|Percentage Correct"));
    QCOMPARE(on.graph()->content().title, QString());
    member.call(QStringLiteral("ShowPercentCorrect"));
    QCOMPARE(on.lines().constFirst(), QStringLiteral("Question|Correct|Percentage Correct"));
    QCOMPARE(on.graph()->content().title, QString());
}

void tst_GridChart::aPollHasNoPercentages()
{
    GridChartFixture on;
    QVERIFY(on.chart.LoadWorkbookXml(GridChartFixture::survey(2, WorkbookText::Kind::Poll).text()));
    for (const bool byQuestion : {true, false}) {
        on.chart.ShowQuestionDetails(1);
        QVERIFY(!on.message()->isVisible());
        on.chart.ShowPercentCorrect(byQuestion);
        QVERIFY(on.message()->isVisible());
        QCOMPARE(on.message()->text(), QStringLiteral("This workbook has no scores, so there is no "
                                                      "percentage correct to show."));
    }
}

void tst_GridChart::aPollCountsVotes()
{
    GridChartFixture on;
    QVERIFY(on.chart.LoadWorkbookXml(GridChartFixture::survey(2, WorkbookText::Kind::Poll).text()));
    on.chart.ShowQuestionDetails(1);
    // Of the votes, however many people there were.
    QCOMPARE(on.lines(),
             (QStringList{QStringLiteral("Answer|Count|Percentage"),
                          QStringLiteral("1 - <i>Yes</i>|30|75 %"),
                          QStringLiteral("2 - No|10|25 %"), QStringLiteral("3 - None|0|0 %")}));
}

void tst_GridChart::aPollWithoutVotesIsShown()
{
    GridChartFixture on;
    QVERIFY(on.chart.LoadWorkbookXml(
        WorkbookText({{QStringLiteral("q"), {{QStringLiteral("a")}, {QStringLiteral("b")}}}},
                     WorkbookText::Kind::Poll)
            .text()));
    on.chart.ShowQuestionDetails(1);
    QCOMPARE(on.lines().mid(1),
             (QStringList{QStringLiteral("1 - a|0|0 %"), QStringLiteral("2 - b|0|0 %")}));
}

void tst_GridChart::refusesQuestionsThatAreNotThere()
{
    GridChartFixture on;
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.ShowQuestionDetails(1); }), 9);
    QVERIFY(on.load());
    for (const qint16 number : {qint16(0), qint16(-1), qint16(4), qint16(32767)})
        QCOMPARE(ZelTest::errorNumber([&] { on.chart.ShowQuestionDetails(number); }), 9);
    QCOMPARE(on.lines().constFirst(), QStringLiteral("Question|Correct|Percentage Correct"));
}

void tst_GridChart::aRefusedWorkbookSaysWhy()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QVERIFY(!on.chart.LoadWorkbookXml(QStringLiteral("<html/>")));
    QCOMPARE(
        on.chart.problem(),
        QStringLiteral("The text is no XML Spreadsheet workbook; its root element is \"html\"."));
    QVERIFY(on.message()->isVisible());
    QVERIFY(on.message()->text().contains(on.chart.problem()));
    // Nothing of the workbook before is left.
    on.chart.ShowPercentCorrect();
    QVERIFY(on.message()->text().contains(on.chart.problem()));
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.ShowQuestionDetails(1); }), 9);
    QVERIFY(on.load());
    QCOMPARE(on.chart.problem(), QString());
}

void tst_GridChart::hidesAndShowsTheGraph()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.SetShowGraph(false);
    QVERIFY(!on.graph()->isVisible());
    QVERIFY(on.table()->isVisible());
    on.chart.setFocus();
    QVERIFY(on.table()->hasFocus());
    on.chart.ShowQuestionDetails(1);
    QVERIFY(!on.graph()->isVisible());
    on.chart.SetShowGraph(true);
    QVERIFY(on.graph()->isVisible());
    QVERIFY(on.table()->isVisible());
}

void tst_GridChart::rotatesAndResets()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    const auto longest = [&on] { return on.places().bar(0, 30); };
    QVERIFY(longest().height() > longest().width());
    on.chart.RotateChart(1);
    QVERIFY(longest().width() > longest().height());
    QCOMPARE(on.colorIn(1, 10), QColor(255, 0, 0)); // the second from above
    on.chart.ShowQuestionDetails(1);
    QVERIFY(longest().width() > longest().height());
    on.chart.ResetRotation();
    QVERIFY(longest().height() > longest().width());
    on.chart.RotateChart(1);
    on.chart.RotateChart(0);
    QVERIFY(longest().height() > longest().width());
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.RotateChart(2); }), 5);
    QCOMPARE(ZelTest::errorNumber([&] { on.chart.RotateChart(-1); }), 5);
}

void tst_GridChart::drawsBarsInTheTenColours()
{
    const QList<QColor> colors{{0, 255, 0},     {255, 0, 0},    {0, 0, 255},    {255, 255, 0},
                               {255, 0, 255},   {0, 255, 255},  {232, 192, 64}, {128, 128, 128},
                               {172, 236, 172}, {164, 134, 106}};
    GridChartFixture on;
    on.chart.resize(1000, 700);
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(2);
    for (const bool rotated : {false, true}) {
        on.chart.RotateChart(rotated ? 1 : 0);
        QCoreApplication::processEvents();
        for (int i = 1; i < 12; ++i) {
            const QColor expected = colors[i % 10];
            QCOMPARE(on.table()->model()->index(i, 0).data(Qt::DecorationRole).value<QColor>(),
                     expected);
            if (i != 10) // the correct one is hatched
                QCOMPARE(on.colorIn(static_cast<size_t>(i), i + 1), expected);
        }
    }
}

void tst_GridChart::marksCorrectAnswersByPattern()
{
    GridChartFixture on;
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    const QImage image = on.graph()->viewport()->grab().toImage();
    const auto colorsOf = [&](size_t bar, double value) {
        QSet<QRgb> colors;
        const QRect rect = on.places().bar(bar, value).toRect().adjusted(3, 3, -3, -3);
        for (int y = rect.top(); y < rect.bottom(); ++y)
            for (int x = rect.left(); x < rect.right(); ++x)
                colors << image.pixel(x, y);
        return colors;
    };
    QVERIFY(colorsOf(0, 30).contains(qRgb(0, 255, 0)));
    QVERIFY(colorsOf(0, 30).size() > 1);
    QCOMPARE(colorsOf(1, 10), QSet<QRgb>{qRgb(255, 0, 0)});
    QCOMPARE(on.graph()->content().note,
             QStringLiteral("Answered by: 8. Correct answers are hatched and marked ✓."));
}

void tst_GridChart::readsWithThreeAndWithThreeThousandRespondents()
{
    GridChartFixture on;
    for (const int people : {3, 3'000}) {
        QVERIFY(on.load(people));
        on.chart.ShowPercentCorrect(false);
        QCOMPARE(on.table()->model()->rowCount(), people);
        for (const qint16 rotation : {qint16(0), qint16(1)}) {
            on.chart.RotateChart(rotation);
            const size_t bars = on.graph()->content().bars.size();
            QVERIFY(bars == 3 || (people == 3'000 && bars >= 5));
            // Room for a name beside each bar.
            const QRectF slot = on.places().slot(0);
            const double room = rotation == 1 ? slot.height() : slot.width();
            QVERIFY(room >= on.graph()->fontMetrics().height() * 0.9);
        }
    }
    on.graph()->showAll();
    QCOMPARE(on.graph()->content().bars.size(), size_t(60));
    QCOMPARE(on.graph()->content().bars[1].label, QStringLiteral("51 to 100"));
    QCOMPARE(on.graph()->content().note, QStringLiteral("Each bar is the average of 50."));
}

void tst_GridChart::followsADarkPalette()
{
    GridChartFixture on;
    QVERIFY(on.load());
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    dark.setColor(QPalette::Text, QColor(240, 240, 240));
    on.chart.setPalette(dark);
    QCoreApplication::processEvents();
    const QImage image = on.graph()->viewport()->grab().toImage();
    QCOMPARE(image.pixelColor(2, 2), QColor(30, 30, 32));
    bool hasText = false;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            hasText = hasText || image.pixelColor(x, y) == QColor(240, 240, 240);
    QVERIFY(hasText);
}

void tst_GridChart::textsAreNeverMarkup()
{
    const QString markup = QStringLiteral("<b>&\"</b>");
    WorkbookText text({{markup, {{markup, true, 1}, {markup, false, 0}}}});
    text.addRespondent(markup, {QStringLiteral("1")});
    GridChartFixture on;
    QVERIFY(on.chart.LoadWorkbookXml(text.text()));
    on.chart.ShowQuestionDetails(1);
    QCOMPARE(on.lines(), (QStringList{QStringLiteral("Answer|Count|Percentage|Correct"),
                                      QStringLiteral("1 - <b>&\"</b>|1|100 %|✓ Correct"),
                                      QStringLiteral("2 - <b>&\"</b>|0|0 %|")}));
    QVERIFY(on.table()
                ->model()
                ->index(0, 0)
                .data(Qt::ToolTipRole)
                .toString()
                .contains(QStringLiteral("&lt;b&gt;&amp;&quot;&lt;/b&gt;")));
    QCOMPARE(on.message()->textFormat(), Qt::PlainText);
}

void tst_GridChart::theTableIsAProperModel()
{
    GridChartFixture on;
    const QAbstractItemModelTester tester(on.table()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(on.load());
    on.chart.ShowQuestionDetails(1);
    on.chart.ShowPercentCorrect(false);
    QVERIFY(!on.chart.LoadWorkbookXml(QString()));
    QCOMPARE(on.table()->model()->rowCount(), 0);
}

void tst_GridChart::anEmptyWorkbookSaysThatItHasNoQuestions()
{
    GridChartFixture on;
    WorkbookText text({});
    text.addRespondent(QStringLiteral("u"), {});
    QString kept = text.text();
    kept.replace(QStringLiteral("nan"), QStringLiteral("0"));
    QVERIFY2(on.chart.LoadWorkbookXml(kept), qPrintable(on.chart.problem()));
    QCOMPARE(on.message()->text(), QStringLiteral("The workbook has no questions."));
    QVERIFY(on.message()->isVisible());
}

ZEL_TEST_MAIN(tst_GridChart)
#include "tst_gridchart.moc"
