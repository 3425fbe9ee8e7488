// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recordmerge.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace Studio {

namespace {

/// Names the entries of a record so that equal labels are told apart by their order.
class EntryNames
{
public:
    using Name = std::pair<std::pair<QString, QString>, int>;

    Name next(const QString &label, const QString &type)
    {
        const std::pair<QString, QString> key(label, type);
        return {key, m_seen[key]++};
    }

private:
    QHash<std::pair<QString, QString>, int> m_seen;
};

FieldConflict::Changed changedWhere(const RecordDraft::Entry &mine,
                                    const QXSC::DataRecordValue &theirs)
{
    if (mine.value == mine.loaded)
        return FieldConflict::Changed::OnServer;
    return theirs == mine.loaded ? FieldConflict::Changed::Here : FieldConflict::Changed::BothSides;
}

bool hasField(const QXSC::DataRecordEntry &entry)
{
    static const QStringList types{QStringLiteral("TEXT"), QStringLiteral("TEXTAREA"),
                                   QStringLiteral("CHECKBOX"), QStringLiteral("TEXTASSET"),
                                   QStringLiteral("CUSTOM")};
    return !entry.hidden && types.contains(entry.type);
}

} // namespace

QList<RecordDraft::Entry> draftEntries(const QXSC::DataRecord &record)
{
    QList<RecordDraft::Entry> entries;
    if (!record.entries)
        return entries;
    entries.reserve(record.entries->count());
    for (const QXSC::DataRecordEntryPtr &entry : *record.entries)
        entries.append({entry->label, entry->type, entry->value, entry->value});
    return entries;
}

QList<FieldConflict> conflictsBetween(const QList<RecordDraft::Entry> &mine,
                                      const QXSC::DataRecord &server)
{
    QHash<EntryNames::Name, qsizetype> edited;
    EntryNames own;
    for (qsizetype i = 0; i < mine.size(); ++i)
        edited.insert(own.next(mine.at(i).label, mine.at(i).type), i);
    QList<FieldConflict> conflicts;
    EntryNames names;
    const qsizetype count = server.entries ? server.entries->count() : 0;
    for (qsizetype i = 0; i < count; ++i) {
        const QXSC::DataRecordEntry &entry = *server.entries->item(i + 1);
        const auto at = edited.constFind(names.next(entry.label, entry.type));
        if (at == edited.cend())
            continue;
        const RecordDraft::Entry &here = mine.at(*at);
        edited.erase(at);
        if (here.value == entry.value)
            continue;
        const FieldConflict::Changed changed = changedWhere(here, entry.value);
        // What has no field is nothing that an author could judge: the server's value stands.
        if (changed == FieldConflict::Changed::OnServer && !hasField(entry))
            continue;
        conflicts.append({entry.label, entry.type, here.value, entry.value, changed, i,
                          changed != FieldConflict::Changed::OnServer});
    }
    QList<qsizetype> gone = edited.values();
    std::sort(gone.begin(), gone.end());
    for (const qsizetype i : gone) {
        if (mine.at(i).value != mine.at(i).loaded)
            conflicts.append({mine.at(i).label,
                              mine.at(i).type,
                              mine.at(i).value,
                              {},
                              FieldConflict::Changed::Gone,
                              -1,
                              false});
    }
    return conflicts;
}

void applyChoices(const QList<FieldConflict> &conflicts, const QXSC::DataRecord &record)
{
    for (const FieldConflict &conflict : conflicts) {
        if (conflict.keepsMine && conflict.position >= 0)
            record.entries->item(conflict.position + 1)->value = conflict.mine;
    }
}

} // namespace Studio
