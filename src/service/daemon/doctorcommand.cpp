// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/store/blobtransfer.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/workspacecheck.h"

#include <array>

namespace Zel::Service {

namespace {

struct Counted
{
    const char *what;
    const char *query;
};

constexpr std::array counted{
    Counted{"people", "SELECT COUNT(*) FROM app_user"},
    Counted{"accounts", "SELECT COUNT(*) FROM account"},
    Counted{"memberships", "SELECT COUNT(*) FROM membership"},
    Counted{"project types", "SELECT COUNT(*) FROM project_type"},
    Counted{"projects", "SELECT COUNT(*) FROM project"},
    Counted{"folders", "SELECT COUNT(*) FROM asset_folder"},
    Counted{"assets", "SELECT COUNT(*) FROM asset WHERE deleted_at IS NULL"},
    Counted{"themes", "SELECT COUNT(*) FROM theme"},
    Counted{"sessions", "SELECT COUNT(*) FROM session"},
};

void checkSqlite(Database &database)
{
    const QString result =
        database.runNative(QStringLiteral("PRAGMA integrity_check(1)")).toString();
    if (result != QLatin1String("ok"))
        throw DatabaseError(DatabaseError::Kind::Corrupt,
                            QStringLiteral("The file is damaged: %1.").arg(result));
    print(QStringLiteral("The file is sound."));
    const QString orphan =
        database.runNative(QStringLiteral("SELECT \"table\" FROM pragma_foreign_key_check LIMIT 1"))
            .toString();
    if (!orphan.isEmpty())
        throw DatabaseError(
            DatabaseError::Kind::Corrupt,
            QStringLiteral("The table %1 refers to rows that are not there.").arg(orphan));
    print(QStringLiteral("All foreign keys lead somewhere."));
}

void checkPostgres(Database &database)
{
    print(QStringLiteral("The server is PostgreSQL %1.")
              .arg(database.runNative(QStringLiteral("SHOW server_version")).toString()));
    const QString encoding = database.runNative(QStringLiteral("SHOW server_encoding")).toString();
    if (encoding != QLatin1String("UTF8"))
        throw DatabaseError(
            DatabaseError::Kind::Other,
            QStringLiteral("The database is encoded in %1; it has to be UTF8.").arg(encoding));
    print(QStringLiteral("It stores Unicode."));
}

QString heldText(Database &database)
{
    QStringList counts;
    for (const Counted &one : counted)
        counts << QStringLiteral("%1 %2").arg(
            database.runNative(QString::fromLatin1(one.query)).toString(),
            QString::fromLatin1(one.what));
    return QStringLiteral("It holds %1.").arg(counts.join(QLatin1String(", ")));
}

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addFolderOption(parser);
    parser.addOptions(
        {{QStringLiteral("deep"),
          QStringLiteral("Reads every file and compares its checksum; otherwise only its size.")}});
    addQuietOption(parser);
    parseCommand(
        parser, QStringLiteral("doctor"),
        QStringLiteral("Checks a database and its files and says what it finds; changes nothing. "
                       "Services may go on meanwhile."),
        arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("doctor takes no further arguments."));
}

/// What the database itself does not watch over.
QStringList findFaults(Database &database, const QCommandLineParser &parser)
{
    ProgressLine line(isQuiet(parser));
    const auto blobs = openBlobs(database, blobKindOfAnyStep(database), filesFolder(parser));
    WorkspaceCheck check(database, *blobs, line.progress());
    const bool isDeep = parser.isSet(QStringLiteral("deep"));
    const auto say = [&line](const QStringList &faults, const QString &fine) {
        line.clear();
        for (const QString &fault : faults)
            print(fault);
        if (faults.isEmpty())
            print(fine);
        return faults;
    };
    QStringList all = say(check.brokenReferences(),
                          QStringLiteral("Rows that name others without the database watching lead "
                                         "somewhere."));
    all += say(check.wrongTallies(), QStringLiteral("The sums of page views are right."));
    const QStringList files =
        check.brokenFiles(isDeep ? WorkspaceCheck::Depth::Bytes : WorkspaceCheck::Depth::Sizes);
    all += say(files, (isDeep ? QStringLiteral("All %1 files are there, byte for byte.")
                              : QStringLiteral("All %1 files are there and as long as they should "
                                               "be; --deep reads them, too."))
                          .arg(check.checkedFiles()));
    return all;
}

} // namespace

int doctorCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    Database database(databaseAddress(parser));
    database.open();
    print(QStringLiteral("%1 can be opened.").arg(database.address().display()));
    if (database.address().engine == DatabaseAddress::Engine::Sqlite)
        checkSqlite(database);
    else
        checkPostgres(database);
    Migrations(database).requireCurrent();
    print(QStringLiteral("Its tables are as this program needs them (step %1).")
              .arg(Migrations::latestVersion()));
    print(heldText(database));
    const QStringList faults = findFaults(database, parser);
    if (!faults.isEmpty())
        throw DatabaseError(DatabaseError::Kind::Corrupt,
                            faults.size() == 1
                                ? QStringLiteral("One thing is wrong.")
                                : QStringLiteral("%1 things are wrong.").arg(faults.size()));
    return ExitFine;
}

} // namespace Zel::Service
