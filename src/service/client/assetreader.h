// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/assetrecord.h"

#include <QByteArray>
#include <QJsonObject>

namespace QXSC {

/// A reserved upload.
struct UploadTicket
{
    QByteArray id;
    qint64 chunk = 0; ///< the most bytes of one piece
};

// The records of assets from the bodies of answers; see recordreader.h.

/// Null when the service says null.
AssetFolderCollectionPtr readAssetFolders(const QByteArray &body);
AssetCollectionPtr readAssets(const QJsonObject &answer);
qint16 readFolderId(const QByteArray &body);
QString readPermissions(const QByteArray &body);
QString readAssetValue(const QByteArray &body);
QString readAssetGuid(const QByteArray &body);
UploadTicket readUploadTicket(const QByteArray &body);
/// How much of a file the service has.
qint64 readReceived(const QByteArray &body);

} // namespace QXSC
