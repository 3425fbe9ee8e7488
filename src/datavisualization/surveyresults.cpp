// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/surveyresults.h"

#include "datavisualization/visualizationtexts.h"

namespace ZelDataVisualization {

namespace {

constexpr quint16 UserColumn = 1;
constexpr quint16 FirstQuestion = 2;

/// The words of the workbook; they are data and the same in every language.
constexpr QStringView Responses = u"Responses";
constexpr QStringView Summary = u"Summary";
constexpr QStringView Title = u"User ID";
constexpr QStringView Correct = u"Correct";
constexpr QStringView PercentCorrect = u"Percent Correct";
constexpr QStringView Skipped = u"(skipped)";
constexpr QStringView CorrectStyle = u"s32";
constexpr QStringView CorrectGround = u"#CCFFCC";

quint16 columnOf(int question)
{
    return static_cast<quint16>(FirstQuestion + question);
}

} // namespace

SurveyResults::SurveyResults(Workbook workbook)
    : m_workbook(std::move(workbook))
    , m_calculator(m_workbook)
{
}

SurveyResults::~SurveyResults() = default;

std::shared_ptr<SurveyResults> SurveyResults::from(Workbook workbook, QString *problem)
{
    std::shared_ptr<SurveyResults> results(new SurveyResults(std::move(workbook)));
    *problem = results->readSheets();
    return problem->isEmpty() ? results : nullptr;
}

QString SurveyResults::readSheets()
{
    m_responses = m_workbook.sheet(Responses);
    m_summary = m_workbook.sheet(Summary);
    for (const auto &[sheet, name] : {std::pair(m_responses, Responses), {m_summary, Summary}}) {
        if (!sheet)
            return VisualizationTexts::tr("The workbook has no sheet \"%1\".").arg(name);
        if (sheet->rows.empty())
            return VisualizationTexts::tr("The sheet \"%1\" of the workbook is empty.").arg(name);
    }
    readLegend();
    readRespondents();
    return QString();
}

bool SurveyResults::isText(size_t row, quint16 column, QStringView text) const
{
    if (row >= m_responses->rows.size())
        return false;
    const Cell *cell = cellInColumn(m_responses->cellsOf(row), column);
    return cell && cell->kind() == CellKind::Text && m_workbook.texts.at(cell->value) == text;
}

/// The rows up to the title row, and how many questions they have.
void SurveyResults::readLegend()
{
    const size_t rows = m_responses->rows.size();
    m_firstLegend = 1;
    m_endOfLegend = 1;
    quint16 last = UserColumn;
    const auto widen = [&last](std::span<const Cell> cells) {
        for (const Cell &cell : cells) {
            if (cell.kind() != CellKind::Blank)
                last = std::max(last, cell.column);
        }
    };
    widen(m_responses->cellsOf(0));
    widen(m_summary->cellsOf(0));
    while (m_endOfLegend < rows && !isText(m_endOfLegend, UserColumn, Title))
        widen(m_responses->cellsOf(m_endOfLegend++));
    m_questions = last - UserColumn;
}

void SurveyResults::readRespondents()
{
    const size_t rows = m_responses->rows.size();
    if (m_endOfLegend == rows)
        return;
    m_firstRespondent = m_endOfLegend + 1;
    m_scores = isText(m_endOfLegend, columnOf(m_questions), Correct) &&
               isText(m_endOfLegend, columnOf(m_questions + 1), PercentCorrect);
    const bool hasTotals = m_scores && rows >= m_firstRespondent + 2 &&
                           isText(rows - 2, UserColumn, Correct) &&
                           isText(rows - 1, UserColumn, PercentCorrect);
    m_respondents = static_cast<qsizetype>(rows - m_firstRespondent - (hasTotals ? 2 : 0));
    m_scores = hasTotals;
}

QString SurveyResults::text(const Sheet &sheet, size_t row, quint16 column) const
{
    const Cell *cell = row < sheet.rows.size() ? cellInColumn(sheet.cellsOf(row), column) : nullptr;
    return cell ? m_workbook.textOf(*cell) : QString();
}

std::optional<double> SurveyResults::number(quint32 row, quint16 column) const
{
    const Value value = m_calculator.value(*m_responses, row, column);
    return value.error == Value::Error::None ? value.number : std::nullopt;
}

QString SurveyResults::question(int index) const
{
    const Cell *cell = cellInColumn(m_responses->cellsOf(0), columnOf(index));
    return cell && cell->kind() != CellKind::Blank ? m_workbook.textOf(*cell)
                                                   : text(*m_summary, 0, columnOf(index));
}

bool SurveyResults::isCorrect(const Cell &legend) const
{
    if (legend.style() == 0 || legend.style() >= m_workbook.styles.size())
        return false;
    // A spreadsheet program that has saved the workbook has given the style another name.
    const Workbook::Style &style = m_workbook.styles[legend.style()];
    return style.id == CorrectStyle ||
           QStringView(style.ground).compare(CorrectGround, Qt::CaseInsensitive) == 0;
}

std::vector<SurveyResults::Answer> SurveyResults::answers(int question) const
{
    std::vector<Answer> result;
    const quint16 column = columnOf(question);
    for (size_t row = m_firstLegend; row < m_endOfLegend; ++row) {
        const Cell *legend = cellInColumn(m_responses->cellsOf(row), column);
        if (!legend || legend->kind() == CellKind::Blank)
            continue;
        Answer answer;
        answer.text = m_workbook.textOf(*legend);
        answer.isCorrect = isCorrect(*legend);
        const size_t inSummary = 1 + row - m_firstLegend;
        if (inSummary < m_summary->rows.size()) {
            const quint32 number = m_summary->rows[inSummary].number;
            answer.count = m_calculator.value(*m_summary, number, column).number.value_or(0);
        }
        result.push_back(answer);
    }
    return result;
}

double SurveyResults::baseOf(int question) const
{
    double base = 0;
    if (!m_scores) {
        for (const Answer &answer : answers(question))
            base += answer.count;
        return base;
    }
    for (qsizetype i = 0; i < m_respondents; ++i) {
        const size_t row = m_firstRespondent + static_cast<size_t>(i);
        const Cell *cell = cellInColumn(m_responses->cellsOf(row), columnOf(question));
        const bool isSkipped =
            !cell || cell->kind() == CellKind::Blank ||
            (cell->kind() == CellKind::Text && m_workbook.texts.at(cell->value) == Skipped);
        base += isSkipped ? 0 : 1;
    }
    return base;
}

quint32 SurveyResults::rowOfRespondent(qsizetype index) const
{
    return m_responses->rows[m_firstRespondent + static_cast<size_t>(index)].number;
}

QString SurveyResults::respondent(qsizetype index) const
{
    return text(*m_responses, m_firstRespondent + static_cast<size_t>(index), UserColumn);
}

std::optional<double> SurveyResults::shareOfQuestion(int index) const
{
    return m_scores ? number(m_responses->rows.back().number, columnOf(index)) : std::nullopt;
}

std::optional<double> SurveyResults::rightOfQuestion(int index) const
{
    return m_scores
               ? number(m_responses->rows[m_responses->rows.size() - 2].number, columnOf(index))
               : std::nullopt;
}

std::optional<double> SurveyResults::shareOfRespondent(qsizetype index) const
{
    return m_scores ? number(rowOfRespondent(index), columnOf(m_questions + 1)) : std::nullopt;
}

std::optional<double> SurveyResults::rightOfRespondent(qsizetype index) const
{
    return m_scores ? number(rowOfRespondent(index), columnOf(m_questions)) : std::nullopt;
}

} // namespace ZelDataVisualization
