// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/ports.h"

#include <QRandomGenerator>
#include <QTcpServer>

namespace ZelTest {

quint16 freePort()
{
    constexpr int first = 20'000;
    constexpr int end = 32'000;
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto port = quint16(QRandomGenerator::system()->bounded(first, end));
        QTcpServer server;
        if (server.listen(QHostAddress::LocalHost, port))
            return port;
    }
    return 0;
}

} // namespace ZelTest
