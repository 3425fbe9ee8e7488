// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"
#include "service/store/clock.h"

namespace Zel {

class Database;
class OpenParts;

/// Blobs in the database itself, cut into chunks, so that daemons which share a database need share
/// nothing else. A blob belongs to one account. It gets its name in the transaction that stores the
/// row which names it; no bytes are moved for that.
///
/// One writer at a time: another one of the same daemon is refused when it opens the part, one of
/// another daemon when it adds to it (`BlobBusy`).
class ZEL_EXPORT DatabaseBlobs : public BlobStore
{
public:
    /// The longest chunk. Bytes are gathered up to it, so that many small pieces make no more
    /// transactions than need be.
    static constexpr qint64 chunkBytes = 256 * 1024;
    /// A part that is older is of no upload that is still known.
    static constexpr qint64 partLifeMs = 48LL * 60 * 60 * 1000;

    DatabaseBlobs(Database &database, const Clock &clock);
    ~DatabaseBlobs() override;

    BlobKind kind() const override { return BlobKind::Database; }

    std::unique_ptr<BlobPart> openPart(const PartId &id, PartProgress progress) override;
    void dropPart(const PartId &id) override;
    void prepare(BlobPart &part, const QString &sha, const QByteArrayList &thumbnails) override;
    void name(const CheckedPart &part, const BlobId &blob) override;
    void settle(const BlobId &blob) override;

    /// Nothing: naming is part of the transaction.
    QStringList unsettled() override { return {}; }

    void expect(const BlobId &blob) override;

    std::shared_ptr<ByteSource> open(const BlobId &blob) override;
    std::shared_ptr<ByteSource> openThumbnail(const BlobId &blob, int size) override;
    void visit(const Visitor &visit) override;

    /// Needs no lock: the transactions themselves do not let a row name what is cleared away.
    std::unique_ptr<BlobHold> hold(BlobHold::Mode mode) override;
    void forget(const BlobId &blob) override;
    void clear(const QStringList &unnamed) override;

    bool isWritable() override { return true; } // as the database is

protected:
    /// What a SQLite file can grow by; a server does not tell.
    qint64 measuredRoom() override;
    void nameAlone(const CheckedPart &part, const BlobId &blob) override;

private:
    void remove(qint64 accountId, const QString &contentId);

    Database &m_database;
    Clock m_clock;
    std::shared_ptr<OpenParts> m_openParts;
};

} // namespace Zel
