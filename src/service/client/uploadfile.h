// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/checksum.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>

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

    /// Reads what begins at `offset`, as far as `most` and the end of the file allow. Returns how
    /// much that is. Going back is possible.
    qint64 read(qint64 offset, char *to, qint64 most);
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

} // namespace QXSC
