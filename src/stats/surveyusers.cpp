// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyusers.h"

#include "platform/core/int16.h"
#include "stats/surveyresults.h"
#include "stats/workbooktext.h"

using Zel::Int16;
using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

/// The positions of a question's correct choices, counted row by row from 1.
QString keyOf(const QXSC::SurveyQuestion &question)
{
    QString key;
    for (const QXSC::SurveyAnswerPtr &answer : answersOf(question)) {
        if (!answer->correct)
            continue;
        const Int16 position =
            (Int16(answer->Row) - Int16(1)) * Int16(question.colCount) + Int16(answer->Col);
        if (!key.isEmpty())
            key += u',';
        key += QString::number(position.value());
    }
    return key;
}

} // namespace

SurveyUsers::SurveyUsers()
    : m_results(std::make_shared<SurveyResults>())
{
}

QVariant SurveyUsers::SortResponse(const QXSC::SurveyResponseArray &respList,
                                   const QXSC::SurveyRecordPtr &m_survey)
{
    if (!respList)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    if (!m_survey || !m_survey->questions)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    m_results->append(*respList, *m_survey);
    m_answerKey = {};
    for (const QXSC::SurveyQuestionPtr &question : *m_survey->questions)
        m_answerKey.add(keyOf(*question));
    return QVariant();
}

qint16 SurveyUsers::getUsetCount() const
{
    return Int16::from(count()).value();
}

QVariant SurveyUsers::getExcelFormat() const
{
    WorkbookText rows(rowsBound());
    appendRows(rows);
    return rows.take();
}

qsizetype SurveyUsers::count() const
{
    return qsizetype(m_results->chains.respondentCount());
}

SurveyUser SurveyUsers::user(qsizetype number) const
{
    if (number < 1 || number > count())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return SurveyUser(m_results, quint32(number - 1));
}

SurveyUser SurveyUsers::user(const QString &guid) const
{
    const std::optional<quint32> respondent = m_results->chains.find(guid);
    if (!respondent)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return SurveyUser(m_results, *respondent);
}

void SurveyUsers::forEachRow(const std::function<void(const Row &row)> &visit) const
{
    SurveyCells cells(*m_results);
    Row row;
    row.cells.resize(m_answerKey.count());
    for (quint32 respondent = 0; respondent < m_results->chains.respondentCount(); ++respondent) {
        cells.read(respondent);
        row.guid = m_results->chains.guid(respondent);
        row.score = 0;
        for (qsizetype question = 0; question < row.cells.size(); ++question) {
            const QXSC::SurveyResponse *const first = cells.first(question);
            Cell &cell = row.cells[question];
            cell.text = first ? std::optional(shownAnswer(first->answer)) : std::nullopt;
            cell.right = cell.text == m_answerKey.item(question + 1);
            cell.single = cells.isSingle(question);
            row.score += cell.right;
        }
        visit(row);
    }
}

} // namespace ZelWebServiceControls
