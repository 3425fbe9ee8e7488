// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/polluser.h"

#include "stats/pollresults.h"

namespace ZelWebServiceControls {

namespace {

/// Results with one respondent, for a view that belongs to no list.
PollResultsPtr resultsOfOne(const QString &guid)
{
    auto results = std::make_shared<PollResults>();
    results->chains.respondent(guid);
    return results;
}

} // namespace

PollUserAnswer::PollUserAnswer()
    : m_results(resultsOfOne(QString()))
    , m_question(m_results->question(QString()))
{
}

PollUserAnswer::PollUserAnswer(PollResultsPtr results, quint32 respondent, quint32 question)
    : m_results(std::move(results))
    , m_respondent(respondent)
    , m_question(question)
{
}

Zel::Collection<QString> PollUserAnswer::answer() const
{
    Zel::Collection<QString> ids;
    for (const quint32 record : m_results->chains.records(m_respondent, m_question))
        ids.add(m_results->responses.at(record).answerId);
    return ids;
}

Zel::Collection<QDateTime> PollUserAnswer::answerDt() const
{
    Zel::Collection<QDateTime> dates;
    for (const quint32 record : m_results->chains.records(m_respondent, m_question))
        dates.add(m_results->responses.at(record).answerDate);
    return dates;
}

void PollUserAnswer::AddAnswer(const QString &answerID, const QDateTime &answerDate)
{
    m_results->append(m_respondent, m_question,
                      {m_results->chains.guid(m_respondent), m_results->questions.at(m_question),
                       answerID, answerDate});
}

QString PollUserAnswer::GetAnswer() const
{
    QStringList ids;
    for (const QString &id : answer())
        ids.append(id);
    return ids.join(u',');
}

PollUser::PollUser()
    : m_results(resultsOfOne(QString()))
{
}

PollUser::PollUser(PollResultsPtr results, quint32 respondent)
    : m_results(std::move(results))
    , m_respondent(respondent)
{
}

QString PollUser::guid() const
{
    return m_results->chains.guid(m_respondent);
}

void PollUser::Init(const QString &guid)
{
    m_results = resultsOfOne(guid);
    m_respondent = 0;
}

void PollUser::SetAnswerForQuestion(const QXSC::PollResponse &pr)
{
    PollUserAnswer(m_results, m_respondent, m_results->question(pr.questionGuid))
        .AddAnswer(pr.answerId, pr.answerDate);
}

QString PollUser::GetAnswer(const QString &qGuid) const
{
    return PollUserAnswer(m_results, m_respondent, m_results->find(qGuid)).GetAnswer();
}

Zel::Collection<PollUserAnswer> PollUser::answers() const
{
    Zel::Collection<PollUserAnswer> answers;
    QHash<quint32, bool> seen;
    m_results->chains.forEach(m_respondent, [&](quint32, quint32 question) {
        if (seen.contains(question))
            return;
        seen.insert(question, true);
        answers.add(PollUserAnswer(m_results, m_respondent, question),
                    m_results->questions.at(question));
    });
    return answers;
}

} // namespace ZelWebServiceControls
