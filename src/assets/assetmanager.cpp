// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetmanager.h"

#include "assets/asseticons.h"
#include "assets/assetmanagerparts.h"
#include "platform/pictures/pictureloader.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/messageboxes.h"
#include "platform/widgets/treeview.h"
#include "platform/widgets/twips.h"
#include "webcontrols/webimagelist.h"

#include <QAbstractItemModel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabBar>

namespace ZelWebServiceControls {

AssetManager::AssetManager(QWidget *parent)
    : Control(parent)
    , m_parts(std::make_unique<AssetManagerParts>(this))
    , m_thumbnails(std::make_unique<ZelWebControls::WebImageList>())
{
    m_thumbnails->setFailurePicture(AssetIcons::icon(QStringLiteral("Broken")));
    // A host's tab order takes part only when this control says that it takes the focus.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_parts->assetFolderView);
    connectUser();
}

AssetManager::~AssetManager()
{
    // The children go after the parts, and may still have something to tell.
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
}

QSize AssetManager::sizeHint() const
{
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(12600, dpi), Zel::pixelsFromTwips(7200, dpi));
}

void AssetManager::connectUser()
{
    const AssetManagerParts &parts = *m_parts;
    onUser(parts.assetFolderView, &Zel::TreeView::nodeClicked, &AssetManager::selectFolder);
    onUser(parts.newFolder, &QPushButton::clicked, &AssetManager::newFolder);
    onUser(parts.deleteFolder, &QPushButton::clicked, &AssetManager::deleteFolder);

    onUser(parts.assetList, &Zel::ListView::lineClicked, &AssetManager::raiseAssetSelected);
    onUser(parts.assetList, &Zel::ListView::selectionChanged, &AssetManager::selectionChanged);
    onUser(parts.assetList, &Zel::ListView::columnClicked, &AssetManager::sortByColumn);
    connect(m_thumbnails.get(), &ZelWebControls::WebImageList::arrived, this,
            &AssetManager::repaintThumbnail);
    onUser(parts.thumbnailMode, &QPushButton::clicked, &AssetManager::showThumbnails);
    onUser(parts.listMode, &QPushButton::clicked, &AssetManager::showTable);
    onUser(parts.deleteAsset, &QPushButton::clicked, &AssetManager::deleteAssets);

    onUser(parts.newAsset, &QPushButton::clicked, &AssetManager::openPanel);
    onUser(parts.newAssetTabStrip, &QTabBar::currentChanged, &AssetManager::showTab);
    onUser(parts.singleNewAssetName, &QLineEdit::textChanged, &AssetManager::refreshSingleSave);
    onUser(parts.singleNewAssetBrowse, &QPushButton::clicked, &AssetManager::browse);
    onUser(parts.singleNewAssetSave, &QPushButton::clicked, &AssetManager::saveSingle);
    onUser(parts.singleNewAssetCancel, &QPushButton::clicked, &AssetManager::closePanel);
    onUser(parts.addBatch, &QPushButton::clicked, &AssetManager::addToBatch);
    onUser(parts.removeBatch, &QPushButton::clicked, &AssetManager::removeFromBatch);
    onUser(parts.batchList, &QListWidget::itemSelectionChanged, &AssetManager::refreshBatchButtons);
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        onUser(parts.batchList->model(), change, &AssetManager::refreshBatchButtons);
    onUser(parts.batchNewAssetSave, &QPushButton::clicked, &AssetManager::saveBatch);
    onUser(parts.batchNewAssetCancel, &QPushButton::clicked, &AssetManager::closePanel);
}

void AssetManager::Init(QXSC::ServiceClient *m_qxs, const QString &allowedFormats,
                        const FolderNamesPtr &restrictedFolders)
{
    disconnect(m_progress);
    m_client = m_qxs;
    m_allowedFormats = allowedFormats;
    m_restrictedFolders = restrictedFolders;
    if (m_qxs)
        m_progress = connect(m_qxs, &QXSC::ServiceClient::CreateAssetFileProgress, this,
                             &AssetManager::showFileProgress);
    buildFolderTree();
}

QXSC::ServiceClient &AssetManager::client() const
{
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return *m_client;
}

QXSC::AssetRecordPtr AssetManager::getSelectedAsset()
{
    const qsizetype row = m_parts->assetList->selectedRow();
    return row < 0 ? nullptr : m_parts->assetList->tag(row).value<QXSC::AssetRecordPtr>();
}

QVariant AssetManager::getSelectedAssetGuid()
{
    const QXSC::AssetRecordPtr asset = getSelectedAsset();
    return asset ? asset->guid : QString();
}

bool AssetManager::IsValidImage(const QString &fname)
{
    if (Zel::PictureLoader::canRead(fname))
        return true;
    Zel::informUser(this,
                    tr("The image you have selected (%1) uses a format that cannot be read by "
                       "Studio")
                        .arg(fname),
                    tr("Invalid Image Format"));
    return false;
}

} // namespace ZelWebServiceControls
