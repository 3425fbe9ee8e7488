// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Zel::Service {

/// A fixed number of threads that work off a queue of bounded length. Jobs may block; they must not
/// throw.
class ZEL_EXPORT WorkerPool
{
public:
    WorkerPool(std::size_t threads, std::size_t longestQueue);
    ~WorkerPool();
    WorkerPool(const WorkerPool &) = delete;
    WorkerPool &operator=(const WorkerPool &) = delete;

    /// Queues a job; false when the queue is full or the pool has stopped.
    bool post(std::function<void()> job);

    /// Queues a job even behind a full queue: the end of something that was begun. When the pool
    /// has stopped, it is done here.
    void postAnyway(std::function<void()> job);

    /// How many jobs wait for a thread.
    std::size_t waiting() const;

    /// Takes no further job, works off the queue and joins the threads.
    void stop();

private:
    bool enqueue(std::function<void()> &job, std::size_t longestQueue);
    void work();

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_queue;
    std::vector<std::thread> m_threads;
    std::size_t m_longestQueue;
    bool m_stopping = false;
};

} // namespace Zel::Service
