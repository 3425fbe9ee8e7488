// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"

#include <QSet>
#include <QTest>

#include <algorithm>

using namespace QXSC;
using namespace ZelTest;

namespace {

const QDateTime dawn(QDate(1900, 1, 1), QTime(0, 0));

Zel::AskedQuestion asked(const QString &text, std::optional<qint64> at,
                         const QString &user = QStringLiteral("someone"))
{
    Zel::AskedQuestion question;
    question.guid = newGuid();
    question.userId = user;
    question.text = text;
    question.at = at;
    question.status = QStringLiteral("SUBMITTED");
    return question;
}

/// As those who show a text do it: the five entities, "&" first.
QString unescaped(QString text)
{
    return text.replace(QLatin1String("&amp;"), QLatin1String("&"))
        .replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&apos;"), QLatin1String("'"));
}

} // namespace

/// Questions of the audience and their moderation, through the client against the real service.
class ContractQuestionsTest : public AudienceTest
{
    Q_OBJECT

private slots:
    void listsTheSampleInEveryState();
    void listsQuestionsOfTheRange();
    void keepsTextsEscapedExactlyOnce_data();
    void keepsTextsEscapedExactlyOnce();
    void anEmptyAnswerIsNone();
    void movesBetweenAllStatesOfModeration();
    void theSecondModeratorSeesWhatTheFirstDid();
    void refusesStatesThatAreNotAModerators();
    void tellsOfQuestionsThatAreNotThere();
    void letsViewersLookOnly();
    void questionsOfOneMomentComeByGuid();
    void refusesTextsThatCannotBeStored_data();
    void refusesTextsThatCannotBeStored();
    void takesTextsUpToTheirLimit();

private:
    QuestionRecordPtr find(Client &client, const QString &deployment, const QString &guid)
    {
        const auto list = client.GetQuestions(deployment, dawn, QDateTime());
        for (const QuestionRecordPtr &one : *list) {
            if (one->QuestionGuid == guid)
                return one;
        }
        return nullptr;
    }
};

void ContractQuestionsTest::listsTheSampleInEveryState()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const auto list = client->GetQuestions(liveDeployment, dawn, QDateTime());
    QCOMPARE(list->count(), 60);
    QSet<QString> states;
    int withoutEmail = 0;
    int unregistered = 0;
    int escaped = 0;
    for (const QuestionRecordPtr &one : *list) {
        states.insert(one->Status);
        withoutEmail += one->User->Email.isEmpty();
        unregistered += one->User->LastName.isEmpty();
        escaped += one->QuestionText.contains(QLatin1String("&lt;i&gt;"));
        QVERIFY(!one->User->UserID.isEmpty());
        QCOMPARE(one->AnsweredSpecified, one->Answered.isValid());
        QCOMPARE(one->AnsweredSpecified, !one->AnswerText.isEmpty());
    }
    QCOMPARE(states, (QSet<QString>{QStringLiteral("SUBMITTED"), QStringLiteral("STAGED"),
                                    QStringLiteral("PUBLISH"), QStringLiteral("ANSWERED"),
                                    QStringLiteral("RETRACT"), QStringLiteral("DELETE")}));
    QVERIFY(withoutEmail > unregistered);
    QVERIFY(unregistered > 0);
    QCOMPARE(escaped, 1);
    // One without a time comes first, the others in their order.
    QVERIFY(!list->item(1)->SubmittedSpecified);
    for (qsizetype i = 3; i <= list->count(); ++i)
        QVERIFY(list->item(i - 1)->Submitted <= list->item(i)->Submitted);
}

void ContractQuestionsTest::listsQuestionsOfTheRange()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const qint64 at = 1'800'000'000'000;
    store().questions.take(
        refOf(guid), {asked(QStringLiteral("a"), at - 1), asked(QStringLiteral("b"), at),
                      asked(QStringLiteral("c"), at + 5999), asked(QStringLiteral("d"), at + 6000),
                      asked(QStringLiteral("z"), std::nullopt)});
    const auto texts = [&](const QDateTime &start, const QDateTime &end) {
        QString all;
        const auto list = client->GetQuestions(guid, start, end);
        for (const QuestionRecordPtr &one : *list)
            all += one->QuestionText;
        return all;
    };
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(at);
    QCOMPARE(texts(start, start.addSecs(5)), QStringLiteral("zbc"));
    QCOMPARE(texts(start, QDateTime()), QStringLiteral("zbcd"));
    QCOMPARE(texts(dawn, QDateTime()), QStringLiteral("zabcd"));
    QCOMPARE(texts(start.addDays(1), QDateTime()), QStringLiteral("z"));
}

void ContractQuestionsTest::keepsTextsEscapedExactlyOnce_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << QStringLiteral("<b>\"It's\" & more</b>");
    QTest::newRow("line breaks") << QStringLiteral("a\r\nb\nc\rd\u2028e\tf");
    QTest::newRow("blanks") << QStringLiteral("  a\u00a0b  ");
    QTest::newRow("beyond the plane") << QString::fromUtf8("😀 字幕 Ł");
    QTest::newRow("a formula") << QStringLiteral("=1+1");
    QTest::newRow("control characters") << QStringLiteral("a\u0001\u001fb");
    QTest::newRow("100 kB of markup") << QStringLiteral("<a href=\"x\">&</a>\r\n").repeated(5200);
}

void ContractQuestionsTest::keepsTextsEscapedExactlyOnce()
{
    QFETCH(QString, text);
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion first = asked(text, 1000);
    store().questions.take(refOf(guid), {first});
    const QuestionRecordPtr before = find(*client, guid, first.guid);
    QCOMPARE(before->QuestionText, Zel::Questions::escaped(text));
    QCOMPARE(unescaped(before->QuestionText), text);
    const QString answer = text + QStringLiteral("!");
    QCOMPARE(client->UpdateQuestion(first.guid, answer, text, QString(), QString()), 0);
    const QuestionRecordPtr after = find(*client, guid, first.guid);
    QCOMPARE(after->QuestionText, before->QuestionText);
    QCOMPARE(after->AnswerText, Zel::Questions::escaped(answer));
    QVERIFY(after->AnsweredSpecified);
    QVERIFY(qAbs(after->Answered.secsTo(QDateTime::currentDateTime())) < 3600);
    QCOMPARE(after->Status, QStringLiteral("SUBMITTED"));
}

void ContractQuestionsTest::anEmptyAnswerIsNone()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    client->UpdateQuestion(question.guid, QStringLiteral("So."), question.text, {}, {});
    QVERIFY(find(*client, guid, question.guid)->AnsweredSpecified);
    client->UpdateQuestion(question.guid, QString(), QString(), {}, {});
    const QuestionRecordPtr after = find(*client, guid, question.guid);
    QVERIFY(!after->AnsweredSpecified);
    QCOMPARE(after->AnswerText, QString());
    QCOMPARE(after->QuestionText, QString());
}

void ContractQuestionsTest::movesBetweenAllStatesOfModeration()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    for (const char *status : {"STAGED", "RETRACT", "DELETE", "DELETE", "STAGED"}) {
        const QString text = QString::fromLatin1(status);
        QCOMPARE(client->SetQuestionStatus(question.guid, text), 0);
        QCOMPARE(find(*client, guid, question.guid)->Status, text);
    }
    QCOMPARE(find(*client, guid, question.guid)->QuestionText, question.text);
}

void ContractQuestionsTest::theSecondModeratorSeesWhatTheFirstDid()
{
    const auto maja_ = signIn(maja(), brightwaterMedia);
    const auto tomas_ = signIn(tomas(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    maja_->UpdateQuestion(question.guid, QStringLiteral("first"), question.text, {}, {});
    tomas_->UpdateQuestion(question.guid, QStringLiteral("second"), question.text, {}, {});
    tomas_->SetQuestionStatus(question.guid, QStringLiteral("RETRACT"));
    const QuestionRecordPtr seen = find(*maja_, guid, question.guid);
    QCOMPARE(seen->AnswerText, QStringLiteral("second"));
    QCOMPARE(seen->Status, QStringLiteral("RETRACT"));
}

void ContractQuestionsTest::refusesStatesThatAreNotAModerators()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    for (const char *status : {"PUBLISH", "ANSWERED", "SUBMITTED", "staged", "", "STAGED "})
        QCOMPARE(failureOf([&] {
                     client->SetQuestionStatus(question.guid, QString::fromLatin1(status));
                 }),
                 QStringLiteral("Invalid/invalid"));
    QCOMPARE(failureOf([&] {
                 client->UpdateQuestion(question.guid, QString(QChar(0)), QString(), {}, {});
             }),
             QStringLiteral("Invalid/invalid-text"));
    QCOMPARE(find(*client, guid, question.guid)->Status, QStringLiteral("SUBMITTED"));
}

void ContractQuestionsTest::tellsOfQuestionsThatAreNotThere()
{
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    const auto other = signIn(maja(), harbourLearning);
    const QString staged = QStringLiteral("STAGED");
    for (const QString &unknown :
         {question.guid, newGuid(), QString(), QStringLiteral(".."), QStringLiteral("a/b")}) {
        QCOMPARE(other->SetQuestionStatus(unknown, staged), 1);
        QCOMPARE(other->UpdateQuestion(unknown, staged, staged, {}, {}), 1);
    }
    const auto client = signIn(maja(), brightwaterMedia);
    const QuestionRecordPtr untouched = find(*client, guid, question.guid);
    QCOMPARE(untouched->Status, QStringLiteral("SUBMITTED"));
    QCOMPARE(untouched->AnswerText, QString());
}

void ContractQuestionsTest::letsViewersLookOnly()
{
    const auto client = signIn(vera(), contractStudio);
    const QString refused = QStringLiteral("Refused/not-allowed");
    QCOMPARE(failureOf([&] { client->SetQuestionStatus(newGuid(), QStringLiteral("STAGED")); }),
             refused);
    QCOMPARE(failureOf([&] { client->UpdateQuestion(newGuid(), {}, {}, {}, {}); }), refused);
}

void ContractQuestionsTest::questionsOfOneMomentComeByGuid()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    QStringList undated;
    QStringList dated;
    for (int i = 0; i < 6; ++i) {
        const Zel::AskedQuestion question =
            asked(QStringLiteral("?"), i % 2 == 0 ? std::optional<qint64>(5000) : std::nullopt,
                  QStringLiteral("user %1").arg(i));
        store().questions.take(refOf(guid), {question});
        (i % 2 == 0 ? dated : undated) << question.guid;
    }
    std::sort(undated.begin(), undated.end());
    std::sort(dated.begin(), dated.end());
    QStringList listed;
    const auto list = client->GetQuestions(guid, dawn, QDateTime());
    for (const QuestionRecordPtr &one : *list)
        listed << one->QuestionGuid;
    QCOMPARE(listed, undated + dated);
}

void ContractQuestionsTest::refusesTextsThatCannotBeStored_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("NUL") << QStringLiteral("a\0b");
    QTest::newRow("high surrogate alone") << QStringLiteral("a") + QChar(0xd800);
    QTest::newRow("low surrogate alone") << QChar(0xdc00) + QStringLiteral("a");
    QTest::newRow("no character") << QStringLiteral("a\uffff");
}

void ContractQuestionsTest::refusesTextsThatCannotBeStored()
{
    QFETCH(QString, text);
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    const QString good = QStringLiteral("good");
    const QString refused = QStringLiteral("Invalid/invalid-text");
    QCOMPARE(failureOf([&] { client->UpdateQuestion(question.guid, text, good, {}, {}); }),
             refused);
    QCOMPARE(failureOf([&] { client->UpdateQuestion(question.guid, good, text, {}, {}); }),
             refused);
    QCOMPARE(failureOf([&] { client->SetQuestionStatus(question.guid, text); }), refused);
    const QuestionRecordPtr untouched = find(*client, guid, question.guid);
    QCOMPARE(untouched->QuestionText, question.text);
    QCOMPARE(untouched->AnswerText, QString());
}

void ContractQuestionsTest::takesTextsUpToTheirLimit()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const Zel::AskedQuestion question = asked(QStringLiteral("Why?"), 1000);
    store().questions.take(refOf(guid), {question});
    const QString longest(Zel::longestQuestion, QChar(0x20ac));
    QCOMPARE(client->UpdateQuestion(question.guid, longest, question.text, {}, {}), 0);
    QVERIFY(find(*client, guid, question.guid)->AnswerText == longest);
    const auto failure = [&](const QString &answer, const QString &text) {
        return failureOf([&] { client->UpdateQuestion(question.guid, answer, text, {}, {}); });
    };
    QCOMPARE(failure(longest + QLatin1Char('x'), question.text), QStringLiteral("Invalid/invalid"));
    QCOMPARE(failure(QStringLiteral("x"), longest + QLatin1Char('x')),
             QStringLiteral("Invalid/invalid"));
    QVERIFY(find(*client, guid, question.guid)->AnswerText == longest);
    QCOMPARE(find(*client, guid, question.guid)->QuestionText, question.text);
}

ZEL_TEST_MAIN(ContractQuestionsTest)
#include "tst_contractquestions.moc"
