// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/unnamedfile.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace Zel {

UnnamedFile::UnnamedFile()
{
    QByteArray path = QFile::encodeName(QDir::tempPath() + QLatin1String("/zel-XXXXXX"));
    m_handle = ::mkostemp(path.data(), O_CLOEXEC);
    if (m_handle < 0)
        throw BlobError(QStringLiteral("make a temporary file"), errno);
    ::unlink(path.constData());
}

UnnamedFile::~UnnamedFile()
{
    ::close(m_handle);
}

void UnnamedFile::append(const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = ::write(m_handle, bytes.constData() + done,
                                        static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw BlobError(QStringLiteral("write a temporary file"), errno);
        done += written;
    }
}

QString UnnamedFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_handle);
}

} // namespace Zel
