// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "stats/surveyuser.h"

#include <QVariant>

#include <functional>
#include <optional>

namespace ZelWebServiceControls {

class WorkbookText;

/// The responses to a survey or quiz, grouped by respondent and question.
///
/// Given the flat list of the service it keeps eight bytes for each response beside that list; what
/// it hands out are views. Copies are the same result.
class ZEL_EXPORT SurveyUsers
{
    Q_GADGET

public:
    SurveyUsers();

    /// Groups responses and takes the answer key from the survey. Respondents come in order of
    /// first appearance. A response to a question that the survey does not have makes its
    /// respondent known and nothing more. A second list is added to the first.
    ///
    /// Errors: 9 a list that was never dimensioned, 91 no survey, 6 a position in the grid of
    /// choices or a number of questions beyond 16 bits.
    /// @return nothing
    Q_INVOKABLE QVariant SortResponse(const QXSC::SurveyResponseArray &respList,
                                      const QXSC::SurveyRecordPtr &m_survey);
    /// The number of respondents; error 6 from 32,768 on.
    Q_INVOKABLE qint16 getUsetCount() const;
    /// The workbook's rows of the respondents, "Correct" and "Percent Correct", as one text; texts
    /// stand in it as received. Any number of respondents. Error 11 when there are respondents and
    /// no questions.
    Q_INVOKABLE QVariant getExcelFormat() const;

    /// Respondents, whatever their number.
    qsizetype count() const;
    /// A respondent by number, from 1; error 9 outside.
    SurveyUser user(qsizetype number) const;
    /// A respondent by guid; error 5 when there is none.
    SurveyUser user(const QString &guid) const;

    /// Of each question, the positions of its correct choices joined with ",".
    const Zel::Collection<QString> &answerKey() const { return m_answerKey; }

    /// What a cell of a respondent's row shows.
    struct Cell
    {
        /// The first answer; nothing when the question was skipped.
        std::optional<QString> text;
        /// Whether that is the answer key.
        bool right = false;
        /// Whether it is the only answer to the question.
        bool single = false;
    };

    /// A respondent's row.
    struct Row
    {
        QString guid;
        QList<Cell> cells;
        int score = 0;
    };

    /// Calls `visit` with the row of each respondent, in order. The row is used again.
    void forEachRow(const std::function<void(const Row &row)> &visit) const;

    /// The most characters that `appendRows` appends.
    qsizetype rowsBound() const;
    /// Appends what `getExcelFormat` answers.
    void appendRows(WorkbookText &out) const;

private:
    std::shared_ptr<SurveyResults> m_results;
    Zel::Collection<QString> m_answerKey;
};

} // namespace ZelWebServiceControls
