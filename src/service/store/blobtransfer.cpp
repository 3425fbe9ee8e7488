// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/blobtransfer.h"

#include "service/store/blobkind.h"
#include "service/store/copytarget.h"
#include "service/store/database.h"
#include "service/store/databaseblobs.h"
#include "service/store/fileblobs.h"
#include "service/store/store.h"
#include "service/store/tableschema.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>

namespace Zel {

namespace {

constexpr qint64 readBytes = 256 * 1024;

const SqlText assetBlobs(R"sql(
    SELECT account_id, sha, size, thumbnail FROM blob
)sql");

const SqlText previewBlobs(R"sql(
    SELECT account_id, sha, size FROM theme_preview
)sql");

bool hasTable(Database &database, const char *name)
{
    const QList<TableInfo> tables = readTables(database);
    return std::any_of(tables.begin(), tables.end(), [name](const TableInfo &table) {
        return table.name == QLatin1String(name);
    });
}

BlobId idOf(const NamedBlob &blob)
{
    return {blob.accounts.constFirst(), blob.sha};
}

QString missing(const NamedBlob &blob)
{
    return QStringLiteral("The file %1, which rows name, is not there.").arg(blob.sha);
}

QString damaged(const NamedBlob &blob)
{
    return QStringLiteral("The file %1 is damaged.").arg(blob.sha);
}

} // namespace

QList<NamedBlob> namedBlobs(Database &database)
{
    QMap<QString, NamedBlob> all;
    const auto note = [&all](const SqlRow &row, bool hasThumbnails) {
        NamedBlob &blob = all[row.text(1)];
        blob.sha = row.text(1);
        blob.size = row.integer(2);
        if (!blob.accounts.contains(row.integer(0)))
            blob.accounts << row.integer(0);
        blob.hasThumbnails = blob.hasThumbnails || hasThumbnails;
    };
    if (hasTable(database, "blob"))
        database.query(assetBlobs, {}, [&](const SqlRow &row) { note(row, row.boolean(3)); });
    if (hasTable(database, "theme_preview"))
        database.query(previewBlobs, {}, [&](const SqlRow &row) { note(row, false); });
    return all.values();
}

QString faultOfSize(BlobStore &blobs, const NamedBlob &blob)
{
    for (const qint64 account : blob.accounts) {
        const auto source = blobs.open({account, blob.sha});
        if (!source)
            return missing(blob);
        if (source->size() != blob.size)
            return damaged(blob);
    }
    return QString();
}

QString faultOfBytes(BlobStore &blobs, const NamedBlob &blob)
{
    const QString fault = faultOfSize(blobs, blob);
    if (!fault.isEmpty())
        return fault;
    // Where files are kept in a folder, those of all accounts are one.
    const qsizetype copies = blobs.kind() == BlobKind::Files ? 1 : blob.accounts.size();
    for (qsizetype i = 0; i < copies; ++i) {
        if (blobs.verify({blob.accounts.at(i), blob.sha}) != BlobState::Whole)
            return damaged(blob);
    }
    return QString();
}

std::unique_ptr<BlobHold> holdForReading(BlobStore &blobs)
{
    const auto *files = dynamic_cast<FileBlobs *>(&blobs);
    if (files && !QFileInfo(files->folder()).isDir())
        return nullptr;
    return blobs.hold(BlobHold::Mode::Store);
}

void requireBlobs(BlobStore &blobs, const QList<NamedBlob> &named)
{
    for (const NamedBlob &blob : named) {
        const QString fault = faultOfSize(blobs, blob);
        if (!fault.isEmpty())
            throw CopyError(fault + QLatin1String(" \"zel-service doctor\" lists all that are."));
    }
}

void readBlob(BlobStore &blobs, const NamedBlob &blob,
              const std::function<void(const QByteArray &bytes)> &visit)
{
    const auto source = blobs.open(idOf(blob));
    if (!source)
        throw CopyError(missing(blob));
    QXSC::Checksum checksum;
    qint64 read = 0;
    while (read < blob.size) {
        const QByteArray bytes = source->read(read, std::min(readBytes, blob.size - read));
        if (bytes.isEmpty())
            break;
        checksum.add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        read += bytes.size();
        visit(bytes);
    }
    if (source->size() != blob.size || QString::fromLatin1(checksum.hex()) != blob.sha)
        throw CopyError(damaged(blob));
}

QByteArrayList thumbnailsOf(BlobStore &blobs, const NamedBlob &blob)
{
    return blob.hasThumbnails ? blobs.thumbnailsOf(idOf(blob)) : QByteArrayList();
}

void addBlob(BlobStore &to, const NamedBlob &blob, ByteSource &bytes,
             const QByteArrayList &thumbnails)
{
    bool isRead = false;
    for (const qint64 account : blob.accounts) {
        const BlobId id{account, blob.sha};
        if (to.has(id)) {
            if (to.verify(id) != BlobState::Whole)
                throw CopyError(QStringLiteral("Where the file %1 is to be kept there is a damaged "
                                               "one. Remove it, or take another folder.")
                                    .arg(blob.sha));
            if (to.kind() == BlobKind::Files)
                return;
        } else if (!isRead) {
            to.add(id, bytes, thumbnails);
            isRead = true;
        } else {
            to.add(id, *to.open(idOf(blob)), thumbnails);
        }
    }
}

void copyBlob(BlobStore &from, BlobStore &to, const NamedBlob &blob)
{
    const auto source = from.open(idOf(blob));
    if (!source)
        throw CopyError(missing(blob));
    addBlob(to, blob, *source, thumbnailsOf(from, blob));
}

BlobKind blobKindOfAnyStep(Database &database)
{
    const bool canChoose = hasTable(database, "service_setting");
    return canChoose ? decidedBlobKind(database).value_or(BlobKind::Files) : BlobKind::Files;
}

std::unique_ptr<BlobStore> openBlobs(Database &database, BlobKind kind, const QString &folder)
{
    if (kind == BlobKind::Database)
        return std::make_unique<DatabaseBlobs>(database, systemClock());
    return std::make_unique<FileBlobs>(
        folder.isEmpty() ? Store::defaultFilesFolder(database.address()) : folder);
}

} // namespace Zel
