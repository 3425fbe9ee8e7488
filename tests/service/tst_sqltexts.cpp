// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"
#include "service/store/migrations.h"
#include "service/store/sqltext.h"
#include "service/store/store.h"
#include "service/store/workspaceimport.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/sqlsources.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <algorithm>
#include <memory>
#include <stdexcept>

using namespace Zel;
using ZelTest::FoundText;
using ZelTest::serviceSources;
using ZelTest::sqlTextsInSources;
using ZelTest::textOfFile;

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

/// The one connection of this thread to a database of that kind.
QSqlDatabase connectionTo(bool postgres)
{
    for (const QString &name : QSqlDatabase::connectionNames()) {
        const QSqlDatabase one = QSqlDatabase::database(name);
        if ((one.driverName() == QLatin1String("QPSQL")) == postgres)
            return one;
    }
    throw std::logic_error("there is no such connection");
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
    void listsAreReadInTheOrderOfAnIndex_data();
    void listsAreReadInTheOrderOfAnIndex();
    void hotQueriesUseTheirKey_data();
    void hotQueriesUseTheirKey();

private:
    /// Rows enough that PostgreSQL has to choose: the sample and many people and deployments.
    void fill(Database &database);
    /// A database that is asked for its plans. SQLite's do not depend on what is in it.
    Database &planner(bool postgres);
    /// How a database goes about a text; parameters without a value are '1'.
    QString planOf(bool postgres, const QString &sql, const QStringList &values);

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<Database> m_planners[2]; ///< SQLite's and PostgreSQL's
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
    const QList<FoundText> texts = sqlTextsInSources();
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
        QStringLiteral("\\b(Sql|Bulk)Text( \\w+)?[({]\\s*\"|"
                       "\\b(Sql|Bulk)Text( \\w+)?[({]\\s*R\"(?!sql\\()"));
    for (const QString &file : serviceSources())
        QVERIFY2(!textOfFile(file).contains(hidden), qPrintable(file));
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
    for (const FoundText &text : sqlTextsInSources()) {
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
        const QStringList faults = faultsOf(textOfFile(file).remove(comment));
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

void SqlTextsTest::listsAreReadInTheOrderOfAnIndex_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("index");

    struct List
    {
        const char *text; ///< by which the statement is found, besides its ORDER BY
        const char *index;
    };

    for (const bool postgres : {false, true}) {
        for (const List &list : {
                 List{"FROM project p", "project_by_name"},
                 List{"FROM deployment", "deployment_by_project"},
                 List{"ORDER BY view_at", "page_view_by_time"},
                 List{"FROM question q", "question_by_time"},
                 List{"FROM poll_vote", "poll_vote_by_arrival"},
                 List{"FROM survey_response", "survey_response_by_arrival"},
                 List{"FROM asset a", "asset_by_name"},
             })
            QTest::addRow("%s %s", postgres ? "postgres" : "sqlite", list.index)
                << postgres << QString::fromLatin1(list.text) << QString::fromLatin1(list.index);
    }
}

/// A page that began with a search for its place, or with sorting what is left of the list, would
/// make the whole list cost the square of its length.
void SqlTextsTest::listsAreReadInTheOrderOfAnIndex()
{
    QFETCH(bool, postgres);
    QFETCH(QString, list);
    QFETCH(QString, index);
    Database database(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(database).migrate();
    QSqlDatabase connection = QSqlDatabase::database(QSqlDatabase::connectionNames().constFirst());
    static const QRegularExpression placeholder(QStringLiteral("\\$\\d+"));
    if (postgres) {
        // Empty tables would be read as a whole.
        for (const char *way : {"seqscan", "bitmapscan", "hashjoin", "mergejoin"})
            database.runNative(QStringLiteral("SET enable_%1 = off").arg(QLatin1String(way)));
    }
    int ordered = 0;
    for (const FoundText &text : sqlTextsInSources()) {
        if (!text.sql.contains(list) || !text.sql.contains(QLatin1String("ORDER BY")) ||
            !text.sql.contains(QLatin1String("LIMIT")))
            continue;
        ++ordered;
        QSqlQuery query(connection);
        const QString explain = QLatin1String(postgres ? "EXPLAIN " : "EXPLAIN QUERY PLAN ");
        QVERIFY2(
            query.exec(explain + QString(text.sql).replace(placeholder, QStringLiteral("'1'"))),
            qPrintable(query.lastError().text()));
        QString plan;
        while (query.next())
            plan += query.value(postgres ? 0 : 3).toString() + QLatin1Char('\n');
        QVERIFY2(plan.contains(index) && !plan.contains(QLatin1String("TEMP B-TREE")) &&
                     !plan.contains(QLatin1String("Sort")),
                 qPrintable(text.sql + QLatin1Char('\n') + plan));
    }
    QVERIFY(ordered > 0);
}

void SqlTextsTest::fill(Database &database)
{
    Store store(database, PasswordHasher::Cost::Minimal, systemClock(),
                {BlobKind::Files, m_databases.folder() + QStringLiteral("/files")});
    importWorkspace(store, WorkspaceFiles::read({ZelTest::ServiceProcess::sampleFolder()}));
    database.tx([&] {
        for (const char *sql :
             {"INSERT INTO app_user (user_id, login, login_key, display_name, pw_hash, disabled, "
              "created_at) SELECT 'user ' || n, 'user ' || n, 'user ' || n, 'U', '', false, 0 "
              "FROM generate_series(0, 499) n",
              "INSERT INTO account (account_id, name, name_key) "
              "SELECT n, 'A ' || n, 'a ' || n FROM generate_series(3000, 3399) n",
              "INSERT INTO membership (account_id, user_id, role) "
              "SELECT 3000 + n % 400, 'user ' || n % 499, 'author' FROM generate_series(1, 3000) n "
              "ON CONFLICT DO NOTHING",
              "INSERT INTO session (token_hash, user_id, account_id, app_name, created_at, "
              "seen_at, expires_at) SELECT convert_to('token ' || n, 'UTF8'), 'user ' || n % 499, "
              "NULL, '', n, n, n FROM generate_series(1, 5000) n",
              "INSERT INTO deployment (account_id, guid, dep_no, project_guid, name, published_at, "
              "key_hash) SELECT account_id, 'dep ' || n, 100 + n, guid, 'D', n, "
              "convert_to('key ' || n, 'UTF8') FROM generate_series(1, 1000) n, (SELECT "
              "account_id, "
              "guid FROM project WHERE account_id = 1001 LIMIT 1) p",
              "ANALYZE"})
            database.runNative(QString::fromLatin1(sql));
    });
}

Database &SqlTextsTest::planner(bool postgres)
{
    std::unique_ptr<Database> &database = m_planners[postgres];
    if (!database) {
        database =
            std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
        Migrations(*database).migrate();
        if (postgres)
            fill(*database);
    }
    return *database;
}

QString SqlTextsTest::planOf(bool postgres, const QString &sql, const QStringList &values)
{
    QString text = sql;
    static const QRegularExpression placeholder(QStringLiteral("\\$(\\d+)"));
    for (auto match = placeholder.match(text); match.hasMatch(); match = placeholder.match(text))
        text.replace(match.capturedStart(), match.capturedLength(),
                     QLatin1Char('\'') +
                         values.value(match.captured(1).toInt() - 1, QStringLiteral("1")) +
                         QLatin1Char('\''));
    QStringList plan;
    planner(postgres).snapshot([&] {
        QSqlQuery query(connectionTo(postgres));
        // A few rows are read as fast without a key; what counts is whether there is one to use.
        if (postgres && !query.exec(QStringLiteral("SET LOCAL enable_seqscan = off")))
            throw std::runtime_error(query.lastError().text().toStdString());
        const QLatin1String explain(postgres ? "EXPLAIN " : "EXPLAIN QUERY PLAN ");
        if (!query.exec(explain + text))
            throw std::runtime_error(query.lastError().text().toStdString());
        while (query.next())
            plan << query.value(postgres ? 0 : 3).toString();
    });
    return plan.join(QLatin1Char('\n'));
}

void SqlTextsTest::hotQueriesUseTheirKey_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("key");
    // Words that are found in the texts of the query, values of its first parameters, and the key.
    const auto row = [](const char *name, const QStringList &words, const QStringList &values,
                        const char *sqliteKey, const char *postgresKey = nullptr) {
        const auto add = [&](bool postgres, const char *key) {
            QTest::addRow("%s, %s", name, postgres ? "postgres" : "sqlite")
                << postgres << words << values << QString::fromLatin1(key);
        };
        add(false, sqliteKey);
        add(true, postgresKey ? postgresKey : sqliteKey);
    };
    const QStringList live{"1001", "1"};
    const QStringList range = live + QStringList{"1778000000000", "1779000000000"};
    const QStringList figures =
        live + QStringList{"493800",        "494100",        "1778000000000",
                           "1778000001000", "1778000000000", "1778000001000"};
    row("session by token", {"FROM session s", "s.token_hash = $1"}, {"token 7", "1", "1", "0"},
        "sqlite_autoindex_session_1", "session_pkey");
    row("accounts of a person", {"FROM membership m", "m.user_id = $1"}, {"user 7"},
        "membership_by_user");
    row("role of a person", {"SELECT role FROM membership"}, {"3007", "user 7"},
        "sqlite_autoindex_membership_1", "membership_");
    row("assets of a folder", {"FROM asset a", "a.folder_id = $2"}, live, "asset_by_name");
    row("page views of a range", {"FROM page_view", "ORDER BY view_at"}, range,
        "page_view_by_time");
    row("figures of a range, at its ends", {"view_at >= $5", "FROM page_view"}, figures,
        "page_view_by_time");
    row("figures of a range, whole hours", {"FROM view_tally", "hour_no >= $3"}, figures,
        "sqlite_autoindex_view_tally_1", "view_tally_pkey");
    row("questions of a range", {"FROM question q", "q.submitted_at"}, range, "question_by_time");
    row("votes by arrival", {"FROM poll_vote", "ORDER BY arrived"}, live, "poll_vote_by_arrival");
    row("replies by arrival", {"FROM survey_response", "ORDER BY arrived"}, live,
        "survey_response_by_arrival");
    row("replies by answer", {"FROM survey_response", "GROUP BY"}, live,
        "survey_response_by_answers");
    row("themes of an account", {"FROM theme t", "ORDER BY t.name_key"}, {"1001", "0", "user 7"},
        "theme_by_name", "on theme t"); // by whichever of its keys; there are few
    row("deployment by key", {"FROM deployment", "key_hash = $1"}, {"key 7", "dep 7"},
        "deployment_by_key");
}

void SqlTextsTest::hotQueriesUseTheirKey()
{
    QFETCH(bool, postgres);
    QFETCH(QStringList, words);
    QFETCH(QStringList, values);
    QFETCH(QString, key);
    int found = 0;
    for (const FoundText &text : sqlTextsInSources()) {
        if (!std::all_of(words.begin(), words.end(),
                         [&](const QString &word) { return text.sql.contains(word); }))
            continue;
        ++found;
        const QString plan = planOf(postgres, text.sql, values);
        QVERIFY2(plan.contains(key), qPrintable(text.sql + QLatin1Char('\n') + plan));
        QVERIFY2(!plan.contains(QLatin1String("Seq Scan on")), qPrintable(plan));
    }
    QVERIFY(found > 0);
}

ZEL_TEST_MAIN(SqlTextsTest)
#include "tst_sqltexts.moc"
