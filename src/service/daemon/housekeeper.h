// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
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
    Housekeeper(std::chrono::milliseconds every, std::function<void()> work);
    /// Waits for work that is being done.
    ~Housekeeper();
    Housekeeper(const Housekeeper &) = delete;
    Housekeeper &operator=(const Housekeeper &) = delete;

private:
    void run();
    bool pause(std::chrono::milliseconds about);

    std::chrono::milliseconds m_every;
    std::function<void()> m_work;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ending = false;
    std::thread m_thread; ///< last, so that all it uses is there
};

/// Forgets answers that were kept for their time, uploads that were not finished in time and what
/// has lain in the trash for longer than it has to. Leaves the trash to the next time when somebody
/// is storing files. Several daemons may do it at the same time.
ZEL_EXPORT void tidyUp(Store &store);

} // namespace Zel::Service
