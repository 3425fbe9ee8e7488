// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace ZelTest {

/// Whether a server on this machine has read all that a client sent it so far, as the system says
/// (/proc/net/tcp). The bytes must have left the client.
bool hasReadAll(quint16 serverPort, quint16 clientPort);

/// The most memory a process ever had in use, in mebibytes (VmHWM of /proc/PID/status); throws
/// `std::runtime_error` when there is no such process.
double peakMebibytes(qint64 processId);

/// Limits what a process, this one (0) or one that it started, may take of something (RLIMIT_FSIZE,
/// ...), or lifts its limit as far as the system lets it. Returns the former limit.
quint64 limitProcess(qint64 processId, int resource, quint64 most);

} // namespace ZelTest
