// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "spreadsheetprogram.h"
#include "stats/resultsfile.h"
#include "stats/workbooksink.h"
#include "surveyfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QXmlStreamReader>

#include <numeric>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

namespace {

using Cell = SpreadsheetProgram::Cell;
using Rows = SpreadsheetProgram::Rows;

constexpr int respondents = 60;

/// Texts that a careless writer or reader turns into something else.
QStringList hostileTexts()
{
    QStringList texts{"<b>&\"'</b>",
                      "=1+1",
                      "+1",
                      "-1+1",
                      "@SUM(A1)",
                      "02",
                      "2.0",
                      "1e3",
                      "1.5",
                      "-7",
                      "TRUE",
                      "1/2",
                      "2026-01-01",
                      "  blanks  ",
                      "a\tb",
                      "one\ntwo\n\nthree",
                      "_x0041_",
                      "%1 \\1 $&",
                      "</Data></Cell>",
                      "]]>",
                      "&amp;",
                      "'quoted",
                      "\"",
                      "a,b;c",
                      "#REF!",
                      "<Worksheet/>",
                      "INF",
                      "2,3",
                      "12345678901234567890"};
    texts.append(QString::fromUtf8("\xF0\x9F\x8E\x89 \xE2\x98\x83 \xD7\xA9\xD7\x9C"));
    texts.append(QString(QChar(1)) + "control" + QChar(0x1f) + QChar(0x7f) + QChar(0xffff));
    texts.append(QString(QChar(0xd83d)) + "half" + QChar(0xdf89));
    texts.append(QStringLiteral("a\r\nb\rc"));
    texts.append(QString(32767, u'x'));
    return texts;
}

QXSC::SurveyRecordPtr hostileSurvey()
{
    const QStringList texts = hostileTexts();
    QList<QXSC::SurveyQuestion> questions;
    const QList<QList<int>> keys{{2}, {2, 3}, {}, {1}, {4}};
    for (int q = 0; q < keys.size(); ++q) {
        QList<QXSC::SurveyAnswer> answers = choices(QStringLiteral("a%1").arg(q), 3 + q, keys[q]);
        for (int k = 0; k < answers.size(); ++k)
            answers[k].answerTxt = texts[(7 * q + 3 * k) % texts.size()];
        questions.append(
            question(QStringLiteral("q%1").arg(q), texts[(11 * q) % texts.size()], answers));
    }
    return survey(questions);
}

/// Respondent r answers question q; nothing when it is skipped.
std::optional<QString> answerOf(int r, int q)
{
    const QStringList usual{"2", "2:3", "", "1", "4", "3"};
    const QStringList texts = hostileTexts();
    if ((r + q) % 9 == 4)
        return std::nullopt;
    return (r + 2 * q) % 4 == 0 ? texts[(5 * r + q) % texts.size()] : usual[(r * (q + 1)) % 6];
}

QString userOf(int r)
{
    return hostileTexts().at(r % hostileTexts().size()).left(500) + QString::number(r);
}

SurveyModels surveyModels()
{
    SurveyModels models{hostileSurvey(), {}};
    QList<QXSC::SurveyResponse> list;
    for (int r = 0; r < respondents; ++r) {
        list.append(response(userOf(r), "none", "", ""));
        for (int q = 0; q < 5; ++q) {
            const QString guid = QStringLiteral("q%1").arg(q);
            if (const std::optional<QString> answer = answerOf(r, q))
                list.append(response(userOf(r), guid, "", *answer));
            if (answerOf(r, q) && (r + q) % 11 == 0)
                list.append(response(userOf(r), guid, "", "3"));
        }
    }
    models.users.SortResponse(list, models.survey);
    return models;
}

PollModels pollModels()
{
    const QStringList texts = hostileTexts();
    QList<QXSC::PollQuestion> polls;
    for (int q = 0; q < 3; ++q) {
        polls.append(poll(QStringLiteral("p%1").arg(q), texts[q],
                          {{texts[q + 3], 400 + q}, {texts[q + 6], 0}}));
    }
    PollModels models{ZelTest::recordList(polls), {}};
    QList<QXSC::PollResponse> votes;
    for (int r = 0; r < respondents; ++r) {
        votes.append(vote(userOf(r), QStringLiteral("p%1").arg(r % 3), texts[r % texts.size()]));
        if (r % 5 == 0)
            votes.append(vote(userOf(r), QStringLiteral("p%1").arg(r % 3), "more"));
    }
    models.users.SortResponse(votes);
    return models;
}

Cell textCell(const QString &text)
{
    return {cellText(text), true};
}

Cell numberCell(double value)
{
    return {QString::number(value, 'g', 17), false};
}

QList<Cell> headings(const QStringList &texts)
{
    QList<Cell> row{Cell()};
    for (const QString &text : texts)
        row.append(textCell(text));
    return row;
}

/// What a text of an answer has to look like: plain numbers are numbers.
Cell answerCell(const QString &text, bool single)
{
    static const QSet<QString> numbers{"2", "1", "3", "4", "1.5", "-7"};
    return single && numbers.contains(text) ? numberCell(text.toDouble()) : textCell(text);
}

Rows expectedSurvey()
{
    const QXSC::SurveyRecordPtr survey = hostileSurvey();
    const QStringList keys{"2", "2,3", "", "1", "4"};
    Rows rows;
    QStringList texts;
    for (const QXSC::SurveyQuestionPtr &question : *survey->questions)
        texts.append(question->questionTxt);
    rows.append(headings(texts));
    for (int k = 1; k <= 7; ++k) {
        QList<Cell> row{Cell()};
        for (const QXSC::SurveyQuestionPtr &question : *survey->questions) {
            row.append(
                k <= question->answers->count()
                    ? textCell(QString::number(k) + " - " + question->answers->item(k)->answerTxt)
                    : Cell());
        }
        rows.append(row);
    }
    rows.append({textCell("User ID"), Cell(), Cell(), Cell(), Cell(), Cell(), textCell("Correct"),
                 textCell("Percent Correct")});
    QList<double> right(5, 0);
    double shares = 0;
    for (int r = 0; r < respondents; ++r) {
        QList<Cell> row{textCell(userOf(r))};
        int score = 0;
        for (int q = 0; q < 5; ++q) {
            const std::optional<QString> answer = answerOf(r, q);
            const QString shown = answer ? QString(*answer).replace(u':', u',') : "(skipped)";
            row.append(answerCell(shown, (r + q) % 11 != 0));
            if (answer && shown == keys[q]) {
                ++score;
                ++right[q];
            }
        }
        shares += score / 5.0;
        row.append({numberCell(score), numberCell(score / 5.0)});
        rows.append(row);
    }
    const double sum = std::accumulate(right.begin(), right.end(), 0.0);
    QList<Cell> correct{textCell("Correct")};
    QList<Cell> percent{textCell("Percent Correct")};
    for (const double of : right) {
        correct.append(numberCell(of));
        percent.append(numberCell(of / respondents));
    }
    rows.append(correct << numberCell(sum) << numberCell(shares / respondents));
    rows.append(percent << numberCell(sum / respondents / 5));
    return rows;
}

Rows expectedPoll()
{
    const PollModels models = pollModels();
    Rows rows;
    QStringList texts;
    for (const QXSC::PollQuestionPtr &poll : *models.polls)
        texts.append(poll->questionTxt);
    rows.append(headings(texts));
    for (int k = 1; k <= 2; ++k) {
        QList<Cell> row{Cell()};
        for (const QXSC::PollQuestionPtr &poll : *models.polls)
            row.append(textCell(QString::number(k) + " - " + poll->answers->item(k)->answerTxt));
        rows.append(row);
    }
    rows.append({textCell("User ID")});
    for (int r = 0; r < respondents; ++r) {
        QList<Cell> row{textCell(userOf(r)), Cell(), Cell(), Cell()};
        row[1 + r % 3] = textCell(hostileTexts().at(r % hostileTexts().size()) +
                                  (r % 5 ? QString() : QStringLiteral(",more")));
        rows.append(row);
    }
    return rows;
}

Rows expectedSummary(const QStringList &texts, const QList<QList<double>> &counts)
{
    Rows rows{headings(texts)};
    for (int k = 0; k < counts.size(); ++k) {
        QList<Cell> row{textCell(QStringLiteral("Answer %1").arg(k + 1))};
        for (const double count : counts[k])
            row.append(count < 0 ? Cell() : numberCell(count));
        rows.append(row);
    }
    return rows;
}

Cell cellAt(const Rows &rows, qsizetype row, qsizetype column)
{
    return row < rows.size() && column < rows[row].size() ? rows[row][column] : Cell();
}

bool same(const Cell &a, const Cell &b)
{
    if (a.text.isEmpty() && b.text.isEmpty())
        return true;
    if (a.isText || b.isText)
        return a.isText == b.isText && a.text == b.text;
    return qAbs(a.text.toDouble() - b.text.toDouble()) < 1e-12;
}

QString shown(const Cell &cell)
{
    return (cell.isText ? QStringLiteral("text ") : QStringLiteral("number ")) +
           QString::number(cell.text.size()) + u' ' + cell.text.left(80);
}

/// LibreOffice 7.4 drops the line feeds of texts when it reads XML Spreadsheet 2003.
Rows withoutLineFeeds(Rows rows)
{
    for (QList<Cell> &row : rows) {
        for (Cell &cell : row)
            cell.text.remove(u'\n');
    }
    return rows;
}

/// The first differences, a line each; empty when there are none.
QString differences(const Rows &actual, const Rows &expected)
{
    QStringList found;
    for (qsizetype row = 0; row < std::max(actual.size(), expected.size()); ++row) {
        for (qsizetype column = 0; column < 9; ++column) {
            const Cell is = cellAt(actual, row, column);
            const Cell should = cellAt(expected, row, column);
            if (!same(is, should) && found.size() < 20) {
                found.append(QStringLiteral("%1,%2: %3 instead of %4")
                                 .arg(row)
                                 .arg(column)
                                 .arg(shown(is), shown(should)));
            }
        }
    }
    return found.join(u'\n');
}

QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// Saved results, opened and computed by a spreadsheet program.
class tst_ResultsFile : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void everyCellOpensAsItWasSaved();
    void csvOpensAsItWasSaved();
    void csvIsWrittenByTheRules();
    void csvNeutralisesFormulas();
    void theXmlIsWholeAndItsNamespacesToo();
    void theEndingNamesTheFormat();
    void aFileThatCannotBeWrittenStaysAsItWas();
    void moreThanASheetHoldsIsRefused();
    void whatIsNotThereIsAnError();
    void resultsWithoutRespondents();
    void formulasReadWhatStandsAboveOrBeside();
    void textsAreCutBetweenCharacters();
};

void tst_ResultsFile::everyCellOpensAsItWasSaved()
{
    SpreadsheetProgram program;
    QStringList files;
    for (const char *const ending : {"xml", "xlsx"}) {
        const QString survey = program.filePath(QStringLiteral("survey-%1.%1").arg(ending));
        const QString poll = program.filePath(QStringLiteral("poll-%1.%1").arg(ending));
        saveResults(surveyModels(), survey, resultsFormat(survey));
        saveResults(pollModels(), poll, resultsFormat(poll));
        files.append({survey, poll});
    }
    program.open(files);
    QStringList surveyTexts;
    const QXSC::SurveyRecordPtr hostile = hostileSurvey();
    for (const QXSC::SurveyQuestionPtr &question : *hostile->questions)
        surveyTexts.append(question->questionTxt);
    QList<QList<double>> surveyCounts;
    for (int k = 1; k <= 7; ++k) {
        QList<double> row;
        for (int q = 0; q < 5; ++q)
            row.append(k <= 3 + q ? 10 * k : -1);
        surveyCounts.append(row);
    }
    const QStringList pollTexts = hostileTexts().first(3);
    for (const QString &of : {QStringLiteral("xml"), QStringLiteral("xlsx")}) {
        const auto sheet = [&](const char *base, const char *name) {
            return program.sheet(QLatin1String(base) + of, QLatin1String(name));
        };
        const auto expected = [&of](const Rows &rows) {
            return of == QLatin1String("xml") ? withoutLineFeeds(rows) : rows;
        };
        QCOMPARE(differences(sheet("survey-", "Responses"), expected(expectedSurvey())), QString());
        QCOMPARE(differences(sheet("survey-", "Summary"),
                             expected(expectedSummary(surveyTexts, surveyCounts))),
                 QString());
        QCOMPARE(differences(sheet("poll-", "Responses"), expected(expectedPoll())), QString());
        QCOMPARE(differences(sheet("poll-", "Summary"),
                             expected(expectedSummary(pollTexts, {{400, 401, 402}, {0, 0, 0}}))),
                 QString());
    }
}

void tst_ResultsFile::csvOpensAsItWasSaved()
{
    SpreadsheetProgram program;
    const QString file = program.filePath(QStringLiteral("survey.csv"));
    saveResults(surveyModels(), file, ResultsFormat::Csv);
    // Every column as text, so that the program shows what stands in the file.
    program.open({file}, QStringLiteral("CSV:44,34,76,1,1/2/2/2/3/2/4/2/5/2/6/2/7/2/8/2"));
    const Rows rows = program.sheet(QStringLiteral("survey"), QStringLiteral("survey"));
    const Rows written = SpreadsheetProgram::parsed(QString::fromUtf8(bytesOf(file)));
    QCOMPARE(rows.size(), respondents + 1);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        for (qsizetype column = 0; column < 8; ++column)
            QCOMPARE(cellAt(rows, row, column).text, cellAt(written, row, column).text);
    }
}

void tst_ResultsFile::csvIsWrittenByTheRules()
{
    SpreadsheetProgram program;
    const QString file = program.filePath(QStringLiteral("a.csv"));
    SurveyModels models{survey({question("q1", "One, \"two\"?", choices("a", 2, {2})),
                                question("q2", "Lines\r\nof it", choices("b", 2, {}))}),
                        {}};
    models.users.SortResponse(QList{response("u1", "q1", "a2", "2"),
                                    response("u2", "q2", "b1", "1:2"),
                                    response("u3", "q1", "a1", " x ")},
                              models.survey);
    saveResults(models, file, ResultsFormat::Csv);
    QCOMPARE(bytesOf(file), QByteArray("\xEF\xBB\xBFUser ID,\"One, \"\"two\"\"?\",\"Lines\nof it\","
                                       "Correct,Percent Correct\r\n"
                                       "u1,2,(skipped),1,0.5\r\n"
                                       "u2,(skipped),\"1,2\",0,0\r\n"
                                       "u3,\" x \",(skipped),0,0\r\n"));
    const PollModels polls = pollModels();
    saveResults(polls, file, ResultsFormat::Csv);
    const Rows rows = SpreadsheetProgram::parsed(QString::fromUtf8(bytesOf(file)));
    QCOMPARE(rows.size(), respondents + 1);
    QCOMPARE(rows[0].size(), 4);
    QCOMPARE(rows[5 + 1][1 + 5 % 3].text, hostileTexts().at(5) + ",more");
}

void tst_ResultsFile::csvNeutralisesFormulas()
{
    SpreadsheetProgram program;
    const QString file = program.filePath(QStringLiteral("a.csv"));
    const QStringList texts{"=1+1", "+1", "-1+1", "@A", "\t=1", "-7", "-0.5", "1-1", "-"};
    SurveyModels models{survey({question("q1", "=HYPERLINK(1)", {})}), {}};
    QList<QXSC::SurveyResponse> list;
    for (const QString &text : texts)
        list.append(response("=" + text, "q1", "", text));
    models.users.SortResponse(list, models.survey);
    saveResults(models, file, ResultsFormat::Csv);
    const Rows rows = SpreadsheetProgram::parsed(QString::fromUtf8(bytesOf(file)));
    QStringList answers;
    for (const QList<Cell> &row : rows)
        answers.append(row[1].text);
    QCOMPARE(answers, QStringList({"'=HYPERLINK(1)", "'=1+1", "'+1", "'-1+1", "'@A", "'\t=1", "-7",
                                   "-0.5", "1-1", "'-"}));
    QCOMPARE(rows[1][0].text, QStringLiteral("'==1+1"));
}

void tst_ResultsFile::theXmlIsWholeAndItsNamespacesToo()
{
    SpreadsheetProgram program;
    const QString file = program.filePath(QStringLiteral("a.xml"));
    saveResults(surveyModels(), file, ResultsFormat::Xml);
    QXmlStreamReader reader(bytesOf(file));
    int sheets = 0;
    QStringList texts;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        const QString ss = QStringLiteral("urn:schemas-microsoft-com:office:spreadsheet");
        if (reader.name() == QLatin1String("Worksheet")) {
            ++sheets;
            QVERIFY(reader.attributes().hasAttribute(ss, QStringLiteral("Name")));
        }
        if (reader.name() == QLatin1String("Cell"))
            QCOMPARE(reader.namespaceUri(), ss);
        if (reader.name() == QLatin1String("Data"))
            texts.append(reader.readElementText());
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(sheets, 2);
    QVERIFY(texts.contains(QLatin1String("a\nb\nc")));
    QVERIFY(texts.contains(hostileTexts().constFirst()));
}

void tst_ResultsFile::theEndingNamesTheFormat()
{
    QCOMPARE(resultsFormat("a.XML"), ResultsFormat::Xml);
    QCOMPARE(resultsFormat("a.xml.csv"), ResultsFormat::Csv);
    QCOMPARE(resultsFormat("a.xlsx"), ResultsFormat::Xlsx);
    QCOMPARE(resultsFormat("csv"), ResultsFormat::Xlsx);
}

void tst_ResultsFile::aFileThatCannotBeWrittenStaysAsItWas()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("none/a.xml"));
    for (const ResultsFormat format :
         {ResultsFormat::Xml, ResultsFormat::Xlsx, ResultsFormat::Csv}) {
        QCOMPARE(errorNumber([&] { saveResults(pollModels(), missing, format); }), 75);
        QCOMPARE(errorNumber([&] { saveResults(pollModels(), folder.path(), format); }), 75);
    }
    // A failure on the way leaves the old file.
    const QString kept = folder.filePath(QStringLiteral("kept.xml"));
    QFile old(kept);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    QCOMPARE(errorNumber([&] { saveResults(SurveyModels(), kept, ResultsFormat::Xml); }), 91);
    QCOMPARE(bytesOf(kept), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("kept.xml"));
    saveResults(pollModels(), kept, ResultsFormat::Xml);
    QVERIFY(bytesOf(kept).startsWith("<?xml"));
}

void tst_ResultsFile::moreThanASheetHoldsIsRefused()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a"));
    const QList<QXSC::SurveyQuestion> questions(16382, question("q", "?", {}));
    SurveyModels models{survey(questions), {}};
    models.users.SortResponse(QList<QXSC::SurveyResponse>(), models.survey);
    QCOMPARE(errorNumber([&] { saveResults(models, file, ResultsFormat::Xlsx); }), 5);
    QCOMPARE(errorNumber([&] { saveResults(models, file, ResultsFormat::Xml); }), 5);
    QVERIFY(!QFile::exists(file));
    saveResults(models, file, ResultsFormat::Csv);
    QVERIFY(bytesOf(file).size() > 16382);
}

void tst_ResultsFile::whatIsNotThereIsAnError()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a"));
    QCOMPARE(errorNumber([&] { saveResults(SurveyModels(), file, ResultsFormat::Csv); }), 91);
    QCOMPARE(errorNumber([&] { saveResults(PollModels(), file, ResultsFormat::Csv); }), 91);
}

void tst_ResultsFile::resultsWithoutRespondents()
{
    SpreadsheetProgram program;
    const SurveyModels models{threeQuestions(), {}};
    const PollModels polls{ZelTest::recordList(QList{poll("p", "Lunch?", {{"Yes", 400}})}), {}};
    const PollModels none{ZelTest::recordList(QList<QXSC::PollQuestion>()), {}};
    saveResults(models, program.filePath("s.xlsx"), ResultsFormat::Xlsx);
    saveResults(polls, program.filePath("p.xlsx"), ResultsFormat::Xlsx);
    saveResults(none, program.filePath("n.xlsx"), ResultsFormat::Xlsx);
    program.open(
        {program.filePath("s.xlsx"), program.filePath("p.xlsx"), program.filePath("n.xlsx")});
    QCOMPARE(differences(program.sheet("p", "Responses"),
                         {headings({"Lunch?"}), {Cell(), textCell("1 - Yes")}}),
             QString());
    QCOMPARE(differences(program.sheet("p", "Summary"), expectedSummary({"Lunch?"}, {{400}})),
             QString());
    QCOMPARE(cellAt(program.sheet("s", "Responses"), 1, 1).text, QStringLiteral("1 - a-1"));
    QCOMPARE(program.sheet("n", "Summary").size(), 0);
}

void tst_ResultsFile::formulasReadWhatStandsAboveOrBeside()
{
    const CellFormula count{CellFormula::CountAbove, 3, QStringLiteral("2,\"3")};
    QCOMPARE(count.relativeText(), "=SUMPRODUCT(--EXACT(R[-3]C:R[-1]C&\"\",\"2,\"\"3\"))");
    QCOMPARE(count.absoluteText(4, 1), "=SUMPRODUCT(--EXACT(B2:B4&\"\",\"2,\"\"3\"))");
    const CellFormula empty{CellFormula::CountAbove, 3, QString()};
    QCOMPARE(empty.absoluteText(4, 1), "=SUMPRODUCT(--EXACT(B2:B4&\"\",\"\"))");
    const CellFormula longKey{CellFormula::CountAbove, 1, QString(300, u'1')};
    QCOMPARE(longKey.absoluteText(1, 0), "=SUMPRODUCT(--EXACT(A1:A1&\"\",\"" + QString(255, u'1') +
                                             "\"&\"" + QString(45, u'1') + "\"))");
    QCOMPARE((CellFormula{CellFormula::SumAbove, 2, {}}.absoluteText(2, 26)), "=SUM(AA1:AA2)");
    QCOMPARE((CellFormula{CellFormula::MeanAbove, 2, {}}.relativeText()),
             "=AVERAGE(R[-2]C:R[-1]C)");
    QCOMPARE((CellFormula{CellFormula::ShareOfAbove, 7, {}}.absoluteText(9, 16383)), "=(XFD9/7)");
    QCOMPARE((CellFormula{CellFormula::MeanLeft, 2, {}}.relativeText()), "=AVERAGE(RC[-2]:RC[-1])");
    QCOMPARE((CellFormula{CellFormula::MeanLeft, 2, {}}.absoluteText(0, 703)),
             "=AVERAGE(ZZ1:AAA1)");
}

void tst_ResultsFile::textsAreCutBetweenCharacters()
{
    const QString party = QString::fromUtf8("\xF0\x9F\x8E\x89");
    QCOMPARE(cellText(QString(32765, u'x') + party), QString(32765, u'x') + party);
    QCOMPARE(cellText(QString(32766, u'x') + party), QString(32766, u'x'));
    QCOMPARE(cellText(QString(40000, u'x')).size(), 32767);
    QCOMPARE(printableText(QString(40000, u'x')).size(), 40000);
    const QChar bad = QChar::ReplacementCharacter;
    QCOMPARE(cellText(QString(QChar(0)) + QChar(0xfffe) + QChar(0xd800)), QString(3, bad));
    QCOMPARE(cellText(QStringLiteral("a\r\nb\rc\td\n")), QStringLiteral("a\nb\nc\td\n"));
}

ZEL_TEST_MAIN(tst_ResultsFile)
#include "tst_resultsfile.moc"
