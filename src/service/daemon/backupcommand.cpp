// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/daemon/transferoutput.h"
#include "service/store/blobtransfer.h"
#include "service/store/workspacebackup.h"

namespace Zel::Service {

int backupCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addFolderOption(parser);
    parser.addOptions(
        {{QStringLiteral("force"), QStringLiteral("Writes over a file that is there.")}});
    addQuietOption(parser);
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The file to write."));
    parseCommand(
        parser, QStringLiteral("backup"),
        QStringLiteral(
            "Writes a workspace with its files into one file, as it is at one moment, while "
            "services "
            "go on. The file can be restored to either kind of database. It holds password hashes "
            "and the keys of sessions: whoever can read it can sign in as anybody. It is readable "
            "by "
            "its owner only; keep it so."),
        arguments);
    const QStringList paths = parser.positionalArguments();
    if (paths.size() != 1)
        throw UsageError(QStringLiteral("say which file to write."));
    Database database(databaseAddress(parser));
    database.open();
    ProgressLine line(isQuiet(parser));
    const auto blobs = openBlobs(database, blobKindOfAnyStep(database), filesFolder(parser));
    const CopyReport report =
        writeBackup(database, *blobs, paths.constFirst(),
                    parser.isSet(QStringLiteral("force")) ? OutputFile::Existing::Replace
                                                          : OutputFile::Existing::Refuse,
                    systemClock(), line.progress());
    line.clear();
    printReport(report);
    print(QStringLiteral("Written to %1.").arg(paths.constFirst()));
    return ExitFine;
}

} // namespace Zel::Service
