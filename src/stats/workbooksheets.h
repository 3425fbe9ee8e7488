// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "stats/workbooktext.h"

#include <QList>

namespace ZelWebServiceControls {

/// What the worksheets show of one answer.
struct WorkbookAnswer
{
    QString text;
    qint32 count = 0;
    /// Shown in the colour of correct answers.
    bool correct = false;
};

/// What the worksheets show of one question.
struct WorkbookQuestion
{
    QString text;
    QList<WorkbookAnswer> answers;
};

using WorkbookQuestions = QList<WorkbookQuestion>;

/// Error 91 when the survey has no list of questions.
WorkbookQuestions workbookQuestions(const QXSC::SurveyRecord &survey);
/// No answer of a poll is a correct one.
WorkbookQuestions workbookQuestions(const QXSC::PollQuestionCollection &polls);

/// The largest number of answers of any question.
qsizetype mostAnswers(const WorkbookQuestions &questions);

/// The most characters all that is appended below has.
qsizetype sheetsBound(const WorkbookQuestions &questions);

/// The columns of "Responses" and its rows above the respondents: questions, then the answers below
/// each. `scoreColumns` narrow columns stand at the end.
void appendResponsesHead(WorkbookText &out, const WorkbookQuestions &questions, int scoreColumns);
void appendSheetEnd(WorkbookText &out);
/// The worksheet "Summary": how often each answer was chosen.
void appendSummary(WorkbookText &out, const WorkbookQuestions &questions);

} // namespace ZelWebServiceControls
