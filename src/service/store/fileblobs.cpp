// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/fileblobs.h"

#include "service/store/filepart.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <chrono>
#include <limits>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zel {

namespace {

constexpr qsizetype shaDigits = 64;
/// What nobody has added to for so long belongs to no upload that is still known.
constexpr std::chrono::hours forgottenPart{48};

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

/// Writes a file as a whole: under another name first.
void writeWhole(const QString &path, const QByteArray &bytes)
{
    makeFolder(QFileInfo(path).path());
    errno = 0;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw BlobError(QStringLiteral("write ") + path, errno);
}

QString uploadsFolder(const QString &folder)
{
    return folder + QLatin1String("/uploads");
}

QString unsettledFolder(const QString &folder)
{
    return folder + QLatin1String("/unsettled");
}

/// A lock on the folder that ends with this object.
class FolderLock : public BlobHold
{
public:
    explicit FolderLock(const QString &path)
        : m_handle(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        if (m_handle < 0)
            throw BlobError(QStringLiteral("open ") + path, errno);
    }

    ~FolderLock() override { ::close(m_handle); }

    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    /// False when it is not to be waited for and somebody else has it.
    bool take(int operation)
    {
        while (::flock(m_handle, operation) != 0) {
            if (errno == EWOULDBLOCK)
                return false;
            if (errno != EINTR)
                throw BlobError(QStringLiteral("lock the folder of files"), errno);
        }
        return true;
    }

private:
    int m_handle;
};

int lockOperation(BlobHold::Mode mode)
{
    switch (mode) {
    case BlobHold::Mode::Store:
        return LOCK_SH;
    case BlobHold::Mode::Clear:
        return LOCK_EX;
    case BlobHold::Mode::ClearNow:
        break;
    }
    return LOCK_EX | LOCK_NB;
}

} // namespace

FileBlobs::FileBlobs(const QString &folder)
    : m_folder(folder)
{
}

FileBlobs::~FileBlobs() = default;

QString FileBlobs::blobPath(const QString &sha) const
{
    return QStringLiteral("%1/blobs/%2/%3").arg(m_folder, sha.left(2), sha);
}

QString FileBlobs::thumbnailPath(const QString &sha, int size) const
{
    return QStringLiteral("%1/thumbnails/%2/%3-%4.png").arg(m_folder, sha.left(2), sha).arg(size);
}

QString FileBlobs::partPath(const PartId &id) const
{
    return QStringLiteral("%1/%2-%3").arg(uploadsFolder(m_folder), id.uploadId).arg(id.position);
}

QString FileBlobs::notePath(const QString &sha) const
{
    return unsettledFolder(m_folder) + QLatin1Char('/') + sha;
}

std::unique_ptr<BlobPart> FileBlobs::openPart(const PartId &id, PartProgress progress)
{
    makeFolder(uploadsFolder(m_folder));
    auto part = std::make_unique<FilePart>(partPath(id), std::move(progress));
    if (!part->isOpen())
        part.reset();
    return part;
}

void FileBlobs::dropPart(const PartId &id)
{
    QFile::remove(partPath(id));
}

void FileBlobs::prepare(BlobPart &part, const QString &sha, const QByteArrayList &thumbnails)
{
    auto &file = dynamic_cast<FilePart &>(part);
    file.sync();
    const QString path = blobPath(sha);
    const QString folder = QFileInfo(path).path();
    makeFolder(folder);
    if (!QFile::exists(path))
        writeWhole(notePath(sha), QByteArray());
    // The file that was checked, not the one at its path: the part may have been dropped and begun
    // anew. A name is given once; who finds it given already has the same bytes.
    if (::linkat(AT_FDCWD, file.handlePath().constData(), AT_FDCWD,
                 QFile::encodeName(path).constData(), AT_SYMLINK_FOLLOW) != 0) {
        const int error = errno;
        if (error == ENOENT && file.isDropped())
            throw BlobGone();
        if (error != EEXIST)
            throw BlobError(QStringLiteral("name ") + path, error);
    }
    syncFolder(folder);
    for (qsizetype i = 0; i < thumbnails.size(); ++i)
        writeWhole(thumbnailPath(sha, thumbnailSizes.at(std::size_t(i))), thumbnails.at(i));
}

void FileBlobs::name(const CheckedPart &part, const BlobId &blob)
{
    Q_UNUSED(part);
    Q_UNUSED(blob); // it has its name since it was prepared
}

void FileBlobs::settle(const BlobId &blob)
{
    QFile::remove(notePath(blob.sha));
}

QStringList FileBlobs::unsettled()
{
    QStringList found = QDir(unsettledFolder(m_folder)).entryList(QDir::Files);
    found.removeIf([](const QString &name) { return name.size() != shaDigits; });
    return found;
}

void FileBlobs::nameAlone(const CheckedPart &part, const BlobId &blob)
{
    name(part, blob);
}

void FileBlobs::expect(const BlobId &blob)
{
    if (!QFile::exists(blobPath(blob.sha)))
        throw BlobGone();
}

std::shared_ptr<ByteSource> FileBlobs::open(const BlobId &blob)
{
    return FileSource::open(blobPath(blob.sha));
}

std::shared_ptr<ByteSource> FileBlobs::openThumbnail(const BlobId &blob, int size)
{
    return FileSource::open(thumbnailPath(blob.sha, size));
}

void FileBlobs::visit(const Visitor &visit)
{
    QDirIterator files(m_folder + QLatin1String("/blobs"), QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (files.fileName().size() == shaDigits)
            visit({noAccount, files.fileName()}, files.fileInfo().size());
    }
}

std::unique_ptr<BlobHold> FileBlobs::hold(BlobHold::Mode mode)
{
    makeFolder(m_folder);
    auto lock = std::make_unique<FolderLock>(m_folder + QLatin1String("/lock"));
    if (!lock->take(lockOperation(mode)))
        lock.reset();
    return lock;
}

void FileBlobs::forget(const BlobId &blob)
{
    Q_UNUSED(blob); // another account may have the same file
}

void FileBlobs::clear(const QStringList &unnamed)
{
    for (const QString &sha : unnamed) {
        for (const int size : thumbnailSizes)
            QFile::remove(thumbnailPath(sha, size));
        const QString path = blobPath(sha);
        if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
            throw BlobError(QStringLiteral("remove ") + path, errno);
        QFile::remove(notePath(sha));
    }
    const QDateTime since = QDateTime::currentDateTimeUtc().addSecs(
        -std::chrono::duration_cast<std::chrono::seconds>(forgottenPart).count());
    QDirIterator parts(uploadsFolder(m_folder), QDir::Files);
    while (parts.hasNext()) {
        parts.next();
        if (parts.fileInfo().lastModified() < since)
            QFile::remove(parts.filePath());
    }
}

bool FileBlobs::isWritable()
{
    makeFolder(m_folder);
    QTemporaryFile file(m_folder + QLatin1String("/ready"));
    return file.open() && file.write("ready") > 0 && file.flush();
}

qint64 FileBlobs::measuredRoom()
{
    makeFolder(m_folder);
    const qint64 room = QStorageInfo(m_folder).bytesAvailable();
    return room < 0 ? std::numeric_limits<qint64>::max() : room;
}

} // namespace Zel
