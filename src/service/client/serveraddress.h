// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QUrl>

namespace QXSC {

/// Where a service is: scheme, host and port, and nothing else.
///
/// A person may write "host", "host:port" or "http(s)://host[:port]", with or without a final
/// slash. Without a scheme https is meant, on this machine (localhost, 127.x, [::1]) http. Plain
/// http to another machine is refused, because passwords and tokens would travel readably.
class ZEL_EXPORT ServerAddress
{
public:
    /// Reads what a person wrote.
    /// @throws ServiceError of kind Invalid, whose description says what is wrong with the address.
    static ServerAddress parse(const QString &text);

    /// "https://host:port" for people; the port only when it is not the scheme's own.
    QString display() const;
    /// The address of a route.
    /// @param path percent-encoded, begins with "/"
    /// @param query percent-encoded, without "?"; empty for none
    QUrl url(const QByteArray &path, const QByteArray &query = QByteArray()) const;

    /// Whether calls to it never leave this machine.
    bool isLoopback() const;
    bool isEncrypted() const;

    bool operator==(const ServerAddress &other) const { return m_base == other.m_base; }

private:
    explicit ServerAddress(const QUrl &base)
        : m_base(base)
    {
    }

    QUrl m_base;
};

} // namespace QXSC
