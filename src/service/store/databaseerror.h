// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace Zel {

/// A database call that failed. `kind()` is what a caller decides by; it is read from the
/// database's own codes (SQLite result codes, SQLSTATE), never from message texts.
class ZEL_EXPORT DatabaseError : public std::exception
{
public:
    enum class Kind
    {
        Conflict,   ///< two transactions touched the same rows: the same transaction may be retried
        Unique,     ///< a key exists already
        ForeignKey, ///< a row that is referred to does not exist, or is still referred to
        Check,      ///< a value the table does not take: a check, a missing value, a wrong type
        Busy,       ///< the database did not get to it in time
        Full,       ///< no room left to write
        Lost,       ///< no connection, or it ended in the middle
        Corrupt,    ///< the file is damaged or is no workspace
        Newer,      ///< written by a newer program
        Outdated,   ///< written by an older program and not yet migrated
        Unfinished, ///< a copy or restore into the database did not end
        Missing,    ///< the file, its folder or the right to use it is not there
        Other       ///< everything else: a fault in our own SQL
    };

    DatabaseError(Kind kind, const QString &message, const QString &nativeCode = QString());
    ~DatabaseError() override;
    DatabaseError(const DatabaseError &);
    DatabaseError &operator=(const DatabaseError &);

    Kind kind() const { return m_kind; }

    /// A sentence for the log and the command line; it may name files and hosts, never passwords.
    QString message() const { return m_message; }

    /// SQLite's extended result code or the SQLSTATE; empty when there is none.
    QString nativeCode() const { return m_nativeCode; }

    const char *what() const noexcept override;

    /// The kind behind a SQLite result code, extended or not.
    static Kind kindOfSqlite(int code);
    /// The kind behind a SQLSTATE. An empty one means that no answer came: the connection is lost.
    static Kind kindOfPostgres(const QString &sqlState);

private:
    Kind m_kind;
    QString m_message;
    QString m_nativeCode;
    QByteArray m_what;
};

} // namespace Zel
