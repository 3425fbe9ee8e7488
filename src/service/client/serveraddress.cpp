// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/serveraddress.h"

#include "common/contract/serviceerror.h"
#include "common/network/loopback.h"

#include <QCoreApplication>
#include <QHostAddress>

namespace QXSC {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(QXSC::ServerAddress)
};

/// What a person wrote, fit to be shown again: short, and without a password they may have put in.
QString quoted(const QString &written)
{
    return written.mid(written.lastIndexOf(QLatin1Char('@')) + 1).left(200);
}

[[noreturn]] void refuse(const QString &sentence)
{
    throw ServiceError(ServiceError::Kind::Invalid, sentence);
}

[[noreturn]] void refuseForm(const QString &text)
{
    refuse(
        Texts::tr("\"%1\" is not a server address. Write the server's name, with the port where it "
                  "has one of its own, for example server.example.org:8443.")
            .arg(quoted(text)));
}

/// A bare IPv6 address gets its brackets: its colons would read as a port.
QString bracketed(const QString &text)
{
    const bool isV6 = text.count(QLatin1Char(':')) > 1 && !text.startsWith(QLatin1Char('[')) &&
                      QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
    return isV6 ? QLatin1Char('[') + text + QLatin1Char(']') : text;
}

/// QUrl takes "host:" for a host without a port; a person who wrote it forgot something.
bool endsInBareColon(const QString &text)
{
    return text.endsWith(QLatin1Char(':')) || text.endsWith(QLatin1String(":/"));
}

bool isPlainBase(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() && url.port() != 0 && url.userInfo().isEmpty() &&
           (url.path().isEmpty() || url.path() == QLatin1String("/")) && !url.hasQuery() &&
           !url.hasFragment();
}

} // namespace

ServerAddress ServerAddress::parse(const QString &text)
{
    const QString written = text.trimmed();
    const qsizetype schemeEnd = written.indexOf(QLatin1String("://"));
    const QString scheme = written.left(qMax<qsizetype>(schemeEnd, 0)).toLower();
    const QString rest = bracketed(schemeEnd < 0 ? written : written.mid(schemeEnd + 3));
    if (schemeEnd >= 0 && scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        refuseForm(written);

    QUrl url(QLatin1String("https://") + rest, QUrl::StrictMode);
    if (!isPlainBase(url) || endsInBareColon(rest))
        refuseForm(written);

    const bool loopback = isLoopbackHost(url.host());
    if (scheme == QLatin1String("http") && !loopback)
        refuse(
            Texts::tr("The address %1 is not encrypted, so your password could be read on the way. "
                      "Use https:// instead.")
                .arg(quoted(written)));
    const bool plain = scheme.isEmpty() ? loopback : scheme == QLatin1String("http");
    url.setScheme(plain ? QStringLiteral("http") : QStringLiteral("https"));
    url.setPath(QString());
    if (url.port() == (plain ? 80 : 443))
        url.setPort(-1);
    return ServerAddress(url);
}

QString ServerAddress::display() const
{
    return m_base.toDisplayString();
}

QUrl ServerAddress::url(const QByteArray &path, const QByteArray &query) const
{
    QByteArray encoded = m_base.toEncoded() + path;
    if (!query.isEmpty())
        encoded += '?' + query;
    return QUrl::fromEncoded(encoded, QUrl::StrictMode);
}

bool ServerAddress::isLoopback() const
{
    return isLoopbackHost(m_base.host());
}

bool ServerAddress::isEncrypted() const
{
    return m_base.scheme() == QLatin1String("https");
}

} // namespace QXSC
