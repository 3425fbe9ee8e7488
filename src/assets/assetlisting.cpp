// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The list of an asset manager: the assets of a folder, what may be done with them, deletion.

#include "assets/asseticons.h"
#include "assets/assetmanager.h"
#include "assets/assetmanagerparts.h"
#include "assets/assetrows.h"
#include "platform/core/int16.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/listsort.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/messageboxes.h"
#include "platform/widgets/treeview.h"
#include "platform/widgets/yielding.h"
#include "webcontrols/webimagelist.h"

#include <QPushButton>
#include <QScopeGuard>

namespace ZelWebServiceControls {

namespace {

/// The longest a listing waits for thumbnails.
constexpr std::chrono::seconds ThumbnailWait(3);

QString thumbnailKey(qsizetype position)
{
    return QString::number(position);
}

bool has(const QString &permissions, char letter)
{
    return permissions.contains(QLatin1Char(letter), Qt::CaseSensitive);
}

/// Error 6 when 16 bits do not count the assets, error 91 when one of them is none.
void requireCountable(const QXSC::AssetCollection &assets)
{
    Zel::Int16::from(assets.count());
    for (const QXSC::AssetRecordPtr &asset : assets) {
        if (!asset)
            throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    }
}

} // namespace

bool AssetManager::listFolder(qint16 folderId)
{
    const QPointer<AssetManager> self(this);
    const Zel::Hourglass hourglass(this);
    const bool hadFocus = m_parts->assetFolderView->hasFocus();
    m_parts->assetFolderView->setEnabled(false);
    m_listing = true;
    const auto done = qScopeGuard([self, hadFocus] {
        if (!self)
            return;
        self->m_listing = false;
        self->m_parts->assetFolderView->setEnabled(true);
        // What is disabled loses the keyboard; moving through the folders goes on where it was.
        if (hadFocus)
            self->m_parts->assetFolderView->setFocus();
    });
    QXSC::AssetCollectionPtr assets;
    client().GetFolderAssets(folderId, QString(), m_allowedFormats, 0, 0, assets);
    if (!self || !showAssets(assets))
        return false;
    m_parts->assetList->clearSelection();
    return true;
}

bool AssetManager::showAssets(const QXSC::AssetCollectionPtr &assets)
{
    Zel::ListView &list = *m_parts->assetList;
    list.clear();
    list.setLargeImages({});
    m_thumbnails->clear();
    if (!assets || assets->count() == 0)
        return true;
    requireCountable(*assets);
    requestThumbnails(*assets);
    const auto rows = std::make_shared<AssetRows>(assets);
    list.setRows(rows);
    const auto haveArrived = [this] { return m_thumbnails->hasAllArrived(); };
    if (!Zel::waitWhilePainting(this, ThumbnailWait, haveArrived))
        return false;
    // Somebody may have listed another folder while this one waited.
    if (list.rows() != rows.get())
        return true;
    rows->attachLargeIcons([this](qsizetype row) {
        const int index = m_thumbnails->indexOf(thumbnailKey(row + 1));
        return index < ZelWebControls::WebImageList::Absent ? index : 0;
    });
    list.setLargeImages(m_thumbnails->images());
    return true;
}

void AssetManager::requestThumbnails(const QXSC::AssetCollection &assets)
{
    const Zel::ListView &list = *m_parts->assetList;
    const QList<QIcon> icons = AssetIcons::all();
    m_thumbnails->setView(list.largeIconSize(), list.devicePixelRatioF());
    for (qsizetype i = 1; i <= assets.count(); ++i) {
        const QXSC::AssetRecord &asset = *assets.item(i);
        if (asset.thumbnailUrl.startsWith(QLatin1String("http")))
            m_thumbnails->addUrl(thumbnailKey(i), asset.thumbnailUrl);
        else
            m_thumbnails->addPicture(thumbnailKey(i),
                                     icons.at(AssetIcons::indexOf(asset.assetType) - 1));
    }
}

void AssetManager::repaintThumbnail(const QString &key)
{
    const Zel::ListView &list = *m_parts->assetList;
    const bool areShown = !list.model()->largeImages().isEmpty();
    if (areShown && list.viewMode() == Zel::ListView::ViewMode::Icon)
        list.viewport()->update(list.cellRect(key.toInt() - 1));
}

void AssetManager::refreshButtonStates()
{
    const AssetManagerParts &parts = *m_parts;
    const Zel::TreeView &tree = *parts.assetFolderView;
    const QString folder = tree.selectedNode();
    const bool selected = !folder.isEmpty();
    const QString permissions = selected ? tree.tag(folder).toString() : QString();
    parts.deleteAsset->setEnabled(parts.assetList->selectedCount() > 0 && has(permissions, 'D'));
    parts.newAsset->setEnabled(has(permissions, 'W'));
    parts.newFolder->setEnabled(has(permissions, 'W'));
    parts.deleteFolder->setEnabled(parts.assetList->count() == 0 && selected &&
                                   tree.childCount(folder) == 0 &&
                                   !tree.parentKey(folder).isEmpty() && has(permissions, 'D'));
}

void AssetManager::selectionChanged()
{
    // Not while a listing changes the selection: the states are refreshed after it. What a person
    // selects without a click (all lines, none by the ground) counts at once.
    if (!m_listing)
        refreshButtonStates();
}

void AssetManager::raiseAssetSelected()
{
    refreshButtonStates();
    emit AssetSelected();
}

void AssetManager::sortByColumn(int column)
{
    Zel::sortByHeaderClick(*m_parts->assetList, column);
}

void AssetManager::showThumbnails()
{
    m_parts->assetList->setViewMode(Zel::ListView::ViewMode::Icon);
}

void AssetManager::showTable()
{
    m_parts->assetList->setViewMode(Zel::ListView::ViewMode::Report);
}

void AssetManager::deleteAssets()
{
    const QPointer<AssetManager> self(this);
    const Zel::Hourglass hourglass(this);
    m_parts->deleteAsset->setEnabled(false);
    const Zel::ListView &list = *m_parts->assetList;
    QStringList guids;
    for (const qsizetype row : list.selectedRows())
        guids << list.tag(row).value<QXSC::AssetRecordPtr>()->guid;
    const QString phrase =
        guids.size() > 1 ? tr("these %1 assets").arg(guids.size()) : tr("this asset");
    const QString question =
        tr("Are you sure you want to delete %1? This action can not be undone.").arg(phrase);
    if (!Zel::askUser(this, question) || !self)
        return;
    for (const QString &guid : std::as_const(guids)) {
        client().DeleteAsset(guid);
        if (!self)
            return;
    }
    if (listFolder(currentFolder()))
        refreshButtonStates();
}

} // namespace ZelWebServiceControls
