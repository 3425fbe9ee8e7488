// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Page views and their tallies.
#include "service/store/audience.h"

#include "service/store/bulktext.h"
#include "service/store/database.h"
#include "service/store/timerange.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <map>
#include <tuple>

namespace Zel {

namespace {

const BulkText addProfiles(R"sql(
    INSERT INTO view_profile (account_id, dep_no, profile_no, browser_type, js_version,
                              screen_depth)
    VALUES ($1, $2, $3, $4, $5, $6)
    ON CONFLICT (account_id, dep_no, profile_no) DO NOTHING
)sql");

const BulkText addViews(R"sql(
    INSERT INTO page_view (account_id, dep_no, view_id, person_no, view_at, time_spent, closed,
                           profile_no)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8)
    ON CONFLICT (account_id, dep_no, view_id) DO NOTHING
    RETURNING view_id
)sql");

const SqlText findView(R"sql(
    SELECT person_no, view_at, time_spent, closed, profile_no FROM page_view
    WHERE account_id = $1 AND dep_no = $2 AND view_id = $3
)sql");

const SqlText changeView(R"sql(
    UPDATE page_view SET time_spent = $4, closed = $5
    WHERE account_id = $1 AND dep_no = $2 AND view_id = $3
)sql");

const BulkText addTallies(R"sql(
    INSERT INTO view_tally (account_id, dep_no, hour_no, person_no, profile_no, hits, seconds,
                            first_at, last_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)
    ON CONFLICT (account_id, dep_no, hour_no, person_no, profile_no) DO UPDATE
    SET hits = view_tally.hits + excluded.hits,
        seconds = view_tally.seconds + excluded.seconds,
        first_at = CASE WHEN excluded.first_at < view_tally.first_at
                        THEN excluded.first_at ELSE view_tally.first_at END,
        last_at = CASE WHEN excluded.last_at > view_tally.last_at
                       THEN excluded.last_at ELSE view_tally.last_at END
)sql");

/// A view as it is stored.
struct StoredView
{
    qint64 personNo = 0;
    qint64 at = 0;
    qint64 seconds = 0;
    bool closed = false;
    qint64 profileNo = 0;

    bool operator==(const StoredView &) const = default;
};

/// What views add to the tallies, by hour, person and profile.
class Tallies
{
public:
    void add(const StoredView &view, qint64 hits, qint64 seconds)
    {
        const auto [found, isNew] = m_sums.try_emplace(
            {hourOf(view.at), view.personNo, view.profileNo}, Sum{0, 0, view.at, view.at});
        Sum &sum = found->second;
        sum.hits += hits;
        sum.seconds += seconds;
        sum.first = std::min(sum.first, view.at);
        sum.last = std::max(sum.last, view.at);
    }

    void store(Database &database, const DeploymentRef &deployment) const
    {
        QList<SqlValues> rows;
        for (const auto &[key, sum] : m_sums) {
            const auto &[hour, person, profile] = key;
            rows << SqlValues{
                deployment.accountId, deployment.number, hour,    person, profile, sum.hits,
                sum.seconds,          sum.first,         sum.last};
        }
        addTallies.insert(database, rows);
    }

private:
    struct Sum
    {
        qint64 hits = 0;
        qint64 seconds = 0;
        qint64 first = 0;
        qint64 last = 0;
    };

    std::map<std::tuple<qint64, qint64, qint64>, Sum> m_sums;
};

/// The numbers of texts that come again and again.
class Numbers
{
public:
    qint64 of(const QString &key, const QStringList &texts)
    {
        const auto known = m_numbers.constFind(key);
        return known != m_numbers.cend() ? *known : *m_numbers.insert(key, numberOf(texts));
    }

private:
    QHash<QString, qint64> m_numbers;
};

/// One call of `takeViews`, inside its transaction.
class ViewIntake
{
public:
    ViewIntake(Database &database, const DeploymentRef &deployment, const QList<PageView> &views)
        : m_database(database)
        , m_deployment(deployment)
        , m_views(views)
    {
    }

    Intake run()
    {
        number();
        QList<SqlValues> rows;
        for (qsizetype i = 0; i < m_views.size(); ++i) {
            const StoredView &view = m_numbered.at(i);
            rows << SqlValues{m_deployment.accountId,
                              m_deployment.number,
                              m_views.at(i).id,
                              view.personNo,
                              view.at,
                              view.seconds,
                              view.closed,
                              view.profileNo};
        }
        QSet<QByteArray> added;
        addViews.insert(m_database, rows, [&](const SqlRow &row) { added.insert(row.bytes(0)); });
        for (qsizetype i = 0; i < m_views.size(); ++i) {
            if (added.remove(m_views.at(i).id)) {
                ++m_intake.added;
                m_tallies.add(m_numbered.at(i), 1, m_numbered.at(i).seconds);
            } else {
                takeAgain(i);
            }
        }
        m_tallies.store(m_database, m_deployment);
        return m_intake;
    }

private:
    /// Finds the numbers of people and profiles and stores those that are new.
    void number()
    {
        Numbers people;
        Numbers profiles;
        QStringList userIds;
        QHash<qint64, SqlValues> newProfiles;
        for (const PageView &view : m_views) {
            const QStringList profile{view.browserType, view.jsVersion, view.screenDepth};
            StoredView stored{people.of(view.userId, {view.userId}), view.at, view.seconds,
                              view.closed, profiles.of(profile.join(QChar(0)), profile)};
            newProfiles.insert(stored.profileNo,
                               {m_deployment.accountId, m_deployment.number, stored.profileNo,
                                view.browserType, view.jsVersion, view.screenDepth});
            userIds << view.userId;
            m_numbered << stored;
        }
        storePeople(m_database, m_deployment, userIds);
        addProfiles.insert(m_database, newProfiles.values());
    }

    /// A row whose id is there already: the same once more, the same view later, or another one.
    void takeAgain(qsizetype index)
    {
        const PageView &row = m_views.at(index);
        const StoredView &view = m_numbered.at(index);
        const StoredView stored =
            m_database
                .row(findView, {m_deployment.accountId, m_deployment.number, row.id},
                     [](const SqlRow &found) {
                         return StoredView{found.integer(0), found.integer(1), found.integer(2),
                                           found.boolean(3), found.integer(4)};
                     })
                .value();
        StoredView later = stored;
        later.seconds = view.seconds;
        later.closed = view.closed;
        if (later != view) {
            m_intake.refused.append({index, QStringLiteral("another row has this id.")});
        } else if (view == stored || (!view.closed && view.seconds <= stored.seconds)) {
            ++m_intake.known; // also what was overtaken on its way by a later report
        } else if (stored.closed) {
            m_intake.refused.append({index, QStringLiteral("the page was closed before.")});
        } else {
            m_database.exec(changeView, {m_deployment.accountId, m_deployment.number, row.id,
                                         view.seconds, view.closed});
            m_tallies.add(view, 0, view.seconds - stored.seconds);
            ++m_intake.changed;
        }
    }

    Database &m_database;
    const DeploymentRef &m_deployment;
    const QList<PageView> &m_views;
    QList<StoredView> m_numbered;
    Tallies m_tallies;
    Intake m_intake;
};

} // namespace

Intake Audience::takeViews(const DeploymentRef &deployment, const QList<PageView> &views)
{
    return m_database.tx([&] { return ViewIntake(m_database, deployment, views).run(); });
}

} // namespace Zel
