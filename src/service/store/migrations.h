// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/databaseaddress.h"

#include <QString>
#include <QStringList>

namespace Zel {

class Database;

/// Brings the tables of a database to the form this program works with, one numbered step after the
/// other. A step is a resource `NNNN-title.sql` for both databases, or a pair
/// `NNNN-title.sqlite.sql` / `NNNN-title.postgresql.sql`.
///
/// Shared steps use the types TEXT, BIGINT, BOOLEAN and BYTEA. SQLite gets STRICT tables, so that
/// it refuses a value of another type as PostgreSQL does; PostgreSQL gets the C collation, so that
/// texts are ordered by their bytes whatever the database was made with.
class ZEL_EXPORT Migrations
{
public:
    /// Marks a SQLite file as ours ("ZelW").
    static constexpr qint64 sqliteApplicationId = 0x5a656c57;

    /// Whether a database is worked on that has the mark of a copy (`UnfinishedCopy`).
    enum class Marked
    {
        Refuse,
        Allow ///< for the copy itself
    };

    explicit Migrations(Database &database, Marked marked = Marked::Refuse);

    /// The number of the last step this program knows.
    static int latestVersion();

    /// The number of the last step the database has; 0 for an empty one.
    int currentVersion();

    /// Runs what is missing up to `version` and returns how many steps that were. Throws
    /// `DatabaseError`: Newer for a database that is further than this program, Unfinished for one
    /// that a copy did not end in.
    int migrate(int version = latestVersion());

    /// Throws `DatabaseError` unless the database is exactly where this program needs it.
    void requireCurrent();

    /// Throws `DatabaseError` Unfinished for a database that a copy did not end in.
    void refuseUnfinished();

    /// Throws `DatabaseError` Newer for a database that is further than this program.
    void refuseNewer();

    /// The tables that the steps make.
    static QStringList tableNames();

    /// The title of a step: "0003-themes".
    static QString title(int version);

    /// The statements of a step in one database's words.
    static QStringList statements(int version, DatabaseAddress::Engine engine);

private:
    void refuseFurther(int current);
    int takeSteps(int version);
    void applyStep(int version);

    Database &m_database;
    Marked m_marked;
};

} // namespace Zel
