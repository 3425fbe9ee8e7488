// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/assets.h"

#include "service/store/contenttype.h"
#include "service/store/listpage.h"
#include "service/store/storabletext.h"

#include <QSet>

#include <algorithm>

namespace Zel {

namespace {

const SqlText listAssets(R"sql(
    SELECT a.guid, a.name, a.detail, a.asset_type, a.created_at, a.created_by, f.ext, b.thumbnail,
           a.name_key
    FROM asset a
    JOIN asset_file f ON f.account_id = a.account_id AND f.guid = a.guid AND f.pos = 0
    JOIN blob b ON b.account_id = f.account_id AND b.sha = f.sha
    WHERE a.account_id = $1 AND a.folder_id = $2 AND a.deleted_at IS NULL
      AND (a.name_key, a.guid) > ($3, $4)
    ORDER BY a.name_key NULLS FIRST, a.guid NULLS FIRST
    LIMIT $5
)sql");

const SqlText findAssetFolder(R"sql(
    SELECT folder_id FROM asset WHERE account_id = $1 AND guid = $2 AND deleted_at IS NULL
)sql");

const SqlText listFiles(R"sql(
    SELECT f.name, f.sha, b.mime, b.size, b.thumbnail
    FROM asset a
    JOIN asset_file f ON f.account_id = a.account_id AND f.guid = a.guid
    JOIN blob b ON b.account_id = f.account_id AND b.sha = f.sha
    WHERE a.account_id = $1 AND a.guid = $2 AND a.deleted_at IS NULL
    ORDER BY f.pos NULLS FIRST
)sql");

const SqlText findFile(R"sql(
    SELECT f.name, f.sha, b.mime, b.size, b.thumbnail
    FROM asset a
    JOIN asset_file f ON f.account_id = a.account_id AND f.guid = a.guid AND f.pos = $3
    JOIN blob b ON b.account_id = f.account_id AND b.sha = f.sha
    WHERE a.account_id = $1 AND a.guid = $2 AND a.deleted_at IS NULL
)sql");

AssetFile readFile(const SqlRow &row)
{
    return {row.text(0), row.text(1), row.text(2), row.integer(3), row.boolean(4)};
}

const SqlText trashAsset(R"sql(
    UPDATE asset SET deleted_at = $3 WHERE account_id = $1 AND guid = $2
)sql");

const SqlText listTrash(R"sql(
    SELECT account_id, guid, name, deleted_at FROM asset WHERE deleted_at IS NOT NULL
    ORDER BY deleted_at NULLS FIRST, guid NULLS FIRST
)sql");

const SqlText listOldTrash(R"sql(
    SELECT account_id, guid FROM asset WHERE deleted_at < $1
    ORDER BY deleted_at NULLS FIRST, guid NULLS FIRST
    LIMIT $2
)sql");

const SqlText findTrashed(R"sql(
    SELECT account_id, folder_id FROM asset WHERE guid = $1 AND deleted_at IS NOT NULL
)sql");

const SqlText findFolder(R"sql(
    SELECT folder_id FROM asset_folder WHERE account_id = $1 AND folder_id = $2
)sql");

const SqlText restoreAsset(R"sql(
    UPDATE asset SET deleted_at = NULL, folder_id = $3 WHERE account_id = $1 AND guid = $2
)sql");

const SqlText dropFiles(R"sql(
    DELETE FROM asset_file WHERE account_id = $1 AND guid = $2
)sql");

const SqlText dropAsset(R"sql(
    DELETE FROM asset WHERE account_id = $1 AND guid = $2
)sql");

const SqlText listUnusedBlobs(R"sql(
    SELECT b.account_id, b.sha FROM blob b
    WHERE NOT EXISTS (SELECT f.guid FROM asset_file f
                      WHERE f.account_id = b.account_id AND f.sha = b.sha)
)sql");

const SqlText dropBlobRow(R"sql(
    DELETE FROM blob WHERE account_id = $1 AND sha = $2
)sql");

const SqlText listUnusedPreviews(R"sql(
    SELECT v.account_id, v.sha FROM theme_preview v
    WHERE NOT EXISTS (SELECT t.guid FROM theme t
                      WHERE t.account_id = v.account_id AND t.preview_sha = v.sha)
)sql");

const SqlText dropPreviewRow(R"sql(
    DELETE FROM theme_preview WHERE account_id = $1 AND sha = $2
)sql");

const SqlText countRowsOfAccount(R"sql(
    SELECT (SELECT COUNT(*) FROM blob WHERE account_id = $1 AND sha = $2) +
           (SELECT COUNT(*) FROM theme_preview WHERE account_id = $1 AND sha = $2)
)sql");

const SqlText countBlobRows(R"sql(
    SELECT (SELECT COUNT(*) FROM blob WHERE sha = $1) +
           (SELECT COUNT(*) FROM theme_preview WHERE sha = $1)
)sql");

const SqlText putBlob(R"sql(
    INSERT INTO blob (account_id, sha, size, mime, thumbnail) VALUES ($1, $2, $3, $4, $5)
    ON CONFLICT (account_id, sha) DO UPDATE SET size = excluded.size, mime = excluded.mime,
        thumbnail = excluded.thumbnail
)sql");

const SqlText addAsset(R"sql(
    INSERT INTO asset (account_id, guid, folder_id, name, name_key, detail, asset_type, created_at,
                       created_by, deleted_at)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, NULL)
)sql");

const SqlText addFile(R"sql(
    INSERT INTO asset_file (account_id, guid, pos, name, ext, sha)
    VALUES ($1, $2, $3, $4, $5, $6)
)sql");

const SqlText findAsset(R"sql(
    SELECT guid FROM asset WHERE account_id = $1 AND guid = $2
)sql");

QSet<QString> wantedExtensions(const QString &formats)
{
    QSet<QString> wanted;
    const QStringList items = formats.split(QLatin1Char(','));
    for (const QString &item : items) {
        QString extension = item.trimmed().toLower();
        if (extension.startsWith(QLatin1Char('.')))
            extension.remove(0, 1);
        if (!extension.isEmpty())
            wanted.insert(extension);
    }
    // "0" stands for "no filter".
    if (wanted == QSet<QString>{QStringLiteral("0")})
        wanted.clear();
    return wanted;
}

} // namespace

Assets::Assets(Database &database, AssetFolders &folders, BlobStore &blobs, const Clock &clock)
    : m_database(database)
    , m_folders(folders)
    , m_blobs(blobs)
    , m_clock(clock)
{
}

Assets::Outcome Assets::visitAfter(const AssetUser &user, qint64 folderId, const Filter &filter,
                                   const Place &after, const Visitor &visit)
{
    constexpr qint64 rowsAtOnce = 256;
    const auto letters = m_folders.letters(user, folderId);
    if (!letters)
        return Outcome::NotFound;
    if (!letters->contains(QLatin1Char('R')))
        return Outcome::NotAllowed;
    const QSet<QString> wanted = wantedExtensions(filter.formats);
    const QString part = foldedKey(filter.name);

    struct Listed
    {
        Asset asset;
        QString extension;
    };

    readInBatches<Listed, Place>(
        m_database, listAssets, rowsAtOnce, after,
        [&](const Place &place) {
            return SqlValues{user.accountId, folderId, place.nameKey, place.guid};
        },
        [&](const SqlRow &row) {
            return std::pair(Listed{{row.text(0), folderId, row.text(1), row.text(2), row.text(3),
                                     row.integer(4), row.text(5), row.boolean(7)},
                                    row.text(6)},
                             Place{row.text(8), row.text(0)});
        },
        [&](const Listed &listed, const Place &place) {
            if (!wanted.isEmpty() && !wanted.contains(listed.extension))
                return true;
            if (!part.isEmpty() && !foldedKey(listed.asset.name).contains(part))
                return true;
            return visit(listed.asset, place);
        });
    return Outcome::Done;
}

Assets::Outcome Assets::find(const AssetUser &user, const QString &guid, QList<AssetFile> &files)
{
    return m_database.snapshot([&] {
        const auto folder = m_database.row(findAssetFolder, {user.accountId, guid},
                                           [](const SqlRow &row) { return row.integer(0); });
        if (!folder)
            return Outcome::NotFound;
        if (!m_folders.letters(user, *folder).value_or(QString()).contains(QLatin1Char('R')))
            return Outcome::NotAllowed;
        files = m_database.rows(listFiles, {user.accountId, guid}, readFile);
        return files.isEmpty() ? Outcome::NotFound : Outcome::Done;
    });
}

Assets::Outcome Assets::remove(const AssetUser &user, const QString &guid)
{
    return m_database.tx([&] {
        const auto folder = m_database.row(findAssetFolder, {user.accountId, guid},
                                           [](const SqlRow &row) { return row.integer(0); });
        if (!folder)
            return Outcome::NotFound;
        if (!m_folders.letters(user, *folder).value_or(QString()).contains(QLatin1Char('D')))
            return Outcome::NotAllowed;
        m_database.exec(trashAsset, {user.accountId, guid, m_clock()});
        return Outcome::Done;
    });
}

std::optional<AssetFile> Assets::file(qint64 accountId, const QString &guid, qint64 position)
{
    return m_database.row(findFile, {accountId, guid, position}, readFile);
}

QList<TrashedAsset> Assets::trash()
{
    return m_database.rows(listTrash, {}, [](const SqlRow &row) {
        return TrashedAsset{row.integer(0), row.text(1), row.text(2), row.integer(3)};
    });
}

Assets::Outcome Assets::restore(const QString &guid)
{
    return m_database.tx([&] {
        const auto found = m_database.rows(findTrashed, {guid}, [](const SqlRow &row) {
            return std::make_pair(row.integer(0), row.integer(1));
        });
        for (const auto &[accountId, folderId] : found) {
            const auto folder = m_database.row(findFolder, {accountId, folderId},
                                               [](const SqlRow &row) { return row.integer(0); });
            m_database.exec(restoreAsset, {accountId, guid, folder.value_or(0)});
        }
        return found.isEmpty() ? Outcome::NotFound : Outcome::Done;
    });
}

qint64 Assets::purge(qint64 deletedBefore)
{
    qint64 all = 0;
    for (qint64 gone = purgedAtOnce; gone == purgedAtOnce; all += gone) {
        // Nobody may store bytes again while those that no row names are removed.
        const auto hold = m_blobs.hold(BlobHold::Mode::Clear);
        gone = purgeSome(deletedBefore);
    }
    return all;
}

std::optional<qint64> Assets::purgeUnlessBusy(qint64 deletedBefore)
{
    const auto hold = m_blobs.hold(BlobHold::Mode::ClearNow);
    if (!hold)
        return std::nullopt;
    return purgeSome(deletedBefore);
}

/// Under a hold for clearing.
qint64 Assets::purgeSome(qint64 deletedBefore)
{
    QStringList unnamed;
    const qint64 count = m_database.tx([&] {
        unnamed.clear();
        return forgetOld(deletedBefore, unnamed);
    });
    addUnsettled(unnamed);
    m_blobs.clear(unnamed);
    return count;
}

/// What was never named by a row is removed, too, and what was is settled.
void Assets::addUnsettled(QStringList &unnamed)
{
    const QStringList unsettled = m_blobs.unsettled();
    for (const QString &sha : unsettled) {
        if (isNamed(sha))
            m_blobs.settle({BlobStore::noAccount, sha});
        else
            unnamed << sha;
    }
}

bool Assets::isNamed(const QString &sha)
{
    return m_database.row(countBlobRows, {sha}, [](const SqlRow &row) { return row.integer(0); })
               .value_or(0) > 0;
}

/// Removes the rows of what is to go, inside a transaction. `unnamed` gets the checksums that no
/// row of any account names any more.
qint64 Assets::forgetOld(qint64 deletedBefore, QStringList &unnamed)
{
    const auto old =
        m_database.rows(listOldTrash, {deletedBefore, purgedAtOnce}, [](const SqlRow &row) {
            return std::make_pair(row.integer(0), row.text(1));
        });
    for (const auto &[accountId, guid] : old) {
        m_database.exec(dropFiles, {accountId, guid});
        m_database.exec(dropAsset, {accountId, guid});
    }
    QList<std::pair<qint64, QString>> unused;
    const auto drop = [&](const SqlText &list, const SqlText &dropRow) {
        const auto rows = m_database.rows(list, {}, [](const SqlRow &row) {
            return std::make_pair(row.integer(0), row.text(1));
        });
        for (const auto &[accountId, sha] : rows)
            m_database.exec(dropRow, {accountId, sha});
        unused += rows;
    };
    drop(listUnusedBlobs, dropBlobRow);
    drop(listUnusedPreviews, dropPreviewRow);
    for (const auto &[accountId, sha] : std::as_const(unused)) {
        const auto rows = m_database.row(countRowsOfAccount, {accountId, sha},
                                         [](const SqlRow &row) { return row.integer(0); });
        if (rows.value_or(0) == 0)
            m_blobs.forget({accountId, sha});
        if (!isNamed(sha))
            unnamed << sha;
    }
    return old.size();
}

void Assets::addBlob(qint64 accountId, const AssetFile &file)
{
    m_database.exec(putBlob, {accountId, file.sha, file.size, file.mime, file.thumbnail});
}

void Assets::add(qint64 accountId, const Asset &asset, const QList<AssetFile> &files)
{
    m_database.exec(addAsset,
                    {accountId, asset.guid, asset.folderId, asset.name, orderKey(asset.name),
                     asset.detail, asset.assetType, asset.createdAt, asset.createdById});
    qint64 position = 0;
    for (const AssetFile &file : files)
        m_database.exec(addFile, {accountId, asset.guid, position++, file.name,
                                  extensionOf(file.name), file.sha});
}

bool Assets::isKnown(qint64 accountId, const QString &guid)
{
    return m_database
        .row(findAsset, {accountId, guid}, [](const SqlRow &row) { return row.text(0); })
        .has_value();
}

} // namespace Zel
