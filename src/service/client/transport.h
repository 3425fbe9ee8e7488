// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/network/networkpolicy.h"
#include "service/client/callreport.h"
#include "service/client/message.h"
#include "service/client/pieceroad.h"
#include "service/client/waitnotice.h"

#include <QThread>

#include <memory>

namespace QXSC {

class TransportWorker;

/// Carries calls to the service and waits for their answers.
///
/// The network runs in a thread of its own; the calling thread sleeps until the answer is there and
/// runs no event loop meanwhile, so no timer, posted event or input of the host is handled inside
/// a call. The limits of a call are kept by the waiting side, so they hold even where the network
/// stack itself is stuck.
///
/// Calls may nest (a wait observer may make another one). The transport may be closed, and its
/// owner destroyed, inside such a nested place: the calls still waiting end as `Closed`.
class Transport : public std::enable_shared_from_this<Transport>
{
public:
    static std::shared_ptr<Transport> create();
    ~Transport();

    Reply call(const Request &request, const NetworkPolicy &policy);
    /// Waits as a call does, without one. False when the transport was closed meanwhile.
    bool pause(std::chrono::milliseconds time);
    /// Gives up what is under way and ends the network's thread.
    void close();

    void setWaitObserver(WaitObserver *observer) { m_notice.setObserver(observer); }

    /// Told of every answer, on the thread of the call, before the call returns.
    void setCallObserver(const CallObserver &observer) { m_callObserver = observer; }

private:
    Transport();
    Q_DISABLE_COPY_MOVE(Transport)

    void start(const std::shared_ptr<Exchange> &exchange);
    void abort(const std::shared_ptr<Exchange> &exchange);
    void await(Exchange &exchange);

    QThread m_thread;
    TransportWorker *m_worker;           ///< lives in m_thread and is deleted there
    std::unique_ptr<PieceRoad> m_pieces; ///< until closed
    WaitNotice m_notice;
    CallObserver m_callObserver;
    bool m_closed = false;
};

} // namespace QXSC
