// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"

#include <QObject>

#include <memory>

namespace QXSC {

/// Reads one network reply into its exchange, as far as the answer limit allows. Lives in the
/// worker thread as a child of the reply, and deletes the reply when it is finished.
class ReplyReader : public QObject
{
    Q_OBJECT

public:
    ReplyReader(QNetworkReply *reply, const std::shared_ptr<Exchange> &exchange);
    ~ReplyReader() override;

    bool reads(const std::shared_ptr<Exchange> &exchange) const { return m_exchange == exchange; }

    void abort();

private:
    void readHead();
    void readBody();
    void refuseLength();
    void finish();

    QNetworkReply *m_reply;
    std::shared_ptr<Exchange> m_exchange;
    QByteArray m_body;
    QString m_tlsText;
    bool m_isConnected = false; ///< some of the request has left
};

} // namespace QXSC
