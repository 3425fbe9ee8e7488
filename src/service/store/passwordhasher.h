// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <atomic>

namespace Zel {

/// Argon2id password hashes in libsodium's text form, which carries its own salt and cost.
class ZEL_EXPORT PasswordHasher
{
public:
    enum class Cost
    {
        Interactive, ///< 64 MiB and about 60 ms a hash: what a service runs with
        Minimal      ///< the least libsodium does: for tests only
    };

    explicit PasswordHasher(Cost cost = Cost::Interactive);

    /// Throws `std::bad_alloc` when the memory for it is not to be had.
    QString hash(const QString &password) const;
    /// Compares in constant time. A hash that is none verifies nothing.
    bool verify(const QString &hash, const QString &password) const;
    /// Whether a text is a hash that `verify` can check at a cost that can be borne.
    static bool isHash(const QString &text);
    /// Whether a hash is weaker than what `hash` makes now. A hasher at minimal cost never says so:
    /// it would weaken what it touches.
    bool isOutdated(const QString &hash) const;

    /// A hash of a password nobody knows, at the cost of `hash`: verified in place of a user that
    /// does not exist, so that the answer takes as long.
    const QString &dummy() const { return m_dummy; }

    /// How many hashes were made or compared with since it was made.
    qint64 hashes() const { return m_hashes; }

private:
    unsigned long long m_operations;
    size_t m_memory;
    bool m_isStrong;
    mutable std::atomic<qint64> m_hashes{0};
    QString m_dummy;
};

} // namespace Zel
