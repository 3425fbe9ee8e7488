// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/route.h"

#include <QByteArray>

namespace Zel::Service {

// Addresses of files that carry the permission to read them: an HMAC-SHA-256 under a key that all
// daemons of the database share. So a browser, or a control that loads pictures, needs no token.

/// How long the address of a thumbnail works at the least; the end is rounded up to the hour, so
/// that the same picture has the same address for a while and can be cached.
constexpr qint64 thumbnailAddressMs = 24LL * 60 * 60 * 1000;

/// The whole address of `path` for files of the call's account.
/// @param expiresAt milliseconds UTC; 0 for an address that data records keep
ZEL_EXPORT QByteArray signedAddress(const Call &call, const QByteArray &path, qint64 expiresAt);

/// Makes many such addresses of one call; the key is asked for once.
class ZEL_EXPORT AddressSigner
{
public:
    explicit AddressSigner(const Call &call);

    QByteArray address(const QByteArray &path, qint64 expiresAt) const;

private:
    QByteArray m_origin; ///< "http://127.0.0.1:8080"
    qint64 m_account;
    QByteArray m_key;
};

/// When an address made now ends.
ZEL_EXPORT qint64 thumbnailExpiry(qint64 now);

/// The account whose file the address of the call gives. Throws `Problem` when the address was not
/// made here, or its time is over.
ZEL_EXPORT qint64 accountOfSignedCall(const Call &call);

} // namespace Zel::Service
