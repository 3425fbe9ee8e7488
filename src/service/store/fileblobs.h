// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"

namespace Zel {

/// Blobs as files of a folder, each under its checksum, beside the parts of uploads. A blob is
/// whole from the moment it is there: it is written, and written out to the disk, as a part and
/// gets its name afterwards, before the row that names it. Daemons that share the folder keep out
/// of each other's way by locks on files, which end with the process. Folders are made, for their
/// owner alone, when first needed.
class ZEL_EXPORT FileBlobs : public BlobStore
{
public:
    explicit FileBlobs(const QString &folder);
    ~FileBlobs() override;

    BlobKind kind() const override { return BlobKind::Files; }

    const QString &folder() const { return m_folder; }

    QString blobPath(const QString &sha) const;
    QString thumbnailPath(const QString &sha, int size) const;
    QString partPath(const PartId &id) const;
    /// An empty file that says that a blob has its name and perhaps no row: from before it is named
    /// until its transaction has ended.
    QString notePath(const QString &sha) const;

    std::unique_ptr<BlobPart> openPart(const PartId &id, PartProgress progress) override;
    void dropPart(const PartId &id) override;
    /// Writes the part out and links it under its name, so that nothing is left to be done.
    void prepare(BlobPart &part, const QString &sha, const QByteArrayList &thumbnails) override;
    void name(const CheckedPart &part, const BlobId &blob) override;
    void settle(const BlobId &blob) override;
    QStringList unsettled() override;
    /// Nothing is cleared away under a hold for storing.
    void expect(const BlobId &blob) override;

    std::shared_ptr<ByteSource> open(const BlobId &blob) override;
    std::shared_ptr<ByteSource> openThumbnail(const BlobId &blob, int size) override;
    void visit(const Visitor &visit) override;

    std::unique_ptr<BlobHold> hold(BlobHold::Mode mode) override;
    void forget(const BlobId &blob) override;
    void clear(const QStringList &unnamed) override;
    bool isWritable() override;

protected:
    qint64 measuredRoom() override;
    void nameAlone(const CheckedPart &part, const BlobId &blob) override;

private:
    QString m_folder;
};

} // namespace Zel
