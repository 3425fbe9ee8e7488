// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/signedaddress.h"

#include "service/daemon/problem.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qint64 hourMs = 60LL * 60 * 1000;

QByteArray keyOf(Store &store)
{
    return store.keys.key(QStringLiteral("address"));
}

QByteArray signatureOf(const QByteArray &key, const QByteArray &path, qint64 accountId,
                       qint64 expiresAt)
{
    const QByteArray text =
        path + '?' + QByteArray::number(accountId) + '&' + QByteArray::number(expiresAt);
    return QMessageAuthenticationCode::hash(text, key, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

/// Takes the same time wherever two signatures differ.
bool isSame(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return false;
    int difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference |= a.at(i) ^ b.at(i);
    return difference == 0;
}

QByteArray pathOf(const QByteArray &target)
{
    return target.left(target.indexOf('?'));
}

} // namespace

AddressSigner::AddressSigner(const Call &call)
    : m_origin("http://" + call.request.header("Host"))
    , m_account(call.session.accountId)
    , m_key(keyOf(call.store))
{
}

QByteArray AddressSigner::address(const QByteArray &path, qint64 expiresAt) const
{
    return m_origin + path + "?a=" + QByteArray::number(m_account) +
           "&e=" + QByteArray::number(expiresAt) +
           "&s=" + signatureOf(m_key, path, m_account, expiresAt);
}

QByteArray signedAddress(const Call &call, const QByteArray &path, qint64 expiresAt)
{
    return AddressSigner(call).address(path, expiresAt);
}

qint64 thumbnailExpiry(qint64 now)
{
    return ((now + thumbnailAddressMs + hourMs - 1) / hourMs) * hourMs;
}

qint64 accountOfSignedCall(const Call &call)
{
    constexpr qsizetype longestSignature = 64;
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 account = call.queryNumber("a", most, 0);
    const qint64 expiresAt = call.queryNumber("e", most, 0);
    const QByteArray given = call.queryTextOrEmpty("s", longestSignature).toLatin1();
    if (!isSame(given,
                signatureOf(keyOf(call.store), pathOf(call.request.target), account, expiresAt)))
        throw Problem(403, QByteArrayLiteral("bad-address"),
                      QStringLiteral("This address was not made by the service."));
    if (expiresAt != 0 && expiresAt < call.store.clock())
        throw Problem(403, QByteArrayLiteral("expired-address"),
                      QStringLiteral("This address has expired. Refresh what is shown."));
    return account;
}

} // namespace Zel::Service
