// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"

#include <QHash>
#include <QSet>

namespace Zel {

/// Bytes that were taken in ahead of the one transaction that names them all. What it does not name
/// is dropped with this object.
class StagedBlobs
{
public:
    enum class Mode
    {
        Name,
        NameNothing ///< for a dry run, which stages nothing either
    };

    explicit StagedBlobs(BlobStore &blobs, Mode mode = Mode::Name);
    ~StagedBlobs();
    StagedBlobs(const StagedBlobs &) = delete;
    StagedBlobs &operator=(const StagedBlobs &) = delete;

    /// Takes over a part that was prepared.
    void add(const BlobId &blob, const CheckedPart &part);
    /// Takes in bytes as a part of its own. They have that checksum.
    void take(const BlobId &blob, const QByteArray &bytes);

    /// Names a blob that was staged, or makes sure of one that is there. Only inside a transaction,
    /// which may be repeated; throws `BlobGone`.
    void name(const BlobId &blob);

    /// Tells that the transaction has named them. Under the same hold.
    void settle();

private:
    BlobStore &m_blobs;
    Mode m_mode;
    QHash<std::pair<qint64, QString>, CheckedPart> m_staged;
    QList<PartId> m_parts;
    QSet<std::pair<qint64, QString>> m_named;
};

} // namespace Zel
