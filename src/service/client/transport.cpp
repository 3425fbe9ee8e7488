// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/transport.h"

#include "service/client/transportworker.h"

#include <algorithm>
#include <thread>

namespace QXSC {

std::shared_ptr<Transport> Transport::create()
{
    return std::shared_ptr<Transport>(new Transport);
}

Transport::Transport()
    : m_worker(new TransportWorker)
    , m_pieces(std::make_unique<PieceRoad>())
{
    m_thread.setObjectName(QStringLiteral("ServiceClient"));
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

Transport::~Transport()
{
    close();
}

Reply Transport::call(const Request &request, const NetworkPolicy &policy)
{
    // The owner may go away while an observer is told.
    const std::shared_ptr<Transport> self = shared_from_this();
    if (m_closed)
        return Reply();
    const auto exchange = std::make_shared<Exchange>(request, policy);
    start(exchange);
    await(*exchange);
    if (m_closed)
        return Reply();
    Reply reply = exchange->takeReply();
    if (reply.ending == Reply::Ending::Silent || reply.ending == Reply::Ending::Overdue)
        abort(exchange);
    if (reply.ending == Reply::Ending::Answered && m_callObserver) {
        // A copy: it may set another one, or end this client.
        const CallObserver observer = m_callObserver;
        observer(reportOf(request, reply));
        if (m_closed)
            return Reply();
    }
    return reply;
}

void Transport::start(const std::shared_ptr<Exchange> &exchange)
{
    if (exchange->request().piece) {
        m_pieces->start(exchange);
        return;
    }
    TransportWorker *worker = m_worker;
    QMetaObject::invokeMethod(worker, [worker, exchange] { worker->start(exchange); });
}

void Transport::abort(const std::shared_ptr<Exchange> &exchange)
{
    if (exchange->request().piece) {
        m_pieces->wake();
        return;
    }
    TransportWorker *worker = m_worker;
    QMetaObject::invokeMethod(worker, [worker, exchange] { worker->abort(exchange); });
}

void Transport::await(Exchange &exchange)
{
    const WaitNotice::Scope scope(m_notice);
    while (!m_closed && !exchange.wait(m_notice.nextTick())) {
        exchange.finishWhenDue(Exchange::Clock::now());
        m_notice.tick();
    }
}

bool Transport::pause(std::chrono::milliseconds time)
{
    const std::shared_ptr<Transport> self = shared_from_this();
    const WaitNotice::Scope scope(m_notice);
    const Exchange::Clock::time_point end = Exchange::Clock::now() + time;
    while (!m_closed && Exchange::Clock::now() < end) {
        std::this_thread::sleep_until(std::min(end, m_notice.nextTick()));
        m_notice.tick();
    }
    return !m_closed;
}

void Transport::close()
{
    if (m_closed)
        return;
    m_closed = true;
    m_notice.setObserver(nullptr);
    m_pieces.reset();
    m_thread.quit();
    m_thread.wait();
}

} // namespace QXSC
