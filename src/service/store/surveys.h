// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/arrival.h"
#include "service/store/audience.h"
#include "service/store/clock.h"
#include "service/store/listpage.h"

namespace Zel {

struct SurveyChoice
{
    QString guid;
    QString text;
    bool correct = false;
    qint64 row = 1; ///< in the grid of choices, from 1, as is the column
    qint64 col = 1;
    qint64 respondents = 0;
};

/// A question with its choices; both are numbered from 1 in their order.
struct SurveyItem
{
    QString guid;
    QString text;
    bool multiple = false; ///< several choices may be taken
    qint64 colCount = 1;
    QList<SurveyChoice> choices;

    /// The place of a choice in the grid, row by row from 1.
    qint64 positionOf(const SurveyChoice &choice) const
    {
        return (choice.row - 1) * colCount + choice.col;
    }
};

struct Survey
{
    QString guid;
    QString name;
    QList<SurveyItem> items;
};

/// One answered question of one respondent, as players report it.
struct SurveyReply
{
    QByteArray id;
    QString userGuid;
    QString surveyGuid;
    QString itemGuid;
    QStringList choiceGuids; ///< or their numbers
    qint64 at = 0;
};

/// Replies to one survey in order of arrival. What is the same again and again is named by its
/// position.
struct SurveyReplyList
{
    struct Answer
    {
        qsizetype item = 0; ///< from 0
        QList<qint64> choiceNos;
    };

    struct Reply
    {
        qsizetype user = 0;
        qsizetype answer = 0;
        qint64 at = 0;
    };

    QStringList users;
    QList<Answer> answers;
    QList<Reply> replies;
    std::optional<ArrivalPlace> next; ///< that of the last reply, when there are more
};

/// In a file `answers` holds the guids or numbers of the choices, parted by ":"; in JSON it may be
/// a list.
ZEL_EXPORT SurveyReply surveyReplyIn(FileRecord &record);

/// The surveys and quizzes of deployments.
class ZEL_EXPORT Surveys
{
public:
    static constexpr qsizetype longestText = 10000;
    static constexpr qsizetype mostSurveys = 1000;
    static constexpr qsizetype mostItems = 1000;
    static constexpr qsizetype mostChoices = 1000;

    Surveys(Database &database, const Clock &clock)
        : m_database(database)
        , m_clock(clock)
    {
    }

    /// Without the respondents. Only inside a transaction or snapshot.
    QList<Survey> definitions(const DeploymentRef &deployment);
    /// With the respondents each choice has now.
    QList<Survey> list(const DeploymentRef &deployment);
    /// Nothing when the deployment has no such survey.
    std::optional<SurveyReplyList> replies(const DeploymentRef &deployment,
                                           const QString &surveyGuid,
                                           const ArrivalPlace &after = {}, qint64 limit = allRows);
    /// A respondent answers a question once; what comes again and differs is refused.
    Intake take(const DeploymentRef &deployment, const QList<SurveyReply> &replies);

    /// Stores the surveys of a deployment in place of those it has; false when one with replies
    /// would have other questions or choices than before (texts and the key may change). Only
    /// inside a transaction.
    bool define(const DeploymentRef &deployment, const QList<Survey> &surveys);

private:
    Database &m_database;
    Clock m_clock;
};

} // namespace Zel
