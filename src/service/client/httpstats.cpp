// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The statistics, poll and survey operations over HTTP.
#include "service/client/httpserviceclient.h"

#include "service/client/callfailure.h"
#include "service/client/jsoncall.h"
#include "service/client/listcall.h"
#include "service/client/resultsreader.h"
#include "service/client/statsreader.h"
#include "service/client/transport.h"

#include <algorithm>
#include <vector>

namespace QXSC {

namespace {

constexpr qint64 second = 1000;

/// Whether the text can stand in an address as one part of its path. One or two dots are taken for
/// a folder, however they are written.
bool canBeAsked(const QString &guid)
{
    return !guid.isEmpty() && guid != QLatin1String(".") && guid != QLatin1String("..");
}

/// The first millisecond of a local date-time's second in UTC.
qint64 beginningOf(const QDateTime &time)
{
    if (!time.isValid())
        throw ServiceError(ServiceError::Kind::Invalid,
                           HttpServiceClient::tr("The range has no date. Choose one."));
    const qint64 at = time.toMSecsSinceEpoch();
    const qint64 past = at % second;
    return at - (past < 0 ? past + second : past);
}

QByteArray fromQuery(const QDateTime &start)
{
    return "from=" + QByteArray::number(beginningOf(start));
}

/// People choose whole seconds: the last one belongs to the range up to its end.
QByteArray toQuery(const QDateTime &end)
{
    return "&to=" + QByteArray::number(beginningOf(end) + second - 1);
}

QByteArray rangeQuery(const QDateTime &start, const QDateTime &end)
{
    return fromQuery(start) + toQuery(end);
}

/// Reads a count; one that has no room in 16 bits is an overflow that says of what there are too
/// many.
auto counting(const QString &tooMany)
{
    return [tooMany](const QByteArray &body) {
        try {
            return readCount(body);
        } catch (const Zel::RuntimeError &error) {
            if (error.number() != Zel::RuntimeError::Overflow)
                throw;
            throw Zel::RuntimeError(error.number(), tooMany);
        }
    };
}

/// Participants in order of their first view. The service hands them out in an order of its own,
/// because nobody may move in a list while its pages are read.
ParticipantCollectionPtr byFirstView(const ParticipantCollectionPtr &participants)
{
    if (!participants)
        return nullptr;
    std::vector<std::pair<qint64, ParticipantRecordPtr>> order;
    order.reserve(static_cast<std::size_t>(participants->count()));
    for (const ParticipantRecordPtr &record : *participants)
        order.emplace_back(record->FirstViewed.toMSecsSinceEpoch(), record);
    std::sort(order.begin(), order.end(), [](const auto &a, const auto &b) {
        return a.first != b.first
                   ? a.first < b.first
                   : a.second->User->UserID.toUtf8() < b.second->User->UserID.toUtf8();
    });
    auto sorted = std::make_shared<ParticipantCollection>();
    sorted->reserve(participants->count());
    for (const auto &[at, record] : order)
        sorted->add(record);
    return sorted;
}

QByteArray part(const QString &text)
{
    return QUrl::toPercentEncoding(text);
}

} // namespace

Request HttpServiceClient::deploymentRequest(const QString &guid, const QByteArray &path,
                                             const QByteArray &query) const
{
    const Request request =
        sessionRequest("GET", "/v1/deployments/" + part(guid) + '/' + path, query);
    if (!canBeAsked(guid))
        throw ServiceError(ServiceError::Kind::NotFound,
                           tr("This deployment has no identity the service could know it by."));
    return request;
}

template <typename Read>
auto HttpServiceClient::readDeployment(const QString &guid, const QByteArray &path,
                                       const QByteArray &query, Read read)
{
    const Request request = deploymentRequest(guid, path, query);
    return readAnswer(request, *ask(request), read);
}

QList<Deployment> HttpServiceClient::deployments(const QString &projectGuid)
{
    const Request request =
        sessionRequest("GET", "/v1/projects/" + part(projectGuid) + "/deployments");
    if (!canBeAsked(projectGuid))
        return {};
    return readList(request, readDeployments, QLatin1String("not-found"));
}

double HttpServiceClient::GetDeploymentStatistic(const QString &deploymentGuid,
                                                 const QDateTime &start, const QDateTime &end,
                                                 const QString &name)
{
    if (!canBeAsked(name))
        throw ServiceError(ServiceError::Kind::Invalid, tr("A statistic has a name."));
    return readDeployment(deploymentGuid, "statistics/" + part(name), rangeQuery(start, end),
                          readStatistic);
}

qint16 HttpServiceClient::GetUniqueParticipantCount(const QString &deploymentGuid,
                                                    const QDateTime &start, const QDateTime &end)
{
    return readDeployment(deploymentGuid, "participants/count", rangeQuery(start, end),
                          counting(tr("There are more than 32,767 participants in this range.")));
}

qint16 HttpServiceClient::GetRegistrantCount(const QString &deploymentGuid)
{
    return readDeployment(deploymentGuid, "registrants/count", {},
                          counting(tr("There are more than 32,767 registrants.")));
}

qint16 HttpServiceClient::GetRegisteredParticipantCount(const QString &deploymentGuid,
                                                        const QDateTime &start,
                                                        const QDateTime &end)
{
    return readDeployment(deploymentGuid, "registrants/count",
                          "participated=true&" + rangeQuery(start, end),
                          counting(tr("There are more than 32,767 registered participants in this "
                                      "range.")));
}

qint16 HttpServiceClient::GetRegisteredNonParticipantCount(const QString &deploymentGuid,
                                                           const QDateTime &start,
                                                           const QDateTime &end)
{
    return readDeployment(deploymentGuid, "registrants/count",
                          "participated=false&" + rangeQuery(start, end),
                          counting(tr("There are more than 32,767 registrants who did not take "
                                      "part in this range.")));
}

qint16 HttpServiceClient::GetPageHitCountByAttribute(const QString &deploymentGuid,
                                                     const QDateTime &start, const QDateTime &end,
                                                     const QString &attribute,
                                                     const QString &comparison,
                                                     const QString &value)
{
    return readDeployment(deploymentGuid, "page-views/count",
                          "attribute=" + part(attribute) + "&op=" + part(comparison) +
                              "&value=" + part(value) + '&' + rangeQuery(start, end),
                          counting(tr("There are more than 32,767 page views in this range.")));
}

ParticipantCollectionPtr HttpServiceClient::GetParticipants(const QString &deploymentGuid,
                                                            const QDateTime &start,
                                                            const QDateTime &end)
{
    return byFirstView(
        readList(deploymentRequest(deploymentGuid, "participants", rangeQuery(start, end)),
                 readParticipants));
}

RegistrantCollectionPtr HttpServiceClient::GetRegistrants(const QString &deploymentGuid,
                                                          const QDateTime &start,
                                                          const QDateTime &end)
{
    return readList(deploymentRequest(deploymentGuid, "registrants", rangeQuery(start, end)),
                    readRegistrants);
}

PageViewCollectionPtr HttpServiceClient::GetPageViews(const QString &deploymentGuid,
                                                      const QDateTime &start, const QDateTime &end)
{
    return readList(deploymentRequest(deploymentGuid, "page-views", rangeQuery(start, end)),
                    readPageViews);
}

QuestionCollectionPtr HttpServiceClient::GetQuestions(const QString &deploymentGuid,
                                                      const QDateTime &start, const QDateTime &end)
{
    return readList(
        deploymentRequest(deploymentGuid, "questions",
                          fromQuery(start) + (end.isValid() ? toQuery(end) : QByteArray())),
        readQuestions);
}

qint16 HttpServiceClient::UpdateQuestion(const QString &questionGuid, const QString &answer,
                                         const QString &question, const QString &, const QString &)
{
    return putQuestion(
        questionGuid, {},
        {{QStringLiteral("answer"), answer}, {QStringLiteral("question"), question}});
}

qint16 HttpServiceClient::SetQuestionStatus(const QString &questionGuid, const QString &status)
{
    return putQuestion(questionGuid, "/status", {{QStringLiteral("status"), status}});
}

qint16 HttpServiceClient::putQuestion(const QString &guid, const QByteArray &path,
                                      const QJsonObject &body)
{
    constexpr qint16 done = 0;
    constexpr qint16 unknown = 1;
    const Request request = changeRequest("PUT", "/v1/questions/" + part(guid) + path, json(body));
    if (!canBeAsked(guid))
        return unknown;
    const std::optional<Reply> reply = ask(request, QLatin1String("not-found"));
    if (!reply)
        return unknown;
    expectNoContent(request, *reply);
    return done;
}

PollQuestionCollectionPtr HttpServiceClient::GetPolls(const QString &deploymentGuid)
{
    return readDeployment(deploymentGuid, "polls", {}, readPolls);
}

PollResponseArray HttpServiceClient::GetPollResponses(const QString &deploymentGuid)
{
    SharedTexts texts;
    return readList(
        deploymentRequest(deploymentGuid, "poll-responses", {}),
        [&texts](const QJsonObject &answer) { return readPollResponses(answer, texts); });
}

SurveyCollectionPtr HttpServiceClient::GetSurveys(const QString &deploymentGuid)
{
    return readDeployment(deploymentGuid, "surveys", {}, readSurveys);
}

SurveyResponseArray HttpServiceClient::GetSurveyResponses(const QString &deploymentGuid,
                                                          const QString &surveyGuid)
{
    if (!canBeAsked(surveyGuid))
        throw ServiceError(ServiceError::Kind::NotFound,
                           tr("This survey has no identity the service could know it by."));
    SharedTexts texts;
    return readList(
        deploymentRequest(deploymentGuid, "surveys/" + part(surveyGuid) + "/responses", {}),
        [&texts](const QJsonObject &answer) { return readSurveyResponses(answer, texts); });
}

} // namespace QXSC
