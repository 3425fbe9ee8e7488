// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Zel::Service {

/// Refuses what a web page somewhere else has made a person's browser send: a request whose Host is
/// none of the service's own names (a name server can point any name here), or whose Origin is
/// another site's.
///
/// This machine's own names, with the port the request came in at, are always the service's.
class ZEL_EXPORT HostGuard
{
public:
    /// Further names of the service: "zel.example.org", "[2001:db8::1]:8443", "*.example.org".
    /// Without a port any will do, because what stands between may listen at another one. Throws
    /// `std::invalid_argument` for a text that is no such name.
    explicit HostGuard(const QStringList &names = {});

    /// Throws a `Problem` for such a request.
    void check(const HttpRequest &request) const;

private:
    struct Name
    {
        QString host;
        std::optional<int> port;
    };

    bool isOwn(const QByteArray &authority, const HttpRequest &request) const;
    bool isNamed(const QString &host, int port) const;

    QList<Name> m_names;
};

/// "https://zel.example.org": how the client of a request calls the service. One that names another
/// machine has come by TLS, if only to what stands before the service, because clients speak plain
/// HTTP with their own machine only.
ZEL_EXPORT QByteArray originOf(const HttpRequest &request);

} // namespace Zel::Service
