// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "stats/polluser.h"

#include <QVariant>

#include <functional>

namespace ZelWebServiceControls {

class WorkbookText;

/// The votes of a deployment, grouped by respondent and poll question.
///
/// Given the flat list of the service it keeps eight bytes for each vote beside that list; what it
/// hands out are views. Copies are the same result.
class ZEL_EXPORT PollUsers
{
    Q_GADGET

public:
    PollUsers();

    /// Groups votes. Respondents come in order of first appearance; several votes of one respondent
    /// for one question add up. A second list is added to the first. Error 9 for a list that was
    /// never dimensioned.
    /// @return nothing
    Q_INVOKABLE QVariant SortResponse(const QXSC::PollResponseArray &respList);
    /// The number of respondents; error 6 from 32,768 on.
    Q_INVOKABLE qint16 getUserCount() const;
    /// The workbook's rows of the respondents as one text, a column for each of the given
    /// questions; texts stand in it as received. Any number of respondents. Error 91 without
    /// questions.
    Q_INVOKABLE QVariant getExcelFormat(const QXSC::PollQuestionCollectionPtr &g_pollList) const;

    /// Respondents, whatever their number.
    qsizetype count() const;
    /// A respondent by number, from 1; error 9 outside.
    PollUser user(qsizetype number) const;
    /// A respondent by guid; error 5 when there is none.
    PollUser user(const QString &guid) const;

    /// A respondent's row: the answers to each of the given questions, joined.
    struct Row
    {
        QString guid;
        QList<QString> cells;
    };

    /// Calls `visit` with the row of each respondent, in order. The row is used again.
    void forEachRow(const QXSC::PollQuestionCollection &questions,
                    const std::function<void(const Row &row)> &visit) const;

    /// The most characters that `appendRows` appends.
    qsizetype rowsBound(const QXSC::PollQuestionCollection &questions) const;
    /// Appends what `getExcelFormat` answers.
    void appendRows(WorkbookText &out, const QXSC::PollQuestionCollection &questions) const;

private:
    std::shared_ptr<PollResults> m_results;
};

} // namespace ZelWebServiceControls
