// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sqlconnection.h"

#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/postgresresult.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSqlDriver>

#include <atomic>
#include <stdexcept>

namespace Zel {

namespace {

/// A result above this size is given back with its statement, so that one long list does not stay
/// in the memory of every thread that ever made one.
constexpr qint64 rowsKeptWithStatement = 1000;

QString nextConnectionName()
{
    static std::atomic<quint64> count{0};
    return QStringLiteral("zel-%1").arg(++count);
}

[[noreturn]] void refuse(const QString &why)
{
    throw DatabaseError(DatabaseError::Kind::Missing, why);
}

/// Makes the missing file itself, so that it and the files SQLite puts beside it (which take over
/// its permissions) are never readable by others, not even for a moment.
void createPrivateFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        refuse(QStringLiteral("The file %1 cannot be made: %2.").arg(path, file.errorString()));
}

void expectValues(const SqlText &text, const SqlValues &values)
{
    if (values.size() != text.parameterCount())
        throw std::logic_error("a statement was given another number of values than it has places");
}

void checkSqliteFile(const QString &path, bool mayCreate)
{
    const QFileInfo info(path);
    if (!info.dir().exists())
        refuse(QStringLiteral("The folder %1 does not exist.").arg(info.absolutePath()));
    if (info.isDir())
        refuse(QStringLiteral("%1 is a folder, not a file.").arg(path));
    if (!info.exists() && !mayCreate)
        refuse(QStringLiteral("The file %1 does not exist.").arg(path));
    if (!info.exists())
        createPrivateFile(path);
}

} // namespace

SqlConnection::SqlConnection(const DatabaseAddress &address, bool mayCreate)
    : m_engine(address.engine)
    , m_name(nextConnectionName())
{
    try {
        if (m_engine == DatabaseAddress::Engine::Sqlite)
            openSqlite(address, mayCreate);
        else
            openPostgres(address);
    } catch (...) {
        close();
        throw;
    }
}

SqlConnection::~SqlConnection()
{
    close();
}

void SqlConnection::close()
{
    // The driver goes first: statements that outlive it free themselves without talking to it.
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
    m_prepared.clear();
}

void SqlConnection::openSqlite(const DatabaseAddress &address, bool mayCreate)
{
    checkSqliteFile(address.file, mayCreate);
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    m_database.setDatabaseName(address.file);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!m_database.open())
        fail(m_database.lastError());
    refuseForeignFile();
    run(QStringLiteral("PRAGMA foreign_keys = ON"));
    run(QStringLiteral("PRAGMA trusted_schema = OFF"));
    run(QStringLiteral("PRAGMA journal_mode = WAL"));
    run(QStringLiteral("PRAGMA synchronous = FULL"));
}

/// Some other program's database is left exactly as it is.
void SqlConnection::refuseForeignFile()
{
    const bool ours = run(QStringLiteral("PRAGMA application_id")).toLongLong() ==
                      Migrations::sqliteApplicationId;
    const bool empty = run(QStringLiteral("SELECT COUNT(*) FROM sqlite_schema")).toLongLong() == 0;
    if (!ours && !empty)
        throw DatabaseError(DatabaseError::Kind::Corrupt,
                            QStringLiteral("%1 is a database, but not a workspace of this program.")
                                .arg(m_database.databaseName()));
}

void SqlConnection::openPostgres(const DatabaseAddress &address)
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_name);
    m_database.setHostName(address.host);
    m_database.setPort(address.port);
    m_database.setUserName(address.user);
    m_database.setPassword(address.password);
    m_database.setDatabaseName(address.database);
    m_database.setConnectOptions(address.options);
    if (!m_database.open()) {
        // No SQLSTATE reaches us from a failed sign-in, so one sentence covers every cause.
        throw DatabaseError(
            DatabaseError::Kind::Lost,
            QStringLiteral("The database %1 cannot be reached: %2")
                .arg(address.display(), m_database.lastError().databaseText().simplified()));
    }
    run(QStringLiteral("SET statement_timeout = '30s'"));
    run(QStringLiteral("SET idle_in_transaction_session_timeout = '60s'"));
    run(QStringLiteral("SET client_min_messages = error"));
    // A write outside of a transaction is refused: it could not be retried.
    run(QStringLiteral("SET default_transaction_read_only = on"));
}

qint64 SqlConnection::execute(const SqlText &text, const SqlValues &values, const RowVisitor &visit)
{
    if (m_visiting)
        throw std::logic_error("a statement was run while the rows of another are being read");
    if (text.carriesBytes() && m_engine == DatabaseAddress::Engine::Postgres)
        return executeBinary(text, values, visit);
    QSqlQuery &query = prepared(text);
    bind(query, text, values);
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        if (m_engine == DatabaseAddress::Engine::Sqlite)
            m_prepared.erase(text.sql()); // its driver may have let go of the statement
        fail(error);
    }
    qint64 rows = 0;
    const qint64 changed = readRows(query, visit, rows);
    if (rows > rowsKeptWithStatement)
        m_prepared.erase(text.sql());
    return changed;
}

/// The driver would send and get bytes as text of twice their length, and copy that several times.
qint64 SqlConnection::executeBinary(const SqlText &text, const SqlValues &values,
                                    const RowVisitor &visit)
{
    expectValues(text, values);
    const PostgresResult result(*m_database.driver(), text, values);
    if (!result.isFine())
        fail(result.sqlState(), result.errorText());
    m_visiting = true;
    const auto finish = qScopeGuard([this] { m_visiting = false; });
    for (int row = 0; visit && row < result.rowCount(); ++row) {
        const PostgresResult::Row cells(result, row);
        visit(SqlRow(cells));
    }
    return result.changedRows();
}

qint64 SqlConnection::readRows(QSqlQuery &query, const RowVisitor &visit, qint64 &rows)
{
    m_visiting = true;
    const auto finish = qScopeGuard([this, &query] {
        m_visiting = false;
        query.finish(); // else SQLite keeps its read transaction open
    });
    const SqlRow row(query);
    while (query.isSelect() && query.next()) {
        ++rows;
        if (visit)
            visit(row);
    }
    if (query.lastError().isValid())
        fail(query.lastError());
    return query.numRowsAffected();
}

QSqlQuery &SqlConnection::prepared(const SqlText &text)
{
    const auto known = m_prepared.find(text.sql());
    if (known != m_prepared.end())
        return known->second;
    QSqlQuery query(m_database);
    // PostgreSQL's driver would go row by row over the wire and lose the rest at the next
    // statement.
    query.setForwardOnly(m_engine == DatabaseAddress::Engine::Sqlite);
    if (!query.prepare(text.sql()))
        fail(query.lastError());
    return m_prepared.emplace(text.sql(), std::move(query)).first->second;
}

void SqlConnection::bind(QSqlQuery &query, const SqlText &text, const SqlValues &values) const
{
    expectValues(text, values);
    int position = 0;
    if (m_engine == DatabaseAddress::Engine::Sqlite) {
        for (const int number : text.firstAppearances())
            query.bindValue(position++, values.at(number).variant());
    } else {
        for (const SqlValue &value : values)
            query.bindValue(position++, value.variant());
    }
}

QVariant SqlConnection::run(const QString &sql)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        fail(query.lastError());
    QVariant value;
    while (query.isSelect() && query.next())
        value = query.value(0);
    if (query.lastError().isValid())
        fail(query.lastError());
    return value;
}

void SqlConnection::stream(const QString &sql, const RowVisitor &visit)
{
    if (m_visiting)
        throw std::logic_error("a statement was run while the rows of another are being read");
    QSqlQuery query(m_database);
    // PostgreSQL's driver goes row by row over the wire then.
    query.setForwardOnly(true);
    if (!query.exec(sql))
        fail(query.lastError());
    qint64 rows = 0;
    readRows(query, visit, rows);
}

void SqlConnection::begin(bool readOnly)
{
    if (m_engine == DatabaseAddress::Engine::Sqlite)
        run(readOnly ? QStringLiteral("BEGIN") : QStringLiteral("BEGIN IMMEDIATE"));
    else
        run(readOnly ? QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY")
                     : QStringLiteral("BEGIN ISOLATION LEVEL SERIALIZABLE READ WRITE"));
    m_inTransaction = true;
    m_readOnly = readOnly;
    m_failedInTransaction = false;
}

void SqlConnection::commit()
{
    // PostgreSQL answers COMMIT of a failed transaction by rolling back, without an error.
    if (m_failedInTransaction)
        throw std::logic_error("a failed transaction cannot be committed");
    run(QStringLiteral("COMMIT"));
    m_inTransaction = false;
}

void SqlConnection::rollBack()
{
    m_inTransaction = false;
    if (m_lost)
        return;
    try {
        run(QStringLiteral("ROLLBACK"));
    } catch (const DatabaseError &) {
        // SQLite may have rolled back by itself (disk full, I/O error); either way the connection
        // is opened anew rather than trusted.
        m_lost = true;
    }
}

void SqlConnection::fail(const QSqlError &error)
{
    fail(error.nativeErrorCode(), error.databaseText());
}

void SqlConnection::fail(const QString &code, const QString &said)
{
    const DatabaseError::Kind kind = m_engine == DatabaseAddress::Engine::Sqlite
                                         ? DatabaseError::kindOfSqlite(code.toInt())
                                         : DatabaseError::kindOfPostgres(code);
    m_failedInTransaction = m_inTransaction;
    if (kind == DatabaseError::Kind::Lost)
        m_lost = true;
    // Further lines of PostgreSQL's text show the row's values, which may be anything.
    QString text = said.section(QLatin1Char('\n'), 0, 0).simplified();
    if (kind == DatabaseError::Kind::Corrupt)
        text = QStringLiteral("The database is damaged: %1.").arg(text);
    throw DatabaseError(kind, text, code);
}

} // namespace Zel
