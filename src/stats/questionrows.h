// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/recordrows.h"

namespace ZelWebServiceControls {

/// The lines of the list of questions. Questions and answers are unescaped once; the texts of long
/// ones are made whenever they are seen, never kept.
class QuestionRows : public RecordRows<QXSC::QuestionRecord>
{
public:
    enum Column
    {
        Status,
        UserID,
        FirstName,
        LastName,
        Email,
        Question,
        Answer,
        Submitted,
        Answered
    };

    using RecordRows::RecordRows;

    QString text(qsizetype row, int column) const override;
    bool sortValues(int column, std::span<qint64> out) const override;

    /// How a moderation state is shown: "PUBLISH" as "PUBLISHED", "ANSWERED" as nothing, others as
    /// they come.
    static QString shownStatus(const QString &status);
};

} // namespace ZelWebServiceControls
