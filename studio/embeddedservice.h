// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/waitobserver.h"
#include "studio/problem.h"

#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include <chrono>

namespace Studio {

/// The service on this computer: `zel-service` as a child process over a workspace file, on a
/// loopback port of the system's choosing. It ends with Studio, also when Studio dies, and a fault
/// in it cannot take Studio along.
class EmbeddedService : public QObject
{
    Q_OBJECT

public:
    /// @param program the path of zel-service
    /// @param workspace the SQLite file; it and its folder are made when they do not exist
    EmbeddedService(const QString &program, const QString &workspace, QObject *parent = nullptr);
    ~EmbeddedService() override;

    /// Files or folders that are imported before the service starts.
    void setImports(const QStringList &paths) { m_imports = paths; }

    /// How long the service may take until it answers; default 30 seconds.
    void setStartLimit(std::chrono::milliseconds limit) { m_startLimit.setInterval(limit); }

    /// Starts in the background; `ready` or `failed` follows. Nothing when it runs or is starting.
    void start();

    /// Brings a service that has ended back, on the same port when it is free, and waits for it.
    /// Returns whether it runs; when not, `failed` has told why. `observer` (may be null) is told
    /// about the waiting, as during a service call no event is handled.
    bool ensureRunning(QXSC::WaitObserver *observer = nullptr);

    /// "http://127.0.0.1:PORT" once the service runs, else empty.
    QString address() const { return m_address; }

    bool isRunning() const { return m_phase == Phase::Running; }

    /// Whether the service ran and is gone; looks at the process itself, so that it is true also
    /// before `ended`.
    bool hasEnded();

    /// The end of what the service logged, to tell why it ended.
    QString logTail() const { return QString::fromUtf8(m_log).trimmed(); }

    /// The number of the process; 0 when there is none.
    qint64 processId() const { return m_process.processId(); }

signals:
    void ready();
    void failed(const Studio::Problem &problem);
    /// The service ended although nobody asked it to.
    void ended();

private:
    enum class Phase
    {
        Idle,
        Importing,
        Starting,
        Running
    };

    void next();
    void run(Phase phase, const QStringList &arguments);
    void readAnnouncement();
    void readLog();
    void finished(int code, QProcess::ExitStatus status);
    void failedToStart();
    void fail(const Problem &problem);
    void giveUp();
    Problem startProblem(Phase phase, int exitCode) const;

    QString m_program;
    QString m_workspace;
    QStringList m_imports;
    QProcess m_process;
    QTimer m_startLimit;
    Phase m_phase = Phase::Idle;
    bool m_hasRun = false;
    bool m_isTooLate = false;
    QString m_address;
    QByteArray m_output;
    QByteArray m_log;
    int m_port = 0;
};

} // namespace Studio
