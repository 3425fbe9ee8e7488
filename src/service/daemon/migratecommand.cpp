// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/store/migrations.h"

#include <QFileInfo>

namespace Zel::Service {

namespace {

/// Says which steps would be taken; a file that is missing is not made.
int rehearse(const DatabaseAddress &address)
{
    int current = 0;
    const bool isMissing =
        address.engine == DatabaseAddress::Engine::Sqlite && !QFileInfo::exists(address.file);
    if (!isMissing) {
        Database database(address);
        Migrations migrations(database);
        migrations.refuseUnfinished();
        migrations.refuseNewer();
        current = migrations.currentVersion();
    }
    for (int step = current + 1; step <= Migrations::latestVersion(); ++step)
        print(QStringLiteral("would take step %1").arg(Migrations::title(step)));
    print(QStringLiteral("The database is at step %1 of %2; nothing was changed.")
              .arg(current)
              .arg(Migrations::latestVersion()));
    return ExitFine;
}

} // namespace

int migrateCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("dry-run"), QStringLiteral("Only says which steps would be taken.")});
    parseCommand(
        parser, QStringLiteral("migrate"),
        QStringLiteral("Brings a database to the form this program needs, in one transaction: all "
                       "steps or none. A missing SQLite file is made; a PostgreSQL database must "
                       "exist. Stop older services first: they refuse the new form when they are "
                       "started, but do not watch for it."),
        arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("migrate takes no further arguments."));
    if (parser.isSet(QStringLiteral("dry-run")))
        return rehearse(databaseAddress(parser));
    Database database(databaseAddress(parser), Database::Missing::Create);
    const int steps = Migrations(database).migrate();
    print(steps > 0 ? QStringLiteral("%1 step(s) taken; the database is at step %2.")
                          .arg(steps)
                          .arg(Migrations::latestVersion())
                    : QStringLiteral("Nothing to do; the database is at step %1.")
                          .arg(Migrations::latestVersion()));
    return ExitFine;
}

} // namespace Zel::Service
