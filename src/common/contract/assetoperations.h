// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/assetrecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// Browsing, uploading and deleting the assets of the active account. The service enforces the
/// rights of folders whatever a client asks.
class ZEL_EXPORT AssetOperations
{
public:
    virtual ~AssetOperations();

    /// All folders of the user below `parentId` (0: all), the root among them, parents before their
    /// children. Null when the service answers nothing.
    virtual AssetFolderCollectionPtr GetAssetFolders(qint16 parentId) = 0;
    /// The assets of one folder. `formats` is a list of extensions without dot, parted by commas;
    /// empty or "0" means every format. `nameFilter` empty and `first` and `count` 0 mean no limit.
    virtual void GetFolderAssets(qint16 folderId, const QString &nameFilter, const QString &formats,
                                 qint32 first, qint32 count, AssetCollectionPtr &assets) = 0;
    /// Uploads the files and makes one asset of them; returns its guid. `keywords`, `reserved` are
    /// empty and `dependencies` is null here. Progress is reported meanwhile by
    /// `ServiceClient::CreateAssetFileProgress`. Nothing is listed until all is there.
    virtual QString CreateAsset(const QString &name, const QString &description, qint16 folderId,
                                const AssetFileCollectionPtr &files, const QString &keywords,
                                const QString &reserved,
                                const AssetFileCollectionPtr &dependencies) = 0;
    /// Makes a folder below `parentId` and returns its id; 0 or less: nothing was made.
    virtual qint16 CreateAssetFolder(qint16 parentId, const QString &name) = 0;
    /// The letters of a folder, see `AssetFolderRecord::permissions`.
    virtual QString GetFolderPermissions(qint16 folderId) = 0;
    /// Deletes an empty folder.
    virtual void DeleteAssetFolder(qint16 folderId) = 0;
    virtual void DeleteAsset(const QString &guid) = 0;
    /// What a field shows and stores for a picked asset: the address under which the service gives
    /// its bytes, relative to the service ("/a/..."), so that it holds wherever the service moves.
    virtual QString GetAssetValue(const QString &guid) = 0;
};

} // namespace QXSC
