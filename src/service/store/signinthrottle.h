// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"

#include <QByteArray>
#include <QString>

namespace Zel {

class Database;
class ServerKeys;

/// Slows down guessing of passwords, by user name and address together. Five failures are free;
/// each further one doubles the wait, from 2 seconds up to 15 minutes. An hour without a failure,
/// or a sign-in that succeeds, forgets them. Names that do not exist are counted alike. Kept in the
/// database, so that all its daemons count together.
class ZEL_EXPORT SignInThrottle
{
public:
    static constexpr int freeFailures = 5;
    static constexpr qint64 firstWaitMs = 2000;
    static constexpr qint64 longestWaitMs = 15LL * 60 * 1000;
    static constexpr qint64 forgottenAfterMs = 60LL * 60 * 1000;

    SignInThrottle(Database &database, ServerKeys &keys, const Clock &clock);

    /// How many milliseconds this user has to wait at this address; 0 when an attempt may be made.
    qint64 waitMs(const QString &login, const QString &address);

    void noteFailure(const QString &login, const QString &address);
    void noteSuccess(const QString &login, const QString &address);

private:
    QByteArray bucket(const QString &login, const QString &address) const;

    Database &m_database;
    Clock m_clock;
    QByteArray m_key;
};

} // namespace Zel
