// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacerestore.h"

#include "service/store/backupwalk.h"
#include "service/store/blobkind.h"
#include "service/store/blobtransfer.h"

#include <QHash>

#include <memory>

namespace Zel {

namespace {

const SqlText endSessions(R"sql(
    DELETE FROM session
)sql");

/// Writes the rows of a backup into tables of its step and compares them.
class RowsWriter
{
public:
    RowsWriter(Database &database, const Progress &progress)
        : m_database(database)
        , m_tables(readContentTables(database))
        , m_progress(progress)
    {
    }

    /// @param checked what a walk through the whole backup has found
    void run(const QString &path, const BackupManifest &checked);

private:
    TableWriter &writerOf(const TableInfo &table);
    void end(const TableInfo &table, const TableSum &sum);

    Database &m_database;
    QList<TableInfo> m_tables;
    Progress m_progress;
    std::unique_ptr<TableWriter> m_writer;
    QString m_written;
};

TableWriter &RowsWriter::writerOf(const TableInfo &table)
{
    if (m_written != table.name) {
        m_writer = std::make_unique<TableWriter>(m_database, tableLike(m_tables, table));
        m_written = table.name;
    }
    return *m_writer;
}

void RowsWriter::end(const TableInfo &table, const TableSum &sum)
{
    writerOf(table).finish();
    requireSum(m_database, tableLike(m_tables, table), sum);
}

void RowsWriter::run(const QString &path, const BackupManifest &checked)
{
    BackupWalk::Visitor visitor;
    visitor.row = [this](const TableInfo &table, const QByteArray &line) {
        writerOf(table).add(line);
    };
    visitor.tableEnd = [this](const TableInfo &table, const TableSum &sum) { end(table, sum); };
    BackupWalk(path, visitor, m_progress).runTables(checked);
}

void writeBlobs(const QString &path, const WorkspaceCopy::Side &to, const QList<NamedBlob> &named,
                const Progress &progress)
{
    QHash<QString, NamedBlob> wanted;
    for (const NamedBlob &blob : named)
        wanted.insert(blob.sha, blob);
    BackupWalk::Visitor visitor;
    visitor.blob = [&](const QString &sha, ByteSource &bytes, const QByteArrayList &thumbnails) {
        if (const auto blob = wanted.constFind(sha); blob != wanted.constEnd())
            addBlob(to.blobs, *blob, bytes, thumbnails);
        wanted.remove(sha);
    };
    BackupWalk(path, visitor, progress).run();
    if (!wanted.isEmpty())
        throw CopyError(QStringLiteral("The backup does not hold the file %1, which its rows name.")
                            .arg(wanted.constBegin().key()));
}

} // namespace

CopyReport restoreBackup(const QString &path, const WorkspaceCopy::Side &to,
                         RestoredSessions sessions, const Progress &progress)
{
    CopyTarget target(to.database);
    target.requireEmpty();
    BackupWalk check(path, {}, progress);
    check.run();
    const BackupManifest &checked = check.manifest();
    target.begin();
    target.fill(check.header().step, [&] {
        // The files of a large workspace take long to read: not while the database is locked.
        RowsWriter(to.database, progress).run(path, checked);
        if (sessions == RestoredSessions::End)
            to.database.exec(endSessions);
    });
    to.database.tx([&] { recordBlobKind(to.database, to.blobs.kind()); });
    const QList<NamedBlob> named = to.database.snapshot([&] { return namedBlobs(to.database); });
    writeBlobs(path, to, named, progress);
    target.end();
    return {checked.tables, checked.blobs, checked.blobBytes};
}

} // namespace Zel
