// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace Zel::Service {

/// Ends the program's event loop when it is told to stop: by SIGTERM or SIGINT, by SIGHUP unless
/// that means something else, when the process that started it is gone, or when standard input
/// ends.
class ShutdownWatch : public QObject
{
public:
    /// Takes the stop signals over. Must be called before any other thread is started, so that all
    /// of them leave these signals alone.
    explicit ShutdownWatch(QObject *parent = nullptr);
    ~ShutdownWatch() override;

    /// Stops when standard input ends: the parent holds the other end, so this works however it
    /// dies.
    void watchStandardInput();
    /// Stops when that process ends; throws `UsageError` when there is none.
    void watchProcess(qint64 pid);

    /// What SIGHUP does instead of ending the program.
    void onHangUp(const std::function<void()> &action) { m_onHangUp = action; }

    /// From now on a further signal ends the program at once. Not a SIGHUP that does something
    /// else: what it would do comes too late, but is no reason to drop calls.
    void restoreSignals();

private:
    void watch(int descriptor, const std::function<bool()> &isEnd);
    bool takeSignal();

    int m_signals = -1;
    int m_process = -1;
    std::function<void()> m_onHangUp;
};

} // namespace Zel::Service
