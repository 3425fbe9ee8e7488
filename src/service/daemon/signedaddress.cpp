// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/signedaddress.h"

#include "service/daemon/hostguard.h"
#include "service/daemon/problem.h"
#include "service/store/securebytes.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QUrl>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qint64 hourMs = 60LL * 60 * 1000;

QByteArray keyOf(Store &store)
{
    return store.keys.key(QStringLiteral("address"));
}

QByteArray signatureOf(const QByteArray &key, const QByteArray &text)
{
    return QMessageAuthenticationCode::hash(text, key, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QByteArray passingSignature(const QByteArray &key, const QByteArray &path, qint64 accountId,
                            qint64 expiresAt)
{
    return signatureOf(key, path + '?' + QByteArray::number(accountId) + '&' +
                                QByteArray::number(expiresAt));
}

/// Begins as no path does, so that none of the other kind can stand in for it.
QByteArray lastingSignature(const QByteArray &key, const QString &guid, qint64 accountId)
{
    return signatureOf(key, "asset " + QByteArray::number(accountId) + ' ' + guid.toUtf8());
}

constexpr qsizetype longestSignature = 64;

Problem foreignAddress()
{
    return Problem(403, QByteArrayLiteral("bad-address"),
                   QStringLiteral("This address was not made by the service."));
}

/// One part of a path. Dots alone would be taken for a folder.
QByteArray pathPart(const QString &name)
{
    const bool isFolder = name == QLatin1String(".") || name == QLatin1String("..");
    return name.isEmpty() || isFolder ? QByteArrayLiteral("file") : QUrl::toPercentEncoding(name);
}

} // namespace

AddressSigner::AddressSigner(const Call &call)
    : m_origin(originOf(call.request))
    , m_account(call.session.accountId)
    , m_key(keyOf(call.store))
{
}

QByteArray AddressSigner::address(const QByteArray &path, qint64 expiresAt) const
{
    return m_origin + path + "?a=" + QByteArray::number(m_account) +
           "&e=" + QByteArray::number(expiresAt) +
           "&s=" + passingSignature(m_key, path, m_account, expiresAt);
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
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 account = call.queryNumber("a", most, 0);
    const qint64 expiresAt = call.queryNumber("e", most, 0);
    const QByteArray given = call.queryTextOrEmpty("s", longestSignature).toLatin1();
    const QByteArray path = call.request.path();
    if (!isSameSecret(given, passingSignature(keyOf(call.store), path, account, expiresAt)))
        throw foreignAddress();
    if (expiresAt < call.store.clock())
        throw Problem(403, QByteArrayLiteral("expired-address"),
                      QStringLiteral("This address has expired. Refresh what is shown."));
    return account;
}

QByteArray assetAddress(const Call &call, const QString &guid, qsizetype position,
                        const QString &fileName)
{
    const qint64 account = call.session.accountId;
    const QByteArray place = position == 0 ? QByteArray() : QByteArray::number(position) + '/';
    // The account goes with the signature: assets are found by account and guid.
    return "/a/" + guid.toLatin1() + '/' + place + pathPart(fileName) +
           "?s=" + QByteArray::number(account) + '.' +
           lastingSignature(keyOf(call.store), guid, account);
}

qint64 accountOfAssetCall(const Call &call, const QString &guid)
{
    const QByteArray given = call.queryTextOrEmpty("s", longestSignature).toLatin1();
    const qsizetype dot = given.indexOf('.');
    bool ok = false;
    const qint64 account = given.left(dot).toLongLong(&ok);
    if (dot < 0 || !ok ||
        !isSameSecret(given.mid(dot + 1), lastingSignature(keyOf(call.store), guid, account)))
        throw foreignAddress();
    return account;
}

} // namespace Zel::Service
