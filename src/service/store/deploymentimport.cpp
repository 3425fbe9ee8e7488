// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/deploymentimport.h"

#include "service/store/importcount.h"
#include "service/store/store.h"

namespace Zel {

namespace {

/// Counts what became of rows; a refused one ends the import.
template <class Row>
ImportCount counted(const QString &kind, const AudienceFiles::Rows<Row> &rows, const Intake &intake)
{
    if (!intake.refused.isEmpty())
        throw WorkspaceFileError(rows.places.at(intake.refused.first().row),
                                 intake.refused.first().why);
    return {kind, static_cast<int>(intake.added), static_cast<int>(intake.changed),
            static_cast<int>(intake.known)};
}

void definePolls(Store &store, const DeploymentRef &deployment, const AudienceFiles &files)
{
    if (files.polls.isGiven && !store.polls.define(deployment, files.polls.all))
        throw WorkspaceFileError(files.polls.place,
                                 QStringLiteral("the polls have votes; only their texts can be "
                                                "changed now."));
}

void defineSurveys(Store &store, const DeploymentRef &deployment, const AudienceFiles &files)
{
    if (files.surveys.isGiven && !store.surveys.define(deployment, files.surveys.all))
        throw WorkspaceFileError(files.surveys.place,
                                 QStringLiteral("a survey has responses; only its texts and its "
                                                "key can be changed now."));
}

/// Takes many rows in part by part, so that it can be seen how far it is.
template <class Row, class Take>
ImportCount takeParts(const QString &kind, const AudienceFiles::Rows<Row> &rows,
                      const Progress &progress, const Take &take)
{
    constexpr qsizetype rowsAtOnce = 20'000;
    Intake sum;
    for (qsizetype at = 0; at < rows.rows.size(); at += rowsAtOnce) {
        tell(progress, kind, at, rows.rows.size());
        const Intake part = take(rows.rows.mid(at, rowsAtOnce));
        sum.added += part.added;
        sum.changed += part.changed;
        sum.known += part.known;
        for (Intake::Refusal refusal : part.refused) {
            refusal.row += at;
            sum.refused << refusal;
        }
    }
    return counted(kind, rows, sum);
}

QList<ImportCount> takeAudience(Store &store, const DeploymentRef &deployment,
                                const AudienceFiles &files, const Progress &progress)
{
    definePolls(store, deployment, files);
    defineSurveys(store, deployment, files);
    return {
        takeParts(QStringLiteral("registrants"), files.registrations, progress,
                  [&](const QList<Registration> &rows) {
                      return store.audience.takeRegistrations(deployment, rows);
                  }),
        takeParts(QStringLiteral("page views"), files.views, progress,
                  [&](const QList<PageView> &rows) {
                      return store.audience.takeViews(deployment, rows);
                  }),
        counted(QStringLiteral("questions"), files.questions,
                store.questions.take(deployment, files.questions.rows)),
        counted(QStringLiteral("votes"), files.votes,
                store.polls.take(deployment, files.votes.rows)),
        counted(QStringLiteral("responses"), files.replies,
                store.surveys.take(deployment, files.replies.rows)),
    };
}

ImportOutcome takeDeployment(Store &store, const WorkspaceFiles::DeploymentEntry &entry)
{
    const Deployment &deployment = entry.deployment;
    if (!store.projects.find(entry.accountId, deployment.projectGuid))
        throw WorkspaceFileError(entry.place, QStringLiteral("account %1 has no project %2.")
                                                  .arg(entry.accountId)
                                                  .arg(deployment.projectGuid));
    const auto known = store.deployments.stored(entry.accountId, deployment.guid);
    const bool differs = known != deployment;
    if (differs)
        store.deployments.put(entry.accountId, deployment);
    const bool hasNewKey = !entry.key.isEmpty() &&
                           store.deployments.setKey(entry.accountId, deployment.guid, entry.key);
    if (!known)
        return ImportOutcome::Added;
    return differs || hasNewKey ? ImportOutcome::Changed : ImportOutcome::Unchanged;
}

void add(QList<ImportCount> &sums, const QList<ImportCount> &counts)
{
    for (const ImportCount &count : counts) {
        const auto same = std::find_if(sums.begin(), sums.end(), [&count](const ImportCount &sum) {
            return sum.kind == count.kind;
        });
        if (same == sums.end()) {
            sums << count;
            continue;
        }
        same->added += count.added;
        same->changed += count.changed;
        same->unchanged += count.unchanged;
    }
}

} // namespace

QHash<QString, AudienceFiles> newAudiences(Store &store, const WorkspaceFiles &files,
                                           const Progress &progress)
{
    QHash<QString, AudienceFiles> audiences;
    qint64 done = 0;
    for (const WorkspaceFiles::DeploymentEntry &entry : files.deployments) {
        tell(progress, QStringLiteral("deployments read"), done++, files.deployments.size());
        if (!entry.folder.isEmpty() &&
            !store.deployments.hasFiles(entry.accountId, entry.deployment.guid, entry.filesHash))
            audiences.insert(entry.folder, AudienceFiles::read({entry.folder}));
    }
    return audiences;
}

QList<ImportCount> importDeployments(Store &store, const WorkspaceFiles &files,
                                     const QHash<QString, AudienceFiles> &audiences,
                                     const Progress &progress)
{
    QList<ImportCount> counts{countImports(QStringLiteral("deployments"), files.deployments,
                                           [&store](const WorkspaceFiles::DeploymentEntry &entry) {
                                               return takeDeployment(store, entry);
                                           })};
    for (const WorkspaceFiles::DeploymentEntry &entry : files.deployments) {
        const auto audience = audiences.constFind(entry.folder);
        if (audience == audiences.cend())
            continue;
        const QString guid = entry.deployment.guid;
        const auto deployment = store.deployments.find(entry.accountId, guid);
        add(counts, takeAudience(store, deployment.value(), *audience, progress));
        store.deployments.setFilesHash(entry.accountId, guid, entry.filesHash);
    }
    return counts;
}

QList<ImportCount> importAudience(Store &store, const DeploymentRef &deployment,
                                  const AudienceFiles &files, const ImportOptions &options)
{
    return importInside(store, options,
                        [&] { return takeAudience(store, deployment, files, options.progress); });
}

} // namespace Zel
