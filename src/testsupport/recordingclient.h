// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "common/contract/studioservice.h"
#include "platform/core/export.h"

#include <QHash>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

namespace ZelTest {

/// A service client without a service: it keeps every call with its arguments, in order, and
/// answers as scripted.
///
///     RecordingClient client;
///     client.accounts = accountList({{"Aurora", 7}});
///     login->Init(&client, "Studio");
///     ...
///     QCOMPARE(client.calls(), QStringList{"getAccounts()"});
///
/// Answer members are public and may be changed between calls; a null pointer answers nothing.
/// `failNext` makes the next call of an operation throw. `atCall` runs at the moment of every call,
/// before the answer, to look at the user interface or to change it.
class ZEL_EXPORT RecordingClient : public QXSC::ServiceClient, public QXSC::StudioService
{
    Q_OBJECT

public:
    explicit RecordingClient(QObject *parent = nullptr);
    ~RecordingClient() override;

    // Scripted answers.
    bool authenticated = true;
    QXSC::AccountCollectionPtr accounts = std::make_shared<QXSC::AccountCollection>();
    bool accountAccepted = true;
    QXSC::ProjectCollectionPtr projects = std::make_shared<QXSC::ProjectCollection>();
    /// Published state by guid; a guid that is not in it is not published.
    QHash<QString, bool> published;
    QList<QXSC::ProjectType> types;
    QXSC::AssetFolderCollectionPtr assetFolders = std::make_shared<QXSC::AssetFolderCollection>();
    /// Assets by folder; a folder that is not in it answers an empty collection.
    QHash<qint16, QXSC::AssetCollectionPtr> folderAssets;
    /// What `CreateAsset` returns.
    QString createdAsset = QStringLiteral("new-asset");
    /// What `CreateAssetFolder` returns.
    qint16 createdFolder = 0;
    QHash<qint16, QString> folderPermissions;
    QHash<QString, QString> assetValues;
    QHash<QString, QString> assetAddresses;
    /// Percentages reported for each file of `CreateAsset`, in order.
    QList<qint32> uploadProgress{0, 50, 100};
    /// Lists of themes by the method that names them; a method that is not in it answers nothing.
    QHash<QString, QXSC::ThemeCollectionPtr> themeLists;
    /// Templates by their two keys; keys that are not in it answer nothing.
    QHash<std::pair<QString, QString>, QXSC::TemplateRecordPtr> templates;

    /// Called with the text of each call.
    std::function<void(const QString &call)> atCall;

    /// Makes the next call of `operation` ("getProjectList") throw a copy of `error`.
    void failNext(const QString &operation, const Zel::RuntimeError &error);

    /// The calls so far: the operation's name and its in-arguments, texts in quotes, booleans as
    /// True and False: `setActiveAccount("7")`.
    QStringList calls() const { return m_calls; }

    /// The calls since the last `takeCalls`.
    QStringList takeCalls();

    void authenticate(const QString &serverAddress, const QString &userName,
                      const QString &password, const QString &appName, const QString &reserved,
                      bool useProxy, bool reservedFlag, bool &success) override;
    void getAccounts(QXSC::AccountCollectionPtr &result) override;
    void setActiveAccount(const QString &accountNumber, bool &success) override;
    void getProjectList(const QString &projectType, QXSC::ProjectCollectionPtr &result) override;
    void isProjectPublished(const QString &guid, const QString &reserved, bool &result) override;

    QXSC::AssetFolderCollectionPtr GetAssetFolders(qint16 parentId) override;
    void GetFolderAssets(qint16 folderId, const QString &nameFilter, const QString &formats,
                         qint32 first, qint32 count, QXSC::AssetCollectionPtr &assets) override;
    QString CreateAsset(const QString &name, const QString &description, qint16 folderId,
                        const QXSC::AssetFileCollectionPtr &files, const QString &keywords,
                        const QString &reserved,
                        const QXSC::AssetFileCollectionPtr &dependencies) override;
    qint16 CreateAssetFolder(qint16 parentId, const QString &name) override;
    QString GetFolderPermissions(qint16 folderId) override;
    void DeleteAssetFolder(qint16 folderId) override;
    void DeleteAsset(const QString &guid) override;
    QString GetAssetValue(const QString &guid) override;

    void callListMethod(const QString &applicationKind, const QString &methodName,
                        QXSC::ThemeCollectionPtr &list) override;
    void getTemplate(const QString &templateKey, const QString &templateVersionKey,
                     QXSC::TemplateRecordPtr &result) override;

    QList<QXSC::ProjectType> projectTypes() override;
    QXSC::ProjectRecordPtr createProject(const QXSC::NewProject &project) override;
    QString assetAddress(const QString &guid) override;
    void signOut() override;

protected:
    /// Records a call, runs `atCall`, throws what `failNext` prepared. For derived clients too.
    void record(const QString &operation, const QVariantList &arguments = {});

private:
    QStringList m_calls;
    QHash<QString, std::shared_ptr<Zel::RuntimeError>> m_failures;
};

/// A collection of accounts.
ZEL_EXPORT QXSC::AccountCollectionPtr accountList(const QList<QXSC::AccountRecord> &accounts);

/// A collection of folders.
ZEL_EXPORT QXSC::AssetFolderCollectionPtr
assetFolderList(const QList<QXSC::AssetFolderRecord> &folders);

/// A collection of assets.
ZEL_EXPORT QXSC::AssetCollectionPtr assetList(const QList<QXSC::AssetRecord> &assets);

/// A collection of themes; those that have no template entries get an empty collection of them.
ZEL_EXPORT QXSC::ThemeCollectionPtr themeList(const QList<QXSC::ThemeRecord> &themes);

/// A collection of template entries.
ZEL_EXPORT QXSC::ThemeTemplateCollectionPtr
themeTemplates(const QList<QXSC::ThemeTemplate> &templates);

/// A collection of projects.
ZEL_EXPORT QXSC::ProjectCollectionPtr projectList(const QList<QXSC::ProjectRecord> &projects);

} // namespace ZelTest
