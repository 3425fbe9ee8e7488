// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/testauthority.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace ZelTest {

/// The real `zel-service`, run as a child process on a free loopback port over a fresh workspace,
/// with the least hashing cost. It ends with this object, and with this process even when that
/// crashes.
class ServiceProcess
{
public:
    ServiceProcess() = default;
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess &) = delete;
    ServiceProcess &operator=(const ServiceProcess &) = delete;

    /// What is taken in before it serves: folders and files. The sample workspace unless changed.
    QStringList importPaths = sampleWorkspace();
    /// The database: empty for a SQLite file of its own, or a fresh one of `PostgresServer`.
    QString database;
    /// The folder of uploaded files; empty for one of its own.
    QString files;
    /// Where the bytes of files are kept, "files" or "database"; empty for what is usual.
    QString blobs;
    /// Further arguments of `serve`.
    QStringList arguments;
    /// The certificate and key it encrypts with; plain HTTP when empty.
    TestAuthority::Files tls;
    /// Where its standard error goes: empty for a file of its own.
    QString logPath;

    /// The folder of the sample workspace that comes with the sources.
    static QString sampleFolder();
    /// Its files but for the deployments, whose audience takes as long as all the rest.
    static QStringList sampleWorkspace();

    /// Migrates, imports and serves; false when that fails: see `error`.
    bool start();
    /// Serves what is in the database already, on the same port when there was one.
    bool startAgain();

    QString error() const { return m_error; }

    /// Where it answers: "http://127.0.0.1:PORT", or with https:// when it encrypts.
    QString address() const { return m_scheme + QStringLiteral("127.0.0.1:%1").arg(m_port); }

    quint16 port() const { return m_port; }

    qint64 processId() const { return m_process.processId(); }

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /// Asks it to stop (SIGTERM) and waits; returns its exit code, -1 when it did not end in order.
    int stop();
    /// Ends it at once (SIGKILL).
    void kill();
    /// Asks it to stop and does not wait.
    void terminate();
    /// Has it read its certificate again (SIGHUP).
    void hangUp();
    /// Waits until it has ended; returns its exit code, -1 when it did not end in order.
    int waitForEnd(int milliseconds = 30'000);

    /// What it has written to standard error so far.
    QByteArray log() const;

    /// Runs one command of `zel-service` on this database to its end; returns the exit code. What
    /// it wrote, both channels, is left in `output`.
    int runCommand(const QStringList &commandLine, QByteArray *output = nullptr);

private:
    QProcessEnvironment environment();
    QStringList serveArguments() const;
    bool hasFolder();
    bool prepareDatabase();
    bool fail(const QString &why);

    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_scheme = QStringLiteral("http://");
    quint16 m_port = 0;
    QString m_error;
};

} // namespace ZelTest
