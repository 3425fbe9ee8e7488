// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetcontrols.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace Studio {

namespace {

template <typename Widget>
void find(const QWidget &manager, Widget *&child, const char *name)
{
    child = manager.findChild<Widget *>(QLatin1String(name));
    Q_ASSERT(child);
}

} // namespace

AssetControls::AssetControls(const QWidget &manager)
{
    find(manager, tree, "assetFolderView");
    find(manager, listFrame, "assetListFrame");
    find(manager, list, "assetList");
    find(manager, newFolder, "newFolder");
    find(manager, deleteFolder, "deleteFolder");
    find(manager, newAsset, "newAsset");
    find(manager, deleteAsset, "deleteAsset");
    find(manager, thumbnailMode, "thumbnailMode");
    find(manager, listMode, "listMode");
    find(manager, newAssetFrame, "newAssetFrame");
    find(manager, singleName, "singleNewAssetName");
    find(manager, singleDescription, "singleNewAssetDescription");
    find(manager, singleUrl, "singleNewAssetUrl");
    find(manager, singleSave, "singleNewAssetSave");
    find(manager, singleCancel, "singleNewAssetCancel");
    find(manager, batchList, "batchList");
    find(manager, removeBatch, "removeBatch");
    find(manager, batchSave, "batchNewAssetSave");
    find(manager, batchCancel, "batchNewAssetCancel");
    find(manager, progressFrame, "progressFrame");
}

} // namespace Studio
