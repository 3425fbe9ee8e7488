// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/store.h"
#include "tests/contract/contracttest.h"

namespace ZelTest {

/// Deployments of the sample, of the account Brightwater Media.
const QString liveDeployment = QStringLiteral("b80d4f7e-2ad6-57be-a7b3-0efa8160473c");
const QString rehearsalDeployment = QStringLiteral("8bb7927e-dfcf-534e-b554-ffd670748d4d");
const QString captionsProject = QStringLiteral("5c400ad7-64e6-55e6-9e0a-11462ba0bba6");

/// Base of tests that put an audience of their own into the database.
class AudienceTest : public ContractTest
{
    Q_OBJECT

protected:
    QStringList samplePaths() const override { return {ServiceProcess::sampleFolder()}; }

    Zel::Store &store()
    {
        if (!m_store)
            m_store = std::make_unique<Zel::Store>(database());
        return *m_store;
    }

    /// A new deployment of a project of the sample; its key is its guid.
    QString newDeployment(const QString &name = QStringLiteral("A deployment"))
    {
        const QString guid = newGuid();
        database().tx([&] {
            store().deployments.put(brightwaterMedia, {guid, captionsProject, name, 0});
            store().deployments.setKey(brightwaterMedia, guid, guid);
        });
        return guid;
    }

    Zel::DeploymentRef refOf(const QString &guid)
    {
        return store().deployments.find(brightwaterMedia, guid).value();
    }

    /// One line of a list a row of a file; cells of these files hold no line ends.
    static QList<QStringList> sampleRows(const QString &file);

protected slots:

    void cleanupTestCase()
    {
        m_store.reset();
        ContractTest::cleanupTestCase();
    }

private:
    std::unique_ptr<Zel::Store> m_store;
};

} // namespace ZelTest
