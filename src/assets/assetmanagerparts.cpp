// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The children of an asset manager and where they are.

#include "assets/assetmanagerparts.h"

#include "assets/asseticons.h"
#include "assets/assetmanager.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"

#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>

#include <limits>

namespace ZelWebServiceControls {

namespace {

/// Of the width, the share of the folders and that of the assets.
constexpr int FolderShare = 3;
constexpr int AssetShare = 7;

constexpr QSize PictureBoxSize(96, 96);

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QPushButton *makeButton(QWidget *parent, const char *name, const QString &text,
                        const QString &toolTip = QString())
{
    auto *button = named(new QPushButton(text, parent), name);
    // In a dialog around the control the Enter key is not for its buttons.
    button->setAutoDefault(false);
    button->setToolTip(toolTip);
    return button;
}

QFrame *makeFrame(QWidget *parent, const char *name)
{
    auto *frame = named(new QFrame(parent), name);
    frame->setFrameShape(QFrame::NoFrame);
    return frame;
}

QString tr(const char *text)
{
    return AssetManager::tr(text);
}

} // namespace

AssetManagerParts::AssetManagerParts(QWidget *parent)
{
    makeFolders(parent);
    makeList(parent);
    makePanel(parent);
    makeSingle();
    makeBatch();
    makeProgress();
    makeIcons(parent);
    arrange(parent);
}

void AssetManagerParts::makeFolders(QWidget *parent)
{
    assetFolderView = named(new Zel::TreeView(parent), "assetFolderView");
    assetFolderView->setAccessibleName(tr("Folders"));
    assetFolderView->setImages(AssetIcons::folders());
    newFolder =
        makeButton(parent, "newFolder", tr("New &Folder"), tr("Make a folder in the selected one"));
    deleteFolder = makeButton(parent, "deleteFolder", tr("Delete F&older"),
                              tr("Delete the selected folder, which has to be empty"));
}

void AssetManagerParts::makeList(QWidget *parent)
{
    assetListFrame = named(new QGroupBox(tr("Assets"), parent), "assetListFrame");
    assetList = named(new Zel::ListView(assetListFrame), "assetList");
    assetList->setAccessibleName(tr("Assets"));
    assetList->setEmptyText(tr("No assets"));
    assetList->addColumn(tr("Name"), 3600);
    assetList->addColumn(tr("Description"), 3300);
    assetList->addColumn(tr("Created"), 2400);
    assetList->setMultiSelect(true);
    assetList->setSmallImages(AssetIcons::all());
    assetList->setLargeIconSize(PictureBoxSize);
    assetList->setViewMode(Zel::ListView::ViewMode::Icon);
    thumbnailMode = makeButton(assetListFrame, "thumbnailMode", tr("&Thumbnails"),
                               tr("Show the assets as pictures"));
    listMode =
        makeButton(assetListFrame, "listMode", tr("&List"), tr("Show the assets as a table"));
    for (QPushButton *button : {thumbnailMode, listMode}) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
    }
    thumbnailMode->setChecked(true);
    newAsset = makeButton(assetListFrame, "newAsset", tr("New &Asset"),
                          tr("Upload files into the selected folder"));
    deleteAsset = makeButton(assetListFrame, "deleteAsset", tr("&Delete Asset"),
                             tr("Delete the selected assets"));

    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {thumbnailMode, listMode})
        buttons->addWidget(button);
    buttons->addStretch();
    for (QPushButton *button : {newAsset, deleteAsset})
        buttons->addWidget(button);
    auto *column = new QVBoxLayout(assetListFrame);
    column->addWidget(assetList, 1);
    column->addLayout(buttons);
    for (QPushButton *button : {newFolder, deleteFolder, newAsset, deleteAsset})
        button->setEnabled(false);
}

void AssetManagerParts::makePanel(QWidget *parent)
{
    newAssetFrame = named(new QGroupBox(tr("New Asset"), parent), "newAssetFrame");
    newAssetTabStrip = named(new QTabBar(newAssetFrame), "newAssetTabStrip");
    newAssetTabStrip->setDrawBase(true);
    newAssetTabStrip->setExpanding(false);
    newAssetTabStrip->addTab(tr("Single File"));
    newAssetTabStrip->addTab(tr("Batch"));
    newAssetTabStrip->setTabToolTip(0, tr("Creates one asset at a time"));
    newAssetTabStrip->setTabToolTip(1, tr("Creates multiple assets at once"));
    newAssetFrame->hide();
}

void AssetManagerParts::makeSingle()
{
    singleFrame = makeFrame(newAssetFrame, "singleFrame");
    auto *grid = new QGridLayout(singleFrame);
    grid->setContentsMargins({});
    const auto makeBox = [&](const char *name, const QString &caption, int row) {
        auto *label = new QLabel(caption, singleFrame);
        auto *box = named(new QLineEdit(singleFrame), name);
        box->setMaxLength(std::numeric_limits<int>::max());
        box->setAccessibleName(caption);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        return box;
    };
    singleNewAssetName = makeBox("singleNewAssetName", tr("Asset Name"), 0);
    singleNewAssetDescription = makeBox("singleNewAssetDescription", tr("Description"), 1);
    singleNewAssetUrl = makeBox("singleNewAssetUrl", tr("URL or File"), 2);
    singleNewAssetBrowse = makeButton(singleFrame, "singleNewAssetBrowse", tr("Browse"));
    singleNewAssetSave = makeButton(singleFrame, "singleNewAssetSave", tr("Save"));
    singleNewAssetSave->setEnabled(false);
    singleNewAssetCancel = makeButton(singleFrame, "singleNewAssetCancel", tr("Cancel"));
    grid->addWidget(singleNewAssetBrowse, 2, 2);
    grid->setRowStretch(4, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(singleNewAssetSave);
    buttons->addWidget(singleNewAssetCancel);
    grid->addLayout(buttons, 3, 0, 1, 3);
}

void AssetManagerParts::makeBatch()
{
    batchFrame = makeFrame(newAssetFrame, "batchFrame");
    batchList = named(new QListWidget(batchFrame), "batchList");
    batchList->setAccessibleName(tr("Files to upload"));
    batchList->setTextElideMode(Qt::ElideMiddle);
    batchList->setUniformItemSizes(true);
    addBatch = makeButton(batchFrame, "addBatch", tr("Add..."), tr("Choose files to upload"));
    removeBatch = makeButton(batchFrame, "removeBatch", tr("Remove"),
                             tr("Take the selected file off the list"));
    batchNewAssetSave = makeButton(batchFrame, "batchNewAssetSave", tr("Save"));
    batchNewAssetCancel = makeButton(batchFrame, "batchNewAssetCancel", tr("Cancel"));
    removeBatch->setEnabled(false);
    batchNewAssetSave->setEnabled(false);
    auto *side = new QVBoxLayout;
    side->addWidget(addBatch);
    side->addWidget(removeBatch);
    side->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(batchNewAssetSave);
    buttons->addWidget(batchNewAssetCancel);
    auto *grid = new QGridLayout(batchFrame);
    grid->setContentsMargins({});
    grid->addWidget(batchList, 0, 0);
    grid->addLayout(side, 0, 1);
    grid->addLayout(buttons, 1, 0, 1, 2);
    batchFrame->hide();
}

void AssetManagerParts::makeProgress()
{
    progressFrame = makeFrame(newAssetFrame, "progressFrame");
    auto *column = new QVBoxLayout(progressFrame);
    column->setContentsMargins({});
    auto *overall = new QLabel(tr("Overall Progress"), progressFrame);
    overallProgress = named(new QProgressBar(progressFrame), "overallProgress");
    overallProgress->setAccessibleName(overall->text());
    fileProgressTxt = named(new QLabel(tr("File Progress"), progressFrame), "fileProgressTxt");
    fileProgressTxt->setTextFormat(Qt::PlainText);
    // A long path must not widen the panel.
    fileProgressTxt->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    fileProgress = named(new QProgressBar(progressFrame), "fileProgress");
    fileProgress->setAccessibleName(tr("File Progress"));
    for (QWidget *widget :
         std::initializer_list<QWidget *>{overall, overallProgress, fileProgressTxt, fileProgress})
        column->addWidget(widget);
    for (QProgressBar *bar : {overallProgress, fileProgress}) {
        bar->setRange(0, 100);
        bar->setValue(0);
    }
    progressFrame->hide();
}

void AssetManagerParts::makeIcons(QWidget *parent)
{
    for (const QString &type : AssetIcons::types()) {
        auto *box = new QLabel(parent);
        box->setObjectName(QStringLiteral("icon_") + type);
        box->setPixmap(AssetIcons::icon(type).pixmap(PictureBoxSize, parent->devicePixelRatioF()));
        box->hide();
    }
}

void AssetManagerParts::arrange(QWidget *parent)
{
    auto *panel = new QVBoxLayout(newAssetFrame);
    panel->addWidget(newAssetTabStrip);
    panel->addWidget(singleFrame, 1);
    panel->addWidget(batchFrame, 1);
    panel->addWidget(progressFrame);

    auto *folderButtons = new QHBoxLayout;
    folderButtons->addWidget(newFolder);
    folderButtons->addWidget(deleteFolder);
    folderButtons->addStretch();
    auto *folders = new QVBoxLayout;
    folders->addWidget(assetFolderView, 1);
    folders->addLayout(folderButtons);

    auto *halves = new QHBoxLayout(parent);
    halves->addLayout(folders, FolderShare);
    halves->addWidget(assetListFrame, AssetShare);
    halves->addWidget(newAssetFrame, AssetShare);
}

} // namespace ZelWebServiceControls
