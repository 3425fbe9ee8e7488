// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/backupwalk.h"

#include "service/store/blobstore.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"

#include <QRegularExpression>

namespace Zel {

namespace {

constexpr qint64 longestText = 64LL * 1024 * 1024;      ///< of the header and the manifest
constexpr qint64 longestThumbnail = 16LL * 1024 * 1024; ///< far above any that is made
constexpr qsizetype longestLine = 256 * 1024 * 1024;    ///< far above any row that can be stored
constexpr qint64 readBytes = 256 * 1024;

const QString tablesFolder = QStringLiteral("tables/");
const QString blobsFolder = QStringLiteral("blobs/");
const QString thumbnailsFolder = QStringLiteral("thumbnails/");

/// The bytes of the current entry, whose checksum is taken as they are read.
class EntrySource : public ByteSource
{
public:
    explicit EntrySource(ArchiveReader &archive)
        : m_archive(archive)
    {
    }

    qint64 size() const override { return m_archive.size(); }

    QByteArray read(qint64 offset, qint64 most) override
    {
        if (offset != m_read)
            throw std::logic_error("an entry of a backup can only be read once and in order");
        const QByteArray bytes = m_archive.read(std::min(most, readBytes));
        m_checksum.add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        m_read += bytes.size();
        return bytes;
    }

    /// Reads what nobody has read yet.
    QString checksumOfAll()
    {
        while (!read(m_read, readBytes).isEmpty()) {
        }
        return QString::fromLatin1(m_checksum.hex());
    }

    bool isWhole() const { return m_read == m_archive.size(); }

private:
    ArchiveReader &m_archive;
    QXSC::Checksum m_checksum;
    qint64 m_read = 0;
};

void addLine(QXSC::Checksum &checksum, const QByteArray &line)
{
    checksum.add(line.constData(), static_cast<std::size_t>(line.size()));
}

} // namespace

BackupWalk::BackupWalk(const QString &path, const Visitor &visitor, const Progress &progress)
    : m_archive(path)
    , m_visitor(visitor)
    , m_progress(progress)
{
}

void BackupWalk::run()
{
    readHeader();
    readTables();
    readFiles();
    readManifest();
}

void BackupWalk::runTables(const BackupManifest &checked)
{
    readHeader();
    readTables();
    if (m_manifest.headerSha256 != checked.headerSha256 || m_manifest.tables != checked.tables)
        m_archive.refuse(QStringLiteral("it was changed while it was read"));
}

void BackupWalk::next()
{
    m_isAtEnd = !m_archive.next();
}

bool BackupWalk::isAt(const QString &start) const
{
    return !m_isAtEnd && m_archive.name().startsWith(start);
}

void BackupWalk::readHeader()
{
    next();
    if (!isAt(QLatin1String(backupHeaderName)))
        m_archive.refuse(QStringLiteral("it is no backup of this program"));
    const QByteArray json = m_archive.readAll(longestText);
    const auto header = BackupHeader::fromJson(json);
    if (!header)
        m_archive.refuse(QStringLiteral("it is no backup of this program"));
    if (header->format != BackupHeader::formatVersion || header->step > Migrations::latestVersion())
        throw DatabaseError(DatabaseError::Kind::Newer,
                            QStringLiteral("The backup was written by another version of this "
                                           "program (form %1, step %2; this one knows form %3 and "
                                           "steps up to %4). Update this program. Nothing was "
                                           "changed.")
                                .arg(header->format)
                                .arg(header->step)
                                .arg(BackupHeader::formatVersion)
                                .arg(Migrations::latestVersion()));
    m_header = *header;
    m_manifest.headerSha256 = sha256Of(json);
    next();
}

void BackupWalk::readTables()
{
    for (const TableInfo &table : std::as_const(m_header.tables))
        readTable(table);
    if (isAt(tablesFolder))
        m_archive.refuse(
            QStringLiteral("the entry %1 is in the wrong place").arg(m_archive.name()));
}

void BackupWalk::readTable(const TableInfo &table)
{
    TableSumBuilder builder;
    while (isAt(tablesFolder + table.name + QLatin1Char('/'))) {
        readPiece(table, builder);
        next();
    }
    const TableSum sum = builder.sum(table.name);
    m_manifest.tables << sum;
    if (m_visitor.tableEnd)
        m_visitor.tableEnd(table, sum);
}

void BackupWalk::readPiece(const TableInfo &table, TableSumBuilder &sum)
{
    QByteArray kept;
    for (QByteArray more = m_archive.read(readBytes); !more.isEmpty();
         more = m_archive.read(readBytes)) {
        qsizetype from = 0;
        for (qsizetype end = more.indexOf('\n'); end >= 0; end = more.indexOf('\n', from)) {
            showRow(table, sum, kept + more.mid(from, end + 1 - from));
            kept.clear();
            from = end + 1;
        }
        kept += more.mid(from);
        if (kept.size() > longestLine)
            m_archive.refuse(QStringLiteral("a row of %1 is too long").arg(table.name));
    }
    if (!kept.isEmpty())
        m_archive.refuse(QStringLiteral("a row of %1 is cut").arg(table.name));
}

void BackupWalk::showRow(const TableInfo &table, TableSumBuilder &sum, const QByteArray &line)
{
    sum.add(line);
    if (m_visitor.row)
        m_visitor.row(table, line);
    tell(m_progress, table.name, sum.rows());
}

void BackupWalk::readFiles()
{
    for (; isAt(blobsFolder) || isAt(thumbnailsFolder); next()) {
        if (isAt(blobsFolder))
            readBlob();
        else
            readThumbnail();
    }
    m_manifest.filesSha256 = QString::fromLatin1(m_files.hex());
}

void BackupWalk::readBlob()
{
    const QString name = m_archive.name();
    const QString sha = name.mid(blobsFolder.size());
    if (!m_thumbnails.isEmpty() && m_thumbnailsOf != sha)
        m_archive.refuse(QStringLiteral("the entry %1 is in the wrong place").arg(name));
    EntrySource bytes(m_archive);
    if (m_visitor.blob)
        m_visitor.blob(sha, bytes, m_thumbnails);
    if (bytes.checksumOfAll() != sha || !bytes.isWhole())
        m_archive.refuse(QStringLiteral("the file %1 in it is damaged").arg(sha));
    m_thumbnails.clear();
    ++m_manifest.blobs;
    m_manifest.blobBytes += m_archive.size();
    addLine(m_files, fileLine(name, m_archive.size(), sha));
    tell(m_progress, QStringLiteral("files"), m_manifest.blobs);
}

void BackupWalk::readThumbnail()
{
    static const QRegularExpression form(
        QStringLiteral("^thumbnails/([0-9a-f]{64})-([0-9]{1,4})[.]png$"));
    const QString name = m_archive.name();
    const auto match = form.match(name);
    const auto place = std::size_t(m_thumbnails.size());
    const bool isNext = match.hasMatch() && place < BlobStore::thumbnailSizes.size() &&
                        match.captured(2).toInt() == BlobStore::thumbnailSizes.at(place) &&
                        (place == 0 || match.captured(1) == m_thumbnailsOf);
    if (!isNext)
        m_archive.refuse(QStringLiteral("the entry %1 is in the wrong place").arg(name));
    m_thumbnailsOf = match.captured(1);
    m_thumbnails << m_archive.readAll(longestThumbnail);
    addLine(m_files,
            fileLine(name, m_thumbnails.constLast().size(), sha256Of(m_thumbnails.constLast())));
}

void BackupWalk::readManifest()
{
    if (!isAt(QLatin1String(backupManifestName)))
        m_archive.refuse(QStringLiteral("its end is missing"));
    const QByteArray json = m_archive.readAll(longestText);
    next();
    if (!isAt(QLatin1String(backupManifestSumName)) ||
        m_archive.readAll(longestText) != manifestSumLine(json))
        m_archive.refuse(QStringLiteral("its end is damaged"));
    const auto expected = BackupManifest::fromJson(json);
    if (!expected || *expected != m_manifest)
        m_archive.refuse(QStringLiteral("what it holds is not what was written into it"));
    next();
    if (!m_isAtEnd)
        m_archive.refuse(QStringLiteral("something was added to it"));
}

} // namespace Zel
