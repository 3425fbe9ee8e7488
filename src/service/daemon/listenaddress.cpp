// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/listenaddress.h"

#include "service/daemon/program.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QUrl>

#include <stdexcept>

namespace Zel::Service {

namespace {

QHostAddress addressOf(const QString &name)
{
    const QHostInfo found = QHostInfo::fromName(name);
    if (found.addresses().isEmpty())
        throw std::runtime_error(qPrintable(
            QStringLiteral("There is no address of the name \"%1\" to listen on.").arg(name)));
    return found.addresses().first();
}

} // namespace

ListenAddress ListenAddress::parse(const QString &text, bool encrypted)
{
    const QUrl url(QLatin1String("http://") + text, QUrl::StrictMode);
    const bool plain = url.isValid() && url.path().isEmpty() && !url.hasQuery() &&
                       !url.hasFragment() && url.userInfo().isEmpty() && url.port() >= 0 &&
                       !url.host().isEmpty();
    QHostAddress host(url.host() == QLatin1String("localhost") ? QStringLiteral("127.0.0.1")
                                                               : url.host());
    if (!plain || (host.isNull() && !encrypted))
        throw UsageError(QStringLiteral("--listen takes an address like 127.0.0.1:8080."));
    if (host.isNull())
        host = addressOf(url.host());
    if (!encrypted && !host.isLoopback())
        throw UsageError(QStringLiteral(
            "without TLS only this machine's own addresses (127.0.0.1 or [::1]) can be listened "
            "on. Other machines need --certificate and --key."));
    return {host.toString(), static_cast<quint16>(url.port()), encrypted};
}

QString ListenAddress::shown(quint16 actualPort) const
{
    const bool v6 = host.contains(QLatin1Char(':'));
    return QStringLiteral("%1://%2:%3")
        .arg(encrypted ? QStringLiteral("https") : QStringLiteral("http"),
             v6 ? QLatin1Char('[') + host + QLatin1Char(']') : host)
        .arg(actualPort);
}

} // namespace Zel::Service
