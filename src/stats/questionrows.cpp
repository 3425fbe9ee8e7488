// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/questionrows.h"

#include "common/common.h"
#include "platform/core/datetext.h"

namespace ZelWebServiceControls {

QString QuestionRows::shownStatus(const QString &status)
{
    if (status == QLatin1String("PUBLISH"))
        return QStringLiteral("PUBLISHED");
    return status == QLatin1String("ANSWERED") ? QString() : status;
}

QString QuestionRows::text(qsizetype row, int column) const
{
    const QXSC::QuestionRecord &question = record(row);
    switch (column) {
    case Status:
        return shownStatus(question.Status);
    case UserID:
        return userText(question.User, UserText::UserID);
    case FirstName:
        return userText(question.User, UserText::FirstName);
    case LastName:
        return userText(question.User, UserText::LastName);
    case Email:
        return userText(question.User, UserText::Email);
    case Question:
        return Common::XmlUnescape(question.QuestionText);
    case Answer:
        return Common::XmlUnescape(question.AnswerText);
    case Submitted:
        return question.SubmittedSpecified ? Zel::generalDateText(question.Submitted) : QString();
    case Answered:
        return question.AnsweredSpecified ? Zel::generalDateText(question.Answered) : QString();
    default:
        return {};
    }
}

bool QuestionRows::sortValues(int column, std::span<qint64> out) const
{
    using Record = QXSC::QuestionRecord;
    switch (column) {
    case Submitted:
        return writeValues(out, [](const Record &each) {
            return each.SubmittedSpecified ? sortValueOf(each.Submitted) : NoSortValue;
        });
    case Answered:
        return writeValues(out, [](const Record &each) {
            return each.AnsweredSpecified ? sortValueOf(each.Answered) : NoSortValue;
        });
    default:
        return false;
    }
}

} // namespace ZelWebServiceControls
