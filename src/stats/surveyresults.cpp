// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyresults.h"

#include "platform/core/int16.h"

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

/// Whether choices are correct, by question and guid.
using CorrectChoices = QHash<std::pair<quint32, QString>, bool>;

CorrectChoices correctChoices(const QXSC::SurveyRecord &survey)
{
    CorrectChoices choices;
    quint32 place = 0;
    for (const QXSC::SurveyQuestionPtr &question : *survey.questions) {
        for (const QXSC::SurveyAnswerPtr &answer : answersOf(*question)) {
            const std::pair key(place, answer->guid);
            if (!choices.contains(key))
                choices.insert(key, answer->correct);
        }
        ++place;
    }
    return choices;
}

} // namespace

const QXSC::SurveyAnswerCollection &answersOf(const QXSC::SurveyQuestion &question)
{
    static const QXSC::SurveyAnswerCollection none;
    return question.answers ? *question.answers : none;
}

bool isCorrectAnswer(const QXSC::SurveyQuestion &question, const QString &answerGuid)
{
    for (const QXSC::SurveyAnswerPtr &answer : answersOf(question)) {
        if (answer->guid == answerGuid)
            return answer->correct;
    }
    return false;
}

QString shownAnswer(const QString &answer)
{
    QString shown = answer;
    return shown.replace(u':', u',');
}

void SurveyResults::append(quint32 respondent, quint32 question,
                           const QXSC::SurveyResponse &response, bool isCorrect)
{
    chains.append(respondent, question);
    responses.append(response);
    correct.push_back(isCorrect);
    answerLength += response.answer.size();
}

void SurveyResults::append(const QList<QXSC::SurveyResponse> &list,
                           const QXSC::SurveyRecord &survey)
{
    knowQuestions(survey);
    const CorrectChoices choices = correctChoices(survey);
    RepeatedTexts respondents;
    RepeatedTexts questions;
    RepeatedTexts answers;
    chains.reserveRecords(responses.size() + list.size());
    correct.reserve(size_t(responses.size() + list.size()));
    for (const QXSC::SurveyResponse &response : list) {
        const quint32 respondent = respondents.valueOf(
            response.userGuid, 0, [&] { return chains.respondent(response.userGuid); });
        const quint32 question = questions.valueOf(
            response.questionGuid, 0, [&] { return knownPlace(response.questionGuid); });
        const quint32 isCorrect = answers.valueOf(response.answerGuid, question, [&] {
            return quint32(choices.value({question, response.answerGuid}));
        });
        chains.append(respondent, question);
        correct.push_back(isCorrect != 0);
        answerLength += response.answer.size();
    }
    if (responses.isEmpty())
        responses = list;
    else
        responses.append(list);
}

quint32 SurveyResults::place(const QString &questionGuid)
{
    const quint32 known = knownPlace(questionGuid);
    if (known != ResponseChains::NoQuestion || m_surveyKnown || m_places.size() >= questionCount)
        return known;
    const auto next = quint32(m_places.size());
    m_places.insert(questionGuid, next);
    return next;
}

void SurveyResults::knowQuestions(const QXSC::SurveyRecord &survey)
{
    m_places.clear();
    m_surveyKnown = true;
    questionCount = Zel::Int16::from(survey.questions->count()).value();
    quint32 place = 0;
    for (const QXSC::SurveyQuestionPtr &question : *survey.questions) {
        if (!m_places.contains(question->guid))
            m_places.insert(question->guid, place);
        ++place;
    }
}

quint32 SurveyResults::knownPlace(const QString &questionGuid) const
{
    return m_places.value(questionGuid, ResponseChains::NoQuestion);
}

SurveyCells::SurveyCells(const SurveyResults &results)
    : m_results(results)
    , m_responses(results.responses.constData())
    , m_cells(size_t(std::max<qint16>(results.questionCount, 0)))
{
}

void SurveyCells::read(quint32 respondent)
{
    std::fill(m_cells.begin(), m_cells.end(), Cell());
    m_results.chains.forEach(respondent, [this](quint32 record, quint32 question) {
        if (question >= m_cells.size())
            return; // recorded for a longer survey
        Cell &cell = m_cells[question];
        if (cell.count++ == 0)
            cell.first = record;
    });
}

} // namespace ZelWebServiceControls
