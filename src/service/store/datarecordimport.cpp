// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/datarecordimport.h"

#include "service/store/importcount.h"
#include "service/store/store.h"

namespace Zel {

ImportCount importDataRecords(Store &store, const WorkspaceFiles &files)
{
    const auto take = [&store](const WorkspaceFiles::DataRecordEntry &entry) {
        const QList<Theme> themes = store.themes.withGuid(entry.guid);
        if (themes.isEmpty() || themes.first().accountId != entry.accountId)
            throw WorkspaceFileError(
                entry.place,
                QStringLiteral("account %1 has no theme %2.").arg(entry.accountId).arg(entry.guid));
        const auto before = store.dataRecords.imported(entry.accountId, entry.guid);
        if (before && before->entries == entry.entries)
            return ImportOutcome::Unchanged;
        store.dataRecords.storeImported(entry.accountId, entry.guid, entry.entries);
        return before ? ImportOutcome::Changed : ImportOutcome::Added;
    };
    return countImports(QStringLiteral("data records"), files.dataRecords, take);
}

} // namespace Zel
