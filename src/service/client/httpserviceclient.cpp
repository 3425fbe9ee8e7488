// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/httpserviceclient.h"

#include "service/client/answerreader.h"
#include "service/client/callfailure.h"
#include "service/client/jsoncall.h"
#include "service/client/listcall.h"
#include "service/client/recordreader.h"
#include "service/client/transport.h"

#include <QUuid>

namespace QXSC {

namespace {

QJsonValue milliseconds(const std::optional<QDateTime> &time)
{
    if (!time)
        return QJsonValue::Null;
    if (!time->isValid())
        throw ServiceError(ServiceError::Kind::Invalid,
                           HttpServiceClient::tr("The event date is not a date. Choose another."));
    return time->toMSecsSinceEpoch();
}

} // namespace

HttpServiceClient::HttpServiceClient(QObject *parent)
    : ServiceClient(parent)
    , m_transport(Transport::create())
{
}

HttpServiceClient::~HttpServiceClient()
{
    m_transport->close();
}

void HttpServiceClient::setDefaultServer(const QString &address)
{
    if (m_session && m_session->isAtDefaultServer && address != m_defaultServer)
        m_session.reset();
    m_defaultServer = address;
}

void HttpServiceClient::setWaitObserver(WaitObserver *observer)
{
    m_transport->setWaitObserver(observer);
}

void HttpServiceClient::setCallObserver(const CallObserver &observer)
{
    m_transport->setCallObserver(observer);
}

void HttpServiceClient::authenticate(const QString &serverAddress, const QString &userName,
                                     const QString &password, const QString &appName,
                                     const QString &, bool useProxy, bool, bool &success)
{
    success = false;
    m_session.reset();
    const bool isDefault = serverAddress.trimmed().isEmpty();
    const QString address = isDefault ? m_defaultServer : serverAddress;
    if (address.trimmed().isEmpty())
        throw ServiceError(
            ServiceError::Kind::Invalid,
            tr("No server is given. Enter the address of the server to sign in to."));
    m_policy.useSystemProxy = useProxy;
    const QJsonObject body{{QStringLiteral("user"), userName},
                           {QStringLiteral("password"), password},
                           {QStringLiteral("appName"), appName}};
    const Request request{"POST", ServerAddress::parse(address), "/v1/sessions", {}, json(body),
                          {}};
    const std::optional<Reply> reply = ask(request, QLatin1String("bad-credentials"));
    if (!reply)
        return;
    m_session = Session{request.server, readAnswer(request, *reply, readSessionToken), isDefault};
    success = true;
}

void HttpServiceClient::getAccounts(AccountCollectionPtr &accounts)
{
    const Request request = sessionRequest("GET", "/v1/accounts");
    accounts = readAnswer(request, *ask(request), readAccounts);
}

void HttpServiceClient::setActiveAccount(const QString &accountNumber, bool &success)
{
    success = false;
    const Request request = sessionRequest("PUT", "/v1/sessions/current/account", {},
                                           json({{QStringLiteral("accountId"), accountNumber}}));
    const std::optional<Reply> reply = ask(request, QLatin1String("account-refused"));
    if (!reply)
        return;
    expectNoContent(request, *reply);
    success = true;
}

void HttpServiceClient::getProjectList(const QString &projectType, ProjectCollectionPtr &projects)
{
    const Request request =
        sessionRequest("GET", "/v1/projects", "type=" + QUrl::toPercentEncoding(projectType));
    projects = readList(request, readProjects);
}

void HttpServiceClient::isProjectPublished(const QString &guid, const QString &, bool &published)
{
    published = false;
    const Request request =
        sessionRequest("GET", "/v1/projects/" + QUrl::toPercentEncoding(guid) + "/published");
    // An address takes one or two dots for a folder, however they are written.
    if (guid.isEmpty() || guid == QLatin1String(".") || guid == QLatin1String(".."))
        throw ServiceError(ServiceError::Kind::NotFound,
                           tr("This project has no identity the service could know it by."));
    published = readAnswer(request, *ask(request), readPublished);
}

QList<ProjectType> HttpServiceClient::projectTypes()
{
    const Request request = sessionRequest("GET", "/v1/project-types");
    return readAnswer(request, *ask(request), readProjectTypes);
}

ProjectRecordPtr HttpServiceClient::createProject(const NewProject &project)
{
    const QString guid =
        project.guid.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : project.guid;
    QJsonObject body{{QStringLiteral("guid"), guid},
                     {QStringLiteral("name"), project.name},
                     {QStringLiteral("typeID"), project.typeID},
                     {QStringLiteral("description"), project.description},
                     {QStringLiteral("eventDate"), milliseconds(project.eventDate)}};
    if (!project.themeGuid.isEmpty())
        body.insert(QStringLiteral("themeGuid"), project.themeGuid);
    Request request = sessionRequest("POST", "/v1/projects", {}, json(body));
    request.isKnownByItsBody = true; // by the guid
    return readAnswer(request, *ask(request), readCreatedProject);
}

void HttpServiceClient::signOut()
{
    if (!m_session)
        return;
    const Request request = sessionRequest("DELETE", "/v1/sessions/current");
    NetworkPolicy policy = m_policy;
    policy.callLimit = std::chrono::seconds(5); // a program that is closing is not kept waiting
    m_session.reset();
    m_transport->call(request, policy);
}

Request HttpServiceClient::sessionRequest(const QByteArray &method, const QByteArray &path,
                                          const QByteArray &query, const QByteArray &body) const
{
    if (!m_session)
        throw signedOut();
    return {method, m_session->server, path, query, body, m_session->token};
}

Request HttpServiceClient::changeRequest(const QByteArray &method, const QByteArray &path,
                                         const QByteArray &body) const
{
    Request request = sessionRequest(method, path, {}, body);
    request.idempotencyKey = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    return request;
}

std::optional<Reply> HttpServiceClient::ask(const Request &request, QLatin1String refusal)
{
    return ask(request, OperationTime(m_policy), refusal);
}

std::optional<Reply> HttpServiceClient::ask(const Request &request, const OperationTime &time,
                                            QLatin1String refusal)
{
    return taken(request, send(request, time), time.policy(), refusal);
}

Reply HttpServiceClient::send(const Request &request, const OperationTime &time)
{
    // This object may go away in a call.
    const std::shared_ptr<Transport> transport = m_transport;
    const Reply first = transport->call(request, time.rest());
    if (!first.isBroken() || !request.mayComeAgain())
        return first;
    const Reply second = transport->call(request, time.rest());
    // Where the second one got nowhere, the first may still have done what was asked for.
    return second.ending == Reply::Ending::Failed ? first : second;
}

std::optional<Reply> HttpServiceClient::taken(const Request &request, const Reply &reply,
                                              const NetworkPolicy &policy, QLatin1String refusal)
{
    // This object may be gone, if and only if the call ended as closed.
    if (reply.ending == Reply::Ending::Answered && reply.status >= 200 && reply.status < 300)
        return reply;
    if (!refusal.isEmpty() && refusalCode(reply) == refusal)
        return std::nullopt;
    ServiceError error = failureOf(request, reply, policy);
    if (error.code() == QLatin1String("signed-out") && m_session &&
        m_session->token == request.token)
        m_session.reset();
    throw error;
}

} // namespace QXSC
