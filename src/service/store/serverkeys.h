// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/clock.h"

#include <QByteArray>

namespace Zel {

class Database;

/// Secrets kept in the database, so that every daemon of it reads the same tokens.
class ZEL_EXPORT ServerKeys
{
public:
    ServerKeys(Database &database, const Clock &clock);

    /// The 32-byte secret of a purpose ("session"), made at its first use.
    QByteArray key(const QString &purpose);

private:
    Database &m_database;
    Clock m_clock;
};

} // namespace Zel
