// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"

#include <QTest>

using namespace ZelTest;

namespace {

/// "1001 Brightwater Media" for each account, in the order of the answer.
QStringList linesOf(const QXSC::AccountCollectionPtr &accounts)
{
    QStringList lines;
    for (const QXSC::AccountRecordPtr &account : *accounts)
        lines << QStringLiteral("%1 %2").arg(account->accountID).arg(account->accountName);
    return lines;
}

/// The first project of a type that all sample accounts have; tells the accounts apart.
QString firstWebcast(Client &client)
{
    const auto projects = projectsOf(client, QStringLiteral("webcast"));
    return projects && projects->count() > 0 ? projects->item(1)->name : QString();
}

const QString firstOfBrightwater = QStringLiteral("Archive: annual meeting 2019");
const QString firstOfHarbour = QStringLiteral("Autumn lecture: the weather ahead");

} // namespace

class TestContractAccounts : public ContractTest
{
    Q_OBJECT

private slots:
    void listsTheAccountsOfAPerson_data();
    void listsTheAccountsOfAPerson();
    void letsMembersChoose();
    void refusesEveryOtherAccount_data();
    void refusesEveryOtherAccount();
    void refusesEveryAccountToAPersonWithoutOne_data();
    void refusesEveryAccountToAPersonWithoutOne();
    void keepsSessionsApart();
    void forgetsTheAccountOfAFormerMember();
    void showsARenamedAccount();
};

void TestContractAccounts::listsTheAccountsOfAPerson_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QStringList>("accounts");
    const auto row = [](const char *name, const Person &person, const QStringList &accounts) {
        QTest::newRow(name) << person.user << person.password << accounts;
    };
    row("two, by name", maja(),
        {QStringLiteral("1001 Brightwater Media"), QStringLiteral("1002 Harbour Learning")});
    row("one", tomas(), {QStringLiteral("1001 Brightwater Media")});
    row("none", ines(), {});
    // By the name with case and compatibility forms folded, byte by byte; equal ones by number.
    row("many", {QStringLiteral("many"), QStringLiteral("contract-many")},
        {QStringLiteral("2106 10"), QString::fromUtf8("2107 ９"), QStringLiteral("2103 apple"),
         QStringLiteral("2104 Apple"), QStringLiteral("2105 apple pie"),
         QStringLiteral("2101 zebra"), QStringLiteral("2147483647 Zebra"),
         QString::fromUtf8("2102 Äpfel"), QStringLiteral("2108 \ufffd"),
         QString::fromUtf8("2109 😀 \"smile\" \\ & <b>")});
}

void TestContractAccounts::listsTheAccountsOfAPerson()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QStringList, accounts);
    const auto client = signIn({user, password});
    const auto answer = accountsOf(*client);
    QVERIFY(answer); // none is a list, not nothing
    QCOMPARE(linesOf(answer), accounts);
}

void TestContractAccounts::letsMembersChoose()
{
    const auto client = signIn(maja());
    QVERIFY(chooseAccount(*client, QStringLiteral("1001")));
    QCOMPARE(firstWebcast(*client), firstOfBrightwater);
    QVERIFY(chooseAccount(*client, QStringLiteral("1002")));
    QCOMPARE(firstWebcast(*client), firstOfHarbour);
    QVERIFY(chooseAccount(*client, QStringLiteral("1002")));
    QVERIFY(chooseAccount(*client, QStringLiteral("1001")));
    QCOMPARE(firstWebcast(*client), firstOfBrightwater);

    const auto last = signIn({QStringLiteral("many"), QStringLiteral("contract-many")});
    QVERIFY(chooseAccount(*last, QStringLiteral("2147483647")));
    QCOMPARE(projectsOf(*last, QStringLiteral("session"))->count(), 0);
}

namespace {

/// What is no account of tomas nor ines, nor a number of one in the one form it has.
void addRefusedNumbers()
{
    QTest::addColumn<QString>("number");
    for (const char *number : {"1002",
                               "2001",
                               "0",
                               "-1",
                               "-1001",
                               "+1001",
                               "1003",
                               "text",
                               "",
                               " ",
                               " 1001",
                               "1001 ",
                               "1001.0",
                               "1,001",
                               "1e3",
                               "0x3e9",
                               "1001;1002",
                               "1001 OR 1=1",
                               "NaN",
                               "null",
                               "true",
                               "2147483647",
                               "2147483648",
                               "4294968297",
                               "9223372036854775807",
                               "9223372036854775808",
                               "18446744073709552617",
                               "-2147483648",
                               "１００１",
                               "١٠٠١",
                               "1001\n",
                               "😀"})
        QTest::newRow(number) << QString::fromUtf8(number);
    QTest::newRow("as long as can be") << QString(64, QLatin1Char('9'));
}

} // namespace

void TestContractAccounts::refusesEveryOtherAccount_data()
{
    addRefusedNumbers();
}

void TestContractAccounts::refusesEveryOtherAccount()
{
    QFETCH(QString, number);
    const auto client = signIn(tomas());
    QVERIFY(!chooseAccount(*client, number));
    QCOMPARE(failureOf([&] { firstWebcast(*client); }), QStringLiteral("Refused/no-account"));
    QVERIFY(chooseAccount(*client, QStringLiteral("1001")));
    QVERIFY(!chooseAccount(*client, number));
    QCOMPARE(firstWebcast(*client), firstOfBrightwater); // the session keeps the one it has
}

void TestContractAccounts::refusesEveryAccountToAPersonWithoutOne_data()
{
    addRefusedNumbers();
    QTest::newRow("1001") << QStringLiteral("1001");
}

void TestContractAccounts::refusesEveryAccountToAPersonWithoutOne()
{
    QFETCH(QString, number);
    const auto client = signIn(ines());
    QVERIFY(!chooseAccount(*client, number));
    QCOMPARE(failureOf([&] { client->projectTypes(); }), QStringLiteral("Refused/no-account"));
    QCOMPARE(accountsOf(*client)->count(), 0); // the session itself goes on
}

void TestContractAccounts::keepsSessionsApart()
{
    const auto one = signIn(maja(), brightwaterMedia);
    const auto other = signIn(maja(), harbourLearning);
    const auto third = signIn(maja());
    QCOMPARE(firstWebcast(*one), firstOfBrightwater);
    QCOMPARE(firstWebcast(*other), firstOfHarbour);
    QCOMPARE(failureOf([&] { firstWebcast(*third); }), QStringLiteral("Refused/no-account"));
    other->signOut();
    QCOMPARE(firstWebcast(*one), firstOfBrightwater);
}

void TestContractAccounts::forgetsTheAccountOfAFormerMember()
{
    static const Zel::SqlText leave(R"sql(
        DELETE FROM membership WHERE account_id = $1
          AND user_id = (SELECT user_id FROM app_user WHERE login = $2)
    )sql");
    const auto client = signIn(olaf(), contractStudio);
    QVERIFY(projectsOf(*client, QStringLiteral("session")));
    QCOMPARE(database().tx([&] {
        return database().exec(leave, {contractStudio, olaf().user});
    }),
             1);
    QCOMPARE(failureOf([&] { projectsOf(*client, QStringLiteral("session")); }),
             QStringLiteral("Refused/no-account"));
    QVERIFY(!chooseAccount(*client, QString::number(contractStudio)));
    QCOMPARE(accountsOf(*client)->count(), 0);
}

void TestContractAccounts::showsARenamedAccount()
{
    static const Zel::SqlText rename(R"sql(
        UPDATE account SET name = $2, name_key = $2 WHERE account_id = $1
    )sql");
    const auto client = signIn(vera());
    QCOMPARE(linesOf(accountsOf(*client)), (QStringList{QStringLiteral("2001 Contract Studio"),
                                                        QStringLiteral("2002 Quiet Room")}));
    const QString name = QStringLiteral("\ufefftail and\r\nhead");
    database().tx([&] { database().exec(rename, {contractStudio, name}); });
    QCOMPARE(linesOf(accountsOf(*client)),
             (QStringList{QStringLiteral("2002 Quiet Room"), QStringLiteral("2001 ") + name}));
}

ZEL_TEST_MAIN(TestContractAccounts)
#include "tst_contractaccounts.moc"
