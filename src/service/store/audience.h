// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/deployments.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Zel {

class Database;
class FileRecord;

// What players of a deployment report. Each row has an id of its own, 16 bytes: the same row again
// is stored once.

struct PageView
{
    QByteArray id;
    QString userId;
    qint64 at = 0;
    qint64 seconds = 0;
    bool closed = false; ///< the page was left: the time is final
    QString browserType;
    QString jsVersion;
    QString screenDepth;
};

struct Registration
{
    QByteArray id;
    QString userId;
    QString firstName;
    QString lastName;
    QString email;
    qint64 at = 0;
};

/// A question as it was typed. `status` and `answer` are those it comes with: players send neither.
struct AskedQuestion
{
    QString guid;
    QString userId;
    QString text;
    std::optional<qint64> at;
    QString status;
    QString answer;
    std::optional<qint64> answeredAt;
};

/// What became of rows that came together.
struct Intake
{
    struct Refusal
    {
        qsizetype row = 0; ///< from 0
        QString why;
    };

    qint64 added = 0;
    qint64 changed = 0;
    qint64 known = 0; ///< were there already
    QList<Refusal> refused;
};

constexpr qsizetype longestUserId = 256;
constexpr qsizetype longestPersonName = 256;
constexpr qsizetype longestEmail = 320;
constexpr qsizetype longestAttribute = 64;
constexpr qsizetype longestQuestion = 400'000;

// Reads a row of a file or of a request; throws `WorkspaceFileError` for one that cannot be.

ZEL_EXPORT PageView pageViewIn(FileRecord &record);
ZEL_EXPORT Registration registrationIn(FileRecord &record);
ZEL_EXPORT AskedQuestion questionIn(FileRecord &record);
/// The id of a row: a UUID, or one made from `content`, which tells the row from all others, when
/// the row brings none.
QByteArray rowIdIn(FileRecord &record, const QStringList &content);
/// The id of a row that is told from all others by `content`.
ZEL_EXPORT QByteArray contentId(const QStringList &content);

/// 63 bits made from texts. Two different ones get the same number once in some thousand million
/// audiences of 30,000.
ZEL_EXPORT qint64 numberOf(const QStringList &texts);
/// Names people to the database who may be new to it. Only inside a transaction.
void storePeople(Database &database, const DeploymentRef &deployment, const QStringList &userIds);

/// Takes in what players report. Rows that cannot be are refused one by one; the others are stored.
/// The functions may be called inside a transaction, of which they are a part then.
class ZEL_EXPORT Audience
{
public:
    explicit Audience(Database &database)
        : m_database(database)
    {
    }

    /// A view that is not closed may come again with more time, and closed.
    Intake takeViews(const DeploymentRef &deployment, const QList<PageView> &views);
    Intake takeRegistrations(const DeploymentRef &deployment, const QList<Registration> &rows);

private:
    Database &m_database;
};

} // namespace Zel
