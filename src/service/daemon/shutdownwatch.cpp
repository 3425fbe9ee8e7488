// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/shutdownwatch.h"

#include "service/daemon/program.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <stdexcept>

#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Zel::Service {

namespace {

sigset_t stopSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

ShutdownWatch::ShutdownWatch(QObject *parent)
    : QObject(parent)
{
    const sigset_t set = stopSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    m_signals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_signals < 0)
        throw std::runtime_error("the stop signals cannot be watched");
    watch(m_signals, [this] { return takeSignal(); });
}

ShutdownWatch::~ShutdownWatch()
{
    restoreSignals();
    if (m_process >= 0)
        close(m_process);
}

void ShutdownWatch::restoreSignals()
{
    if (m_signals < 0)
        return;
    qDeleteAll(findChildren<QSocketNotifier *>());
    close(m_signals);
    m_signals = -1;
    sigset_t set = stopSignals();
    if (m_onHangUp)
        sigdelset(&set, SIGHUP);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void ShutdownWatch::watchStandardInput()
{
    watch(STDIN_FILENO, [] {
        char buffer[4096]; // someone may write to it; that means nothing
        return read(STDIN_FILENO, buffer, sizeof buffer) <= 0;
    });
}

void ShutdownWatch::watchProcess(qint64 pid)
{
    // A handle names this very process even if its number is given to another one later.
    m_process = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0U));
    if (m_process < 0)
        throw UsageError(QStringLiteral("there is no process %1 to watch.").arg(pid));
    watch(m_process, [] { return true; });
}

/// Takes a signal off the queue, else it would strike once it is let through again; false for one
/// that does not end the program.
bool ShutdownWatch::takeSignal()
{
    signalfd_siginfo signal{};
    const bool isHangUp = read(m_signals, &signal, sizeof signal) == sizeof signal &&
                          signal.ssi_signo == SIGHUP && m_onHangUp;
    if (isHangUp)
        m_onHangUp();
    return !isHangUp;
}

void ShutdownWatch::watch(int descriptor, const std::function<bool()> &isEnd)
{
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier, isEnd] {
        if (!isEnd())
            return;
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
}

} // namespace Zel::Service
