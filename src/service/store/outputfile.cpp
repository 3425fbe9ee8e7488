// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/outputfile.h"

#include "service/store/copytarget.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zel {

OutputFile::OutputFile(const QString &path, Existing existing)
    : m_path(path)
    , m_existing(existing)
    , m_name(QFile::encodeName(path))
    , m_part(m_name + ".part")
{
    if (QFileInfo(path).isDir())
        throw CopyError(QStringLiteral("%1 is a folder, not a file.").arg(path));
    if (existing == Existing::Refuse && QFileInfo::exists(path))
        refuseExisting();
    openPart();
    // One that was finished between the opening and the lock is somebody's whole file.
    while (!isAtItsPath()) {
        ::close(m_handle);
        openPart();
    }
    if (::fchmod(m_handle, 0600) != 0 || ::ftruncate(m_handle, 0) != 0) {
        const int error = errno;
        ::close(m_handle);
        fail(QStringLiteral("made"), error);
    }
}

void OutputFile::openPart()
{
    m_handle = ::open(m_part.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_handle < 0)
        fail(QStringLiteral("made"), errno);
    if (::flock(m_handle, LOCK_EX | LOCK_NB) != 0) {
        ::close(m_handle);
        throw CopyError(QStringLiteral("%1 is being written by somebody else.").arg(m_path));
    }
}

bool OutputFile::isAtItsPath() const
{
    struct stat open = {};
    struct stat there = {};
    return ::fstat(m_handle, &open) == 0 && ::lstat(m_part.constData(), &there) == 0 &&
           open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

OutputFile::~OutputFile()
{
    if (m_handle < 0)
        return;
    ::unlink(m_part.constData());
    ::close(m_handle);
}

void OutputFile::fail(const QString &doing, int systemError) const
{
    throw CopyError(QStringLiteral("The file %1 cannot be %2: %3.")
                        .arg(m_path, doing, QString::fromLocal8Bit(std::strerror(systemError))));
}

void OutputFile::refuseExisting() const
{
    throw CopyError(
        QStringLiteral("The file %1 is there already; --force writes over it.").arg(m_path));
}

/// Never takes the place of a file that is there. False with `errno`.
bool OutputFile::nameUnlessThere() const
{
    if (::renameat2(AT_FDCWD, m_part.constData(), AT_FDCWD, m_name.constData(), RENAME_NOREPLACE) ==
        0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // Where a file system cannot do that, it may know hard links.
    if (::link(m_part.constData(), m_name.constData()) != 0)
        return false;
    ::unlink(m_part.constData());
    return true;
}

void OutputFile::commit()
{
    if (::fsync(m_handle) != 0)
        fail(QStringLiteral("written"), errno);
    if (m_existing == Existing::Replace) {
        if (::rename(m_part.constData(), m_name.constData()) != 0)
            fail(QStringLiteral("named"), errno);
    } else if (!nameUnlessThere()) {
        if (errno == EEXIST)
            refuseExisting();
        fail(QStringLiteral("named"), errno);
    }
    ::close(m_handle);
    m_handle = -1;
    const QByteArray folder = QFile::encodeName(QFileInfo(m_path).absolutePath());
    const int folderHandle = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isSafe = folderHandle >= 0 && ::fsync(folderHandle) == 0;
    const int error = errno;
    if (folderHandle >= 0)
        ::close(folderHandle);
    if (!isSafe)
        fail(QStringLiteral("written out"), error);
}

} // namespace Zel
