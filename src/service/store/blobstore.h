// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"
#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <functional>
#include <stdexcept>

namespace Zel {

/// The file system refused. `isFull` tells that there is no room for more.
class ZEL_EXPORT BlobError : public std::runtime_error
{
public:
    BlobError(const QString &doing, int systemError);
    ~BlobError() override;

    bool isFull() const { return m_full; }

private:
    bool m_full;
};

/// The checksum of the beginning of a part, kept between the calls that add to it.
struct PartProgress
{
    QXSC::Checksum checksum;
    qint64 hashed = 0; ///< how many bytes it is the checksum of
    quint64 file = 0;  ///< the inode, which tells a part from one that was begun anew
};

/// A file that is being written: the part of an upload that has arrived. One writer at a time, also
/// among the daemons that share the folder; the lock ends with the object or with the process.
class ZEL_EXPORT BlobPart
{
public:
    /// Opens, and makes where it is missing, the file. `isOpen` is false when another one writes.
    /// With what an earlier one left of its progress, the bytes that one has seen need not be read
    /// again for the checksum.
    explicit BlobPart(const QString &path, PartProgress progress = {});
    ~BlobPart();
    BlobPart(const BlobPart &) = delete;
    BlobPart &operator=(const BlobPart &) = delete;

    bool isOpen() const { return m_handle >= 0; }

    qint64 size() const { return m_size; }

    void append(const char *data, qint64 count);
    /// Has the system begin to write out what was appended, so that `sync` need not wait as long.
    void beginSync();
    /// SHA-256 of the whole, as 64 hexadecimal digits. Reads what it has not seen.
    QString checksum();
    /// Writes out what the system still keeps in memory.
    void sync();

    /// For the next one that opens this part.
    PartProgress takeProgress() { return std::move(m_progress); }

private:
    int m_handle = -1;
    qint64 m_size = 0;
    PartProgress m_progress;
};

/// Keeps others from storing blobs, or from clearing them away, as long as it lives.
class ZEL_EXPORT BlobLock
{
public:
    enum class Mode
    {
        Store, ///< shared: blobs are stored and rows that name them are written
        Clear  ///< alone: blobs that no row names are removed
    };

    BlobLock(const QString &folder, Mode mode);
    ~BlobLock();
    BlobLock(const BlobLock &) = delete;
    BlobLock &operator=(const BlobLock &) = delete;

private:
    int m_handle;
};

/// The bytes of assets as files under the SHA-256 of their content, beside the parts of uploads.
/// A blob is whole from the moment it is there: it is written, and written out to the disk, as a
/// part and gets its name afterwards. Folders are made when first needed. Functions throw
/// `BlobError`.
class ZEL_EXPORT BlobStore
{
public:
    /// Pixels along the longer edge of the thumbnails of a blob, the largest first.
    static constexpr std::array thumbnailSizes{256, 128, 64};

    explicit BlobStore(const QString &folder);

    const QString &folder() const { return m_folder; }

    QString partPath(const QString &uploadId, qint64 position);
    /// How much of a part has arrived; 0 when nothing has.
    qint64 received(const QString &uploadId, qint64 position);
    void dropPart(const QString &uploadId, qint64 position);

    /// Gives a part that is whole and checked its name as a blob; it stays a part, too, until it
    /// is dropped. The part must be held open meanwhile.
    void store(BlobPart &part, const QString &partPath, const QString &sha);
    QString blobPath(const QString &sha) const;
    QString thumbnailPath(const QString &sha, int size) const;
    /// Removes a blob with its thumbnails.
    void dropBlob(const QString &sha);

    /// Writes a file as a whole: under another name first.
    void writeWhole(const QString &path, const QByteArray &bytes);

    /// Bytes that can still be stored: what the disk has, unless something else tells.
    qint64 room();

    void setRoomMeter(const std::function<qint64()> &meter) { m_roomMeter = meter; }

private:
    QString m_folder;
    std::function<qint64()> m_roomMeter;
};

} // namespace Zel
