// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/store/migrations.h"

namespace Zel::Service {

int migrateCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parseCommand(
        parser, QStringLiteral("migrate"),
        QStringLiteral("Brings a database to the form this program needs. A missing SQLite "
                       "file is made; a PostgreSQL database must exist."),
        arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("migrate takes no further arguments."));
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
