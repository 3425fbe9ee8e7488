// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/workspaceimport.h"

namespace Zel {

/// What became of one record.
enum class ImportOutcome
{
    Added,
    Changed,
    Unchanged
};

/// Takes records in, one after the other.
template <class Entry, class Take>
ImportCount countImports(const QString &kind, const QList<Entry> &entries, const Take &take)
{
    ImportCount result{kind};
    for (const Entry &entry : entries) {
        const ImportOutcome outcome = take(entry);
        result.added += outcome == ImportOutcome::Added;
        result.changed += outcome == ImportOutcome::Changed;
        result.unchanged += outcome == ImportOutcome::Unchanged;
    }
    return result;
}

} // namespace Zel
