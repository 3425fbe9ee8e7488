// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/statsrecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// What happened in a deployment (a published event), and moderating what its audience asked.
///
/// Ranges are local date-times; both ends belong to the range. Counts are 16-bit: one above 32,767
/// is a run-time error 6 (overflow), never another number. A null collection means that the service
/// answered nothing.
class ZEL_EXPORT StatsOperations
{
public:
    virtual ~StatsOperations();

    /// "TotalPageHits" (a count) or "TotalPageViewTime" (seconds) of the page views in the range.
    virtual double GetDeploymentStatistic(const QString &deploymentGuid, const QDateTime &start,
                                          const QDateTime &end, const QString &name) = 0;
    /// How many different persons looked at pages in the range.
    virtual qint16 GetUniqueParticipantCount(const QString &deploymentGuid, const QDateTime &start,
                                             const QDateTime &end) = 0;
    /// All who registered for the deployment, whenever they did.
    virtual qint16 GetRegistrantCount(const QString &deploymentGuid) = 0;
    /// Registrants who looked at pages in the range.
    virtual qint16 GetRegisteredParticipantCount(const QString &deploymentGuid,
                                                 const QDateTime &start, const QDateTime &end) = 0;
    /// Registrants who looked at no page in the range.
    virtual qint16 GetRegisteredNonParticipantCount(const QString &deploymentGuid,
                                                    const QDateTime &start,
                                                    const QDateTime &end) = 0;
    /// Page views in the range whose attribute ("BrowserType", "JSVersion", "ScreenDepth") compares
    /// with the value; the one comparison is "=".
    virtual qint16 GetPageHitCountByAttribute(const QString &deploymentGuid, const QDateTime &start,
                                              const QDateTime &end, const QString &attribute,
                                              const QString &comparison, const QString &value) = 0;
    virtual ParticipantCollectionPtr GetParticipants(const QString &deploymentGuid,
                                                     const QDateTime &start,
                                                     const QDateTime &end) = 0;
    virtual RegistrantCollectionPtr
    GetRegistrants(const QString &deploymentGuid, const QDateTime &start, const QDateTime &end) = 0;
    virtual PageViewCollectionPtr GetPageViews(const QString &deploymentGuid,
                                               const QDateTime &start, const QDateTime &end) = 0;

    /// Questions asked from `start` on; an `end` that is not valid is left out: up to now.
    virtual QuestionCollectionPtr GetQuestions(const QString &deploymentGuid,
                                               const QDateTime &start, const QDateTime &end) = 0;
    /// Stores both texts as typed. The reserved texts are empty. Returns 0 when it was done, 1 when
    /// the service has no such question.
    virtual qint16 UpdateQuestion(const QString &questionGuid, const QString &answer,
                                  const QString &question, const QString &reserved1,
                                  const QString &reserved2) = 0;
    /// Moves a question to "STAGED", "RETRACT" or "DELETE". Returns as `UpdateQuestion` does.
    virtual qint16 SetQuestionStatus(const QString &questionGuid, const QString &status) = 0;
};

} // namespace QXSC
