// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"
#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <memory>

struct archive;

namespace Zel {

/// Writes the entries of a backup one after the other: a tar file (pax), compressed by zstd.
class ZEL_EXPORT ArchiveWriter
{
public:
    /// Throws `CopyError`, as all functions do.
    explicit ArchiveWriter(int handle);
    ~ArchiveWriter();
    ArchiveWriter(const ArchiveWriter &) = delete;
    ArchiveWriter &operator=(const ArchiveWriter &) = delete;

    void begin(const QString &name, qint64 size);
    void write(const char *data, qint64 count);
    /// An entry as a whole.
    void add(const QString &name, const QByteArray &content);
    void finish();

private:
    void require(int result);

    archive *m_archive;
    qint64 m_left = 0; ///< bytes that the entry still has to get
};

/// Reads the entries of such a file one after the other.
class ZEL_EXPORT ArchiveReader
{
public:
    /// Throws `CopyError` for a file that cannot be opened and, as the other functions do,
    /// `DatabaseError` (Corrupt) for one that is cut, damaged or something else.
    explicit ArchiveReader(const QString &path);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader &) = delete;
    ArchiveReader &operator=(const ArchiveReader &) = delete;

    /// Goes to the next entry; false when there is none.
    bool next();

    const QString &name() const { return m_name; }

    qint64 size() const { return m_size; }

    /// More of the entry: up to `most` bytes, none at its end.
    QByteArray read(qint64 most);
    /// The entry as a whole. One that is longer than `most` is taken for damage.
    QByteArray readAll(qint64 most);

    [[noreturn]] void refuse(const QString &why) const;

private:
    void fail();

    QString m_path;
    archive *m_archive;
    QString m_name;
    qint64 m_size = 0;
};

} // namespace Zel
