// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QMutex>
#include <QThread>

#include <atomic>
#include <memory>
#include <vector>

namespace ZelTest {

/// An HTTP proxy that opens tunnels, all of them to one port of this machine whatever the host they
/// are asked for, in threads of its own.
class TunnelProxy
{
public:
    /// @param mostTunnels how many are opened; later ones are refused with 403
    explicit TunnelProxy(quint16 target, int mostTunnels = 1000);
    ~TunnelProxy();
    Q_DISABLE_COPY_MOVE(TunnelProxy)

    quint16 port() const { return m_port; }

    /// The heads of the requests for tunnels.
    QByteArrayList heads() const;

private:
    void accept();
    void serve(int client);
    bool readHead(int client, QByteArray &head) const;
    void relay(int client, int server) const;

    const quint16 m_target;
    const int m_mostTunnels;
    int m_listener = -1;
    quint16 m_port = 0;
    std::atomic_bool m_stopping = false;
    mutable QMutex m_mutex;
    QByteArrayList m_heads;
    std::vector<std::unique_ptr<QThread>> m_threads; ///< one for each connection
    std::unique_ptr<QThread> m_acceptor;
};

} // namespace ZelTest
