// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/polls.h"

#include "service/store/bulktext.h"
#include "service/store/recordfile.h"

#include <QHash>
#include <QSet>

namespace Zel {

namespace {

constexpr qsizetype longestGuid = 36;

const SqlText listPolls(R"sql(
    SELECT guid, question_text, multiple FROM poll_question
    WHERE account_id = $1 AND dep_no = $2
    ORDER BY question_no NULLS FIRST
)sql");

const SqlText listAnswers(R"sql(
    SELECT question_no, guid, answer_text FROM poll_answer
    WHERE account_id = $1 AND dep_no = $2
    ORDER BY question_no NULLS FIRST, answer_no NULLS FIRST
)sql");

const SqlText countVotes(R"sql(
    SELECT question_no, answer_no, COUNT(*) FROM poll_vote
    WHERE account_id = $1 AND dep_no = $2
    GROUP BY question_no, answer_no
)sql");

const SqlText listVotes(R"sql(
    SELECT user_guid, question_no, answer_no, voted_at, arrived, vote_id FROM poll_vote
    WHERE account_id = $1 AND dep_no = $2 AND (arrived, vote_id) > ($3, $4)
    ORDER BY arrived NULLS FIRST, vote_id NULLS FIRST
    LIMIT $5
)sql");

const SqlText findVoteOf(R"sql(
    SELECT answer_no FROM poll_vote
    WHERE account_id = $1 AND dep_no = $2 AND question_no = $3 AND user_guid = $4
)sql");

const SqlText findVote(R"sql(
    SELECT question_no, answer_no, user_guid FROM poll_vote
    WHERE account_id = $1 AND dep_no = $2 AND vote_id = $3
)sql");

const BulkText addVotes(R"sql(
    INSERT INTO poll_vote (account_id, dep_no, vote_id, question_no, answer_no, user_guid, voted_at,
                           arrived)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8)
    ON CONFLICT DO NOTHING
    RETURNING vote_id
)sql");

const SqlText dropPolls(R"sql(
    DELETE FROM poll_question WHERE account_id = $1 AND dep_no = $2
)sql");

const SqlText dropAnswers(R"sql(
    DELETE FROM poll_answer WHERE account_id = $1 AND dep_no = $2
)sql");

const BulkText addPolls(R"sql(
    INSERT INTO poll_question (account_id, dep_no, question_no, guid, question_text, multiple)
    VALUES ($1, $2, $3, $4, $5, $6)
)sql");

const BulkText addAnswers(R"sql(
    INSERT INTO poll_answer (account_id, dep_no, question_no, answer_no, guid, answer_text)
    VALUES ($1, $2, $3, $4, $5, $6)
)sql");

/// Where a vote goes.
struct Place
{
    qint64 pollNo = 0;
    qint64 choiceNo = 0;
};

QHash<QString, Place> placesOf(const QList<Poll> &polls)
{
    QHash<QString, Place> places;
    for (qsizetype poll = 0; poll < polls.size(); ++poll) {
        const QList<PollChoice> &choices = polls.at(poll).choices;
        const QString begin = polls.at(poll).guid + QLatin1Char('/');
        for (qsizetype choice = 0; choice < choices.size(); ++choice) {
            const Place place{poll + 1, choice + 1};
            places.insert(begin + choices.at(choice).guid, place);
            places.insert(begin + QString::number(place.choiceNo), place);
        }
    }
    return places;
}

/// One call of `take`, inside its transaction.
class VoteIntake
{
public:
    VoteIntake(Database &database, const DeploymentRef &deployment, const QList<Poll> &polls)
        : m_database(database)
        , m_deployment(deployment)
        , m_polls(polls)
        , m_places(placesOf(polls))
    {
    }

    Intake run(const QList<Vote> &votes, qint64 now)
    {
        QList<SqlValues> rows;
        QList<qsizetype> rowOf;
        for (qsizetype i = 0; i < votes.size(); ++i) {
            const Vote &vote = votes.at(i);
            const Place place = placeOf(vote);
            const QString fault = faultOf(vote, place);
            if (!fault.isEmpty()) {
                m_intake.refused.append({i, fault});
                continue;
            }
            rowOf << i;
            rows << SqlValues{
                m_deployment.accountId, m_deployment.number, vote.id, place.pollNo,
                place.choiceNo,         vote.userGuid,       vote.at, arrival(now, i)};
        }
        QSet<QByteArray> added;
        addVotes.insert(m_database, rows, [&](const SqlRow &row) { added.insert(row.bytes(0)); });
        for (const qsizetype i : std::as_const(rowOf)) {
            if (added.remove(votes.at(i).id))
                ++m_intake.added;
            else
                look(i, votes.at(i));
        }
        return m_intake;
    }

private:
    Place placeOf(const Vote &vote) const
    {
        return m_places.value(vote.pollGuid + QLatin1Char('/') + vote.choiceGuid);
    }

    /// Also remembers a first vote, so that a second one in the same call is seen.
    QString faultOf(const Vote &vote, const Place &place)
    {
        if (place.pollNo == 0)
            return QStringLiteral("there is no such poll or answer.");
        const Poll &poll = m_polls.at(place.pollNo - 1);
        if (poll.multiple)
            return QString();
        const QString voter = poll.guid + QLatin1Char('/') + vote.userGuid;
        if (!m_voted.contains(voter))
            m_voted.insert(voter,
                           votedBefore(place.pollNo, vote.userGuid).value_or(place.choiceNo));
        if (m_voted.value(voter) != place.choiceNo)
            return QStringLiteral("\"%1\" has voted already.").arg(vote.userGuid);
        return QString();
    }

    std::optional<qint64> votedBefore(qint64 pollNo, const QString &userGuid)
    {
        return m_database.row(findVoteOf,
                              {m_deployment.accountId, m_deployment.number, pollNo, userGuid},
                              [](const SqlRow &row) { return row.integer(0); });
    }

    /// A vote that was not stored: the same as before, or another one.
    void look(qsizetype index, const Vote &vote)
    {
        const auto stored =
            m_database.row(findVote, {m_deployment.accountId, m_deployment.number, vote.id},
                           [](const SqlRow &row) {
                               return std::tuple(row.integer(0), row.integer(1), row.text(2));
                           });
        const Place place = placeOf(vote);
        if (!stored)
            m_intake.refused.append(
                {index, QStringLiteral("\"%1\" has voted already.").arg(vote.userGuid)});
        else if (*stored == std::tuple(place.pollNo, place.choiceNo, vote.userGuid))
            ++m_intake.known;
        else
            m_intake.refused.append({index, QStringLiteral("another row has this id.")});
    }

    Database &m_database;
    const DeploymentRef &m_deployment;
    const QList<Poll> &m_polls;
    QHash<QString, Place> m_places;
    QHash<QString, qint64> m_voted; ///< the answer by poll and person
    Intake m_intake;
};

bool haveSamePlaces(const QList<Poll> &a, const QList<Poll> &b)
{
    const auto guidsOf = [](const QList<Poll> &polls) {
        QStringList guids;
        for (const Poll &poll : polls) {
            guids << poll.guid << (poll.multiple ? QStringLiteral("+") : QStringLiteral("1"));
            for (const PollChoice &choice : poll.choices)
                guids << choice.guid;
        }
        return guids;
    };
    return guidsOf(a) == guidsOf(b);
}

} // namespace

Vote voteIn(FileRecord &record)
{
    Vote vote;
    vote.userGuid = record.text(QStringLiteral("user"), longestUserId);
    vote.pollGuid = record.text(QStringLiteral("poll"), longestGuid).toLower();
    vote.choiceGuid = record.text(QStringLiteral("answer"), longestGuid).toLower();
    vote.at = record.time(QStringLiteral("at"));
    vote.id = rowIdIn(record, {vote.pollGuid, vote.choiceGuid, vote.userGuid});
    record.expectNoMore();
    return vote;
}

QList<Poll> Polls::definitions(const DeploymentRef &deployment)
{
    return m_database.snapshot([&] {
        const SqlValues key{deployment.accountId, deployment.number};
        QList<Poll> polls = m_database.rows(listPolls, key, [](const SqlRow &row) {
            return Poll{row.text(0), row.text(1), row.boolean(2), {}};
        });
        m_database.query(listAnswers, key, [&](const SqlRow &row) {
            polls[row.integer(0) - 1].choices.append({row.text(1), row.text(2), 0});
        });
        return polls;
    });
}

QList<Poll> Polls::list(const DeploymentRef &deployment)
{
    return m_database.snapshot([&] {
        const SqlValues key{deployment.accountId, deployment.number};
        QList<Poll> polls = definitions(deployment);
        m_database.query(countVotes, key, [&](const SqlRow &row) {
            polls[row.integer(0) - 1].choices[row.integer(1) - 1].votes = row.integer(2);
        });
        return polls;
    });
}

ListPage<StoredVote, ArrivalPlace> Polls::votes(const DeploymentRef &deployment,
                                                const ArrivalPlace &after, qint64 limit)
{
    return readPage<StoredVote, ArrivalPlace>(
        m_database, listVotes, {deployment.accountId, deployment.number, after.arrived, after.id},
        limit, [](const SqlRow &row) {
            return std::pair(
                StoredVote{row.text(0), row.integer(1), row.integer(2), row.integer(3)},
                ArrivalPlace{row.integer(4), row.bytes(5)});
        });
}

Intake Polls::take(const DeploymentRef &deployment, const QList<Vote> &votes)
{
    return m_database.tx([&] {
        const QList<Poll> polls = list(deployment);
        return VoteIntake(m_database, deployment, polls).run(votes, m_clock());
    });
}

bool Polls::define(const DeploymentRef &deployment, const QList<Poll> &polls)
{
    const SqlValues key{deployment.accountId, deployment.number};
    const QList<Poll> before = list(deployment);
    bool hasVotes = false;
    m_database.query(countVotes, key, [&](const SqlRow &) { hasVotes = true; });
    if (hasVotes && !haveSamePlaces(before, polls))
        return false;
    m_database.exec(dropAnswers, key);
    m_database.exec(dropPolls, key);
    QList<SqlValues> questions;
    QList<SqlValues> answers;
    for (const Poll &poll : polls) {
        const qint64 pollNo = questions.size() + 1;
        questions << SqlValues{
            deployment.accountId, deployment.number, pollNo, poll.guid, poll.text, poll.multiple};
        qint64 choiceNo = 0;
        for (const PollChoice &choice : poll.choices)
            answers << SqlValues{deployment.accountId, deployment.number, pollNo,
                                 ++choiceNo,           choice.guid,       choice.text};
    }
    addPolls.insert(m_database, questions);
    addAnswers.insert(m_database, answers);
    return true;
}

} // namespace Zel
