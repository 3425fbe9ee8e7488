// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"
#include "platform/core/export.h"
#include "service/store/backuparchive.h"
#include "service/store/backupformat.h"
#include "service/store/bytesource.h"
#include "service/store/progress.h"
#include "service/store/tabletransfer.h"

#include <QByteArrayList>
#include <QString>

#include <functional>
#include <optional>

namespace Zel {

/// Goes once through a backup, checks everything in it and shows it to whoever wants to see.
/// Only when `run` has returned it is known that what was shown is all there was and as it was
/// written; after `runTables`, that the header and the rows are. Functions throw `DatabaseError`:
/// Corrupt for a file that is cut, damaged or no backup, Newer for one of a newer program.
class ZEL_EXPORT BackupWalk
{
public:
    struct Visitor
    {
        /// Each row, table after table in the order of the header.
        std::function<void(const TableInfo &table, const QByteArray &line)> row;
        /// After the last row of a table, also of one without rows.
        std::function<void(const TableInfo &table, const TableSum &sum)> tableEnd;
        /// A file with its thumbnails, if it has any; it may be read once, in order, or not at all.
        std::function<void(const QString &sha, ByteSource &bytes, const QByteArrayList &thumbnails)>
            blob;
    };

    BackupWalk(const QString &path, const Visitor &visitor, const Progress &progress = {});

    // One of these may be called, once.

    void run();
    /// Reads the header and the rows alone, of a backup that `run` has gone through before: refuses
    /// others than `checked`, its manifest, tells of.
    void runTables(const BackupManifest &checked);
    /// Reads the beginning alone.
    void readHeader();

    const BackupHeader &header() const { return m_header; }

    const BackupManifest &manifest() const { return m_manifest; }

private:
    void readTables();
    void readTable(const TableInfo &table);
    void readPiece(const TableInfo &table, TableSumBuilder &sum);
    void showRow(const TableInfo &table, TableSumBuilder &sum, const QByteArray &line);
    void readFiles();
    void readBlob();
    void readThumbnail();
    void readManifest();
    void next();
    bool isAt(const QString &start) const;

    ArchiveReader m_archive;
    Visitor m_visitor;
    Progress m_progress;
    BackupHeader m_header;
    BackupManifest m_manifest;
    QXSC::Checksum m_files;
    QByteArrayList m_thumbnails;
    QString m_thumbnailsOf;
    bool m_isAtEnd = false;
};

} // namespace Zel
