// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/pieceroad.h"

#include "service/client/piecetransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <atomic>
#include <new>

namespace QXSC {

namespace {

/// Once in a process; nothing else here may come before it.
CURLM *newMulti()
{
    static const CURLcode begun = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM *multi = begun == CURLE_OK ? curl_multi_init() : nullptr;
    if (!multi)
        throw std::bad_alloc();
    return multi;
}

} // namespace

class PieceRoad::Loop
{
public:
    Loop()
        : m_multi(newMulti())
    {
    }

    ~Loop()
    {
        for (const auto &transfer : m_transfers)
            curl_multi_remove_handle(m_multi, transfer->handle());
        m_transfers.clear();
        curl_multi_cleanup(m_multi);
    }

    Q_DISABLE_COPY_MOVE(Loop)

    void add(const std::shared_ptr<Exchange> &exchange)
    {
        const std::lock_guard lock(m_mutex);
        m_added.push_back(exchange);
    }

    void wake() { curl_multi_wakeup(m_multi); }

    void stop()
    {
        m_stopping = true;
        wake();
    }

    void run()
    {
        // Far beyond anything that is not announced by a wake-up or a socket.
        constexpr int longestSleep = 1000;
        while (!m_stopping) {
            takeAdded();
            dropFinished();
            int running = 0;
            curl_multi_perform(m_multi, &running);
            if (!finishDone())
                curl_multi_poll(m_multi, nullptr, 0, longestSleep, nullptr);
        }
    }

private:
    void takeAdded()
    {
        std::vector<std::shared_ptr<Exchange>> added;
        {
            const std::lock_guard lock(m_mutex);
            added.swap(m_added);
        }
        for (const auto &exchange : added) {
            auto transfer = std::make_unique<PieceTransfer>(exchange, m_authorities);
            if (!transfer->isReady())
                continue;
            curl_multi_add_handle(m_multi, transfer->handle());
            m_transfers.push_back(std::move(transfer));
        }
    }

    void dropFinished()
    {
        const auto isOver = [this](const std::unique_ptr<PieceTransfer> &transfer) {
            if (!transfer->isFinished())
                return false;
            curl_multi_remove_handle(m_multi, transfer->handle());
            return true;
        };
        m_transfers.erase(std::remove_if(m_transfers.begin(), m_transfers.end(), isOver),
                          m_transfers.end());
    }

    bool finishDone()
    {
        bool any = false;
        int left = 0;
        while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            const CURLcode result = message->data.result;
            for (const auto &transfer : m_transfers) {
                if (transfer->handle() == message->easy_handle)
                    transfer->finish(result);
            }
            any = true;
        }
        return any;
    }

    CURLM *const m_multi; ///< keeps the open connections
    std::atomic_bool m_stopping = false;
    std::mutex m_mutex;
    std::vector<std::shared_ptr<Exchange>> m_added; ///< under the mutex
    std::vector<std::unique_ptr<PieceTransfer>> m_transfers;
    Authorities m_authorities;
};

PieceRoad::PieceRoad()
    : m_loop(std::make_unique<Loop>())
{
}

PieceRoad::~PieceRoad()
{
    m_loop->stop();
    if (m_thread.joinable())
        m_thread.join();
}

void PieceRoad::start(const std::shared_ptr<Exchange> &exchange)
{
    m_loop->add(exchange);
    if (m_thread.joinable())
        m_loop->wake();
    else
        m_thread = std::thread([loop = m_loop.get()] { loop->run(); });
}

void PieceRoad::wake()
{
    m_loop->wake();
}

} // namespace QXSC
