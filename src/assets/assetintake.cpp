// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetintake.h"

#include "assets/assetmanager.h"
#include "assets/assetmanagerparts.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QScopedValueRollback>
#include <QTabBar>

namespace ZelWebServiceControls {

namespace {

constexpr int BatchTab = 1;

} // namespace

AssetIntake::AssetIntake(AssetManager &manager)
    : m_manager(&manager)
{
    manager.m_intake = this;
}

AssetIntake::~AssetIntake()
{
    if (m_manager && m_manager->m_intake == this)
        m_manager->m_intake = nullptr;
}

void AssetIntake::showFolder(const QString &key)
{
    if (!m_manager)
        return;
    m_manager->m_parts->assetFolderView->selectNode(key);
    m_manager->selectFolder(key);
}

void AssetIntake::relist()
{
    if (!m_manager || m_manager->m_parts->assetFolderView->selectedNode().isEmpty())
        return;
    if (m_manager->listFolder(m_manager->currentFolder()))
        m_manager->refreshButtonStates();
}

void AssetIntake::forget()
{
    if (!m_manager)
        return;
    const AssetManagerParts &parts = *m_manager->m_parts;
    QObject::disconnect(m_manager->m_progress);
    m_manager->m_client = nullptr;
    parts.assetFolderView->clear();
    (void)m_manager->showAssets(nullptr);
    parts.assetListFrame->setTitle(AssetManager::tr("Assets"));
    for (QLineEdit *box :
         {parts.singleNewAssetName, parts.singleNewAssetDescription, parts.singleNewAssetUrl})
        box->clear();
    parts.batchList->clear();
    endProgress();
    m_manager->closePanel();
    m_manager->refreshButtonStates();
}

void AssetIntake::openBatch()
{
    if (!m_manager)
        return;
    m_manager->m_parts->newAssetTabStrip->setCurrentIndex(BatchTab);
    if (m_manager->m_parts->newAssetFrame->isHidden())
        m_manager->openPanel();
}

void AssetIntake::addFiles(const QStringList &paths)
{
    if (m_manager)
        m_manager->m_parts->batchList->addItems(paths);
}

bool AssetIntake::saveBatch()
{
    if (!m_manager)
        return false;
    const QScopedValueRollback<bool> saving(m_isSaving, true);
    m_wasEnded = false;
    m_manager->saveBatch();
    return m_manager && !m_wasEnded;
}

void AssetIntake::endProgress()
{
    if (!m_manager)
        return;
    m_manager->m_parts->progressFrame->hide();
    m_manager->refreshSingleSave();
    m_manager->refreshBatchButtons();
}

void AssetIntake::finish()
{
    if (m_manager)
        (void)m_manager->finishUpload();
}

void AssetIntake::setAround(int before, int after)
{
    m_before = before;
    m_after = after;
}

void AssetIntake::saveRequested()
{
    saveBatch();
}

bool AssetIntake::mayUpload(int)
{
    return true;
}

void AssetIntake::uploaded(int) {}

} // namespace ZelWebServiceControls
