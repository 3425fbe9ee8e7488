// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "stats/responsechains.h"

#include <QHash>

#include <memory>
#include <vector>

namespace ZelWebServiceControls {

/// What all views of one survey's responses look at: the list as the service sent it, and eight
/// bytes and a bit more for each response.
class SurveyResults
{
public:
    ResponseChains chains;
    /// Record n is response n.
    QList<QXSC::SurveyResponse> responses;
    /// Of each record, whether it names a correct choice.
    std::vector<bool> correct;
    qint16 questionCount = 0;
    /// Characters of all answers.
    qsizetype answerLength = 0;

    /// Appends one response of a respondent; `question` may be `ResponseChains::NoQuestion`.
    void append(quint32 respondent, quint32 question, const QXSC::SurveyResponse &response,
                bool isCorrect);
    /// Groups a list. The first list is shared with the caller, further ones are appended.
    void append(const QList<QXSC::SurveyResponse> &list, const QXSC::SurveyRecord &survey);

    /// The place of a question, from 0, the first of two with one guid. Without a survey each new
    /// question takes the next place; `ResponseChains::NoQuestion` when there is none.
    quint32 place(const QString &questionGuid);

private:
    void knowQuestions(const QXSC::SurveyRecord &survey);
    quint32 knownPlace(const QString &questionGuid) const;

    QHash<QString, quint32> m_places;
    bool m_surveyKnown = false;
};

using SurveyResultsPtr = std::shared_ptr<SurveyResults>;

/// The choices of a question, none when the record has no list.
const QXSC::SurveyAnswerCollection &answersOf(const QXSC::SurveyQuestion &question);

/// Whether the first choice with this guid is a correct one; False when there is none.
bool isCorrectAnswer(const QXSC::SurveyQuestion &question, const QString &answerGuid);

/// The values of an answer as the workbook shows them: what ":" parts is joined with ",".
QString shownAnswer(const QString &answer);

/// Which record each question's cell of one respondent shows.
class SurveyCells
{
public:
    explicit SurveyCells(const SurveyResults &results);

    /// Reads a respondent.
    void read(quint32 respondent);

    /// The first response to a question, null when it was skipped.
    const QXSC::SurveyResponse *first(qsizetype question) const
    {
        const Cell &cell = m_cells[size_t(question)];
        return cell.count ? m_responses + cell.first : nullptr;
    }

    /// Whether exactly one response answers the question.
    bool isSingle(qsizetype question) const { return m_cells[size_t(question)].count == 1; }

private:
    struct Cell
    {
        quint32 first = 0;
        quint32 count = 0;
    };

    const SurveyResults &m_results;
    const QXSC::SurveyResponse *m_responses;
    std::vector<Cell> m_cells;
};

} // namespace ZelWebServiceControls
