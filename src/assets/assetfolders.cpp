// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The folder tree of an asset manager.

#include "assets/assetmanager.h"
#include "assets/assetmanagerparts.h"
#include "assets/qxnewassetfolder.h"
#include "platform/core/int16.h"
#include "platform/widgets/messageboxes.h"
#include "platform/widgets/treeview.h"

#include <QGroupBox>
#include <QPushButton>

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

constexpr int ClosedFolder = 1;
constexpr int OpenFolder = 2;

QString rootKey()
{
    return QStringLiteral("l0");
}

QString keyOf(qint16 folderId)
{
    return QLatin1Char('l') + QString::number(folderId);
}

void furnish(Zel::TreeView &tree, const QString &key, const QString &permissions)
{
    tree.setTag(key, permissions);
    tree.setExpanded(key, true);
    tree.setExpandedImage(key, OpenFolder);
}

} // namespace

void AssetManager::buildFolderTree()
{
    Zel::TreeView &tree = *m_parts->assetFolderView;
    tree.clear();
    const QPointer<AssetManager> self(this);
    const QXSC::AssetFolderCollectionPtr folders = client().GetAssetFolders(0);
    if (!self)
        return;
    if (folders) {
        for (const QXSC::AssetFolderRecordPtr &folder : *folders) {
            if (!folder)
                throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
            addFolder(*folder);
        }
    }
    refreshButtonStates();
}

void AssetManager::addFolder(const QXSC::AssetFolderRecord &folder)
{
    Zel::TreeView &tree = *m_parts->assetFolderView;
    const QString key = keyOf(folder.folderId);
    if (folder.folderId == 0) {
        tree.addNode({}, rootKey(), tr("All Folders"), ClosedFolder);
    } else if (!isRestricted(folder.folderName) && folder.permissions.contains(QLatin1Char('R'))) {
        if (folder.folderId == folder.parentId || !folder.hasParent) {
            tree.addNode(rootKey(), key, folder.folderName, ClosedFolder);
        } else {
            try {
                tree.addNode(keyOf(folder.parentId), key, folder.folderName, ClosedFolder);
            } catch (const Zel::RuntimeError &) {
                // Left out with its parent.
            }
        }
    }
    // Also for a record that was left out: it writes onto the node added last.
    if (const QString last = tree.lastAddedNode(); !last.isEmpty())
        furnish(tree, last, folder.permissions);
}

bool AssetManager::isRestricted(const QString &folderName) const
{
    return m_restrictedFolders &&
           std::find(m_restrictedFolders->begin(), m_restrictedFolders->end(), folderName) !=
               m_restrictedFolders->end();
}

QString AssetManager::selectedFolderKey() const
{
    const QString key = m_parts->assetFolderView->selectedNode();
    if (key.isEmpty())
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return key;
}

qint16 AssetManager::currentFolder() const
{
    return Zel::Int16::from(selectedFolderKey().mid(1).toInt()).value();
}

void AssetManager::selectFolder(const QString &key)
{
    const AssetManagerParts &parts = *m_parts;
    parts.deleteFolder->setEnabled(false);
    QString caption = tr("Assets in ") + parts.assetFolderView->text(key);
    // A frame would take a single one as the mark of its shortcut.
    caption.replace(QLatin1Char('&'), QStringLiteral("&&"));
    parts.assetListFrame->setTitle(caption);
    if (!listFolder(Zel::Int16::from(key.mid(1).toInt()).value()))
        return;
    parts.newAsset->setEnabled(true);
    parts.newFolder->setEnabled(true);
    refreshButtonStates();
    emit FolderSelected();
}

void AssetManager::newFolder()
{
    const QPointer<AssetManager> self(this);
    const QPointer<QXNewAssetFolder> form(&Zel::sharedForm<QXNewAssetFolder>());
    form->showModal(this);
    if (!self || !form || form->dialogResult() != 1)
        return;
    const QString name = form->folderName();
    const QString parentKey = selectedFolderKey();
    const qint16 folderId = client().CreateAssetFolder(currentFolder(), name);
    if (!self || folderId <= 0)
        return;
    Zel::TreeView &tree = *m_parts->assetFolderView;
    const QString key = keyOf(folderId);
    tree.addNode(parentKey, key, name, ClosedFolder);
    const QString permissions = client().GetFolderPermissions(folderId);
    if (!self)
        return;
    furnish(tree, key, permissions);
    tree.selectNode(key);
    selectFolder(key);
}

void AssetManager::deleteFolder()
{
    Zel::TreeView &tree = *m_parts->assetFolderView;
    const QString parentKey = tree.parentKey(selectedFolderKey());
    if (parentKey.isEmpty()) {
        Zel::informUser(this, tr("You can not delete the root folder"));
        return;
    }
    const QPointer<AssetManager> self(this);
    if (!Zel::askUser(this, tr("Are you sure you want to delete this folder?")) || !self)
        return;
    client().DeleteAssetFolder(currentFolder());
    if (!self)
        return;
    buildFolderTree();
    if (!self)
        return;
    tree.selectNode(parentKey);
    selectFolder(parentKey);
}

} // namespace ZelWebServiceControls
