// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/foldernames.h"
#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"

#include <QPointer>

#include <memory>

namespace ZelWebControls {
class WebImageList;
} // namespace ZelWebControls

namespace ZelWebServiceControls {

class AssetIntake;
struct AssetManagerParts;

/// Shows the folders of the account's assets as a tree and the assets of the selected folder beside
/// it, as thumbnails or as a table; makes and deletes folders, uploads and deletes assets.
///
///     auto *assets = new AssetManager(this);
///     connect(assets, &AssetManager::AssetSelected, this, &Window::showAsset);
///     assets->Init(&client, "jpg,png");
///
/// Folders need "R" among their permissions to be shown; "W" enables making folders and assets in
/// them, "D" deleting. A folder whose parent is not shown is left out. The service has the last
/// word on rights.
///
/// Thumbnails come from `WebImageSource::shared()`. A listing waits for them for 3 s at the most,
/// while windows are painted and may be closed; later ones appear when they arrive.
///
/// Only files that can be read as pictures can be uploaded here, one at a time or as a batch of at
/// most 328 (error 6 beyond, after 328 of them). Without a client, or after it is gone, whatever
/// needs it fails with error 91.
class ZEL_EXPORT AssetManager : public Zel::Control
{
    Q_OBJECT

public:
    explicit AssetManager(QWidget *parent = nullptr);
    ~AssetManager() override;

    /// Keeps all three and builds the folder tree.
    ///
    /// @param allowedFormats extensions without dot, parted by commas; empty allows every format
    /// @param restrictedFolders names of folders that are left out of the tree with all below them
    Q_INVOKABLE void Init(QXSC::ServiceClient *m_qxs, const QString &allowedFormats = QString(),
                          const ZelWebServiceControls::FolderNamesPtr &restrictedFolders = {});
    /// The guid of the selected asset as text, empty when none is selected.
    Q_INVOKABLE QVariant getSelectedAssetGuid();
    /// The record of the selected asset, null when none is selected.
    Q_INVOKABLE QXSC::AssetRecordPtr getSelectedAsset();
    /// Whether a file can be read as a picture. Says so in a message box when it cannot.
    Q_INVOKABLE bool IsValidImage(const QString &fname);

    QSize sizeHint() const override;

signals:
    /// The user has clicked an asset.
    void AssetSelected();
    /// The user has clicked a folder.
    void FolderSelected();

private:
    friend class AssetIntake;

    QXSC::ServiceClient &client() const;
    void connectUser();

    // Folders
    void buildFolderTree();
    void addFolder(const QXSC::AssetFolderRecord &folder);
    bool isRestricted(const QString &folderName) const;
    void selectFolder(const QString &key);
    QString selectedFolderKey() const;
    qint16 currentFolder() const;
    void newFolder();
    void deleteFolder();

    // Listing
    [[nodiscard]] bool listFolder(qint16 folderId);
    [[nodiscard]] bool showAssets(const QXSC::AssetCollectionPtr &assets);
    void requestThumbnails(const QXSC::AssetCollection &assets);
    void repaintThumbnail(const QString &key);
    void refreshButtonStates();
    void selectionChanged();
    void raiseAssetSelected();
    void sortByColumn(int column);
    void showThumbnails();
    void showTable();
    void deleteAssets();

    // The panel for new assets
    void openPanel();
    void closePanel();
    void showTab(int tab);
    QString chooseFiles(bool several);
    void browse();
    void refreshSingleSave();
    void addToBatch();
    void removeFromBatch();
    void refreshBatchButtons();

    // Uploading
    void saveSingle();
    void saveBatch();
    [[nodiscard]] bool uploadEntry(int index);
    [[nodiscard]] bool finishUpload();
    void upload(const QString &name, const QString &description, const QString &path);
    void showProgressFrame();
    void showFileProgress(qint32 percentComplete, const QString &filename);

    QPointer<QXSC::ServiceClient> m_client;
    QMetaObject::Connection m_progress;
    QString m_allowedFormats;
    FolderNamesPtr m_restrictedFolders;
    std::unique_ptr<AssetManagerParts> m_parts;
    std::unique_ptr<ZelWebControls::WebImageList> m_thumbnails;
    bool m_listing = false;
    bool m_savingBatch = false;
    AssetIntake *m_intake = nullptr;
};

} // namespace ZelWebServiceControls
