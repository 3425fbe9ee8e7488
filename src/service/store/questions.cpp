// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/questions.h"

#include "service/store/bulktext.h"
#include "service/store/listpage.h"
#include "service/store/recordfile.h"

#include <QSet>
#include <QUuid>

namespace Zel {

namespace {

const QString submitted = QStringLiteral("SUBMITTED");
const QString staged = QStringLiteral("STAGED");
const QString answered = QStringLiteral("ANSWERED");

/// Of questions, whose texts may be long.
constexpr qint64 rowsAtOnce = 64;

const SqlText listUntimed(R"sql(
    SELECT q.guid, q.status, p.user_id, r.first_name, r.last_name, r.email, r.registered_at,
           q.question_text, q.answer_text, q.submitted_at, q.answered_at
    FROM question q
    JOIN audience_person p
        ON p.account_id = q.account_id AND p.dep_no = q.dep_no AND p.person_no = q.person_no
    LEFT JOIN registrant r
        ON r.account_id = q.account_id AND r.dep_no = q.dep_no AND r.person_no = q.person_no
    WHERE q.account_id = $1 AND q.dep_no = $2 AND q.submitted_at IS NULL AND q.guid > $3
    ORDER BY q.submitted_at NULLS FIRST, q.guid NULLS FIRST
    LIMIT $4
)sql");

const SqlText listTimed(R"sql(
    SELECT q.guid, q.status, p.user_id, r.first_name, r.last_name, r.email, r.registered_at,
           q.question_text, q.answer_text, q.submitted_at, q.answered_at
    FROM question q
    JOIN audience_person p
        ON p.account_id = q.account_id AND p.dep_no = q.dep_no AND p.person_no = q.person_no
    LEFT JOIN registrant r
        ON r.account_id = q.account_id AND r.dep_no = q.dep_no AND r.person_no = q.person_no
    WHERE q.account_id = $1 AND q.dep_no = $2
      AND (q.submitted_at, q.guid) > ($3, $4) AND q.submitted_at < $5
    ORDER BY q.submitted_at NULLS FIRST, q.guid NULLS FIRST
    LIMIT $6
)sql");

const BulkText addQuestions(R"sql(
    INSERT INTO question (account_id, guid, dep_no, person_no, status, question_text, answer_text,
                          submitted_at, answered_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)
    ON CONFLICT (account_id, guid) DO NOTHING
    RETURNING guid
)sql");

const SqlText findQuestion(R"sql(
    SELECT dep_no, person_no, status, submitted_at FROM question
    WHERE account_id = $1 AND guid = $2
)sql");

const SqlText changeTexts(R"sql(
    UPDATE question SET question_text = $4,
        answered_at = CASE WHEN answer_text = $3 THEN answered_at ELSE $5 END, answer_text = $3
    WHERE account_id = $1 AND guid = $2
)sql");

const SqlText changeStatus(R"sql(
    UPDATE question SET status = $3 WHERE account_id = $1 AND guid = $2
)sql");

struct Found
{
    qint64 depNo = 0;
    qint64 personNo = 0;
    QString status;
    std::optional<qint64> submittedAt;
};

std::optional<Found> find(Database &database, qint64 accountId, const QString &guid)
{
    return database.row(findQuestion, {accountId, guid}, [](const SqlRow &row) {
        return Found{row.integer(0), row.integer(1), row.text(2), row.optionalInteger(3)};
    });
}

StoredQuestion questionOf(const SqlRow &row)
{
    const auto textOrEmpty = [&row](int column) {
        return row.optionalText(column).value_or(QString());
    };
    return {row.text(0),
            row.text(1),
            {row.text(2), textOrEmpty(3), textOrEmpty(4), textOrEmpty(5), row.optionalInteger(6)},
            row.text(7),
            row.text(8),
            row.optionalInteger(9),
            row.optionalInteger(10)};
}

} // namespace

AskedQuestion questionIn(FileRecord &record)
{
    AskedQuestion question;
    question.guid = record.guid(QStringLiteral("id"));
    question.userId = record.text(QStringLiteral("user"), longestUserId);
    // Only a moderator can leave a question without words.
    question.text = record.has(QStringLiteral("status"))
                        ? record.textOrEmpty(QStringLiteral("text"), longestQuestion)
                        : record.text(QStringLiteral("text"), longestQuestion);
    question.at = record.timeOrEmpty(QStringLiteral("at"));
    question.status = submitted;
    if (record.has(QStringLiteral("status")))
        question.status = record.text(QStringLiteral("status"), longestAttribute);
    if (record.has(QStringLiteral("answer")))
        question.answer = record.textOrEmpty(QStringLiteral("answer"), longestQuestion);
    if (record.has(QStringLiteral("answered")))
        question.answeredAt = record.timeOrEmpty(QStringLiteral("answered"));
    record.expectNoMore();
    if (!Questions::isStatus(question.status))
        record.refuse(QStringLiteral("\"status\" is no state of a question."));
    return question;
}

QString Questions::escaped(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'&':
            result += QLatin1String("&amp;");
            break;
        case u'<':
            result += QLatin1String("&lt;");
            break;
        case u'>':
            result += QLatin1String("&gt;");
            break;
        case u'"':
            result += QLatin1String("&quot;");
            break;
        case u'\'':
            result += QLatin1String("&apos;");
            break;
        default:
            result += c;
        }
    }
    return result;
}

QString Questions::unescaped(const QString &text)
{
    QString result = text;
    // "&" last: what it brings about is no entity.
    for (const auto &[entity, character] :
         {std::pair("&apos;", '\''), {"&quot;", '"'}, {"&gt;", '>'}, {"&lt;", '<'}, {"&amp;", '&'}})
        result.replace(QLatin1String(entity), QString(QLatin1Char(character)));
    return result;
}

bool Questions::isModeration(const QString &status)
{
    return status == staged || status == QLatin1String("RETRACT") ||
           status == QLatin1String("DELETE");
}

bool Questions::isPlayback(const QString &status)
{
    return status == QLatin1String("PUBLISH") || status == answered;
}

bool Questions::isStatus(const QString &status)
{
    return status == submitted || isModeration(status) || isPlayback(status);
}

void Questions::visitAfter(const DeploymentRef &deployment, const TimeRange &range,
                           const Place &after, const Visitor &visit)
{
    const HourCut cut(range);
    const auto entryOf = [](const SqlRow &row) {
        const StoredQuestion question = questionOf(row);
        return std::pair(question, Place{question.submittedAt, question.guid});
    };
    bool goesOn = true;
    const auto show = [&](const StoredQuestion &question, const Place &place) {
        goesOn = visit(question, place);
        return goesOn;
    };
    if (!after.submittedAt)
        readInBatches<StoredQuestion, Place>(
            m_database, listUntimed, rowsAtOnce, after,
            [&](const Place &place) {
                return SqlValues{deployment.accountId, deployment.number, place.guid};
            },
            entryOf, show);
    if (!goesOn)
        return;
    const bool isBefore = after.submittedAt.value_or(cut.from) < cut.from;
    // No question has an empty guid, so this is before the first one of the range.
    const Place begin = isBefore || !after.submittedAt ? Place{cut.from, QString()} : after;
    readInBatches<StoredQuestion, Place>(
        m_database, listTimed, rowsAtOnce, begin,
        [&](const Place &place) {
            return SqlValues{deployment.accountId, deployment.number, place.submittedAt, place.guid,
                             cut.end};
        },
        entryOf, show);
}

QList<StoredQuestion> Questions::list(const DeploymentRef &deployment, const TimeRange &range)
{
    return m_database.snapshot([&] {
        QList<StoredQuestion> questions;
        visitAfter(deployment, range, {}, [&](const StoredQuestion &question, const Place &) {
            questions << question;
            return true;
        });
        return questions;
    });
}

bool Questions::update(qint64 accountId, const QString &guid, const QString &answer,
                       const QString &question)
{
    const std::optional<qint64> answeredAt =
        answer.isEmpty() ? std::nullopt : std::optional<qint64>(m_clock());
    return m_database.tx([&] {
        return m_database.exec(changeTexts, {accountId, guid, escaped(answer), escaped(question),
                                             answeredAt}) > 0;
    });
}

bool Questions::setStatus(qint64 accountId, const QString &guid, const QString &status)
{
    return m_database.tx([&] {
        return m_database.exec(changeStatus, {accountId, guid, status}) > 0;
    });
}

Intake Questions::take(const DeploymentRef &deployment, const QList<AskedQuestion> &questions)
{
    return m_database.tx([&] {
        QStringList userIds;
        QList<SqlValues> rows;
        for (const AskedQuestion &question : questions) {
            userIds << question.userId;
            rows << SqlValues{deployment.accountId,        question.guid,   deployment.number,
                              numberOf({question.userId}), question.status, escaped(question.text),
                              escaped(question.answer),    question.at,     question.answeredAt};
        }
        storePeople(m_database, deployment, userIds);
        QSet<QString> added;
        addQuestions.insert(m_database, rows,
                            [&](const SqlRow &row) { added.insert(row.text(0)); });
        Intake intake;
        for (qsizetype i = 0; i < questions.size(); ++i) {
            const AskedQuestion &question = questions.at(i);
            if (added.remove(question.guid)) {
                ++intake.added;
                continue;
            }
            // A moderator may have reworded it since.
            const Found found = find(m_database, deployment.accountId, question.guid).value();
            if (found.depNo == deployment.number && found.personNo == numberOf({question.userId}) &&
                found.submittedAt == question.at)
                ++intake.known;
            else
                intake.refused.append({i, QStringLiteral("another row has this id.")});
        }
        return intake;
    });
}

Questions::Played Questions::setPlayed(const DeploymentRef &deployment, const QString &guid,
                                       const QString &status)
{
    return m_database.tx([&] {
        const auto found = find(m_database, deployment.accountId, guid);
        if (!found || found->depNo != deployment.number)
            return Played::Unknown;
        if (found->status == status || found->status == answered)
            return Played::Known;
        if (found->status != staged && !isPlayback(found->status))
            return Played::NotStaged;
        m_database.exec(changeStatus, {deployment.accountId, guid, status});
        return Played::Done;
    });
}

} // namespace Zel
