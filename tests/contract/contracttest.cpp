// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"

#include <QTest>

#include <csignal>
#include <stdexcept>

namespace ZelTest {

Person maja()
{
    return {QStringLiteral("maja"), QStringLiteral("sample-maja")};
}

Person tomas()
{
    return {QStringLiteral("tomas"), QStringLiteral("sample-tomas")};
}

Person ines()
{
    return {QStringLiteral("ines"), QStringLiteral("sample-ines")};
}

Person nora()
{
    return {QStringLiteral("nora"), QStringLiteral("contract-nora")};
}

Person olaf()
{
    return {QStringLiteral("olaf"), QStringLiteral("contract-olaf")};
}

Person vera()
{
    return {QStringLiteral("vera"), QStringLiteral("contract-vera")};
}

ContractTest::ContractTest() = default;

ContractTest::~ContractTest() = default;

QString ContractTest::workspaceFolder()
{
    return QStringLiteral(ZEL_SOURCE_DIR "/tests/fixtures/contract/workspace");
}

void ContractTest::initTestCase()
{
    TestCase::initTestCase();
    const QByteArray engine = qgetenv("ZEL_CONTRACT_DATABASE");
    QVERIFY2(engine.isEmpty() || engine == "sqlite" || engine == "postgres" || engine == "tls",
             engine.constData());
    m_service = std::make_unique<ServiceUnderTest>();
    // Replicas that encrypt share nothing but the database.
    m_service->blobs = engine == "tls" ? QStringLiteral("database")
                                       : qEnvironmentVariable("ZEL_CONTRACT_BLOBS");
    m_service->importPaths = samplePaths() << workspaceFolder();
    if (engine == "postgres" || engine == "tls") {
        m_postgres = std::make_unique<PostgresServer>();
        QVERIFY2(m_postgres->start(), qPrintable(m_postgres->error()));
        m_service->database = m_postgres->newDatabase();
        QVERIFY2(!m_service->database.isEmpty(), qPrintable(m_postgres->error()));
    }
    QVERIFY2(m_service->start(), qPrintable(m_service->error()));
    m_database = std::make_unique<Zel::Database>(Zel::DatabaseAddress::parse(m_service->database));
}

void ContractTest::init()
{
    TestCase::init();
    if (!m_service->isRunning())
        QVERIFY2(m_service->startAgain(), qPrintable(m_service->error()));
}

void ContractTest::cleanup()
{
    const QStringList faults = takeInterfaceFaults();
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void ContractTest::cleanupTestCase()
{
    QVERIFY2(checkedCalls() > 0, "no call was held against the interface");
    const auto end = [this](auto &process) {
        if (!process || !process->isRunning())
            return;
        const int exitCode = process->stop();
        QVERIFY2(exitCode == 0, process->log().right(4000).constData());
        verifyLog(process->log());
    };
    end(m_service);
    end(m_replica);
}

void ContractTest::verifyLog(const QByteArray &log)
{
    QVERIFY(log.contains("listening") || log.contains("started"));
    for (const Person &person : {maja(), tomas(), ines(), nora(), olaf(), vera()})
        QVERIFY2(!log.contains(person.password.toUtf8()), "the log holds a password");
}

ServiceProcess &ContractTest::replica()
{
    if (!m_replica) {
        m_replica = std::make_unique<ServiceProcess>();
        m_service->join(*m_replica);
    }
    if (!m_replica->isRunning() && !m_replica->startAgain())
        throw std::runtime_error(qPrintable(m_replica->error()));
    return *m_replica;
}

std::unique_ptr<Client> ContractTest::signIn(const Person &person, qint64 account)
{
    auto client = std::make_unique<Client>();
    if (!authenticate(*client, m_service->address(), person.user, person.password))
        throw std::runtime_error(qPrintable(person.user + QLatin1String(" may not sign in")));
    if (account != 0 && !chooseAccount(*client, QString::number(account)))
        throw std::runtime_error(qPrintable(person.user + QLatin1String(" has no such account")));
    return client;
}

} // namespace ZelTest
