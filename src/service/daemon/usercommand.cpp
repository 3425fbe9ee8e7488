// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/passwordinput.h"
#include "service/daemon/program.h"
#include "service/store/databaseerror.h"
#include "service/store/store.h"

#include <limits>

namespace Zel::Service {

namespace {

struct Request
{
    QString login;
    QString displayName;
    QString role;
    QList<qint64> accountIds;
};

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addCostOption(parser);
    parser.addPositionalArgument(QStringLiteral("add"), QStringLiteral("What to do."));
    parser.addPositionalArgument(QStringLiteral("name"),
                                 QStringLiteral("The name to sign in with."));
    parser.addOptions(
        {{QStringLiteral("display-name"), QStringLiteral("The name shown; the same if left out."),
          QStringLiteral("text")},
         {QStringLiteral("account"),
          QStringLiteral("The number of an account to join; may be given several times."),
          QStringLiteral("number")},
         {QStringLiteral("role"), QStringLiteral("owner, author (the default) or viewer."),
          QStringLiteral("role"), QStringLiteral("author")},
         {QStringLiteral("password-file"),
          QStringLiteral("Where to read the password from; else it is read from standard input."),
          QStringLiteral("file")}});
    parseCommand(parser, QStringLiteral("user"),
                 QStringLiteral("Adds a person who may sign in. The password is the first line of "
                                "standard input or of a file, never an argument."),
                 arguments);
}

Request requestOf(const QCommandLineParser &parser)
{
    const QStringList words = parser.positionalArguments();
    if (words.size() != 2 || words.first() != QLatin1String("add"))
        throw UsageError(QStringLiteral("it reads \"user add NAME\"."));
    Request request;
    request.login = words.last();
    request.displayName = parser.value(QStringLiteral("display-name"));
    if (request.displayName.isEmpty())
        request.displayName = request.login;
    request.role = parser.value(QStringLiteral("role"));
    static const QStringList roles{QStringLiteral("owner"), QStringLiteral("author"),
                                   QStringLiteral("viewer")};
    if (!roles.contains(request.role))
        throw UsageError(QStringLiteral("--role is owner, author or viewer."));
    if (!Users::isUsableLogin(request.login))
        throw UsageError(
            QStringLiteral("the name must have 1 to %1 characters.").arg(Users::longestLogin));
    const QStringList accounts = parser.values(QStringLiteral("account"));
    for (const QString &account : accounts) {
        bool ok = false;
        request.accountIds << account.toLongLong(&ok);
        if (!ok || request.accountIds.last() < 1 ||
            request.accountIds.last() > std::numeric_limits<qint32>::max())
            throw UsageError(QStringLiteral("--account takes the number of an account."));
    }
    return request;
}

QString readPassword(const QCommandLineParser &parser)
{
    const QString file = parser.value(QStringLiteral("password-file"));
    const QString password = file.isEmpty() ? passwordFromStandardInput() : passwordFromFile(file);
    if (password.isEmpty() || password.size() > Users::longestPassword)
        throw std::runtime_error(QStringLiteral("the password must have 1 to %1 characters.")
                                     .arg(Users::longestPassword)
                                     .toStdString());
    return password;
}

void addUser(Store &store, const Request &request, const QString &hash)
{
    store.database.tx([&] {
        if (store.users.find(request.login))
            throw DatabaseError(
                DatabaseError::Kind::Unique,
                QStringLiteral("there is a user \"%1\" already.").arg(request.login));
        const User user = store.users.add(request.login, request.displayName, hash);
        for (const qint64 accountId : request.accountIds) {
            if (!store.accounts.find(accountId))
                throw DatabaseError(DatabaseError::Kind::ForeignKey,
                                    QStringLiteral("there is no account %1.").arg(accountId));
            store.accounts.setRole(accountId, user.userId, request.role);
        }
    });
}

} // namespace

int userCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    const Request request = requestOf(parser);
    const PasswordHasher::Cost cost = costOf(parser);
    Database database(databaseAddress(parser));
    makeReady(database);
    Store store(database, cost);
    addUser(store, request, store.hasher.hash(readPassword(parser)));
    print(QStringLiteral("User \"%1\" was added.").arg(request.login));
    return ExitFine;
}

} // namespace Zel::Service
