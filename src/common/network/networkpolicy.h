// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>

namespace QXSC {

/// How calls go over the network; one policy serves the service client and the pictures that are
/// fetched from the same service. A limit of a call of zero or less means "no limit".
struct NetworkPolicy
{
    /// The longest silence in a call: no connection made, no byte sent and none received.
    std::chrono::milliseconds inactivityLimit = std::chrono::seconds(30);
    /// The longest a call may take as a whole, however lively it is; all pages of a long list are
    /// one call.
    std::chrono::milliseconds callLimit = std::chrono::minutes(5);
    /// How long an upload waits, in all, for a connection that broke to come back, before it is
    /// given up: longer than a service takes to start again.
    std::chrono::milliseconds retryLimit = std::chrono::seconds(16);
    /// Whether calls go through a proxy: the one the host application set for itself, else the
    /// system's. A service on this machine is always called directly: plain http is allowed there
    /// because nothing leaves the machine.
    bool useSystemProxy = false;
    /// A PEM file of certificate authorities to trust besides the system's; empty for none.
    QString caFile;
    /// The longest answer taken, in bytes after decompression. Of a long list, each page is one.
    qint64 answerLimit = qint64(256) * 1024 * 1024;
    /// How many rows of a long list to ask for at once, from 1; fewer make each answer come sooner
    /// over a slow line. 0 leaves it to the service.
    qint64 pageRows = 0;
};

} // namespace QXSC
