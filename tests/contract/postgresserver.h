// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace ZelTest {

/// A PostgreSQL 15 server of the test's own: in a temporary folder, on a free loopback port, as a
/// user that is not root, without waiting for the disk. Its first files are those that an earlier
/// test in this build folder has left for others, and else made anew. It ends with this object, and
/// with this process even when that crashes.
class PostgresServer
{
public:
    PostgresServer() = default;
    ~PostgresServer();
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;

    /// Starts the server; false when that cannot be done (a tool is missing, ...): see `error`. A
    /// test fails then; it is never skipped.
    bool start();

    QString error() const { return m_error; }

    /// Makes an empty database, or a copy of one that nobody is connected to, and returns its
    /// address for `--database`; empty on failure.
    QString newDatabase(const QString &copyOf = QString());

    /// Runs one statement on the server's own database, as its owner. Returns the first value of
    /// the first row as text; see `error` when it is null.
    QString run(const QString &sql);

    /// Stops the server as a crash would, or in order.
    void stop(bool crash = false);
    /// Starts the stopped server again on the same port, with the same data.
    bool startAgain();

    qint64 processId() const { return m_process.processId(); }

private:
    bool initialize();
    bool makeCluster(const QString &passwordFile);
    bool takeKept();
    void keep();
    bool launch();
    bool takeFreePort();
    bool fail(const QString &why);

    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_password;
    quint16 m_port = 0;
    int m_databases = 0;
    QString m_error;
};

} // namespace ZelTest
