// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QThread>

namespace ZelTest {

class ServiceProxyServer;

/// One loopback address in front of services, where a test decides what becomes of a call on its
/// way and which service gets it. By TLS it ends the encryption of both sides. Works in a thread of
/// its own, so it goes on while a call waits.
class ServiceProxy
{
public:
    enum class Fate
    {
        PassOn,        ///< there and back
        LoseRequest,   ///< the connection ends before the service hears of the call
        LoseAnswer,    ///< the service does what it is asked to, then the connection ends
        LoseNextAnswer ///< the same once; then calls are passed on
    };

    /// Begins to listen; throws `std::runtime_error` when it cannot.
    explicit ServiceProxy(quint16 servicePort);
    ~ServiceProxy();
    ServiceProxy(const ServiceProxy &) = delete;
    ServiceProxy &operator=(const ServiceProxy &) = delete;

    QString address() const;

    /// Calls go to another service from now on; open connections end.
    void forwardTo(quint16 servicePort);

    /// What becomes of the calls from now on.
    void setFate(Fate fate);

    /// How many requests came, those that were lost or sent again included.
    int requests() const;

private:
    void endThread();

    QThread m_thread;
    ServiceProxyServer *m_server; ///< lives and ends in the thread
    quint16 m_port = 0;
};

} // namespace ZelTest
