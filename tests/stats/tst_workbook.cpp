// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollusers.h"
#include "stats/surveyusers.h"
#include "stats/workbook.h"
#include "stats/workbooktemplate.h"
#include "stats/workbooktext.h"
#include "surveyfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

namespace {

QString kept(const QString &name)
{
    QFile file(QStringLiteral(ZEL_FIXTURES "/workbook/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing", qPrintable(name));
    return QString::fromUtf8(file.readAll());
}

/// What stands in place of the template's "<Worksheet/>".
QString sheets(const QString &workbook)
{
    const QStringView head = workbookTemplateHead();
    const QStringView tail = workbookTemplateTail();
    if (!workbook.startsWith(head) || !workbook.endsWith(tail))
        return QStringLiteral("not in the template");
    return workbook.sliced(head.size(), workbook.size() - head.size() - tail.size());
}

QString sheet(const QString &workbook, const QString &name)
{
    const QString opening = QStringLiteral("<Worksheet ss:Name='%1'>").arg(name);
    return opening + workbook.section(opening, 1).section(QLatin1String("</Worksheet>"), 0, 0);
}

QList<QXSC::SurveyResponse> twoRespondents()
{
    return {response("u1", "q1", "a2", "2"), response("u1", "q2", "b2", "2:3"),
            response("u1", "q3", "c1", "1"), response("u2", "q1", "a1", "1")};
}

QString surveyText(const QXSC::SurveyRecordPtr &survey, const QList<QXSC::SurveyResponse> &list)
{
    SurveyUsers users;
    users.SortResponse(list, survey);
    return surveyWorkbook(*survey, users);
}

QXSC::PollQuestionCollectionPtr twoPolls()
{
    return ZelTest::recordList(QList{poll("p1", "Lunch?", {{"Yes", 3}, {"No", 1}, {"Perhaps", 0}}),
                                     poll("p2", "Again?", {{"Of course", 400}})});
}

QString pollText(const QXSC::PollQuestionCollectionPtr &polls,
                 const QList<QXSC::PollResponse> &votes)
{
    PollUsers users;
    users.SortResponse(votes);
    return pollWorkbook(*polls, &users);
}

} // namespace

/// The workbook that the chart forms take.
class tst_Workbook : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void theTemplateIsKeptByteForByte();
    void twoNamespacesAreBroken();
    void theTemplateHasOnePlace();
    void theTemplateIsXml();
    void aSurveyIsWrittenAsKept();
    void aPollIsWrittenAsKept();
    void theTitlesStandBehindTheQuestions();
    void legendCellsStandUnderTheirQuestion();
    void answersOfDifferentNumberLeaveGaps();
    void aPollWithoutVotesHasNoRows();
    void countsAreThirtyTwoBit();
    void nothingInATextIsAPlaceToFillIn_data();
    void nothingInATextIsAPlaceToFillIn();
    void theTextNeedsOneAllocation();
    void aTextOutgrowsItsBoundWhole();
    void surveysWithoutQuestionsOrAnswers();
};

void tst_Workbook::theTemplateIsKeptByteForByte()
{
    const QByteArray bytes = workbookTemplate().toUtf8();
    QCOMPARE(QString::fromUtf8(bytes), kept(QStringLiteral("template.xml")));
    QCOMPARE(bytes.count("\r\n"), bytes.count('\n'));
    QVERIFY(bytes.endsWith("\r\n<Worksheet/>\r\n</Workbook>\r\n\t"));
    QVERIFY(bytes.startsWith("<?xml version=\"1.0\"?>\r\n<?mso-application "
                             "progid=\"Excel.Sheet\"?>\r\n<Workbook "));
    QVERIFY(bytes.contains("<Author>Studio</Author>\r\n"));
}

void tst_Workbook::twoNamespacesAreBroken()
{
    const QString text = workbookTemplate().toString();
    QCOMPARE(text.count(QLatin1String("office:spreadshe\r\net\"")), 1);
    QCOMPARE(text.count(QLatin1String("office:spreads\r\nheet\"")), 1);
    QCOMPARE(text.count(QLatin1String("office:spreadsheet\"")), 0);
}

void tst_Workbook::theTemplateHasOnePlace()
{
    QCOMPARE(workbookTemplate().toString().count(QLatin1String("<Worksheet/>")), 1);
    QCOMPARE(workbookTemplateHead().toString() + QStringLiteral("<Worksheet/>") +
                 workbookTemplateTail().toString(),
             workbookTemplate().toString());
}

void tst_Workbook::theTemplateIsXml()
{
    QXmlStreamReader reader(workbookTemplate().toString());
    QStringList styles;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("Style"))
            styles.append(reader.attributes().first().value().toString());
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(styles, QStringList({"Default", "s20", "s21", "s28", "s29", "s32", "s34", "s36", "s40",
                                  "s41", "s45", "s53", "s55", "s56"}));
}

void tst_Workbook::aSurveyIsWrittenAsKept()
{
    QCOMPARE(sheets(surveyText(threeQuestions(), twoRespondents())),
             kept(QStringLiteral("survey.txt")));
}

void tst_Workbook::aPollIsWrittenAsKept()
{
    QCOMPARE(sheets(pollText(twoPolls(), {vote("u1", "p1", "a1"), vote("u1", "p1", "b2"),
                                          vote("u2", "p2", "c1")})),
             kept(QStringLiteral("poll.txt")));
}

void tst_Workbook::theTitlesStandBehindTheQuestions()
{
    const QString text = surveyText(threeQuestions(), twoRespondents());
    QVERIFY(text.contains(QLatin1String(
        "<Cell ss:StyleID='s41' ss:Index='5'><Data ss:Type='String'>Correct</Data></Cell>"
        "<Cell ss:StyleID='s41' ss:Index='6'><Data ss:Type='String'>Percent "
        "Correct</Data></Cell></Row>\r\n")));
}

void tst_Workbook::legendCellsStandUnderTheirQuestion()
{
    const QString responses =
        sheet(surveyText(threeQuestions(), twoRespondents()), QStringLiteral("Responses"));
    QVERIFY(responses.contains(QLatin1String("<Cell ss:Index='3' ss:StyleID='s32'><Data "
                                             "ss:Type='String'>2 - b-2</Data></Cell>\r\n")));
    QVERIFY(responses.contains(
        QLatin1String("<Cell ss:Index='3'><Data ss:Type='String'>1 - b-1</Data></Cell>\r\n")));
    QCOMPARE(responses.count(QLatin1String("s32")), 3);
    QVERIFY(!pollText(twoPolls(), {})
                 .section(QLatin1String("</Styles>"), 1)
                 .contains(QLatin1String("s32")));
}

void tst_Workbook::answersOfDifferentNumberLeaveGaps()
{
    const QString text = surveyText(threeQuestions(), twoRespondents());
    // Only the second question has a fourth answer.
    QVERIFY(text.contains(QLatin1String(
        "<Row>\r\n<Cell ss:StyleID='s21'/>\r\n"
        "<Cell ss:Index='3'><Data ss:Type='String'>4 - b-4</Data></Cell>\r\n</Row>\r\n")));
    QVERIFY(text.contains(QLatin1String(
        "<Row>\r\n<Cell ss:StyleID='s45'><Data ss:Type='String'>Answer 4</Data></Cell>\r\n"
        "<Cell ss:Index='3'><Data ss:Type='Number'>40</Data></Cell></Row>\r\n")));
    QVERIFY(!text.contains(QLatin1String("Answer 5")));
}

void tst_Workbook::aPollWithoutVotesHasNoRows()
{
    const QString none = pollText(twoPolls(), {});
    QVERIFY(!none.contains(QLatin1String("User ID")));
    QCOMPARE(none, pollWorkbook(*twoPolls(), nullptr));
    QCOMPARE(sheet(none, QStringLiteral("Responses")).count(QLatin1String("<Row")), 4);
    QCOMPARE(sheet(none, QStringLiteral("Summary")).count(QLatin1String("<Row")), 4);
    QVERIFY(none.contains(QLatin1String("<Data ss:Type='Number'>400</Data>")));
}

void tst_Workbook::countsAreThirtyTwoBit()
{
    const QString text =
        pollText(ZelTest::recordList(QList{poll("p", "?", {{"all", 2147483647}})}), {});
    QVERIFY(text.contains(QLatin1String("<Data ss:Type='Number'>2147483647</Data>")));
}

void tst_Workbook::nothingInATextIsAPlaceToFillIn_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text : {"<Worksheet/>", "%1 %2 %%", "\\1 \\0 $& $1", "</Data></Cell>",
                                   "]]>", "&amp;", "R[-2]C", "\r\n\t"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_Workbook::nothingInATextIsAPlaceToFillIn()
{
    QFETCH(QString, text);
    // The same workbook with a plain word in place of every text shows where the texts belong.
    const auto both = [](const QString &word) {
        const QXSC::SurveyRecordPtr record =
            survey({question("q1", word, {choice("a1", word, false, 3)})});
        const QXSC::PollQuestionCollectionPtr polls =
            ZelTest::recordList(QList{poll("p1", word, {{word, 1}})});
        return surveyText(record, {response(word, "q1", "a1", word)}) +
               pollText(polls, {vote(word, "p1", word)});
    };
    const QString plain = QStringLiteral("qqqq");
    const QString expected = both(plain).replace(plain, text);
    QCOMPARE(both(plain).count(plain), 10);
    QCOMPARE(both(text), expected);
}

void tst_Workbook::theTextNeedsOneAllocation()
{
    const QString longText(5000, u'x');
    QList<QXSC::SurveyResponse> responses;
    QList<QXSC::PollResponse> votes;
    for (int user = 0; user < 200; ++user) {
        const QString guid = QStringLiteral("user-%1-").arg(user) + longText.first(user);
        for (const char *const of : {"q1", "q2", "gone", "q1"}) {
            responses.append(response(guid, of, "a1", user % 3 ? "1:2:3" : longText));
            votes.append(vote(guid, of, longText.first(user % 50)));
        }
    }
    SurveyUsers users;
    users.SortResponse(responses, threeQuestions());
    WorkbookText rows(users.rowsBound());
    users.appendRows(rows);
    QCOMPARE(rows.growths(), 0);

    const QXSC::PollQuestionCollectionPtr polls =
        ZelTest::recordList(QList{poll("q1", "?", {}), poll("q1", "?", {}), poll("none", "?", {})});
    PollUsers voters;
    voters.SortResponse(votes);
    WorkbookText pollRows(voters.rowsBound(*polls));
    voters.appendRows(pollRows, *polls);
    QCOMPARE(pollRows.growths(), 0);
}

void tst_Workbook::aTextOutgrowsItsBoundWhole()
{
    WorkbookText text(3);
    QString expected;
    for (int i = -500; i < 500; ++i) {
        text.literal(u"<a>");
        text.number(i);
        text.text(QStringLiteral("%1"));
        expected += QStringLiteral("<a>") + QString::number(i) + QStringLiteral("%1");
    }
    QVERIFY(text.growths() > 0);
    QCOMPARE(text.size(), expected.size());
    QCOMPARE(text.take(), expected);
    QCOMPARE(text.size(), 0);
    text.literal(u"again");
    QCOMPARE(text.take(), QStringLiteral("again"));
}

void tst_Workbook::surveysWithoutQuestionsOrAnswers()
{
    const QString empty = surveyText(survey({}), {});
    QCOMPARE(empty.count(QLatin1String("<Worksheet ")), 2);
    QVERIFY(empty.contains(QLatin1String("ss:Index='2'><Data ss:Type='String'>Correct<")));
    QCOMPARE(errorNumber([] { surveyText(survey({}), {response("u", "q", "a", "1")}); }), 11);
    QCOMPARE(errorNumber([] { surveyWorkbook(QXSC::SurveyRecord(), SurveyUsers()); }), 91);
    const QString bare = surveyText(survey({question("q", "No answers?", {})}), twoRespondents());
    QVERIFY(!bare.contains(QLatin1String("Answer 1")));
    QVERIFY(pollText(ZelTest::recordList(QList<QXSC::PollQuestion>()), {})
                .contains(QLatin1String("<Worksheet ss:Name='Summary'>")));
}

ZEL_TEST_MAIN(tst_Workbook)
#include "tst_workbook.moc"
