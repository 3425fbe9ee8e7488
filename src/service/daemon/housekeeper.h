// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace Zel {
class Store;
}

namespace Zel::Service {

/// Does some work again and again on a thread of its own, as long as it lives: after half the time
/// given at the least and one and a half times at the most, at random, so that daemons started
/// together do not do it together. For the first time after a sixtieth of that, so that a service
/// which runs for a short time each day gets to it. What the work throws goes to the log.
class ZEL_EXPORT Housekeeper
{
public:
    /// What is done; a stop is requested of it when this object goes, which waits for it.
    using Work = std::function<void(const std::stop_token &stop)>;

    Housekeeper(std::chrono::milliseconds every, Work work);
    Housekeeper(const Housekeeper &) = delete;
    Housekeeper &operator=(const Housekeeper &) = delete;

private:
    void run(const std::stop_token &stop);
    bool pause(std::chrono::milliseconds about, const std::stop_token &stop);

    std::chrono::milliseconds m_every;
    Work m_work;
    std::mutex m_mutex;
    std::condition_variable_any m_stopped;
    std::jthread m_thread; ///< last, so that all it uses is there
};

/// Forgets answers that were kept for their time, uploads that were not finished in time and what
/// has lain in the trash for longer than it has to. Leaves the trash to the next time when somebody
/// is storing files, and what is left of all to the next time when a stop is requested. Several
/// daemons may do it at the same time.
ZEL_EXPORT void tidyUp(Store &store, const std::stop_token &stop = {});

} // namespace Zel::Service
