// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/assets.h"
#include "service/store/thumbnails.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace Zel {

/// What an upload is to become.
struct NewUpload
{
    struct File
    {
        QString name;
        qint64 size = 0;
    };

    QString name;
    QString detail;
    qint64 folderId = 0;
    QList<File> files;
};

/// Uploads on their way to becoming assets: reserved, filled in any number of sittings, and made an
/// asset at once when every file is there and has the checksum its owner says. One that is not
/// finished within a day is forgotten.
class ZEL_EXPORT Uploads
{
public:
    static constexpr qint64 lifeMs = 24LL * 60 * 60 * 1000;
    /// The longest piece of a file in one request.
    static constexpr qint64 chunkBytes = 32LL * 1024 * 1024;
    static constexpr qint64 largestBytes = 64LL * 1024 * 1024 * 1024;
    static constexpr qsizetype mostFiles = 100;
    /// Room left for the database and everybody else.
    static constexpr qint64 reserveBytes = 16LL * 1024 * 1024;

    enum class Outcome
    {
        Done,
        NotFound,
        NotAllowed, ///< the right to write into the folder is not, or not any more, there
        NoRoom,
        TooLarge,
        Busy,       ///< another call is writing or finishing the same file
        Incomplete, ///< a file has not arrived to its end
        Checksum    ///< a file is not what its owner has; what arrived of it is dropped
    };

    /// A file that is open to be written.
    struct Part
    {
        PartId id;
        std::unique_ptr<BlobPart> part;
        QString name; ///< of the file, also when it cannot be opened
        qint64 received = 0;
        qint64 size = 0; ///< of the whole file
    };

    /// What has become of an upload.
    struct Commit
    {
        Outcome outcome = Outcome::Done;
        QString guid; ///< of the asset
        QString file; ///< the name of the one that is to blame
    };

    Uploads(Database &database, AssetFolders &folders, Assets &assets, BlobStore &blobs,
            Thumbnails &thumbnails, const Clock &clock);

    Outcome reserve(const AssetUser &user, const NewUpload &upload, QString &uploadId);
    /// Opens a file of an upload of that person; `position` from 0.
    Outcome open(const AssetUser &user, const QString &uploadId, qint64 position, Part &part);
    /// Takes back, and closes, a file that was opened. What was appended to it has arrived only
    /// when this does not throw.
    void close(Part &part);
    /// Makes the asset; a second call says the same again. `checksums` are SHA-256, hexadecimal.
    Commit commit(const AssetUser &user, const QString &uploadId, const QStringList &checksums);

    /// A file that was checked and is ready to become a blob.
    struct Adopted
    {
        AssetFile file;
        QString assetType;
        CheckedPart part;
    };

    /// Takes in a file of this machine for an account; to be followed by a transaction that stores
    /// a row for it, and names the part as its blob, under the caller's hold for storing. The
    /// caller drops the part afterwards. `name` is what the file is called.
    Adopted adopt(qint64 accountId, const QString &path, const QString &name);
    /// Forgets the uploads of all accounts that were not finished in time.
    void forgetExpired();
    /// Gives an upload up. One that has become an asset stays one.
    Outcome drop(const AssetUser &user, const QString &uploadId);

private:
    struct Known
    {
        NewUpload upload;
        QString guid; ///< of the asset it has become
    };

    std::optional<Known> find(const AssetUser &user, const QString &uploadId);
    Outcome take(const PartId &id, const NewUpload::File &file, const QString &checksum,
                 Adopted &taken);
    Commit commitFiles(const AssetUser &user, const QString &uploadId, const NewUpload &upload,
                       const QStringList &checksums);
    Outcome store(const AssetUser &user, const QString &uploadId, Asset &asset,
                  const QList<Adopted> &files);
    bool mayWrite(const AssetUser &user, qint64 folderId);
    void forget(qint64 accountId, const QString &uploadId);
    void dropParts(qint64 accountId, const QString &uploadId, qsizetype count);
    PartProgress takeProgress(const PartId &id);
    void keepProgress(const PartId &id, PartProgress progress);
    void forgetExpired(qint64 accountId);

    Database &m_database;
    AssetFolders &m_folders;
    Assets &m_assets;
    BlobStore &m_blobs;
    Thumbnails &m_thumbnails;
    Clock m_clock;
    std::mutex m_mutex;
    std::map<std::pair<QString, qint64>, PartProgress> m_progress;
};

} // namespace Zel
