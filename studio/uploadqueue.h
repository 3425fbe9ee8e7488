// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/assetintake.h"

#include <QIcon>
#include <QObject>

#include <utility>

class QListWidget;
class QListWidgetItem;

namespace Studio {

struct AssetControls;

/// The batch list of an asset manager, of any length: saves it in runs the manager can take, marks
/// what went up, stops between files, and knows what is left after a stop or a failure.
class UploadQueue : public QObject, public ZelWebServiceControls::AssetIntake
{
    Q_OBJECT

public:
    UploadQueue(ZelWebServiceControls::AssetManager &manager, const AssetControls &controls,
                QObject *parent = nullptr);

    /// Puts files on the batch list that are not on it yet, and opens it.
    void add(const QStringList &paths);
    /// Saves all that has not gone up. After a stop or a failure it goes on where it ended. Errors
    /// propagate.
    void save();
    /// Lists the selected folder.
    void list();

    /// Whether files went up since the folder was listed.
    bool isListingOld() const { return m_isListingOld; }

    /// Ends the saving before the next file.
    void stop() { m_isStopped = true; }

    /// Takes what went up off the list and begins to count anew.
    void settle();

    bool isSaving() const { return m_isSaving; }

    /// How many files of the batch are up.
    int uploadedCount() const { return m_uploaded; }

    /// How many are left to upload.
    int restCount() const;

    int count() const { return uploadedCount() + restCount(); }

    /// Whether more files are to be saved than the manager takes at once.
    bool needsRuns() const { return count() > LongestBatch; }

    /// Whether the single file was uploaded since it was last asked; what failed then came after.
    bool takeSingleUploaded() { return std::exchange(m_isSingleUploaded, false); }

    static bool isUploaded(const QListWidgetItem &item);

signals:
    /// A person has asked to save the batch.
    void saveAsked();
    void started();
    /// Before each file.
    void moved();
    /// After the last file, a stop or a failure.
    void ended();

protected:
    void saveRequested() override;
    bool mayUpload(int index) override;
    void uploaded(int index) override;

private:
    void saveRuns();
    void holdBack();
    void letNextIn();
    void putBack();
    void dropUploaded();
    void finishListing();

    QListWidget *m_list;
    QIcon m_mark;
    /// What waits while a run is saved.
    QStringList m_waiting;
    int m_uploaded = 0;
    bool m_isSaving = false;
    bool m_isStopped = false;
    bool m_isListingOld = false;
    bool m_isSingleUploaded = false;
};

} // namespace Studio
