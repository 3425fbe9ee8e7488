// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <memory>

namespace QXSC {

class ProxyChoice;

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
    /// Reads the file of certificate authorities when it is another one than the last.
    bool trust(const QString &caFile);
    QNetworkReply *send(const Request &request, const NetworkPolicy &policy);

    std::unique_ptr<QNetworkAccessManager> m_manager; ///< made in the thread it is used in
    ProxyChoice *m_proxies = nullptr;                 ///< owned by the manager
    QSslConfiguration m_tls;
    QString m_caFile;
};

} // namespace QXSC
