// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacebackup.h"

#include "service/store/backuparchive.h"
#include "service/store/backupwalk.h"
#include "service/store/blobkind.h"
#include "service/store/blobtransfer.h"
#include "service/store/migrations.h"

namespace Zel {

namespace {

/// A piece of a table has this many bytes, and a row more.
constexpr qsizetype pieceBytes = 4 * 1024 * 1024;

class BackupWriter
{
public:
    BackupWriter(Database &database, BlobStore &blobs, int handle, const Progress &progress)
        : m_database(database)
        , m_blobs(blobs)
        , m_archive(handle)
        , m_progress(progress)
    {
    }

    CopyReport run(qint64 now);

private:
    void writeHeader(qint64 now);
    void writeTable(const TableInfo &table);
    void writePiece(const TableInfo &table, QByteArray &piece, int number);
    void writeBlob(const NamedBlob &blob);
    void addFileLine(const QString &name, qint64 size, const QString &sha256);
    void writeManifest();

    Database &m_database;
    BlobStore &m_blobs;
    ArchiveWriter m_archive;
    Progress m_progress;
    BackupHeader m_header;
    BackupManifest m_manifest;
    QXSC::Checksum m_files;
};

void BackupWriter::writeHeader(qint64 now)
{
    m_header.step = Migrations(m_database).currentVersion();
    m_header.engine = m_database.address().engine == DatabaseAddress::Engine::Sqlite
                          ? QStringLiteral("sqlite")
                          : QStringLiteral("postgresql");
    m_header.blobs = wordOf(m_blobs.kind());
    m_header.createdAt = now;
    m_header.tables = readContentTables(m_database);
    const QByteArray json = m_header.toJson();
    m_archive.add(QLatin1String(backupHeaderName), json);
    m_manifest.headerSha256 = sha256Of(json);
}

void BackupWriter::writePiece(const TableInfo &table, QByteArray &piece, int number)
{
    m_archive.add(
        QStringLiteral("tables/%1/%2.jsonl").arg(table.name).arg(number, 6, 10, QLatin1Char('0')),
        piece);
    piece.clear();
}

void BackupWriter::writeTable(const TableInfo &table)
{
    QByteArray piece;
    int pieces = 0;
    qint64 rows = 0;
    m_manifest.tables << readTable(m_database, table, [&](const QByteArray &line) {
        piece += line;
        tell(m_progress, table.name, ++rows);
        if (piece.size() >= pieceBytes)
            writePiece(table, piece, ++pieces);
    });
    if (!piece.isEmpty())
        writePiece(table, piece, ++pieces);
}

void BackupWriter::addFileLine(const QString &name, qint64 size, const QString &sha256)
{
    const QByteArray line = fileLine(name, size, sha256);
    m_files.add(line.constData(), static_cast<std::size_t>(line.size()));
}

void BackupWriter::writeBlob(const NamedBlob &blob)
{
    const QByteArrayList thumbnails = thumbnailsOf(m_blobs, blob);
    for (qsizetype i = 0; i < thumbnails.size(); ++i) {
        const QString thumbnail = QStringLiteral("thumbnails/%1-%2.png")
                                      .arg(blob.sha)
                                      .arg(BlobStore::thumbnailSizes.at(std::size_t(i)));
        m_archive.add(thumbnail, thumbnails.at(i));
        addFileLine(thumbnail, thumbnails.at(i).size(), sha256Of(thumbnails.at(i)));
    }
    const QString name = QLatin1String("blobs/") + blob.sha;
    m_archive.begin(name, blob.size);
    readBlob(m_blobs, blob,
             [this](const QByteArray &bytes) { m_archive.write(bytes.constData(), bytes.size()); });
    addFileLine(name, blob.size, blob.sha);
    ++m_manifest.blobs;
    m_manifest.blobBytes += blob.size;
}

void BackupWriter::writeManifest()
{
    m_manifest.filesSha256 = QString::fromLatin1(m_files.hex());
    const QByteArray json = m_manifest.toJson();
    m_archive.add(QLatin1String(backupManifestName), json);
    m_archive.add(QLatin1String(backupManifestSumName), manifestSumLine(json));
    m_archive.finish();
}

CopyReport BackupWriter::run(qint64 now)
{
    writeHeader(now);
    for (const TableInfo &table : std::as_const(m_header.tables))
        writeTable(table);
    const QList<NamedBlob> all = namedBlobs(m_database);
    for (const NamedBlob &blob : all) {
        writeBlob(blob);
        tell(m_progress, QStringLiteral("files"), m_manifest.blobs, all.size());
    }
    writeManifest();
    return {m_manifest.tables, m_manifest.blobs, m_manifest.blobBytes};
}

void requireWorkspace(Database &database)
{
    Migrations migrations(database);
    migrations.refuseUnfinished();
    migrations.refuseNewer();
    if (migrations.currentVersion() == 0)
        throw CopyError(QStringLiteral("The database %1 is empty: there is nothing to back up.")
                            .arg(database.address().display()));
}

} // namespace

CopyReport writeBackup(Database &database, BlobStore &blobs, const QString &path,
                       OutputFile::Existing existing, const Clock &clock, const Progress &progress)
{
    // Files that rows of the snapshot name must not be cleared away while it is read.
    const auto hold = holdForReading(blobs);
    return database.snapshot([&] {
        allowLongWork(database);
        requireWorkspace(database);
        OutputFile file(path, existing);
        const CopyReport report =
            BackupWriter(database, blobs, file.handle(), progress).run(clock());
        file.commit();
        return report;
    });
}

BackupHeader readBackupHeader(const QString &path)
{
    BackupWalk walk(path, {});
    walk.readHeader();
    return walk.header();
}

CopyReport checkBackup(const QString &path, BackupHeader *header, const Progress &progress)
{
    BackupWalk walk(path, {}, progress);
    walk.run();
    if (header)
        *header = walk.header();
    return {walk.manifest().tables, walk.manifest().blobs, walk.manifest().blobBytes};
}

} // namespace Zel
