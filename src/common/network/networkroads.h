// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"
#include "platform/core/export.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QUrl>

#include <map>
#include <optional>

namespace QXSC {

/// The ways to servers that a policy asks for: through a proxy or not, trusting a file of
/// authorities or not. Open connections are shared only by calls that take the same way and trust
/// the same authorities.
///
/// Use it in one thread, that of the parent.
class ZEL_EXPORT NetworkRoads
{
public:
    struct Road
    {
        QNetworkAccessManager *manager = nullptr; ///< a child of the parent
        /// What a request has to be given; nothing for Qt's usual settings.
        std::optional<QSslConfiguration> tls;
    };

    /// @param parent owns the managers
    explicit NetworkRoads(QObject *parent)
        : m_parent(parent)
    {
    }

    /// The way to an address; null when the file of certificate authorities cannot be used.
    const Road *to(const QUrl &url, const NetworkPolicy &policy);

private:
    QObject *m_parent;
    std::map<std::pair<bool, QString>, Road> m_roads; ///< by proxy and file of authorities
};

} // namespace QXSC
