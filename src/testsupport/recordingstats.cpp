// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The statistics operations of the recording client.

#include "testsupport/recordingclient.h"

namespace ZelTest {

namespace {

/// A date-time as calls show it: ISO form without a zone; a date that was left out is empty.
QString moment(const QDateTime &dateTime)
{
    return dateTime.isValid() ? dateTime.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"))
                              : QString();
}

} // namespace

double RecordingClient::GetDeploymentStatistic(const QString &deploymentGuid,
                                               const QDateTime &start, const QDateTime &end,
                                               const QString &name)
{
    record(QStringLiteral("GetDeploymentStatistic"),
           {deploymentGuid, moment(start), moment(end), name});
    return statistics.value(name);
}

qint16 RecordingClient::GetUniqueParticipantCount(const QString &deploymentGuid,
                                                  const QDateTime &start, const QDateTime &end)
{
    record(QStringLiteral("GetUniqueParticipantCount"),
           {deploymentGuid, moment(start), moment(end)});
    return uniqueParticipants;
}

qint16 RecordingClient::GetRegistrantCount(const QString &deploymentGuid)
{
    record(QStringLiteral("GetRegistrantCount"), {deploymentGuid});
    return registrantCount;
}

qint16 RecordingClient::GetRegisteredParticipantCount(const QString &deploymentGuid,
                                                      const QDateTime &start, const QDateTime &end)
{
    record(QStringLiteral("GetRegisteredParticipantCount"),
           {deploymentGuid, moment(start), moment(end)});
    return registeredParticipants;
}

qint16 RecordingClient::GetRegisteredNonParticipantCount(const QString &deploymentGuid,
                                                         const QDateTime &start,
                                                         const QDateTime &end)
{
    record(QStringLiteral("GetRegisteredNonParticipantCount"),
           {deploymentGuid, moment(start), moment(end)});
    return registeredNonParticipants;
}

qint16 RecordingClient::GetPageHitCountByAttribute(const QString &deploymentGuid,
                                                   const QDateTime &start, const QDateTime &end,
                                                   const QString &attribute,
                                                   const QString &comparison, const QString &value)
{
    record(QStringLiteral("GetPageHitCountByAttribute"),
           {deploymentGuid, moment(start), moment(end), attribute, comparison, value});
    return attributeHits.value({attribute, value});
}

QXSC::ParticipantCollectionPtr RecordingClient::GetParticipants(const QString &deploymentGuid,
                                                                const QDateTime &start,
                                                                const QDateTime &end)
{
    record(QStringLiteral("GetParticipants"), {deploymentGuid, moment(start), moment(end)});
    return participants;
}

QXSC::RegistrantCollectionPtr RecordingClient::GetRegistrants(const QString &deploymentGuid,
                                                              const QDateTime &start,
                                                              const QDateTime &end)
{
    record(QStringLiteral("GetRegistrants"), {deploymentGuid, moment(start), moment(end)});
    return registrants;
}

QXSC::PageViewCollectionPtr RecordingClient::GetPageViews(const QString &deploymentGuid,
                                                          const QDateTime &start,
                                                          const QDateTime &end)
{
    record(QStringLiteral("GetPageViews"), {deploymentGuid, moment(start), moment(end)});
    return pageViews;
}

QXSC::QuestionCollectionPtr RecordingClient::GetQuestions(const QString &deploymentGuid,
                                                          const QDateTime &start,
                                                          const QDateTime &end)
{
    record(QStringLiteral("GetQuestions"), {deploymentGuid, moment(start), moment(end)});
    return questions;
}

qint16 RecordingClient::UpdateQuestion(const QString &questionGuid, const QString &answer,
                                       const QString &question, const QString &reserved1,
                                       const QString &reserved2)
{
    record(QStringLiteral("UpdateQuestion"),
           {questionGuid, answer, question, reserved1, reserved2});
    return questionResult;
}

qint16 RecordingClient::SetQuestionStatus(const QString &questionGuid, const QString &status)
{
    record(QStringLiteral("SetQuestionStatus"), {questionGuid, status});
    return questionResult;
}

QXSC::PollQuestionCollectionPtr RecordingClient::GetPolls(const QString &deploymentGuid)
{
    record(QStringLiteral("GetPolls"), {deploymentGuid});
    return polls;
}

QXSC::PollResponseArray RecordingClient::GetPollResponses(const QString &deploymentGuid)
{
    record(QStringLiteral("GetPollResponses"), {deploymentGuid});
    return pollResponses;
}

QXSC::SurveyCollectionPtr RecordingClient::GetSurveys(const QString &deploymentGuid)
{
    record(QStringLiteral("GetSurveys"), {deploymentGuid});
    return surveys;
}

QXSC::SurveyResponseArray RecordingClient::GetSurveyResponses(const QString &deploymentGuid,
                                                              const QString &surveyGuid)
{
    record(QStringLiteral("GetSurveyResponses"), {deploymentGuid, surveyGuid});
    return surveyResponses.value(surveyGuid);
}

QList<QXSC::Deployment> RecordingClient::deployments(const QString &projectGuid)
{
    record(QStringLiteral("deployments"), {projectGuid});
    return projectDeployments.value(projectGuid);
}

} // namespace ZelTest
