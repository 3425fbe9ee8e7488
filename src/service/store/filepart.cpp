// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/filepart.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zel {

namespace {

class PartFile : public LocalFile
{
public:
    explicit PartFile(const QString &path)
        : m_path(path)
    {
    }

    QString path() const override { return m_path; }

private:
    QString m_path;
};

/// Tells a file from the next one that the system gives the same number to, which may be at once.
/// Empty where the file system does not say when a file was made.
QString identityOf(int handle)
{
    struct statx info = {};
    if (::statx(handle, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &info) != 0 ||
        (info.stx_mask & STATX_BTIME) == 0)
        return QString();
    return QStringLiteral("%1-%2.%3")
        .arg(info.stx_ino)
        .arg(info.stx_btime.tv_sec)
        .arg(info.stx_btime.tv_nsec);
}

} // namespace

FilePart::FilePart(const QString &path, PartProgress progress)
    : BlobPart(std::move(progress))
{
    // One that was dropped between the opening and the lock is opened anew.
    do {
        if (m_handle >= 0)
            ::close(m_handle);
        m_handle = ::open(QFile::encodeName(path).constData(),
                          O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        if (m_handle < 0)
            throw BlobError(QStringLiteral("open ") + path, errno);
        if (!lock(path))
            return;
    } while (isDropped());
    struct stat info = {};
    if (::fstat(m_handle, &info) != 0) {
        const int error = errno;
        ::close(m_handle);
        throw BlobError(QStringLiteral("open ") + path, error);
    }
    m_size = info.st_size;
    keepProgressOf(identityOf(m_handle), m_size);
}

/// False, and closed, when another one has it.
bool FilePart::lock(const QString &path)
{
    if (::flock(m_handle, LOCK_EX | LOCK_NB) == 0)
        return true;
    const int error = errno;
    ::close(m_handle);
    m_handle = -1;
    if (error != EWOULDBLOCK)
        throw BlobError(QStringLiteral("lock ") + path, error);
    return false;
}

bool FilePart::isDropped() const
{
    struct stat info = {};
    return ::fstat(m_handle, &info) == 0 && info.st_nlink == 0;
}

QByteArray FilePart::handlePath() const
{
    return "/proc/self/fd/" + QByteArray::number(m_handle);
}

FilePart::~FilePart()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

QByteArray FilePart::read(qint64 offset, qint64 most)
{
    QByteArray piece(std::clamp<qint64>(m_size - offset, 0, most), Qt::Uninitialized);
    for (;;) {
        const ssize_t count =
            ::pread(m_handle, piece.data(), static_cast<std::size_t>(piece.size()), offset);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || (count == 0 && !piece.isEmpty()))
            throw BlobError(QStringLiteral("read a part"), count < 0 ? errno : EIO);
        piece.truncate(count);
        return piece;
    }
}

void FilePart::append(const char *data, qint64 count)
{
    while (count > 0) {
        const ssize_t written = ::write(m_handle, data, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw BlobError(QStringLiteral("write a part"), errno);
        addToChecksum(m_size, data, written);
        m_size += written;
        data += written;
        count -= written;
    }
}

void FilePart::flush()
{
    // Only a hint: whether it worked shows in `sync`.
    ::sync_file_range(m_handle, 0, 0, SYNC_FILE_RANGE_WRITE);
}

std::unique_ptr<LocalFile> FilePart::localFile()
{
    return std::make_unique<PartFile>(QString::fromLatin1(handlePath()));
}

void FilePart::sync()
{
    if (::fsync(m_handle) != 0)
        throw BlobError(QStringLiteral("write out a part"), errno);
}

} // namespace Zel
