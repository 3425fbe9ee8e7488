// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/blobstore.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zel {

namespace {

constexpr qsizetype readBytes = 256 * 1024;

void syncFolder(const QString &path)
{
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY);
    if (handle < 0)
        throw BlobError(QStringLiteral("open folder ") + path, errno);
    const int result = ::fsync(handle);
    const int error = errno;
    ::close(handle);
    if (result != 0)
        throw BlobError(QStringLiteral("write out folder ") + path, error);
}

/// Makes a folder, with those it lies in, for its owner alone.
void makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir())
        return;
    QStringList made;
    for (QString at = path; !QFileInfo(at).isDir(); at = QFileInfo(at).path())
        made.prepend(at);
    for (const QString &folder : std::as_const(made)) {
        if (::mkdir(QFile::encodeName(folder).constData(), 0700) != 0 && errno != EEXIST)
            throw BlobError(QStringLiteral("make folder ") + folder, errno);
        syncFolder(QFileInfo(folder).path());
    }
}

} // namespace

BlobError::BlobError(const QString &doing, int systemError)
    : std::runtime_error(QStringLiteral("cannot %1: %2")
                             .arg(doing, QString::fromLocal8Bit(std::strerror(systemError)))
                             .toStdString())
    , m_full(systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG)
{
}

BlobError::~BlobError() = default;

BlobPart::BlobPart(const QString &path, PartProgress progress)
    : m_handle(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC,
                      0600))
{
    if (m_handle < 0)
        throw BlobError(QStringLiteral("open ") + path, errno);
    struct stat info = {};
    if (::flock(m_handle, LOCK_EX | LOCK_NB) != 0 || ::fstat(m_handle, &info) != 0) {
        const int error = errno;
        ::close(m_handle);
        m_handle = -1;
        if (error != EWOULDBLOCK)
            throw BlobError(QStringLiteral("lock ") + path, error);
        return;
    }
    m_size = info.st_size;
    if (progress.file == info.st_ino && progress.hashed <= m_size)
        m_progress = std::move(progress);
    m_progress.file = info.st_ino;
}

BlobPart::~BlobPart()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

void BlobPart::append(const char *data, qint64 count)
{
    while (count > 0) {
        const ssize_t written = ::write(m_handle, data, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw BlobError(QStringLiteral("write a part"), errno);
        if (m_progress.hashed == m_size) {
            m_progress.checksum.add(data, static_cast<std::size_t>(written));
            m_progress.hashed += written;
        }
        m_size += written;
        data += written;
        count -= written;
    }
}

void BlobPart::beginSync()
{
    // Only a hint: whether it worked shows in `sync`.
    ::sync_file_range(m_handle, 0, 0, SYNC_FILE_RANGE_WRITE);
}

QString BlobPart::checksum()
{
    QByteArray buffer;
    for (;;) {
        buffer.resize(readBytes);
        const ssize_t count = ::pread(m_handle, buffer.data(),
                                      static_cast<std::size_t>(buffer.size()), m_progress.hashed);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw BlobError(QStringLiteral("read a part"), errno);
        if (count == 0)
            return QString::fromLatin1(m_progress.checksum.hex());
        m_progress.checksum.add(buffer.constData(), static_cast<std::size_t>(count));
        m_progress.hashed += count;
    }
}

void BlobPart::sync()
{
    if (::fsync(m_handle) != 0)
        throw BlobError(QStringLiteral("write out a part"), errno);
}

BlobLock::BlobLock(const QString &folder, Mode mode)
{
    makeFolder(folder);
    const QString path = folder + QLatin1String("/lock");
    m_handle = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_handle < 0)
        throw BlobError(QStringLiteral("open ") + path, errno);
    while (::flock(m_handle, mode == Mode::Clear ? LOCK_EX : LOCK_SH) != 0) {
        if (errno == EINTR)
            continue;
        const int error = errno;
        ::close(m_handle);
        throw BlobError(QStringLiteral("lock ") + path, error);
    }
}

BlobLock::~BlobLock()
{
    ::close(m_handle);
}

BlobStore::BlobStore(const QString &folder)
    : m_folder(folder)
{
}

QString BlobStore::partPath(const QString &uploadId, qint64 position)
{
    const QString folder = m_folder + QLatin1String("/uploads");
    makeFolder(folder);
    return QStringLiteral("%1/%2-%3").arg(folder, uploadId).arg(position);
}

qint64 BlobStore::received(const QString &uploadId, qint64 position)
{
    const QFileInfo info(partPath(uploadId, position));
    return info.exists() ? info.size() : 0;
}

void BlobStore::dropPart(const QString &uploadId, qint64 position)
{
    QFile::remove(partPath(uploadId, position));
}

QString BlobStore::blobPath(const QString &sha) const
{
    return QStringLiteral("%1/blobs/%2/%3").arg(m_folder, sha.left(2), sha);
}

QString BlobStore::thumbnailPath(const QString &sha, int size) const
{
    return QStringLiteral("%1/thumbnails/%2/%3-%4.png").arg(m_folder, sha.left(2), sha).arg(size);
}

void BlobStore::store(BlobPart &part, const QString &partPath, const QString &sha)
{
    part.sync();
    const QString path = blobPath(sha);
    const QString folder = QFileInfo(path).path();
    makeFolder(folder);
    // A name is given once; who finds it given already has the same bytes.
    if (::link(QFile::encodeName(partPath).constData(), QFile::encodeName(path).constData()) != 0 &&
        errno != EEXIST)
        throw BlobError(QStringLiteral("name ") + path, errno);
    syncFolder(folder);
}

void BlobStore::dropBlob(const QString &sha)
{
    for (const int size : thumbnailSizes)
        QFile::remove(thumbnailPath(sha, size));
    const QString path = blobPath(sha);
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        throw BlobError(QStringLiteral("remove ") + path, errno);
}

void BlobStore::writeWhole(const QString &path, const QByteArray &bytes)
{
    makeFolder(QFileInfo(path).path());
    errno = 0;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw BlobError(QStringLiteral("write ") + path, errno);
}

qint64 BlobStore::room()
{
    if (m_roomMeter)
        return m_roomMeter();
    makeFolder(m_folder);
    const qint64 room = QStorageInfo(m_folder).bytesAvailable();
    return room < 0 ? std::numeric_limits<qint64>::max() : room;
}

} // namespace Zel
