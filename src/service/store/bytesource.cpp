// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/bytesource.h"

#include "service/store/bloberror.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

namespace Zel {

ByteSource::~ByteSource() = default;

QByteArray ByteSource::readAll()
{
    QByteArray all;
    all.reserve(size());
    for (;;) {
        const QByteArray piece = read(all.size(), size() - all.size());
        if (piece.isEmpty())
            return all;
        all += piece;
    }
}

FileSource::FileSource(std::unique_ptr<QFile> file)
    : m_file(std::move(file))
{
}

FileSource::~FileSource() = default;

std::shared_ptr<FileSource> FileSource::open(const QString &path)
{
    auto file = std::make_unique<QFile>(path);
    if (!QFileInfo(path).isFile() || !file->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return nullptr;
    return std::shared_ptr<FileSource>(new FileSource(std::move(file)));
}

qint64 FileSource::size() const
{
    return m_file->size();
}

QByteArray FileSource::read(qint64 offset, qint64 most)
{
    if (!m_file->seek(offset))
        throw BlobError(QStringLiteral("read ") + m_file->fileName(), EIO);
    QByteArray piece = m_file->read(most);
    if (piece.isEmpty() && offset < size())
        throw BlobError(QStringLiteral("read ") + m_file->fileName(), EIO);
    return piece;
}

MemorySource::~MemorySource() = default;

} // namespace Zel
