// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/uploads.h"

#include "service/store/contenttype.h"
#include "service/store/database.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QUuid>

#include <cerrno>

namespace Zel {

namespace {

const SqlText addUpload(R"sql(
    INSERT INTO upload (account_id, upload_id, user_id, folder_id, name, detail, expires_at, guid)
    VALUES ($1, $2, $3, $4, $5, $6, $7, NULL)
)sql");

const SqlText addUploadFile(R"sql(
    INSERT INTO upload_file (account_id, upload_id, pos, name, size)
    VALUES ($1, $2, $3, $4, $5)
)sql");

const SqlText findUpload(R"sql(
    SELECT folder_id, name, detail, guid FROM upload
    WHERE account_id = $1 AND upload_id = $2 AND user_id = $3 AND expires_at > $4
)sql");

const SqlText listUploadFiles(R"sql(
    SELECT name, size FROM upload_file WHERE account_id = $1 AND upload_id = $2
    ORDER BY pos NULLS FIRST
)sql");

const SqlText noteGuid(R"sql(
    UPDATE upload SET guid = $3 WHERE account_id = $1 AND upload_id = $2
)sql");

const SqlText listExpired(R"sql(
    SELECT upload_id FROM upload WHERE account_id = $1 AND expires_at <= $2
)sql");

const SqlText listAccounts(R"sql(
    SELECT account_id FROM account
)sql");

const SqlText dropUploadFiles(R"sql(
    DELETE FROM upload_file WHERE account_id = $1 AND upload_id = $2
)sql");

const SqlText dropUpload(R"sql(
    DELETE FROM upload WHERE account_id = $1 AND upload_id = $2
)sql");

QString newGuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace

Uploads::Uploads(Database &database, AssetFolders &folders, Assets &assets, BlobStore &blobs,
                 Thumbnails &thumbnails, const Clock &clock)
    : m_database(database)
    , m_folders(folders)
    , m_assets(assets)
    , m_blobs(blobs)
    , m_thumbnails(thumbnails)
    , m_clock(clock)
{
}

bool Uploads::mayWrite(const AssetUser &user, qint64 folderId)
{
    return m_folders.letters(user, folderId).value_or(QString()).contains(QLatin1Char('W'));
}

Uploads::Outcome Uploads::reserve(const AssetUser &user, const NewUpload &upload, QString &uploadId)
{
    qint64 total = 0;
    for (const NewUpload::File &file : upload.files) {
        if (file.size > largestBytes - total)
            return Outcome::TooLarge;
        total += file.size;
    }
    const QString id = newGuid();
    const Outcome outcome = m_database.tx([&] {
        const auto letters = m_folders.letters(user, upload.folderId);
        if (!letters)
            return Outcome::NotFound;
        if (!letters->contains(QLatin1Char('W')))
            return Outcome::NotAllowed;
        if (m_blobs.room() - reserveBytes < total)
            return Outcome::NoRoom;
        m_database.exec(addUpload, {user.accountId, id, user.userId, upload.folderId, upload.name,
                                    upload.detail, m_clock() + lifeMs});
        qint64 position = 0;
        for (const NewUpload::File &file : upload.files)
            m_database.exec(addUploadFile, {user.accountId, id, position++, file.name, file.size});
        return Outcome::Done;
    });
    uploadId = id;
    return outcome;
}

std::optional<Uploads::Known> Uploads::find(const AssetUser &user, const QString &uploadId)
{
    return m_database.snapshot([&]() -> std::optional<Known> {
        auto known = m_database.row(findUpload, {user.accountId, uploadId, user.userId, m_clock()},
                                    [](const SqlRow &row) {
                                        Known result;
                                        result.upload.folderId = row.integer(0);
                                        result.upload.name = row.text(1);
                                        result.upload.detail = row.text(2);
                                        result.guid = row.optionalText(3).value_or(QString());
                                        return result;
                                    });
        if (known)
            known->upload.files =
                m_database.rows(listUploadFiles, {user.accountId, uploadId}, [](const SqlRow &row) {
                    return NewUpload::File{row.text(0), row.integer(1)};
                });
        return known;
    });
}

Uploads::Outcome Uploads::open(const AssetUser &user, const QString &uploadId, qint64 position,
                               Part &part)
{
    const auto known = find(user, uploadId);
    if (!known || !known->guid.isEmpty() || position < 0 || position >= known->upload.files.size())
        return Outcome::NotFound;
    part.name = known->upload.files.at(position).name;
    part.size = known->upload.files.at(position).size;
    part.id = {user.accountId, uploadId, position};
    part.part = m_blobs.openPart(part.id, takeProgress(part.id));
    if (!part.part)
        return Outcome::Busy;
    part.received = part.part->size();
    return Outcome::Done;
}

void Uploads::close(Part &part)
{
    const std::unique_ptr<BlobPart> closing = std::move(part.part);
    closing->flush();
    // Before the part ends, so that the next one finds it.
    keepProgress(part.id, closing->takeProgress());
}

PartProgress Uploads::takeProgress(const PartId &id)
{
    const std::lock_guard lock(m_mutex);
    auto node = m_progress.extract({id.uploadId, id.position});
    return node ? std::move(node.mapped()) : PartProgress();
}

void Uploads::keepProgress(const PartId &id, PartProgress progress)
{
    // What is let go of is only read again.
    constexpr std::size_t mostKept = 256;
    const std::lock_guard lock(m_mutex);
    if (m_progress.size() >= mostKept)
        m_progress.erase(m_progress.begin());
    m_progress.insert_or_assign({id.uploadId, id.position}, std::move(progress));
}

void Uploads::dropParts(qint64 accountId, const QString &uploadId, qsizetype count)
{
    for (qsizetype i = 0; i < count; ++i) {
        const PartId id{accountId, uploadId, i};
        takeProgress(id);
        m_blobs.dropPart(id);
    }
}

/// Checks one file that has arrived and makes it ready to become a blob.
Uploads::Outcome Uploads::take(const PartId &id, const NewUpload::File &file,
                               const QString &checksum, Adopted &taken)
{
    const auto part = m_blobs.openPart(id, takeProgress(id));
    if (!part)
        return Outcome::Busy;
    if (part->size() != file.size) {
        keepProgress(id, part->takeProgress());
        return Outcome::Incomplete;
    }
    if (part->checksum() != checksum) {
        m_blobs.dropPart(id);
        return Outcome::Checksum;
    }
    const ContentType type = contentTypeOf(*part, file.name);
    const QByteArrayList thumbnails =
        type.assetType == QLatin1String("Image") ? m_thumbnails.make(*part) : QByteArrayList();
    m_blobs.prepare(*part, checksum, thumbnails);
    taken.file = {file.name, checksum, type.mime, file.size, !thumbnails.isEmpty()};
    taken.assetType = type.assetType;
    taken.part = {id, part->identity()};
    return Outcome::Done;
}

Uploads::Commit Uploads::commit(const AssetUser &user, const QString &uploadId,
                                const QStringList &checksums)
{
    const auto known = find(user, uploadId);
    if (!known)
        return {Outcome::NotFound, {}, {}};
    if (!known->guid.isEmpty())
        return {Outcome::Done, known->guid, {}};
    if (!mayWrite(user, known->upload.folderId))
        return {Outcome::NotAllowed, {}, {}};
    if (checksums.size() != known->upload.files.size())
        return {Outcome::Checksum, {}, known->upload.files.constFirst().name};

    Commit done;
    try {
        done = commitFiles(user, uploadId, known->upload, checksums);
    } catch (const BlobGone &) {
        // Somebody gave the upload up, or said another checksum, in between.
        done = {Outcome::Incomplete, {}, known->upload.files.constFirst().name};
    }
    if (done.outcome == Outcome::Done || done.outcome == Outcome::NotAllowed)
        return done;
    // Another call may have been faster and have taken the parts.
    const auto now = find(user, uploadId);
    if (!now || now->guid.isEmpty())
        return done;
    dropParts(user.accountId, uploadId, checksums.size());
    return {Outcome::Done, now->guid, {}};
}

Uploads::Commit Uploads::commitFiles(const AssetUser &user, const QString &uploadId,
                                     const NewUpload &upload, const QStringList &checksums)
{
    // Bytes first: when the row is there, so are they.
    const auto hold = m_blobs.hold(BlobHold::Mode::Store);
    QList<Adopted> files;
    for (qsizetype i = 0; i < checksums.size(); ++i) {
        Adopted file;
        const Outcome outcome =
            take({user.accountId, uploadId, i}, upload.files.at(i), checksums.at(i), file);
        if (outcome != Outcome::Done)
            return {outcome, {}, upload.files.at(i).name};
        files.append(file);
    }
    Asset asset;
    asset.assetType = files.constFirst().assetType;
    asset.folderId = upload.folderId;
    asset.name = upload.name;
    asset.detail = upload.detail;
    asset.createdById = user.userId;
    const Outcome outcome = m_database.tx([&] { return store(user, uploadId, asset, files); });
    if (outcome == Outcome::Done) {
        for (const QString &sha : checksums)
            m_blobs.settle({user.accountId, sha});
        dropParts(user.accountId, uploadId, checksums.size());
    }
    return {outcome, asset.guid, {}};
}

/// The end of an upload inside its transaction.
Uploads::Outcome Uploads::store(const AssetUser &user, const QString &uploadId, Asset &asset,
                                const QList<Adopted> &files)
{
    const auto now = find(user, uploadId);
    if (!now)
        return Outcome::NotFound;
    asset.guid = now->guid;
    if (!asset.guid.isEmpty())
        return Outcome::Done; // another call was faster
    if (!mayWrite(user, asset.folderId))
        return Outcome::NotAllowed;
    asset.guid = newGuid();
    asset.createdAt = m_clock();
    QList<AssetFile> rows;
    for (const Adopted &taken : files) {
        m_blobs.name(taken.part, {user.accountId, taken.file.sha});
        m_assets.addBlob(user.accountId, taken.file);
        rows.append(taken.file);
    }
    m_assets.add(user.accountId, asset, rows);
    m_database.exec(noteGuid, {user.accountId, uploadId, asset.guid});
    return Outcome::Done;
}

Uploads::Adopted Uploads::adopt(qint64 accountId, const QString &path, const QString &name)
{
    const auto source = FileSource::open(path);
    if (!source)
        throw BlobError(QStringLiteral("open ") + path, ENOENT);
    const PartId id{accountId, newGuid(), 0};
    auto drop = qScopeGuard([&] { m_blobs.dropPart(id); });
    QString checksum;
    qint64 size = 0;
    {
        const auto part = m_blobs.openPart(id);
        part->appendAll(*source);
        size = part->size();
        checksum = part->checksum();
    }
    Adopted taken;
    take(id, {name, size}, checksum, taken);
    drop.dismiss();
    return taken;
}

Uploads::Outcome Uploads::drop(const AssetUser &user, const QString &uploadId)
{
    if (!find(user, uploadId))
        return Outcome::NotFound;
    forget(user.accountId, uploadId);
    return Outcome::Done;
}

void Uploads::forget(qint64 accountId, const QString &uploadId)
{
    const qsizetype count = m_database.tx([&] {
        const auto files = m_database.rows(listUploadFiles, {accountId, uploadId},
                                           [](const SqlRow &row) { return row.text(0); });
        m_database.exec(dropUploadFiles, {accountId, uploadId});
        m_database.exec(dropUpload, {accountId, uploadId});
        return files.size();
    });
    dropParts(accountId, uploadId, count);
}

void Uploads::forgetExpired()
{
    const QList<qint64> accounts =
        m_database.rows(listAccounts, {}, [](const SqlRow &row) { return row.integer(0); });
    for (const qint64 account : accounts)
        forgetExpired(account);
}

void Uploads::forgetExpired(qint64 accountId)
{
    const QStringList expired = m_database.rows(listExpired, {accountId, m_clock()},
                                                [](const SqlRow &row) { return row.text(0); });
    for (const QString &uploadId : expired)
        forget(accountId, uploadId);
}

} // namespace Zel
