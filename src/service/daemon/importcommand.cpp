// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/store/deploymentimport.h"
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>

#include <stdexcept>

namespace Zel::Service {

namespace {

void printCounts(const QList<ImportCount> &counts, bool dryRun)
{
    for (const ImportCount &count : counts)
        print(QStringLiteral("%1: %2 added, %3 changed, %4 unchanged")
                  .arg(count.kind)
                  .arg(count.added)
                  .arg(count.changed)
                  .arg(count.unchanged));
    if (dryRun)
        print(QStringLiteral("Nothing was stored: this was a dry run."));
}

/// The database that an import looks at or changes.
class Target
{
public:
    Target(const DatabaseAddress &address, bool dryRun)
    {
        const bool isMissing =
            address.engine == DatabaseAddress::Engine::Sqlite && !QFileInfo::exists(address.file);
        if (dryRun && isMissing) {
            // What is missing is not made: an empty one elsewhere stands in for it.
            m_folder.emplace();
            m_database.emplace(
                DatabaseAddress::sqliteFile(m_folder->filePath(QStringLiteral("empty.db"))),
                Database::Missing::Create);
        } else {
            m_database.emplace(address,
                               dryRun ? Database::Missing::Refuse : Database::Missing::Create);
        }
        if (dryRun && !isMissing)
            Migrations(*m_database).requireCurrent();
        else
            makeReady(*m_database);
    }

    Database &database() { return *m_database; }

    bool isStandIn() const { return m_folder.has_value(); }

    QString folder() const { return m_folder->path(); }

private:
    std::optional<QTemporaryDir> m_folder; ///< outlives the database
    std::optional<Database> m_database;
};

void importDeployment(const QCommandLineParser &parser, const DatabaseAddress &address,
                      const QStringList &paths)
{
    ImportOptions options;
    options.dryRun = parser.isSet(QStringLiteral("dry-run"));
    const AudienceFiles files = AudienceFiles::read(paths);
    Database database(address);
    if (options.dryRun)
        Migrations(database).requireCurrent();
    else
        makeReady(database);
    Store store(database, PasswordHasher::Cost::Interactive, systemClock(),
                blobPlace(parser, database));
    const QString guid = parser.value(QStringLiteral("deployment")).toLower();
    const QList<DeploymentRef> found = store.deployments.withGuid(guid);
    if (found.size() != 1)
        throw std::runtime_error(qPrintable(
            found.isEmpty() ? QStringLiteral("there is no deployment %1.").arg(guid)
                            : QStringLiteral("several accounts have a deployment %1.").arg(guid)));
    ProgressLine line(isQuiet(parser));
    options.progress = line.progress();
    const QList<ImportCount> counts = importAudience(store, found.first(), files, options);
    line.clear();
    printCounts(counts, options.dryRun);
}

} // namespace

int importCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addCostOption(parser);
    addFilesOption(parser);
    addQuietOption(parser);
    parser.addOption({QStringLiteral("dry-run"),
                      QStringLiteral("Checks everything and says what would change; stores "
                                     "nothing.")});
    parser.addOption({QStringLiteral("deployment"),
                      QStringLiteral("Takes in what happened in this deployment instead."),
                      QStringLiteral("guid")});
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QStringLiteral("Folders or files: accounts.json, people.json, "
                       "project-types.json, projects.csv, asset-folders.csv, "
                       "asset-rights.csv, assets.csv, asset-files.csv, templates.csv, "
                       "themes.csv, theme-templates.csv, data-records.csv, "
                       "saved-data-records.csv, deployments.csv. With "
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
    ImportOptions options;
    options.dryRun = parser.isSet(QStringLiteral("dry-run"));
    const WorkspaceFiles files = WorkspaceFiles::read(paths);
    Target target(address, options.dryRun);
    ThumbnailProcess thumbnails;
    Store store(target.database(), cost, systemClock(),
                target.isStandIn() ? BlobPlace(target.folder())
                                   : blobPlace(parser, target.database()),
                [&thumbnails](const QString &path) { return thumbnails.make(path); });
    ProgressLine line(isQuiet(parser));
    options.progress = line.progress();
    const QList<ImportCount> counts = importWorkspace(store, files, options);
    line.clear();
    printCounts(counts, options.dryRun);
    return ExitFine;
}

} // namespace Zel::Service
