// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/recordingclient.h"

#include <utility>

namespace ZelTest {

namespace {

QString argumentText(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<bool>())
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (value.metaType() == QMetaType::fromType<QString>())
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    return value.toString();
}

} // namespace

RecordingClient::RecordingClient(QObject *parent)
    : ServiceClient(parent)
{
}

RecordingClient::~RecordingClient() = default;

void RecordingClient::failNext(const QString &operation, const Zel::RuntimeError &error)
{
    m_failures.insert(operation, std::shared_ptr<Zel::RuntimeError>(error.clone()));
}

QStringList RecordingClient::takeCalls()
{
    return std::exchange(m_calls, {});
}

void RecordingClient::record(const QString &operation, const QVariantList &arguments)
{
    QStringList texts;
    for (const QVariant &argument : arguments)
        texts << argumentText(argument);
    const QString call =
        operation + QLatin1Char('(') + texts.join(QStringLiteral(", ")) + QLatin1Char(')');
    m_calls << call;
    if (atCall)
        atCall(call);
    if (const auto failure = m_failures.take(operation))
        failure->raise();
}

void RecordingClient::authenticate(const QString &serverAddress, const QString &userName,
                                   const QString &password, const QString &appName,
                                   const QString &reserved, bool useProxy, bool reservedFlag,
                                   bool &success)
{
    record(QStringLiteral("authenticate"),
           {serverAddress, userName, password, appName, reserved, useProxy, reservedFlag});
    success = authenticated;
}

void RecordingClient::getAccounts(QXSC::AccountCollectionPtr &result)
{
    record(QStringLiteral("getAccounts"));
    result = accounts;
}

void RecordingClient::setActiveAccount(const QString &accountNumber, bool &success)
{
    record(QStringLiteral("setActiveAccount"), {accountNumber});
    success = accountAccepted;
}

void RecordingClient::getProjectList(const QString &projectType, QXSC::ProjectCollectionPtr &result)
{
    record(QStringLiteral("getProjectList"), {projectType});
    result = projects;
}

void RecordingClient::isProjectPublished(const QString &guid, const QString &reserved, bool &result)
{
    record(QStringLiteral("isProjectPublished"), {guid, reserved});
    result = published.value(guid);
}

QList<QXSC::ProjectType> RecordingClient::projectTypes()
{
    record(QStringLiteral("projectTypes"));
    return types;
}

QXSC::ProjectRecordPtr RecordingClient::createProject(const QXSC::NewProject &project)
{
    record(QStringLiteral("createProject"),
           {project.name, project.typeID, project.description, project.themeGuid});
    auto made = std::make_shared<QXSC::ProjectRecord>();
    made->guid = project.guid;
    made->name = project.name;
    made->description = project.description;
    made->hasEventDate = project.eventDate.has_value();
    made->eventDate = project.eventDate.value_or(QDateTime());
    auto grown = projects ? std::make_shared<QXSC::ProjectCollection>(*projects)
                          : std::make_shared<QXSC::ProjectCollection>();
    grown->add(made);
    projects = grown;
    return made;
}

void RecordingClient::signOut()
{
    record(QStringLiteral("signOut"));
}

QXSC::AccountCollectionPtr accountList(const QList<QXSC::AccountRecord> &accounts)
{
    auto list = std::make_shared<QXSC::AccountCollection>();
    for (const QXSC::AccountRecord &account : accounts)
        list->add(std::make_shared<QXSC::AccountRecord>(account));
    return list;
}

QXSC::ProjectCollectionPtr projectList(const QList<QXSC::ProjectRecord> &projects)
{
    auto list = std::make_shared<QXSC::ProjectCollection>();
    for (const QXSC::ProjectRecord &project : projects)
        list->add(std::make_shared<QXSC::ProjectRecord>(project));
    return list;
}

} // namespace ZelTest
