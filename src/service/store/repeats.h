// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Zel {

class Database;

/// Whose call carries a key, and which; keys of different people and accounts have nothing to do
/// with each other.
struct RepeatKey
{
    qint64 accountId = 0;
    QString userId;
    QString key;
};

/// The answer of a call that was done.
struct RepeatAnswer
{
    QByteArray requestHash; ///< of what was asked for
    int status = 0;
    QByteArray body;
};

/// The answers of writing calls by the keys they carried. A client whose call was cut off before
/// the answer sends it again under the same key and gets the answer of the first time.
class ZEL_EXPORT Repeats
{
public:
    /// How long an answer is kept: far longer than anybody tries again.
    static constexpr qint64 lifeMs = 24LL * 60 * 60 * 1000;
    static constexpr qsizetype longestKey = 64;

    Repeats(Database &database, const Clock &clock);

    /// The answer kept under a key that has not expired.
    std::optional<RepeatAnswer> find(const RepeatKey &key);
    /// Keeps an answer. Only inside the transaction that does what it answers, so that either both
    /// are stored or none.
    void put(const RepeatKey &key, const RepeatAnswer &answer);

    /// Forgets expired answers, a thousand at most; returns how many that were. To be called until
    /// there are none, so that no transaction grows with them.
    qint64 forgetExpired();

private:
    Database &m_database;
    Clock m_clock;
};

} // namespace Zel
