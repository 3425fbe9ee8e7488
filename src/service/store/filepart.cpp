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

} // namespace

FilePart::FilePart(const QString &path, PartProgress progress)
    : BlobPart(std::move(progress))
    , m_path(path)
    , m_handle(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC,
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
    keepProgressOf(QString::number(info.st_ino), m_size);
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
    return std::make_unique<PartFile>(m_path);
}

void FilePart::sync()
{
    if (::fsync(m_handle) != 0)
        throw BlobError(QStringLiteral("write out a part"), errno);
}

} // namespace Zel
