// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/checksum.h"

#include <openssl/evp.h>

#include <array>
#include <new>

namespace QXSC {

namespace {

struct Deleter
{
    void operator()(EVP_MD_CTX *context) const { EVP_MD_CTX_free(context); }
};

using Context = std::unique_ptr<EVP_MD_CTX, Deleter>;

Context newContext()
{
    Context context(EVP_MD_CTX_new());
    if (!context)
        throw std::bad_alloc();
    return context;
}

} // namespace

struct Checksum::State
{
    Context context = newContext();
};

Checksum::Checksum()
    : m_state(std::make_unique<State>())
{
    if (EVP_DigestInit_ex(m_state->context.get(), EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc();
}

Checksum::~Checksum() = default;
Checksum::Checksum(Checksum &&other) noexcept = default;
Checksum &Checksum::operator=(Checksum &&other) noexcept = default;

void Checksum::add(const char *data, std::size_t count)
{
    EVP_DigestUpdate(m_state->context.get(), data, count);
}

QByteArray Checksum::hex() const
{
    const Context copy = newContext();
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    if (EVP_MD_CTX_copy_ex(copy.get(), m_state->context.get()) != 1 ||
        EVP_DigestFinal_ex(copy.get(), digest.data(), &length) != 1)
        throw std::bad_alloc();
    return QByteArray(reinterpret_cast<const char *>(digest.data()), length).toHex();
}

} // namespace QXSC
