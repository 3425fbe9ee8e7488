// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/numberoption.h"
#include "service/daemon/passwordinput.h"
#include "service/daemon/peoplecalls.h"
#include "service/daemon/program.h"
#include "service/store/storabletext.h"
#include "service/store/store.h"

#include <QHash>

namespace Zel::Service {

namespace {

constexpr qsizetype longestDisplayName = 256;

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    addCostOption(parser);
    parser.addPositionalArgument(
        QStringLiteral("what"), QStringLiteral("What to do."),
        QStringLiteral(
            "add NAME | list | password NAME | disable NAME | enable NAME | sign-out NAME "
            "| rename NAME [NEW-NAME]"));
    parser.addOptions(
        {{QStringLiteral("display-name"),
          QStringLiteral(
              "With add and rename: the name shown; with add the name to sign in with if "
              "left out."),
          QStringLiteral("text")},
         {QStringLiteral("account"),
          QStringLiteral("With add: the number of an account to join; may be given several times."),
          QStringLiteral("number")},
         {QStringLiteral("role"),
          QStringLiteral("With --account: owner, author (the default) or viewer."),
          QStringLiteral("role"), QStringLiteral("author")},
         {QStringLiteral("password-file"),
          QStringLiteral("Where to read the password from; else it is read from standard input."),
          QStringLiteral("file")}});
    parseCommand(
        parser, QStringLiteral("user"),
        QStringLiteral("The people who may sign in. A password is the first line of standard input "
                       "or of a file, never an argument. Who gets a new password, is disabled or "
                       "signed out has no session any more, at once; names are compared without "
                       "regard to case."),
        arguments);
}

QString loginIn(const QString &text)
{
    if (!Users::isUsableLogin(text))
        throw UsageError(
            QStringLiteral("the name must have 1 to %1 characters.").arg(Users::longestLogin));
    return text;
}

/// Empty when it was not given.
QString displayNameIn(const QCommandLineParser &parser)
{
    const QString option = QStringLiteral("display-name");
    const QString text = parser.value(option);
    const bool isUsable =
        !text.trimmed().isEmpty() && text.size() <= longestDisplayName && isStorableText(text);
    if (parser.isSet(option) && !isUsable)
        throw UsageError(
            QStringLiteral("--display-name must have 1 to %1 characters.").arg(longestDisplayName));
    return text;
}

QString readPassword(const QCommandLineParser &parser)
{
    const QString file = parser.value(QStringLiteral("password-file"));
    const QString password = file.isEmpty() ? passwordFromStandardInput() : passwordFromFile(file);
    if (password.isEmpty() || password.size() > Users::longestPassword)
        fail(QStringLiteral("the password must have 1 to %1 characters.")
                 .arg(Users::longestPassword));
    return password;
}

void expectFreeName(Store &store, const QString &login)
{
    if (store.users.find(login))
        fail(QStringLiteral("there is a user \"%1\" already.").arg(login));
}

/// How `user` is used with the words that were given; runs later, on a database.
class UserCommand
{
public:
    explicit UserCommand(const QCommandLineParser &parser)
        : m_parser(parser)
        , m_words(parser.positionalArguments())
        , m_displayName(displayNameIn(parser))
        , m_accounts(accountNumbers(parser))
        , m_role(roleIn(parser.value(QStringLiteral("role")), QStringLiteral("--role")))
    {
        const bool renamesOnly = is("rename", 1) && !m_displayName.isEmpty();
        if (!is("list", 0) && !is("add", 1) && !is("password", 1) && !is("disable", 1) &&
            !is("enable", 1) && !is("sign-out", 1) && !is("rename", 2) && !renamesOnly)
            throw UsageError(QStringLiteral(
                "it reads \"user add NAME\", \"user list\", \"user password NAME\", \"user disable "
                "NAME\", \"user enable NAME\", \"user sign-out NAME\", \"user rename NAME "
                "NEW-NAME\" "
                "or \"user rename NAME --display-name TEXT\"."));
        if (is("add", 1) || is("rename", 2))
            loginIn(m_words.last());
    }

    int run(Store &store)
    {
        const QString login = m_words.value(1);
        if (is("list", 0))
            list(store);
        else if (is("add", 1))
            add(store, login);
        else if (is("password", 1))
            changePassword(store, login);
        else if (is("disable", 1))
            setDisabled(store, login, true);
        else if (is("enable", 1))
            setDisabled(store, login, false);
        else if (is("sign-out", 1))
            signOut(store, login);
        else
            rename(store, login);
        return ExitFine;
    }

private:
    bool is(const char *word, qsizetype count) const
    {
        return m_words.value(0) == QLatin1String(word) && m_words.size() == count + 1;
    }

    void list(Store &store)
    {
        QHash<QString, QStringList> roles;
        const QList<Account> accounts = store.accounts.all();
        for (const Account &account : accounts) {
            const QList<Member> members = store.accounts.members(account.accountId);
            for (const Member &member : members)
                roles[member.userId]
                    << QStringLiteral("%1 %2").arg(account.accountId).arg(member.role);
        }
        const QList<User> all = store.users.all();
        for (const User &user : all) {
            const QStringList memberships = roles.value(user.userId);
            print(QStringLiteral("%1  \"%2\"  %3%4")
                      .arg(oneLine(user.login), oneLine(user.displayName),
                           memberships.isEmpty() ? QStringLiteral("no account")
                                                 : memberships.join(QLatin1String(", ")),
                           user.disabled ? QStringLiteral("  disabled") : QString()));
        }
        print(QStringLiteral("%1 people").arg(all.size()));
    }

    void add(Store &store, const QString &login)
    {
        expectFreeName(store, login); // before anybody types a password
        for (const qint64 accountId : m_accounts)
            expectAccount(store, accountId);
        const QString hash = store.hasher.hash(readPassword(m_parser));
        store.database.tx([&] {
            expectFreeName(store, login);
            const QString shown = m_displayName.isEmpty() ? login : m_displayName;
            const User user = store.users.add(login, shown, hash);
            for (const qint64 accountId : m_accounts) {
                expectAccount(store, accountId);
                store.accounts.setRole(accountId, user.userId, m_role);
            }
        });
        print(QStringLiteral("User \"%1\" was added.").arg(login));
    }

    void changePassword(Store &store, const QString &login)
    {
        expectUser(store, login);
        const QString hash = store.hasher.hash(readPassword(m_parser));
        const qint64 ended = store.database.tx([&] {
            const User user = expectUser(store, login);
            store.users.changePasswordHash(user.userId, hash);
            return store.sessions.endAll(user.userId);
        });
        print(QStringLiteral("User \"%1\" has a new password; %2 session(s) ended.")
                  .arg(login)
                  .arg(ended));
    }

    void setDisabled(Store &store, const QString &login, bool disabled)
    {
        const qint64 ended = store.database.tx([&] {
            const User user = expectUser(store, login);
            store.users.setDisabled(user.userId, disabled);
            return disabled ? store.sessions.endAll(user.userId) : 0;
        });
        print(disabled ? QStringLiteral("User \"%1\" cannot sign in any more; %2 session(s) ended.")
                             .arg(login)
                             .arg(ended)
                       : QStringLiteral("User \"%1\" can sign in.").arg(login));
    }

    void signOut(Store &store, const QString &login)
    {
        const qint64 ended = store.database.tx(
            [&] { return store.sessions.endAll(expectUser(store, login).userId); });
        print(QStringLiteral("%1 session(s) of user \"%2\" ended.").arg(ended).arg(login));
    }

    void rename(Store &store, const QString &login)
    {
        const QString newLogin = m_words.value(2, login);
        store.database.tx([&] {
            const User user = expectUser(store, login);
            // A name may be changed into itself in other letters.
            const auto other = store.users.find(newLogin);
            if (other && other->userId != user.userId)
                expectFreeName(store, newLogin);
            if (m_words.size() > 2)
                store.users.changeLogin(user.userId, newLogin);
            if (!m_displayName.isEmpty())
                store.users.changeDisplayName(user.userId, m_displayName);
        });
        print(QStringLiteral("User \"%1\" was renamed.").arg(newLogin));
    }

    const QCommandLineParser &m_parser;
    QStringList m_words;
    QString m_displayName;
    QList<qint64> m_accounts;
    QString m_role;
};

} // namespace

int userCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    UserCommand command(parser);
    const PasswordHasher::Cost cost = costOf(parser);
    Database database(databaseAddress(parser));
    makeReady(database);
    Store store(database, cost);
    return command.run(store);
}

} // namespace Zel::Service
