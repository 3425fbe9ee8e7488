// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/problem.h"

#include <QObject>
#include <QProcess>
#include <QStringList>

namespace Studio {

/// The service on this computer: `zel-service` as a child process over a workspace file, on a
/// loopback port of the system's choosing. It ends with Studio, also when Studio dies, and a fault
/// in it cannot take Studio along.
class EmbeddedService : public QObject
{
    Q_OBJECT

public:
    /// @param program the path of zel-service
    /// @param workspace the SQLite file; made when it does not exist
    EmbeddedService(const QString &program, const QString &workspace, QObject *parent = nullptr);
    ~EmbeddedService() override;

    /// Files or folders that are imported before the service starts.
    void setImports(const QStringList &paths) { m_imports = paths; }

    /// Starts in the background; `ready` or `failed` follows.
    void start();

    /// Brings a service that has ended back, on the same port when it is free; waits up to ten
    /// seconds. Throws when it does not come back. Nothing when it runs.
    void ensureRunning();

    /// "http://127.0.0.1:PORT" once the service runs, else empty.
    QString address() const { return m_address; }

    bool isRunning() const { return !m_address.isEmpty(); }

    /// Whether the service was started and is gone; looks at the process itself, so that it is true
    /// also before `ended`.
    bool hasEnded();

    /// The end of what the service logged, to tell why it ended.
    QString logTail() const { return QString::fromUtf8(m_log).trimmed(); }

    qint64 processId() const { return m_process.processId(); }

signals:
    void ready();
    void failed(const Studio::Problem &problem);
    /// The service ended although nobody asked it to.
    void ended();

private:
    void importNext();
    void serve();
    void readAnnouncement();
    void processFinished(int exitCode, QProcess::ExitStatus status);
    Problem failure(const QString &what, int exitCode) const;

    enum class Phase
    {
        Idle,
        Importing,
        Starting,
        Running,
        Stopping
    };

    QString m_program;
    QString m_workspace;
    QStringList m_imports;
    QProcess m_process;
    Phase m_phase = Phase::Idle;
    QString m_address;
    QByteArray m_output;
    QByteArray m_log;
    int m_port = 0;
};

} // namespace Studio
