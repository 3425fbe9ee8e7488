// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooklayout.h"

#include "platform/core/numbertext.h"
#include "stats/workbooksink.h"

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

constexpr int headingHeight = 50;

QList<int> columnWidths(qsizetype questions, int scoreColumns)
{
    QList<int> widths{140};
    widths.append(QList<int>(questions, 110));
    widths.append(QList<int>(scoreColumns, 60));
    return widths;
}

/// Headings, and below them what `cell(question, k)` writes of answer k.
template <typename Cell>
void writeQuestions(WorkbookSink &sink, const WorkbookQuestions &questions, const QString &rowLabel,
                    Cell cell)
{
    sink.beginRow(headingHeight);
    sink.blank(0, CellLook::Heading);
    for (qsizetype question = 0; question < questions.size(); ++question)
        sink.text(question + 1, cellText(questions[question].text), CellLook::Heading);
    sink.endRow();
    const qsizetype most = mostAnswers(questions);
    for (qsizetype k = 1; k <= most; ++k) {
        sink.beginRow(0);
        if (rowLabel.isEmpty())
            sink.blank(0, CellLook::Bold);
        else
            sink.text(0, rowLabel + QString::number(k), CellLook::Label);
        for (qsizetype question = 0; question < questions.size(); ++question) {
            if (questions[question].answers.size() >= k)
                cell(question, k, questions[question].answers[k - 1]);
        }
        sink.endRow();
    }
}

/// The sums of the rows of a survey while they are written.
struct Sums
{
    QList<qsizetype> right;
    double scores = 0;
    double shares = 0;
};

void writeAnswer(WorkbookSink &sink, qsizetype column, const SurveyUsers::Cell &cell)
{
    const CellLook look = cell.right ? CellLook::Right : CellLook::Wrong;
    const QString text = cell.text.value_or(QStringLiteral("(skipped)"));
    const std::optional<double> number = cell.single ? plainNumber(text) : std::nullopt;
    if (number)
        sink.number(column, *number, look);
    else
        sink.text(column, cellText(text), look);
}

Sums writeRespondents(WorkbookSink &sink, const SurveyUsers &users, qsizetype questions)
{
    Sums sums{QList<qsizetype>(questions, 0)};
    users.forEachRow([&](const SurveyUsers::Row &row) {
        sink.beginRow(0);
        sink.text(0, cellText(row.guid), CellLook::Plain);
        for (qsizetype question = 0; question < questions; ++question) {
            writeAnswer(sink, question + 1, row.cells[question]);
            sums.right[question] += row.cells[question].right;
        }
        const double share = double(row.score) / double(questions);
        sink.number(questions + 1, row.score, CellLook::Count);
        sink.number(questions + 2, share, CellLook::Share);
        sums.scores += row.score;
        sums.shares += share;
        sink.endRow();
    });
    return sums;
}

void writeSums(WorkbookSink &sink, const SurveyUsers &users, const Sums &sums)
{
    const qsizetype n = users.count();
    const qsizetype questions = sums.right.size();
    sink.beginRow(0);
    sink.text(0, QStringLiteral("Correct"), CellLook::Label);
    for (qsizetype question = 0; question < questions; ++question) {
        sink.formula(question + 1,
                     {CellFormula::CountAbove, n, users.answerKey().item(question + 1)},
                     double(sums.right[question]), CellLook::Count);
    }
    sink.formula(questions + 1, {CellFormula::SumAbove, n, {}}, sums.scores, CellLook::Count);
    sink.formula(questions + 2, {CellFormula::MeanAbove, n, {}}, sums.shares / double(n),
                 CellLook::Share);
    sink.endRow();
    sink.beginRow(0);
    sink.text(0, QStringLiteral("Percent Correct"), CellLook::Label);
    double shares = 0;
    for (qsizetype question = 0; question < questions; ++question) {
        const double share = double(sums.right[question]) / double(n);
        shares += share;
        sink.formula(question + 1, {CellFormula::ShareOfAbove, n, {}}, share, CellLook::Share);
    }
    sink.formula(questions + 1, {CellFormula::MeanLeft, questions, {}}, shares / double(questions),
                 CellLook::Share);
    sink.endRow();
}

void writeRows(WorkbookSink &sink, const SurveyModels &models)
{
    const qsizetype questions = models.users.answerKey().count();
    sink.beginRow(0);
    sink.text(0, QStringLiteral("User ID"), CellLook::Bold);
    sink.text(questions + 1, QStringLiteral("Correct"), CellLook::Heading);
    sink.text(questions + 2, QStringLiteral("Percent Correct"), CellLook::Heading);
    sink.endRow();
    if (models.users.count() == 0 || questions == 0)
        return;
    writeSums(sink, models.users, writeRespondents(sink, models.users, questions));
}

void writeRows(WorkbookSink &sink, const PollModels &models)
{
    if (models.users.count() == 0)
        return;
    sink.beginRow(0);
    sink.text(0, QStringLiteral("User ID"), CellLook::Bold);
    sink.endRow();
    models.users.forEachRow(*models.polls, [&sink](const PollUsers::Row &row) {
        sink.beginRow(0);
        sink.text(0, cellText(row.guid), CellLook::Plain);
        for (qsizetype question = 0; question < row.cells.size(); ++question)
            sink.text(question + 1, cellText(row.cells[question]), CellLook::Wrong);
        sink.endRow();
    });
}

} // namespace

qsizetype WorkbookLayout::rows() const
{
    return 4 + mostAnswers(questions) + respondents;
}

WorkbookLayout workbookLayout(const ResultsModels &models)
{
    if (const auto *const survey = std::get_if<SurveyModels>(&models)) {
        if (!survey->survey)
            throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
        return {workbookQuestions(*survey->survey), survey->users.count(), true};
    }
    const auto &polls = std::get<PollModels>(models);
    if (!polls.polls)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return {workbookQuestions(*polls.polls), polls.users.count(), false};
}

void writeSheets(const ResultsModels &models, const WorkbookLayout &layout, WorkbookSink &sink)
{
    sink.beginSheet(QStringLiteral("Responses"),
                    columnWidths(layout.questions.size(), layout.scored ? 2 : 1));
    writeQuestions(sink, layout.questions, QString(),
                   [&sink](qsizetype question, qsizetype k, const WorkbookAnswer &answer) {
                       sink.text(question + 1,
                                 cellText(QString::number(k) + QStringLiteral(" - ") + answer.text),
                                 answer.correct ? CellLook::CorrectChoice : CellLook::Plain);
                   });
    std::visit([&sink](const auto &of) { writeRows(sink, of); }, models);
    sink.endSheet();
    sink.beginSheet(QStringLiteral("Summary"), columnWidths(layout.questions.size(), 0));
    writeQuestions(sink, layout.questions, QStringLiteral("Answer "),
                   [&sink](qsizetype question, qsizetype, const WorkbookAnswer &answer) {
                       sink.number(question + 1, answer.count, CellLook::Plain);
                   });
    sink.endSheet();
}

std::optional<double> plainNumber(const QString &text)
{
    constexpr qsizetype mostDigits = 15;
    if (text.isEmpty() || text.size() > mostDigits)
        return std::nullopt;
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text, &isNumber);
    // Another form of the number, such as "02", is a text: as a number it would lose that form.
    if (!isNumber || !qIsFinite(value) || text.contains(u'E') ||
        Zel::invariantNumberText(value) != text)
        return std::nullopt;
    return value;
}

} // namespace ZelWebServiceControls
