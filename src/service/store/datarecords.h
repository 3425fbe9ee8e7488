// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/themes.h"

#include <QList>
#include <QString>

#include <optional>

namespace Zel {

class Database;

/// What an entry of a data record holds; the only part of it that is edited.
struct RecordValue
{
    QString text;
    QString guid;
    QString dependencies;

    bool operator==(const RecordValue &) const = default;
};

/// One field of a data record. Nothing is read into any of it: types nobody knows, equal labels and
/// texts of every kind are kept as they are.
struct RecordEntry
{
    QString label;
    QString type;
    bool hidden = false;
    QString ext;
    QString source;
    QString buttonText;
    qint64 width = 0; ///< 16 bits
    qint64 height = 0;
    RecordValue value;

    bool operator==(const RecordEntry &) const = default;
};

/// A data record as it is stored.
struct StoredRecord
{
    qint64 version = 1;
    QString savedById; ///< the user who saved it last; empty while it is as imported
    QList<RecordEntry> entries;

    bool operator==(const StoredRecord &) const = default;
};

/// The data records of themes. A theme has one as imported, the same for everybody who sees the
/// theme, until an account saves it: from then on that account has a whole record of its own, with
/// the fields it was saved with.
class ZEL_EXPORT DataRecords
{
public:
    static constexpr qsizetype longestLabel = 65536;
    static constexpr qsizetype longestWord = 1024; ///< type, formats, button text
    static constexpr qsizetype longestSource = 4096;
    static constexpr qsizetype mostEntries = 20000;
    /// All values of a record together, in bytes of UTF-8.
    static constexpr qint64 largestRecord = 16LL * 1024 * 1024;

    enum class Outcome
    {
        Saved,
        Conflict,   ///< saved by somebody since; see `record`
        WrongCount, ///< not one value for each entry
        Unknown     ///< no such theme for this person, or one without a record
    };

    struct Save
    {
        Outcome outcome = Outcome::Unknown;
        StoredRecord record; ///< as it is now; after Saved only its version
    };

    explicit DataRecords(Database &database);

    /// The bytes that count towards `largestRecord`.
    static qint64 sizeOf(const RecordValue &value);

    /// The record of a theme that the person sees; nothing when there is no such theme or it has
    /// none.
    std::optional<StoredRecord> find(const ThemeUser &user, const QString &themeGuid);

    /// Stores the values of a whole record, one for each entry, or none of them. `version` is that
    /// of the record they were edited in. The same values again from the same person, straight
    /// after, are the same save once more: its answer had been lost.
    Save save(const ThemeUser &user, const QString &themeGuid, qint64 version,
              const QList<RecordValue> &values);

    /// The record of a theme as it was imported; inside a transaction or snapshot.
    std::optional<StoredRecord> imported(qint64 themeAccountId, const QString &themeGuid);

    /// The record that an account has saved of a theme; inside a transaction or snapshot.
    std::optional<StoredRecord> saved(qint64 accountId, const QString &themeGuid);

    /// Stores a record as one that an account has saved, in place of a former one. Only inside a
    /// transaction.
    void storeSaved(qint64 accountId, const QString &themeGuid, const StoredRecord &record);

    /// Stores the record of a theme as imported, in place of a former one, whose version grows by
    /// one. Only inside a transaction.
    void storeImported(qint64 themeAccountId, const QString &themeGuid,
                       const QList<RecordEntry> &entries);

private:
    struct Key
    {
        qint64 accountId = 0;
        QString themeGuid;
        bool edited = false;
    };

    std::optional<Key> keyOf(const ThemeUser &user, const QString &themeGuid);
    std::optional<StoredRecord> read(const Key &key);
    std::optional<StoredRecord> head(const Key &key);
    void replace(const Key &key, const StoredRecord &record);
    void write(const Key &key, const StoredRecord &before, const QList<RecordValue> &values);

    Database &m_database;
};

} // namespace Zel
