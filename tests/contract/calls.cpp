// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/calls.h"

#include "tests/contract/contracttls.h"
#include "tests/interface/interfacecheck.h"

#include <QUuid>

#include <atomic>
#include <mutex>

namespace ZelTest {

namespace {

using Kind = QXSC::ServiceError::Kind;

const char *nameOf(Kind kind)
{
    switch (kind) {
    case Kind::Unreachable:
        return "Unreachable";
    case Kind::TimedOut:
        return "TimedOut";
    case Kind::ConnectionLost:
        return "ConnectionLost";
    case Kind::BadAnswer:
        return "BadAnswer";
    case Kind::SignedOut:
        return "SignedOut";
    case Kind::Refused:
        return "Refused";
    case Kind::NotFound:
        return "NotFound";
    case Kind::Conflict:
        return "Conflict";
    case Kind::Invalid:
        return "Invalid";
    case Kind::TooManyAttempts:
        return "TooManyAttempts";
    case Kind::Unavailable:
        return "Unavailable";
    }
    return "of no kind";
}

/// What all clients of a test program share.
struct Watch
{
    InterfaceCheck check;
    std::atomic_int calls = 0;
    std::mutex mutex;
    QStringList faults;
};

Watch &watch()
{
    static Watch only;
    return only;
}

void examine(const QXSC::CallReport &report)
{
    const QStringList faults =
        watch().check.faultsOf({report.method, report.path, report.query, report.requestBody,
                                report.status, report.headers, report.body});
    ++watch().calls;
    const std::lock_guard lock(watch().mutex);
    watch().faults << faults;
}

} // namespace

Client::Client(QObject *parent)
    : QXSC::HttpServiceClient(parent)
{
    setNetworkPolicy(policy());
    setCallObserver(examine);
}

QStringList takeInterfaceFaults()
{
    const std::lock_guard lock(watch().mutex);
    return std::exchange(watch().faults, {});
}

int checkedCalls()
{
    return watch().calls;
}

QXSC::NetworkPolicy Client::policy()
{
    QXSC::NetworkPolicy result;
    if (const ContractTls *tls = ContractTls::get())
        result.caFile = tls->caFile();
    return result;
}

bool authenticate(Client &client, const QString &address, const QString &user,
                  const QString &password, const QString &appName)
{
    bool success = false;
    client.authenticate(address, user, password, appName, QString(), false, true, success);
    return success;
}

QXSC::AccountCollectionPtr accountsOf(Client &client)
{
    QXSC::AccountCollectionPtr accounts;
    client.getAccounts(accounts);
    return accounts;
}

bool chooseAccount(Client &client, const QString &number)
{
    bool success = false;
    client.setActiveAccount(number, success);
    return success;
}

QXSC::ProjectCollectionPtr projectsOf(Client &client, const QString &type)
{
    QXSC::ProjectCollectionPtr projects;
    client.getProjectList(type, projects);
    return projects;
}

bool isPublished(Client &client, const QString &guid)
{
    bool published = false;
    client.isProjectPublished(guid, QString(), published);
    return published;
}

QString failureOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const QXSC::ServiceError &error) {
        QString text = QString::fromLatin1(nameOf(error.kind()));
        if (!error.code().isEmpty())
            text += QLatin1Char('/') + error.code();
        if (error.description().trimmed().isEmpty())
            text += QLatin1String(" without a sentence");
        return text;
    }
    return QStringLiteral("none");
}

QList<QXSC::ProjectRecordPtr> withGuid(const QXSC::ProjectCollectionPtr &projects,
                                       const QString &guid)
{
    QList<QXSC::ProjectRecordPtr> found;
    if (!projects)
        return found;
    for (const QXSC::ProjectRecordPtr &project : *projects) {
        if (project->guid == guid)
            found << project;
    }
    return found;
}

QString newGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QXSC::NewProject newProject(const QString &name)
{
    QXSC::NewProject project;
    project.guid = newGuid();
    project.name = name;
    project.typeID = QStringLiteral("session");
    project.description = QStringLiteral("Made by a test.");
    return project;
}

} // namespace ZelTest
