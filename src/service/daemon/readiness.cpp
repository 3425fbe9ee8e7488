// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/readiness.h"

namespace Zel::Service {

Readiness::Readiness(Look look, std::chrono::milliseconds limit)
    : m_look(std::move(look))
    , m_limit(limit)
{
}

Readiness::~Readiness()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

QString Readiness::missing()
{
    std::unique_lock lock(m_mutex);
    if (!m_thread.joinable())
        m_thread = std::thread([this] { work(); });
    if (!m_looking) {
        m_looking = true;
        m_begun = std::chrono::steady_clock::now();
        m_changed.notify_all();
    }
    const quint64 before = m_looks;
    const bool inTime = m_changed.wait_until(lock, m_begun + m_limit,
                                             [&] { return m_looks != before || m_draining; });
    if (m_draining)
        return QStringLiteral("The service is about to stop.");
    return inTime ? m_missing : QStringLiteral("What the service needs does not answer in time.");
}

void Readiness::beginDraining()
{
    {
        const std::lock_guard lock(m_mutex);
        m_draining = true;
    }
    m_changed.notify_all();
}

void Readiness::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_looking || m_ending; });
        if (m_ending)
            return;
        lock.unlock();
        const QString found = m_look();
        lock.lock();
        m_missing = found;
        m_looking = false;
        ++m_looks;
        m_changed.notify_all();
    }
}

} // namespace Zel::Service
