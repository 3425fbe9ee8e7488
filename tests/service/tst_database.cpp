// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QSqlDatabase>
#include <QTest>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Zel;

namespace {

const SqlText insertRow("INSERT INTO item (id, label, flag, data) VALUES ($1, $2, $3, $4)");
const SqlText insertSwapped("INSERT INTO item (label, id, flag, data) VALUES ($2, $1, $4, $3)");
const SqlText updateLabel("UPDATE item SET label = $2 WHERE id = $1");
const SqlText readRow("SELECT label, flag, data, id FROM item WHERE id = $1");
const SqlText countRows("SELECT COUNT(*) FROM item");
const SqlText matchOrAll("SELECT COUNT(*) FROM item WHERE CAST($1 AS TEXT) IS NULL OR label = $1");
const SqlText orderedLabels("SELECT label FROM item ORDER BY label NULLS FIRST");
const SqlText insertChild("INSERT INTO child (item_id) VALUES ($1)");
const SqlText readCounter("SELECT value FROM counter WHERE id = 1");
const SqlText writeCounter("UPDATE counter SET value = $1 WHERE id = 1");
const SqlText sumCounters("SELECT CAST(SUM(value) AS BIGINT) FROM counter");
const SqlText addToCounter("UPDATE counter SET value = value + 1 WHERE id = $1");

DatabaseError::Kind kindOf(const std::function<void()> &function)
{
    try {
        function();
    } catch (const DatabaseError &error) {
        return error.kind();
    }
    throw std::logic_error("nothing was thrown");
}

} // namespace

/// Each function runs on SQLite and on PostgreSQL.
class DatabaseTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    void init()
    {
        TestCase::init();
        QFETCH_GLOBAL(bool, postgres);
        m_database =
            std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
        const char *tables =
            postgres ? "CREATE TABLE item (id BIGINT PRIMARY KEY, label TEXT COLLATE \"C\" NOT "
                       "NULL UNIQUE, "
                       "flag BOOLEAN NOT NULL, data BYTEA, CHECK (id < 1000000000000))"
                     : "CREATE TABLE item (id INTEGER PRIMARY KEY, label TEXT NOT NULL UNIQUE, "
                       "flag INTEGER NOT NULL, data BLOB, CHECK (id < 1000000000000)) STRICT";
        m_database->tx([&] {
            if (!postgres)
                m_database->runNative(QStringLiteral("PRAGMA application_id = %1")
                                          .arg(Migrations::sqliteApplicationId));
            m_database->runNative(QString::fromLatin1(tables));
            m_database->runNative(
                QStringLiteral("CREATE TABLE child (item_id BIGINT REFERENCES item (id))"));
            m_database->runNative(
                QStringLiteral("CREATE TABLE counter (id BIGINT PRIMARY KEY, value BIGINT)"));
            m_database->runNative(QStringLiteral("INSERT INTO counter VALUES (1, 0)"));
        });
    }

    void cleanup() { m_database.reset(); }

    void bringsEveryTypeBackAsItWent_data();
    void bringsEveryTypeBackAsItWent();
    void bindsByNumberWhateverTheOrderInTheText();
    void comparesAnUnsetParameterWithoutAType();
    void ordersTextsByTheirBytes();
    void readsBackNullApartFromEmpty();
    void refusesTextsThatCannotBeStored();
    void refusesTheWrongNumberOfValues();
    void tellsErrorsApartByKind();
    void showsNoValuesInItsMessages();
    void refusesToReadAValueAsAnotherType();
    void rollsBackWhenTheFunctionThrows();
    void neverCommitsAfterASwallowedError();
    void refusesWritesOutsideOfATransaction();
    void refusesAStatementWhileRowsAreRead();
    void joinsAnInnerTransactionToTheOuter();
    void refusesAWriteInsideASnapshot();
    void showsOneStateInASnapshot();
    void repeatsConflictingTransactionsUntilAllCount();
    void dropsTheConnectionOfAThreadThatEnds();
    void readsLongResultsWhole();
    void oneOfTwoThatReadTheSameStateCommits();
    void tellsAFullDatabase();

private:
    void run(const char *sql)
    {
        m_database->tx([&] { m_database->runNative(QString::fromLatin1(sql)); });
    }

    void insert(qint64 id, const QString &label)
    {
        m_database->tx([&] { m_database->exec(insertRow, {id, label, false, std::nullopt}); });
    }

    qint64 count()
    {
        return *m_database->row(countRows, {}, [](const SqlRow &row) { return row.integer(0); });
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<Database> m_database;
};

void DatabaseTest::bringsEveryTypeBackAsItWent_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<qint64>("id");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("plain") << "plain" << qint64(1) << true << QByteArray("abc");
    QTest::newRow("empty") << "" << qint64(0) << false << QByteArray("");
    QTest::newRow("quotes and backslashes")
        << "it's \"so\" \\n \\\\ $1 :a ? --" << qint64(-5) << true << QByteArray("'\\x00");
    QTest::newRow("line ends and controls") << QStringLiteral("a\r\nb\rc\nd\te\x01\x7f")
                                            << qint64(7) << false << QByteArray("\0\1\xff\0", 4);
    QTest::newRow("astral and combining")
        << QString::fromUtf8("😀 Ä A\u0308 日本 \u2028") << qint64(999999999999) << true
        << QByteArray::fromHex("00ff5c27");
    QTest::newRow("byte order marks")
        << QStringLiteral("\ufeff\ufeffa\ufeff") << qint64(8) << true << QByteArray("\xef\xbb\xbf");
    QTest::newRow("byte order mark alone")
        << QStringLiteral("\ufeff") << qint64(9) << true << QByteArray("\xff\xfe");
    QTest::newRow("least 64-bit number")
        << "x" << std::numeric_limits<qint64>::min() << true << QByteArray("x");
}

void DatabaseTest::bringsEveryTypeBackAsItWent()
{
    QFETCH(QString, label);
    QFETCH(qint64, id);
    QFETCH(bool, flag);
    QFETCH(QByteArray, data);
    m_database->tx([&] { m_database->exec(insertRow, {id, label, flag, data}); });
    const bool found = m_database
                           ->row(readRow, {id},
                                 [&](const SqlRow &row) {
                                     return row.text(0) == label && row.boolean(1) == flag &&
                                            row.bytes(2) == data && row.integer(3) == id;
                                 })
                           .value();
    QVERIFY(found);
}

void DatabaseTest::bindsByNumberWhateverTheOrderInTheText()
{
    m_database->tx([&] {
        m_database->exec(insertSwapped,
                         {qint64(3), QStringLiteral("three"), QByteArray("d"), true});
    });
    const auto label =
        m_database->row(readRow, {qint64(3)}, [](const SqlRow &row) { return row.text(0); });
    QCOMPARE(label.value(), QStringLiteral("three"));
}

void DatabaseTest::comparesAnUnsetParameterWithoutAType()
{
    insert(1, QStringLiteral("a"));
    insert(2, QStringLiteral("b"));
    const auto matches = [&](const SqlValue &value) {
        return *m_database->row(matchOrAll, {value},
                                [](const SqlRow &row) { return row.integer(0); });
    };
    QCOMPARE(matches(std::nullopt), 2);
    QCOMPARE(matches(QStringLiteral("a")), 1);
}

void DatabaseTest::ordersTextsByTheirBytes()
{
    const QStringList expected{QStringLiteral("A"),     QStringLiteral("Z"),
                               QStringLiteral("a"),     QString::fromUtf8("ä"),
                               QString::fromUtf8("日"), QString::fromUtf8("😀")};
    for (qsizetype i = 0; i < expected.size(); ++i)
        insert(i, expected.at(expected.size() - 1 - i));
    QCOMPARE(m_database->rows(orderedLabels, {}, [](const SqlRow &row) { return row.text(0); }),
             expected);
}

void DatabaseTest::readsBackNullApartFromEmpty()
{
    m_database->tx([&] {
        m_database->exec(insertRow, {qint64(1), QString(), false, std::nullopt});
        m_database->exec(insertRow, {qint64(2), QStringLiteral("b"), false, QByteArray()});
    });
    const auto isNull = [&](qint64 id) {
        return *m_database->row(readRow, {id}, [](const SqlRow &row) { return row.isNull(2); });
    };
    QVERIFY(isNull(1));
    QVERIFY(!isNull(2));
    QVERIFY(
        !*m_database->row(readRow, {qint64(1)}, [](const SqlRow &row) { return row.isNull(0); }));
}

void DatabaseTest::refusesTextsThatCannotBeStored()
{
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, SqlValue(QStringLiteral("a\0b")));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, SqlValue(QString(QChar(0xd800))));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, SqlValue(QString(QChar(0xfffe))));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, SqlValue(QStringLiteral("a\uffff")));
}

void DatabaseTest::refusesTheWrongNumberOfValues()
{
    QVERIFY_THROWS_EXCEPTION(std::logic_error,
                             m_database->query(readRow, {}, [](const SqlRow &) {}));
}

void DatabaseTest::tellsErrorsApartByKind()
{
    insert(1, QStringLiteral("a"));
    const auto write = [&](const SqlText &text, const SqlValues &values) {
        return kindOf([&] { m_database->tx([&] { m_database->exec(text, values); }); });
    };
    QCOMPARE(write(insertRow, {qint64(1), QStringLiteral("b"), true, std::nullopt}),
             DatabaseError::Kind::Unique);
    QCOMPARE(write(insertRow, {qint64(2), QStringLiteral("a"), true, std::nullopt}),
             DatabaseError::Kind::Unique);
    QCOMPARE(write(insertRow, {std::nullopt, std::nullopt, true, std::nullopt}),
             DatabaseError::Kind::Check);
    QCOMPARE(write(insertRow, {qint64(1000000000000), QStringLiteral("c"), true, std::nullopt}),
             DatabaseError::Kind::Check);
    QCOMPARE(write(insertChild, {qint64(77)}), DatabaseError::Kind::ForeignKey);
    QCOMPARE(kindOf([&] { m_database->query(SqlText("SELECT nothing FROM nowhere"), {}, {}); }),
             DatabaseError::Kind::Other);
    QCOMPARE(count(), 1);
}

void DatabaseTest::showsNoValuesInItsMessages()
{
    try {
        m_database->tx([&] {
            m_database->exec(insertRow, {qint64(1000000000000), QStringLiteral("my-secret"), true,
                                         std::nullopt});
        });
        QFAIL("it was stored");
    } catch (const DatabaseError &error) {
        QVERIFY(!error.message().isEmpty());
        QVERIFY2(!error.message().contains(QLatin1String("my-secret")), error.what());
    }
}

void DatabaseTest::refusesToReadAValueAsAnotherType()
{
    insert(1, QStringLiteral("a"));
    const auto reading = [&](const std::function<void(const SqlRow &)> &read) {
        return kindOf([&] { m_database->query(readRow, {qint64(1)}, read); });
    };
    QCOMPARE(reading([](const SqlRow &row) { row.integer(0); }), DatabaseError::Kind::Corrupt);
    QCOMPARE(reading([](const SqlRow &row) { row.text(3); }), DatabaseError::Kind::Corrupt);
    QCOMPARE(reading([](const SqlRow &row) { row.bytes(2); }), DatabaseError::Kind::Corrupt);
}

void DatabaseTest::rollsBackWhenTheFunctionThrows()
{
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, m_database->tx([&] {
        m_database->exec(insertRow, {qint64(1), QStringLiteral("a"), true, std::nullopt});
        throw std::runtime_error("changed my mind");
    }));
    QCOMPARE(count(), 0);
    insert(1, QStringLiteral("a"));
    QCOMPARE(count(), 1);
}

void DatabaseTest::neverCommitsAfterASwallowedError()
{
    insert(1, QStringLiteral("a"));
    QVERIFY_THROWS_EXCEPTION(std::logic_error, m_database->tx([&] {
        m_database->exec(insertRow, {qint64(2), QStringLiteral("b"), true, std::nullopt});
        try {
            m_database->exec(insertRow, {qint64(1), QStringLiteral("c"), true, std::nullopt});
        } catch (const DatabaseError &) {
            // what a careless caller would do
        }
    }));
    QCOMPARE(count(), 1);
}

void DatabaseTest::refusesWritesOutsideOfATransaction()
{
    QVERIFY_THROWS_EXCEPTION(
        std::logic_error,
        m_database->exec(insertRow, {qint64(1), QStringLiteral("a"), true, std::nullopt}));
    QCOMPARE(count(), 0);
}

void DatabaseTest::refusesAStatementWhileRowsAreRead()
{
    insert(1, QStringLiteral("a"));
    QVERIFY_THROWS_EXCEPTION(std::logic_error, m_database->query(readRow, {qint64(1)},
                                                                 [&](const SqlRow &) { count(); }));
    QCOMPARE(count(), 1);
}

void DatabaseTest::joinsAnInnerTransactionToTheOuter()
{
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, m_database->tx([&] {
        insert(1, QStringLiteral("a"));
        throw std::runtime_error("the outer one fails");
    }));
    QCOMPARE(count(), 0);
}

void DatabaseTest::refusesAWriteInsideASnapshot()
{
    QVERIFY_THROWS_EXCEPTION(std::logic_error,
                             m_database->snapshot([&] { insert(1, QStringLiteral("a")); }));
    QCOMPARE(count(), 0);
}

void DatabaseTest::showsOneStateInASnapshot()
{
    insert(1, QStringLiteral("a"));
    const auto counts = m_database->snapshot([&] {
        const qint64 before = count();
        std::thread([&] { insert(2, QStringLiteral("b")); }).join();
        return std::pair(before, count());
    });
    QCOMPARE(counts.first, 1);
    QCOMPARE(counts.second, 1);
    QCOMPARE(count(), 2);
}

void DatabaseTest::repeatsConflictingTransactionsUntilAllCount()
{
    constexpr int threads = 8;
    constexpr int each = 25;
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int i = 0; i < threads; ++i) {
        writers.emplace_back([&] {
            for (int n = 0; n < each; ++n) {
                try {
                    m_database->tx([&] {
                        const qint64 value = *m_database->row(
                            readCounter, {}, [](const SqlRow &row) { return row.integer(0); });
                        m_database->exec(writeCounter, {value + 1});
                    });
                } catch (const std::exception &) {
                    ++failures;
                }
            }
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    QCOMPARE(failures.load(), 0);
    QCOMPARE(*m_database->row(readCounter, {}, [](const SqlRow &row) { return row.integer(0); }),
             threads * each);
}

void DatabaseTest::dropsTheConnectionOfAThreadThatEnds()
{
    const auto connections = [] { return QSqlDatabase::connectionNames().size(); };
    count();
    const auto before = connections();
    qsizetype during = 0;
    std::thread([&] {
        count();
        during = connections();
    }).join();
    QCOMPARE(during, before + 1);
    QCOMPARE(connections(), before);
}

void DatabaseTest::readsLongResultsWhole()
{
    m_database->tx([&] {
        for (qint64 id = 0; id < 2500; ++id)
            m_database->exec(insertRow, {id, QString::number(id), true, std::nullopt});
    });
    for (int round = 0; round < 2; ++round)
        QCOMPARE(m_database->rows(orderedLabels, {}, [](const SqlRow &row) { return row.text(0); })
                     .size(),
                 2500);
}

/// Two that check the same rule and change different rows must not both find it kept.
void DatabaseTest::oneOfTwoThatReadTheSameStateCommits()
{
    run("INSERT INTO counter VALUES (2, 0)");
    const auto sum = [&] {
        return *m_database->row(sumCounters, {}, [](const SqlRow &row) { return row.integer(0); });
    };
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        run("UPDATE counter SET value = 0");
        std::atomic<int> done{0};
        std::atomic<int> waiting{2};
        std::vector<std::thread> writers;
        for (const qint64 id : {1, 2}) {
            writers.emplace_back([&, id] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield();
                done += m_database->tx([&] {
                    if (sum() > 0)
                        return 0; // the other one was first
                    m_database->exec(addToCounter, {id});
                    return 1;
                });
            });
        }
        for (std::thread &writer : writers)
            writer.join();
        QCOMPARE(done.load(), 1);
        QCOMPARE(sum(), 1);
    }
}

void DatabaseTest::tellsAFullDatabase()
{
    QFETCH_GLOBAL(bool, postgres);
    insert(1, QStringLiteral("before"));
    const qint64 pages =
        postgres ? 0 : m_database->runNative(QStringLiteral("PRAGMA page_count")).toLongLong();
    if (postgres) {
        run("CREATE FUNCTION refuse_all() RETURNS trigger AS $$ BEGIN RAISE EXCEPTION "
            "'could not extend file: No space left on device' USING ERRCODE = '53100'; "
            "END $$ LANGUAGE plpgsql");
        run("CREATE TRIGGER refuse_all BEFORE INSERT ON item EXECUTE FUNCTION refuse_all()");
    } else {
        m_database->runNative(QStringLiteral("PRAGMA max_page_count = %1").arg(pages));
    }
    const auto store = [&] {
        m_database->tx([&] {
            m_database->exec(updateLabel, {qint64(1), QStringLiteral("after")});
            m_database->exec(insertRow,
                             {qint64(2), QStringLiteral("b"), true, QByteArray(100'000, 'x')});
        });
    };
    const auto label = [&] {
        return *m_database->row(readRow, {qint64(1)},
                                [](const SqlRow &row) { return row.text(0); });
    };
    QCOMPARE(kindOf(store), DatabaseError::Kind::Full);
    QCOMPARE(count(), 1);
    QCOMPARE(label(), QStringLiteral("before"));
    if (postgres)
        run("DROP TRIGGER refuse_all ON item");
    else
        m_database->runNative(QStringLiteral("PRAGMA max_page_count = %1").arg(pages + 1000));
    store();
    QCOMPARE(count(), 2);
    QCOMPARE(label(), QStringLiteral("after"));
}

ZEL_TEST_MAIN(DatabaseTest)
#include "tst_database.moc"
