// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/workerpool.h"

#include <limits>

namespace Zel::Service {

WorkerPool::WorkerPool(std::size_t threads, std::size_t longestQueue)
    : m_longestQueue(longestQueue)
{
    m_threads.reserve(threads);
    for (std::size_t i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    stop();
}

bool WorkerPool::post(std::function<void()> job)
{
    return enqueue(job, m_longestQueue);
}

void WorkerPool::postAnyway(std::function<void()> job)
{
    if (!enqueue(job, std::numeric_limits<std::size_t>::max()))
        job();
}

/// Takes the job over unless it returns false.
bool WorkerPool::enqueue(std::function<void()> &job, std::size_t longestQueue)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_stopping || m_queue.size() >= longestQueue)
            return false;
        m_queue.push_back(std::move(job));
    }
    m_changed.notify_one();
    return true;
}

std::size_t WorkerPool::waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_queue.size();
}

void WorkerPool::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
    m_threads.clear();
}

void WorkerPool::work()
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_stopping || !m_queue.empty(); });
            if (m_queue.empty())
                return;
            job = std::move(m_queue.front());
            m_queue.pop_front();
        }
        job();
    }
}

} // namespace Zel::Service
