// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/blobstore.h"

#include <QScopeGuard>
#include <QUuid>

#include <cerrno>

namespace Zel {

namespace {

constexpr qint64 readBytes = 256 * 1024;

/// Adds what stands behind `from` to a checksum; returns where it ends.
qint64 addRest(QXSC::Checksum &checksum, ByteSource &source, qint64 from)
{
    for (;;) {
        const QByteArray piece = source.read(from, readBytes);
        if (piece.isEmpty())
            return from;
        checksum.add(piece.constData(), static_cast<std::size_t>(piece.size()));
        from += piece.size();
    }
}

} // namespace

LocalFile::~LocalFile() = default;
BlobHold::~BlobHold() = default;

BlobPart::BlobPart(PartProgress progress)
    : m_progress(std::move(progress))
{
}

void BlobPart::addToChecksum(qint64 offset, const char *data, qint64 count)
{
    if (m_progress.hashed != offset)
        return;
    m_progress.checksum.add(data, static_cast<std::size_t>(count));
    m_progress.hashed += count;
}

void BlobPart::appendAll(ByteSource &bytes)
{
    for (;;) {
        const QByteArray piece = bytes.read(size(), readBytes);
        if (piece.isEmpty())
            break;
        append(piece.constData(), piece.size());
    }
    flush();
}

void BlobPart::keepProgressOf(const QString &identity, qint64 size)
{
    if (identity.isEmpty() || m_progress.identity != identity || m_progress.hashed > size)
        m_progress = PartProgress();
    m_progress.identity = identity;
}

QString BlobPart::checksum()
{
    m_progress.hashed = addRest(m_progress.checksum, *this, m_progress.hashed);
    return QString::fromLatin1(m_progress.checksum.hex());
}

QString checksumOf(ByteSource &source)
{
    QXSC::Checksum checksum;
    addRest(checksum, source, 0);
    return QString::fromLatin1(checksum.hex());
}

BlobStore::BlobStore() = default;
BlobStore::~BlobStore() = default;

bool BlobStore::has(const BlobId &blob)
{
    return open(blob) != nullptr;
}

QByteArrayList BlobStore::thumbnailsOf(const BlobId &blob)
{
    QByteArrayList result;
    for (const int size : thumbnailSizes) {
        const auto thumbnail = openThumbnail(blob, size);
        if (!thumbnail)
            return {};
        result << thumbnail->readAll();
    }
    return result;
}

BlobState BlobStore::verify(const BlobId &blob)
{
    const auto source = open(blob);
    if (!source)
        return BlobState::Missing;
    try {
        return checksumOf(*source) == blob.sha ? BlobState::Whole : BlobState::Damaged;
    } catch (const BlobError &) {
        return BlobState::Damaged; // some of it cannot be read
    }
}

void BlobStore::add(const BlobId &blob, ByteSource &bytes, const QByteArrayList &thumbnails)
{
    if (has(blob))
        return;
    const PartId id{blob.accountId, QUuid::createUuid().toString(QUuid::WithoutBraces), 0};
    const auto drop = qScopeGuard([&] {
        try {
            dropPart(id);
        } catch (const std::exception &) {
            // It is cleared away later.
        }
    });
    const auto storing = hold(BlobHold::Mode::Store);
    const auto part = openPart(id);
    part->appendAll(bytes);
    if (part->checksum() != blob.sha)
        throw BlobError(QStringLiteral("store %1, which has other bytes").arg(blob.sha), EINVAL);
    prepare(*part, blob.sha, thumbnails);
    nameAlone({id, part->identity()}, blob);
    settle(blob);
}

qint64 BlobStore::room()
{
    return m_roomMeter ? m_roomMeter() : measuredRoom();
}

} // namespace Zel
