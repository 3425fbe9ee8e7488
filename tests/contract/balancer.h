// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QThread>

#include <memory>

namespace ZelTest {

class BalancerServer;

/// One loopback port in front of several services: each connection goes to the next of them that
/// takes it, byte for byte. Works in a thread of its own, so it goes on while a call waits.
class Balancer
{
public:
    Balancer();
    ~Balancer();
    Balancer(const Balancer &) = delete;
    Balancer &operator=(const Balancer &) = delete;

    /// Begins to listen, on the port it had before; false when that cannot be.
    bool open(const QList<quint16> &services);
    /// Takes no new connection; what is on its way on the others still gets there.
    void close();

    quint16 port() const { return m_port; }

private:
    QThread m_thread;
    BalancerServer *m_server; ///< lives and ends in the thread
    quint16 m_port = 0;
};

} // namespace ZelTest
