// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetuploads.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/assetreasons.h"
#include "studio/dropsummary.h"
#include "studio/errorcenter.h"
#include "studio/inputgate.h"

#include <QGroupBox>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>

namespace Studio {

AssetUploads::AssetUploads(ZelWebServiceControls::AssetManager &manager,
                           const AssetControls &controls, const AssetReasons &reasons,
                           ErrorCenter &errors, QWidget *page)
    : QObject(page)
    , m_controls(controls)
    , m_reasons(reasons)
    , m_errors(errors)
    , m_strip(new UploadStrip(page))
    , m_queue(manager, controls)
{
    connectParts();
}

AssetUploads::~AssetUploads() = default;

void AssetUploads::connectParts()
{
    connect(&m_reader, &DropReader::progressed, this, [this](int done, int count) {
        if (!m_queue.isSaving())
            m_strip->showReading(done, count);
    });
    connect(&m_reader, &DropReader::finished, this, &AssetUploads::takeIn);
    connect(&m_queue, &UploadQueue::saveAsked, this, &AssetUploads::save);
    connect(&m_queue, &UploadQueue::started, this, &AssetUploads::beginUpload);
    connect(&m_queue, &UploadQueue::ended, this, &AssetUploads::endUpload);
    connect(&m_queue, &UploadQueue::moved, this, [this] {
        m_strip->showUploading(m_queue.uploadedCount() + 1, m_queue.count(), m_queue.needsRuns());
        m_strip->repaint(); // no event is handled before the file is up
    });
    // Also a person may take files off the list, or add some.
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_controls.batchList->model(), change, this, [this] {
            if (!m_queue.isSaving() && !m_reader.isReading())
                showRest();
        });
    connect(m_strip, &UploadStrip::endAsked, this, &AssetUploads::stop);
    connect(m_strip, &UploadStrip::restAsked, this, &AssetUploads::goOn);
    connect(m_controls.batchCancel, &QPushButton::clicked, this, &AssetUploads::closed);
}

QString AssetUploads::againstDropping() const
{
    if (m_reader.isReading() || m_queue.isSaving())
        return tr("Other files are being read or uploaded just now");
    return m_reasons.againstAdding();
}

void AssetUploads::drop(const QMimeData &data)
{
    const QString refusal = againstDropping();
    if (refusal.isEmpty())
        m_reader.read(data.urls());
    else
        m_errors.report(refusedDrop(refusal));
}

void AssetUploads::takeIn(const DropContents &contents)
{
    if (m_queue.isSaving()) {
        m_read = contents; // the list must not grow under the upload
        return;
    }
    showRest();
    const QString refusal = m_reasons.againstAdding();
    if (!refusal.isEmpty()) { // another folder is selected by now
        m_errors.report(refusedDrop(refusal));
        return;
    }
    if (!contents.pictures.isEmpty()) {
        m_queue.add(contents.pictures);
        m_controls.batchSave->setFocus(Qt::OtherFocusReason);
    }
    const Problem summary = dropSummary(contents);
    if (!summary.what.isEmpty())
        m_errors.report(summary);
}

void AssetUploads::save()
{
    m_folder = m_controls.tree->selectedNode();
    m_errors.attempt([this] { resume(); });
}

void AssetUploads::goOn()
{
    m_errors.attemptAgain([this] { resume(); });
}

void AssetUploads::resume()
{
    // Somebody may have looked into another folder after a failure.
    if (m_controls.tree->selectedNode() != m_folder) {
        if (!m_controls.tree->contains(m_folder))
            throw Zel::RuntimeError(Zel::RuntimeError::ElementNotFound,
                                    tr("The folder these files were meant for is not there any "
                                       "more. Select another one, then choose Save."));
        m_queue.showFolder(m_folder);
    }
    m_queue.save();
}

void AssetUploads::beginUpload()
{
    m_errors.clear(); // what failed before goes on now, and that may take long
    m_gate = std::make_unique<InputGate>(
        QList<QWidget *>{m_strip->endButton(), m_controls.batchCancel}, [this] { stop(); });
    m_strip->showUploading(m_queue.uploadedCount() + 1, m_queue.count(), m_queue.needsRuns());
    m_strip->endButton()->setFocus(Qt::OtherFocusReason);
}

void AssetUploads::showRest()
{
    const bool hasRest = m_queue.uploadedCount() > 0 && m_queue.restCount() > 0;
    if (hasRest)
        m_strip->showRest(m_queue.uploadedCount(), m_queue.restCount());
    else if (!m_reader.isReading())
        m_strip->hide();
}

void AssetUploads::endUpload()
{
    m_gate.reset();
    if (m_read)
        QMetaObject::invokeMethod(
            this, [this, read = *std::exchange(m_read, {})] { takeIn(read); },
            Qt::QueuedConnection);
    if (m_queue.restCount() == 0) {
        m_strip->hide();
        m_controls.list->setFocus(Qt::OtherFocusReason);
        return;
    }
    m_strip->showRest(m_queue.uploadedCount(), m_queue.restCount());
    m_strip->restButton()->setFocus(Qt::OtherFocusReason);
    if (m_controls.newAssetFrame->isHidden())
        closed();
}

void AssetUploads::closed()
{
    if (m_queue.isSaving()) {
        stop(); // `endUpload` comes back here
        return;
    }
    m_queue.settle();
    showRest();
    if (m_queue.isListingOld())
        m_errors.attempt([this] { m_queue.list(); });
}

void AssetUploads::stop()
{
    m_queue.stop();
    if (!m_reader.isReading() || m_queue.isSaving())
        return;
    m_reader.cancel();
    showRest();
}

void AssetUploads::forget()
{
    m_reader.cancel();
    m_read.reset();
    stop();
    m_queue.forget();
    m_queue.settle();
    m_strip->hide();
}

} // namespace Studio
