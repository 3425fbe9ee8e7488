// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/backuparchive.h"

#include "service/store/copytarget.h"
#include "service/store/databaseerror.h"

#include <QFile>
#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>

namespace Zel {

namespace {

constexpr std::size_t blockBytes = 256 * 1024;

} // namespace

ArchiveWriter::ArchiveWriter(int handle)
    : m_archive(archive_write_new())
{
    archive_write_set_format_pax_restricted(m_archive);
    archive_write_add_filter_zstd(m_archive);
    // The last block is not filled up: the file ends where the compressed bytes end.
    archive_write_set_bytes_in_last_block(m_archive, 1);
    if (archive_write_open_fd(m_archive, handle) != ARCHIVE_OK) {
        const CopyError error(QString::fromUtf8(archive_error_string(m_archive)));
        archive_write_free(m_archive);
        throw error;
    }
}

ArchiveWriter::~ArchiveWriter()
{
    // What is not finished is thrown away; without this it would be written after all.
    archive_write_fail(m_archive);
    archive_write_free(m_archive);
}

void ArchiveWriter::require(int result)
{
    if (result < ARCHIVE_OK)
        throw CopyError(QStringLiteral("The backup cannot be written: %1.")
                            .arg(QString::fromLocal8Bit(archive_error_string(m_archive))));
}

void ArchiveWriter::begin(const QString &name, qint64 size)
{
    const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(),
                                                                              archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0600);
    archive_entry_set_size(entry.get(), size);
    require(archive_write_header(m_archive, entry.get()));
    m_left = size;
}

void ArchiveWriter::write(const char *data, qint64 count)
{
    // More than was announced would be dropped without a word.
    if (count > m_left)
        throw CopyError(QStringLiteral("A file grew while it was being read."));
    m_left -= count;
    require(int(std::min<la_ssize_t>(
        archive_write_data(m_archive, data, static_cast<std::size_t>(count)), ARCHIVE_OK)));
}

void ArchiveWriter::add(const QString &name, const QByteArray &content)
{
    begin(name, content.size());
    write(content.constData(), content.size());
}

void ArchiveWriter::finish()
{
    require(archive_write_close(m_archive));
}

ArchiveReader::ArchiveReader(const QString &path)
    : m_path(path)
    , m_archive(archive_read_new())
{
    QFile file(path);
    const bool isFile = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
    file.close();
    archive_read_support_format_tar(m_archive);
    archive_read_support_filter_zstd(m_archive);
    const bool isOpen =
        isFile && archive_read_open_filename(m_archive, QFile::encodeName(path).constData(),
                                             blockBytes) == ARCHIVE_OK;
    if (isOpen)
        return;
    archive_read_free(m_archive);
    if (isFile)
        refuse(QStringLiteral("it is no backup of this program"));
    throw CopyError(QStringLiteral("The file %1 cannot be read%2.")
                        .arg(path, file.errorString().isEmpty() || file.error() == QFile::NoError
                                       ? QString()
                                       : QLatin1String(": ") + file.errorString()));
}

ArchiveReader::~ArchiveReader()
{
    archive_read_free(m_archive);
}

void ArchiveReader::refuse(const QString &why) const
{
    throw DatabaseError(
        DatabaseError::Kind::Corrupt,
        QStringLiteral("The backup %1 cannot be used: %2. Nothing was changed.").arg(m_path, why));
}

void ArchiveReader::fail()
{
    refuse(QStringLiteral("it is damaged or cut short (%1)")
               .arg(QString::fromLocal8Bit(archive_error_string(m_archive)).trimmed()));
}

bool ArchiveReader::next()
{
    archive_entry *entry = nullptr;
    const int result = archive_read_next_header(m_archive, &entry);
    if (result == ARCHIVE_EOF)
        return false;
    if (result != ARCHIVE_OK)
        fail();
    if (archive_entry_filetype(entry) != AE_IFREG || !archive_entry_size_is_set(entry))
        refuse(QStringLiteral("it holds something that no backup has"));
    m_name = QString::fromUtf8(archive_entry_pathname(entry));
    m_size = archive_entry_size(entry);
    return true;
}

QByteArray ArchiveReader::read(qint64 most)
{
    QByteArray bytes(most, Qt::Uninitialized);
    const la_ssize_t count =
        archive_read_data(m_archive, bytes.data(), static_cast<std::size_t>(most));
    if (count < 0)
        fail();
    bytes.truncate(count);
    return bytes;
}

QByteArray ArchiveReader::readAll(qint64 most)
{
    if (m_size > most)
        refuse(QStringLiteral("the entry %1 is too long").arg(m_name));
    QByteArray all;
    for (QByteArray more = read(m_size + 1); !more.isEmpty(); more = read(m_size + 1))
        all += more;
    if (all.size() != m_size)
        fail();
    return all;
}

} // namespace Zel
