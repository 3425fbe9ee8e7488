// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"

#include <QFile>
#include <QHash>
#include <QTest>

using namespace ZelTest;

namespace {

/// Everybody who has accounts, so that every list is answered to somebody.
const QList<Person> &people()
{
    static const QList<Person> all{
        maja(),
        tomas(),
        ines(),
        nora(),
        olaf(),
        vera(),
        {QString::fromUtf8("Zoë 🎥"), QString::fromUtf8("pä\"ss\\wörd 🔑\r\n ")},
        {QStringLiteral("many"), QStringLiteral("contract-many")}};
    return all;
}

} // namespace

/// The answers of every list, beside a text that was checked by hand once: so both databases answer
/// alike, and no answer changes unnoticed.
class TestContractAnswers : public ContractTest
{
    Q_OBJECT

private slots:
    void areWhatTheyAreOnEveryDatabase();

private:
    void writeAccount(Client &client, const QXSC::AccountRecord &account);
    static QStringList linesOf(Client &client, const QString &account);

    QStringList m_lines;
    QHash<qint32, QStringList> m_known; ///< what an account holds
};

void TestContractAnswers::areWhatTheyAreOnEveryDatabase()
{
    for (const Person &person : people()) {
        const auto client = signIn(person);
        m_lines << oneLine(person.user);
        const auto accounts = accountsOf(*client);
        for (const QXSC::AccountRecordPtr &account : *accounts)
            writeAccount(*client, *account);
    }
    const QString actual = m_lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    QFile file(QStringLiteral(ZEL_FIXTURES "/contract/answers.txt"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QString expected = QString::fromUtf8(file.readAll());
    if (actual == expected)
        return;
    // For who changes the workspaces: look at the difference, then take it over.
    QFile other(QStringLiteral(ZEL_BIN_DIR "/../tests/answers.txt"));
    QVERIFY2(other.open(QIODevice::WriteOnly), qPrintable(other.errorString()));
    other.write(actual.toUtf8());
    qInfo("the answers are in %s", qPrintable(other.fileName()));
    QCOMPARE(actual.split(QLatin1Char('\n')), expected.split(QLatin1Char('\n')));
}

void TestContractAnswers::writeAccount(Client &client, const QXSC::AccountRecord &account)
{
    const QString number = QString::number(account.accountID);
    m_lines << QStringLiteral("  %1 %2").arg(number, oneLine(account.accountName));
    const QStringList lines = linesOf(client, number);
    const auto known = m_known.constFind(account.accountID);
    if (known == m_known.constEnd()) {
        m_lines << lines;
        m_known.insert(account.accountID, lines);
    } else {
        m_lines << QStringLiteral("    as above");
        QCOMPARE(lines, *known);
    }
}

QStringList TestContractAnswers::linesOf(Client &client, const QString &account)
{
    QStringList lines;
    if (!chooseAccount(client, account))
        return {QStringLiteral("    refused")};
    const auto types = client.projectTypes();
    for (const QXSC::ProjectType &type : types) {
        lines << QStringLiteral("    %1 = %2").arg(oneLine(type.typeID), oneLine(type.name));
        const auto projects = projectsOf(client, type.typeID);
        for (const QXSC::ProjectRecordPtr &project : *projects)
            lines << QStringLiteral("      ") + textOf(*project);
    }
    return lines;
}

ZEL_TEST_MAIN(TestContractAnswers)
#include "tst_contractanswers.moc"
