// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyusers.h"
#include "surveyfixture.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QTest>

using namespace ResultsFixture;
using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

namespace {

QStringList texts(const Zel::Collection<QString> &collection)
{
    return QStringList(collection.begin(), collection.end());
}

QStringList members(const QMetaObject &metaObject)
{
    QStringList names;
    for (int i = 0; i < metaObject.propertyCount(); ++i)
        names.append(QString::fromLatin1(metaObject.property(i).name()));
    for (int i = 0; i < metaObject.methodCount(); ++i)
        names.append(QString::fromLatin1(metaObject.method(i).name()));
    return names;
}

/// The lines of the rows, without their line ends.
QStringList lines(const SurveyUsers &users)
{
    return users.getExcelFormat().toString().split(QStringLiteral("\r\n"));
}

QString answered(const QString &text, bool right, const QString &type = QStringLiteral("Number"))
{
    return QStringLiteral("<Cell ss:StyleID='%1'><Data ss:Type='%2'>")
               .arg(right ? QStringLiteral("s28") : QStringLiteral("s29"), type) +
           text + QStringLiteral("</Data></Cell>");
}

const QString skipped = answered(QStringLiteral("(skipped)"), false, QStringLiteral("String"));

QString user(const QString &guid)
{
    return QStringLiteral("<Cell><Data ss:Type='String'>") + guid +
           QStringLiteral("</Data></Cell>");
}

QString score(const QString &count, const QString &share)
{
    return QStringLiteral("<Cell ss:StyleID='s53'><Data ss:Type='Number'>") + count +
           QStringLiteral("</Data></Cell><Cell ss:StyleID='s55'><Data ss:Type='Number'>") + share +
           QStringLiteral("</Data></Cell>");
}

SurveyUsers sorted(const QList<QXSC::SurveyResponse> &responses,
                   const QXSC::SurveyRecordPtr &record = threeQuestions())
{
    SurveyUsers users;
    users.SortResponse(responses, record);
    return users;
}

QList<QXSC::SurveyResponse> fromUsers(int count)
{
    QList<QXSC::SurveyResponse> list;
    for (int i = 0; i < count; ++i) {
        list.append(response(QString::number(i), QStringLiteral("q1"), QStringLiteral("a2"),
                             QStringLiteral("2")));
    }
    return list;
}

} // namespace

/// The responses to a survey by respondent and question, and the rows of the workbook.
class tst_SurveyUsers : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void membersAreReachableByNameInTheirOrder();
    void respondentsComeInOrderOfFirstAppearance();
    void aRespondentIsFoundByGuid();
    void everyRespondentHasEveryQuestion();
    void theFirstOfTwoQuestionsWithOneGuidGetsTheResponses();
    void aResponseToAnUnknownQuestionMakesItsRespondent();
    void anAnswerKeepsItsValuesWithTextAndDate();
    void anAnswerWithoutValuesIsEmpty();
    void theFirstChoiceWithTheGuidSaysWhetherAnAnswerIsCorrect();
    void theSameChoiceGuidCountsForItsOwnQuestion();
    void correctCanBeWritten();
    void viewsOfOneRespondentAreOneRespondent();
    void aRespondentOfItsOwnGivesQuestionsTheNextPlace();
    void aRespondentRefusesWhatHasNoPlace();
    void initStartsAnew();
    void theKeyListsThePositionsOfTheCorrectChoices();
    void aPositionBeyondSixteenBitsOverflows();
    void aRowShowsEachQuestion();
    void aSkippedQuestionIsWrongEvenWithoutAKey();
    void anEmptyAnswerEqualsAnEmptyKey();
    void oneAnswerIsANumberSeveralAreAString();
    void answersCompareAsWritten();
    void shareHasFifteenDigitsInEveryLocale();
    void theLastRowsCoverTheRespondents();
    void withoutRespondentsTheLastRowsAreWrittenAsComputed();
    void textsGoInAsReceived();
    void theCountOverflowsAtTheThirtyTwoThousandSevenHundredAndSixtyEighth();
    void noQuestionsWithRespondentsIsADivisionByZero();
    void noQuestionsWithoutRespondentsIsNone();
    void tooManyQuestionsOverflow();
    void whatIsNotThereIsAnError();
    void aSecondListIsAddedToTheFirst();
    void theListOfTheCallerIsNotTouched();
    void rowsForFilesSayTheSame();
};

void tst_SurveyUsers::membersAreReachableByNameInTheirOrder()
{
    QCOMPARE(members(SurveyUsers::staticMetaObject),
             QStringList({"SortResponse", "getUsetCount", "getExcelFormat"}));
    QCOMPARE(
        members(SurveyUser::staticMetaObject),
        QStringList({"guid", "Init", "SetAnswerForQuestion", "GetQuestion", "GetQuestionCount"}));
    QCOMPARE(members(SurveyUserQ::staticMetaObject), QStringList({"answers", "AddAnswer"}));
    QCOMPARE(members(SurveyUserAnswer::staticMetaObject),
             QStringList({"answer", "answerTxt", "answerDt", "correct", "GetAnswer"}));

    SurveyUsers users = sorted({response("u1", "q1", "a2", "2")});
    SurveyUser one = users.user(1);
    const QMetaObject &face = SurveyUser::staticMetaObject;
    QCOMPARE(face.property(face.indexOfProperty("guid")).readOnGadget(&one),
             QVariant(QStringLiteral("u1")));
    QVERIFY(!face.property(face.indexOfProperty("guid")).isWritable());
    SurveyUserQ answers;
    QVERIFY(face.method(face.indexOfMethod("GetQuestion(qint16)"))
                .invokeOnGadget(&one, Q_RETURN_ARG(ZelWebServiceControls::SurveyUserQ, answers),
                                Q_ARG(qint16, 0)));
    QCOMPARE(answers.answers().count(), 1);
}

void tst_SurveyUsers::respondentsComeInOrderOfFirstAppearance()
{
    const SurveyUsers users =
        sorted({response("b", "q1", "a1", "1"), response("a", "q1", "a1", "1"),
                response("b", "q2", "b1", "1"), response("c", "q1", "a1", "1")});
    QCOMPARE(users.getUsetCount(), qint16(3));
    QCOMPARE(users.user(1).guid(), QStringLiteral("b"));
    QCOMPARE(users.user(2).guid(), QStringLiteral("a"));
    QCOMPARE(users.user(3).guid(), QStringLiteral("c"));
}

void tst_SurveyUsers::aRespondentIsFoundByGuid()
{
    const SurveyUsers users =
        sorted({response("A", "q1", "a1", "1"), response("a", "q1", "a2", "2")});
    QCOMPARE(users.user(QStringLiteral("a")).GetQuestion(0).answers().item(1).GetAnswer(),
             QStringLiteral("2"));
    QCOMPARE(errorNumber([&] { users.user(QStringLiteral("x")); }), 5);
    QCOMPARE(errorNumber([&] { users.user(0); }), 9);
    QCOMPARE(errorNumber([&] { users.user(3); }), 9);
}

void tst_SurveyUsers::everyRespondentHasEveryQuestion()
{
    const SurveyUser one = sorted({response("u1", "q2", "b1", "1")}).user(1);
    QCOMPARE(one.GetQuestionCount(), qint16(2)); // the greatest index
    QCOMPARE(one.GetQuestion(0).answers().count(), 0);
    QCOMPARE(one.GetQuestion(1).answers().count(), 1);
    QCOMPARE(one.GetQuestion(2).answers().count(), 0);
    QCOMPARE(errorNumber([&] { one.GetQuestion(3); }), 9);
    QCOMPARE(errorNumber([&] { one.GetQuestion(-1); }), 9);
}

void tst_SurveyUsers::theFirstOfTwoQuestionsWithOneGuidGetsTheResponses()
{
    const QXSC::SurveyRecordPtr twice = survey(
        {question("q", "One?", choices("a", 2, {1})), question("q", "Two?", choices("a", 2, {2}))});
    const SurveyUser one = sorted({response("u1", "q", "a1", "1")}, twice).user(1);
    QCOMPARE(one.GetQuestion(0).answers().count(), 1);
    QVERIFY(one.GetQuestion(0).answers().item(1).correct());
    QCOMPARE(one.GetQuestion(1).answers().count(), 0);
}

void tst_SurveyUsers::aResponseToAnUnknownQuestionMakesItsRespondent()
{
    const SurveyUsers users = sorted({response("u1", "gone", "a1", "1")});
    QCOMPARE(users.getUsetCount(), qint16(1));
    QCOMPARE(lines(users).at(1),
             user("u1") + skipped + skipped + skipped + score("0", "0") + "</Row>");
}

void tst_SurveyUsers::anAnswerKeepsItsValuesWithTextAndDate()
{
    const SurveyUsers users = sorted({response("u1", "q2", "b2", "2:3", "both", 7)});
    const SurveyUserAnswer answer = users.user(1).GetQuestion(1).answers().item(1);
    QCOMPARE(texts(answer.answer()), QStringList({"2", "3"}));
    QCOMPARE(texts(answer.answerTxt()), QStringList({"both", "both"}));
    QCOMPARE(answer.answerDt().count(), 2);
    QCOMPARE(answer.answerDt().item(2), moment(7));
    QCOMPARE(answer.GetAnswer(), QStringLiteral("2,3"));
    const SurveyUserAnswer gaps =
        sorted({response("u1", "q2", "b2", "2::")}).user(1).GetQuestion(1).answers().item(1);
    QCOMPARE(texts(gaps.answer()), QStringList({"2", "", ""}));
    QCOMPARE(gaps.GetAnswer(), QStringLiteral("2,,"));
}

void tst_SurveyUsers::anAnswerWithoutValuesIsEmpty()
{
    const SurveyUsers users = sorted({response("u1", "q1", "a1", "", "text")});
    for (const SurveyUserAnswer &answer :
         {SurveyUserAnswer(), users.user(1).GetQuestion(0).answers().item(1)}) {
        QCOMPARE(answer.answer().count(), 0);
        QCOMPARE(answer.answerTxt().count(), 0);
        QCOMPARE(answer.answerDt().count(), 0);
        QCOMPARE(answer.GetAnswer(), QString());
        QVERIFY(!answer.correct());
    }
}

void tst_SurveyUsers::theFirstChoiceWithTheGuidSaysWhetherAnAnswerIsCorrect()
{
    const QXSC::SurveyRecordPtr record =
        survey({question("q1", "?",
                         {choice("x", "1", true), choice("x", "2", false), choice("y", "3", false),
                          choice("y", "4", true)})});
    const SurveyUserQ q = sorted({response("u", "q1", "x", "1"), response("u", "q1", "y", "2"),
                                  response("u", "q1", "gone", "3")},
                                 record)
                              .user(1)
                              .GetQuestion(0);
    QVERIFY(q.answers().item(1).correct());
    QVERIFY(!q.answers().item(2).correct());
    QVERIFY(!q.answers().item(3).correct());
}

void tst_SurveyUsers::theSameChoiceGuidCountsForItsOwnQuestion()
{
    const QXSC::SurveyRecordPtr record = survey({question("q1", "?", {choice("x", "1", true)}),
                                                 question("q2", "?", {choice("x", "1", false)})});
    const QString shared = QStringLiteral("x");
    const SurveyUser one =
        sorted({response("u", "q1", shared, "1"), response("u", "q2", shared, "1")}, record)
            .user(1);
    QVERIFY(one.GetQuestion(0).answers().item(1).correct());
    QVERIFY(!one.GetQuestion(1).answers().item(1).correct());
}

void tst_SurveyUsers::correctCanBeWritten()
{
    const SurveyUsers users = sorted({response("u1", "q1", "a1", "1")});
    SurveyUserAnswer answer = users.user(1).GetQuestion(0).answers().item(1);
    QVERIFY(!answer.correct());
    const QMetaProperty correct = SurveyUserAnswer::staticMetaObject.property(
        SurveyUserAnswer::staticMetaObject.indexOfProperty("correct"));
    QVERIFY(correct.writeOnGadget(&answer, true));
    QVERIFY(users.user(1).GetQuestion(0).answers().item(1).correct());
}

void tst_SurveyUsers::viewsOfOneRespondentAreOneRespondent()
{
    const QXSC::SurveyRecordPtr record = threeQuestions();
    SurveyUsers users = sorted({response("u1", "q1", "a1", "1")}, record);
    users.user(1).SetAnswerForQuestion(record->questions->item(3),
                                       response("u1", "q3", "c2", "2", "later", 9));
    SurveyUserQ third = users.user(QStringLiteral("u1")).GetQuestion(2);
    QCOMPARE(third.answers().item(1).GetAnswer(), QStringLiteral("2"));
    QCOMPARE(third.answers().item(1).answerDt().item(1), moment(9));
    third.AddAnswer("c1", "1:2", moment(1), "more", record->questions->item(3));
    QCOMPARE(users.user(1).GetQuestion(2).answers().item(2).GetAnswer(), QStringLiteral("1,2"));
    QCOMPARE(users.getUsetCount(), qint16(1));
}

void tst_SurveyUsers::aRespondentOfItsOwnGivesQuestionsTheNextPlace()
{
    const QXSC::SurveyRecordPtr record = threeQuestions();
    SurveyUser one;
    QCOMPARE(one.GetQuestionCount(), qint16(-1));
    one.Init(QStringLiteral("u7"), 2);
    QCOMPARE(one.guid(), QStringLiteral("u7"));
    one.SetAnswerForQuestion(record->questions->item(2), response("u7", "q2", "b3", "3"));
    one.SetAnswerForQuestion(record->questions->item(1), response("u7", "q1", "a1", "1"));
    one.SetAnswerForQuestion(record->questions->item(2), response("u7", "q2", "b1", "1"));
    QCOMPARE(one.GetQuestion(0).answers().count(), 2);
    QVERIFY(one.GetQuestion(0).answers().item(1).correct());
    QVERIFY(!one.GetQuestion(0).answers().item(2).correct());
    QCOMPARE(one.GetQuestion(1).answers().count(), 1);
}

void tst_SurveyUsers::aRespondentRefusesWhatHasNoPlace()
{
    const QXSC::SurveyRecordPtr record = threeQuestions();
    SurveyUser one;
    QCOMPARE(errorNumber([&] { one.Init(QStringLiteral("u"), -1); }), 5);
    one.Init(QStringLiteral("u"), 1);
    one.SetAnswerForQuestion(record->questions->item(1), response("u", "q1", "a1", "1"));
    QCOMPARE(errorNumber([&] {
                 one.SetAnswerForQuestion(record->questions->item(2),
                                          response("u", "q2", "b1", "1"));
             }),
             9);
    QCOMPARE(
        errorNumber([&] { one.SetAnswerForQuestion(nullptr, response("u", "q2", "b1", "1")); }),
        91);
    SurveyUserQ answers;
    QCOMPARE(errorNumber([&] { answers.AddAnswer("g", "1", moment(0), "t", nullptr); }), 91);
}

void tst_SurveyUsers::initStartsAnew()
{
    const QXSC::SurveyRecordPtr record = threeQuestions();
    const SurveyUsers users = sorted({response("u1", "q1", "a1", "1")}, record);
    SurveyUser one = users.user(1);
    one.Init(QStringLiteral("other"), 3);
    QCOMPARE(one.GetQuestion(0).answers().count(), 0);
    QCOMPARE(users.user(1).guid(), QStringLiteral("u1"));
    QCOMPARE(users.user(1).GetQuestion(0).answers().count(), 1);
}

void tst_SurveyUsers::theKeyListsThePositionsOfTheCorrectChoices()
{
    QCOMPARE(texts(sorted({}).answerKey()), QStringList({"2", "2,3", ""}));
    // Two rows of three: right are the second of the first row and the first of the second.
    const QXSC::SurveyRecordPtr grid =
        survey({question("q", "?",
                         {choice("1", "1", false, 0, 1, 1), choice("2", "2", true, 0, 1, 2),
                          choice("4", "4", true, 0, 2, 1)},
                         3)});
    QCOMPARE(texts(sorted({}, grid).answerKey()), QStringList{QStringLiteral("2,4")});
}

void tst_SurveyUsers::aPositionBeyondSixteenBitsOverflows()
{
    SurveyUsers users;
    const auto at = [](qint16 row, qint16 col, qint16 colCount) {
        return survey({question("q", "?", {choice("1", "1", true, 0, row, col)}, colCount)});
    };
    users.SortResponse(QList<QXSC::SurveyResponse>(), at(2, 0, 32767));
    QCOMPARE(texts(users.answerKey()), QStringList{QStringLiteral("32767")});
    QCOMPARE(
        errorNumber([&] { users.SortResponse(QList<QXSC::SurveyResponse>(), at(2, 1, 32767)); }),
        6);
    QCOMPARE(
        errorNumber([&] { users.SortResponse(QList<QXSC::SurveyResponse>(), at(300, 1, 300)); }),
        6);
}

void tst_SurveyUsers::aRowShowsEachQuestion()
{
    const SurveyUsers users =
        sorted({response("u1", "q1", "a2", "2"), response("u1", "q2", "b2", "2:3"),
                response("u1", "q3", "c1", "1"), response("u2", "q1", "a1", "1"),
                response("u2", "q3", "c1", "")});
    const QStringList rows = lines(users);
    QCOMPARE(rows.at(0), QStringLiteral("<Row>"));
    QCOMPARE(rows.at(1), user("u1") + answered("2", true) + answered("2,3", true) +
                             answered("1", false) + score("2", "0.666666666666667") + "</Row>");
    QCOMPARE(rows.at(2), QStringLiteral("<Row>"));
    QCOMPARE(rows.at(3), user("u2") + answered("1", false) + skipped + answered("", true) +
                             score("1", "0.333333333333333") + "</Row>");
}

void tst_SurveyUsers::aSkippedQuestionIsWrongEvenWithoutAKey()
{
    const SurveyUsers users =
        sorted({response("u1", "q1", "a2", "2"), response("u1", "q2", "b2", "2:3")});
    QCOMPARE(lines(users).at(1), user("u1") + answered("2", true) + answered("2,3", true) +
                                     skipped + score("2", "0.666666666666667") + "</Row>");
}

void tst_SurveyUsers::anEmptyAnswerEqualsAnEmptyKey()
{
    QCOMPARE(lines(sorted({response("u1", "q3", "c1", "")})).at(1),
             user("u1") + skipped + skipped + answered("", true) + score("1", "0.333333333333333") +
                 "</Row>");
}

void tst_SurveyUsers::oneAnswerIsANumberSeveralAreAString()
{
    // The first of several is shown and decides.
    const SurveyUsers users =
        sorted({response("u1", "q1", "a2", "2"), response("u1", "q1", "a1", "1"),
                response("u1", "q2", "b2", "2,3"), response("u1", "q3", "c1", "none")});
    QCOMPARE(lines(users).at(1), user("u1") + answered("2", true, "String") +
                                     answered("2,3", true) + answered("none", false) +
                                     score("2", "0.666666666666667") + "</Row>");
}

void tst_SurveyUsers::answersCompareAsWritten()
{
    const QString cells =
        lines(sorted({response("u1", "q1", "a2", "02"), response("u1", "q2", "b2", "3:2"),
                      response("u1", "q3", "c1", " ")}))
            .at(1);
    QVERIFY(!cells.contains(QLatin1String("s28")));
}

void tst_SurveyUsers::shareHasFifteenDigitsInEveryLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    QList<QXSC::SurveyQuestion> questions;
    for (int i = 0; i < 7; ++i) {
        questions.append(question(QStringLiteral("q%1").arg(i), QStringLiteral("?"),
                                  choices(QStringLiteral("a"), 1, {1})));
    }
    QList<QXSC::SurveyResponse> responses;
    QStringList shares;
    for (int right = 0; right <= 7; ++right) {
        const QString guid = QStringLiteral("u%1").arg(right);
        responses.append(response(guid, "none", "", ""));
        for (int i = 0; i < right; ++i)
            responses.append(response(guid, QStringLiteral("q%1").arg(i), "a1", "1"));
    }
    const QStringList rows = lines(sorted(responses, survey(questions)));
    QLocale::setDefault(before);
    for (int right = 0; right <= 7; ++right) {
        const QString row = rows.at(2 * right + 1);
        shares.append(row.section(QStringLiteral("Number'>"), -1).section(u'<', 0, 0));
    }
    QCOMPARE(shares,
             QStringList({"0", "0.142857142857143", "0.285714285714286", "0.428571428571429",
                          "0.571428571428571", "0.714285714285714", "0.857142857142857", "1"}));
}

void tst_SurveyUsers::theLastRowsCoverTheRespondents()
{
    const QStringList rows =
        lines(sorted({response("u1", "q1", "a2", "2"), response("u2", "q1", "a2", "2")}));
    QCOMPARE(rows.size(), 9); // the last is empty
    QCOMPARE(rows.at(4), QStringLiteral("<Row>"));
    QCOMPARE(rows.at(5),
             QStringLiteral(
                 "<Cell ss:StyleID='s45'><Data ss:Type='String'>Correct</Data></Cell>"
                 "<Cell ss:StyleID='s53' ss:Formula='=COUNTIF(R[-2]C:R[-1]C,\"2\")'></Cell>"
                 "<Cell ss:StyleID='s53' ss:Formula='=COUNTIF(R[-2]C:R[-1]C,\"2,3\")'></Cell>"
                 "<Cell ss:StyleID='s53' ss:Formula='=COUNTIF(R[-2]C:R[-1]C,\"\")'></Cell>"
                 "<Cell ss:StyleID='s53' ss:Formula='=SUM(R[-2]C:R[-1]C)'></Cell>"
                 "<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(R[-2]C:R[-1]C)'></Cell></Row>"));
    QCOMPARE(rows.at(7),
             QStringLiteral(
                 "<Cell ss:StyleID='s45'><Data ss:Type='String'>Percent Correct</Data></Cell>"
                 "<Cell ss:StyleID='s55' ss:Formula='=(R[-1]C/2)'></Cell>"
                 "<Cell ss:StyleID='s55' ss:Formula='=(R[-1]C/2)'></Cell>"
                 "<Cell ss:StyleID='s55' ss:Formula='=(R[-1]C/2)'></Cell>"
                 "<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(RC[-3]:RC[-1])'></Cell></Row>"));
    QCOMPARE(rows.at(8), QString());
}

void tst_SurveyUsers::withoutRespondentsTheLastRowsAreWrittenAsComputed()
{
    const QString rows = sorted({}).getExcelFormat().toString();
    QVERIFY(rows.startsWith(QLatin1String("<Row>\r\n<Cell ss:StyleID='s45'>")));
    QCOMPARE(rows.count(QLatin1String("(R[-0]C:R[-1]C")), 5);
    QCOMPARE(rows.count(QLatin1String("=(R[-1]C/0)")), 3);
    QVERIFY(rows.contains(QLatin1String("=AVERAGE(RC[-3]:RC[-1])")));
}

void tst_SurveyUsers::textsGoInAsReceived()
{
    const QString hostile = QStringLiteral("<b>&\"'</b>%1\\1$&");
    const QStringList rows = lines(sorted({response(hostile, "q1", "a1", hostile)}));
    QCOMPARE(rows.at(1), user(hostile) + answered(hostile, false) + skipped + skipped +
                             score("0", "0") + "</Row>");
}

void tst_SurveyUsers::theCountOverflowsAtTheThirtyTwoThousandSevenHundredAndSixtyEighth()
{
    QCOMPARE(sorted(fromUsers(32767)).getUsetCount(), qint16(32767));
    const SurveyUsers more = sorted(fromUsers(32768));
    QCOMPARE(errorNumber([&] { more.getUsetCount(); }), 6);
    QCOMPARE(more.count(), 32768);
    QVERIFY(more.getExcelFormat().toString().contains(QLatin1String("R[-32768]C")));
}

void tst_SurveyUsers::noQuestionsWithRespondentsIsADivisionByZero()
{
    const SurveyUsers users = sorted({response("u1", "q1", "a1", "1")}, survey({}));
    QCOMPARE(users.getUsetCount(), qint16(1));
    QCOMPARE(users.user(1).GetQuestionCount(), qint16(-1));
    QCOMPARE(errorNumber([&] { users.getExcelFormat(); }), 11);
}

void tst_SurveyUsers::noQuestionsWithoutRespondentsIsNone()
{
    QVERIFY(sorted({}, survey({}))
                .getExcelFormat()
                .toString()
                .contains(QLatin1String("=AVERAGE(RC[-0]:RC[-1])")));
    QCOMPARE(SurveyUsers().getExcelFormat().toString().count(QLatin1String("<Row>")), 2);
}

void tst_SurveyUsers::tooManyQuestionsOverflow()
{
    QList<QXSC::SurveyQuestion> questions(32768, question("q", "?", {}));
    SurveyUsers users;
    QCOMPARE(
        errorNumber([&] { users.SortResponse(QList<QXSC::SurveyResponse>(), survey(questions)); }),
        6);
    questions.removeLast();
    users.SortResponse(QList{response("u", "q", "a", "1")}, survey(questions));
    QCOMPARE(users.user(1).GetQuestionCount(), qint16(32766));
}

void tst_SurveyUsers::whatIsNotThereIsAnError()
{
    SurveyUsers users;
    QCOMPARE(errorNumber([&] { users.SortResponse(std::nullopt, threeQuestions()); }), 9);
    QCOMPARE(errorNumber([&] { users.SortResponse(QList<QXSC::SurveyResponse>(), nullptr); }), 91);
    QCOMPARE(errorNumber([&] {
                 users.SortResponse(QList<QXSC::SurveyResponse>(),
                                    std::make_shared<QXSC::SurveyRecord>());
             }),
             91);
    // A question without a list of choices has none.
    auto bare = std::make_shared<QXSC::SurveyRecord>();
    QXSC::SurveyQuestion empty;
    empty.guid = QStringLiteral("q");
    bare->questions = ZelTest::recordList(QList{empty});
    users.SortResponse(QList{response("u", "q", "a", "1")}, bare);
    QVERIFY(!users.user(1).GetQuestion(0).answers().item(1).correct());
    QVERIFY(!users.SortResponse(QList<QXSC::SurveyResponse>(), bare).isValid());
}

void tst_SurveyUsers::aSecondListIsAddedToTheFirst()
{
    SurveyUsers users = sorted({response("u1", "q1", "a2", "2")});
    users.SortResponse(QList{response("u2", "q1", "a1", "1"), response("u1", "q2", "b2", "2:3")},
                       threeQuestions());
    QCOMPARE(users.getUsetCount(), qint16(2));
    QCOMPARE(users.answerKey().count(), 3);
    QCOMPARE(lines(users).at(1), user("u1") + answered("2", true) + answered("2,3", true) +
                                     skipped + score("2", "0.666666666666667") + "</Row>");
}

void tst_SurveyUsers::theListOfTheCallerIsNotTouched()
{
    const QList<QXSC::SurveyResponse> list{response("u1", "q1", "a2", "2")};
    const QXSC::SurveyRecordPtr record = threeQuestions();
    SurveyUsers users = sorted(list, record);
    users.user(1).GetQuestion(0).AddAnswer("a1", "1", moment(0), "", record->questions->item(1));
    QCOMPARE(list.size(), 1);
    QCOMPARE(users.user(1).GetQuestion(0).answers().count(), 2);
}

void tst_SurveyUsers::rowsForFilesSayTheSame()
{
    const SurveyUsers users =
        sorted({response("u1", "q1", "a2", "2"), response("u1", "q1", "a1", "1"),
                response("u1", "q3", "c1", ""), response("u2", "q2", "b2", "2:3")});
    QStringList rows;
    users.forEachRow([&rows](const SurveyUsers::Row &row) {
        QString text = row.guid;
        for (const SurveyUsers::Cell &cell : row.cells) {
            text += u'|' + cell.text.value_or(QStringLiteral("-")) + (cell.right ? u'+' : u' ') +
                    (cell.single ? u'1' : u' ');
        }
        rows.append(text + u'=' + QString::number(row.score));
    });
    QCOMPARE(rows, QStringList({"u1|2+ |-  |+1=2", "u2|-  |2,3+1|-  =1"}));
}

ZEL_TEST_MAIN(tst_SurveyUsers)
#include "tst_surveyusers.moc"
