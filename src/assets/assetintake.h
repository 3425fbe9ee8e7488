// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QPointer>
#include <QStringList>

namespace ZelWebServiceControls {

class AssetManager;

/// What a C++ host does with an asset manager beside its interface: puts files from elsewhere on
/// the batch list, lists folders again, and has a say in how a batch is saved.
///
/// Derive from it to follow a batch. A manager has one intake at the most; the newest counts. The
/// functions let errors of the service propagate, and none does anything when the manager is gone.
class ZEL_EXPORT AssetIntake
{
public:
    /// The longest batch the manager can save at once; the sixteen bits of its overall progress
    /// hold no more.
    static constexpr int LongestBatch = 328;
    /// Stands for the file of the single tab where the batch has indexes.
    static constexpr int SingleFile = -1;

    explicit AssetIntake(AssetManager &manager);
    virtual ~AssetIntake();
    Q_DISABLE_COPY_MOVE(AssetIntake)

    // Folders

    /// Selects a folder of the tree by its key and lists it, as a click on it does.
    void showFolder(const QString &key);
    /// Lists the selected folder once more; nothing when none is selected.
    void relist();
    /// Forgets the client and all that came from it or was entered for it.
    void forget();

    // Files

    /// Opens the panel for new assets at its batch.
    void openBatch();
    /// Puts files at the end of the batch list. Whether they are pictures is the caller's to know.
    void addFiles(const QStringList &paths);
    /// Saves the batch list as its Save button does. Returns whether all of it was saved; false
    /// when `mayUpload` ended it.
    bool saveBatch();
    /// Takes the progress away after a batch that was not saved to its end.
    void endProgress();
    /// Lists the folder, takes the progress away and closes the panel, as a save does at its end.
    void finish();

    /// How many files of the same batch were saved before this list and are to come after it, for
    /// what an error says about a batch that is saved in several lists.
    void setAround(int before, int after);

    int before() const { return m_before; }

    int after() const { return m_after; }

protected:
    /// A person has asked to save the batch list. Saves it, unless overridden.
    virtual void saveRequested();
    /// Whether the entry at `index` may be uploaded now; false ends the batch before it.
    virtual bool mayUpload(int index);
    /// The entry at `index`, or the single file, has been uploaded.
    virtual void uploaded(int index);

private:
    friend class AssetManager;

    QPointer<AssetManager> m_manager;
    int m_before = 0;
    int m_after = 0;
    bool m_isSaving = false;
    bool m_wasEnded = false;
};

} // namespace ZelWebServiceControls
