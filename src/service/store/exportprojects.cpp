// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Projects and deployments.
#include "service/store/exportjob.h"
#include "service/store/listpage.h"
#include "service/store/store.h"

namespace Zel {

namespace {

const SqlText pageOfProjects(R"sql(
    SELECT p.guid, p.name, p.description, p.created_at, p.modified_at, p.created_by, p.event_at,
           p.published, p.theme_guid, p.name_key
    FROM project p
    WHERE p.account_id = $1 AND p.type_id = $2
      AND (p.name_key, p.guid) > ($3, $4)
    ORDER BY p.name_key NULLS FIRST, p.guid NULLS FIRST LIMIT $5
)sql");

const SqlText listDeployments(R"sql(
    SELECT guid, dep_no, project_guid, name, published_at FROM deployment
    WHERE account_id = $1
    ORDER BY guid NULLS FIRST
)sql");

QStringList lineOf(const ExportJob &job, qint64 accountId, const QString &typeId, const SqlRow &row)
{
    return {QString::number(accountId),
            row.text(0),
            typeId,
            row.text(1),
            row.text(2),
            timeText(row.optionalInteger(3)),
            timeText(row.optionalInteger(4)),
            job.logins.value(row.text(5)),
            timeText(row.optionalInteger(6)),
            flagText(row.boolean(7)),
            row.optionalText(8).value_or(QString())};
}

void exportType(ExportJob &job, CsvWriter &projects, qint64 accountId, const QString &typeId)
{
    using Place = Projects::Place;
    readInBatches<QStringList, Place>(
        job.store.database, pageOfProjects, longRowsAtOnce, Place(),
        [&](const Place &after) {
            return SqlValues{accountId, typeId, after.nameKey, after.guid};
        },
        [&](const SqlRow &row) {
            return std::pair(lineOf(job, accountId, typeId, row), Place{row.text(9), row.text(0)});
        },
        [&](const QStringList &line, const Place &) {
            projects.add(line);
            job.count(QStringLiteral("projects"));
            return true;
        });
}

struct Found
{
    Deployment deployment;
    DeploymentRef ref;
};

} // namespace

void exportProjects(ExportJob &job)
{
    CsvWriter projects(job.folder, QStringLiteral("projects.csv"),
                       {QStringLiteral("account"), QStringLiteral("guid"), QStringLiteral("typeID"),
                        QStringLiteral("name"), QStringLiteral("description"),
                        QStringLiteral("created"), QStringLiteral("modified"),
                        QStringLiteral("createdBy"), QStringLiteral("eventDate"),
                        QStringLiteral("published"), QStringLiteral("theme")});
    for (const Account &account : std::as_const(job.accounts)) {
        const QList<ProjectKind> types = job.store.projects.types(account.accountId);
        for (const ProjectKind &type : types)
            exportType(job, projects, account.accountId, type.typeId);
    }
    projects.finish();
}

void exportDeployments(ExportJob &job)
{
    CsvWriter list(job.folder, QStringLiteral("deployments.csv"),
                   {QStringLiteral("account"), QStringLiteral("guid"), QStringLiteral("project"),
                    QStringLiteral("name"), QStringLiteral("published"), QStringLiteral("key"),
                    QStringLiteral("folder")});
    for (const Account &account : std::as_const(job.accounts)) {
        const qint64 number = account.accountId;
        const QList<Found> all =
            job.store.database.rows(listDeployments, {number}, [number](const SqlRow &row) {
                return Found{{row.text(0), row.text(2), row.text(3), row.integer(4)},
                             {number, row.integer(1)}};
            });
        for (const Found &found : all) {
            const Deployment &deployment = found.deployment;
            QString folder = QStringLiteral("deployments/%1/%2").arg(number).arg(deployment.guid);
            if (!exportAudience(job, found.ref, folder))
                folder.clear();
            list.add({QString::number(number), deployment.guid, deployment.projectGuid,
                      deployment.name, timeText(deployment.publishedAt), QString(), folder});
            job.count(QStringLiteral("deployments"));
        }
    }
    list.finish();
}

} // namespace Zel
