// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyuser.h"

#include "stats/surveyresults.h"

using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

/// Results with one respondent, for a view that belongs to no list.
SurveyResultsPtr resultsOfOne(const QString &guid, qint16 questionCount)
{
    auto results = std::make_shared<SurveyResults>();
    results->questionCount = questionCount;
    results->chains.respondent(guid);
    return results;
}

template <typename T>
Zel::Collection<T> repeated(const T &value, qsizetype count)
{
    Zel::Collection<T> values;
    values.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        values.add(value);
    return values;
}

/// How many values an answer has: an empty text has none.
qsizetype valueCount(const QString &answer)
{
    return answer.isEmpty() ? 0 : answer.count(u':') + 1;
}

void requireSet(bool set)
{
    if (!set)
        throw RuntimeError(RuntimeError::ObjectNotSet);
}

} // namespace

SurveyUserAnswer::SurveyUserAnswer()
    : m_results(resultsOfOne(QString(), 1))
{
    m_results->append(0, 0, QXSC::SurveyResponse(), false);
}

SurveyUserAnswer::SurveyUserAnswer(SurveyResultsPtr results, quint32 record)
    : m_results(std::move(results))
    , m_record(record)
{
}

Zel::Collection<QString> SurveyUserAnswer::answer() const
{
    Zel::Collection<QString> values;
    if (!response().answer.isEmpty()) {
        for (const QString &value : response().answer.split(u':'))
            values.add(value);
    }
    return values;
}

Zel::Collection<QString> SurveyUserAnswer::answerTxt() const
{
    return repeated(response().answerTxt, valueCount(response().answer));
}

Zel::Collection<QDateTime> SurveyUserAnswer::answerDt() const
{
    return repeated(response().answerDate, valueCount(response().answer));
}

bool SurveyUserAnswer::correct() const
{
    return m_results->correct[m_record];
}

void SurveyUserAnswer::setCorrect(bool correct)
{
    m_results->correct[m_record] = correct;
}

QString SurveyUserAnswer::GetAnswer() const
{
    return shownAnswer(response().answer);
}

const QXSC::SurveyResponse &SurveyUserAnswer::response() const
{
    return std::as_const(m_results->responses)[m_record];
}

SurveyUserQ::SurveyUserQ()
    : m_results(resultsOfOne(QString(), 1))
{
}

SurveyUserQ::SurveyUserQ(SurveyResultsPtr results, quint32 respondent, quint32 question)
    : m_results(std::move(results))
    , m_respondent(respondent)
    , m_question(question)
{
}

Zel::Collection<SurveyUserAnswer> SurveyUserQ::answers() const
{
    Zel::Collection<SurveyUserAnswer> answers;
    for (const quint32 record : m_results->chains.records(m_respondent, m_question))
        answers.add(SurveyUserAnswer(m_results, record));
    return answers;
}

void SurveyUserQ::AddAnswer(const QString &guid, const QString &answer, const QDateTime &dt,
                            const QString &answerTxt, const QXSC::SurveyQuestionPtr &q)
{
    requireSet(q != nullptr);
    const QString user = m_results->chains.guid(m_respondent);
    m_results->append(m_respondent, m_question, {user, q->guid, guid, answer, answerTxt, dt},
                      isCorrectAnswer(*q, guid));
}

SurveyUser::SurveyUser()
    : m_results(resultsOfOne(QString(), 0))
{
}

SurveyUser::SurveyUser(SurveyResultsPtr results, quint32 respondent)
    : m_results(std::move(results))
    , m_respondent(respondent)
{
}

QString SurveyUser::guid() const
{
    return m_results->chains.guid(m_respondent);
}

void SurveyUser::Init(const QString &guid, qint16 questionCount)
{
    if (questionCount < 0)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    m_results = resultsOfOne(guid, questionCount);
    m_respondent = 0;
}

void SurveyUser::SetAnswerForQuestion(const QXSC::SurveyQuestionPtr &q,
                                      const QXSC::SurveyResponse &sr)
{
    requireSet(q != nullptr);
    const quint32 place = m_results->place(q->guid);
    if (place == ResponseChains::NoQuestion)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    SurveyUserQ(m_results, m_respondent, place)
        .AddAnswer(sr.answerGuid, sr.answer, sr.answerDate, sr.answerTxt, q);
}

SurveyUserQ SurveyUser::GetQuestion(qint16 index) const
{
    if (index < 0 || index > GetQuestionCount())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return SurveyUserQ(m_results, m_respondent, quint32(index));
}

qint16 SurveyUser::GetQuestionCount() const
{
    return qint16(m_results->questionCount - 1);
}

} // namespace ZelWebServiceControls
