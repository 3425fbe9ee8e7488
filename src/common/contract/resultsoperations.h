// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// What a deployment's polls, surveys and quizzes brought, over all time. A null collection means
/// that the service answered nothing.
class ZEL_EXPORT ResultsOperations
{
public:
    virtual ~ResultsOperations();

    virtual PollQuestionCollectionPtr GetPolls(const QString &deploymentGuid) = 0;
    virtual PollResponseArray GetPollResponses(const QString &deploymentGuid) = 0;
    virtual SurveyCollectionPtr GetSurveys(const QString &deploymentGuid) = 0;
    virtual SurveyResponseArray GetSurveyResponses(const QString &deploymentGuid,
                                                   const QString &surveyGuid) = 0;
};

} // namespace QXSC
