// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QFrame;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QWidget;

namespace Zel {
class ListView;
class TreeView;
} // namespace Zel

namespace Studio {

/// The children of an asset manager Studio has to do with, found by their names.
struct AssetControls
{
    explicit AssetControls(const QWidget &manager);

    Zel::TreeView *tree;
    QGroupBox *listFrame;
    Zel::ListView *list;
    QPushButton *newFolder;
    QPushButton *deleteFolder;
    QPushButton *newAsset;
    QPushButton *deleteAsset;
    QPushButton *thumbnailMode;
    QPushButton *listMode;
    QGroupBox *newAssetFrame;
    QLineEdit *singleName;
    QLineEdit *singleDescription;
    QLineEdit *singleUrl;
    QPushButton *singleSave;
    QPushButton *singleCancel;
    QListWidget *batchList;
    QPushButton *removeBatch;
    QPushButton *batchSave;
    QPushButton *batchCancel;
    QFrame *progressFrame;
};

} // namespace Studio
