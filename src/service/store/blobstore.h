// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"
#include "platform/core/export.h"
#include "service/store/bloberror.h"
#include "service/store/bytesource.h"

#include <QByteArrayList>
#include <QList>
#include <QString>

#include <array>
#include <functional>
#include <memory>

namespace Zel {

/// Where the bytes of a database's files lie.
enum class BlobKind
{
    Files,   ///< in a folder, under their checksum
    Database ///< in the database, cut into chunks
};

/// A blob: the bytes with this SHA-256 (64 hexadecimal digits) of an account; 0 is every account.
/// Where the bytes lie in files, equal ones of all accounts are the same file.
struct BlobId
{
    qint64 accountId = 0;
    QString sha;

    bool operator==(const BlobId &) const = default;
};

/// A file of an upload on its way.
struct PartId
{
    qint64 accountId = 0;
    QString uploadId;
    qint64 position = 0;
};

/// A part as it was when its checksum was compared.
struct CheckedPart : PartId
{
    QString identity; ///< as `BlobPart::identity` told it
};

/// The checksum of the beginning of a part, kept between the calls that add to it.
struct PartProgress
{
    QXSC::Checksum checksum;
    qint64 hashed = 0; ///< how many bytes it is the checksum of
    QString identity;  ///< tells a part from one of the same id that was begun anew
};

/// A file on this machine with the bytes of something, as long as this object lives.
class ZEL_EXPORT LocalFile
{
public:
    virtual ~LocalFile();
    virtual QString path() const = 0;
};

/// The part of an upload that has arrived, open to be written by one thread at a time. Functions
/// throw `BlobError`, `BlobBusy` when another one has written meanwhile, and `DatabaseError`.
class ZEL_EXPORT BlobPart : public ByteSource
{
public:
    virtual void append(const char *data, qint64 count) = 0;
    /// Puts what was appended where it outlives this process. Nothing may be told to have arrived
    /// before. Ending without it may lose what was appended last.
    virtual void flush() = 0;
    /// Appends all of a source to an empty part, and writes it out.
    void appendAll(ByteSource &bytes);
    /// SHA-256 of the whole, as 64 hexadecimal digits. Reads what it has not seen.
    QString checksum();

    /// The same bytes as a file, as long as this part lives.
    virtual std::unique_ptr<LocalFile> localFile() = 0;

    /// Tells this part from one of the same id that was begun anew; empty where that is not known.
    /// A part that was prepared has one where `BlobStore::name` needs it.
    const QString &identity() const { return m_progress.identity; }

    /// For the next one that opens this part; to be called last.
    PartProgress takeProgress() { return std::move(m_progress); }

protected:
    explicit BlobPart(PartProgress progress);

    /// To be told of everything that is appended, where it is appended.
    void addToChecksum(qint64 offset, const char *data, qint64 count);
    /// Forgets what was added unless it was to the part of that identity and no more than that has.
    /// Where the identity is empty, nothing is kept.
    void keepProgressOf(const QString &identity, qint64 size);

    PartProgress m_progress;
};

/// Keeps others from clearing blobs away, or from storing any, as long as it lives.
class ZEL_EXPORT BlobHold
{
public:
    enum class Mode
    {
        Store,   ///< shared: blobs are stored and rows that name them are written
        Clear,   ///< alone: blobs that no row names are removed
        ClearNow ///< the same, but not waited for
    };

    virtual ~BlobHold();
};

/// What a check of a blob against its own name has found.
enum class BlobState
{
    Whole,
    Missing,
    Damaged ///< there are other bytes than the checksum says, or not all of them
};

/// The bytes of the files of assets and of the previews of themes, and the parts of uploads. Used
/// by many threads at once.
///
/// A blob comes into being in steps: a part is opened, written, flushed, closed, opened again, ...;
/// its checksum is compared; `prepare` makes it outlive everything; and `name` makes it the blob,
/// inside the transaction that stores the row which names it, under a hold for storing. So a row
/// never names bytes that are not there. Functions throw `BlobError` and `DatabaseError`.
class ZEL_EXPORT BlobStore
{
public:
    /// Pixels along the longer edge of the thumbnails of a blob, the largest first.
    static constexpr std::array thumbnailSizes{256, 128, 64};

    using Visitor = std::function<void(const BlobId &blob, qint64 size)>;

    virtual ~BlobStore();

    virtual BlobKind kind() const = 0;

    // Parts.

    /// Opens, and makes where it is missing, a part. Null when it is known that another one is
    /// writing it. With what an earlier one left of its progress, the bytes that one has seen need
    /// not be read again for the checksum.
    virtual std::unique_ptr<BlobPart> openPart(const PartId &id, PartProgress progress = {}) = 0;
    virtual void dropPart(const PartId &id) = 0;

    // From parts to blobs.

    /// Makes a part ready to be named: whole, checked and held open by the caller. `thumbnails` are
    /// one for each size, or none.
    virtual void prepare(BlobPart &part, const QString &sha, const QByteArrayList &thumbnails) = 0;
    /// Gives a part that was prepared its name as a blob. Where a blob of that name is there, this
    /// one stays a part. Throws `BlobGone` when the part was dropped meanwhile, also when it was
    /// begun anew: nobody has compared those bytes. Only inside a transaction.
    virtual void name(const CheckedPart &part, const BlobId &blob) = 0;
    /// To be told, after the transaction and under the same hold, that a row names a blob which was
    /// prepared.
    virtual void settle(const BlobId &blob) = 0;
    /// The checksums of what was prepared and never settled: it was refused, its transaction
    /// failed, or the process ended. Rows may name some all the same. Under a hold for clearing.
    virtual QStringList unsettled() = 0;
    /// Makes sure that a blob which was there still is, and will be when the transaction ends;
    /// throws `BlobGone`. Only inside a transaction.
    virtual void expect(const BlobId &blob) = 0;

    // Blobs.

    bool has(const BlobId &blob);
    /// Null for a blob that is not there.
    virtual std::shared_ptr<ByteSource> open(const BlobId &blob) = 0;
    /// Null for a size that is not made, and for a blob without thumbnails.
    virtual std::shared_ptr<ByteSource> openThumbnail(const BlobId &blob, int size) = 0;
    /// Its thumbnails, one for each size, or none.
    QByteArrayList thumbnailsOf(const BlobId &blob);
    /// Shows every blob that is there, in no order, whether a row names it or not. The account is
    /// `noAccount` where blobs are of none. `visit` must not run statements.
    virtual void visit(const Visitor &visit) = 0;
    /// Reads a blob through.
    BlobState verify(const BlobId &blob);
    /// Stores a blob as a whole, for rows that are there already or that nobody can clear away
    /// before they are; one that is there is kept. Throws `BlobError` for bytes with another
    /// checksum. Runs transactions of its own, so not inside one.
    void add(const BlobId &blob, ByteSource &bytes, const QByteArrayList &thumbnails);

    // Clearing away.

    /// Null, in the mode ClearNow only, when somebody else has it.
    virtual std::unique_ptr<BlobHold> hold(BlobHold::Mode mode) = 0;
    /// Notes that no row names a blob any more. Inside the transaction that removes the last one.
    virtual void forget(const BlobId &blob) = 0;
    /// Removes the bytes of what was forgotten, and of parts that nobody can know any more.
    /// `unnamed` are the checksums that no row of any account names. Under a hold for clearing.
    virtual void clear(const QStringList &unnamed) = 0;

    /// Whether bytes could be stored now, as far as the place they lie in is concerned.
    virtual bool isWritable() = 0;

    /// Bytes that can still be stored, as far as that can be known.
    qint64 room();

    void setRoomMeter(const std::function<qint64()> &meter) { m_roomMeter = meter; }

    /// The account of blobs that are of none.
    static constexpr qint64 noAccount = -1;

protected:
    BlobStore();

    virtual qint64 measuredRoom() = 0;
    /// `name`, in a transaction of its own where one is needed.
    virtual void nameAlone(const CheckedPart &part, const BlobId &blob) = 0;

private:
    std::function<qint64()> m_roomMeter;
};

/// SHA-256 of all that is in a source, as 64 hexadecimal digits.
ZEL_EXPORT QString checksumOf(ByteSource &source);

} // namespace Zel
