// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/everycall.h"

#include "tests/contract/contracttest.h"

#include <QTest>

using namespace QXSC;

namespace ZelTest {

namespace {

const QString missing = QStringLiteral("NotFound/not-found");

QDateTime early()
{
    return QDateTime(QDate(2000, 1, 1), QTime(0, 0));
}

QDateTime late()
{
    return QDateTime(QDate(2100, 1, 1), QTime(0, 0));
}

QList<NamedCall> sessionCalls()
{
    return {
        {"getAccounts", [](Client &client) { accountsOf(client); }, QStringLiteral("none"), false},
        {"setActiveAccount",
         [](Client &client) { chooseAccount(client, QString::number(contractStudio)); },
         QStringLiteral("none"), false},
        {"getProjectList", [](Client &client) { projectsOf(client, QStringLiteral("session")); }},
        {"isProjectPublished", [](Client &client) { isPublished(client, newGuid()); }, missing},
        {"projectTypes", [](Client &client) { client.projectTypes(); }},
        {"createProject", [](Client &client) { client.createProject(newProject()); }},
        {"deployments", [](Client &client) { client.deployments(newGuid()); }},
    };
}

QList<NamedCall> themeCalls()
{
    return {
        {"callListMethod",
         [](Client &client) {
             ThemeCollectionPtr themes;
             client.callListMethod(QStringLiteral("Studio"),
                                   QStringLiteral("getFullThemeList_Array"), themes);
         }},
        {"getTemplate",
         [](Client &client) {
             TemplateRecordPtr record;
             client.getTemplate(QStringLiteral("player"), QStringLiteral("2"), record);
         }},
        {"GetThemeDataRecord", [](Client &client) { client.GetThemeDataRecord(newGuid()); }},
        {"saveThemeDataRecord",
         [](Client &client) { client.saveThemeDataRecord(newGuid(), DataRecord()); }, missing},
    };
}

void createAsset(Client &client)
{
    auto files = std::make_shared<AssetFileCollection>();
    files->add(std::make_shared<AssetFileEntry>(
        AssetFileEntry{ContractTest::workspaceFolder() + QStringLiteral("/people.json")}));
    client.CreateAsset(QStringLiteral("An asset"), QString(), 0, files, QString(), QString(),
                       nullptr);
}

QList<NamedCall> assetCalls()
{
    return {
        {"GetAssetFolders", [](Client &client) { client.GetAssetFolders(0); }},
        {"GetFolderAssets",
         [](Client &client) {
             AssetCollectionPtr assets;
             client.GetFolderAssets(0, QString(), QString(), 0, 0, assets);
         }},
        {"CreateAsset", createAsset},
        {"CreateAssetFolder", [](Client &client) { client.CreateAssetFolder(0, newGuid()); }},
        {"GetFolderPermissions", [](Client &client) { client.GetFolderPermissions(0); }},
        {"DeleteAssetFolder", [](Client &client) { client.DeleteAssetFolder(32000); }, missing},
        {"DeleteAsset", [](Client &client) { client.DeleteAsset(newGuid()); }, missing},
        {"GetAssetValue", [](Client &client) { client.GetAssetValue(newGuid()); }, missing},
        {"assetAddress", [](Client &client) { client.assetAddress(newGuid()); }, missing},
    };
}

QList<NamedCall> statisticsCalls()
{
    return {
        {"GetDeploymentStatistic",
         [](Client &client) {
             client.GetDeploymentStatistic(newGuid(), early(), late(),
                                           QStringLiteral("TotalPageHits"));
         },
         missing},
        {"GetUniqueParticipantCount",
         [](Client &client) { client.GetUniqueParticipantCount(newGuid(), early(), late()); },
         missing},
        {"GetRegistrantCount", [](Client &client) { client.GetRegistrantCount(newGuid()); },
         missing},
        {"GetRegisteredParticipantCount",
         [](Client &client) { client.GetRegisteredParticipantCount(newGuid(), early(), late()); },
         missing},
        {"GetRegisteredNonParticipantCount",
         [](Client &client) {
             client.GetRegisteredNonParticipantCount(newGuid(), early(), late());
         },
         missing},
        {"GetPageHitCountByAttribute",
         [](Client &client) {
             client.GetPageHitCountByAttribute(newGuid(), early(), late(),
                                               QStringLiteral("JSVersion"), QStringLiteral("="),
                                               QStringLiteral("1.3"));
         },
         missing},
        {"GetParticipants",
         [](Client &client) { client.GetParticipants(newGuid(), early(), late()); }, missing},
        {"GetRegistrants",
         [](Client &client) { client.GetRegistrants(newGuid(), early(), late()); }, missing},
        {"GetPageViews", [](Client &client) { client.GetPageViews(newGuid(), early(), late()); },
         missing},
        {"GetQuestions", [](Client &client) { client.GetQuestions(newGuid(), early(), late()); },
         missing},
        // One that is not there is an answer here; a failure must not pass for it.
        {"UpdateQuestion",
         [](Client &client) {
             if (client.UpdateQuestion(newGuid(), QString(), QString(), QString(), QString()) != 1)
                 throw std::runtime_error("there is no such question");
         }},
        {"SetQuestionStatus",
         [](Client &client) {
             if (client.SetQuestionStatus(newGuid(), QStringLiteral("STAGED")) != 1)
                 throw std::runtime_error("there is no such question");
         }},
    };
}

QList<NamedCall> resultsCalls()
{
    return {
        {"GetPolls", [](Client &client) { client.GetPolls(newGuid()); }, missing},
        {"GetPollResponses", [](Client &client) { client.GetPollResponses(newGuid()); }, missing},
        {"GetSurveys", [](Client &client) { client.GetSurveys(newGuid()); }, missing},
        {"GetSurveyResponses",
         [](Client &client) { client.GetSurveyResponses(newGuid(), newGuid()); }, missing},
    };
}

} // namespace

const QList<NamedCall> &everyCall()
{
    static const QList<NamedCall> calls =
        sessionCalls() + themeCalls() + assetCalls() + statisticsCalls() + resultsCalls();
    return calls;
}

void addEveryCall()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("ending");
    for (const NamedCall &one : everyCall())
        QTest::newRow(one.name) << one.call << one.ending;
}

} // namespace ZelTest
