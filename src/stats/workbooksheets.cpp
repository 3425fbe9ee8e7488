// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooksheets.h"

#include "platform/core/runtimeerror.h"
#include "stats/surveyresults.h"

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

/// More than the fixed characters of what stands once for a question or an answer in a sheet.
constexpr qsizetype cellBound = 96;

void appendQuestionColumns(WorkbookText &out, qsizetype count)
{
    out.literal(u"<Column ss:AutoFitWidth='0' ss:Width='140'/>\r\n");
    for (qsizetype question = 0; question < count; ++question)
        out.literal(u"<Column ss:AutoFitWidth='0' ss:Width='110'/>\r\n");
}

void appendQuestionCell(WorkbookText &out, const WorkbookQuestion &question)
{
    out.literal(u"<Cell ss:StyleID='s41'><Data ss:Type='String'>");
    out.text(question.text);
    out.literal(u"</Data></Cell>");
}

/// Answer k of each question that has so many, below its question.
void appendLegendRow(WorkbookText &out, const WorkbookQuestions &questions, qsizetype k)
{
    out.literal(u"<Row>\r\n<Cell ss:StyleID='s21'/>\r\n");
    for (qsizetype question = 0; question < questions.size(); ++question) {
        if (questions[question].answers.size() < k)
            continue;
        const WorkbookAnswer &answer = questions[question].answers[k - 1];
        out.literal(u"<Cell ss:Index='");
        out.number(question + 2);
        out.literal(u"'");
        if (answer.correct)
            out.literal(u" ss:StyleID='s32'");
        out.literal(u"><Data ss:Type='String'>");
        out.number(k);
        out.literal(u" - ");
        out.text(answer.text);
        out.literal(u"</Data></Cell>\r\n");
    }
    out.literal(u"</Row>\r\n");
}

void appendCountRow(WorkbookText &out, const WorkbookQuestions &questions, qsizetype k)
{
    out.literal(u"<Row>\r\n<Cell ss:StyleID='s45'><Data ss:Type='String'>Answer ");
    out.number(k);
    out.literal(u"</Data></Cell>\r\n");
    for (qsizetype question = 0; question < questions.size(); ++question) {
        if (questions[question].answers.size() < k)
            continue;
        out.literal(u"<Cell ss:Index='");
        out.number(question + 2);
        out.literal(u"'><Data ss:Type='Number'>");
        out.number(questions[question].answers[k - 1].count);
        out.literal(u"</Data></Cell>");
    }
    out.literal(u"</Row>\r\n");
}

} // namespace

WorkbookQuestions workbookQuestions(const QXSC::SurveyRecord &survey)
{
    if (!survey.questions)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    WorkbookQuestions questions;
    for (const QXSC::SurveyQuestionPtr &question : *survey.questions) {
        QList<WorkbookAnswer> answers;
        for (const QXSC::SurveyAnswerPtr &answer : answersOf(*question))
            answers.append({answer->answerTxt, answer->count, answer->correct});
        questions.append({question->questionTxt, answers});
    }
    return questions;
}

WorkbookQuestions workbookQuestions(const QXSC::PollQuestionCollection &polls)
{
    WorkbookQuestions questions;
    for (const QXSC::PollQuestionPtr &poll : polls) {
        QList<WorkbookAnswer> answers;
        if (poll->answers) {
            for (const QXSC::PollAnswerPtr &answer : *poll->answers)
                answers.append({answer->answerTxt, answer->count, false});
        }
        questions.append({poll->questionTxt, answers});
    }
    return questions;
}

qsizetype mostAnswers(const WorkbookQuestions &questions)
{
    qsizetype most = 0;
    for (const WorkbookQuestion &question : questions)
        most = std::max(most, question.answers.size());
    return most;
}

qsizetype sheetsBound(const WorkbookQuestions &questions)
{
    qsizetype bound = 1024 + 2 * cellBound * mostAnswers(questions);
    for (const WorkbookQuestion &question : questions) {
        bound += 2 * question.text.size() + 4 * cellBound;
        for (const WorkbookAnswer &answer : question.answers)
            bound += answer.text.size() + 2 * cellBound;
    }
    return bound;
}

void appendResponsesHead(WorkbookText &out, const WorkbookQuestions &questions, int scoreColumns)
{
    out.literal(u"<Worksheet ss:Name='Responses'>\r\n<Table>\r\n");
    appendQuestionColumns(out, questions.size());
    for (int column = 0; column < scoreColumns; ++column)
        out.literal(u"<Column ss:AutoFitWidth='0' ss:Width='60'/>\r\n");
    out.literal(u"<Row ss:Height='50'>\r\n<Cell ss:StyleID='s41'/>\r\n");
    for (const WorkbookQuestion &question : questions) {
        appendQuestionCell(out, question);
        out.literal(u"\r\n");
    }
    out.literal(u"</Row>\r\n");
    const qsizetype most = mostAnswers(questions);
    for (qsizetype k = 1; k <= most; ++k)
        appendLegendRow(out, questions, k);
}

void appendSheetEnd(WorkbookText &out)
{
    out.literal(u"</Table>\r\n</Worksheet>\r\n");
}

void appendSummary(WorkbookText &out, const WorkbookQuestions &questions)
{
    out.literal(u"<Worksheet ss:Name='Summary'>\r\n<Table>\r\n");
    appendQuestionColumns(out, questions.size());
    out.literal(u"<Row ss:Height='50'><Cell ss:StyleID='s41'/>");
    for (const WorkbookQuestion &question : questions)
        appendQuestionCell(out, question);
    out.literal(u"</Row>\r\n");
    const qsizetype most = mostAnswers(questions);
    for (qsizetype k = 1; k <= most; ++k)
        appendCountRow(out, questions, k);
    appendSheetEnd(out);
}

} // namespace ZelWebServiceControls
