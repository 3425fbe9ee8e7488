// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/balancer.h"
#include "tests/contract/serviceprocess.h"

#include <memory>
#include <vector>

namespace ZelTest {

/// The service as its clients see it: one process, or two replicas over one database behind a
/// balancer, by TLS. What is done to it is done to all its processes.
class ServiceUnderTest
{
public:
    /// With replicas where the tests encrypt.
    ServiceUnderTest();

    QStringList importPaths = ServiceProcess::sampleWorkspace();
    /// The database: empty for a SQLite file of its own, or a fresh one of `PostgresServer`.
    QString database;
    /// The folder of uploaded files.
    QString files;
    /// Where they lie; see `ServiceProcess`.
    QString blobs;

    /// Migrates, imports and serves; false when that fails: see `error`.
    bool start();
    /// Has those processes serve that do not, at the same address.
    bool startAgain();

    QString error() const { return m_error; }

    /// Where clients call it: the balancer's address when there is one.
    QString address() const;
    quint16 port() const;

    /// Whether all of its processes are running.
    bool isRunning() const;
    QList<qint64> processIds() const;

    /// See `ServiceProcess`; of several exit codes the worst.
    int stop();
    void kill();
    void terminate();
    int waitForEnd();
    /// One after the other.
    QByteArray log() const;
    int runCommand(const QStringList &commandLine, QByteArray *output = nullptr);

    /// Makes another process one more replica, that has an address of its own.
    void join(ServiceProcess &process) const;

private:
    std::vector<std::unique_ptr<ServiceProcess>> m_processes;
    std::unique_ptr<Balancer> m_balancer;
    QString m_error;
};

} // namespace ZelTest
