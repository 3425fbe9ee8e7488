// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbook.h"

#include "stats/pollusers.h"
#include "stats/surveyusers.h"
#include "stats/workbooksheets.h"
#include "stats/workbooktemplate.h"

namespace ZelWebServiceControls {

namespace {

/// More than the title row and what stands around the sheets.
constexpr qsizetype titleBound = 512;

} // namespace

QString surveyWorkbook(const QXSC::SurveyRecord &survey, const SurveyUsers &users)
{
    const WorkbookQuestions questions = workbookQuestions(survey);
    WorkbookText out(workbookTemplate().size() + sheetsBound(questions) + titleBound +
                     users.rowsBound());
    out.text(workbookTemplateHead());
    appendResponsesHead(out, questions, 2);
    out.literal(u"<Row>\r\n<Cell ss:StyleID='s21'><Data ss:Type='String'>User ID</Data></Cell>"
                u"<Cell ss:StyleID='s41' ss:Index='");
    out.number(questions.size() + 2);
    out.literal(u"'><Data ss:Type='String'>Correct</Data></Cell>"
                u"<Cell ss:StyleID='s41' ss:Index='");
    out.number(questions.size() + 3);
    out.literal(u"'><Data ss:Type='String'>Percent Correct</Data></Cell></Row>\r\n");
    users.appendRows(out);
    appendSheetEnd(out);
    appendSummary(out, questions);
    out.text(workbookTemplateTail());
    return out.take();
}

QString pollWorkbook(const QXSC::PollQuestionCollection &polls, const PollUsers *users)
{
    const WorkbookQuestions questions = workbookQuestions(polls);
    WorkbookText out(workbookTemplate().size() + sheetsBound(questions) + titleBound +
                     (users ? users->rowsBound(polls) : 0));
    out.text(workbookTemplateHead());
    appendResponsesHead(out, questions, 1);
    if (users && users->count() > 0) {
        out.literal(u"<Row>\r\n"
                    u"<Cell ss:StyleID='s21'><Data ss:Type='String'>User ID</Data></Cell></Row>"
                    u"\r\n");
        users->appendRows(out, polls);
    }
    appendSheetEnd(out);
    appendSummary(out, questions);
    out.text(workbookTemplateTail());
    return out.take();
}

} // namespace ZelWebServiceControls
