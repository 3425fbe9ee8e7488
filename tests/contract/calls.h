// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/httpserviceclient.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace ZelTest {

/// The real client, which trusts the service of the tests. Every request it sends and every answer
/// it gets is held against the interface that the service publishes; `takeInterfaceFaults` tells
/// what did not fit.
class Client : public QXSC::HttpServiceClient
{
public:
    explicit Client(QObject *parent = nullptr);

    /// What it is told of networks from the start.
    static QXSC::NetworkPolicy policy();
};

/// What did not fit the published interface since the last time, of all clients and threads.
QStringList takeInterfaceFaults();
/// How many calls have been looked at in this program.
int checkedCalls();

// The operations of the contract with their answers as return values. Errors pass through.

/// Signs in under the name of a program, which is how a session is found again in the database.
bool authenticate(Client &client, const QString &address, const QString &user,
                  const QString &password,
                  const QString &appName = QStringLiteral("Contract tests"));
QXSC::AccountCollectionPtr accountsOf(Client &client);
bool chooseAccount(Client &client, const QString &number);
QXSC::ProjectCollectionPtr projectsOf(Client &client, const QString &type);
bool isPublished(Client &client, const QString &guid);

/// How a call ended: "none" when it did not fail, else the kind of the error and the service's word
/// for it: "Refused/no-account", "SignedOut" where the service was not asked. An error that has no
/// sentence for people is told apart.
QString failureOf(const std::function<void()> &call);

/// The records of a list with that guid.
QList<QXSC::ProjectRecordPtr> withGuid(const QXSC::ProjectCollectionPtr &projects,
                                       const QString &guid);

/// A new guid in the form the service stores: 36 characters, lower case.
QString newGuid();

/// A project to make: with a guid of its own, of a type of the account "Contract Studio".
QXSC::NewProject newProject(const QString &name = QStringLiteral("A project"));

} // namespace ZelTest
