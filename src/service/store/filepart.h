// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"

namespace Zel {

/// A part that lies in a file. One writer at a time, also among the daemons that share the folder.
class FilePart : public BlobPart
{
public:
    /// Opens, and makes where it is missing, the file. Its progress is kept where the file system
    /// tells when a file was made: numbers of files are given again. `isOpen` is false when another
    /// one writes.
    FilePart(const QString &path, PartProgress progress);
    ~FilePart() override;
    FilePart(const FilePart &) = delete;
    FilePart &operator=(const FilePart &) = delete;

    bool isOpen() const { return m_handle >= 0; }

    /// Names what is open itself, also when another file has come to lie at its path.
    QByteArray handlePath() const;
    /// Whether it lies at no path any more.
    bool isDropped() const;

    qint64 size() const override { return m_size; }

    QByteArray read(qint64 offset, qint64 most) override;
    void append(const char *data, qint64 count) override;
    /// What is given to the system outlives this process: only has it begin to write out, so that
    /// `sync` need not wait as long.
    void flush() override;
    std::unique_ptr<LocalFile> localFile() override;

    /// Writes out what the system still keeps in memory.
    void sync();

private:
    bool lock(const QString &path);

    int m_handle = -1;
    qint64 m_size = 0;
};

} // namespace Zel
