// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/tableschema.h"
#include "service/store/tabletransfer.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace Zel {

// A backup is a tar file (pax), compressed by zstd. Its entries, in this order:
//
//   backup.json                 BackupHeader
//   tables/NAME/000001.jsonl    rows of a table, see rowLine, in the order of its key; cut between
//   tables/NAME/000002.jsonl    lines into pieces; tables stand before those that refer to them
//   thumbnails/SHA256-SIZE.png  before the file that each is of
//   blobs/SHA256                the files that rows name, by checksum
//   manifest.json               BackupManifest
//   manifest.sha256             its checksum, as sha256sum writes it
//
// So everything can be read and checked by common tools too: the lines of a table's pieces, one
// after the other, have the checksum that the manifest says.

constexpr char backupHeaderName[] = "backup.json";
constexpr char backupManifestName[] = "manifest.json";
constexpr char backupManifestSumName[] = "manifest.sha256";

/// What a backup begins with.
struct ZEL_EXPORT BackupHeader
{
    /// The form of the file; another number is another form.
    static constexpr int formatVersion = 1;

    int format = formatVersion;
    int step = 0;         ///< the migration step of its tables
    QString engine;       ///< what it was made from: "sqlite" or "postgresql"
    QString blobs;        ///< where that had its files: "files" or "database"
    qint64 createdAt = 0; ///< milliseconds UTC
    QList<TableInfo> tables;

    QByteArray toJson() const;
    /// Nothing for what is no such header. Of another `format` only that number can be trusted.
    static std::optional<BackupHeader> fromJson(const QByteArray &json);
};

/// What a backup ends with.
struct ZEL_EXPORT BackupManifest
{
    QString headerSha256;
    QList<TableSum> tables;
    qint64 blobs = 0;
    qint64 blobBytes = 0;
    QString
        filesSha256; ///< of the lines "SHA256 SIZE NAME\n" of all entries below blobs, thumbnails

    bool operator==(const BackupManifest &) const = default;

    QByteArray toJson() const;
    static std::optional<BackupManifest> fromJson(const QByteArray &json);
};

/// The content of manifest.sha256 for a manifest.
ZEL_EXPORT QByteArray manifestSumLine(const QByteArray &manifest);

/// SHA-256 of some bytes as 64 hexadecimal digits.
ZEL_EXPORT QString sha256Of(const QByteArray &bytes);

/// The line of one file for `filesSha256`.
ZEL_EXPORT QByteArray fileLine(const QString &name, qint64 size, const QString &sha256);

} // namespace Zel
