// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The panel for new assets: choosing files, one or a batch of them.

#include "assets/assetfilter.h"
#include "assets/assetmanager.h"
#include "assets/assetmanagerparts.h"
#include "common/common.h"
#include "platform/widgets/commondialog.h"

#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabBar>

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

constexpr int SingleTab = 0;

/// The paths in a dialog's answer: one, or a folder and the names in it.
QStringList pathsIn(const QString &answer)
{
    QStringList parts = answer.split(QChar(u'\0'));
    if (parts.size() == 1)
        return parts;
    QString folder = parts.takeFirst();
    if (!folder.endsWith(QDir::separator()))
        folder += QDir::separator();
    for (QString &part : parts)
        part.prepend(folder);
    return parts;
}

} // namespace

void AssetManager::openPanel()
{
    const AssetManagerParts &parts = *m_parts;
    for (QLineEdit *box :
         {parts.singleNewAssetName, parts.singleNewAssetDescription, parts.singleNewAssetUrl})
        box->clear();
    parts.newAssetFrame->show();
    parts.assetListFrame->hide();
    if (parts.newAssetTabStrip->currentIndex() == SingleTab)
        parts.singleNewAssetName->setFocus();
}

void AssetManager::closePanel()
{
    m_parts->newAssetFrame->hide();
    m_parts->assetListFrame->show();
}

void AssetManager::showTab(int tab)
{
    m_parts->singleFrame->setVisible(tab == SingleTab);
    m_parts->batchFrame->setVisible(tab != SingleTab);
}

QString AssetManager::chooseFiles(bool several)
{
    Zel::CommonDialog dialog(this);
    try {
        return Common::ShowOpenFileDialog(dialog, tr("Select Asset"), QStringLiteral("*.*"),
                                          assetFilterText(m_allowedFormats), QString(), several);
    } catch (const Zel::RuntimeError &error) {
        if (error.number() != Zel::RuntimeError::DialogCancelled)
            throw;
        return {};
    }
}

void AssetManager::browse()
{
    const QPointer<AssetManager> self(this);
    const QString path = chooseFiles(false);
    if (!self)
        return;
    const bool good = !path.isEmpty() && IsValidImage(path);
    if (!self)
        return;
    if (good)
        m_parts->singleNewAssetUrl->setText(path);
    refreshSingleSave();
}

void AssetManager::refreshSingleSave()
{
    const auto filled = [](const QLineEdit *box) { return !box->text().trimmed().isEmpty(); };
    m_parts->singleNewAssetSave->setEnabled(filled(m_parts->singleNewAssetName) &&
                                            filled(m_parts->singleNewAssetUrl));
}

void AssetManager::addToBatch()
{
    const QPointer<AssetManager> self(this);
    const QString answer = chooseFiles(true);
    if (!self || answer.isEmpty())
        return;
    const QStringList paths = pathsIn(answer);
    for (const QString &path : paths) {
        const bool good = IsValidImage(path);
        if (!self)
            return;
        if (good)
            m_parts->batchList->addItem(path);
        refreshBatchButtons();
    }
}

void AssetManager::removeFromBatch()
{
    QListWidget &list = *m_parts->batchList;
    const QList<QListWidgetItem *> selected = list.selectedItems();
    if (selected.isEmpty())
        return;
    const int row = list.row(selected.constFirst());
    delete list.takeItem(row);
    if (list.count() > 0)
        list.setCurrentRow(std::min(row, list.count() - 1), QItemSelectionModel::ClearAndSelect);
    refreshBatchButtons();
}

void AssetManager::refreshBatchButtons()
{
    m_parts->removeBatch->setEnabled(!m_parts->batchList->selectedItems().isEmpty());
    // Saving twice at once would upload files twice.
    m_parts->batchNewAssetSave->setEnabled(m_parts->batchList->count() > 0 && !m_savingBatch);
}

} // namespace ZelWebServiceControls
