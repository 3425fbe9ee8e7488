// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QTabBar;
class QWidget;

namespace Zel {
class ListView;
class TreeView;
} // namespace Zel

namespace ZelWebServiceControls {

/// The child controls of an asset manager, under the names hosts find them by.
struct AssetManagerParts
{
    /// Makes and arranges them in `parent`.
    explicit AssetManagerParts(QWidget *parent);

    Zel::TreeView *assetFolderView;
    QPushButton *newFolder;
    QPushButton *deleteFolder;

    QGroupBox *assetListFrame;
    Zel::ListView *assetList;
    QPushButton *thumbnailMode;
    QPushButton *listMode;
    QPushButton *newAsset;
    QPushButton *deleteAsset;

    QGroupBox *newAssetFrame;
    QTabBar *newAssetTabStrip;

    QFrame *singleFrame;
    QLineEdit *singleNewAssetName;
    QLineEdit *singleNewAssetDescription;
    QLineEdit *singleNewAssetUrl;
    QPushButton *singleNewAssetBrowse;
    QPushButton *singleNewAssetSave;
    QPushButton *singleNewAssetCancel;

    QFrame *batchFrame;
    QListWidget *batchList;
    QPushButton *addBatch;
    QPushButton *removeBatch;
    QPushButton *batchNewAssetSave;
    QPushButton *batchNewAssetCancel;

    QFrame *progressFrame;
    QProgressBar *overallProgress;
    QProgressBar *fileProgress;
    QLabel *fileProgressTxt;

private:
    void makeFolders(QWidget *parent);
    void makeList(QWidget *parent);
    void makePanel(QWidget *parent);
    void makeSingle();
    void makeBatch();
    void makeProgress();
    void makeIcons(QWidget *parent);
    void arrange(QWidget *parent);
};

} // namespace ZelWebServiceControls
