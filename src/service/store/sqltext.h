// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QString>

namespace Zel {

/// One SQL statement in the words both databases share, with placeholders $1..$n.
///
/// House rules, held by a test over the sources: written as R"sql(...)sql"; ORDER BY says NULLS
/// FIRST or LAST; a parameter that may be NULL is tested as CAST($1 AS TEXT) IS NULL; no LIKE, no
/// lower or upper; no sequences and no database functions for time.
class ZEL_EXPORT SqlText
{
public:
    /// What a statement moves to the database or from it.
    enum class Carries
    {
        Values, ///< numbers, texts and a few bytes
        Bytes   ///< bytes by the megabyte: they go in binary form, without copies of them as text.
                ///< Its texts are names of our own, not people's words.
    };

    explicit SqlText(const char *sql, Carries carries = Carries::Values);

    bool carriesBytes() const { return m_carries == Carries::Bytes; }

    const QString &sql() const { return m_sql; }

    int parameterCount() const { return m_parameterCount; }

    /// The parameters' numbers (from 0) in the order in which they first appear. SQLite numbers
    /// named parameters this way.
    const QList<int> &firstAppearances() const { return m_firstAppearances; }

private:
    QString m_sql;
    Carries m_carries;
    int m_parameterCount = 0;
    QList<int> m_firstAppearances;
};

} // namespace Zel
