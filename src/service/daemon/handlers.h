// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

namespace Zel::Service {

// The handlers of the route table. Each reads its call, asks the store and answers; a refusal is a
// thrown `Problem`.

HttpResponse health(const Call &call);
HttpResponse interfaceDocument(const Call &call);
HttpResponse readiness(const Call &call);
HttpResponse metrics(const Call &call);

HttpResponse createSession(const Call &call);
HttpResponse endSession(const Call &call);
HttpResponse chooseAccount(const Call &call);
HttpResponse listAccounts(const Call &call);

HttpResponse listProjectTypes(const Call &call);
HttpResponse listProjects(const Call &call);
HttpResponse createProject(const Call &call);
HttpResponse projectPublished(const Call &call);

HttpResponse listAssetFolders(const Call &call);
HttpResponse createAssetFolder(const Call &call);
HttpResponse deleteAssetFolder(const Call &call);
HttpResponse folderPermissions(const Call &call);

HttpResponse listAssets(const Call &call);
HttpResponse deleteAsset(const Call &call);
HttpResponse assetValue(const Call &call);
HttpResponse assetBytes(const Call &call);
HttpResponse assetFileBytes(const Call &call);
HttpResponse assetThumbnail(const Call &call);

HttpResponse listThemes(const Call &call);
HttpResponse findTemplate(const Call &call);
HttpResponse themePreview(const Call &call);

HttpResponse dataRecord(const Call &call);
std::shared_ptr<BodySink> saveDataRecord(const Call &call);

HttpResponse listDeployments(const Call &call);
HttpResponse deploymentStatistic(const Call &call);
HttpResponse countParticipants(const Call &call);
HttpResponse countRegistrants(const Call &call);
HttpResponse countPageViews(const Call &call);
HttpResponse listParticipants(const Call &call);
HttpResponse listRegistrants(const Call &call);
HttpResponse listPageViews(const Call &call);

HttpResponse listQuestions(const Call &call);
HttpResponse updateQuestion(const Call &call);
HttpResponse setQuestionStatus(const Call &call);

HttpResponse listPolls(const Call &call);
HttpResponse listPollResponses(const Call &call);
HttpResponse listSurveys(const Call &call);
HttpResponse listSurveyResponses(const Call &call);

std::shared_ptr<BodySink> postPageViews(const Call &call);
std::shared_ptr<BodySink> postRegistrations(const Call &call);
std::shared_ptr<BodySink> postQuestions(const Call &call);
std::shared_ptr<BodySink> postQuestionStates(const Call &call);
std::shared_ptr<BodySink> postVotes(const Call &call);
std::shared_ptr<BodySink> postResponses(const Call &call);

HttpResponse componentFile(const Call &call);

HttpResponse reserveUpload(const Call &call);
std::shared_ptr<BodySink> takeUploadChunk(const Call &call);
HttpResponse commitUpload(const Call &call);
HttpResponse dropUpload(const Call &call);

} // namespace Zel::Service
