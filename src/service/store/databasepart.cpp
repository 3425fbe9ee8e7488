// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/databasepart.h"

#include "service/store/database.h"
#include "service/store/databaseblobs.h"
#include "service/store/databaseerror.h"
#include "service/store/unnamedfile.h"

#include <QScopeGuard>
#include <QUuid>

#include <algorithm>
#include <cerrno>

namespace Zel {

namespace {

const SqlText findChunk(R"sql(
    SELECT first_byte, bytes FROM blob_chunk
    WHERE account_id = $1 AND content_id = $2 AND first_byte = (
        SELECT MAX(c.first_byte) FROM blob_chunk c
        WHERE c.account_id = $1 AND c.content_id = $2 AND c.first_byte <= $3)
)sql",
                        SqlText::Carries::Bytes);

const SqlText addContent(R"sql(
    INSERT INTO blob_content (account_id, content_id, part_id, sha, size, made_at)
    VALUES ($1, $2, $3, NULL, NULL, $4)
)sql");

// A part that was dropped, or has become a blob, takes nothing more.
const SqlText addChunk(R"sql(
    INSERT INTO blob_chunk (account_id, content_id, first_byte, size, bytes)
    SELECT account_id, content_id, $3, $4, $5 FROM blob_content
    WHERE account_id = $1 AND content_id = $2 AND part_id IS NOT NULL
)sql",
                       SqlText::Carries::Bytes);

constexpr qint64 copiedBytes = 256 * 1024;

} // namespace

ContentSource::ContentSource(Database &database, qint64 accountId, const QString &contentId,
                             qint64 size)
    : m_database(database)
    , m_accountId(accountId)
    , m_contentId(contentId)
    , m_size(size)
{
}

ContentSource::~ContentSource() = default;

QByteArray ContentSource::read(qint64 offset, qint64 most)
{
    if (offset >= m_size)
        return QByteArray();
    if (offset < m_chunkAt || offset >= m_chunkAt + m_chunk.size())
        load(offset);
    return m_chunk.mid(offset - m_chunkAt, std::min(most, m_size - offset));
}

void ContentSource::load(qint64 offset)
{
    m_chunk.clear();
    m_database.query(findChunk, {m_accountId, m_contentId, offset}, [this](const SqlRow &row) {
        m_chunkAt = row.integer(0);
        m_chunk = row.bytes(1);
    });
    if (offset < m_chunkAt || offset >= m_chunkAt + m_chunk.size())
        throw BlobError(QStringLiteral("read a file: a chunk is not there"), ENODATA);
}

bool OpenParts::add(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    return m_keys.insert(key).second;
}

void OpenParts::remove(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    m_keys.erase(key);
}

QString partKey(const PartId &id)
{
    return QStringLiteral("%1-%2").arg(id.uploadId).arg(id.position);
}

DatabasePart::DatabasePart(Database &database, std::shared_ptr<OpenParts> openParts,
                           const Place &place, PartProgress progress, qint64 now)
    : BlobPart(std::move(progress))
    , m_database(database)
    , m_openParts(std::move(openParts))
    , m_place(place)
    , m_now(now)
{
    keepProgressOf(place.contentId, place.stored);
}

DatabasePart::~DatabasePart()
{
    m_openParts->remove(partKey(m_place.id));
}

QByteArray DatabasePart::read(qint64 offset, qint64 most)
{
    if (offset >= m_place.stored)
        return m_pending.mid(offset - m_place.stored, most);
    if (!m_reader || m_reader->size() != m_place.stored)
        m_reader = std::make_unique<ContentSource>(m_database, m_place.id.accountId,
                                                   m_place.contentId, m_place.stored);
    return m_reader->read(offset, most);
}

void DatabasePart::append(const char *data, qint64 count)
{
    while (count > 0) {
        const qint64 fits = std::min(count, DatabaseBlobs::chunkBytes - m_pending.size());
        addToChecksum(size(), data, fits);
        m_pending.append(data, fits);
        data += fits;
        count -= fits;
        if (m_pending.size() == DatabaseBlobs::chunkBytes)
            flush();
    }
}

void DatabasePart::flush()
{
    if (!m_pending.isEmpty())
        storePending();
}

void DatabasePart::flushOrBegin()
{
    if (!m_pending.isEmpty() || m_place.contentId.isEmpty())
        storePending();
}

void DatabasePart::storePending()
{
    // What fails is let go of: whoever sends it asks how far it came and sends it again.
    auto letGo = qScopeGuard([this] {
        m_pending.clear();
        m_progress = PartProgress();
        m_progress.identity = m_place.contentId;
    });
    const QString contentId = m_place.contentId.isEmpty()
                                  ? QUuid::createUuid().toString(QUuid::WithoutBraces)
                                  : m_place.contentId;
    try {
        m_database.tx([&] { storeChunk(contentId); });
    } catch (const DatabaseError &error) {
        if (error.kind() == DatabaseError::Kind::Unique)
            throw BlobBusy();
        if (error.kind() == DatabaseError::Kind::Full)
            throw BlobError(QStringLiteral("write a part"), ENOSPC);
        throw;
    }
    letGo.dismiss();
    m_place.contentId = contentId;
    m_place.stored += m_pending.size();
    m_progress.identity = contentId;
    m_pending.resize(0); // keeps its memory for the next chunk
}

void DatabasePart::storeChunk(const QString &contentId)
{
    const qint64 accountId = m_place.id.accountId;
    if (m_place.contentId.isEmpty())
        m_database.exec(addContent, {accountId, contentId, partKey(m_place.id), m_now});
    if (m_pending.isEmpty())
        return;
    if (m_database.exec(addChunk, {accountId, contentId, m_place.stored, qint64(m_pending.size()),
                                   m_pending}) != 1)
        throw BlobBusy();
}

std::unique_ptr<LocalFile> DatabasePart::localFile()
{
    auto file = std::make_unique<UnnamedFile>();
    for (qint64 at = 0; at < size();) {
        const QByteArray piece = read(at, copiedBytes);
        file->append(piece);
        at += piece.size();
    }
    return file;
}

} // namespace Zel
