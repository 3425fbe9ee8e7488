// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"

#include <QFileInfo>

namespace Zel::Service {

int importCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addCostOption(parser);
    addFilesOption(parser);
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QStringLiteral("Folders or files: accounts.json, people.json, "
                       "project-types.json, projects.csv, asset-folders.csv, "
                       "asset-rights.csv, assets.csv, templates.csv, "
                       "themes.csv, theme-templates.csv."),
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

    // Everything that can be wrong with the files is found before the database is touched.
    const WorkspaceFiles files = WorkspaceFiles::read(paths);
    Database database(address, Database::Missing::Create);
    makeReady(database);
    ThumbnailProcess thumbnails;
    Store store(database, cost, systemClock(), filesFolder(parser),
                [&thumbnails](const QString &path) { return thumbnails.make(path); });
    const QList<ImportCount> counts = importWorkspace(store, files);
    for (const ImportCount &count : counts)
        print(QStringLiteral("%1: %2 added, %3 changed, %4 unchanged")
                  .arg(count.kind)
                  .arg(count.added)
                  .arg(count.changed)
                  .arg(count.unchanged));
    return ExitFine;
}

} // namespace Zel::Service
