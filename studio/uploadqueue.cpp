// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/uploadqueue.h"

#include "studio/assetcontrols.h"

#include <QListWidget>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QSet>

namespace Studio {

namespace {

constexpr int UploadedRole = Qt::UserRole;

QIcon markIcon(const QString &name)
{
    const QString path = QStringLiteral(":/studio/icons/%1.svg").arg(name);
    QIcon icon(path);
    icon.addFile(path, QSize(), QIcon::Disabled); // as it is, not greyed
    icon.addFile(path, QSize(), QIcon::Selected);
    return icon;
}

void mark(QListWidgetItem &item, const QIcon &icon)
{
    item.setData(UploadedRole, true);
    item.setIcon(icon);
    item.setFlags(item.flags() & ~Qt::ItemIsEnabled);
    item.setToolTip(UploadQueue::tr("Uploaded"));
    item.setData(Qt::AccessibleTextRole, UploadQueue::tr("%1, uploaded").arg(item.text()));
}

} // namespace

UploadQueue::UploadQueue(ZelWebServiceControls::AssetManager &manager,
                         const AssetControls &controls, QObject *parent)
    : QObject(parent)
    , AssetIntake(manager)
    , m_list(controls.batchList)
    , m_mark(markIcon(QStringLiteral("uploaded")))
{
    m_list->setIconSize(QSize(16, 16));
    const QIcon pending = markIcon(QStringLiteral("pending"));
    connect(m_list->model(), &QAbstractItemModel::rowsInserted, this,
            [this, pending](const QModelIndex &, int first, int last) {
                for (int row = first; row <= last; ++row) {
                    m_list->item(row)->setIcon(pending);
                    m_list->item(row)->setToolTip(m_list->item(row)->text());
                }
            });
}

bool UploadQueue::isUploaded(const QListWidgetItem &item)
{
    return item.data(UploadedRole).toBool();
}

int UploadQueue::restCount() const
{
    int rest = static_cast<int>(m_waiting.size());
    for (int row = 0; row < m_list->count(); ++row)
        rest += isUploaded(*m_list->item(row)) ? 0 : 1;
    return rest;
}

void UploadQueue::add(const QStringList &paths)
{
    QSet<QString> known;
    for (int row = 0; row < m_list->count(); ++row) {
        if (!isUploaded(*m_list->item(row)))
            known.insert(m_list->item(row)->text());
    }
    QStringList fresh;
    for (const QString &path : paths) {
        if (!known.contains(path))
            fresh << path;
    }
    addFiles(fresh);
    openBatch();
}

void UploadQueue::dropUploaded()
{
    for (int row = m_list->count() - 1; row >= 0; --row) {
        if (isUploaded(*m_list->item(row)))
            delete m_list->takeItem(row);
    }
}

void UploadQueue::settle()
{
    dropUploaded();
    m_uploaded = 0;
}

void UploadQueue::save()
{
    if (m_isSaving)
        return;
    dropUploaded();
    if (m_list->count() == 0) {
        finishListing();
        return;
    }
    openBatch();
    m_isStopped = false;
    const auto done = qScopeGuard([this] {
        m_isSaving = false;
        putBack();
        endProgress();
        if (restCount() == 0)
            m_uploaded = 0;
        emit ended();
    });
    m_isSaving = true;
    emit started();
    saveRuns();
}

void UploadQueue::saveRuns()
{
    holdBack();
    for (;;) {
        setAround(m_uploaded, static_cast<int>(m_waiting.size()));
        if (!saveBatch())
            return;
        m_isListingOld = false;
        if (m_waiting.isEmpty())
            return;
        letNextIn();
    }
}

void UploadQueue::finishListing()
{
    if (!m_isListingOld)
        return;
    finish();
    m_isListingOld = false;
}

void UploadQueue::list()
{
    relist();
    m_isListingOld = false;
}

void UploadQueue::holdBack()
{
    QStringList beyond;
    while (m_list->count() > LongestBatch) {
        const QListWidgetItem *last = m_list->takeItem(m_list->count() - 1);
        beyond.prepend(last->text());
        delete last;
    }
    m_waiting = beyond;
}

void UploadQueue::letNextIn()
{
    addFiles(m_waiting.mid(0, LongestBatch));
    m_waiting = m_waiting.mid(LongestBatch);
    openBatch();
}

void UploadQueue::putBack()
{
    addFiles(m_waiting);
    m_waiting.clear();
}

void UploadQueue::saveRequested()
{
    emit saveAsked();
}

bool UploadQueue::mayUpload(int index)
{
    if (!m_isStopped && index < m_list->count()) {
        m_list->scrollToItem(m_list->item(index));
        emit moved();
    }
    return !m_isStopped;
}

void UploadQueue::uploaded(int index)
{
    if (index == SingleFile) {
        m_isSingleUploaded = true;
        return;
    }
    mark(*m_list->item(index), m_mark);
    ++m_uploaded;
    m_isListingOld = true;
}

} // namespace Studio
