// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/datarecords.h"

#include "service/store/database.h"

#include <algorithm>

namespace Zel {

namespace {

// A person sees the themes of their account and of every account that are nobody's or their own.
const SqlText findTheme(R"sql(
    SELECT account_id FROM theme
    WHERE account_id IN ($1, 0) AND guid = $2 AND (owner_user IS NULL OR owner_user = $3)
    ORDER BY account_id DESC NULLS LAST
)sql");

const SqlText findHead(R"sql(
    SELECT version, saved_by FROM data_record
    WHERE account_id = $1 AND theme_guid = $2 AND edited = $3
)sql");

const SqlText listEntries(R"sql(
    SELECT label, type, hidden, ext, source, button_text, width, height, value_text, value_guid,
           value_dependencies
    FROM data_record_entry
    WHERE account_id = $1 AND theme_guid = $2 AND edited = $3
    ORDER BY pos NULLS FIRST
)sql");

const SqlText putHead(R"sql(
    INSERT INTO data_record (account_id, theme_guid, edited, version, saved_by)
    VALUES ($1, $2, $3, $4, $5)
    ON CONFLICT (account_id, theme_guid, edited) DO UPDATE SET version = excluded.version,
        saved_by = excluded.saved_by
)sql");

// What was imported becomes the first state of an account's own record.
const SqlText copyEntries(R"sql(
    INSERT INTO data_record_entry (account_id, theme_guid, edited, pos, label, type, hidden, ext,
                                   source, button_text, width, height, value_text, value_guid,
                                   value_dependencies)
    SELECT CAST($1 AS BIGINT), theme_guid, TRUE, pos, label, type, hidden, ext, source, button_text,
           width, height, value_text, value_guid, value_dependencies
    FROM data_record_entry
    WHERE account_id = $2 AND theme_guid = $3 AND edited = FALSE
)sql");

const SqlText dropEntries(R"sql(
    DELETE FROM data_record_entry WHERE account_id = $1 AND theme_guid = $2 AND edited = $3
)sql");

const SqlText addEntry(R"sql(
    INSERT INTO data_record_entry (account_id, theme_guid, edited, pos, label, type, hidden, ext,
                                   source, button_text, width, height, value_text, value_guid,
                                   value_dependencies)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12, $13, $14, $15)
)sql");

const SqlText changeValue(R"sql(
    UPDATE data_record_entry SET value_text = $5, value_guid = $6, value_dependencies = $7
    WHERE account_id = $1 AND theme_guid = $2 AND edited = $3 AND pos = $4
)sql");

RecordEntry entryOf(const SqlRow &row)
{
    RecordEntry entry;
    entry.label = row.text(0);
    entry.type = row.text(1);
    entry.hidden = row.boolean(2);
    entry.ext = row.text(3);
    entry.source = row.text(4);
    entry.buttonText = row.text(5);
    entry.width = row.integer(6);
    entry.height = row.integer(7);
    entry.value = {row.text(8), row.text(9), row.text(10)};
    return entry;
}

bool holds(const QList<RecordEntry> &entries, const QList<RecordValue> &values)
{
    return std::equal(
        entries.begin(), entries.end(), values.begin(), values.end(),
        [](const RecordEntry &entry, const RecordValue &value) { return entry.value == value; });
}

qint64 utf8Size(const QString &text)
{
    qint64 size = 0;
    for (const QChar c : text) {
        // Both halves of a pair together have four bytes.
        const char16_t unit = c.unicode();
        size += unit < 0x80 ? 1 : (unit < 0x800 || c.isSurrogate() ? 2 : 3);
    }
    return size;
}

} // namespace

DataRecords::DataRecords(Database &database)
    : m_database(database)
{
}

qint64 DataRecords::sizeOf(const RecordValue &value)
{
    return utf8Size(value.text) + utf8Size(value.guid) + utf8Size(value.dependencies);
}

/// Where the record lies that the person edits; nothing when they see no such theme.
std::optional<DataRecords::Key> DataRecords::keyOf(const ThemeUser &user, const QString &themeGuid)
{
    const auto account = m_database.row(findTheme, {user.accountId, themeGuid, user.userId},
                                        [](const SqlRow &row) { return row.integer(0); });
    if (!account)
        return std::nullopt;
    const Key own{user.accountId, themeGuid, true};
    return head(own) ? own : Key{*account, themeGuid, false};
}

std::optional<StoredRecord> DataRecords::head(const Key &key)
{
    return m_database.row(findHead, {key.accountId, key.themeGuid, key.edited},
                          [](const SqlRow &row) {
                              StoredRecord record;
                              record.version = row.integer(0);
                              record.savedById = row.optionalText(1).value_or(QString());
                              return record;
                          });
}

std::optional<StoredRecord> DataRecords::read(const Key &key)
{
    std::optional<StoredRecord> record = head(key);
    if (record)
        record->entries =
            m_database.rows(listEntries, {key.accountId, key.themeGuid, key.edited}, entryOf);
    return record;
}

std::optional<StoredRecord> DataRecords::find(const ThemeUser &user, const QString &themeGuid)
{
    return m_database.snapshot([&]() -> std::optional<StoredRecord> {
        const auto key = keyOf(user, themeGuid);
        return key ? read(*key) : std::nullopt;
    });
}

std::optional<StoredRecord> DataRecords::imported(qint64 themeAccountId, const QString &themeGuid)
{
    return read({themeAccountId, themeGuid, false});
}

std::optional<StoredRecord> DataRecords::saved(qint64 accountId, const QString &themeGuid)
{
    return read({accountId, themeGuid, true});
}

DataRecords::Save DataRecords::save(const ThemeUser &user, const QString &themeGuid, qint64 version,
                                    const QList<RecordValue> &values)
{
    return m_database.tx([&]() -> Save {
        const auto key = keyOf(user, themeGuid);
        const auto now = key ? read(*key) : std::nullopt;
        if (!now)
            return {Outcome::Unknown, {}};
        if (now->version != version) {
            const bool isRepeated = version == now->version - 1 && now->savedById == user.userId &&
                                    holds(now->entries, values);
            return {isRepeated ? Outcome::Saved : Outcome::Conflict, *now};
        }
        if (values.size() != now->entries.size())
            return {Outcome::WrongCount, *now};
        const Key own{user.accountId, themeGuid, true};
        StoredRecord saved;
        saved.version = version + 1;
        m_database.exec(putHead,
                        {own.accountId, own.themeGuid, own.edited, saved.version, user.userId});
        if (!key->edited)
            m_database.exec(copyEntries, {own.accountId, key->accountId, own.themeGuid});
        write(own, *now, values);
        return {Outcome::Saved, saved};
    });
}

/// Only what differs: mostly that is one field of many.
void DataRecords::write(const Key &key, const StoredRecord &before,
                        const QList<RecordValue> &values)
{
    for (qsizetype at = 0; at < values.size(); ++at) {
        const RecordValue &value = values.at(at);
        if (value != before.entries.at(at).value)
            m_database.exec(changeValue, {key.accountId, key.themeGuid, key.edited, qint64(at),
                                          value.text, value.guid, value.dependencies});
    }
}

void DataRecords::storeImported(qint64 themeAccountId, const QString &themeGuid,
                                const QList<RecordEntry> &entries)
{
    const auto before = head({themeAccountId, themeGuid, false});
    const qint64 version = before ? before->version + 1 : 1;
    replace({themeAccountId, themeGuid, false}, {version, QString(), entries});
}

void DataRecords::storeSaved(qint64 accountId, const QString &themeGuid, const StoredRecord &record)
{
    replace({accountId, themeGuid, true}, record);
}

void DataRecords::replace(const Key &key, const StoredRecord &record)
{
    const std::optional<QString> savedBy =
        record.savedById.isEmpty() ? std::nullopt : std::optional(record.savedById);
    m_database.exec(putHead, {key.accountId, key.themeGuid, key.edited, record.version, savedBy});
    m_database.exec(dropEntries, {key.accountId, key.themeGuid, key.edited});
    qint64 position = 0;
    for (const RecordEntry &entry : record.entries)
        m_database.exec(addEntry, {key.accountId, key.themeGuid, key.edited, position++,
                                   entry.label, entry.type, entry.hidden, entry.ext, entry.source,
                                   entry.buttonText, entry.width, entry.height, entry.value.text,
                                   entry.value.guid, entry.value.dependencies});
}

} // namespace Zel
