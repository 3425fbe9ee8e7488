// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/responsechains.h"

namespace ZelWebServiceControls {

quint32 ResponseChains::respondent(const QString &guid)
{
    const auto found = m_respondents.constFind(guid);
    if (found != m_respondents.cend())
        return *found;
    const auto number = respondentCount();
    m_respondents.insert(guid, number);
    m_guids.push_back(guid);
    m_last.push_back(None);
    m_guidLength += guid.size();
    return number;
}

std::optional<quint32> ResponseChains::find(const QString &guid) const
{
    const auto found = m_respondents.constFind(guid);
    return found == m_respondents.cend() ? std::nullopt : std::optional(*found);
}

void ResponseChains::reserveRecords(qsizetype count)
{
    m_next.reserve(size_t(count));
    m_question.reserve(size_t(count));
}

void ResponseChains::append(quint32 respondent, quint32 question)
{
    const quint32 record = recordCount();
    m_question.push_back(question);
    m_next.push_back(record);
    if (question == NoQuestion)
        return;
    quint32 &last = m_last[respondent];
    if (last != None) {
        m_next[record] = m_next[last];
        m_next[last] = record;
    }
    last = record;
}

std::vector<quint32> ResponseChains::records(quint32 respondent, quint32 question) const
{
    std::vector<quint32> found;
    forEach(respondent, [&](quint32 record, quint32 of) {
        if (of == question)
            found.push_back(record);
    });
    return found;
}

} // namespace ZelWebServiceControls
