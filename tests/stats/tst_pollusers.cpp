// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollusers.h"
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

QXSC::PollQuestionCollectionPtr polls(const QStringList &guids)
{
    QList<QXSC::PollQuestion> list;
    for (const QString &guid : guids)
        list.append(poll(guid, guid + u'?', {{QStringLiteral("Yes"), 1}}));
    return ZelTest::recordList(list);
}

QString row(const QString &user, const QStringList &answers)
{
    QString text = QStringLiteral("<Row>\r\n<Cell><Data ss:Type='String'>") + user +
                   QStringLiteral("</Data></Cell>");
    for (const QString &answer : answers) {
        text += QStringLiteral("<Cell ss:StyleID='s29'><Data ss:Type='String'>") + answer +
                QStringLiteral("</Data></Cell>");
    }
    return text + QStringLiteral("</Row>\r\n");
}

PollUsers sorted(const QList<QXSC::PollResponse> &votes)
{
    PollUsers users;
    users.SortResponse(votes);
    return users;
}

} // namespace

/// The votes of a deployment by respondent and question, and the rows of the workbook.
class tst_PollUsers : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void membersAreReachableByNameInTheirOrder();
    void respondentsComeInOrderOfFirstAppearance();
    void votesForOneQuestionAddUp();
    void aRespondentWithoutAnAnswerAnswersEmpty();
    void answersComeByQuestion();
    void aRespondentAnswersOnItsOwn();
    void answersOfTheirOwnAddUp();
    void columnsFollowTheListOfQuestions();
    void anAnswerCellIsAStringWhateverItHolds();
    void aQuestionAskedTwiceShowsTwice();
    void noVotesAreNoRows();
    void textsGoInAsReceived();
    void theCountOverflowsAtTheThirtyTwoThousandSevenHundredAndSixtyEighth();
    void whatIsNotThereIsAnError();
    void aSecondListIsAddedToTheFirst();
    void rowsForFilesSayTheSame();
};

void tst_PollUsers::membersAreReachableByNameInTheirOrder()
{
    QCOMPARE(members(PollUsers::staticMetaObject),
             QStringList({"SortResponse", "getUserCount", "getExcelFormat"}));
    QCOMPARE(members(PollUser::staticMetaObject),
             QStringList({"guid", "Init", "SetAnswerForQuestion", "GetAnswer"}));
    QCOMPARE(members(PollUserAnswer::staticMetaObject),
             QStringList({"answer", "answerDt", "AddAnswer", "GetAnswer"}));
    PollUser one = sorted({vote("u1", "q1", "a1")}).user(1);
    QString answer;
    const QMetaObject &face = PollUser::staticMetaObject;
    QVERIFY(face.method(face.indexOfMethod("GetAnswer(QString)"))
                .invokeOnGadget(&one, Q_RETURN_ARG(QString, answer),
                                Q_ARG(QString, QStringLiteral("q1"))));
    QCOMPARE(answer, QStringLiteral("a1"));
}

void tst_PollUsers::respondentsComeInOrderOfFirstAppearance()
{
    const PollUsers users =
        sorted({vote("b", "q1", "x"), vote("a", "q1", "x"), vote("b", "q2", "y")});
    QCOMPARE(users.getUserCount(), qint16(2));
    QCOMPARE(users.user(1).guid(), QStringLiteral("b"));
    QCOMPARE(users.user(2).guid(), QStringLiteral("a"));
    QCOMPARE(users.user(QStringLiteral("b")).GetAnswer(QStringLiteral("q2")), QStringLiteral("y"));
}

void tst_PollUsers::votesForOneQuestionAddUp()
{
    const PollUser one =
        sorted({vote("u", "q1", "a1", 1), vote("u", "q2", "c"), vote("u", "q1", "b2", 2)}).user(1);
    QCOMPARE(one.GetAnswer(QStringLiteral("q1")), QStringLiteral("a1,b2"));
    const PollUserAnswer answer = one.answers().item(QStringLiteral("q1"));
    QCOMPARE(texts(answer.answer()), QStringList({"a1", "b2"}));
    QCOMPARE(answer.answerDt().item(1), moment(1));
    QCOMPARE(answer.answerDt().item(2), moment(2));
    QCOMPARE(answer.answerDt().count(), 2);
}

void tst_PollUsers::aRespondentWithoutAnAnswerAnswersEmpty()
{
    const PollUsers users = sorted({vote("u", "q1", "a1"), vote("v", "q2", "b1")});
    QCOMPARE(users.user(1).GetAnswer(QStringLiteral("q2")), QString());
    QCOMPARE(users.user(1).GetAnswer(QStringLiteral("unknown")), QString());
}

void tst_PollUsers::answersComeByQuestion()
{
    const Zel::Collection<PollUserAnswer> answers =
        sorted({vote("u", "q2", "a"), vote("u", "q1", "b"), vote("u", "q2", "c")})
            .user(1)
            .answers();
    QCOMPARE(answers.count(), 2);
    QCOMPARE(answers.key(1), QStringLiteral("q2"));
    QCOMPARE(answers.item(1).GetAnswer(), QStringLiteral("a,c"));
    QCOMPARE(answers.item(QStringLiteral("q1")).GetAnswer(), QStringLiteral("b"));
}

void tst_PollUsers::aRespondentAnswersOnItsOwn()
{
    PollUser one;
    QCOMPARE(one.guid(), QString());
    one.SetAnswerForQuestion(vote("ignored", "q1", "before"));
    one.Init(QStringLiteral("u9"));
    QCOMPARE(one.guid(), QStringLiteral("u9"));
    QCOMPARE(one.GetAnswer(QStringLiteral("q1")), QString());
    one.SetAnswerForQuestion(vote("ignored", "q1", "a"));
    one.SetAnswerForQuestion(vote("ignored", "q1", "b"));
    QCOMPARE(one.GetAnswer(QStringLiteral("q1")), QStringLiteral("a,b"));
    QCOMPARE(one.guid(), QStringLiteral("u9"));
}

void tst_PollUsers::answersOfTheirOwnAddUp()
{
    PollUserAnswer answer;
    QCOMPARE(answer.GetAnswer(), QString());
    QCOMPARE(answer.answer().count(), 0);
    answer.AddAnswer(QStringLiteral("a1"), moment(1));
    answer.AddAnswer(QString(), moment(2));
    answer.AddAnswer(QStringLiteral("b2"), moment(3));
    QCOMPARE(answer.GetAnswer(), QStringLiteral("a1,,b2"));
    QCOMPARE(answer.answerDt().item(3), moment(3));
}

void tst_PollUsers::columnsFollowTheListOfQuestions()
{
    const PollUsers users =
        sorted({vote("u", "q3", "c"), vote("u", "gone", "z"), vote("u", "q1", "a1"),
                vote("u", "q1", "b2"), vote("v", "q2", "b")});
    QCOMPARE(users.getExcelFormat(polls({"q1", "q2", "q3"})).toString(),
             row("u", {"a1,b2", "", "c"}) + row("v", {"", "b", ""}));
    QCOMPARE(users.getExcelFormat(polls({"q3", "q1"})).toString(),
             row("u", {"c", "a1,b2"}) + row("v", {"", ""}));
    QCOMPARE(users.getExcelFormat(polls({})).toString(), row("u", {}) + row("v", {}));
}

void tst_PollUsers::anAnswerCellIsAStringWhateverItHolds()
{
    QCOMPARE(sorted({vote("u", "q1", "42")}).getExcelFormat(polls({"q1"})).toString(),
             row("u", {"42"}));
    QCOMPARE(sorted({vote("u", "q1", "")}).getExcelFormat(polls({"q1"})).toString(),
             row("u", {""}));
}

void tst_PollUsers::aQuestionAskedTwiceShowsTwice()
{
    const QString longId(500, u'x');
    QCOMPARE(sorted({vote("u", "q1", longId)}).getExcelFormat(polls({"q1", "q1", "q1"})).toString(),
             row("u", {longId, longId, longId}));
}

void tst_PollUsers::noVotesAreNoRows()
{
    QCOMPARE(sorted({}).getExcelFormat(polls({"q1"})).toString(), QString());
    QCOMPARE(sorted({}).getUserCount(), qint16(0));
    QCOMPARE(PollUsers().getExcelFormat(polls({"q1"})).toString(), QString());
}

void tst_PollUsers::textsGoInAsReceived()
{
    const QString hostile = QStringLiteral("<Worksheet/>&\"'%1\\1$&");
    QCOMPARE(sorted({vote(hostile, "q1", hostile)}).getExcelFormat(polls({"q1"})).toString(),
             row(hostile, {hostile}));
}

void tst_PollUsers::theCountOverflowsAtTheThirtyTwoThousandSevenHundredAndSixtyEighth()
{
    QList<QXSC::PollResponse> votes;
    for (int i = 0; i < 32767; ++i)
        votes.append(vote(QString::number(i), "q1", "a"));
    QCOMPARE(sorted(votes).getUserCount(), qint16(32767));
    votes.append(vote("one more", "q1", "a"));
    const PollUsers users = sorted(votes);
    QCOMPARE(errorNumber([&] { users.getUserCount(); }), 6);
    QCOMPARE(users.count(), 32768);
    QVERIFY(users.getExcelFormat(polls({"q1"})).toString().contains(QLatin1String("one more")));
}

void tst_PollUsers::whatIsNotThereIsAnError()
{
    PollUsers users;
    QCOMPARE(errorNumber([&] { users.SortResponse(std::nullopt); }), 9);
    QCOMPARE(errorNumber([&] { users.getExcelFormat(nullptr); }), 91);
    QCOMPARE(errorNumber([&] { users.user(1); }), 9);
    QCOMPARE(errorNumber([&] { users.user(QStringLiteral("u")); }), 5);
    QVERIFY(!users.SortResponse(QList<QXSC::PollResponse>()).isValid());
}

void tst_PollUsers::aSecondListIsAddedToTheFirst()
{
    PollUsers users = sorted({vote("u", "q1", "a")});
    users.SortResponse(QList{vote("v", "q1", "b"), vote("u", "q1", "c")});
    QCOMPARE(users.getExcelFormat(polls({"q1"})).toString(), row("u", {"a,c"}) + row("v", {"b"}));
}

void tst_PollUsers::rowsForFilesSayTheSame()
{
    const PollUsers users =
        sorted({vote("u", "q2", "a"), vote("u", "q2", "b"), vote("v", "gone", "z")});
    QStringList rows;
    users.forEachRow(*polls({"q1", "q2"}), [&rows](const PollUsers::Row &line) {
        rows.append(line.guid + u'|' + line.cells.join(u'|'));
    });
    QCOMPARE(rows, QStringList({"u||a,b", "v||"}));
}

ZEL_TEST_MAIN(tst_PollUsers)
#include "tst_pollusers.moc"
