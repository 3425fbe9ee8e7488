// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/numberoption.h"
#include "service/daemon/peoplecalls.h"
#include "service/daemon/program.h"
#include "service/store/storabletext.h"
#include "service/store/store.h"

#include <algorithm>
#include <functional>

namespace Zel::Service {

namespace {

constexpr qsizetype longestName = 256;

void setUp(QCommandLineParser &parser, const QStringList &arguments)
{
    parser.addOptions(
        {{QStringLiteral("number"),
          QStringLiteral("With add: the number; the next free one if left out."),
          QStringLiteral("number")},
         {QStringLiteral("force"),
          QStringLiteral(
              "With member and remove-member: also when nobody is left then who owns the "
              "account.")}});
    parser.addPositionalArgument(
        QStringLiteral("what"), QStringLiteral("What to do; ROLE is owner, author or viewer."),
        QStringLiteral("add NAME | list | rename NUMBER NAME | members NUMBER | member NUMBER USER "
                       "ROLE | remove-member NUMBER USER"));
    parseCommand(
        parser, QStringLiteral("account"),
        QStringLiteral("The accounts and who belongs to them. A change holds from the next "
                       "call on, also for people who are signed in."),
        arguments);
}

QString nameIn(const QString &text)
{
    if (text.trimmed().isEmpty() || text.size() > longestName || !isStorableText(text))
        throw UsageError(
            QStringLiteral("the name of an account has 1 to %1 characters.").arg(longestName));
    return text;
}

int add(Store &store, const QString &name, const QCommandLineParser &parser)
{
    const QString text = parser.value(QStringLiteral("number"));
    const qint64 wanted = text.isEmpty() ? 0 : accountNumberIn(text, QStringLiteral("--number"));
    const qint64 number = store.database.tx([&] {
        const QList<Account> all = store.accounts.all();
        const qint64 free = wanted > 0 ? wanted : (all.isEmpty() ? 1 : all.last().accountId + 1);
        if (store.accounts.find(free))
            fail(QStringLiteral("there is an account %1 already.").arg(free));
        if (free > largestAccountNumber)
            fail(QStringLiteral("no higher number is left: say which one with --number."));
        store.accounts.add({free, name});
        return free;
    });
    print(QStringLiteral("Account %1 \"%2\" was added.").arg(number).arg(name));
    return ExitFine;
}

int list(Store &store)
{
    const QList<Account> all = store.accounts.all();
    for (const Account &account : all)
        print(QStringLiteral("%1  %2  (%3 members)")
                  .arg(account.accountId)
                  .arg(oneLine(account.name))
                  .arg(store.accounts.members(account.accountId).size()));
    print(QStringLiteral("%1 accounts").arg(all.size()));
    return ExitFine;
}

int rename(Store &store, qint64 number, const QString &name)
{
    store.database.tx([&] {
        expectAccount(store, number);
        store.accounts.rename({number, name});
    });
    print(QStringLiteral("Account %1 is called \"%2\" now.").arg(number).arg(name));
    return ExitFine;
}

int listMembers(Store &store, qint64 number)
{
    expectAccount(store, number);
    const QList<Member> members = store.accounts.members(number);
    for (const Member &member : members)
        print(QStringLiteral("%1  %2").arg(oneLine(member.login), member.role));
    print(QStringLiteral("%1 members").arg(members.size()));
    return ExitFine;
}

/// Throws when the person is the only one who owns the account: nobody could give rights any more.
void expectAnotherOwner(Store &store, qint64 number, const User &user)
{
    const QString owner = QStringLiteral("owner");
    const QList<Member> members = store.accounts.members(number);
    const bool isOwner = store.accounts.role(number, user.userId) == owner;
    const bool hasOther = std::any_of(members.begin(), members.end(), [&](const Member &member) {
        return member.role == owner && member.userId != user.userId;
    });
    if (isOwner && !hasOther)
        fail(QStringLiteral("\"%1\" is the last owner of account %2; --force does it all the same.")
                 .arg(user.login)
                 .arg(number));
}

int setMember(Store &store, qint64 number, const QString &login, const QString &role, bool force)
{
    const bool isSame = store.database.tx([&] {
        expectAccount(store, number);
        const User user = expectUser(store, login);
        const bool same = store.accounts.role(number, user.userId) == role;
        if (!same && !force)
            expectAnotherOwner(store, number, user);
        store.accounts.setRole(number, user.userId, role);
        return same;
    });
    print(isSame
              ? QStringLiteral("\"%1\" is %2 of account %3 already.").arg(login, role).arg(number)
              : QStringLiteral("\"%1\" is %2 of account %3 now.").arg(login, role).arg(number));
    return ExitFine;
}

int removeMember(Store &store, qint64 number, const QString &login, bool force)
{
    store.database.tx([&] {
        expectAccount(store, number);
        const User user = expectUser(store, login);
        if (!store.accounts.role(number, user.userId))
            fail(QStringLiteral("\"%1\" is no member of account %2.").arg(login).arg(number));
        if (!force)
            expectAnotherOwner(store, number, user);
        store.accounts.removeMember(number, user.userId);
    });
    print(QStringLiteral("\"%1\" is no member of account %2 any more.").arg(login).arg(number));
    return ExitFine;
}

} // namespace

int accountCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    setUp(parser, arguments);
    const QStringList words = parser.positionalArguments();
    const QString what = words.value(0);
    const bool force = parser.isSet(QStringLiteral("force"));
    const auto is = [&](const char *word, qsizetype count) {
        return what == QLatin1String(word) && words.size() == count + 1;
    };
    // What is wrong with the words is said before the database is looked at.
    std::function<int(Store &)> work;
    if (is("add", 1)) {
        work = [&, name = nameIn(words.at(1))](Store &store) { return add(store, name, parser); };
    } else if (is("list", 0)) {
        work = list;
    } else if (is("rename", 2)) {
        work = [number = accountNumberIn(words.at(1), QStringLiteral("the number")),
                name = nameIn(words.at(2))](Store &store) { return rename(store, number, name); };
    } else if (is("members", 1)) {
        work = [number = accountNumberIn(words.at(1), QStringLiteral("the number"))](Store &store) {
            return listMembers(store, number);
        };
    } else if (is("member", 3)) {
        work = [&, number = accountNumberIn(words.at(1), QStringLiteral("the number")),
                role = roleIn(words.at(3), QStringLiteral("the role"))](Store &store) {
            return setMember(store, number, words.at(2), role, force);
        };
    } else if (is("remove-member", 2)) {
        work = [&, number = accountNumberIn(words.at(1), QStringLiteral("the number"))](
                   Store &store) { return removeMember(store, number, words.at(2), force); };
    } else {
        throw UsageError(QStringLiteral(
            "it reads \"account add NAME\", \"account list\", \"account rename NUMBER NAME\", "
            "\"account members NUMBER\", \"account member NUMBER USER ROLE\" or \"account "
            "remove-member NUMBER USER\"."));
    }
    Database database(databaseAddress(parser));
    makeReady(database);
    Store store(database, PasswordHasher::Cost::Minimal);
    return work(store);
}

} // namespace Zel::Service
