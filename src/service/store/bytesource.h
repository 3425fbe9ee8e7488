// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>

#include <memory>

class QFile;
class QString;

namespace Zel {

/// Bytes that are read piece by piece, wherever they lie. Used by one thread at a time.
class ZEL_EXPORT ByteSource
{
public:
    virtual ~ByteSource();

    virtual qint64 size() const = 0;

    /// What stands at `offset`: at least one byte and at most `most`, less than that wherever it
    /// suits the place they lie in; nothing behind the end. Throws `BlobError` or `DatabaseError`
    /// when the bytes are not to be had.
    virtual QByteArray read(qint64 offset, qint64 most) = 0;

    /// All of it, for what is known to be short.
    QByteArray readAll();
};

/// The bytes of a file. It stays readable when the file loses its name meanwhile.
class ZEL_EXPORT FileSource : public ByteSource
{
public:
    ~FileSource() override;

    /// Null for what is no file that can be read.
    static std::shared_ptr<FileSource> open(const QString &path);

    qint64 size() const override;
    QByteArray read(qint64 offset, qint64 most) override;

private:
    explicit FileSource(std::unique_ptr<QFile> file);

    std::unique_ptr<QFile> m_file;
};

/// Bytes that are in memory anyway.
class ZEL_EXPORT MemorySource : public ByteSource
{
public:
    explicit MemorySource(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    ~MemorySource() override;

    qint64 size() const override { return m_bytes.size(); }

    QByteArray read(qint64 offset, qint64 most) override { return m_bytes.mid(offset, most); }

private:
    QByteArray m_bytes;
};

} // namespace Zel
