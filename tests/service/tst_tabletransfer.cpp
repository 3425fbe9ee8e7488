// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/tabletransfer.h"

#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/rowline.h"
#include "tests/service/steprows.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QSet>
#include <QTest>

#include <algorithm>

using namespace Zel;

namespace {

const SqlText addUser(R"sql(
    INSERT INTO app_user (user_id, login, login_key, display_name, pw_hash, disabled, created_at)
    VALUES ($1, $1, $1, $2, '', $3, $4)
)sql");

const SqlText addKey(R"sql(
    INSERT INTO server_key (kid, secret, created_at) VALUES ($1, $2, 0)
)sql");

TableInfo tableNamed(Database &database, const char *name)
{
    for (const TableInfo &table : readTables(database)) {
        if (table.name == QLatin1String(name))
            return table;
    }
    throw std::logic_error("no such table");
}

QByteArrayList linesOf(Database &database, const TableInfo &table)
{
    QByteArrayList lines;
    database.snapshot(
        [&] { readTable(database, table, [&](const QByteArray &line) { lines << line; }); });
    return lines;
}

void write(Database &database, const TableInfo &table, const QByteArrayList &lines)
{
    database.tx([&] {
        TableWriter writer(database, table);
        for (const QByteArray &line : lines)
            writer.add(line);
        writer.finish();
    });
}

QString charactersFrom(char32_t first, char32_t last)
{
    QString text;
    for (char32_t code = first; code <= last; ++code)
        text += QString::fromUcs4(&code, 1);
    return text;
}

} // namespace

/// Rows are written as text and back, on both databases.
class TableTransferTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void seesTheSameTablesOnBothDatabases();
    void putsTablesThatAreReferredToFirst();
    void leavesTablesOfOthersAlone();
    void readsEqualLinesFromBothDatabases();

    void carriesEveryTextAndEveryByte_data() { bothWays(); }

    void carriesEveryTextAndEveryByte();

    void writesManyRowsAndLongOnes_data() { bothWays(); }

    void writesManyRowsAndLongOnes();
    void readsRowsInTheOrderOfTheKey();
    void writesTheSameLineForTheSameRowOnly();
    void refusesALineThatIsNoRow_data();
    void refusesALineThatIsNoRow();
    void readsOnlyInATransaction();

private:
    void bothWays()
    {
        QTest::addColumn<bool>("toPostgres");
        QTest::newRow("sqlite to postgres") << true;
        QTest::newRow("postgres to sqlite") << false;
    }

    DatabaseAddress fresh(bool postgres) { return m_databases.fresh(postgres); }

    ZelTest::TestDatabases m_databases;
};

void TableTransferTest::seesTheSameTablesOnBothDatabases()
{
    Database sqlite(fresh(false), Database::Missing::Create);
    Database postgres(fresh(true));
    Migrations(sqlite).migrate();
    Migrations(postgres).migrate();
    const QList<TableInfo> ours = readContentTables(sqlite);
    const QList<TableInfo> theirs = readContentTables(postgres);
    QCOMPARE(ours.size(), theirs.size());
    for (qsizetype i = 0; i < ours.size(); ++i)
        QVERIFY2(ours.at(i).matches(theirs.at(i)), qPrintable(ours.at(i).name));
    QVERIFY(ours.size() > 25);
    QCOMPARE(tableNamed(postgres, "asset_file").keyList(),
             QStringLiteral("\"account_id\", \"guid\", \"pos\""));
    QCOMPARE(tableNamed(sqlite, "asset_file").keyList(),
             QStringLiteral("\"account_id\", \"guid\", \"pos\""));
    QCOMPARE(readTables(sqlite).size(), Migrations::tableNames().size());
}

void TableTransferTest::putsTablesThatAreReferredToFirst()
{
    for (const bool postgres : {false, true}) {
        Database database(fresh(postgres), Database::Missing::Create);
        Migrations(database).migrate();
        QSet<QString> seen;
        int references = 0;
        for (const TableInfo &table : readTables(database)) {
            for (const QString &other : table.refersTo) {
                QVERIFY2(seen.contains(other), qPrintable(table.name + QLatin1Char(' ') + other));
                ++references;
            }
            seen.insert(table.name);
        }
        QVERIFY(references > 15);
    }
}

void TableTransferTest::leavesTablesOfOthersAlone()
{
    Database database(fresh(true));
    Migrations(database).migrate();
    const qsizetype before = readTables(database).size();
    database.tx([&] {
        database.runNative(QStringLiteral("CREATE TABLE somebodys_notes (note VARCHAR(5))"));
    });
    QCOMPARE(readTables(database).size(), before);
}

void TableTransferTest::readsEqualLinesFromBothDatabases()
{
    Database sqlite(fresh(false), Database::Missing::Create);
    Database postgres(fresh(true));
    ZelTest::fillUpTo(sqlite, Migrations::latestVersion());
    ZelTest::fillUpTo(postgres, Migrations::latestVersion());
    const QList<TableSum> ours = ZelTest::sumsOf(sqlite);
    const QList<TableSum> theirs = ZelTest::sumsOf(postgres);
    QCOMPARE(ours.size(), theirs.size());
    for (qsizetype i = 0; i < ours.size(); ++i)
        QVERIFY2(ours.at(i) == theirs.at(i), qPrintable(ours.at(i).table));
}

void TableTransferTest::carriesEveryTextAndEveryByte()
{
    QFETCH(bool, toPostgres);
    Database from(fresh(!toPostgres), Database::Missing::Create);
    Database to(fresh(toPostgres), Database::Missing::Create);
    Migrations(from).migrate();
    Migrations(to).migrate();
    const QChar mark(QChar::ByteOrderMark);
    const QStringList texts{
        QString::fromLatin1(""),
        QStringLiteral(" "),
        QStringLiteral("\r\n\t\n\r"),
        QStringLiteral("\"\\/'; -- $1 $$ :a ? \\u0041 \\\\x41"),
        charactersFrom(1, 0x7f),
        charactersFrom(0x80, 0xd7ff),
        charactersFrom(0xe000, 0xfffd),
        charactersFrom(0x1f600, 0x1f64f) + charactersFrom(0x10fff0, 0x10ffff),
        QString(mark),
        mark + QStringLiteral("after a mark"),
        mark + QString(mark) + QStringLiteral("x") + mark,
        QString(QChar(0xfffd)),
        QStringLiteral("{\"a\":[1,2]}"),
        QString(1024 * 1024, QChar(0x2028)),
    };
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes += char(i);
    from.tx([&] {
        int number = 0;
        for (const QString &text : texts)
            from.exec(addUser, {QStringLiteral("u%1").arg(++number, 3, 10, QLatin1Char('0')), text,
                                number % 2 == 0, std::numeric_limits<qint64>::min() + number});
        from.exec(addKey, {QStringLiteral("all"), bytes});
        from.exec(addKey, {QStringLiteral("none"), QByteArray()});
    });
    for (const char *name : {"app_user", "server_key"}) {
        const TableInfo table = tableNamed(from, name);
        const TableInfo target = tableNamed(to, name);
        const QByteArrayList lines = linesOf(from, table);
        write(to, target, lines);
        QCOMPARE(linesOf(to, target), lines);
    }
    static const SqlText names(R"sql(
        SELECT display_name FROM app_user ORDER BY user_id NULLS FIRST
    )sql");
    QCOMPARE(QStringList(to.rows(names, {}, [](const SqlRow &row) { return row.text(0); })), texts);
    static const SqlText secrets(R"sql(
        SELECT secret FROM server_key ORDER BY kid NULLS FIRST
    )sql");
    QCOMPARE(to.rows(secrets, {}, [](const SqlRow &row) { return row.bytes(0); }),
             (QList<QByteArray>{bytes, QByteArray("")}));
}

void TableTransferTest::writesManyRowsAndLongOnes()
{
    QFETCH(bool, toPostgres);
    Database to(fresh(toPostgres), Database::Missing::Create);
    Migrations(to).migrate();
    const TableInfo table = tableNamed(to, "account");
    QByteArrayList lines;
    for (int i = 1; i <= 1234; ++i)
        lines << "[" + QByteArray::number(i) + ",\"" +
                     QByteArray(i % 100 == 0 ? 700'000 : i % 7, 'x') + "\",\"\"]\n";
    write(to, table, lines);
    QCOMPARE(linesOf(to, table), lines);
}

void TableTransferTest::readsRowsInTheOrderOfTheKey()
{
    // By the bytes of UTF-8, which is another order than that of UTF-16 and than any language's.
    const QStringList sorted{QStringLiteral("A"),    QStringLiteral("B"),
                             QStringLiteral("a"),    QStringLiteral("aa"),
                             QStringLiteral("ä"),    QString(QChar(0xe000)),
                             QString(QChar(0xffe6)), QString::fromUtf8("\xf0\x9f\x98\x80")};
    for (const bool postgres : {false, true}) {
        Database database(fresh(postgres), Database::Missing::Create);
        Migrations(database).migrate();
        database.tx([&] {
            for (auto id = sorted.crbegin(); id != sorted.crend(); ++id)
                database.exec(addUser, {*id, QString(), false, 0});
        });
        QStringList found;
        const TableInfo table = tableNamed(database, "app_user");
        for (const QByteArray &line : linesOf(database, table))
            found << rowValues(table, line).constFirst().variant().toString();
        QCOMPARE(found, sorted);
    }
}

void TableTransferTest::writesTheSameLineForTheSameRowOnly()
{
    Database database(fresh(false), Database::Missing::Create);
    ZelTest::fillUpTo(database, 1);
    const QByteArrayList lines = linesOf(database, tableNamed(database, "session"));
    QCOMPARE(lines, (QByteArrayList{"[\"/wA=\",\"u-1\",1,\"Studio\",1,2,3]\n",
                                    "[\"/wE=\",\"u-2\",null,\"\",1,2,9223372036854775807]\n"}));
    TableSumBuilder parted;
    TableSumBuilder joined;
    parted.add("[1]\n");
    parted.add("[2]\n");
    joined.add("[1]\n[2]\n");
    QCOMPARE(parted.sum({}).sha256, joined.sum({}).sha256);
    QVERIFY(!(parted.sum({}) == joined.sum({})));
}

void TableTransferTest::refusesALineThatIsNoRow_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char *name, const QByteArray &line) { QTest::newRow(name) << line; };
    row("nothing", "");
    row("no JSON", "[\"k\",\"AA==\",1");
    row("an object", "{\"kid\":\"k\"}");
    row("too few", "[\"k\",\"AA==\"]");
    row("too many", "[\"k\",\"AA==\",1,2]");
    row("text for a number", "[\"k\",\"AA==\",\"1\"]");
    row("a fraction", "[\"k\",\"AA==\",1.5]");
    row("too large", "[\"k\",\"AA==\",9223372036854775808]");
    row("far too large", "[\"k\",\"AA==\",1e300]");
    row("a boolean", "[\"k\",\"AA==\",true]");
    row("number for text", "[1,\"AA==\",1]");
    row("strange base64", "[\"k\",\"A*==\",1]");
    row("number for bytes", "[\"k\",5,1]");
    row("U+0000", "[\"\\u0000\",\"AA==\",1]");
    row("half a pair", "[\"\\ud800\",\"AA==\",1]");
    row("null where there has to be a value", "[null,\"AA==\",1]");
}

void TableTransferTest::refusesALineThatIsNoRow()
{
    QFETCH(QByteArray, line);
    Database database(fresh(false), Database::Missing::Create);
    Migrations(database).migrate();
    const TableInfo table = tableNamed(database, "server_key");
    QVERIFY_THROWS_EXCEPTION(DatabaseError, write(database, table, {line}));
    QCOMPARE(linesOf(database, table), QByteArrayList());
    write(database, table, {"[\"k\",\"AA==\",1]\n"});
    QCOMPARE(linesOf(database, table), QByteArrayList{"[\"k\",\"AA==\",1]\n"});
}

void TableTransferTest::readsOnlyInATransaction()
{
    Database database(fresh(false), Database::Missing::Create);
    Migrations(database).migrate();
    const TableInfo table = tableNamed(database, "account");
    QVERIFY_THROWS_EXCEPTION(std::logic_error, readTable(database, table));
}

ZEL_TEST_MAIN(TableTransferTest)
#include "tst_tabletransfer.moc"
