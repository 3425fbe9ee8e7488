// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// How an asset manager uploads files and shows how far it is.

#include "assets/assetintake.h"
#include "assets/assetmanager.h"
#include "assets/assetmanagerparts.h"
#include "platform/core/int16.h"
#include "platform/core/rounding.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/yielding.h"

#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>

namespace ZelWebServiceControls {

namespace {

QString fileName(const QString &path)
{
    return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

/// How far a batch was when a file failed.
struct BatchPlace
{
    QString fileName;
    int uploaded;
    int count;
};

/// What went wrong, with the file's name and how many files are up.
QString toldWith(const BatchPlace &place, const Zel::RuntimeError &error)
{
    return AssetManager::tr("\"%1\" was not uploaded. %2 Uploaded before it: %3 of %4 files.")
        .arg(place.fileName, error.description(), QString::number(place.uploaded),
             QString::number(place.count));
}

} // namespace

void AssetManager::showProgressFrame()
{
    m_parts->progressFrame->show();
    m_parts->overallProgress->setValue(0);
    m_parts->fileProgress->setValue(0);
    m_parts->fileProgressTxt->clear();
}

void AssetManager::showFileProgress(qint32 percentComplete, const QString &filename)
{
    m_parts->fileProgress->setValue(qBound(0, percentComplete, 100));
    m_parts->fileProgressTxt->setText(tr("Uploading ") + filename);
    // The call that reports this handles no events, so nothing else would paint it.
    m_parts->fileProgressTxt->repaint();
    m_parts->fileProgress->repaint();
}

void AssetManager::upload(const QString &name, const QString &description, const QString &path)
{
    auto file = std::make_shared<QXSC::AssetFileEntry>();
    file->localPath = path;
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    files->add(file);
    client().CreateAsset(name, description, currentFolder(), files, QString(), QString(), nullptr);
}

bool AssetManager::finishUpload()
{
    if (!listFolder(currentFolder()))
        return false;
    m_parts->progressFrame->hide();
    closePanel();
    refreshButtonStates();
    return true;
}

void AssetManager::saveSingle()
{
    const QPointer<AssetManager> self(this);
    const Zel::Hourglass hourglass(this);
    m_parts->singleNewAssetSave->setEnabled(false);
    showProgressFrame();
    m_parts->overallProgress->setValue(50);
    upload(m_parts->singleNewAssetName->text(), m_parts->singleNewAssetDescription->text(),
           m_parts->singleNewAssetUrl->text());
    if (!self)
        return;
    if (m_intake)
        m_intake->uploaded(AssetIntake::SingleFile);
    (void)finishUpload();
}

void AssetManager::saveBatch()
{
    if (m_intake && !m_intake->m_isSaving) {
        m_intake->saveRequested(); // it comes back here
        return;
    }
    const QPointer<AssetManager> self(this);
    const Zel::Hourglass hourglass(this);
    m_savingBatch = true;
    const auto done = qScopeGuard([self] {
        if (self)
            self->m_savingBatch = false;
    });
    m_parts->batchNewAssetSave->setEnabled(false);
    showProgressFrame();
    for (int index = 0; index < m_parts->batchList->count(); ++index) {
        const int before = m_intake ? m_intake->before() : 0;
        const int after = m_intake ? m_intake->after() : 0;
        const BatchPlace place{fileName(m_parts->batchList->item(index)->text()), before + index,
                               before + m_parts->batchList->count() + after};
        try {
            if (!uploadEntry(index))
                return;
        } catch (const QXSC::ServiceError &error) {
            throw QXSC::ServiceError(error.kind(), toldWith(place, error), error.code(),
                                     error.details());
        } catch (const Zel::RuntimeError &error) {
            throw Zel::RuntimeError(error.number(), toldWith(place, error), error.source());
        }
    }
    m_parts->batchList->clear();
    refreshBatchButtons();
    (void)finishUpload();
}

bool AssetManager::uploadEntry(int index)
{
    const QPointer<AssetManager> self(this);
    const QListWidget &list = *m_parts->batchList;
    // 16 bits hold the product up to the entry 327.
    const Zel::Int16 hundredfold = Zel::Int16::from(index) * Zel::Int16(100);
    m_parts->overallProgress->setValue(
        Zel::roundToInt32(double(hundredfold.value()) / list.count()));
    if (!Zel::yieldOnce(this))
        return false;
    if (m_intake && !m_intake->mayUpload(index)) {
        m_intake->m_wasEnded = true;
        return false;
    }
    // A person may have taken entries off the list meanwhile.
    if (index < list.count()) {
        const QString path = list.item(index)->text();
        upload(fileName(path), QString(), path);
        if (self && m_intake)
            m_intake->uploaded(index);
    }
    return !self.isNull();
}

} // namespace ZelWebServiceControls
