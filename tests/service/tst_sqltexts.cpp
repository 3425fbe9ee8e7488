// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"
#include "service/store/migrations.h"
#include "service/store/sqltext.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Zel;

namespace {

/// What breaks the house rules for texts that both databases, and a sharded one later, must take.
QStringList faultsOf(const QString &sql)
{
    static const QList<std::pair<QString, QString>> forbidden{
        {QStringLiteral("\\bI?LIKE\\b|\\bGLOB\\b|\\bSIMILAR TO\\b"),
         QStringLiteral("matches texts in the database")},
        {QStringLiteral("\\b(LOWER|UPPER)\\s*\\("), QStringLiteral("folds in the database")},
        {QStringLiteral("\\$\\d+ IS (NOT )?NULL"),
         QStringLiteral("tests a parameter without type")},
        {QStringLiteral("\\b(NOW\\s*\\(|CURRENT_TIME|CURRENT_DATE|DATETIME\\s*\\(|RANDOM\\s*\\()"),
         QStringLiteral("asks the database for time or chance")},
        {QStringLiteral("\\b(SERIAL|BIGSERIAL|AUTOINCREMENT|NEXTVAL|LASTVAL|IDENTITY|ROWID)\\b"),
         QStringLiteral("lets the database number rows")},
        {QStringLiteral("::|\\bPRAGMA\\b|\\bINSERT OR\\b|\\bREPLACE INTO\\b"),
         QStringLiteral("is one database's own")},
        {QStringLiteral("\\b(INT|INTEGER|SMALLINT|REAL|VARCHAR|TIMESTAMP|NUMERIC)\\b"),
         QStringLiteral("uses a type that is not TEXT, BIGINT, BOOLEAN or BYTEA")},
        {QStringLiteral("\\?"), QStringLiteral("has a placeholder without number")},
        {QStringLiteral("SELECT \\*"), QStringLiteral("does not name its columns")},
    };
    QStringList faults;
    for (const auto &[pattern, fault] : forbidden) {
        if (sql.contains(QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption)))
            faults << fault;
    }
    static const QRegularExpression orderBy(
        QStringLiteral("ORDER BY\\s+(.*?)(?=\\bLIMIT\\b|\\)|$)"),
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    auto matches = orderBy.globalMatch(sql);
    while (matches.hasNext()) {
        const QStringList keys = matches.next().captured(1).split(QLatin1Char(','));
        for (const QString &key : keys) {
            if (!key.contains(QLatin1String("NULLS FIRST")) &&
                !key.contains(QLatin1String("NULLS LAST")))
                faults << QStringLiteral("leaves the place of NULL in an order open");
        }
    }
    return faults;
}

struct FoundText
{
    QString file;
    QString sql;
};

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList sources()
{
    QStringList result;
    QDirIterator files(QStringLiteral(ZEL_SOURCE_DIR "/src/service"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        result << files.next();
    return result;
}

/// Every SQL text in the sources of the service.
QList<FoundText> textsInSources()
{
    static const QRegularExpression raw(QStringLiteral("R\"sql\\((.*?)\\)sql\""),
                                        QRegularExpression::DotMatchesEverythingOption);
    QList<FoundText> result;
    for (const QString &file : sources()) {
        if (file.endsWith(QLatin1String(".h")))
            continue; // only told of in comments
        auto matches = raw.globalMatch(readFile(file));
        while (matches.hasNext())
            result << FoundText{file, matches.next().captured(1).trimmed()};
    }
    return result;
}

} // namespace

class SqlTextsTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void numbersPlaceholdersByFirstAppearance();
    void passesOverQuotedDollars();
    void refusesATextThatLeavesOutANumber();
    void lintSeesEachFault_data();
    void lintSeesEachFault();
    void everyTextKeepsTheHouseRules();
    void everyStatementIsWrittenWhereTheLintSeesIt();
    void everyTextIsTakenByBothDatabases_data();
    void everyTextIsTakenByBothDatabases();
    void everyMigrationKeepsTheHouseRules();
    void keysOfAccountTablesBeginWithTheAccount();
    void listsAreReadInTheOrderOfAnIndex();

private:
    ZelTest::TestDatabases m_databases;
};

void SqlTextsTest::numbersPlaceholdersByFirstAppearance()
{
    const SqlText text("UPDATE t SET b = $3, c = $1 WHERE a = $2 AND d = $1");
    QCOMPARE(text.parameterCount(), 3);
    QCOMPARE(text.firstAppearances(), (QList<int>{2, 0, 1}));
}

void SqlTextsTest::passesOverQuotedDollars()
{
    const SqlText text("SELECT '$7 it''s $8' WHERE a = $1");
    QCOMPARE(text.parameterCount(), 1);
}

void SqlTextsTest::refusesATextThatLeavesOutANumber()
{
    QVERIFY_THROWS_EXCEPTION(std::logic_error, SqlText("SELECT $1, $3"));
}

void SqlTextsTest::lintSeesEachFault_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<bool>("good");
    const auto row = [](const char *sql, bool good) {
        QTest::newRow(sql) << QString::fromLatin1(sql) << good;
    };
    row("SELECT a FROM t WHERE b LIKE $1", false);
    row("SELECT lower(a) FROM t", false);
    row("SELECT a FROM t WHERE $1 IS NULL OR b = $1", false);
    row("SELECT a FROM t WHERE CAST($1 AS TEXT) IS NULL OR b = $1", true);
    row("SELECT a FROM t ORDER BY a", false);
    row("SELECT a FROM t ORDER BY a NULLS FIRST, b", false);
    row("SELECT a FROM t ORDER BY a NULLS FIRST, b DESC NULLS LAST LIMIT $1", true);
    row("INSERT INTO t (a) VALUES (now())", false);
    row("CREATE TABLE t (a SERIAL)", false);
    row("CREATE TABLE t (a INTEGER)", false);
    row("SELECT a::text FROM t", false);
    row("SELECT a FROM t WHERE b = ?", false);
    row("SELECT * FROM t", false);
    row("SELECT COUNT(*) FROM t WHERE points = $1", true);
}

void SqlTextsTest::lintSeesEachFault()
{
    QFETCH(QString, sql);
    QFETCH(bool, good);
    QCOMPARE(faultsOf(sql).isEmpty(), good);
}

void SqlTextsTest::everyTextKeepsTheHouseRules()
{
    const QList<FoundText> texts = textsInSources();
    QVERIFY2(texts.size() >= 20, "the texts are not found any more");
    for (const FoundText &text : texts) {
        const QStringList faults = faultsOf(text.sql);
        QVERIFY2(faults.isEmpty(),
                 qPrintable(text.file + QLatin1String(": ") + text.sql + QLatin1String("\n") +
                            faults.join(QLatin1String(", "))));
    }
}

void SqlTextsTest::everyStatementIsWrittenWhereTheLintSeesIt()
{
    static const QRegularExpression hidden(
        QStringLiteral("\\bSqlText( \\w+)?[({]\\s*\"|"
                       "\\bSqlText( \\w+)?[({]\\s*R\"(?!sql\\()"));
    for (const QString &file : sources())
        QVERIFY2(!readFile(file).contains(hidden), qPrintable(file));
}

void SqlTextsTest::everyTextIsTakenByBothDatabases_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::newRow("sqlite") << false;
    QTest::newRow("postgres") << true;
}

void SqlTextsTest::everyTextIsTakenByBothDatabases()
{
    QFETCH(bool, postgres);
    Database database(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(database).migrate();
    QSqlDatabase connection = QSqlDatabase::database(QSqlDatabase::connectionNames().constFirst());
    QCOMPARE(connection.driverName(),
             postgres ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE"));
    for (const FoundText &text : textsInSources()) {
        QSqlQuery query(connection);
        QVERIFY2(query.prepare(text.sql),
                 qPrintable(text.sql + QLatin1String("\n") + query.lastError().text()));
    }
}

void SqlTextsTest::everyMigrationKeepsTheHouseRules()
{
    QDirIterator files(QStringLiteral(ZEL_SOURCE_DIR "/src/service/store/migrations"),
                       {QStringLiteral("*.sql")}, QDir::Files);
    int count = 0;
    static const QRegularExpression comment(QStringLiteral("^--.*$"),
                                            QRegularExpression::MultilineOption);
    while (files.hasNext()) {
        const QString file = files.next();
        ++count;
        if (file.endsWith(QLatin1String(".sqlite.sql")) ||
            file.endsWith(QLatin1String(".postgresql.sql")))
            continue; // these are one database's own on purpose
        const QStringList faults = faultsOf(readFile(file).remove(comment));
        QVERIFY2(faults.isEmpty(),
                 qPrintable(file + QLatin1String(": ") + faults.join(QLatin1String(", "))));
    }
    QVERIFY(count >= Migrations::latestVersion());
}

void SqlTextsTest::keysOfAccountTablesBeginWithTheAccount()
{
    Database database(m_databases.fresh(true));
    Migrations(database).migrate();
    // The first column of every primary key and unique index of tables whose rows belong to an
    // account. Sessions are found before their account is known; they may be without one.
    const QString wrong =
        database
            .runNative(QStringLiteral(
                "SELECT string_agg(t.relname, ' ') FROM pg_index i "
                "JOIN pg_class t ON t.oid = i.indrelid "
                "JOIN pg_attribute a ON a.attrelid = t.oid AND a.attnum = i.indkey[0] "
                "WHERE i.indisunique AND t.relnamespace = 'public'::regnamespace "
                "AND a.attname <> 'account_id' AND t.relname <> 'session' AND EXISTS ("
                "SELECT 1 FROM pg_attribute b WHERE b.attrelid = t.oid "
                "AND b.attname = 'account_id')"))
            .toString();
    QCOMPARE(wrong, QString());
}

void SqlTextsTest::listsAreReadInTheOrderOfAnIndex()
{
    Database database(m_databases.fresh(false), Database::Missing::Create);
    Migrations(database).migrate();
    QSqlDatabase connection = QSqlDatabase::database(QSqlDatabase::connectionNames().constFirst());
    static const QRegularExpression placeholder(QStringLiteral("\\$\\d+"));
    int ordered = 0;
    for (const FoundText &text : textsInSources()) {
        if (!text.sql.contains(QLatin1String("FROM project p")) ||
            !text.sql.contains(QLatin1String("ORDER BY")))
            continue;
        ++ordered;
        QSqlQuery query(connection);
        QVERIFY(query.exec(QLatin1String("EXPLAIN QUERY PLAN ") +
                           QString(text.sql).replace(placeholder, QStringLiteral("'1'"))));
        QString plan;
        while (query.next())
            plan += query.value(3).toString() + QLatin1Char('\n');
        QVERIFY2(plan.contains(QLatin1String("project_by_name")) &&
                     !plan.contains(QLatin1String("TEMP B-TREE")),
                 qPrintable(plan));
    }
    QVERIFY(ordered > 0);
}

ZEL_TEST_MAIN(SqlTextsTest)
#include "tst_sqltexts.moc"
