// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/blobkind.h"
#include "service/store/database.h"
#include "service/store/passwordhasher.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <exception>

namespace Zel::Service {

/// The command line is wrong: exit code 2.
class UsageError : public std::exception
{
public:
    explicit UsageError(const QString &sentence)
        : m_text(sentence.toUtf8())
    {
    }

    const char *what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
};

/// `--help` was asked for and has been printed.
struct HelpShown
{
};

/// Runs `zel-service`; needs a QCoreApplication. `arguments` begin with the program's name. Returns
/// the exit code.
ZEL_EXPORT int runProgram(const QStringList &arguments);

// What the commands share.

/// Parses one command's arguments; throws `UsageError` or `HelpShown`. Adds --database and --help,
/// and to the help the command's example and the exit codes.
void parseCommand(QCommandLineParser &parser, const QString &command, const QString &description,
                  const QStringList &arguments);
/// Prints the help of a command without options.
void showHelp(const QString &command, const QString &description);
/// The database of --database or, so that a password need not stand in the process list, of the
/// environment variable ZEL_DATABASE.
DatabaseAddress databaseAddress(const QCommandLineParser &parser);
/// Adds --files, for commands that take files as they are kept.
void addFolderOption(QCommandLineParser &parser);
/// Adds --files and --blobs.
void addFilesOption(QCommandLineParser &parser);
/// The folder of --files or of the environment variable ZEL_FILES; empty for the usual one.
QString filesFolder(const QCommandLineParser &parser);
/// Where the bytes of the files of a database that is ready lie: by --files and by --blobs or the
/// environment variable ZEL_BLOBS. Throws `UsageError` when the database has them elsewhere.
BlobPlace blobPlace(const QCommandLineParser &parser, Database &database);
/// Adds --sign-in-cost.
void addCostOption(QCommandLineParser &parser);
PasswordHasher::Cost costOf(const QCommandLineParser &parser);
/// Makes the database ready: a SQLite file is migrated on the way, a PostgreSQL database, which
/// other daemons may be using, has to have been.
void makeReady(Database &database);
void print(const QString &line);

// The commands. Each returns an exit code and throws what went wrong.

int serveCommand(const QStringList &arguments);
int migrateCommand(const QStringList &arguments);
int importCommand(const QStringList &arguments);
int exportCommand(const QStringList &arguments);
int simulateCommand(const QStringList &arguments);
int accountCommand(const QStringList &arguments);
int userCommand(const QStringList &arguments);
int trashCommand(const QStringList &arguments);
int copyCommand(const QStringList &arguments);
int backupCommand(const QStringList &arguments);
int restoreCommand(const QStringList &arguments);
int doctorCommand(const QStringList &arguments);
int thumbnailCommand(const QStringList &arguments);

} // namespace Zel::Service
