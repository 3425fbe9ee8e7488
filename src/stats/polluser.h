// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "platform/core/collection.h"
#include "platform/core/export.h"

#include <QDateTime>
#include <QMetaType>

namespace ZelWebServiceControls {

class PollResults;

/// One respondent's answers to one poll question: a view that is cheap to make and to copy; copies
/// are the same answers.
class ZEL_EXPORT PollUserAnswer
{
    Q_GADGET
    /// The answer ids in order of arrival.
    Q_PROPERTY(Zel::Collection<QString> answer READ answer)
    /// The date-time of each answer.
    Q_PROPERTY(Zel::Collection<QDateTime> answerDt READ answerDt)

public:
    /// Answers of their own, none yet.
    PollUserAnswer();
    PollUserAnswer(std::shared_ptr<PollResults> results, quint32 respondent, quint32 question);

    Zel::Collection<QString> answer() const;
    Zel::Collection<QDateTime> answerDt() const;

    Q_INVOKABLE void AddAnswer(const QString &answerID, const QDateTime &answerDate);
    /// All ids joined with ","; empty when there is none.
    Q_INVOKABLE QString GetAnswer() const;

private:
    std::shared_ptr<PollResults> m_results;
    quint32 m_respondent = 0;
    quint32 m_question = 0;
};

/// One respondent of a deployment's polls; a view.
class ZEL_EXPORT PollUser
{
    Q_GADGET
    Q_PROPERTY(QString guid READ guid)

public:
    /// A respondent of its own; without a guid until `Init`.
    PollUser();
    PollUser(std::shared_ptr<PollResults> results, quint32 respondent);

    QString guid() const;

    /// Starts a respondent of its own without answers.
    Q_INVOKABLE void Init(const QString &guid);
    /// Adds a vote to the answers of its question.
    Q_INVOKABLE void SetAnswerForQuestion(const QXSC::PollResponse &pr);
    /// The answer ids to a question joined with ","; empty when it was not answered.
    Q_INVOKABLE QString GetAnswer(const QString &qGuid) const;

    /// The answers by question guid, in order of the first answer to each.
    Zel::Collection<PollUserAnswer> answers() const;

private:
    std::shared_ptr<PollResults> m_results;
    quint32 m_respondent = 0;
};

} // namespace ZelWebServiceControls
