// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/blobstore.h"

#include <QByteArrayList>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Zel {

class Database;

/// A file that rows name.
struct NamedBlob
{
    QString sha;
    qint64 size = 0;
    QList<qint64> accounts; ///< those whose rows name it
    bool hasThumbnails = false;
};

/// All files that rows of the database name, by checksum. Only in `tx` or `snapshot`; it may be at
/// an earlier step.
ZEL_EXPORT QList<NamedBlob> namedBlobs(Database &database);

/// What is wrong with a file, as a sentence; empty when nothing is. The size is compared without
/// reading it.
ZEL_EXPORT QString faultOfSize(BlobStore &blobs, const NamedBlob &blob);
/// The same, of all its bytes.
ZEL_EXPORT QString faultOfBytes(BlobStore &blobs, const NamedBlob &blob);

/// Keeps files from being cleared away while they are read. Nothing where there is no folder yet,
/// which is not made by it.
ZEL_EXPORT std::unique_ptr<BlobHold> holdForReading(BlobStore &blobs);

/// Throws `CopyError` unless all files are there and as long as they should be.
ZEL_EXPORT void requireBlobs(BlobStore &blobs, const QList<NamedBlob> &named);

/// Shows all bytes of a file and throws `CopyError` at the end if they are not those it should
/// have.
ZEL_EXPORT void readBlob(BlobStore &blobs, const NamedBlob &blob,
                         const std::function<void(const QByteArray &bytes)> &visit);

/// Its thumbnails, none for a file that has none.
ZEL_EXPORT QByteArrayList thumbnailsOf(BlobStore &blobs, const NamedBlob &blob);

/// Stores a file for every account that names it. One that is there already is read instead.
/// Throws `CopyError` when other bytes arrive, or are there. Not inside a transaction.
ZEL_EXPORT void addBlob(BlobStore &to, const NamedBlob &blob, ByteSource &bytes,
                        const QByteArrayList &thumbnails);

/// The same with the bytes of another store.
ZEL_EXPORT void copyBlob(BlobStore &from, BlobStore &to, const NamedBlob &blob);

/// Where the files of a database lie that may be at an earlier step.
ZEL_EXPORT BlobKind blobKindOfAnyStep(Database &database);

/// The files of a database.
/// @param folder of the kind `Files`; empty for the usual one
ZEL_EXPORT std::unique_ptr<BlobStore> openBlobs(Database &database, BlobKind kind,
                                                const QString &folder);

} // namespace Zel
