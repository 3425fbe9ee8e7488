// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/calculator.h"

namespace ZelDataVisualization {

/// What a results workbook says: questions, their answers and counts, respondents and scores.
///
/// The workbook has two sheets. "Responses": a row of question texts; a row for each position of an
/// answer, the correct ones on the ground #CCFFCC; a title row with "User ID" in its first column;
/// a row for each respondent. With scores the title row has "Correct" and "Percent Correct" behind
/// the questions, and two rows of these names end the sheet. "Summary": a row of question texts,
/// then a row of counts for each position of an answer. Questions stand from column 2 on.
///
/// Questions and respondents count from 0 here.
class ZEL_EXPORT SurveyResults
{
public:
    struct Answer
    {
        QString text;     ///< of the legend, "1 - Yes"
        double count = 0; ///< of those who gave it
        bool isCorrect = false;
    };

    /// The results in a workbook, or none and in `problem` a sentence that says why.
    static std::shared_ptr<SurveyResults> from(Workbook workbook, QString *problem);

    ~SurveyResults();
    Q_DISABLE_COPY_MOVE(SurveyResults)

    int questionCount() const { return m_questions; }

    qsizetype respondentCount() const { return m_respondents; }

    /// Whether right and wrong were told apart: a survey or quiz, not a poll.
    bool hasScores() const { return m_scores; }

    QString question(int index) const;
    std::vector<Answer> answers(int question) const;
    /// What the percentages of a question's answers are parts of: of a survey the respondents with
    /// an answer to it, otherwise the sum of its counts.
    double baseOf(int question) const;

    QString respondent(qsizetype index) const;

    /// Shares of 1; nothing where the workbook has no number.
    std::optional<double> shareOfQuestion(int index) const;
    std::optional<double> shareOfRespondent(qsizetype index) const;
    /// Answers that were right.
    std::optional<double> rightOfQuestion(int index) const;
    std::optional<double> rightOfRespondent(qsizetype index) const;

private:
    explicit SurveyResults(Workbook workbook);
    QString readSheets();
    void readLegend();
    void readRespondents();
    bool isText(size_t row, quint16 column, QStringView text) const;
    QString text(const Sheet &sheet, size_t row, quint16 column) const;
    std::optional<double> number(quint32 row, quint16 column) const;
    quint32 rowOfRespondent(qsizetype index) const;
    bool isCorrect(const Cell &legend) const;

    Workbook m_workbook;
    mutable Calculator m_calculator;
    const Sheet *m_responses = nullptr;
    const Sheet *m_summary = nullptr;
    int m_questions = 0;
    size_t m_firstLegend = 0; ///< a place among the rows, as all these are
    size_t m_endOfLegend = 0; ///< the title row's, where there is one
    size_t m_firstRespondent = 0;
    qsizetype m_respondents = 0;
    bool m_scores = false;
};

} // namespace ZelDataVisualization
