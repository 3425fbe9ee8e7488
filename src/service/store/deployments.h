// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include "service/store/listpage.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace Zel {

class ServerKeys;

/// A published event, as it is stored.
struct Deployment
{
    QString guid;
    QString projectGuid;
    QString name;
    qint64 publishedAt = 0; ///< milliseconds UTC

    bool operator==(const Deployment &) const = default;
};

/// Where a deployment stands in the list of its project; the default comes before all others.
struct DeploymentPlace
{
    qint64 publishedAt = std::numeric_limits<qint64>::max();
    QString guid;
};

/// How the rows of an audience name their deployment.
struct DeploymentRef
{
    qint64 accountId = 0;
    qint64 number = 0;
};

/// The deployments of projects, always within one account.
class ZEL_EXPORT Deployments
{
public:
    static constexpr qsizetype longestName = 10000;
    /// A key is what players prove themselves with; short ones could be guessed.
    static constexpr qsizetype shortestKey = 16;
    static constexpr qsizetype longestKey = 256;

    Deployments(Database &database, ServerKeys &keys);

    using Page = ListPage<Deployment, DeploymentPlace>;

    /// The deployments of a project, the newest first; nothing when the account has no such
    /// project.
    std::optional<Page> list(qint64 accountId, const QString &projectGuid,
                             const DeploymentPlace &after = {}, qint64 limit = allRows);
    std::optional<DeploymentRef> find(qint64 accountId, const QString &guid);
    /// The deployment whose key is given; nothing when it is that of another one.
    std::optional<DeploymentRef> findByKey(const QString &guid, const QString &key);

    /// Whether files of that hash are what was taken in last.
    bool hasFiles(qint64 accountId, const QString &guid, const QByteArray &hash);
    /// Deployments of all accounts that bear the guid.
    QList<DeploymentRef> withGuid(const QString &guid);

    // The following are called inside a transaction only.
    std::optional<Deployment> stored(qint64 accountId, const QString &guid);
    /// Adds a deployment or changes it.
    void put(qint64 accountId, const Deployment &deployment);
    /// Gives players the key in place of a former one; false when they have it already.
    bool setKey(qint64 accountId, const QString &guid, const QString &key);
    /// Remembers the files that were taken in.
    void setFilesHash(qint64 accountId, const QString &guid, const QByteArray &hash);

private:
    QByteArray hashOf(const QString &key) const;

    Database &m_database;
    QByteArray m_key;
};

} // namespace Zel
