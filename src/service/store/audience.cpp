// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/audience.h"

#include "service/store/bulktext.h"
#include "service/store/database.h"
#include "service/store/recordfile.h"

#include <QCryptographicHash>
#include <QSet>
#include <QUuid>

#include <limits>

namespace Zel {

namespace {

constexpr qsizetype longestGuid = 36;
constexpr int idBytes = 16;

const BulkText addPeople(R"sql(
    INSERT INTO audience_person (account_id, dep_no, person_no, user_id)
    VALUES ($1, $2, $3, $4)
    ON CONFLICT (account_id, dep_no, person_no) DO NOTHING
)sql");

const BulkText addRegistrants(R"sql(
    INSERT INTO registrant (account_id, dep_no, person_no, registration_id, first_name, last_name,
                            email, registered_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8)
    ON CONFLICT DO NOTHING
    RETURNING registration_id
)sql");

const SqlText findRegistration(R"sql(
    SELECT p.user_id, r.first_name, r.last_name, r.email, r.registered_at
    FROM registrant r
    JOIN audience_person p
        ON p.account_id = r.account_id AND p.dep_no = r.dep_no AND p.person_no = r.person_no
    WHERE r.account_id = $1 AND r.dep_no = $2 AND r.registration_id = $3
)sql");

/// The beginning of the hash of texts, each told apart from the next.
QByteArray hashOf(const QStringList &texts)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &text : texts) {
        const QByteArray bytes = text.toUtf8();
        hash.addData(QByteArray::number(bytes.size()) + ':');
        hash.addData(bytes);
    }
    return hash.result();
}

/// What is refused of a row whose id is stored with something else.
QString otherRow()
{
    return QStringLiteral("another row has this id.");
}

} // namespace

QByteArray contentId(const QStringList &content)
{
    return hashOf(content).left(idBytes);
}

QByteArray rowIdIn(FileRecord &record, const QStringList &content)
{
    const QString id = record.has(QStringLiteral("id"))
                           ? record.textOrEmpty(QStringLiteral("id"), longestGuid)
                           : QString();
    if (id.isEmpty())
        return contentId(content);
    return QUuid::fromString(record.guid(QStringLiteral("id"))).toRfc4122();
}

PageView pageViewIn(FileRecord &record)
{
    constexpr qint64 longestTime = std::numeric_limits<qint32>::max();
    PageView view;
    view.userId = record.text(QStringLiteral("user"), longestUserId);
    view.at = record.time(QStringLiteral("at"));
    view.seconds = record.integer(QStringLiteral("timeSpent"), 0, longestTime);
    view.closed = record.boolean(QStringLiteral("closed"));
    view.browserType = record.textOrEmpty(QStringLiteral("browserType"), longestAttribute);
    view.jsVersion = record.textOrEmpty(QStringLiteral("jsVersion"), longestAttribute);
    view.screenDepth = record.textOrEmpty(QStringLiteral("screenDepth"), longestAttribute);
    view.id = rowIdIn(record, {view.userId, QString::number(view.at), view.browserType,
                               view.jsVersion, view.screenDepth});
    record.expectNoMore();
    return view;
}

Registration registrationIn(FileRecord &record)
{
    Registration row;
    row.userId = record.text(QStringLiteral("user"), longestUserId);
    row.firstName = record.textOrEmpty(QStringLiteral("firstName"), longestPersonName);
    row.lastName = record.textOrEmpty(QStringLiteral("lastName"), longestPersonName);
    row.email = record.textOrEmpty(QStringLiteral("email"), longestEmail);
    row.at = record.time(QStringLiteral("at"));
    row.id = rowIdIn(record, {row.userId});
    record.expectNoMore();
    return row;
}

qint64 numberOf(const QStringList &texts)
{
    quint64 number = 0;
    const QByteArray hash = hashOf(texts);
    for (int i = 0; i < 8; ++i)
        number = number << 8 | static_cast<quint8>(hash.at(i));
    return static_cast<qint64>(number >> 1);
}

void storePeople(Database &database, const DeploymentRef &deployment, const QStringList &userIds)
{
    QSet<QString> seen;
    QList<SqlValues> people;
    for (const QString &userId : userIds) {
        if (seen.contains(userId))
            continue;
        seen.insert(userId);
        people << SqlValues{deployment.accountId, deployment.number, numberOf({userId}), userId};
    }
    addPeople.insert(database, people);
}

Intake Audience::takeRegistrations(const DeploymentRef &deployment, const QList<Registration> &rows)
{
    return m_database.tx([&] {
        QList<SqlValues> values;
        QStringList userIds;
        for (const Registration &row : rows) {
            userIds << row.userId;
            values << SqlValues{deployment.accountId,
                                deployment.number,
                                numberOf({row.userId}),
                                row.id,
                                row.firstName,
                                row.lastName,
                                row.email,
                                row.at};
        }
        storePeople(m_database, deployment, userIds);
        QSet<QByteArray> added;
        addRegistrants.insert(m_database, values,
                              [&](const SqlRow &row) { added.insert(row.bytes(0)); });
        Intake intake;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const Registration &row = rows.at(i);
            if (added.remove(row.id)) {
                ++intake.added;
                continue;
            }
            const auto stored = m_database.row(
                findRegistration, {deployment.accountId, deployment.number, row.id},
                [](const SqlRow &found) {
                    return QStringList{found.text(0), found.text(1), found.text(2), found.text(3),
                                       QString::number(found.integer(4))};
                });
            if (!stored)
                intake.refused.append(
                    {i, QStringLiteral("\"%1\" has registered already.").arg(row.userId)});
            else if (*stored == QStringList{row.userId, row.firstName, row.lastName, row.email,
                                            QString::number(row.at)})
                ++intake.known;
            else
                intake.refused.append({i, otherRow()});
        }
        return intake;
    });
}

} // namespace Zel
