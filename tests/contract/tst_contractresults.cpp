// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"

#include <QSet>
#include <QTest>

#include <algorithm>

using namespace QXSC;
using namespace ZelTest;

/// Polls, surveys and quizzes, through the client against the real service.
class ContractResultsTest : public AudienceTest
{
    Q_OBJECT

private slots:
    void countsTheVotesOfTheSample();
    void listsVotesInOrderOfArrival();
    void listsTheRealSurvey();
    void answersEveryResponseOfTheRealSurvey();
    void equalTextsShareTheirStorage();
    void namesSeveralChoicesByTheirPlaces();
    void countsRespondentsOfTheQuiz();
    void refusesSurveysThatAreNotThere();
    void definitionsWithResponsesKeepTheirPlaces();
    void keepsSurveysOfAccountsApart();
    void aSurveyNobodyAnsweredHasAnEmptyList();

private:
    SurveyRecordPtr survey(Client &client, qsizetype number)
    {
        return client.GetSurveys(liveDeployment)->item(number);
    }
};

void ContractResultsTest::countsTheVotesOfTheSample()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const auto polls = client->GetPolls(liveDeployment);
    QCOMPARE(polls->count(), 5);
    QHash<QString, int> given;
    for (const QStringList &row : sampleRows(QStringLiteral("captions/votes.csv")))
        ++given[row.at(1) + QLatin1Char('/') + row.at(2)];
    qint64 all = 0;
    for (const PollQuestionPtr &poll : *polls) {
        QVERIFY(poll->answers->count() >= 2);
        for (qsizetype k = 1; k <= poll->answers->count(); ++k) {
            const PollAnswer &answer = *poll->answers->item(k);
            QVERIFY(!answer.answerTxt.isEmpty() && !answer.guid.isEmpty());
            QCOMPARE(answer.count, given.value(QStringLiteral("%1/%2").arg(poll->guid).arg(k)));
            all += answer.count;
        }
    }
    QCOMPARE(all, sampleRows(QStringLiteral("captions/votes.csv")).size());
    const auto last = polls->item(5);
    QCOMPARE(last->questionTxt, QStringLiteral("Shall we repeat this in autumn?"));
    for (const PollAnswerPtr &answer : *last->answers)
        QCOMPARE(answer->count, 0);
}

void ContractResultsTest::listsVotesInOrderOfArrival()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const PollResponseArray votes = client->GetPollResponses(liveDeployment);
    QVERIFY(votes.has_value());
    const QList<QStringList> rows = sampleRows(QStringLiteral("captions/votes.csv"));
    QCOMPARE(votes->size(), rows.size());
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const PollResponse &vote = votes->at(i);
        QCOMPARE(QStringList({vote.userGuid, vote.questionGuid, vote.answerId}),
                 rows.at(i).mid(0, 3));
        QCOMPARE(vote.answerDate, QDateTime::fromString(rows.at(i).at(3), Qt::ISODate));
    }
}

void ContractResultsTest::listsTheRealSurvey()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const SurveyRecordPtr record = survey(*client, 1);
    QCOMPARE(record->name, QStringLiteral("How do you see yourself?"));
    QCOMPARE(record->questions->count(), 25);
    QList<QHash<QString, int>> counts(25);
    const QList<QStringList> rows = sampleRows(QStringLiteral("captions/survey/responses.csv"));
    QCOMPARE(rows.size(), 2800);
    for (const QStringList &row : rows) {
        for (int item = 0; item < 25; ++item)
            ++counts[item][row.at(item + 1)];
    }
    for (int item = 0; item < 25; ++item) {
        const SurveyQuestion &question = *record->questions->item(item + 1);
        QCOMPARE(question.answers->count(), 6);
        QCOMPARE(question.colCount, 1);
        for (int k = 1; k <= 6; ++k) {
            const SurveyAnswer &answer = *question.answers->item(k);
            QCOMPARE(answer.count, counts.at(item).value(QString::number(k)));
            QCOMPARE(answer.Row, k);
            QCOMPARE(answer.Col, 1);
            QVERIFY(!answer.correct);
        }
    }
    QCOMPARE(record->questions->item(1)->questionTxt,
             QStringLiteral("Am indifferent to the feelings of others."));
    QCOMPARE(record->questions->item(1)->answers->item(6)->answerTxt,
             QStringLiteral("Very accurate"));
}

void ContractResultsTest::answersEveryResponseOfTheRealSurvey()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const SurveyRecordPtr record = survey(*client, 1);
    const auto responses = client->GetSurveyResponses(liveDeployment, record->guid);
    QVERIFY(responses.has_value());
    qsizetype at = 0;
    for (const QStringList &row : sampleRows(QStringLiteral("captions/survey/responses.csv"))) {
        for (int item = 1; item <= 25; ++item) {
            const QString cell = row.at(item);
            if (cell.isEmpty() || cell == QLatin1String("NA"))
                continue;
            const SurveyResponse &one = responses->at(at++);
            const SurveyQuestion &question = *record->questions->item(item);
            const SurveyAnswer &answer = *question.answers->item(cell.toInt());
            QCOMPARE(one.userGuid, row.at(0));
            QCOMPARE(one.questionGuid, question.guid);
            QCOMPARE(one.answer, cell);
            QCOMPARE(one.answerGuid, answer.guid);
            QCOMPARE(one.answerTxt, answer.answerTxt);
            QVERIFY(one.answerDate.isValid());
        }
    }
    QCOMPARE(at, responses->size());
}

void ContractResultsTest::equalTextsShareTheirStorage()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const auto responses = client->GetSurveyResponses(liveDeployment, survey(*client, 1)->guid);
    QHash<QString, const QChar *> storage;
    for (const SurveyResponse &one : *responses) {
        for (const QString &text :
             {one.userGuid, one.questionGuid, one.answerGuid, one.answer, one.answerTxt}) {
            const auto known = storage.constFind(text);
            if (known == storage.cend())
                storage.insert(text, text.constData());
            else
                QVERIFY(*known == text.constData() || one.userGuid == text);
        }
    }
    const SurveyResponse &first = responses->at(0);
    QCOMPARE(first.userGuid.constData(), responses->at(1).userGuid.constData());
}

void ContractResultsTest::namesSeveralChoicesByTheirPlaces()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const SurveyRecordPtr quiz = survey(*client, 2);
    const SurveyQuestion &grid = *quiz->questions->item(10);
    QCOMPARE(grid.colCount, 2);
    QCOMPARE(grid.answers->item(3)->Row, 2);
    QCOMPARE(grid.answers->item(3)->Col, 1);
    QVERIFY(grid.answers->item(3)->correct);
    const auto responses = client->GetSurveyResponses(liveDeployment, quiz->guid);
    const auto both =
        std::find_if(responses->begin(), responses->end(), [&](const SurveyResponse &one) {
            return one.questionGuid == grid.guid && one.answer == QLatin1String("1:3");
        });
    QVERIFY(both != responses->end());
    QCOMPARE(both->answerGuid, grid.answers->item(1)->guid);
    QCOMPARE(both->answerTxt, grid.answers->item(1)->answerTxt + QStringLiteral("; ") +
                                  grid.answers->item(3)->answerTxt);
}

void ContractResultsTest::countsRespondentsOfTheQuiz()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const SurveyRecordPtr quiz = survey(*client, 2);
    QCOMPARE(quiz->questions->count(), 12);
    const QList<QStringList> rows = sampleRows(QStringLiteral("captions/quiz/answers.csv"));
    QCOMPARE(rows.size(), 300);
    int multiple = 0;
    for (int item = 1; item <= 12; ++item) {
        const SurveyQuestion &question = *quiz->questions->item(item);
        int correct = 0;
        for (int k = 1; k <= question.answers->count(); ++k) {
            const auto chose = std::count_if(rows.begin(), rows.end(), [&](const QStringList &row) {
                return row.at(item).split(QLatin1Char(':')).contains(QString::number(k));
            });
            QCOMPARE(question.answers->item(k)->count, chose);
            correct += question.answers->item(k)->correct;
        }
        QVERIFY(correct > 0);
        multiple += correct > 1;
    }
    QVERIFY(multiple > 2 && multiple < 10);
}

void ContractResultsTest::refusesSurveysThatAreNotThere()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString known = survey(*client, 1)->guid;
    const auto failure = [&](const QString &deployment, const QString &guid) {
        return failureOf([&] { client->GetSurveyResponses(deployment, guid); });
    };
    QCOMPARE(failure(liveDeployment, known.toUpper()), QStringLiteral("none"));
    QCOMPARE(failure(liveDeployment, newGuid()), QStringLiteral("NotFound/not-found"));
    QCOMPARE(failure(rehearsalDeployment, known), QStringLiteral("NotFound/not-found"));
    QCOMPARE(failure(liveDeployment, QString()), QStringLiteral("NotFound"));
}

void ContractResultsTest::definitionsWithResponsesKeepTheirPlaces()
{
    const QString guid = newDeployment();
    const Zel::DeploymentRef ref = refOf(guid);
    Zel::SurveyItem item{newGuid(), QStringLiteral("Q"), false, 1, {}};
    item.choices << Zel::SurveyChoice{newGuid(), QStringLiteral("yes"), true, 1, 1, 0}
                 << Zel::SurveyChoice{newGuid(), QStringLiteral("no"), false, 2, 1, 0};
    Zel::Survey quiz{newGuid(), QStringLiteral("Quiz"), {item}};
    const auto define = [&](const Zel::Survey &survey) {
        return database().tx([&] { return store().surveys.define(ref, {survey}); });
    };
    QVERIFY(define(quiz));
    Zel::SurveyReply reply;
    reply.id = QByteArray(16, 'x');
    reply.userGuid = QStringLiteral("u");
    reply.surveyGuid = quiz.guid;
    reply.itemGuid = item.guid;
    reply.choiceGuids << item.choices.at(1).guid;
    QCOMPARE(store().surveys.take(ref, {reply}).added, 1);
    Zel::Survey turned = quiz;
    std::swap(turned.items[0].choices[0], turned.items[0].choices[1]);
    QVERIFY(!define(turned));
    Zel::Survey reworded = quiz;
    reworded.items[0].text = QStringLiteral("Really?");
    reworded.items[0].choices[1].correct = true;
    QVERIFY(define(reworded));
    const auto client = signIn(maja(), brightwaterMedia);
    const auto surveys = client->GetSurveys(guid);
    const SurveyQuestion &question = *surveys->item(1)->questions->item(1);
    QCOMPARE(question.questionTxt, QStringLiteral("Really?"));
    QCOMPARE(question.answers->item(2)->count, 1);
    QVERIFY(question.answers->item(2)->correct);
}

void ContractResultsTest::keepsSurveysOfAccountsApart()
{
    const QString known = survey(*signIn(maja(), brightwaterMedia), 1)->guid;
    const auto other = signIn(maja(), harbourLearning);
    const QString unknown = QStringLiteral("NotFound/not-found");
    QCOMPARE(failureOf([&] { other->GetSurveyResponses(liveDeployment, known); }), unknown);
    QCOMPARE(failureOf([&] { other->GetSurveys(liveDeployment); }), unknown);
    QCOMPARE(failureOf([&] { other->GetPolls(liveDeployment); }), unknown);
    QCOMPARE(failureOf([&] { other->GetPollResponses(liveDeployment); }), unknown);
    // The same survey in a deployment of the other account is still another one.
    const NewProject project = newProject();
    signIn(nora(), contractStudio)->createProject(project);
    const QString guid = newGuid();
    database().tx([&] {
        store().deployments.put(contractStudio, {guid, project.guid, QStringLiteral("D"), 0});
    });
    const Zel::DeploymentRef ref = store().deployments.find(contractStudio, guid).value();
    Zel::SurveyItem item{newGuid(), QStringLiteral("Q"), false, 1, {}};
    item.choices << Zel::SurveyChoice{newGuid(), QStringLiteral("yes"), true, 1, 1, 0};
    const Zel::Survey twin{known, QStringLiteral("Twin"), {item}};
    QVERIFY(database().tx([&] { return store().surveys.define(ref, {twin}); }));
    const auto here = signIn(nora(), contractStudio);
    QVERIFY(here->GetSurveyResponses(guid, known)->isEmpty());
    QCOMPARE(failureOf([&] { here->GetSurveyResponses(liveDeployment, known); }), unknown);
}

void ContractResultsTest::aSurveyNobodyAnsweredHasAnEmptyList()
{
    const QString guid = newDeployment();
    Zel::SurveyItem item{newGuid(), QStringLiteral("Q"), false, 1, {}};
    item.choices << Zel::SurveyChoice{newGuid(), QStringLiteral("yes"), true, 1, 1, 0};
    const Zel::Survey quiz{newGuid(), QStringLiteral("Quiz"), {item}};
    QVERIFY(database().tx([&] { return store().surveys.define(refOf(guid), {quiz}); }));
    const auto client = signIn(maja(), brightwaterMedia);
    const SurveyResponseArray responses = client->GetSurveyResponses(guid, quiz.guid);
    QVERIFY(responses.has_value()); // none is a list, not nothing
    QVERIFY(responses->isEmpty());
    const auto surveys = client->GetSurveys(guid);
    QCOMPARE(surveys->count(), 1);
    QCOMPARE(surveys->item(1)->questions->item(1)->answers->item(1)->count, 0);
}

ZEL_TEST_MAIN(ContractResultsTest)
#include "tst_contractresults.moc"
