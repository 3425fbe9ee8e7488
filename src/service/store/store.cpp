// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/store.h"

#include "service/store/databaseblobs.h"
#include "service/store/fileblobs.h"

#include <QStandardPaths>

namespace Zel {

namespace {

std::unique_ptr<BlobStore> blobStore(Database &database, const Clock &now, const BlobPlace &place)
{
    if (place.kind == BlobKind::Database)
        return std::make_unique<DatabaseBlobs>(database, now);
    return std::make_unique<FileBlobs>(
        place.folder.isEmpty() ? Store::defaultFilesFolder(database.address()) : place.folder);
}

} // namespace

Store::Store(Database &openDatabase, PasswordHasher::Cost cost, const Clock &now,
             const BlobPlace &place, const ThumbnailMaker &thumbnailMaker)
    : m_blobs(blobStore(openDatabase, now, place))
    , database(openDatabase)
    , clock(now)
    , hasher(cost)
    , keys(openDatabase, now)
    , users(openDatabase, hasher, now)
    , sessions(openDatabase, keys, now)
    , throttle(openDatabase, keys, now)
    , accounts(openDatabase)
    , repeats(openDatabase, now)
    , blobs(*m_blobs)
    , themes(openDatabase)
    , dataRecords(openDatabase)
    , projects(openDatabase, themes, now)
    , deployments(openDatabase, keys)
    , audience(openDatabase)
    , statistics(openDatabase)
    , questions(openDatabase, now)
    , polls(openDatabase, now)
    , surveys(openDatabase, now)
    , thumbnails(thumbnailMaker)
    , folders(openDatabase, accounts)
    , assets(openDatabase, folders, blobs, now)
    , uploads(openDatabase, folders, assets, blobs, thumbnails, now)
{
}

QString Store::defaultFilesFolder(const DatabaseAddress &address)
{
    if (address.engine == DatabaseAddress::Engine::Sqlite)
        return address.file + QLatin1String(".files");
    return QStringLiteral("%1/zel-service/%2-%3-%4")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
             address.host.isEmpty() ? QStringLiteral("local") : address.host)
        .arg(address.port)
        .arg(address.database);
}

} // namespace Zel
