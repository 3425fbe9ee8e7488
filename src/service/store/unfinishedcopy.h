// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <functional>

namespace Zel {

class Database;

/// The mark on a database that a workspace is being copied or restored into. It is set before
/// anything is written and goes when everything is there and has been checked, so a database either
/// has the whole workspace or has the mark, and with the mark nothing serves, migrates or takes in.
class ZEL_EXPORT UnfinishedCopy
{
public:
    explicit UnfinishedCopy(Database &database)
        : m_database(database)
    {
    }

    bool isMarked();

    /// Throws `DatabaseError` Unfinished when there is the mark.
    void refuse();

    /// Sets the mark, taking over one that is there, and returns a token of its own. Where there is
    /// none, `unlessMarked` is called first, in the same transaction; it may throw. Throws
    /// `DatabaseError` Busy while somebody else writes the database.
    QString begin(const std::function<void()> &unlessMarked = {});

    /// Inside a transaction, before anything else: throws `DatabaseError` Busy when somebody else
    /// has taken the mark over since, and keeps others from doing so until the transaction ends.
    void hold(const QString &token);

    /// Inside such a transaction: takes the mark away.
    void end();

private:
    void waitBriefly();
    void makeTable();

    Database &m_database;
};

} // namespace Zel
