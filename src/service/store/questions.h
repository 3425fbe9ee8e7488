// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/audience.h"
#include "service/store/clock.h"
#include "service/store/statistics.h"

#include <functional>

namespace Zel {

/// A question of the audience as it is stored: texts are XML-escaped, once.
struct StoredQuestion
{
    QString guid;
    QString status;
    AudiencePerson person;
    QString questionText;
    QString answerText; ///< empty until it is answered
    std::optional<qint64> submittedAt;
    std::optional<qint64> answeredAt;
};

/// The questions of deployments and their moderation.
///
/// A question comes in as "SUBMITTED". A moderator stages, retracts or deletes it; a player that
/// has shown a staged one to everybody reports "PUBLISH", and "ANSWERED" when its sender has the
/// answer. A deleted question stays, under that word, so that a second moderator sees what became
/// of it.
class ZEL_EXPORT Questions
{
public:
    Questions(Database &database, const Clock &clock)
        : m_database(database)
        , m_clock(clock)
    {
    }

    /// "&" first, then the other four characters that have an entity.
    static QString escaped(const QString &text);
    /// What `escaped` was made from.
    static QString unescaped(const QString &text);
    /// Whether moderators may set the status.
    static bool isModeration(const QString &status);
    /// Whether players may set it, of a question that is staged.
    static bool isPlayback(const QString &status);
    /// Whether a question may have it at all.
    static bool isStatus(const QString &status);

    /// Where a question stands among the others; the default comes before all.
    struct Place
    {
        std::optional<qint64> submittedAt;
        QString guid;
    };

    using Visitor = std::function<bool(const StoredQuestion &, const Place &)>;

    /// Shows the questions of a range that come after a place, in order of their sending, to
    /// `visit`, until it returns false. Those whose time is not known come first in every range.
    /// Only inside a snapshot of the caller's, which may be run again from its start.
    void visitAfter(const DeploymentRef &deployment, const TimeRange &range, const Place &after,
                    const Visitor &visit);
    /// All of them.
    QList<StoredQuestion> list(const DeploymentRef &deployment, const TimeRange &range);
    /// Stores the texts as they were typed. The time of the answer is set when it becomes another
    /// one, and is not set without an answer. False when the account has no such question.
    bool update(qint64 accountId, const QString &guid, const QString &answer,
                const QString &question);
    bool setStatus(qint64 accountId, const QString &guid, const QString &status);
    /// Questions of players: `status` and `answer` are given only by imports.
    Intake take(const DeploymentRef &deployment, const QList<AskedQuestion> &questions);
    /// What players report of a staged question; refused when it is not staged any more. What was
    /// reported as "ANSWERED" has been shown as well, so a "PUBLISH" that comes again does not move
    /// it back.
    enum class Played
    {
        Done,
        Known,   ///< was so already
        Unknown, ///< the deployment has no such question
        NotStaged
    };
    Played setPlayed(const DeploymentRef &deployment, const QString &guid, const QString &status);

private:
    Database &m_database;
    Clock m_clock;
};

} // namespace Zel
