// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "testsupport/recordingclient.h"

#include <QDate>

/// Surveys, polls and what was answered, made short for tests.
namespace ResultsFixture {

inline QXSC::SurveyAnswer choice(const QString &guid, const QString &text, bool correct = false,
                                 qint32 count = 0, qint16 row = 1, qint16 col = 1)
{
    QXSC::SurveyAnswer answer;
    answer.guid = guid;
    answer.answerTxt = text;
    answer.correct = correct;
    answer.Row = row;
    answer.Col = col;
    answer.count = count;
    return answer;
}

inline QXSC::SurveyQuestion question(const QString &guid, const QString &text,
                                     const QList<QXSC::SurveyAnswer> &answers, qint16 colCount = 1)
{
    QXSC::SurveyQuestion question;
    question.guid = guid;
    question.questionTxt = text;
    question.colCount = colCount;
    question.answers = ZelTest::recordList(answers);
    return question;
}

/// Choices 1 to n one below the other, "<prefix>1" the guid of the first; those listed are correct.
inline QList<QXSC::SurveyAnswer> choices(const QString &prefix, int n, const QList<int> &correct)
{
    QList<QXSC::SurveyAnswer> answers;
    for (int k = 1; k <= n; ++k) {
        answers.append(choice(prefix + QString::number(k), prefix + u'-' + QString::number(k),
                              correct.contains(k), 10 * k, qint16(k)));
    }
    return answers;
}

inline QXSC::SurveyRecordPtr survey(const QList<QXSC::SurveyQuestion> &questions)
{
    auto record = std::make_shared<QXSC::SurveyRecord>();
    record->guid = QStringLiteral("s1");
    record->name = QStringLiteral("Survey");
    record->questions = ZelTest::recordList(questions);
    return record;
}

/// Three questions: choice 2 right, choices 2 and 3 right, none right.
inline QXSC::SurveyRecordPtr threeQuestions()
{
    return survey({question(QStringLiteral("q1"), QStringLiteral("One?"),
                            choices(QStringLiteral("a"), 3, {2})),
                   question(QStringLiteral("q2"), QStringLiteral("Two?"),
                            choices(QStringLiteral("b"), 4, {2, 3})),
                   question(QStringLiteral("q3"), QStringLiteral("Three?"),
                            choices(QStringLiteral("c"), 2, {}))});
}

inline QDateTime moment(int minute)
{
    return QDateTime(QDate(2026, 3, 4), QTime(10, minute));
}

inline QXSC::SurveyResponse response(const QString &user, const QString &questionGuid,
                                     const QString &answerGuid, const QString &answer,
                                     const QString &text = QString(), int minute = 0)
{
    return {user, questionGuid, answerGuid, answer, text, moment(minute)};
}

inline QXSC::PollQuestion poll(const QString &guid, const QString &text,
                               const QList<std::pair<QString, qint32>> &answers)
{
    QList<QXSC::PollAnswer> list;
    for (const auto &[answerText, count] : answers) {
        QXSC::PollAnswer answer;
        answer.guid = guid + QString::number(list.size() + 1);
        answer.answerTxt = answerText;
        answer.count = count;
        list.append(answer);
    }
    QXSC::PollQuestion question;
    question.guid = guid;
    question.questionTxt = text;
    question.answers = ZelTest::recordList(list);
    return question;
}

inline QXSC::PollResponse vote(const QString &user, const QString &questionGuid,
                               const QString &answerId, int minute = 0)
{
    return {user, questionGuid, answerId, moment(minute)};
}

} // namespace ResultsFixture
