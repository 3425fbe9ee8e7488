// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/database.h"
#include "service/store/migrations.h"
#include "tests/service/sqlsources.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Zel;
using namespace ZelTest;

namespace {

struct Reason
{
    const char *what;
    const char *why;
};

/// Small tables that each node of a sharded engine has a whole copy of. All others belong to an
/// account and are spread by account_id, but for those below.
constexpr Reason referenceTables[] = {
    {"schema_version", "says what form the database has; a row is added with each form"},
    {"service_setting", "choices that hold for the whole database"},
    {"server_key", "secrets that all daemons share; written once"},
    {"app_user", "a person signs in before an account is known, and works in several"},
    {"account", "read with the memberships of a person across all accounts"},
    {"membership", "read by person across all accounts at every call"},
};

/// Tables that are spread by a key of their own.
constexpr Reason tablesByTheirOwnKey[] = {
    {"session", "found by token_hash, before its account is known; it may have none"},
    {"sign_in_attempt", "found by bucket, before it is known who it is"},
};

/// Statements, by how they begin, that look into more than one account, and why they may. A sharded
/// engine asks all of its nodes, which is slow and correct.
constexpr Reason severalAccounts[] = {
    {"SELECT account_id, dep_no FROM deployment WHERE guid = $1", "import and simulate know a "
                                                                  "deployment only by its guid"},
    {"SELECT account_id, dep_no FROM deployment WHERE key_hash = $1",
     "players know a key and no account"},
    {"SELECT account_id, guid, name, deleted_at FROM asset", "the command trash is for all"},
    {"SELECT account_id, guid FROM asset WHERE deleted_at < $1", "the command trash is for all"},
    {"SELECT account_id, folder_id FROM asset WHERE guid = $1", "the command trash takes guids"},
    {"SELECT b.account_id, b.sha FROM blob b", "the command trash clears away what nobody names"},
    {"SELECT v.account_id, v.sha FROM theme_preview v", "the same of previews"},
    {"SELECT (SELECT COUNT(*) FROM blob WHERE sha = $1)",
     "the command trash: equal files of all accounts are one"},
    {"SELECT account_id, sha, size FROM blob_content", "the commands that clear, copy and check"},
    {"SELECT account_id, content_id FROM blob_content", "the command that clears"},
    {"SELECT t.account_id, t.guid, t.owner_user, t.name, t.description, t.width, t.height, "
     "t.created_at, t.modified_at, t.definition, t.preview_sha, v.mime, v.size FROM theme t LEFT "
     "JOIN theme_preview v ON v.account_id = t.account_id AND v.sha = t.preview_sha WHERE t.guid",
     "an import names a theme by its guid"},
    {"SELECT (SELECT COUNT(*) FROM blob) + (SELECT COUNT(*) FROM theme_preview)",
     "whether a database has files yet, before it is used first"},
    {"SELECT t.account_id, t.guid, t.owner_user, t.name, t.description, t.width, t.height, "
     "t.created_at, t.modified_at, t.definition, t.preview_sha, v.mime, v.size, t.name_key",
     "themes of an account and of every account (0)"},
    {"SELECT u.account_id, u.theme_guid, u.template_key", "the same of what they use"},
    {"SELECT v.account_id, v.sha, v.mime, v.size FROM theme t", "the same of their previews"},
    {"DELETE FROM idem WHERE", "answers that expired are cleared away now and then, for all"},
    {"INSERT INTO data_record_entry (account_id, theme_guid, edited, pos, label, type, hidden, "
     "ext, "
     "source, button_text, width, height, value_text, value_guid, value_dependencies) SELECT",
     "the first save of a record copies that of every account"},
};

QString simplified(const QString &sql)
{
    return sql.simplified();
}

template <std::size_t Count>
QSet<QString> names(const Reason (&list)[Count])
{
    QSet<QString> result;
    for (const Reason &one : list)
        result.insert(QLatin1String(one.what));
    return result;
}

bool isExcused(const QString &sql)
{
    return std::any_of(
        std::begin(severalAccounts), std::end(severalAccounts),
        [&](const Reason &one) { return simplified(sql).startsWith(QLatin1String(one.what)); });
}

} // namespace

/// What an engine needs that speaks PostgreSQL's protocol and spreads rows over nodes by
/// account_id: keys, indexes and references that begin with it, statements about one account, no
/// numbers given by the database, and nothing but plain transactions that can be repeated.
class ShardingTest : public TestCase
{
    Q_OBJECT

private slots:
    void initTestCase();

    void cleanupTestCase() { m_database.reset(); }

    void everyTableIsSpreadBySomething();
    void keysAndIndexesBeginWithTheAccount();
    void referencesStayWithinTheAccount();
    void theDatabaseGivesNoNumbersAndRunsNoCode();
    void lintSeesEachFault_data();
    void lintSeesEachFault();
    void statementsAreAboutOneAccount();
    void transactionsArePlain();

private:
    QStringList list(const char *sql);

    bool isOfAccount(const QString &table) const { return m_accountTables.contains(table); }

    QStringList faultsOf(const QString &sql);
    void readPlan(const QJsonObject &node, QStringList &faults, QSet<QString> &accounts) const;

    TestDatabases m_databases;
    std::unique_ptr<Database> m_database;
    QSet<QString> m_accountTables;
};

void ShardingTest::initTestCase()
{
    TestCase::initTestCase();
    m_database = std::make_unique<Database>(m_databases.fresh(true));
    Migrations(*m_database).migrate();
    // The plan that holds for all values shows what a statement asks of each table.
    m_database->runNative(QStringLiteral("SET plan_cache_mode = force_generic_plan"));
    const QStringList with = list("SELECT c.relname FROM pg_class c JOIN pg_attribute a "
                                  "ON a.attrelid = c.oid AND a.attname = 'account_id' "
                                  "WHERE c.relkind = 'r' "
                                  "AND c.relnamespace = 'public'::regnamespace");
    m_accountTables = QSet<QString>(with.begin(), with.end()) - names(referenceTables) -
                      names(tablesByTheirOwnKey);
    QVERIFY(m_accountTables.size() > 20);
}

/// The first column of a query.
QStringList ShardingTest::list(const char *sql)
{
    const QString all =
        m_database
            ->runNative(QStringLiteral("SELECT COALESCE(string_agg(x, '|' ORDER BY x), '') "
                                       "FROM (%1) t(x)")
                            .arg(QLatin1String(sql)))
            .toString();
    return all.isEmpty() ? QStringList() : all.split(QLatin1Char('|'));
}

void ShardingTest::everyTableIsSpreadBySomething()
{
    const QStringList tables = list("SELECT CAST(relname AS TEXT) FROM pg_class WHERE relkind = "
                                    "'r' AND relnamespace = 'public'::regnamespace");
    const QSet<QString> there(tables.begin(), tables.end());
    const QSet<QString> known =
        m_accountTables + names(referenceTables) + names(tablesByTheirOwnKey);
    QCOMPARE(there - known, QSet<QString>()); // say which kind it is, and why
    QCOMPARE(known - there, QSet<QString>());
}

void ShardingTest::keysAndIndexesBeginWithTheAccount()
{
    const QStringList withoutKey =
        list("SELECT CAST(t.relname AS TEXT) FROM pg_class t WHERE t.relkind = 'r' "
             "AND t.relnamespace = 'public'::regnamespace AND NOT EXISTS (SELECT 1 FROM pg_index i "
             "WHERE i.indrelid = t.oid AND i.indisprimary)");
    QCOMPARE(withoutKey, QStringList());
    const QStringList others =
        list("SELECT t.relname || ' ' || n.relname FROM pg_index i "
             "JOIN pg_class t ON t.oid = i.indrelid JOIN pg_class n ON n.oid = i.indexrelid "
             "JOIN pg_attribute a ON a.attrelid = t.oid AND a.attnum = i.indkey[0] "
             "WHERE t.relnamespace = 'public'::regnamespace AND a.attname <> 'account_id'");
    QStringList wrong;
    for (const QString &one : others) {
        if (isOfAccount(one.section(QLatin1Char(' '), 0, 0)))
            wrong << one;
    }
    wrong.sort();
    // Players know the key of their deployment and nothing else, and answers are cleared away by
    // their age; ones that are not unique are allowed.
    QCOMPARE(wrong, (QStringList{QStringLiteral("deployment deployment_by_key"),
                                 QStringLiteral("idem idem_by_expiry")}));
    const QString unique =
        m_database
            ->runNative(QStringLiteral("SELECT CAST(indisunique AS TEXT) FROM pg_index "
                                       "WHERE indexrelid = 'deployment_by_key'::regclass"))
            .toString();
    QCOMPARE(unique, QStringLiteral("false"));
}

void ShardingTest::referencesStayWithinTheAccount()
{
    const QStringList references =
        list("SELECT f.relname || ' ' || t.relname || ' ' || "
             "CAST(a.attname = 'account_id' AND b.attname = 'account_id' AS TEXT) "
             "FROM pg_constraint c JOIN pg_class f ON f.oid = c.conrelid "
             "JOIN pg_class t ON t.oid = c.confrelid "
             "JOIN pg_attribute a ON a.attrelid = f.oid AND a.attnum = c.conkey[1] "
             "JOIN pg_attribute b ON b.attrelid = t.oid AND b.attnum = c.confkey[1] "
             "WHERE c.contype = 'f'");
    QVERIFY(references.size() > 10);
    const QSet<QString> everywhere = names(referenceTables);
    for (const QString &reference : references) {
        const QStringList words = reference.split(QLatin1Char(' '));
        const bool fromAccount = isOfAccount(words.at(0));
        const bool toAccount = isOfAccount(words.at(1));
        // To a table that every node has, or from row to row of one account.
        const bool good = everywhere.contains(words.at(1)) ||
                          (fromAccount && toAccount && words.at(2) == QLatin1String("true"));
        QVERIFY2(good, qPrintable(reference));
    }
}

void ShardingTest::theDatabaseGivesNoNumbersAndRunsNoCode()
{
    QCOMPARE(list("SELECT CAST(relname AS TEXT) FROM pg_class WHERE relkind NOT IN ('r', 'i') "
                  "AND relnamespace = 'public'::regnamespace"),
             QStringList()); // sequences, views
    QCOMPARE(list("SELECT t.relname || '.' || a.attname FROM pg_attrdef d "
                  "JOIN pg_class t ON t.oid = d.adrelid "
                  "JOIN pg_attribute a ON a.attrelid = t.oid AND a.attnum = d.adnum"),
             QStringList());
    QCOMPARE(list("SELECT CAST(tgname AS TEXT) FROM pg_trigger WHERE NOT tgisinternal"),
             QStringList());
    QCOMPARE(list("SELECT CAST(proname AS TEXT) FROM pg_proc "
                  "WHERE pronamespace = 'public'::regnamespace"),
             QStringList());
}

/// What a part of a plan reads without saying which account, and the accounts that it says.
void ShardingTest::readPlan(const QJsonObject &node, QStringList &faults,
                            QSet<QString> &accounts) const
{
    static const QRegularExpression said(
        QStringLiteral("\\baccount_id = (\\$\\d+|'?\\d+'?|ANY \\([^)]*\\))"));
    const QString table = node.value(QLatin1String("Relation Name")).toString();
    const bool reads =
        node.value(QLatin1String("Node Type")).toString().endsWith(QLatin1String("Scan"));
    if (reads && isOfAccount(table)) {
        QString conditions;
        for (const char *kind : {"Index Cond", "Recheck Cond", "Filter"})
            conditions += node.value(QLatin1String(kind)).toString();
        auto matches = said.globalMatch(conditions);
        if (!matches.hasNext())
            faults << QStringLiteral("reads %1 of all accounts").arg(table);
        while (matches.hasNext())
            accounts.insert(matches.next().captured(1));
    }
    const QJsonArray below = node.value(QLatin1String("Plans")).toArray();
    for (const QJsonValue &one : below)
        readPlan(one.toObject(), faults, accounts);
}

QStringList ShardingTest::faultsOf(const QString &sql)
{
    QStringList faults;
    QSet<QString> accounts;
    static const QRegularExpression insert(
        QStringLiteral("^INSERT INTO (\\w+) \\((\\w+)[^)]*\\) (VALUES \\(|SELECT (?:CAST\\()?)"
                       "(\\$\\d+)?"));
    static const QRegularExpression moves(
        QStringLiteral("^UPDATE (\\w+) SET (?:.*, )?account_id =|DO UPDATE SET .*\\baccount_id ="));
    const QString text = simplified(sql);
    const auto into = insert.match(text);
    if (into.hasMatch() && isOfAccount(into.captured(1))) {
        if (into.captured(2) != QLatin1String("account_id"))
            faults << QStringLiteral("adds a row without saying its account first");
        else if (!into.captured(4).isEmpty())
            accounts.insert(into.captured(4));
    }
    const auto move = moves.match(text);
    if (move.hasMatch() && (move.captured(1).isEmpty() || isOfAccount(move.captured(1))))
        faults << QStringLiteral("moves a row to another account");

    const int parameters = SqlText(qUtf8Printable(sql)).parameterCount();
    const QString values = QStringList(parameters, QStringLiteral("NULL")).join(QLatin1Char(','));
    m_database->runNative(QStringLiteral("PREPARE x AS ") + sql);
    const QByteArray plan =
        m_database
            ->runNative(QStringLiteral("EXPLAIN (FORMAT JSON) EXECUTE x") +
                        (parameters > 0 ? QStringLiteral("(%1)").arg(values) : QString()))
            .toByteArray();
    m_database->runNative(QStringLiteral("DEALLOCATE x"));
    readPlan(QJsonDocument::fromJson(plan)
                 .array()
                 .at(0)
                 .toObject()
                 .value(QLatin1String("Plan"))
                 .toObject(),
             faults, accounts);
    if (accounts.size() > 1)
        faults << QStringLiteral("is about several accounts");
    return faults;
}

void ShardingTest::lintSeesEachFault_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *sql, const char *fault) {
        QTest::newRow(sql) << QString::fromLatin1(sql) << QString::fromLatin1(fault);
    };
    row("SELECT name FROM project WHERE guid = $1", "reads project of all accounts");
    row("SELECT name FROM project WHERE account_id > $1", "reads project of all accounts");
    row("SELECT name FROM project WHERE account_id = $1", "");
    row("SELECT name FROM account WHERE name_key = $1", "");
    row("DELETE FROM project WHERE guid = $1", "reads project of all accounts");
    row("UPDATE project SET name = $1 WHERE guid = $2", "reads project of all accounts");
    row("UPDATE project SET account_id = $1 WHERE account_id = $2 AND guid = $3",
        "moves a row to another account");
    row("INSERT INTO folder_perm (folder_id, account_id, user_id, letters) "
        "VALUES ($1, $2, $3, $4)",
        "adds a row without saying its account first");
    row("INSERT INTO folder_perm (account_id, folder_id, user_id, letters) "
        "VALUES ($1, $2, $3, $4)",
        "");
    row("SELECT a.name FROM asset a JOIN project p ON p.guid = a.guid WHERE a.account_id = $1",
        "reads project of all accounts");
    row("SELECT a.name FROM asset a JOIN project p ON p.guid = a.guid "
        "WHERE a.account_id = $1 AND p.account_id = $2",
        "is about several accounts");
    row("SELECT a.name FROM asset a LEFT JOIN project p ON p.account_id = a.account_id "
        "AND p.guid = a.guid WHERE a.account_id = $1",
        "");
}

void ShardingTest::lintSeesEachFault()
{
    QFETCH(QString, sql);
    QFETCH(QString, fault);
    QCOMPARE(faultsOf(sql).join(QLatin1Char(',')), fault);
}

void ShardingTest::statementsAreAboutOneAccount()
{
    QSet<QString> unused = names(severalAccounts);
    const QList<FoundText> texts = sqlTextsInSources();
    QVERIFY(texts.size() > 100);
    QStringList wrong;
    for (const FoundText &text : texts) {
        // The commands doctor, copy and backup look at the whole database at once.
        if (text.file.endsWith(QLatin1String("/workspacecheck.cpp")) ||
            text.file.endsWith(QLatin1String("/blobtransfer.cpp")))
            continue;
        const QStringList faults = faultsOf(text.sql);
        if (!isExcused(text.sql)) {
            if (!faults.isEmpty())
                wrong << QFileInfo(text.file).fileName() + QLatin1String(": ") +
                             simplified(text.sql).left(100) + QLatin1String(": ") +
                             faults.join(QLatin1String(", "));
            continue;
        }
        QVERIFY2(!faults.isEmpty(), qPrintable(simplified(text.sql) + QLatin1String(" is fine")));
        for (const Reason &one : severalAccounts) {
            if (simplified(text.sql).startsWith(QLatin1String(one.what)))
                unused.remove(QLatin1String(one.what));
        }
    }
    for (const QString &one : std::as_const(wrong))
        qCritical().noquote() << one;
    QVERIFY(wrong.isEmpty());
    QCOMPARE(unused, QSet<QString>());
}

void ShardingTest::transactionsArePlain()
{
    static const QRegularExpression special(
        QStringLiteral("\\b(FOR (UPDATE|SHARE|NO KEY|KEY)|LOCK TABLE|PG_ADVISORY\\w*|SAVEPOINT|"
                       "LISTEN|NOTIFY|TEMP|TEMPORARY|TRUNCATE|CURSOR|COPY|MERGE|DO \\$)\\b"));
    for (const FoundText &text : sqlTextsInSources())
        QVERIFY2(!text.sql.contains(special), qPrintable(text.file + QLatin1Char('\n') + text.sql));
    // A write outside of a transaction could not be repeated: neither we nor the server lets it be.
    const SqlText write("DELETE FROM sign_in_attempt WHERE bucket = $1");
    QVERIFY_THROWS_EXCEPTION(std::logic_error, m_database->exec(write, {QByteArray("x")}));
    QCOMPARE(m_database->runNative(QStringLiteral("SHOW default_transaction_read_only")).toString(),
             QStringLiteral("on"));
    m_database->tx([&] {
        m_database->exec(write, {QByteArray("x")});
        QCOMPARE(m_database->runNative(QStringLiteral("SHOW transaction_isolation")).toString(),
                 QStringLiteral("serializable"));
    });
}

ZEL_TEST_MAIN(ShardingTest)
#include "tst_sharding.moc"
