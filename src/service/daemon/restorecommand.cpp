// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/daemon/transferoutput.h"
#include "service/store/blobkind.h"
#include "service/store/blobtransfer.h"
#include "service/store/migrations.h"
#include "service/store/workspacebackup.h"
#include "service/store/workspacerestore.h"

#include <QTimeZone>

namespace Zel::Service {

namespace {

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addFolderOption(parser);
    parser.addOptions(
        {{QStringLiteral("blobs"),
          QStringLiteral("Where files are kept: in \"files\" or in the \"database\"; as where the "
                         "backup was made unless named."),
          QStringLiteral("place")},
         {QStringLiteral("check"), QStringLiteral("Only reads the backup and checks all of it.")},
         {QStringLiteral("keep-sessions"),
          QStringLiteral("Who was signed in when the backup was made is so again. Otherwise "
                         "everybody signs in anew, because a session that was ended since would "
                         "live again.")}});
    addQuietOption(parser);
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The backup."));
    parseCommand(
        parser, QStringLiteral("restore"),
        QStringLiteral(
            "Puts the workspace of a backup into an empty database of either kind. The backup is "
            "checked as a whole before anything is written, and everything that was written is "
            "compared. A restore that did not end leaves a database that nothing serves; run it "
            "again."),
        arguments);
    if (parser.positionalArguments().size() != 1)
        throw UsageError(QStringLiteral("say which backup."));
}

int check(const QString &path, ProgressLine &line)
{
    BackupHeader header;
    const CopyReport report = checkBackup(path, &header, line.progress());
    line.clear();
    printReport(report);
    print(QStringLiteral("The backup is sound. It was made at %1 from %2 at step %3.")
              .arg(QDateTime::fromMSecsSinceEpoch(header.createdAt, QTimeZone::utc())
                       .toString(Qt::ISODate),
                   header.engine)
              .arg(header.step));
    return ExitFine;
}

} // namespace

int restoreCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    const QString path = parser.positionalArguments().constFirst();
    ProgressLine line(isQuiet(parser));
    if (parser.isSet(QStringLiteral("check")))
        return check(path, line);
    Database database(databaseAddress(parser), Database::Missing::Create);
    const BlobKind usual = blobKindOf(readBackupHeader(path).blobs).value_or(BlobKind::Files);
    const auto blobs = openBlobs(database, blobKindOption(parser, QStringLiteral("blobs"), usual),
                                 filesFolder(parser));
    const CopyReport report =
        restoreBackup(path, {database, *blobs},
                      parser.isSet(QStringLiteral("keep-sessions")) ? RestoredSessions::Keep
                                                                    : RestoredSessions::End,
                      line.progress());
    line.clear();
    printReport(report);
    print(QStringLiteral("Restored to %1 and compared; the database is at step %2.")
              .arg(database.address().display())
              .arg(Migrations::latestVersion()));
    return ExitFine;
}

} // namespace Zel::Service
