// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/surveys.h"

#include "service/store/bulktext.h"
#include "service/store/recordfile.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace Zel {

namespace {

constexpr qsizetype longestGuid = 36;

const SqlText listSurveys(R"sql(
    SELECT guid, name FROM survey
    WHERE account_id = $1 AND dep_no = $2
    ORDER BY survey_no NULLS FIRST
)sql");

const SqlText listItems(R"sql(
    SELECT survey_no, guid, question_text, multiple, col_count FROM survey_question
    WHERE account_id = $1 AND dep_no = $2
    ORDER BY survey_no NULLS FIRST, question_no NULLS FIRST
)sql");

const SqlText listChoices(R"sql(
    SELECT survey_no, question_no, guid, answer_text, correct, row_no, col_no FROM survey_answer
    WHERE account_id = $1 AND dep_no = $2
    ORDER BY survey_no NULLS FIRST, question_no NULLS FIRST, answer_no NULLS FIRST
)sql");

const SqlText countAnswers(R"sql(
    SELECT survey_no, question_no, answers, COUNT(*) FROM survey_response
    WHERE account_id = $1 AND dep_no = $2
    GROUP BY survey_no, question_no, answers
)sql");

const SqlText listReplies(R"sql(
    SELECT user_guid, question_no, answers, answered_at, arrived, response_id FROM survey_response
    WHERE account_id = $1 AND dep_no = $2 AND survey_no = $3 AND (arrived, response_id) > ($4, $5)
    ORDER BY arrived NULLS FIRST, response_id NULLS FIRST
    LIMIT $6
)sql");

const SqlText findReply(R"sql(
    SELECT survey_no, question_no, user_guid, answers FROM survey_response
    WHERE account_id = $1 AND dep_no = $2 AND response_id = $3
)sql");

const BulkText addReplies(R"sql(
    INSERT INTO survey_response (account_id, dep_no, response_id, survey_no, question_no, user_guid,
                                 answers, answered_at, arrived)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)
    ON CONFLICT DO NOTHING
    RETURNING response_id
)sql");

const SqlText dropSurveys(R"sql(
    DELETE FROM survey WHERE account_id = $1 AND dep_no = $2
)sql");

const SqlText dropItems(R"sql(
    DELETE FROM survey_question WHERE account_id = $1 AND dep_no = $2
)sql");

const SqlText dropChoices(R"sql(
    DELETE FROM survey_answer WHERE account_id = $1 AND dep_no = $2
)sql");

const BulkText addSurveys(R"sql(
    INSERT INTO survey (account_id, dep_no, survey_no, guid, name)
    VALUES ($1, $2, $3, $4, $5)
)sql");

const BulkText addItems(R"sql(
    INSERT INTO survey_question (account_id, dep_no, survey_no, question_no, guid, question_text,
                                 multiple, col_count)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8)
)sql");

const BulkText addChoices(R"sql(
    INSERT INTO survey_answer (account_id, dep_no, survey_no, question_no, answer_no, guid,
                               answer_text, correct, row_no, col_no)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10)
)sql");

QList<qint64> numbersIn(const QString &answers)
{
    QList<qint64> numbers;
    for (const QString &number : answers.split(QLatin1Char(':')))
        numbers << number.toLongLong();
    return numbers;
}

/// Where a reply goes: the numbers of survey and question, and its choices as they are stored.
struct Place
{
    qint64 surveyNo = 0;
    qint64 itemNo = 0;
    QString answers;
};

/// Finds the places of replies by guids.
class Places
{
public:
    explicit Places(const QList<Survey> &surveys)
        : m_surveys(surveys)
    {
        for (qsizetype survey = 0; survey < surveys.size(); ++survey) {
            const QList<SurveyItem> &items = surveys.at(survey).items;
            for (qsizetype item = 0; item < items.size(); ++item)
                m_items.insert(surveys.at(survey).guid + QLatin1Char('/') + items.at(item).guid,
                               {survey, item});
        }
    }

    /// The place, or why there is none.
    std::optional<Place> find(const SurveyReply &reply, QString &fault) const
    {
        const auto found = m_items.constFind(reply.surveyGuid + QLatin1Char('/') + reply.itemGuid);
        if (found == m_items.cend()) {
            fault = QStringLiteral("there is no such survey or question.");
            return std::nullopt;
        }
        const auto [surveyAt, itemAt] = *found;
        const SurveyItem &item = m_surveys.at(surveyAt).items.at(itemAt);
        QStringList numbers;
        for (qsizetype at = 0; at < item.choices.size(); ++at) {
            const QString number = QString::number(at + 1);
            if (reply.choiceGuids.contains(item.choices.at(at).guid) ||
                reply.choiceGuids.contains(number))
                numbers << number;
        }
        if (numbers.isEmpty() || numbers.size() != reply.choiceGuids.size())
            fault = QStringLiteral("\"answers\" names none, an unknown or a repeated answer.");
        else if (numbers.size() > 1 && !item.multiple)
            fault = QStringLiteral("the question takes one answer.");
        else
            return Place{surveyAt + 1, itemAt + 1, numbers.join(QLatin1Char(':'))};
        return std::nullopt;
    }

private:
    const QList<Survey> &m_surveys;
    QHash<QString, std::pair<qsizetype, qsizetype>> m_items;
};

/// Replies as they are read. Equal respondents and answers get one position each.
class ReplyGathering
{
public:
    SurveyReplyList::Reply reply(const SqlRow &row)
    {
        const QString user = row.text(0);
        const std::pair answer(row.integer(1) - 1, row.text(2));
        const qsizetype userAt = positionOf(m_users, user);
        const qsizetype answerAt = positionOf(m_answers, answer);
        if (userAt == m_list.users.size())
            m_list.users << user;
        if (answerAt == m_list.answers.size())
            m_list.answers.append({answer.first, numbersIn(answer.second)});
        return {userAt, answerAt, row.integer(3)};
    }

    SurveyReplyList taken(ListPage<SurveyReplyList::Reply, ArrivalPlace> &&page)
    {
        m_list.replies = std::move(page.rows);
        m_list.next = page.next;
        return std::move(m_list);
    }

private:
    template <class Key>
    static qsizetype positionOf(QHash<Key, qsizetype> &known, const Key &key)
    {
        const auto found = known.constFind(key);
        return found != known.cend() ? *found : *known.insert(key, known.size());
    }

    QHash<QString, qsizetype> m_users;
    QHash<std::pair<qint64, QString>, qsizetype> m_answers;
    SurveyReplyList m_list;
};

/// What responses rest on.
QStringList placesIn(const Survey &survey)
{
    QStringList places{survey.guid};
    for (const SurveyItem &item : survey.items) {
        places << item.guid << QString::number(item.colCount);
        for (const SurveyChoice &choice : item.choices)
            places << choice.guid << QString::number(item.positionOf(choice));
    }
    return places;
}

} // namespace

SurveyReply surveyReplyIn(FileRecord &record)
{
    const QString answers = QStringLiteral("answers");
    constexpr qsizetype longestAnswers = Surveys::mostChoices * (longestGuid + 1);
    SurveyReply reply;
    reply.userGuid = record.text(QStringLiteral("user"), longestUserId);
    reply.surveyGuid = record.text(QStringLiteral("survey"), longestGuid).toLower();
    reply.itemGuid = record.text(QStringLiteral("question"), longestGuid).toLower();
    if (record.fields.value(answers).isArray()) {
        const QJsonArray list = record.list(answers);
        for (const QJsonValue &guid : list)
            reply.choiceGuids << guid.toString().toLower();
    } else {
        reply.choiceGuids = record.text(answers, longestAnswers).toLower().split(QLatin1Char(':'));
    }
    reply.at = record.time(QStringLiteral("at"));
    reply.id = rowIdIn(record, {reply.surveyGuid, reply.itemGuid, reply.userGuid});
    record.expectNoMore();
    return reply;
}

QList<Survey> Surveys::definitions(const DeploymentRef &deployment)
{
    const SqlValues key{deployment.accountId, deployment.number};
    QList<Survey> surveys = m_database.rows(listSurveys, key, [](const SqlRow &row) {
        return Survey{row.text(0), row.text(1), {}};
    });
    m_database.query(listItems, key, [&](const SqlRow &row) {
        surveys[row.integer(0) - 1].items.append(
            {row.text(1), row.text(2), row.boolean(3), row.integer(4), {}});
    });
    m_database.query(listChoices, key, [&](const SqlRow &row) {
        surveys[row.integer(0) - 1].items[row.integer(1) - 1].choices.append(
            {row.text(2), row.text(3), row.boolean(4), row.integer(5), row.integer(6), 0});
    });
    return surveys;
}

QList<Survey> Surveys::list(const DeploymentRef &deployment)
{
    return m_database.snapshot([&] {
        QList<Survey> surveys = definitions(deployment);
        m_database.query(
            countAnswers, {deployment.accountId, deployment.number}, [&](const SqlRow &row) {
                SurveyItem &item = surveys[row.integer(0) - 1].items[row.integer(1) - 1];
                for (const qint64 number : numbersIn(row.text(2)))
                    item.choices[number - 1].respondents += row.integer(3);
            });
        return surveys;
    });
}

std::optional<SurveyReplyList> Surveys::replies(const DeploymentRef &deployment,
                                                const QString &surveyGuid,
                                                const ArrivalPlace &after, qint64 limit)
{
    return m_database.snapshot([&]() -> std::optional<SurveyReplyList> {
        const QStringList guids =
            m_database.rows(listSurveys, {deployment.accountId, deployment.number},
                            [](const SqlRow &row) { return row.text(0); });
        const qint64 surveyNo = guids.indexOf(surveyGuid) + 1;
        if (surveyNo == 0)
            return std::nullopt;
        ReplyGathering list;
        auto page = readPage<SurveyReplyList::Reply, ArrivalPlace>(
            m_database, listReplies,
            {deployment.accountId, deployment.number, surveyNo, after.arrived, after.id}, limit,
            [&](const SqlRow &row) {
                return std::pair(list.reply(row), ArrivalPlace{row.integer(4), row.bytes(5)});
            });
        return list.taken(std::move(page));
    });
}

Intake Surveys::take(const DeploymentRef &deployment, const QList<SurveyReply> &replies)
{
    return m_database.tx([&] {
        const QList<Survey> surveys = definitions(deployment);
        const Places places(surveys);
        const qint64 now = m_clock();
        Intake intake;
        QList<SqlValues> rows;
        QList<std::pair<qsizetype, Place>> taken;
        for (qsizetype i = 0; i < replies.size(); ++i) {
            const SurveyReply &reply = replies.at(i);
            QString fault;
            const auto place = places.find(reply, fault);
            if (!place) {
                intake.refused.append({i, fault});
                continue;
            }
            taken.append({i, *place});
            rows << SqlValues{deployment.accountId, deployment.number, reply.id,
                              place->surveyNo,      place->itemNo,     reply.userGuid,
                              place->answers,       reply.at,          arrival(now, i)};
        }
        QSet<QByteArray> added;
        addReplies.insert(m_database, rows, [&](const SqlRow &row) { added.insert(row.bytes(0)); });
        for (const auto &[i, place] : std::as_const(taken)) {
            const SurveyReply &reply = replies.at(i);
            if (added.remove(reply.id)) {
                ++intake.added;
                continue;
            }
            const auto stored = m_database.row(
                findReply, {deployment.accountId, deployment.number, reply.id},
                [](const SqlRow &row) {
                    return std::tuple(row.integer(0), row.integer(1), row.text(2), row.text(3));
                });
            if (!stored)
                intake.refused.append({i, QStringLiteral("\"%1\" has answered this question "
                                                         "already.")
                                              .arg(reply.userGuid)});
            else if (*stored ==
                     std::tuple(place.surveyNo, place.itemNo, reply.userGuid, place.answers))
                ++intake.known;
            else
                intake.refused.append({i, QStringLiteral("another row has this id.")});
        }
        std::sort(intake.refused.begin(), intake.refused.end(),
                  [](const Intake::Refusal &a, const Intake::Refusal &b) { return a.row < b.row; });
        return intake;
    });
}

bool Surveys::define(const DeploymentRef &deployment, const QList<Survey> &surveys)
{
    const SqlValues key{deployment.accountId, deployment.number};
    const QList<Survey> before = definitions(deployment);
    bool fits = true;
    m_database.query(countAnswers, key, [&](const SqlRow &row) {
        const qsizetype at = row.integer(0) - 1;
        fits = fits && at < surveys.size() && placesIn(before.at(at)) == placesIn(surveys.at(at));
    });
    if (!fits)
        return false;
    m_database.exec(dropChoices, key);
    m_database.exec(dropItems, key);
    m_database.exec(dropSurveys, key);
    QList<SqlValues> surveyRows;
    QList<SqlValues> itemRows;
    QList<SqlValues> choiceRows;
    for (const Survey &survey : surveys) {
        const qint64 surveyNo = surveyRows.size() + 1;
        surveyRows << SqlValues{deployment.accountId, deployment.number, surveyNo, survey.guid,
                                survey.name};
        qint64 itemNo = 0;
        for (const SurveyItem &item : survey.items) {
            itemRows << SqlValues{
                deployment.accountId, deployment.number, surveyNo, ++itemNo, item.guid, item.text,
                item.multiple,        item.colCount};
            qint64 choiceNo = 0;
            for (const SurveyChoice &choice : item.choices)
                choiceRows << SqlValues{
                    deployment.accountId, deployment.number, surveyNo,    itemNo,
                    ++choiceNo,           choice.guid,       choice.text, choice.correct,
                    choice.row,           choice.col};
        }
    }
    addSurveys.insert(m_database, surveyRows);
    addItems.insert(m_database, itemRows);
    addChoices.insert(m_database, choiceRows);
    return true;
}

} // namespace Zel
