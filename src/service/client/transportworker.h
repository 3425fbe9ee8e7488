// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <map>
#include <memory>
#include <optional>

namespace QXSC {

/// The side of the transport that does the network's work, in a thread with an event loop. It never
/// waits for the calling thread.
class TransportWorker : public QObject
{
    Q_OBJECT

public:
    TransportWorker();
    ~TransportWorker() override;

    void start(const std::shared_ptr<Exchange> &exchange);
    void abort(const std::shared_ptr<Exchange> &exchange);

private:
    /// Open connections are shared only by calls that trust the same authorities and take the same
    /// way.
    struct Road
    {
        QNetworkAccessManager *manager = nullptr; ///< a child of the worker
        std::optional<QSslConfiguration> tls;
    };

    /// Null when the file of certificate authorities cannot be used.
    const Road *road(const Request &call, const NetworkPolicy &policy);
    static QNetworkReply *send(const Road &road, const Request &call);

    std::map<std::pair<bool, QString>, Road> m_roads; ///< by proxy and file of authorities
};

} // namespace QXSC
