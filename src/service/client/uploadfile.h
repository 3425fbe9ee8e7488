// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>

#include <future>

namespace QXSC {

/// A local file on its way to the service: read once, piece by piece, its checksum made meanwhile.
/// Throws `ServiceError` (Invalid) that names the file when it is missing, cannot be read, or is
/// changed by somebody on the way.
class UploadFile
{
public:
    explicit UploadFile(const QString &path);

    const QString &path() const { return m_path; }

    QString name() const;

    qint64 size() const { return m_size; }

    /// The piece that begins at `offset`, at most `longest` bytes. Going back is possible.
    QByteArray read(qint64 offset, qint64 longest);
    /// SHA-256 of the whole, hexadecimal, when all of it has been read; makes sure that it is still
    /// the file that was opened.
    QByteArray checksum();

private:
    [[noreturn]] void changed() const;

    QString m_path;
    QFile m_file;
    qint64 m_size = 0;
    QDateTime m_modified;
    Checksum m_checksum;
    qint64 m_hashed = 0;
};

/// Reads a file piece by piece, the next one while the one before is on its way. Goes before the
/// file does; nobody else reads it meanwhile.
class ReadAhead
{
public:
    ReadAhead(UploadFile &file, qint64 pieceBytes)
        : m_file(file)
        , m_pieceBytes(pieceBytes)
    {
    }

    /// The piece that begins at `offset`; the one behind it is begun. Throws what reading throws.
    QByteArray piece(qint64 offset);

private:
    UploadFile &m_file;
    const qint64 m_pieceBytes;
    qint64 m_nextOffset = 0;
    std::future<QByteArray> m_next;
};

} // namespace QXSC
