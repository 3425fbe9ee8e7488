// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/housekeeper.h"

#include "service/daemon/logline.h"
#include "service/store/store.h"

#include <QRandomGenerator>

namespace Zel::Service {

Housekeeper::Housekeeper(std::chrono::milliseconds every, std::function<void()> work)
    : m_every(every)
    , m_work(std::move(work))
    , m_thread([this] { run(); })
{
}

Housekeeper::~Housekeeper()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

/// False when there is nothing more to be done.
bool Housekeeper::pause(std::chrono::milliseconds about)
{
    const double part = 0.5 + QRandomGenerator::global()->generateDouble();
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, about * part, [this] { return m_ending; });
}

void Housekeeper::run()
{
    constexpr int firstPart = 60;
    for (auto about = m_every / firstPart; pause(about); about = m_every) {
        try {
            m_work();
        } catch (const std::exception &error) {
            logLine("error", {{"event", QStringLiteral("housekeeping failed")},
                              {"cause", QString::fromUtf8(error.what())}});
        }
    }
}

void tidyUp(Store &store)
{
    while (store.repeats.forgetExpired() > 0) {
    }
    store.uploads.forgetExpired();
    const auto purged = store.assets.purgeUnlessBusy(store.clock() - Assets::trashTimeMs);
    if (purged.value_or(0) > 0)
        logLine("info",
                {{"event", QStringLiteral("trash purged")}, {"assets", QString::number(*purged)}});
}

} // namespace Zel::Service
