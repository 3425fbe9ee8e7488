// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/housekeeper.h"

#include "service/daemon/logline.h"
#include "service/store/store.h"

#include <QRandomGenerator>

namespace Zel::Service {

Housekeeper::Housekeeper(std::chrono::milliseconds every, Work work)
    : m_every(every)
    , m_work(std::move(work))
    , m_thread([this](const std::stop_token &stop) { run(stop); })
{
}

/// False when there is nothing more to be done.
bool Housekeeper::pause(std::chrono::milliseconds about, const std::stop_token &stop)
{
    const double part = 0.5 + QRandomGenerator::global()->generateDouble();
    std::unique_lock lock(m_mutex);
    m_stopped.wait_for(lock, stop, about * part, [] { return false; });
    return !stop.stop_requested();
}

void Housekeeper::run(const std::stop_token &stop)
{
    constexpr int firstPart = 60;
    for (auto about = m_every / firstPart; pause(about, stop); about = m_every) {
        try {
            m_work(stop);
        } catch (const std::exception &error) {
            logLine("error", {{"event", QStringLiteral("housekeeping failed")},
                              {"cause", QString::fromUtf8(error.what())}});
        }
    }
}

namespace {

void purgeTrash(Store &store, const std::stop_token &stop)
{
    const qint64 deletedBefore = store.clock() - Assets::trashTimeMs;
    qint64 all = 0;
    for (qint64 gone = Assets::purgedAtOnce; gone == Assets::purgedAtOnce && !stop.stop_requested();
         all += gone)
        gone = store.assets.purgeUnlessBusy(deletedBefore).value_or(0);
    if (all > 0)
        logLine("info",
                {{"event", QStringLiteral("trash purged")}, {"assets", QString::number(all)}});
}

} // namespace

void tidyUp(Store &store, const std::stop_token &stop)
{
    while (!stop.stop_requested() && store.repeats.forgetExpired() > 0) {
    }
    if (!stop.stop_requested())
        store.uploads.forgetExpired();
    purgeTrash(store, stop);
}

} // namespace Zel::Service
