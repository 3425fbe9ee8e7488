// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/numberoption.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/workspaceexport.h"

namespace Zel::Service {

namespace {

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addFilesOption(parser);
    addQuietOption(parser);
    parser.addOptions(
        {{QStringLiteral("account"),
          QStringLiteral("Writes this account only; may be given several times."),
          QStringLiteral("number")},
         {QStringLiteral("with-password-hashes"),
          QStringLiteral("Writes the hashes of passwords, too, so that people keep theirs. Whoever "
                         "reads them can try passwords at leisure.")}});
    parser.addPositionalArgument(
        QStringLiteral("folder"),
        QStringLiteral("Where to write; must not be there yet, or empty."));
    parseCommand(
        parser, QStringLiteral("export"),
        QStringLiteral("Writes a workspace as the readable files that \"import\" takes, as of one "
                       "moment, while others go on working. It is there as a whole or not at all."),
        arguments);
}

} // namespace

int exportCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        throw UsageError(QStringLiteral("say which folder to export to."));
    ExportOptions options;
    options.accounts = accountNumbers(parser);
    options.passwordHashes = parser.isSet(QStringLiteral("with-password-hashes"));
    Database database(databaseAddress(parser));
    Migrations(database).requireCurrent();
    Store store(database, PasswordHasher::Cost::Minimal, systemClock(),
                blobPlace(parser, database));
    ProgressLine line(isQuiet(parser));
    options.progress = line.progress();
    const ExportReport report = exportWorkspace(store, words.first(), options);
    line.clear();
    for (const ExportReport::Count &count : report.counts)
        print(QStringLiteral("%1: %2").arg(count.kind).arg(count.count));
    for (const QString &sentence : report.leftOut)
        print(sentence);
    return ExitFine;
}

} // namespace Zel::Service
