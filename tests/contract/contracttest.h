// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/database.h"
#include "tests/contract/calls.h"
#include "tests/contract/postgresserver.h"
#include "tests/contract/serviceundertest.h"
#include "testsupport/testcase.h"

#include <memory>

namespace ZelTest {

/// Someone who can sign in.
struct Person
{
    QString user;
    QString password;
};

/// People of the sample workspace: with two accounts, one and none.
Person maja();
Person tomas();
Person ines();
/// People of the contract workspace: two authors and a viewer of "Contract Studio".
Person nora();
Person olaf();
Person vera();

/// Accounts of the sample workspace.
constexpr qint64 brightwaterMedia = 1001;
constexpr qint64 harbourLearning = 1002;
/// Accounts of the contract workspace: one to write in, one with strange types and names, one with
/// strange dates.
constexpr qint64 contractStudio = 2001;
constexpr qint64 quietRoom = 2002;
constexpr qint64 clockTower = 2003;

/// Base of every test of the contract: the real service with the sample and the contract workspace,
/// started once for the program over the database that ZEL_CONTRACT_DATABASE names: "sqlite" (also
/// when it is not set), "postgres", or "tls" for PostgreSQL with two replicas of the service behind
/// a balancer, by TLS. Files lie where ZEL_CONTRACT_BLOBS says: in "files" (also when it is not set)
/// or in the "database"; those of the replicas always in the database, so that they share nothing
/// else. What one test function stores the next one finds.
///
/// A service that a test function stopped or killed runs again, at the same address, when the next
/// one begins. A test function fails when a request or an answer of its clients does not fit the
/// interface that the service publishes. At the end it must stop in order and must not have written
/// a password to its log.
class ContractTest : public TestCase
{
    Q_OBJECT

public:
    ContractTest();
    ~ContractTest() override;

    /// The folder of the contract workspace.
    static QString workspaceFolder();

protected:
    ServiceUnderTest &service() { return *m_service; }

    /// What of the sample is taken in; without its deployments unless a test says so.
    virtual QStringList samplePaths() const { return ServiceProcess::sampleWorkspace(); }

    /// A further process of the service over the same database, started when first asked for.
    ServiceProcess &replica();

    /// The same database, for what no operation can bring about.
    Zel::Database &database() { return *m_database; }

    /// The PostgreSQL server; null on SQLite.
    PostgresServer *postgres() { return m_postgres.get(); }

    /// Whether the bytes of files are in the database.
    bool hasChunks() const { return m_service->blobs == QLatin1String("database"); }

    /// A client that is signed in, with an account chosen unless it is 0.
    std::unique_ptr<Client> signIn(const Person &person, qint64 account = 0);

protected slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    void verifyLog(const QByteArray &log);

    std::unique_ptr<PostgresServer> m_postgres;
    std::unique_ptr<ServiceUnderTest> m_service;
    std::unique_ptr<ServiceProcess> m_replica;
    std::unique_ptr<Zel::Database> m_database;
};

} // namespace ZelTest
