// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/exchange.h"

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace QXSC {

/// Carries the pieces of uploads, in a thread of its own: QNetworkAccessManager hands a body to its
/// socket 16 KiB at a time with a change of threads for each, which costs large files several times
/// what it takes to send them. It follows the same policy, and its replies read the same.
///
/// Nothing here waits for the calling thread. An exchange that was finished by somebody else is
/// dropped, its connection with it.
class PieceRoad
{
public:
    PieceRoad();
    /// Gives up what is under way.
    ~PieceRoad();

    void start(const std::shared_ptr<Exchange> &exchange);
    /// Looks now for exchanges that are finished by somebody else.
    void wake();

private:
    Q_DISABLE_COPY_MOVE(PieceRoad)

    class Loop;

    const std::unique_ptr<Loop> m_loop;
    std::thread m_thread; ///< begun by the first piece
};

} // namespace QXSC
