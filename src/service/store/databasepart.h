// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"

#include <mutex>
#include <set>

namespace Zel {

class Database;

/// The bytes of a content, read chunk by chunk; the last chunk read is kept.
class ContentSource : public ByteSource
{
public:
    ContentSource(Database &database, qint64 accountId, const QString &contentId, qint64 size);
    ~ContentSource() override;

    qint64 size() const override { return m_size; }

    QByteArray read(qint64 offset, qint64 most) override;

private:
    void load(qint64 offset);

    Database &m_database;
    qint64 m_accountId;
    QString m_contentId;
    qint64 m_size;
    QByteArray m_chunk;
    qint64 m_chunkAt = 0;
};

/// The parts that this process is writing.
class OpenParts
{
public:
    /// False when it is there.
    bool add(const QString &key);
    void remove(const QString &key);

private:
    std::mutex m_mutex;
    std::set<QString> m_keys;
};

/// How a part is told from others of its account.
QString partKey(const PartId &id);

/// A part whose bytes lie in chunks. What is appended is gathered until it makes a chunk.
class DatabasePart : public BlobPart
{
public:
    struct Place
    {
        PartId id;
        QString contentId; ///< empty: nothing has come of it yet
        qint64 stored = 0;
    };

    /// @param openParts has the part already, and not any more when this one ends
    DatabasePart(Database &database, std::shared_ptr<OpenParts> openParts, const Place &place,
                 PartProgress progress, qint64 now);
    ~DatabasePart() override;
    DatabasePart(const DatabasePart &) = delete;
    DatabasePart &operator=(const DatabasePart &) = delete;

    const Place &place() const { return m_place; }

    /// Stores what is there, be it without a byte.
    void flushOrBegin();

    qint64 size() const override { return m_place.stored + m_pending.size(); }

    QByteArray read(qint64 offset, qint64 most) override;
    void append(const char *data, qint64 count) override;
    void flush() override;
    /// A copy without a name, so that nothing of it stays, however this process ends.
    std::unique_ptr<LocalFile> localFile() override;

private:
    void storePending();
    void storeChunk(const QString &contentId);

    Database &m_database;
    std::shared_ptr<OpenParts> m_openParts;
    Place m_place;
    qint64 m_now;
    QByteArray m_pending;
    std::unique_ptr<ContentSource> m_reader;
};

} // namespace Zel
