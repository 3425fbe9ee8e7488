// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/deployments.h"

#include "service/store/securebytes.h"
#include "service/store/serverkeys.h"

namespace Zel {

namespace {

const SqlText findProject(R"sql(
    SELECT guid FROM project WHERE account_id = $1 AND guid = $2
)sql");

const SqlText listDeployments(R"sql(
    SELECT guid, project_guid, name, published_at FROM deployment
    WHERE account_id = $1 AND project_guid = $2 AND (published_at, guid) < ($3, $4)
    ORDER BY published_at DESC NULLS LAST, guid DESC NULLS LAST
    LIMIT $5
)sql");

const SqlText findDeployment(R"sql(
    SELECT guid, project_guid, name, published_at FROM deployment
    WHERE account_id = $1 AND guid = $2
)sql");

const SqlText findNumber(R"sql(
    SELECT account_id, dep_no FROM deployment WHERE account_id = $1 AND guid = $2
)sql");

const SqlText findGuid(R"sql(
    SELECT account_id, dep_no FROM deployment WHERE guid = $1
)sql");

const SqlText findKey(R"sql(
    SELECT account_id, dep_no FROM deployment WHERE key_hash = $1 AND guid = $2
)sql");

const SqlText nextNumber(R"sql(
    SELECT COALESCE(MAX(dep_no), 0) + 1 FROM deployment WHERE account_id = $1
)sql");

const SqlText addDeployment(R"sql(
    INSERT INTO deployment (account_id, guid, dep_no, project_guid, name, published_at, key_hash)
    VALUES ($1, $2, $3, $4, $5, $6, NULL)
)sql");

const SqlText changeDeployment(R"sql(
    UPDATE deployment SET project_guid = $3, name = $4, published_at = $5
    WHERE account_id = $1 AND guid = $2
)sql");

const SqlText changeKey(R"sql(
    UPDATE deployment SET key_hash = $3
    WHERE account_id = $1 AND guid = $2 AND (key_hash IS NULL OR key_hash <> $3)
)sql");

const SqlText findFiles(R"sql(
    SELECT dep_no FROM deployment WHERE account_id = $1 AND guid = $2 AND files_hash = $3
)sql");

const SqlText changeFiles(R"sql(
    UPDATE deployment SET files_hash = $3 WHERE account_id = $1 AND guid = $2
)sql");

Deployment deploymentOf(const SqlRow &row)
{
    return {row.text(0), row.text(1), row.text(2), row.integer(3)};
}

DeploymentRef refOf(const SqlRow &row)
{
    return {row.integer(0), row.integer(1)};
}

} // namespace

Deployments::Deployments(Database &database, ServerKeys &keys)
    : m_database(database)
    , m_key(keys.key(QStringLiteral("deployment")))
{
}

QByteArray Deployments::hashOf(const QString &key) const
{
    return keyedHash(m_key, key.toUtf8());
}

std::optional<Deployments::Page> Deployments::list(qint64 accountId, const QString &projectGuid,
                                                   const DeploymentPlace &after, qint64 limit)
{
    return m_database.snapshot([&]() -> std::optional<Page> {
        const auto known = m_database.row(findProject, {accountId, projectGuid},
                                          [](const SqlRow &row) { return row.text(0); });
        if (!known)
            return std::nullopt;
        return readPage<Deployment, DeploymentPlace>(
            m_database, listDeployments, {accountId, projectGuid, after.publishedAt, after.guid},
            limit, [](const SqlRow &row) {
                const Deployment deployment = deploymentOf(row);
                return std::pair(deployment,
                                 DeploymentPlace{deployment.publishedAt, deployment.guid});
            });
    });
}

std::optional<DeploymentRef> Deployments::find(qint64 accountId, const QString &guid)
{
    return m_database.row(findNumber, {accountId, guid}, refOf);
}

std::optional<DeploymentRef> Deployments::findByKey(const QString &guid, const QString &key)
{
    if (key.size() < shortestKey || key.size() > longestKey)
        return std::nullopt;
    return m_database.row(findKey, {hashOf(key), guid}, refOf);
}

bool Deployments::hasFiles(qint64 accountId, const QString &guid, const QByteArray &hash)
{
    return m_database
        .row(findFiles, {accountId, guid, hash}, [](const SqlRow &row) { return row.integer(0); })
        .has_value();
}

QList<DeploymentRef> Deployments::withGuid(const QString &guid)
{
    return m_database.rows(findGuid, {guid}, refOf);
}

std::optional<Deployment> Deployments::stored(qint64 accountId, const QString &guid)
{
    return m_database.row(findDeployment, {accountId, guid}, deploymentOf);
}

void Deployments::put(qint64 accountId, const Deployment &deployment)
{
    if (find(accountId, deployment.guid)) {
        m_database.exec(changeDeployment, {accountId, deployment.guid, deployment.projectGuid,
                                           deployment.name, deployment.publishedAt});
        return;
    }
    const qint64 number =
        m_database.row(nextNumber, {accountId}, [](const SqlRow &row) { return row.integer(0); })
            .value();
    m_database.exec(addDeployment, {accountId, deployment.guid, number, deployment.projectGuid,
                                    deployment.name, deployment.publishedAt});
}

bool Deployments::setKey(qint64 accountId, const QString &guid, const QString &key)
{
    return m_database.exec(changeKey, {accountId, guid, hashOf(key)}) > 0;
}

void Deployments::setFilesHash(qint64 accountId, const QString &guid, const QByteArray &hash)
{
    m_database.exec(changeFiles, {accountId, guid, hash});
}

} // namespace Zel
