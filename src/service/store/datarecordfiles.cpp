// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The file of data records.
#include "service/store/recordfile.h"
#include "service/store/themesources.h"
#include "service/store/users.h"
#include "service/store/workspacefiles.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <limits>

namespace Zel {

namespace {

constexpr qsizetype longestPath = 4096;
constexpr qint64 largestVersion = std::numeric_limits<qint64>::max() / 2;
constexpr qint64 largestAccount = std::numeric_limits<qint32>::max();

qint64 sizeIn(FileRecord &record, const QString &name)
{
    return record.integer(name, 0, std::numeric_limits<qint16>::max());
}

/// The text stands in the list or, a long one, in a file beside it.
QString valueTextIn(FileRecord &record)
{
    const QString text = record.textOrEmpty(QStringLiteral("text"), DataRecords::largestRecord);
    const QString file = record.textOrEmpty(QStringLiteral("file"), longestPath);
    if (file.isEmpty())
        return text;
    if (!text.isEmpty())
        record.refuse(QStringLiteral("has both a \"text\" and a \"file\"."));
    return readText(QFileInfo(record.place.file).dir().filePath(file), record.place,
                    DataRecords::largestRecord);
}

RecordEntry entryIn(FileRecord &record, qsizetype longestGuid)
{
    RecordEntry entry;
    entry.label = record.textOrEmpty(QStringLiteral("label"), DataRecords::longestLabel);
    entry.type = record.textOrEmpty(QStringLiteral("type"), DataRecords::longestWord);
    entry.hidden = record.boolean(QStringLiteral("hidden"));
    entry.ext = record.textOrEmpty(QStringLiteral("ext"), DataRecords::longestWord);
    entry.source = record.textOrEmpty(QStringLiteral("source"), DataRecords::longestSource);
    entry.buttonText = record.textOrEmpty(QStringLiteral("buttonText"), DataRecords::longestWord);
    entry.width = sizeIn(record, QStringLiteral("width"));
    entry.height = sizeIn(record, QStringLiteral("height"));
    entry.value.guid = record.textOrEmpty(QStringLiteral("guid"), longestGuid);
    entry.value.dependencies =
        record.textOrEmpty(QStringLiteral("assetDependencies"), DataRecords::largestRecord);
    entry.value.text = valueTextIn(record);
    return entry;
}

WorkspaceFiles::DataRecordEntry headIn(FileRecord &record, qint64 leastAccount)
{
    WorkspaceFiles::DataRecordEntry head;
    head.place = record.place;
    head.accountId = record.integer(QStringLiteral("account"), leastAccount, largestAccount);
    head.guid = record.guid(QStringLiteral("theme"));
    return head;
}

QString keyOf(const WorkspaceFiles::DataRecordEntry &head)
{
    return QStringLiteral("%1/%2").arg(head.accountId).arg(head.guid);
}

/// One more field of a record.
void addTo(WorkspaceFiles::DataRecordEntry &all, const RecordEntry &entry, const FileRecord &record)
{
    if (all.entries.size() == DataRecords::mostEntries)
        record.refuse(
            QStringLiteral("a data record has at most %1 fields.").arg(DataRecords::mostEntries));
    all.size += DataRecords::sizeOf(entry.value);
    if (all.size > DataRecords::largestRecord)
        record.refuse(QStringLiteral("the values of a data record have at most %1 MiB.")
                          .arg(DataRecords::largestRecord / (1024 * 1024)));
    all.entries << entry;
}

} // namespace

void WorkspaceFiles::readDataRecords(const QString &path)
{
    QHash<QString, qsizetype> known; // by account and theme
    visitCsvRecords(path, [&](FileRecord &record) {
        const DataRecordEntry head = headIn(record, 0);
        const RecordEntry entry = entryIn(record, DataRecords::longestWord);
        record.expectNoMore();
        if (!known.contains(keyOf(head))) {
            known.insert(keyOf(head), dataRecords.size());
            dataRecords << head;
        }
        addTo(dataRecords[known.value(keyOf(head))], entry, record);
    });
}

void WorkspaceFiles::readSavedRecords(const QString &path)
{
    QHash<QString, qsizetype> known; // by account and theme
    visitCsvRecords(path, [&](FileRecord &record) {
        SavedRecordEntry saved;
        saved.record = headIn(record, 1);
        saved.savedByLogin = record.text(QStringLiteral("savedBy"), Users::longestLogin);
        saved.version = record.integer(QStringLiteral("version"), 1, largestVersion);
        // People save values of any length.
        const RecordEntry entry = entryIn(record, DataRecords::largestRecord);
        record.expectNoMore();
        const QString key = keyOf(saved.record);
        if (!known.contains(key)) {
            known.insert(key, savedRecords.size());
            savedRecords << saved;
        }
        SavedRecordEntry &all = savedRecords[known.value(key)];
        if (all.savedByLogin != saved.savedByLogin || all.version != saved.version)
            record.refuse(QStringLiteral("\"savedBy\" and \"version\" must be the same for all "
                                         "fields of a record."));
        addTo(all.record, entry, record);
    });
}

} // namespace Zel
