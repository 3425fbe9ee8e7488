// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The asset operations of the recording client.

#include "testsupport/recordingclient.h"

namespace ZelTest {

QXSC::AssetFolderCollectionPtr RecordingClient::GetAssetFolders(qint16 parentId)
{
    record(QStringLiteral("GetAssetFolders"), {parentId});
    return assetFolders;
}

void RecordingClient::GetFolderAssets(qint16 folderId, const QString &nameFilter,
                                      const QString &formats, qint32 first, qint32 count,
                                      QXSC::AssetCollectionPtr &assets)
{
    record(QStringLiteral("GetFolderAssets"), {folderId, nameFilter, formats, first, count});
    assets = folderAssets.value(folderId, std::make_shared<QXSC::AssetCollection>());
}

QString RecordingClient::CreateAsset(const QString &name, const QString &description,
                                     qint16 folderId, const QXSC::AssetFileCollectionPtr &files,
                                     const QString &keywords, const QString &reserved,
                                     const QXSC::AssetFileCollectionPtr &dependencies)
{
    QStringList paths;
    for (const QXSC::AssetFileEntryPtr &file : *files)
        paths << file->localPath;
    record(QStringLiteral("CreateAsset"),
           {name, description, folderId, paths.join(QLatin1Char('|')), keywords, reserved,
            dependencies ? QStringLiteral("some") : QString()});
    for (const QString &path : std::as_const(paths)) {
        for (const qint32 percent : std::as_const(uploadProgress))
            emit CreateAssetFileProgress(percent, path);
    }
    return createdAsset;
}

qint16 RecordingClient::CreateAssetFolder(qint16 parentId, const QString &name)
{
    record(QStringLiteral("CreateAssetFolder"), {parentId, name});
    return createdFolder;
}

QString RecordingClient::GetFolderPermissions(qint16 folderId)
{
    record(QStringLiteral("GetFolderPermissions"), {folderId});
    return folderPermissions.value(folderId);
}

void RecordingClient::DeleteAssetFolder(qint16 folderId)
{
    record(QStringLiteral("DeleteAssetFolder"), {folderId});
}

void RecordingClient::DeleteAsset(const QString &guid)
{
    record(QStringLiteral("DeleteAsset"), {guid});
}

QString RecordingClient::GetAssetValue(const QString &guid)
{
    record(QStringLiteral("GetAssetValue"), {guid});
    return assetValues.value(guid);
}

QString RecordingClient::assetAddress(const QString &guid)
{
    record(QStringLiteral("assetAddress"), {guid});
    return assetAddresses.value(guid);
}

QXSC::AssetFolderCollectionPtr assetFolderList(const QList<QXSC::AssetFolderRecord> &folders)
{
    auto list = std::make_shared<QXSC::AssetFolderCollection>();
    for (const QXSC::AssetFolderRecord &folder : folders)
        list->add(std::make_shared<QXSC::AssetFolderRecord>(folder));
    return list;
}

QXSC::AssetCollectionPtr assetList(const QList<QXSC::AssetRecord> &assets)
{
    auto list = std::make_shared<QXSC::AssetCollection>();
    for (const QXSC::AssetRecord &asset : assets)
        list->add(std::make_shared<QXSC::AssetRecord>(asset));
    return list;
}

} // namespace ZelTest
