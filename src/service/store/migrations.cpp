// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/migrations.h"

#include "service/store/clock.h"
#include "service/store/database.h"
#include "service/store/databaseerror.h"
#include "service/store/tableschema.h"
#include "service/store/unfinishedcopy.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QScopeGuard>

#include <algorithm>
#include <stdexcept>

namespace Zel {

namespace {

const SqlText noteVersion(R"sql(
    INSERT INTO schema_version (version, applied_at) VALUES ($1, $2)
)sql");

const QString folder = QStringLiteral(":/zel/migrations/");

/// Keeps two programs from migrating one PostgreSQL database at the same time; any fixed number
/// does.
constexpr qint64 advisoryLock = 0x5a656c57;

/// The steps' file names by number. A pair for two databases is found under either name.
QMap<int, QString> steps()
{
    QMap<int, QString> result;
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.sql")}, QDir::Files);
    for (const QString &file : files)
        result.insert(file.left(4).toInt(), file.section(QLatin1Char('.'), 0, 0));
    return result;
}

QString read(const QString &name)
{
    QFile file(folder + name);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

QString forSqlite(QString sql)
{
    static const QRegularExpression boolean(QStringLiteral("\\b(\\w+) BOOLEAN\\b"));
    static const QRegularExpression tableEnd(QStringLiteral("\\)\\s*$"));
    sql.replace(boolean, QStringLiteral("\\1 INTEGER CHECK (\\1 IN (0, 1))"));
    sql.replace(QLatin1String(" BIGINT"), QLatin1String(" INTEGER"));
    sql.replace(QLatin1String(" BYTEA"), QLatin1String(" BLOB"));
    // It has no other place for NULL in an index, and cannot be told so.
    if (sql.startsWith(QLatin1String("CREATE INDEX")))
        sql.remove(QLatin1String(" NULLS FIRST"));
    if (sql.startsWith(QLatin1String("CREATE TABLE")))
        sql.replace(tableEnd, QStringLiteral(") STRICT"));
    return sql;
}

QString forPostgres(QString sql)
{
    static const QRegularExpression textColumn(QStringLiteral("^(\\s+\\w+) TEXT\\b"),
                                               QRegularExpression::MultilineOption);
    return sql.replace(textColumn, QStringLiteral("\\1 TEXT COLLATE \"C\""));
}

QStringList split(const QString &sql)
{
    static const QRegularExpression comment(QStringLiteral("^--.*$"),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression end(QStringLiteral(";\\s*(\\n|$)"));
    QStringList result;
    const QStringList parts = QString(sql).remove(comment).split(end);
    for (const QString &part : parts) {
        if (!part.trimmed().isEmpty())
            result << part.trimmed();
    }
    return result;
}

} // namespace

Migrations::Migrations(Database &database, Marked marked)
    : m_database(database)
    , m_marked(marked)
{
}

void Migrations::refuseUnfinished()
{
    if (m_marked == Marked::Refuse)
        UnfinishedCopy(m_database).refuse();
}

int Migrations::latestVersion()
{
    const QMap<int, QString> all = steps();
    if (all.isEmpty() || all.lastKey() != all.size())
        throw std::logic_error("the migration steps are not numbered 1, 2, 3, ...");
    return all.lastKey();
}

QString Migrations::title(int version)
{
    return steps().value(version);
}

QStringList Migrations::statements(int version, DatabaseAddress::Engine engine)
{
    const bool sqlite = engine == DatabaseAddress::Engine::Sqlite;
    const QString name = steps().value(version);
    const QString own =
        read(name + (sqlite ? QLatin1String(".sqlite.sql") : QLatin1String(".postgresql.sql")));
    if (!own.isEmpty())
        return split(own);
    QStringList result = split(read(name + QLatin1String(".sql")));
    for (QString &statement : result)
        statement = sqlite ? forSqlite(statement) : forPostgres(statement);
    return result;
}

int Migrations::currentVersion()
{
    const bool sqlite = m_database.address().engine == DatabaseAddress::Engine::Sqlite;
    const bool hasTable =
        m_database
            .runNative(sqlite ? QStringLiteral("SELECT COUNT(*) FROM sqlite_schema WHERE type = "
                                               "'table' AND name = 'schema_version'")
                              : QStringLiteral("SELECT COUNT(*) FROM information_schema.tables "
                                               "WHERE table_schema = current_schema() "
                                               "AND table_name = 'schema_version'"))
            .toInt() > 0;
    if (!hasTable)
        return 0;
    return m_database
        .runNative(QStringLiteral("SELECT COALESCE(MAX(version), 0) FROM schema_version"))
        .toInt();
}

void Migrations::refuseFurther(int current)
{
    if (current <= latestVersion())
        return;
    throw DatabaseError(DatabaseError::Kind::Newer,
                        QStringLiteral("The database %1 was written by a newer program (step %2; "
                                       "this program knows %3). Update this program.")
                            .arg(m_database.address().display())
                            .arg(current)
                            .arg(latestVersion()));
}

int Migrations::migrate(int version)
{
    if (m_database.address().engine == DatabaseAddress::Engine::Sqlite)
        return takeSteps(version);
    const QString encoding =
        m_database.runNative(QStringLiteral("SHOW server_encoding")).toString();
    if (encoding != QLatin1String("UTF8"))
        throw DatabaseError(DatabaseError::Kind::Check,
                            QStringLiteral("The database %1 is encoded in %2; make one in UTF8.")
                                .arg(m_database.address().display(), encoding));
    // Taken before the transaction, which would otherwise not see what the holder before has done.
    // It is the session's and outlives the transaction it is waited for in, however long that
    // takes.
    m_database.snapshot([&] {
        allowLongWork(m_database);
        m_database.runNative(
            QStringLiteral("SELECT 1 FROM (SELECT pg_advisory_lock(%1)) x").arg(advisoryLock));
    });
    const auto unlock = qScopeGuard([this] {
        try {
            m_database.runNative(QStringLiteral("SELECT pg_advisory_unlock(%1)").arg(advisoryLock));
        } catch (const DatabaseError &) {
            // The connection is lost, and the lock with it.
        }
    });
    return takeSteps(version);
}

int Migrations::takeSteps(int version)
{
    return m_database.tx([&] {
        allowLongWork(m_database); // a statement may have a whole table to go through
        refuseUnfinished();
        const int current = currentVersion();
        refuseFurther(current);
        for (int step = current + 1; step <= version; ++step)
            applyStep(step);
        return std::max(0, version - current);
    });
}

void Migrations::applyStep(int version)
{
    const DatabaseAddress::Engine engine = m_database.address().engine;
    if (version == 1 && engine == DatabaseAddress::Engine::Sqlite)
        m_database.runNative(QStringLiteral("PRAGMA application_id = %1").arg(sqliteApplicationId));
    const QStringList all = statements(version, engine);
    for (const QString &statement : all)
        m_database.runNative(statement);
    m_database.exec(noteVersion, {version, systemClock()()});
}

void Migrations::refuseNewer()
{
    refuseFurther(currentVersion());
}

QStringList Migrations::tableNames()
{
    static const QStringList names = [] {
        static const QRegularExpression made(QStringLiteral("^CREATE TABLE (\\w+)"));
        QStringList found;
        for (int version = 1; version <= latestVersion(); ++version) {
            for (const QString &sql : statements(version, DatabaseAddress::Engine::Sqlite)) {
                const auto match = made.match(sql);
                if (match.hasMatch())
                    found << match.captured(1);
            }
        }
        return found;
    }();
    return names;
}

void Migrations::requireCurrent()
{
    refuseUnfinished();
    const int current = currentVersion();
    refuseFurther(current);
    if (current < latestVersion())
        throw DatabaseError(
            DatabaseError::Kind::Outdated,
            QStringLiteral("The database %1 is not ready for this program (step %2 of %3). Run "
                           "\"zel-service migrate\" on it.")
                .arg(m_database.address().display())
                .arg(current)
                .arg(latestVersion()));
}

} // namespace Zel
