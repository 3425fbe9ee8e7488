// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/securebytes.h"

#include <sodium.h>

#include <stdexcept>

namespace Zel {

void initializeSodium()
{
    static const int result = sodium_init();
    if (result < 0)
        qFatal("the system has no source of randomness");
}

QByteArray randomBytes(qsizetype count)
{
    initializeSodium();
    QByteArray bytes(count, Qt::Uninitialized);
    randombytes_buf(bytes.data(), static_cast<size_t>(count));
    return bytes;
}

QByteArray keyedHash(const QByteArray &key, const QByteArray &text)
{
    initializeSodium();
    if (key.size() != crypto_generichash_KEYBYTES)
        throw std::logic_error("a hash key has 32 bytes");
    QByteArray hash(crypto_generichash_BYTES, Qt::Uninitialized);
    const auto unsignedBytes = [](const QByteArray &bytes) {
        return reinterpret_cast<const unsigned char *>(bytes.constData());
    };
    crypto_generichash(reinterpret_cast<unsigned char *>(hash.data()), crypto_generichash_BYTES,
                       unsignedBytes(text), static_cast<unsigned long long>(text.size()),
                       unsignedBytes(key), crypto_generichash_KEYBYTES);
    return hash;
}

bool isSameSecret(const QByteArray &left, const QByteArray &right)
{
    return left.size() == right.size() &&
           sodium_memcmp(left.constData(), right.constData(), static_cast<size_t>(left.size())) == 0;
}

void wipe(QByteArray &bytes)
{
    if (!bytes.isEmpty())
        sodium_memzero(bytes.data(), static_cast<size_t>(bytes.size()));
    bytes.clear();
}

} // namespace Zel
