// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/arrival.h"
#include "service/store/audience.h"
#include "service/store/clock.h"
#include "service/store/listpage.h"

namespace Zel {

struct PollChoice
{
    QString guid;
    QString text;
    qint64 votes = 0;
};

/// A question with its answers; both are numbered from 1 in their order.
struct Poll
{
    QString guid;
    QString text;
    bool multiple = false; ///< a person may vote for several answers
    QList<PollChoice> choices;
};

/// A vote as players report it.
struct Vote
{
    QByteArray id;
    QString userGuid;
    QString pollGuid;
    QString choiceGuid; ///< or its number
    qint64 at = 0;
};

struct StoredVote
{
    QString userGuid;
    qint64 pollNo = 0;
    qint64 choiceNo = 0;
    qint64 at = 0;
};

ZEL_EXPORT Vote voteIn(FileRecord &record);

/// The polls of deployments.
class ZEL_EXPORT Polls
{
public:
    static constexpr qsizetype longestText = 10000;
    static constexpr qsizetype mostPolls = 1000;
    static constexpr qsizetype mostChoices = 1000;

    Polls(Database &database, const Clock &clock)
        : m_database(database)
        , m_clock(clock)
    {
    }

    /// Without the votes.
    QList<Poll> definitions(const DeploymentRef &deployment);
    /// With the votes each answer has now.
    QList<Poll> list(const DeploymentRef &deployment);
    /// Votes in order of arrival.
    ListPage<StoredVote, ArrivalPlace>
    votes(const DeploymentRef &deployment, const ArrivalPlace &after = {}, qint64 limit = allRows);
    /// A person has one vote in a poll, or one for each answer where it is a multiple one; further
    /// ones are refused.
    Intake take(const DeploymentRef &deployment, const QList<Vote> &votes);

    /// Stores the polls of a deployment in place of those it has; false when it has votes and the
    /// polls or answers are others than before (their texts may change). Only inside a transaction.
    bool define(const DeploymentRef &deployment, const QList<Poll> &polls);

private:
    Database &m_database;
    Clock m_clock;
};

} // namespace Zel
