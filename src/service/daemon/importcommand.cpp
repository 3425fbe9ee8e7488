// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/store/deploymentimport.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"

#include <QFileInfo>

#include <stdexcept>

namespace Zel::Service {

namespace {

void printCounts(const QList<ImportCount> &counts)
{
    for (const ImportCount &count : counts)
        print(QStringLiteral("%1: %2 added, %3 changed, %4 unchanged")
                  .arg(count.kind)
                  .arg(count.added)
                  .arg(count.changed)
                  .arg(count.unchanged));
}

void importDeployment(const QCommandLineParser &parser, const DatabaseAddress &address,
                      const QStringList &paths)
{
    const AudienceFiles files = AudienceFiles::read(paths);
    Database database(address);
    makeReady(database);
    Store store(database, PasswordHasher::Cost::Interactive, systemClock(),
                blobPlace(parser, database));
    const QString guid = parser.value(QStringLiteral("deployment")).toLower();
    const QList<DeploymentRef> found = store.deployments.withGuid(guid);
    if (found.size() != 1)
        throw std::runtime_error(qPrintable(
            found.isEmpty() ? QStringLiteral("there is no deployment %1.").arg(guid)
                            : QStringLiteral("several accounts have a deployment %1.").arg(guid)));
    printCounts(importAudience(store, found.first(), files));
}

} // namespace

int importCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addCostOption(parser);
    addFilesOption(parser);
    parser.addOption({QStringLiteral("deployment"),
                      QStringLiteral("Takes in what happened in this deployment instead."),
                      QStringLiteral("guid")});
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QStringLiteral("Folders or files: accounts.json, people.json, "
                       "project-types.json, projects.csv, asset-folders.csv, "
                       "asset-rights.csv, assets.csv, templates.csv, "
                       "themes.csv, theme-templates.csv, data-records.csv, deployments.csv. With "
                       "--deployment: registrants, page-views, questions, votes, responses "
                       "(.csv or .jsonl), polls.json, surveys.json, NAME.mapping.json."),
        QStringLiteral("files..."));
    parseCommand(parser, QStringLiteral("import"),
                 QStringLiteral("Takes in a workspace: adds what is missing, changes what differs, "
                                "all or nothing. A missing SQLite file is made."),
                 arguments);
    const QStringList paths = parser.positionalArguments();
    if (paths.isEmpty())
        throw UsageError(QStringLiteral("say which folder or files to import."));
    const PasswordHasher::Cost cost = costOf(parser);
    const DatabaseAddress address = databaseAddress(parser);

    if (parser.isSet(QStringLiteral("deployment"))) {
        importDeployment(parser, address, paths);
        return ExitFine;
    }

    // Everything that can be wrong with the files is found before the database is touched.
    const WorkspaceFiles files = WorkspaceFiles::read(paths);
    Database database(address, Database::Missing::Create);
    makeReady(database);
    ThumbnailProcess thumbnails;
    Store store(database, cost, systemClock(), blobPlace(parser, database),
                [&thumbnails](const QString &path) { return thumbnails.make(path); });
    printCounts(importWorkspace(store, files));
    return ExitFine;
}

} // namespace Zel::Service
