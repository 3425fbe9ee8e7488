// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <memory>

namespace QXSC {

/// One folder of the account's assets.
struct AssetFolderRecord
{
    /// 0 is the root.
    qint16 folderId = 0;
    qint16 parentId = 0;
    /// False when the folder hangs directly under the root.
    bool hasParent = false;
    QString folderName;
    /// Letters: "R" may be listed, "W" assets and folders may be made in it, "D" its assets and the
    /// folder itself may be deleted. Order and other letters do not matter.
    QString permissions;
};

using AssetFolderRecordPtr = std::shared_ptr<const AssetFolderRecord>;
using AssetFolderCollection = Zel::Collection<AssetFolderRecordPtr>;
using AssetFolderCollectionPtr = std::shared_ptr<const AssetFolderCollection>;

/// One asset.
struct AssetRecord
{
    QString guid;
    QString assetName;
    QString assetDetail;
    /// Local date-time of its making.
    QDateTime assetDate;
    /// An address that begins with "http" when the service has a thumbnail, else empty or anything.
    QString thumbnailUrl;
    /// "Image", "Audio", "Video", "XML", "Text", "pdf", "Document", "Presentation", "Animation" or
    /// another word.
    QString assetType;
};

using AssetRecordPtr = std::shared_ptr<const AssetRecord>;
using AssetCollection = Zel::Collection<AssetRecordPtr>;
using AssetCollectionPtr = std::shared_ptr<const AssetCollection>;

/// One file to upload with a new asset.
struct AssetFileEntry
{
    /// The whole local path.
    QString localPath;
};

using AssetFileEntryPtr = std::shared_ptr<const AssetFileEntry>;
using AssetFileCollection = Zel::Collection<AssetFileEntryPtr>;
using AssetFileCollectionPtr = std::shared_ptr<const AssetFileCollection>;

} // namespace QXSC

Q_DECLARE_METATYPE(QXSC::AssetRecordPtr)
