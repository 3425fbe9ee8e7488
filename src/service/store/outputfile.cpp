// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/outputfile.h"

#include "service/store/copytarget.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
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
    m_handle = ::open(m_part.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_handle < 0)
        fail(QStringLiteral("made"), errno);
    if (::flock(m_handle, LOCK_EX | LOCK_NB) != 0) {
        ::close(m_handle);
        throw CopyError(QStringLiteral("%1 is being written by somebody else.").arg(path));
    }
    if (::fchmod(m_handle, 0600) != 0 || ::ftruncate(m_handle, 0) != 0) {
        const int error = errno;
        ::close(m_handle);
        fail(QStringLiteral("made"), error);
    }
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

void OutputFile::commit()
{
    if (::fsync(m_handle) != 0)
        fail(QStringLiteral("written"), errno);
    if (m_existing == Existing::Replace) {
        if (::rename(m_part.constData(), m_name.constData()) != 0)
            fail(QStringLiteral("named"), errno);
    } else {
        // Unlike a rename, this never takes the place of a file that is there.
        if (::link(m_part.constData(), m_name.constData()) != 0) {
            if (errno == EEXIST)
                refuseExisting();
            fail(QStringLiteral("named"), errno);
        }
        ::unlink(m_part.constData());
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
