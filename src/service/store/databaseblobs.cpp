// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/databaseblobs.h"

#include "service/store/database.h"
#include "service/store/databasepart.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <limits>

namespace Zel {

namespace {

const SqlText findPart(R"sql(
    SELECT content_id FROM blob_content WHERE account_id = $1 AND part_id = $2
)sql");

const SqlText findEnd(R"sql(
    SELECT first_byte + size FROM blob_chunk
    WHERE account_id = $1 AND content_id = $2 AND first_byte = (
        SELECT MAX(c.first_byte) FROM blob_chunk c
        WHERE c.account_id = $1 AND c.content_id = $2)
)sql");

const SqlText loosenPart(R"sql(
    UPDATE blob_content SET part_id = NULL
    WHERE account_id = $1 AND content_id = $2 AND sha IS NULL
)sql");

const SqlText findBlob(R"sql(
    SELECT content_id, size FROM blob_content WHERE account_id = $1 AND sha = $2
)sql");

const SqlText nameContent(R"sql(
    UPDATE blob_content SET part_id = NULL, sha = $3, size = $4
    WHERE account_id = $1 AND content_id = $2
)sql");

const SqlText loosenBlob(R"sql(
    UPDATE blob_content SET sha = NULL, size = NULL WHERE account_id = $1 AND sha = $2
)sql");

const SqlText listBlobs(R"sql(
    SELECT account_id, sha, size FROM blob_content WHERE sha IS NOT NULL
)sql");

const SqlText listLoose(R"sql(
    SELECT account_id, content_id FROM blob_content
    WHERE sha IS NULL AND (part_id IS NULL OR made_at < $1)
)sql");

const SqlText dropSomeChunks(R"sql(
    DELETE FROM blob_chunk
    WHERE account_id = $1 AND content_id = $2 AND first_byte IN (
        SELECT c.first_byte FROM blob_chunk c WHERE c.account_id = $1 AND c.content_id = $2
        ORDER BY c.first_byte NULLS LAST LIMIT 256)
)sql");

const SqlText dropThumbnails(R"sql(
    DELETE FROM blob_thumbnail WHERE account_id = $1 AND content_id = $2
)sql");

const SqlText dropContent(R"sql(
    DELETE FROM blob_content WHERE account_id = $1 AND content_id = $2
)sql");

const SqlText putThumbnail(R"sql(
    INSERT INTO blob_thumbnail (account_id, content_id, edge, bytes) VALUES ($1, $2, $3, $4)
    ON CONFLICT (account_id, content_id, edge) DO UPDATE SET bytes = excluded.bytes
)sql",
                           SqlText::Carries::Bytes);

const SqlText copyThumbnails(R"sql(
    INSERT INTO blob_thumbnail (account_id, content_id, edge, bytes)
    SELECT account_id, $3, edge, bytes FROM blob_thumbnail
    WHERE account_id = $1 AND content_id = $2
    ON CONFLICT (account_id, content_id, edge) DO NOTHING
)sql");

const SqlText findThumbnail(R"sql(
    SELECT t.bytes FROM blob_content c
    JOIN blob_thumbnail t ON t.account_id = c.account_id AND t.content_id = c.content_id
    WHERE c.account_id = $1 AND c.sha = $2 AND t.edge = $3
)sql",
                            SqlText::Carries::Bytes);

class NoHold : public BlobHold
{
};

QString firstText(const SqlRow &row)
{
    return row.text(0);
}

} // namespace

DatabaseBlobs::DatabaseBlobs(Database &database, const Clock &clock)
    : m_database(database)
    , m_clock(clock)
    , m_openParts(std::make_shared<OpenParts>())
{
}

DatabaseBlobs::~DatabaseBlobs() = default;

std::unique_ptr<BlobPart> DatabaseBlobs::openPart(const PartId &id, PartProgress progress)
{
    const QString key = partKey(id);
    if (!m_openParts->add(key))
        return nullptr;
    try {
        const auto place = m_database.snapshot([&] {
            DatabasePart::Place found{id, {}, 0};
            found.contentId =
                m_database.row(findPart, {id.accountId, key}, firstText).value_or(QString());
            if (!found.contentId.isEmpty())
                found.stored = m_database
                                   .row(findEnd, {id.accountId, found.contentId},
                                        [](const SqlRow &row) { return row.integer(0); })
                                   .value_or(0);
            return found;
        });
        return std::make_unique<DatabasePart>(m_database, m_openParts, place, std::move(progress),
                                              m_clock());
    } catch (...) {
        m_openParts->remove(key);
        throw;
    }
}

void DatabaseBlobs::dropPart(const PartId &id)
{
    const auto contentId = m_database.tx([&] {
        auto found = m_database.row(findPart, {id.accountId, partKey(id)}, firstText);
        if (found)
            m_database.exec(loosenPart, {id.accountId, *found});
        return found;
    });
    if (contentId)
        remove(id.accountId, *contentId);
}

/// In steps, so that no transaction grows with the length of a file.
void DatabaseBlobs::remove(qint64 accountId, const QString &contentId)
{
    while (m_database.tx([&] {
        return m_database.exec(dropSomeChunks, {accountId, contentId});
    }) > 0) {
    }
    m_database.tx([&] {
        m_database.exec(dropThumbnails, {accountId, contentId});
        m_database.exec(dropContent, {accountId, contentId});
    });
}

void DatabaseBlobs::prepare(BlobPart &part, const QString &sha, const QByteArrayList &thumbnails)
{
    Q_UNUSED(sha);
    auto &open = dynamic_cast<DatabasePart &>(part);
    open.flushOrBegin();
    if (thumbnails.isEmpty())
        return;
    const auto &place = open.place();
    m_database.tx([&] {
        for (qsizetype i = 0; i < thumbnails.size(); ++i)
            m_database.exec(putThumbnail, {place.id.accountId, place.contentId,
                                           thumbnailSizes.at(std::size_t(i)), thumbnails.at(i)});
    });
}

void DatabaseBlobs::name(const CheckedPart &part, const BlobId &blob)
{
    const auto contentId = m_database.row(findPart, {part.accountId, partKey(part)}, firstText);
    const auto known = m_database.row(findBlob, {blob.accountId, blob.sha}, firstText);
    if (!contentId && !known)
        throw BlobGone(); // dropped meanwhile
    if (contentId && *contentId != part.identity)
        throw BlobGone(); // and begun anew
    if (known && contentId)
        m_database.exec(copyThumbnails, {part.accountId, *contentId, *known});
    if (known)
        return;
    const auto end = m_database.row(findEnd, {part.accountId, *contentId},
                                    [](const SqlRow &row) { return row.integer(0); });
    m_database.exec(nameContent, {part.accountId, *contentId, blob.sha, end.value_or(0)});
}

void DatabaseBlobs::nameAlone(const CheckedPart &part, const BlobId &blob)
{
    m_database.tx([&] { name(part, blob); });
}

void DatabaseBlobs::settle(const BlobId &blob)
{
    Q_UNUSED(blob); // with its transaction
}

void DatabaseBlobs::expect(const BlobId &blob)
{
    if (!m_database.row(findBlob, {blob.accountId, blob.sha}, firstText))
        throw BlobGone();
}

std::shared_ptr<ByteSource> DatabaseBlobs::open(const BlobId &blob)
{
    const auto found = m_database.row(findBlob, {blob.accountId, blob.sha}, [](const SqlRow &row) {
        return std::make_pair(row.text(0), row.integer(1));
    });
    if (!found)
        return nullptr;
    return std::make_shared<ContentSource>(m_database, blob.accountId, found->first, found->second);
}

std::shared_ptr<ByteSource> DatabaseBlobs::openThumbnail(const BlobId &blob, int size)
{
    const auto bytes = m_database.row(findThumbnail, {blob.accountId, blob.sha, size},
                                      [](const SqlRow &row) { return row.bytes(0); });
    return bytes ? std::make_shared<MemorySource>(*bytes) : nullptr;
}

void DatabaseBlobs::visit(const Visitor &visit)
{
    m_database.query(listBlobs, {}, [&visit](const SqlRow &row) {
        visit({row.integer(0), row.text(1)}, row.integer(2));
    });
}

std::unique_ptr<BlobHold> DatabaseBlobs::hold(BlobHold::Mode mode)
{
    Q_UNUSED(mode);
    return std::make_unique<NoHold>();
}

void DatabaseBlobs::forget(const BlobId &blob)
{
    m_database.exec(loosenBlob, {blob.accountId, blob.sha});
}

void DatabaseBlobs::clear(const QStringList &unnamed)
{
    Q_UNUSED(unnamed); // what was forgotten bears no name any more
    const auto loose = m_database.rows(listLoose, {m_clock() - partLifeMs}, [](const SqlRow &row) {
        return std::make_pair(row.integer(0), row.text(1));
    });
    for (const auto &[accountId, contentId] : loose) {
        // An old part first, so that nobody adds to it while it goes. One that has become a blob
        // meanwhile stays.
        const bool gone = m_database.tx([&] {
            return m_database.exec(loosenPart, {accountId, contentId}) == 1;
        });
        if (gone)
            remove(accountId, contentId);
    }
}

qint64 DatabaseBlobs::measuredRoom()
{
    constexpr qint64 unknown = std::numeric_limits<qint64>::max();
    if (m_database.address().engine != DatabaseAddress::Engine::Sqlite)
        return unknown;
    const qint64 room =
        QStorageInfo(QFileInfo(m_database.address().file).absolutePath()).bytesAvailable();
    return room < 0 ? unknown : room;
}

} // namespace Zel
