// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace Zel::Service {

/// Whether the service can do its work now. It looks on a thread of its own, so that whoever asks
/// is answered within a limit even when what is looked at hangs.
class ZEL_EXPORT Readiness
{
public:
    /// Looks; a sentence about what is missing, empty when nothing is. Must not throw.
    using Look = std::function<QString()>;

    explicit Readiness(Look look, std::chrono::milliseconds limit = std::chrono::seconds(2));
    /// Waits for the look that is under way.
    ~Readiness();
    Readiness(const Readiness &) = delete;
    Readiness &operator=(const Readiness &) = delete;

    /// What is missing; empty when the service is ready. Those who ask while a look is under way
    /// share it.
    QString missing();

    /// From now on the service is about to stop, and never ready again.
    void beginDraining();

private:
    void work();

    const Look m_look;
    const std::chrono::milliseconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_looking = false;
    bool m_draining = false;
    bool m_ending = false;
    std::chrono::steady_clock::time_point m_begun;
    quint64 m_looks = 0; ///< that have ended
    QString m_missing;
    std::thread m_thread; ///< begun with the first question
};

} // namespace Zel::Service
