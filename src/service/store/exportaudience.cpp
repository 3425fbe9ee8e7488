// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What happened in deployments.
#include "service/store/exportjob.h"
#include "service/store/listpage.h"
#include "service/store/store.h"

#include <QJsonObject>

namespace Zel {

namespace {

// The rows of a page first, then the people in it: joined the other way round, a database without
// statistics would go through everybody for every page.
const SqlText pageOfViews(R"sql(
    SELECT v.view_id, p.user_id, v.view_at, v.time_spent, v.closed, v.profile_no
    FROM (SELECT account_id, dep_no, view_id, person_no, view_at, time_spent, closed, profile_no
          FROM page_view
          WHERE account_id = $1 AND dep_no = $2 AND view_id > $3
          ORDER BY view_id NULLS FIRST LIMIT $4) v
    JOIN audience_person p
        ON p.account_id = $1 AND p.dep_no = v.dep_no AND p.person_no = v.person_no
    ORDER BY v.view_id NULLS FIRST
)sql");

const SqlText listProfiles(R"sql(
    SELECT profile_no, browser_type, js_version, screen_depth FROM view_profile
    WHERE account_id = $1 AND dep_no = $2
)sql");

const SqlText pageOfRegistrants(R"sql(
    SELECT r.registration_id, p.user_id, r.first_name, r.last_name, r.email, r.registered_at
    FROM (SELECT account_id, dep_no, registration_id, person_no, first_name, last_name, email,
                 registered_at
          FROM registrant
          WHERE account_id = $1 AND dep_no = $2 AND registration_id > $3
          ORDER BY registration_id NULLS FIRST LIMIT $4) r
    JOIN audience_person p
        ON p.account_id = $1 AND p.dep_no = r.dep_no AND p.person_no = r.person_no
    ORDER BY r.registration_id NULLS FIRST
)sql");

const SqlText pageOfQuestions(R"sql(
    SELECT q.guid, p.user_id, q.question_text, q.submitted_at, q.status, q.answer_text,
           q.answered_at
    FROM (SELECT account_id, dep_no, guid, person_no, question_text, submitted_at, status,
                 answer_text, answered_at
          FROM question
          WHERE account_id = $1 AND dep_no = $2 AND guid > $3
          ORDER BY guid NULLS FIRST LIMIT $4) q
    JOIN audience_person p
        ON p.account_id = $1 AND p.dep_no = q.dep_no AND p.person_no = q.person_no
    ORDER BY q.guid NULLS FIRST
)sql");

const SqlText pageOfVotes(R"sql(
    SELECT vote_id, user_guid, question_no, answer_no, voted_at, arrived FROM poll_vote
    WHERE account_id = $1 AND dep_no = $2
      AND (arrived, vote_id) > ($3, $4)
    ORDER BY arrived NULLS FIRST, vote_id NULLS FIRST LIMIT $5
)sql");

const SqlText pageOfReplies(R"sql(
    SELECT response_id, user_guid, question_no, answers, answered_at, arrived FROM survey_response
    WHERE account_id = $1 AND dep_no = $2 AND survey_no = $3
      AND (arrived, response_id) > ($4, $5)
    ORDER BY arrived NULLS FIRST, response_id NULLS FIRST LIMIT $6
)sql");

const QString id = QStringLiteral("id");
const QString user = QStringLiteral("user");
const QString at = QStringLiteral("at");

/// The audience of one deployment.
class AudienceExport
{
public:
    AudienceExport(ExportJob &job, const DeploymentRef &deployment, const QString &folder)
        : m_job(job)
        , m_database(job.store.database)
        , m_deployment(deployment)
        , m_folder(folder + QLatin1Char('/'))
    {
    }

    bool run()
    {
        exportRegistrants();
        exportViews();
        exportQuestions();
        exportPolls();
        exportSurveys();
        return m_hasAny;
    }

private:
    LazyCsv list(const QString &name, const QStringList &columns)
    {
        return LazyCsv(m_job.folder, m_folder + name + QLatin1String(".csv"), columns);
    }

    void finish(LazyCsv &list, const QString &kind)
    {
        list.finish();
        m_job.count(kind, list.lines());
        m_hasAny = m_hasAny || list.lines() > 0;
    }

    /// Writes the rows of one kind after the other into a list.
    /// @param lineOf turns a row into its line and its key
    template <class Key, class Values, class LineOf>
    void write(LazyCsv &list, const QString &kind, const SqlText &page, qint64 rowsAtOnce,
               const Values &valuesAfter, const LineOf &lineOf)
    {
        readInBatches<QStringList, Key>(m_database, page, rowsAtOnce, Key(), valuesAfter, lineOf,
                                        [&](const QStringList &line, const Key &) {
                                            list.add(line);
                                            tell(m_job.options.progress, kind, list.lines());
                                            return true;
                                        });
    }

    /// The same in order of their id, which is the first column.
    template <class Id, class LineOf>
    void writeById(LazyCsv &list, const QString &kind, const SqlText &page, qint64 rowsAtOnce,
                   const LineOf &lineOf)
    {
        write<Id>(
            list, kind, page, rowsAtOnce,
            [this](const Id &last) {
                return SqlValues{m_deployment.accountId, m_deployment.number, last};
            },
            [&lineOf](const SqlRow &row) {
                if constexpr (std::is_same_v<Id, QByteArray>)
                    return std::pair(lineOf(row), row.bytes(0));
                else
                    return std::pair(lineOf(row), row.text(0));
            });
    }

    void exportRegistrants()
    {
        const QString kind = QStringLiteral("registrants");
        LazyCsv rows = list(kind, {id, user, QStringLiteral("firstName"),
                                   QStringLiteral("lastName"), QStringLiteral("email"), at});
        writeById<QByteArray>(
            rows, kind, pageOfRegistrants, exportRowsAtOnce, [](const SqlRow &row) {
                return QStringList{idText(row.bytes(0)), row.text(1), row.text(2),
                                   row.text(3),          row.text(4), timeText(row.integer(5))};
            });
        finish(rows, kind);
    }

    void exportViews()
    {
        const QString kind = QStringLiteral("page views");
        LazyCsv rows = list(QStringLiteral("page-views"),
                            {id, user, at, QStringLiteral("timeSpent"), QStringLiteral("closed"),
                             QStringLiteral("browserType"), QStringLiteral("jsVersion"),
                             QStringLiteral("screenDepth")});
        QHash<qint64, QStringList> profiles;
        m_database.query(
            listProfiles, {m_deployment.accountId, m_deployment.number},
            [&profiles](const SqlRow &row) {
                profiles.insert(row.integer(0), {row.text(1), row.text(2), row.text(3)});
            });
        writeById<QByteArray>(
            rows, kind, pageOfViews, exportRowsAtOnce, [&profiles](const SqlRow &row) {
                return QStringList{idText(row.bytes(0)), row.text(1), timeText(row.integer(2)),
                                   QString::number(row.integer(3)), flagText(row.boolean(4))} +
                       profiles.value(row.integer(5));
            });
        finish(rows, kind);
    }

    void exportQuestions()
    {
        const QString kind = QStringLiteral("questions");
        LazyCsv rows = list(kind, {id, user, QStringLiteral("text"), at, QStringLiteral("status"),
                                   QStringLiteral("answer"), QStringLiteral("answered")});
        writeById<QString>(rows, kind, pageOfQuestions, longRowsAtOnce, [](const SqlRow &row) {
            return QStringList{row.text(0),
                               row.text(1),
                               Questions::unescaped(row.text(2)),
                               timeText(row.optionalInteger(3)),
                               row.text(4),
                               Questions::unescaped(row.text(5)),
                               timeText(row.optionalInteger(6))};
        });
        finish(rows, kind);
    }

    void exportPolls()
    {
        const QList<Poll> polls = m_job.store.polls.list(m_deployment);
        if (polls.isEmpty())
            return;
        QJsonArray records;
        for (const Poll &poll : polls) {
            QJsonArray answers;
            for (const PollChoice &choice : poll.choices)
                answers << QJsonObject{{QStringLiteral("guid"), choice.guid},
                                       {QStringLiteral("answer"), choice.text}};
            records << QJsonObject{{QStringLiteral("guid"), poll.guid},
                                   {QStringLiteral("question"), poll.text},
                                   {QStringLiteral("multiple"), poll.multiple},
                                   {QStringLiteral("answers"), answers}};
        }
        m_job.writeJson(m_folder + QLatin1String("polls.json"), records);
        m_hasAny = true;
        exportVotes(polls);
    }

    void exportVotes(const QList<Poll> &polls)
    {
        const QString kind = QStringLiteral("votes");
        LazyCsv rows = list(kind, {id, user, QStringLiteral("poll"), QStringLiteral("answer"), at});
        write<ArrivalPlace>(
            rows, kind, pageOfVotes, exportRowsAtOnce,
            [this](const ArrivalPlace &after) {
                return SqlValues{m_deployment.accountId, m_deployment.number, after.arrived,
                                 after.id};
            },
            [&polls](const SqlRow &row) {
                const Poll &poll = polls.at(row.integer(2) - 1);
                return std::pair(QStringList{idText(row.bytes(0)), row.text(1), poll.guid,
                                             poll.choices.at(row.integer(3) - 1).guid,
                                             timeText(row.integer(4))},
                                 ArrivalPlace{row.integer(5), row.bytes(0)});
            });
        finish(rows, kind);
    }

    void exportSurveys()
    {
        const QList<Survey> surveys = m_job.store.surveys.list(m_deployment);
        if (surveys.isEmpty())
            return;
        QJsonArray records;
        for (const Survey &survey : surveys)
            records << recordOf(survey);
        m_job.writeJson(m_folder + QLatin1String("surveys.json"), records);
        m_hasAny = true;
        LazyCsv rows = list(QStringLiteral("responses"),
                            {id, user, QStringLiteral("survey"), QStringLiteral("question"),
                             QStringLiteral("answers"), at});
        for (qint64 number = 1; number <= surveys.size(); ++number)
            exportReplies(rows, surveys.at(number - 1), number);
        finish(rows, QStringLiteral("responses"));
    }

    static QJsonObject recordOf(const Survey &survey)
    {
        QJsonArray questions;
        for (const SurveyItem &item : survey.items) {
            QJsonArray answers;
            for (const SurveyChoice &choice : item.choices)
                answers << QJsonObject{{QStringLiteral("guid"), choice.guid},
                                       {QStringLiteral("answer"), choice.text},
                                       {QStringLiteral("correct"), choice.correct},
                                       {QStringLiteral("row"), choice.row},
                                       {QStringLiteral("col"), choice.col}};
            questions << QJsonObject{{QStringLiteral("guid"), item.guid},
                                     {QStringLiteral("question"), item.text},
                                     {QStringLiteral("multiple"), item.multiple},
                                     {QStringLiteral("colCount"), item.colCount},
                                     {QStringLiteral("answers"), answers}};
        }
        return {{QStringLiteral("guid"), survey.guid},
                {QStringLiteral("name"), survey.name},
                {QStringLiteral("questions"), questions}};
    }

    void exportReplies(LazyCsv &rows, const Survey &survey, qint64 number)
    {
        write<ArrivalPlace>(
            rows, QStringLiteral("responses"), pageOfReplies, exportRowsAtOnce,
            [&](const ArrivalPlace &after) {
                return SqlValues{m_deployment.accountId, m_deployment.number, number, after.arrived,
                                 after.id};
            },
            [&survey](const SqlRow &row) {
                const SurveyItem &item = survey.items.at(row.integer(2) - 1);
                return std::pair(QStringList{idText(row.bytes(0)), row.text(1), survey.guid,
                                             item.guid, guidsOf(item, row.text(3)),
                                             timeText(row.integer(4))},
                                 ArrivalPlace{row.integer(5), row.bytes(0)});
            });
    }

    /// "1:3" as the guids of these choices.
    static QString guidsOf(const SurveyItem &item, const QString &numbers)
    {
        QStringList guids;
        const QStringList all = numbers.split(QLatin1Char(':'));
        for (const QString &number : all)
            guids << item.choices.at(number.toLongLong() - 1).guid;
        return guids.join(QLatin1Char(':'));
    }

    ExportJob &m_job;
    Database &m_database;
    DeploymentRef m_deployment;
    QString m_folder;
    bool m_hasAny = false;
};

} // namespace

bool exportAudience(ExportJob &job, const DeploymentRef &deployment, const QString &folder)
{
    return AudienceExport(job, deployment, folder).run();
}

} // namespace Zel
