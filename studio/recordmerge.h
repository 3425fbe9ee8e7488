// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/recorddrafts.h"

namespace Studio {

/// A field whose value here and on the server differ.
struct FieldConflict
{
    enum class Changed
    {
        Here,      ///< only the author changed it
        OnServer,  ///< only somebody else did
        BothSides, ///< both did
        Gone       ///< the author changed it, and the record has it no more
    };

    QString label;
    QString type;
    QXSC::DataRecordValue mine;
    QXSC::DataRecordValue theirs;
    Changed changed = Changed::BothSides;
    /// The entry of the record on the server, from 0; -1 for one that is gone.
    qsizetype position = -1;
    /// What the author has chosen; at first what only one side changed, and where both did, theirs
    /// here.
    bool keepsMine = true;
};

/// The entries of a record as a draft has them, all of them as they were loaded.
QList<RecordDraft::Entry> draftEntries(const QXSC::DataRecord &record);

/// What differs between what was edited here and the record on the server, in the record's order;
/// fields that are gone come last.
QList<FieldConflict> conflictsBetween(const QList<RecordDraft::Entry> &mine,
                                      const QXSC::DataRecord &server);

/// Writes the values that the author keeps into the record.
void applyChoices(const QList<FieldConflict> &conflicts, const QXSC::DataRecord &record);

} // namespace Studio
