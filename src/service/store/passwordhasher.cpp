// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/passwordhasher.h"

#include "service/store/securebytes.h"

#include <QRegularExpression>

#include <sodium.h>

#include <new>

namespace Zel {

namespace {

/// The same characters typed on another system may come composed differently.
QByteArray passwordBytes(const QString &password)
{
    return password.normalized(QString::NormalizationForm_C).toUtf8();
}

/// What checking a hash costs is part of its text: up to 1 GiB and 16 rounds are taken.
bool isAffordable(const QString &hash)
{
    constexpr qint64 mostKib = 1024 * 1024;
    constexpr qint64 mostRounds = 16;
    static const QRegularExpression shape(
        QStringLiteral("^\\$argon2id\\$v=19\\$m=([0-9]{1,9}),t=([0-9]{1,9}),p=1\\$"));
    const auto match = shape.match(hash);
    return match.hasMatch() && match.captured(1).toLongLong() <= mostKib &&
           match.captured(2).toLongLong() <= mostRounds;
}

} // namespace

PasswordHasher::PasswordHasher(Cost cost)
    : m_operations(cost == Cost::Interactive ? crypto_pwhash_OPSLIMIT_INTERACTIVE
                                             : crypto_pwhash_OPSLIMIT_MIN)
    , m_memory(cost == Cost::Interactive ? crypto_pwhash_MEMLIMIT_INTERACTIVE
                                         : crypto_pwhash_MEMLIMIT_MIN)
    , m_isStrong(cost == Cost::Interactive)
    , m_dummy(hash(QString::fromLatin1(randomBytes(24).toHex())))
{
}

QString PasswordHasher::hash(const QString &password) const
{
    initializeSodium();
    m_hashes.fetch_add(1, std::memory_order_relaxed);
    QByteArray bytes = passwordBytes(password);
    char text[crypto_pwhash_STRBYTES];
    const int result =
        crypto_pwhash_str(text, bytes.constData(), static_cast<unsigned long long>(bytes.size()),
                          m_operations, m_memory);
    wipe(bytes);
    if (result != 0)
        throw std::bad_alloc();
    return QString::fromLatin1(text);
}

bool PasswordHasher::verify(const QString &hash, const QString &password) const
{
    initializeSodium();
    m_hashes.fetch_add(1, std::memory_order_relaxed);
    QByteArray bytes = passwordBytes(password);
    const int result = crypto_pwhash_str_verify(hash.toLatin1().constData(), bytes.constData(),
                                                static_cast<unsigned long long>(bytes.size()));
    wipe(bytes);
    return result == 0;
}

bool PasswordHasher::isHash(const QString &text)
{
    initializeSodium();
    constexpr auto longest = static_cast<qsizetype>(crypto_pwhash_STRBYTES) - 1;
    // What it costs to check is part of the text, so one that costs too much is none.
    return text.size() <= longest && text.startsWith(QLatin1String(crypto_pwhash_STRPREFIX)) &&
           crypto_pwhash_str_needs_rehash(text.toLatin1().constData(),
                                          crypto_pwhash_OPSLIMIT_INTERACTIVE,
                                          crypto_pwhash_MEMLIMIT_INTERACTIVE) >= 0 &&
           isAffordable(text);
}

bool PasswordHasher::isOutdated(const QString &hash) const
{
    return m_isStrong &&
           crypto_pwhash_str_needs_rehash(hash.toLatin1().constData(), m_operations, m_memory) != 0;
}

} // namespace Zel
