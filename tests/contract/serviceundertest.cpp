// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/serviceundertest.h"

#include "tests/contract/contracttls.h"

#include <algorithm>

namespace ZelTest {

ServiceUnderTest::ServiceUnderTest()
{
    m_processes.push_back(std::make_unique<ServiceProcess>());
    if (!ContractTls::get())
        return;
    m_processes.push_back(std::make_unique<ServiceProcess>());
    m_balancer = std::make_unique<Balancer>();
}

void ServiceUnderTest::join(ServiceProcess &process) const
{
    process.database = database;
    process.blobs = blobs;
    if (blobs != QLatin1String("database"))
        process.files = files;
    if (const ContractTls *tls = ContractTls::get()) {
        process.tls = tls->files();
        // Clients see the port of what stands between.
        process.arguments = QStringList{QStringLiteral("--host"), QStringLiteral("127.0.0.1"),
                                        QStringLiteral("--host"), QStringLiteral("localhost")};
    }
}

bool ServiceUnderTest::start()
{
    ServiceProcess &first = *m_processes.front();
    join(first);
    first.importPaths = importPaths;
    if (!first.start()) {
        m_error = first.error();
        return false;
    }
    database = first.database;
    files = first.files;
    for (const auto &process : m_processes)
        join(*process);
    return startAgain();
}

bool ServiceUnderTest::startAgain()
{
    QList<quint16> ports;
    for (const auto &process : m_processes) {
        if (!process->isRunning() && !process->startAgain()) {
            m_error = process->error();
            return false;
        }
        ports << process->port();
    }
    if (m_balancer && !m_balancer->open(ports)) {
        m_error = QStringLiteral("the balancer cannot listen");
        return false;
    }
    return true;
}

QString ServiceUnderTest::address() const
{
    return m_balancer ? QStringLiteral("https://127.0.0.1:%1").arg(m_balancer->port())
                      : m_processes.front()->address();
}

quint16 ServiceUnderTest::port() const
{
    return m_balancer ? m_balancer->port() : m_processes.front()->port();
}

bool ServiceUnderTest::isRunning() const
{
    return std::all_of(m_processes.begin(), m_processes.end(),
                       [](const auto &process) { return process->isRunning(); });
}

QList<qint64> ServiceUnderTest::processIds() const
{
    QList<qint64> ids;
    for (const auto &process : m_processes)
        ids << process->processId();
    return ids;
}

int ServiceUnderTest::stop()
{
    terminate();
    return waitForEnd();
}

void ServiceUnderTest::kill()
{
    for (const auto &process : m_processes)
        process->kill();
    if (m_balancer)
        m_balancer->close();
}

void ServiceUnderTest::terminate()
{
    for (const auto &process : m_processes)
        process->terminate();
}

int ServiceUnderTest::waitForEnd()
{
    int worst = 0;
    for (const auto &process : m_processes) {
        const int code = process->waitForEnd();
        worst = code == 0 ? worst : code;
    }
    if (m_balancer)
        m_balancer->close();
    return worst;
}

QByteArray ServiceUnderTest::log() const
{
    QByteArray all;
    for (const auto &process : m_processes)
        all += process->log();
    return all;
}

int ServiceUnderTest::runCommand(const QStringList &commandLine, QByteArray *output)
{
    return m_processes.front()->runCommand(commandLine, output);
}

} // namespace ZelTest
