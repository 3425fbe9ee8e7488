// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"
#include "service/store/databaseblobs.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <memory>

using namespace Zel;

namespace {

const SqlText countAccounts("SELECT COUNT(*) FROM account");
const SqlText addAccount("INSERT INTO account (account_id, name, name_key) VALUES ($1, $2, $2)");

DatabaseError errorOf(const std::function<void()> &function)
{
    try {
        function();
    } catch (const DatabaseError &error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

} // namespace

/// What happens when PostgreSQL goes away, as it does in every maintenance window.
class LostConnectionsTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_database = std::make_unique<Database>(m_databases.fresh(true));
        Migrations(*m_database).migrate();
    }

    void cleanup() { m_database.reset(); }

    void repeatsAReadOnANewConnection();
    void repeatsATransactionThatLostItsConnection();
    void givesUpATransactionThatLosesEveryConnection();
    void reportsAWriteWhoseEndWasLost();
    void writesAndReadsFilesOverNewConnections();
    void saysThatTheServerIsAwayWhileAFileIsWritten();
    void worksAgainAfterTheServerCameBack();
    void saysThatAStatementTookTooLong();
    void saysThatSigningInFailedWithoutThePassword();
    void refusesToWriteOutsideOfATransaction();

private:
    qint64 count()
    {
        return *m_database->row(countAccounts, {},
                                [](const SqlRow &row) { return row.integer(0); });
    }

    /// Ends every connection to the database under test.
    void cutConnections()
    {
        m_databases.server().run(
            QStringLiteral("SELECT COUNT(pg_terminate_backend(pid, 5000)) FROM pg_stat_activity "
                           "WHERE datname = '%1'")
                .arg(m_database->address().database));
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<Database> m_database;
};

void LostConnectionsTest::repeatsAReadOnANewConnection()
{
    QCOMPARE(count(), 0);
    cutConnections();
    QCOMPARE(count(), 0);
}

void LostConnectionsTest::repeatsATransactionThatLostItsConnection()
{
    int runs = 0;
    m_database->tx([&] {
        m_database->exec(addAccount, {qint64(1), QStringLiteral("a")});
        if (++runs == 1)
            cutConnections();
        m_database->exec(addAccount, {qint64(2), QStringLiteral("b")});
    });
    QCOMPARE(runs, 2);
    QCOMPARE(count(), 2);
}

void LostConnectionsTest::givesUpATransactionThatLosesEveryConnection()
{
    int runs = 0;
    const DatabaseError error = errorOf([&] {
        m_database->tx([&] {
            ++runs;
            cutConnections();
            m_database->exec(addAccount, {qint64(1), QStringLiteral("a")});
        });
    });
    QCOMPARE(error.kind(), DatabaseError::Kind::Lost);
    QCOMPARE(runs, 2);
    QCOMPARE(count(), 0);
}

void LostConnectionsTest::reportsAWriteWhoseEndWasLost()
{
    int runs = 0;
    const DatabaseError error = errorOf([&] {
        m_database->tx([&] {
            ++runs;
            m_database->exec(addAccount, {qint64(1), QStringLiteral("a")});
            cutConnections(); // the next that is sent is COMMIT
        });
    });
    QCOMPARE(error.kind(), DatabaseError::Kind::Lost);
    QCOMPARE(runs, 1);
}

void LostConnectionsTest::writesAndReadsFilesOverNewConnections()
{
    DatabaseBlobs blobs(*m_database, systemClock());
    const QByteArray bytes(3 * DatabaseBlobs::chunkBytes, 'x');
    const auto part = blobs.openPart({7, QStringLiteral("u"), 0}, {});
    for (qsizetype at = 0; at < bytes.size(); at += DatabaseBlobs::chunkBytes) {
        part->append(bytes.constData() + at, DatabaseBlobs::chunkBytes);
        cutConnections();
    }
    part->flush();
    QCOMPARE(part->size(), bytes.size());
    QByteArray read;
    while (read.size() < bytes.size()) {
        cutConnections();
        read += part->read(read.size(), bytes.size());
    }
    QVERIFY(read == bytes);
}

void LostConnectionsTest::saysThatTheServerIsAwayWhileAFileIsWritten()
{
    DatabaseBlobs blobs(*m_database, systemClock());
    {
        const auto part = blobs.openPart({7, QStringLiteral("u"), 0}, {});
        part->append("first", 5);
        part->flush();
        m_databases.server().stop(true);
        part->append("more", 4);
        const DatabaseError error = errorOf([&part] { part->flush(); });
        QCOMPARE(error.kind(), DatabaseError::Kind::Lost);
        QCOMPARE(part->size(), 5);
    }
    QVERIFY(m_databases.server().startAgain());
    QCOMPARE(blobs.openPart({7, QStringLiteral("u"), 0}, {})->size(), 5);
}

void LostConnectionsTest::worksAgainAfterTheServerCameBack()
{
    m_database->tx([&] { m_database->exec(addAccount, {qint64(1), QStringLiteral("a")}); });
    m_databases.server().stop(true);
    QCOMPARE(errorOf([&] { count(); }).kind(), DatabaseError::Kind::Lost);
    QCOMPARE(errorOf([&] { m_database->tx([&] { count(); }); }).kind(), DatabaseError::Kind::Lost);
    QVERIFY2(m_databases.server().startAgain(), qPrintable(m_databases.server().error()));
    QCOMPARE(count(), 1);
}

void LostConnectionsTest::saysThatAStatementTookTooLong()
{
    QCOMPARE(m_database->runNative(QStringLiteral("SHOW statement_timeout")).toString(),
             QStringLiteral("30s"));
    const DatabaseError error = errorOf([&] {
        m_database->tx([&] {
            m_database->runNative(QStringLiteral("SET LOCAL statement_timeout = '50ms'"));
            m_database->runNative(QStringLiteral("SELECT COUNT(pg_sleep(30))"));
        });
    });
    QCOMPARE(error.kind(), DatabaseError::Kind::Busy);
    QCOMPARE(count(), 0);
}

void LostConnectionsTest::saysThatSigningInFailedWithoutThePassword()
{
    DatabaseAddress address = m_database->address();
    address.password = QStringLiteral("wrong-secret");
    Database database(address);
    const DatabaseError error = errorOf([&] { database.open(); });
    QVERIFY2(error.message().contains(QLatin1String("authentication failed")),
             qPrintable(error.message()));
    QVERIFY(!error.message().contains(QLatin1String("secret")));
}

void LostConnectionsTest::refusesToWriteOutsideOfATransaction()
{
    QVERIFY_THROWS_EXCEPTION(DatabaseError, m_database->runNative(QStringLiteral(
                                                "INSERT INTO account VALUES (1, 'a', 'a')")));
    QCOMPARE(count(), 0);
}

ZEL_TEST_MAIN(LostConnectionsTest)
#include "tst_lostconnections.moc"
