// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/blobstore.h"

#include <QString>

#include <optional>
#include <stdexcept>

namespace Zel {

class Database;

/// A database keeps the bytes of its files in another place than was asked for. `what` is a
/// sentence for people.
class ZEL_EXPORT BlobKindError : public std::runtime_error
{
public:
    explicit BlobKindError(const QString &sentence);
    ~BlobKindError() override;
};

/// Where a store finds the bytes of files.
struct BlobPlace
{
    BlobPlace() = default;

    /// In files of that folder.
    BlobPlace(const QString &filesFolder) // NOLINT(google-explicit-constructor)
        : folder(filesFolder)
    {
    }

    BlobPlace(BlobKind blobKind, const QString &filesFolder)
        : kind(blobKind)
        , folder(filesFolder)
    {
    }

    BlobKind kind = BlobKind::Files;
    QString folder; ///< of the kind `Files`; empty for the usual one
};

/// "files" or "database".
ZEL_EXPORT QString wordOf(BlobKind kind);
ZEL_EXPORT std::optional<BlobKind> blobKindOf(const QString &word);

/// Where the bytes of a migrated database lie, as far as that has been decided.
ZEL_EXPORT std::optional<BlobKind> decidedBlobKind(Database &database);

/// Where the bytes of a migrated database lie. The first one who asks decides, for good, so that no
/// two daemons look in different places: in the database when that is wanted, else in files. Throws
/// `BlobKindError` when something else is wanted than has been decided.
ZEL_EXPORT BlobKind decideBlobKind(Database &database, std::optional<BlobKind> wanted);

/// Decides anew, whatever was decided before: for a workspace whose files are moved along. Only
/// inside a transaction.
ZEL_EXPORT void recordBlobKind(Database &database, BlobKind kind);

} // namespace Zel
