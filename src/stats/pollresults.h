// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "stats/responsechains.h"

#include <memory>

namespace ZelWebServiceControls {

/// What all views of a deployment's votes look at: the list as the service sent it, and eight bytes
/// for each vote.
class PollResults
{
public:
    ResponseChains chains;
    /// Record n is vote n.
    QList<QXSC::PollResponse> responses;
    /// The guids of the questions in order of first appearance.
    QList<QString> questions;
    /// Characters of all answer ids.
    qsizetype answerLength = 0;

    /// The number of a question, from 0; makes an absent one.
    quint32 question(const QString &guid);
    /// The number of a question, `ResponseChains::NoQuestion` when nobody answered it.
    quint32 find(const QString &guid) const;

    void append(quint32 respondent, quint32 question, const QXSC::PollResponse &response);
    /// Groups a list. The first list is shared with the caller, further ones are appended.
    void append(const QList<QXSC::PollResponse> &list);

private:
    QHash<QString, quint32> m_numbers;
};

using PollResultsPtr = std::shared_ptr<PollResults>;

/// The answers of one respondent, question by question.
class PollCells
{
public:
    explicit PollCells(const PollResults &results);

    /// Reads a respondent.
    void read(quint32 respondent);

    /// Calls `visit(id)` for each answer id to a question, oldest first.
    template <typename Visit>
    void forEach(quint32 question, Visit visit) const
    {
        if (question >= m_cells.size() || m_cells[question].stamp != m_stamp)
            return;
        for (quint32 at = m_cells[question].first; at != End; at = m_answers[at].next)
            visit(m_results.responses[m_answers[at].record].answerId);
    }

    /// The answer ids to a question joined with ",".
    QString joined(quint32 question) const;

private:
    static constexpr quint32 End = ~quint32(0);

    struct Cell
    {
        quint32 stamp = 0; ///< the read that filled it; of an older one it is empty
        quint32 first = 0;
        quint32 last = 0;
    };

    struct Answer
    {
        quint32 record = 0;
        quint32 next = End;
    };

    const PollResults &m_results;
    std::vector<Cell> m_cells;
    std::vector<Answer> m_answers;
    quint32 m_stamp = 0;
};

} // namespace ZelWebServiceControls
