// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/blobkind.h"

#include "service/store/database.h"
#include "service/store/databaseerror.h"

namespace Zel {

namespace {

const SqlText findSetting(R"sql(
    SELECT value FROM service_setting WHERE name = $1
)sql");

const SqlText dropSetting(R"sql(
    DELETE FROM service_setting WHERE name = $1
)sql");

const SqlText addSetting(R"sql(
    INSERT INTO service_setting (name, value) VALUES ($1, $2)
)sql");

// Databases that were in use before there was a choice have their bytes in files.
const SqlText countUses(R"sql(
    SELECT (SELECT COUNT(*) FROM blob) + (SELECT COUNT(*) FROM theme_preview) +
           (SELECT COUNT(*) FROM upload)
)sql");

const QString setting = QStringLiteral("blobs");

} // namespace

BlobKindError::BlobKindError(const QString &sentence)
    : std::runtime_error(sentence.toStdString())
{
}

BlobKindError::~BlobKindError() = default;

QString wordOf(BlobKind kind)
{
    return kind == BlobKind::Files ? QStringLiteral("files") : QStringLiteral("database");
}

std::optional<BlobKind> blobKindOf(const QString &word)
{
    for (const BlobKind kind : {BlobKind::Files, BlobKind::Database}) {
        if (word == wordOf(kind))
            return kind;
    }
    return std::nullopt;
}

std::optional<BlobKind> decidedBlobKind(Database &database)
{
    return database.snapshot([&]() -> std::optional<BlobKind> {
        const auto word =
            database.row(findSetting, {setting}, [](const SqlRow &row) { return row.text(0); });
        if (word) {
            const auto kind = blobKindOf(*word);
            if (!kind)
                throw DatabaseError(DatabaseError::Kind::Corrupt,
                                    QStringLiteral("The database keeps files in a place that this "
                                                   "program does not know: \"%1\".")
                                        .arg(*word));
            return kind;
        }
        const auto uses =
            database.row(countUses, {}, [](const SqlRow &row) { return row.integer(0); });
        return uses.value_or(0) > 0 ? std::optional(BlobKind::Files) : std::nullopt;
    });
}

BlobKind decideBlobKind(Database &database, std::optional<BlobKind> wanted)
{
    const auto isWritten = [&] {
        return database.row(findSetting, {setting}, [](const SqlRow &) { return true; })
            .value_or(false);
    };
    const auto decide = [&] {
        const BlobKind kind = decidedBlobKind(database).value_or(wanted.value_or(BlobKind::Files));
        if (!isWritten())
            database.exec(addSetting, {setting, wordOf(kind)});
        return kind;
    };
    const BlobKind kind = isWritten() ? *decidedBlobKind(database) : database.tx(decide);
    if (wanted && *wanted != kind)
        throw BlobKindError(
            QStringLiteral("the database %1 keeps its files in \"%2\", not in \"%3\".")
                .arg(database.address().display(), wordOf(kind), wordOf(*wanted)));
    return kind;
}

void recordBlobKind(Database &database, BlobKind kind)
{
    database.exec(dropSetting, {setting});
    database.exec(addSetting, {setting, wordOf(kind)});
}

} // namespace Zel
