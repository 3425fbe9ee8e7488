// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/transferfixture.h"

#include "service/store/blobkind.h"
#include "service/store/migrations.h"
#include "service/store/workspacecheck.h"
#include "tests/service/steprows.h"

#include <QCryptographicHash>
#include <QFile>

namespace ZelTest {

using namespace Zel;

namespace {

const QByteArray fileBytes = "a";

QString fileSha()
{
    return QString::fromLatin1(
        QCryptographicHash::hash(fileBytes, QCryptographicHash::Sha256).toHex());
}

} // namespace

TransferSide::TransferSide(TestDatabases &databases, bool postgres, BlobKind kind)
    : TransferSide(databases.fresh(postgres), kind)
{
}

TransferSide::TransferSide(const DatabaseAddress &address, BlobKind kind)
    : database(address, Database::Missing::Create)
    , blobs(openBlobs(database, kind, m_folder.filePath(QStringLiteral("files"))))
{
}

QString TransferSide::filePath() const
{
    return QStringLiteral("%1/files/blobs/%2/%3")
        .arg(m_folder.path(), fileSha().left(2), fileSha());
}

void TransferSide::fill(int step)
{
    fillUpTo(database, step);
    if (step < 2)
        return;
    if (step >= 7) {
        database.tx([&] {
            // Those are of no file that rows name; here they come from the store.
            for (const char *table : {"blob_chunk", "blob_thumbnail", "blob_content"})
                database.runNative(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
            recordBlobKind(database, blobs->kind());
        });
    }
    MemorySource bytes(fileBytes);
    blobs->add({1, fileSha()}, bytes, {});
    if (step >= 3)
        blobs->add({0, fileSha()}, bytes, {});
}

void TransferSide::addPageViews(int count)
{
    for (const TableInfo &table : readContentTables(database)) {
        if (table.name != QLatin1String("page_view") && table.name != QLatin1String("view_tally"))
            continue;
        const bool isTally = table.name == QLatin1String("view_tally");
        database.tx([&] {
            TableWriter writer(database, table);
            // One view in each hour, so that every view is a sum of its own.
            for (int i = 0; i < count; ++i) {
                const QByteArray hour = QByteArray::number(1000 + i);
                const QByteArray at = QByteArray::number((1000LL + i) * 3'600'000);
                const QByteArray id = QByteArray("view-" + QByteArray::number(i)).toBase64();
                writer.add(isTally ? "[1,11," + hour + ",-5,77,1,3," + at + "," + at + "]\n"
                                   : "[1,11,\"" + id + "\",-5," + at + ",3,1,77]\n");
            }
            writer.finish();
        });
    }
}

QList<TableSum> comparableSums(Database &database)
{
    QList<TableSum> sums = sumsOf(database);
    sums.removeIf(
        [](const TableSum &sum) { return sum.table == QLatin1String("service_setting"); });
    return sums;
}

QString faultsOf(TransferSide &side)
{
    WorkspaceCheck check(side.database, *side.blobs);
    const QStringList faults = check.brokenReferences() + check.wrongTallies() +
                               check.brokenFiles(WorkspaceCheck::Depth::Bytes);
    return check.checkedFiles() == 0 ? QStringLiteral("no file was checked")
                                     : faults.join(QLatin1Char(' '));
}

QString commandLineAddress(const DatabaseAddress &address)
{
    if (address.engine == DatabaseAddress::Engine::Sqlite)
        return address.file;
    return QStringLiteral("postgresql://%1:%2@%3:%4/%5")
        .arg(address.user, address.password, address.host)
        .arg(address.port)
        .arg(address.database);
}

void resetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly) || file.write("5") != 1)
        throw std::runtime_error("the peak of memory cannot be reset");
}

qint64 peakMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmHWM:"))
                return line.simplified().split(' ').at(1).toLongLong() * 1024;
        }
    }
    throw std::runtime_error("the peak of memory cannot be read");
}

} // namespace ZelTest
