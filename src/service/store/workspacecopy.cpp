// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacecopy.h"

#include "service/store/blobkind.h"
#include "service/store/blobtransfer.h"
#include "service/store/migrations.h"
#include "service/store/sessions.h"

namespace Zel {

namespace {

const SqlText countSessions(R"sql(
    SELECT COUNT(*) FROM session WHERE expires_at > $1 AND seen_at > $2
)sql");

} // namespace

qint64 countActiveSessions(Database &database, qint64 now)
{
    return database
        .row(countSessions, {now, now - Sessions::idleLimitMs},
             [](const SqlRow &row) { return row.integer(0); })
        .value_or(0);
}

WorkspaceCopy::WorkspaceCopy(const Side &from, const Side &to, const Progress &progress)
    : m_from(from)
    , m_to(to)
    , m_progress(progress)
{
}

/// One table after the other, and each compared with what was read, in the transaction that the
/// target is in.
void WorkspaceCopy::copyTables(CopyReport &report)
{
    const QList<TableInfo> tables = readContentTables(m_from.database);
    const QList<TableInfo> targets = readContentTables(m_to.database);
    report.tables.clear();
    for (const TableInfo &table : tables) {
        const TableInfo target = tableLike(targets, table);
        TableWriter writer(m_to.database, target);
        qint64 rows = 0;
        const TableSum sum = readTable(m_from.database, table, [&](const QByteArray &line) {
            writer.add(line);
            tell(m_progress, table.name, ++rows);
        });
        writer.finish();
        requireSum(m_to.database, target, sum);
        report.tables << sum;
    }
}

CopyReport WorkspaceCopy::run()
{
    const auto hold = holdForReading(m_from.blobs);
    return m_from.database.snapshot([&] {
        allowLongWork(m_from.database);
        Migrations(m_from.database).requireCurrent();
        CopyReport report;
        const QList<NamedBlob> blobs = namedBlobs(m_from.database);
        requireBlobs(m_from.blobs, blobs);
        CopyTarget target(m_to.database);
        target.requireEmpty();
        target.begin();
        target.fill(Migrations::latestVersion(), [&] {
            copyTables(report);
            recordBlobKind(m_to.database, m_to.blobs.kind());
        });
        for (const NamedBlob &blob : blobs) {
            copyBlob(m_from.blobs, m_to.blobs, blob);
            report.blobBytes += blob.size;
            tell(m_progress, QStringLiteral("files"), ++report.blobs, blobs.size());
        }
        target.end();
        return report;
    });
}

CopyReport WorkspaceCopy::rehearse()
{
    const auto hold = holdForReading(m_from.blobs);
    return m_from.database.snapshot([&] {
        allowLongWork(m_from.database);
        Migrations(m_from.database).requireCurrent();
        CopyTarget(m_to.database).requireEmpty();
        CopyReport report;
        const QList<TableInfo> tables = readContentTables(m_from.database);
        for (const TableInfo &table : tables) {
            qint64 rows = 0;
            report.tables << readTable(m_from.database, table, [&](const QByteArray &) {
                tell(m_progress, table.name, ++rows);
            });
        }
        const QList<NamedBlob> blobs = namedBlobs(m_from.database);
        for (const NamedBlob &blob : blobs) {
            readBlob(m_from.blobs, blob, [](const QByteArray &) {});
            report.blobBytes += blob.size;
            tell(m_progress, QStringLiteral("files"), ++report.blobs, blobs.size());
        }
        return report;
    });
}

} // namespace Zel
