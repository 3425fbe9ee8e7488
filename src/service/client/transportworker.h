// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkroads.h"
#include "service/client/exchange.h"

#include <memory>

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
    static QNetworkReply *send(const NetworkRoads::Road &road, const Request &call);

    NetworkRoads m_roads;
};

} // namespace QXSC
