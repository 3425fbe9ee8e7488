// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>

#include <cstddef>
#include <memory>

namespace QXSC {

/// The checksum by which client and service agree on the bytes of an uploaded file: SHA-256. Made
/// by libcrypto, which uses the processor's own instructions for it: several times faster than
/// QCryptographicHash on most machines.
class ZEL_EXPORT Checksum
{
public:
    Checksum();
    ~Checksum();
    Checksum(Checksum &&other) noexcept;
    Checksum &operator=(Checksum &&other) noexcept;

    void add(const char *data, std::size_t count);
    /// 64 hexadecimal digits for what has been added so far; more may be added afterwards.
    QByteArray hex() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace QXSC
