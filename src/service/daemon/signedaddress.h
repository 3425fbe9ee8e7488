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
/// @param expiresAt milliseconds UTC
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

/// When the address of a thumbnail or preview made now ends.
ZEL_EXPORT qint64 thumbnailExpiry(qint64 now);

/// The account whose file a `signedAddress` gives. Throws `Problem` when the address was not made
/// here, or its time is over.
ZEL_EXPORT qint64 accountOfSignedCall(const Call &call);

/// The address of a file of an asset as data records keep it for years: relative to the service,
/// which may answer elsewhere tomorrow, and without an end. The signature is one of the asset
/// alone; the file's name stands there for people and is not looked at.
///
///     /a/GUID/NAME?s=SIGNATURE      the first file
///     /a/GUID/N/NAME?s=SIGNATURE    further ones, N from 1
ZEL_EXPORT QByteArray assetAddress(const Call &call, const QString &guid, qsizetype position,
                                   const QString &fileName);

/// The account of the asset that an `assetAddress` gives. Throws `Problem` when it was not made
/// here.
ZEL_EXPORT qint64 accountOfAssetCall(const Call &call, const QString &guid);

} // namespace Zel::Service
