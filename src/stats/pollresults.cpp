// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollresults.h"

namespace ZelWebServiceControls {

quint32 PollResults::question(const QString &guid)
{
    const auto found = m_numbers.constFind(guid);
    if (found != m_numbers.cend())
        return *found;
    const auto number = quint32(questions.size());
    m_numbers.insert(guid, number);
    questions.append(guid);
    return number;
}

quint32 PollResults::find(const QString &guid) const
{
    return m_numbers.value(guid, ResponseChains::NoQuestion);
}

void PollResults::append(quint32 respondent, quint32 question, const QXSC::PollResponse &response)
{
    chains.append(respondent, question);
    responses.append(response);
    answerLength += response.answerId.size();
}

void PollResults::append(const QList<QXSC::PollResponse> &list)
{
    RepeatedTexts respondents;
    RepeatedTexts asked;
    chains.reserveRecords(responses.size() + list.size());
    for (const QXSC::PollResponse &response : list) {
        const quint32 respondent = respondents.valueOf(
            response.userGuid, 0, [&] { return chains.respondent(response.userGuid); });
        const quint32 number = asked.valueOf(response.questionGuid, 0,
                                             [&] { return question(response.questionGuid); });
        chains.append(respondent, number);
        answerLength += response.answerId.size();
    }
    if (responses.isEmpty())
        responses = list;
    else
        responses.append(list);
}

PollCells::PollCells(const PollResults &results)
    : m_results(results)
    , m_cells(size_t(results.questions.size()))
{
}

void PollCells::read(quint32 respondent)
{
    ++m_stamp;
    m_answers.clear();
    m_results.chains.forEach(respondent, [this](quint32 record, quint32 question) {
        const auto at = quint32(m_answers.size());
        m_answers.push_back({record, End});
        Cell &cell = m_cells[question];
        if (cell.stamp == m_stamp)
            m_answers[cell.last].next = at;
        else
            cell = {m_stamp, at, at};
        cell.last = at;
    });
}

QString PollCells::joined(quint32 question) const
{
    QString text;
    bool first = true;
    forEach(question, [&](const QString &id) {
        if (!first)
            text += u',';
        text += id;
        first = false;
    });
    return text;
}

} // namespace ZelWebServiceControls
