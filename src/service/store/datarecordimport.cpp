// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/datarecordimport.h"

#include "service/store/importcount.h"
#include "service/store/store.h"

namespace Zel {

namespace {

ImportOutcome takeSaved(Store &store, const WorkspaceFiles::SavedRecordEntry &entry)
{
    const auto &[place, accountId, guid, entries, size] = entry.record;
    const auto fail = [&place = place](const QString &sentence) {
        throw WorkspaceFileError(place, sentence);
    };
    const QList<Theme> themes = store.themes.withGuid(guid);
    if (!store.accounts.find(accountId))
        fail(QStringLiteral("there is no account %1.").arg(accountId));
    if (themes.isEmpty() ||
        (themes.first().accountId != accountId && themes.first().accountId != 0))
        fail(QStringLiteral("account %1 has no theme %2.").arg(accountId).arg(guid));
    const auto user = store.users.find(entry.savedByLogin);
    if (!user)
        fail(QStringLiteral("there is no user \"%1\".").arg(entry.savedByLogin));
    const StoredRecord record{entry.version, user->userId, entries};
    const auto before = store.dataRecords.saved(accountId, guid);
    if (before == record)
        return ImportOutcome::Unchanged;
    store.dataRecords.storeSaved(accountId, guid, record);
    return before ? ImportOutcome::Changed : ImportOutcome::Added;
}

} // namespace

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
    ImportCount sum = countImports(QStringLiteral("data records"), files.dataRecords, take);
    const ImportCount saved =
        countImports(sum.kind, files.savedRecords,
                     [&store](const auto &entry) { return takeSaved(store, entry); });
    sum.added += saved.added;
    sum.changed += saved.changed;
    sum.unchanged += saved.unchanged;
    return sum;
}

} // namespace Zel
