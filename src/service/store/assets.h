// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/assetfolders.h"
#include "service/store/blobstore.h"
#include "service/store/clock.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace Zel {

/// A file of an asset.
struct AssetFile
{
    QString name; ///< as it was called where it came from, without folders
    QString sha;
    QString mime;
    qint64 size = 0;
    bool thumbnail = false;
};

struct Asset
{
    QString guid;
    qint64 folderId = 0;
    QString name;
    QString detail;
    QString assetType;
    qint64 createdAt = 0;
    QString createdById;
    bool thumbnail = false; ///< of its first file
};

struct TrashedAsset
{
    qint64 accountId = 0;
    QString guid;
    QString name;
    qint64 deletedAt = 0;
};

/// The assets in the folders of an account; see `AssetFolders` for the rights.
class ZEL_EXPORT Assets
{
public:
    static constexpr qsizetype longestName = 1000;
    static constexpr qsizetype longestDetail = 10000;
    /// How long a deleted asset can be restored, at the least.
    static constexpr qint64 trashTimeMs = 30LL * 24 * 60 * 60 * 1000;

    enum class Outcome
    {
        Done,
        NotFound,
        NotAllowed
    };

    struct Filter
    {
        QString name;    ///< part of the asset's name, whatever its case; empty for any
        QString formats; ///< extensions without dot, parted by commas; "0" or empty for any
    };

    /// Where an asset stands in the list of its folder; one without texts comes before all others.
    struct Place
    {
        QString nameKey;
        QString guid;
    };

    using Visitor = std::function<bool(const Asset &, const Place &)>;

    Assets(Database &database, AssetFolders &folders, BlobStore &blobs, const Clock &clock);

    /// Shows the assets of a folder that come after a place, in order of name, then guid, to
    /// `visit`, until it returns false. Only inside a snapshot of the caller's, which may be run
    /// again from its start.
    Outcome visitAfter(const AssetUser &user, qint64 folderId, const Filter &filter,
                       const Place &after, const Visitor &visit);
    /// The asset's files in their order, when the person may list its folder.
    Outcome find(const AssetUser &user, const QString &guid, QList<AssetFile> &files);
    /// Puts an asset into the trash.
    Outcome remove(const AssetUser &user, const QString &guid);

    /// A file of an asset that is not in the trash, whoever asks: for addresses that carry their
    /// permission in themselves.
    std::optional<AssetFile> file(qint64 accountId, const QString &guid, qint64 position);

    /// What lies in the trash of all accounts, the oldest first.
    QList<TrashedAsset> trash();
    /// Puts an asset back into its folder, or into the root when the folder is gone. NotFound when
    /// no such asset lies in the trash.
    Outcome restore(const QString &guid);
    /// Forgets assets deleted before a time, and their bytes where nothing else has them; also
    /// former previews of themes, and files of uploads that were refused. Returns how many assets
    /// that were.
    qint64 purge(qint64 deletedBefore);
    /// The same of `purgedAtOnce` assets at the most, unless somebody else is storing or clearing
    /// bytes right now; nothing then.
    std::optional<qint64> purgeUnlessBusy(qint64 deletedBefore);

    /// Notes that a blob is there. Only inside a transaction.
    void addBlob(qint64 accountId, const AssetFile &file);
    /// Stores an asset with its files. Only inside a transaction.
    void add(qint64 accountId, const Asset &asset, const QList<AssetFile> &files);
    /// Whether an asset, in the trash or not, has that guid.
    bool isKnown(qint64 accountId, const QString &guid);

    /// How many go in one transaction, so that nobody waits long for their uploads to end.
    static constexpr qint64 purgedAtOnce = 200;

private:
    qint64 purgeSome(qint64 deletedBefore);
    qint64 forgetOld(qint64 deletedBefore, QStringList &unnamed);
    void addUnsettled(QStringList &unnamed);
    bool isNamed(const QString &sha);

    Database &m_database;
    AssetFolders &m_folders;
    BlobStore &m_blobs;
    Clock m_clock;
};

} // namespace Zel
