// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/statistics.h"

#include "service/store/wholeread.h"

namespace Zel {

namespace {

const SqlText sumAll(R"sql(
    SELECT CAST(COALESCE(SUM(hits), 0) AS BIGINT), CAST(COALESCE(SUM(seconds), 0) AS BIGINT)
    FROM (
        SELECT hits, seconds FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION ALL
        SELECT 1, time_spent FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION ALL
        SELECT 1, time_spent FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    ) v
)sql");

const SqlText countParticipants(R"sql(
    SELECT COUNT(*) FROM (
        SELECT person_no FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION
        SELECT person_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION
        SELECT person_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    ) v
)sql");

const SqlText countRegistrants(R"sql(
    SELECT COUNT(*) FROM registrant WHERE account_id = $1 AND dep_no = $2
)sql");

const SqlText countRegisteredParticipants(R"sql(
    SELECT COUNT(*) FROM registrant r
    WHERE r.account_id = $1 AND r.dep_no = $2 AND r.person_no IN (
        SELECT person_no FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION ALL
        SELECT person_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION ALL
        SELECT person_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    )
)sql");

const SqlText sumByBrowserType(R"sql(
    SELECT CAST(COALESCE(SUM(hits), 0) AS BIGINT) FROM (
        SELECT hits, profile_no FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    ) v
    WHERE profile_no IN (SELECT profile_no FROM view_profile
                         WHERE account_id = $1 AND dep_no = $2 AND browser_type = $9)
)sql");

const SqlText sumByJSVersion(R"sql(
    SELECT CAST(COALESCE(SUM(hits), 0) AS BIGINT) FROM (
        SELECT hits, profile_no FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    ) v
    WHERE profile_no IN (SELECT profile_no FROM view_profile
                         WHERE account_id = $1 AND dep_no = $2 AND js_version = $9)
)sql");

const SqlText sumByScreenDepth(R"sql(
    SELECT CAST(COALESCE(SUM(hits), 0) AS BIGINT) FROM (
        SELECT hits, profile_no FROM view_tally
        WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
        UNION ALL
        SELECT 1, profile_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
    ) v
    WHERE profile_no IN (SELECT profile_no FROM view_profile
                         WHERE account_id = $1 AND dep_no = $2 AND screen_depth = $9)
)sql");

const SqlText listParticipants(R"sql(
    SELECT p.user_id, r.first_name, r.last_name, r.email, r.registered_at, v.seconds, v.first_at,
           v.last_at, v.person_no
    FROM (
        SELECT person_no, CAST(SUM(seconds) AS BIGINT) AS seconds, MIN(first_at) AS first_at,
               MAX(last_at) AS last_at
        FROM (
            SELECT person_no, seconds, first_at, last_at FROM view_tally
            WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
              AND person_no > $9
            UNION ALL
            SELECT person_no, time_spent, view_at, view_at FROM page_view
            WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
              AND person_no > $9
            UNION ALL
            SELECT person_no, time_spent, view_at, view_at FROM page_view
            WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
              AND person_no > $9
        ) each_view
        GROUP BY person_no
    ) v
    JOIN audience_person p
        ON p.account_id = $1 AND p.dep_no = $2 AND p.person_no = v.person_no
    LEFT JOIN registrant r
        ON r.account_id = $1 AND r.dep_no = $2 AND r.person_no = v.person_no
    ORDER BY v.person_no NULLS FIRST
    LIMIT $10
)sql");

const SqlText listRegistrants(R"sql(
    SELECT p.user_id, r.first_name, r.last_name, r.email, r.registered_at, v.seconds, v.first_at,
           v.last_at
    FROM registrant r
    JOIN audience_person p
        ON p.account_id = r.account_id AND p.dep_no = r.dep_no AND p.person_no = r.person_no
    LEFT JOIN (
        SELECT person_no, CAST(SUM(seconds) AS BIGINT) AS seconds, MIN(first_at) AS first_at,
               MAX(last_at) AS last_at
        FROM (
            SELECT person_no, seconds, first_at, last_at FROM view_tally
            WHERE account_id = $1 AND dep_no = $2 AND hour_no >= $3 AND hour_no < $4
            UNION ALL
            SELECT person_no, time_spent, view_at, view_at FROM page_view
            WHERE account_id = $1 AND dep_no = $2 AND view_at >= $5 AND view_at < $6
            UNION ALL
            SELECT person_no, time_spent, view_at, view_at FROM page_view
            WHERE account_id = $1 AND dep_no = $2 AND view_at >= $7 AND view_at < $8
        ) each_view
        GROUP BY person_no
    ) v ON v.person_no = r.person_no
    WHERE r.account_id = $1 AND r.dep_no = $2 AND (r.registered_at, p.user_id) > ($9, $10)
    ORDER BY r.registered_at NULLS FIRST, p.user_id NULLS FIRST
    LIMIT $11
)sql");

// Those who made the views between two of them, the first one not included.
const SqlText listPeople(R"sql(
    SELECT p.user_id, r.first_name, r.last_name, r.email, r.registered_at, p.person_no
    FROM audience_person p
    LEFT JOIN registrant r
        ON r.account_id = p.account_id AND r.dep_no = p.dep_no AND r.person_no = p.person_no
    WHERE p.account_id = $1 AND p.dep_no = $2 AND p.person_no IN (
        SELECT person_no FROM page_view
        WHERE account_id = $1 AND dep_no = $2 AND (view_at, view_id) > ($3, $4)
          AND (view_at, view_id) <= ($5, $6)
    )
)sql");

// Reads nothing but the index that is in this order.
const SqlText listViews(R"sql(
    SELECT view_at, person_no, time_spent, closed, view_id FROM page_view
    WHERE account_id = $1 AND dep_no = $2 AND (view_at, view_id) > ($3, $4) AND view_at < $5
    ORDER BY view_at NULLS FIRST, view_id NULLS FIRST
    LIMIT $6
)sql");

SqlValues valuesOf(const DeploymentRef &deployment, const TimeRange &range)
{
    const HourCut cut(range);
    return {deployment.accountId, deployment.number, cut.hourFrom, cut.hourTo,
            cut.headFrom,         cut.headTo,        cut.tailFrom, cut.tailTo};
}

const SqlText &sumBy(Statistics::Attribute attribute)
{
    switch (attribute) {
    case Statistics::Attribute::BrowserType:
        return sumByBrowserType;
    case Statistics::Attribute::JSVersion:
        return sumByJSVersion;
    case Statistics::Attribute::ScreenDepth:
        break;
    }
    return sumByScreenDepth;
}

AudiencePerson personOf(const SqlRow &row)
{
    return {row.text(0), row.optionalText(1).value_or(QString()),
            row.optionalText(2).value_or(QString()), row.optionalText(3).value_or(QString()),
            row.optionalInteger(4)};
}

Participation participationOf(const SqlRow &row)
{
    Participation result;
    result.person = personOf(row);
    result.participated = !row.isNull(5);
    if (result.participated) {
        result.seconds = row.integer(5);
        result.firstAt = row.integer(6);
        result.lastAt = row.integer(7);
    }
    return result;
}

/// A statement with values in place of its placeholders.
QString typed(const SqlText &text, const SqlValues &values)
{
    QString sql = text.sql();
    for (qsizetype number = values.size(); number > 0; --number) { // $12 before $1
        const QVariant &value = values.at(number - 1).variant();
        const QString shown = value.typeId() == QMetaType::QString
                                  ? QLatin1Char('\'') + value.toString() + QLatin1Char('\'')
                                  : value.toString();
        sql.replace(QStringLiteral("$%1").arg(number), shown);
    }
    return sql.simplified() + QLatin1Char(';');
}

} // namespace

QStringList Statistics::typedSummary(const DeploymentRef &deployment, const TimeRange &range)
{
    const SqlValues all = valuesOf(deployment, range);
    const SqlValues none{deployment.accountId, deployment.number};
    const auto with = [&all](const char *value) {
        SqlValues values = all;
        values << QString::fromLatin1(value);
        return values;
    };
    const QString registered = typed(countRegisteredParticipants, all);
    return {typed(sumAll, all),
            typed(countParticipants, all),
            typed(countRegistrants, none),
            registered,
            registered,
            typed(sumByBrowserType, with("IE")),
            typed(sumByBrowserType, with("NS")),
            typed(sumByJSVersion, with("1.3")),
            typed(sumByScreenDepth, with("24")),
            typed(sumByScreenDepth, with("32")),
            typed(sumAll, all)};
}

qint64 Statistics::number(const SqlText &text, const SqlValues &values)
{
    return readWhole(m_database, [&] {
        return m_database.row(text, values, [](const SqlRow &row) { return row.integer(0); })
            .value();
    });
}

Statistics::Totals Statistics::totals(const DeploymentRef &deployment, const TimeRange &range)
{
    return m_database
        .row(sumAll, valuesOf(deployment, range),
             [](const SqlRow &row) {
                 return Totals{row.integer(0), row.integer(1)};
             })
        .value();
}

qint64 Statistics::participantCount(const DeploymentRef &deployment, const TimeRange &range)
{
    return number(countParticipants, valuesOf(deployment, range));
}

qint64 Statistics::registrantCount(const DeploymentRef &deployment)
{
    return number(countRegistrants, {deployment.accountId, deployment.number});
}

qint64 Statistics::registeredParticipantCount(const DeploymentRef &deployment,
                                              const TimeRange &range)
{
    return number(countRegisteredParticipants, valuesOf(deployment, range));
}

qint64 Statistics::hitCount(const DeploymentRef &deployment, const TimeRange &range,
                            Attribute attribute, const QString &value)
{
    SqlValues values = valuesOf(deployment, range);
    values << value;
    return number(sumBy(attribute), values);
}

ListPage<Participation, qint64> Statistics::participants(const DeploymentRef &deployment,
                                                         const TimeRange &range, qint64 after,
                                                         qint64 limit)
{
    return readWhole(m_database, [&] {
        return readPage<Participation, qint64>(
            m_database, listParticipants, valuesOf(deployment, range) << after, limit,
            [](const SqlRow &row) { return std::pair(participationOf(row), row.integer(8)); });
    });
}

ListPage<Participation, RegistrantPlace> Statistics::registrants(const DeploymentRef &deployment,
                                                                 const TimeRange &range,
                                                                 const RegistrantPlace &after,
                                                                 qint64 limit)
{
    return readWhole(m_database, [&] {
        return readPage<Participation, RegistrantPlace>(
            m_database, listRegistrants, valuesOf(deployment, range) << after.at << after.userId,
            limit, [](const SqlRow &row) {
                return std::pair(participationOf(row),
                                 RegistrantPlace{row.integer(4), row.text(0)});
            });
    });
}

PageViewList Statistics::pageViews(const DeploymentRef &deployment, const TimeRange &range,
                                   const PageViewList::Place &after, qint64 limit)
{
    using View = PageViewList::View;
    using Place = PageViewList::Place;
    const HourCut cut(range);
    // No view has an empty id, so this is before the first one of the range.
    const Place begin = after.at < cut.from ? Place{cut.from, QByteArray()} : after;
    return readWhole(m_database, [&] {
        QList<qint64> persons;
        Place last;
        auto page = readPage<View, Place>(
            m_database, listViews,
            {deployment.accountId, deployment.number, begin.at, begin.id, cut.end}, limit,
            [&](const SqlRow &row) {
                persons << row.integer(1);
                last = {row.integer(0), row.bytes(4)};
                return std::pair(View{0, row.integer(0), row.integer(2), row.boolean(3)}, last);
            });
        PageViewList list{{}, std::move(page.rows), page.next};
        if (list.views.isEmpty())
            return list;
        QHash<qint64, qsizetype> positions;
        m_database.query(
            listPeople,
            {deployment.accountId, deployment.number, begin.at, begin.id, last.at, last.id},
            [&](const SqlRow &row) {
                positions.insert(row.integer(5), list.people.size());
                list.people << personOf(row);
            });
        for (qsizetype i = 0; i < list.views.size(); ++i)
            list.views[i].person = positions.value(persons.at(i));
        return list;
    });
}

} // namespace Zel
