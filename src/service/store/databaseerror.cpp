// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/databaseerror.h"

namespace Zel {

DatabaseError::DatabaseError(Kind kind, const QString &message, const QString &nativeCode)
    : m_kind(kind)
    , m_message(message)
    , m_nativeCode(nativeCode)
    , m_what(message.toUtf8())
{
}

DatabaseError::~DatabaseError() = default;
DatabaseError::DatabaseError(const DatabaseError &) = default;
DatabaseError &DatabaseError::operator=(const DatabaseError &) = default;

const char *DatabaseError::what() const noexcept
{
    return m_what.constData();
}

// The figures are SQLite's documented result codes (https://www.sqlite.org/rescode.html).
DatabaseError::Kind DatabaseError::kindOfSqlite(int code)
{
    switch (code) {
    case 2067: // SQLITE_CONSTRAINT_UNIQUE
    case 1555: // SQLITE_CONSTRAINT_PRIMARYKEY
        return Kind::Unique;
    case 787: // SQLITE_CONSTRAINT_FOREIGNKEY
        return Kind::ForeignKey;
    case 517: // SQLITE_BUSY_SNAPSHOT
        return Kind::Conflict;
    default:
        break;
    }
    switch (code & 0xff) {
    case 5: // SQLITE_BUSY
    case 6: // SQLITE_LOCKED
        return Kind::Busy;
    case 11: // SQLITE_CORRUPT
    case 26: // SQLITE_NOTADB
        return Kind::Corrupt;
    case 13: // SQLITE_FULL
        return Kind::Full;
    case 10: // SQLITE_IOERR
        return Kind::Lost;
    case 3:  // SQLITE_PERM
    case 8:  // SQLITE_READONLY
    case 14: // SQLITE_CANTOPEN
        return Kind::Missing;
    case 19: // SQLITE_CONSTRAINT
    case 20: // SQLITE_MISMATCH
        return Kind::Check;
    default:
        return Kind::Other;
    }
}

// SQLSTATE classes: https://www.postgresql.org/docs/15/errcodes-appendix.html
DatabaseError::Kind DatabaseError::kindOfPostgres(const QString &sqlState)
{
    const auto is = [&sqlState](const char *code) { return sqlState == QLatin1String(code); };
    const auto inClass = [&sqlState](const char *code) {
        return sqlState.startsWith(QLatin1String(code));
    };
    if (sqlState.isEmpty())
        return Kind::Lost;
    if (is("40001") || is("40P01"))
        return Kind::Conflict;
    if (is("23505"))
        return Kind::Unique;
    if (is("23503"))
        return Kind::ForeignKey;
    if (inClass("23"))
        return Kind::Check;
    if (is("57014") || is("55P03"))
        return Kind::Busy; // statement or lock time limit
    if (is("53100"))
        return Kind::Full;
    if (inClass("08") || inClass("57P") || inClass("53"))
        return Kind::Lost;
    if (is("XX001") || is("XX002"))
        return Kind::Corrupt;
    if (inClass("28") || is("3D000") || is("42501"))
        return Kind::Missing; // may not sign in, no such database, no right
    return Kind::Other;
}

} // namespace Zel
