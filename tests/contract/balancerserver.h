// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

namespace ZelTest {

/// The side of `Balancer` that lives in its thread.
class BalancerServer : public QTcpServer
{
    Q_OBJECT

public:
    BalancerServer();

    QList<quint16> services;

private:
    void take(QTcpSocket *client, qsizetype attempts);
    void join(QTcpSocket *client, QTcpSocket *service);

    qsizetype m_next = 0;
};

} // namespace ZelTest
