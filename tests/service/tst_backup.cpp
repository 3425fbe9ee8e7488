// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacebackup.h"

#include "service/daemon/exitcodes.h"
#include "service/store/backuparchive.h"
#include "service/store/blobkind.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/unfinishedcopy.h"
#include "service/store/workspacerestore.h"
#include "tests/service/steprows.h"
#include "tests/service/transferfixture.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Zel;
using namespace Zel::Service;
using ZelTest::TransferSide;

namespace {

const SqlText addAccount(R"sql(
    INSERT INTO account (account_id, name, name_key) VALUES ($1, 'n', 'n')
)sql");

const SqlText addType(R"sql(
    INSERT INTO project_type (account_id, type_id, name, position) VALUES ($1, 't', 'n', 1)
)sql");

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("the test file cannot be written");
}

DatabaseError errorOf(const std::function<void()> &function)
{
    try {
        function();
    } catch (const DatabaseError &error) {
        return error;
    }
    throw std::logic_error("nothing was thrown");
}

/// A well-formed archive of some entries.
void writeArchive(const QString &path, const QList<std::pair<QString, QByteArray>> &entries)
{
    const int handle =
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    ArchiveWriter archive(handle);
    for (const auto &[name, content] : entries)
        archive.add(name, content);
    archive.finish();
    ::close(handle);
}

QList<std::pair<QString, QByteArray>> entriesOf(const QString &path)
{
    ArchiveReader archive(path);
    QList<std::pair<QString, QByteArray>> entries;
    while (archive.next())
        entries.append({archive.name(), archive.readAll(1 << 30)});
    return entries;
}

/// The columns that `tables` have, as another database has them.
QList<TableInfo> inTermsOf(const QList<TableInfo> &others, QList<TableInfo> tables)
{
    for (TableInfo &table : tables) {
        for (const TableInfo &other : others) {
            for (const TableColumn &column : other.columns) {
                for (TableColumn &ours : table.columns) {
                    if (other.name == table.name && column.name == ours.name)
                        ours.kind = column.kind;
                }
            }
        }
    }
    return tables;
}

int runProgram(const QStringList &arguments, QByteArray *output, rlim_t longestFile = 0)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setChildProcessModifier([longestFile] {
        const rlimit limit{longestFile, longestFile};
        if (longestFile > 0)
            ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    process.start(QStringLiteral(ZEL_BIN_DIR "/zel-service"), arguments);
    process.waitForFinished(120'000);
    *output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace

/// Workspaces are written into one file and put back, and files go bad.
class BackupTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void restoresEveryTableAndEveryFile_data();
    void restoresEveryTableAndEveryFile();

    void restoresEveryEarlierStep_data() { bothEngines(); }

    void restoresEveryEarlierStep();
    void endsSessionsUnlessTheyAreKept();
    void isReadableByItsOwnerOnly();
    void writesOverNothingUnlessForced();

    void holdsOneMoment_data() { bothEngines(); }

    void holdsOneMoment();
    void canBeCheckedByCommonTools();
    void refusesACutFile();
    void refusesADamagedFile();
    void refusesAChangedEntry_data();
    void refusesAChangedEntry();
    void readsNoFilesWhileTheDatabaseIsLocked();
    void refusesAFileThatIsReplacedMeanwhile();
    void refusesWhatIsNoBackup_data();
    void refusesWhatIsNoBackup();
    void refusesABackupOfANewerProgram_data();
    void refusesABackupOfANewerProgram();
    void refusesATargetWithRows();
    void leavesNoFileWhenTheDiskIsFull();
    void doesAllOfItOnTheCommandLine();

private:
    void bothEngines()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    QString newPath() { return m_databases.folder() + QStringLiteral("/backup-%1").arg(++m_files); }

    /// A small backup of the last step.
    QString madeBackup();
    /// Restores into a fresh SQLite file, which has to be refused and not to be made.
    DatabaseError refusal(const QString &path);

    ZelTest::TestDatabases m_databases;
    int m_files = 0;
};

QString BackupTest::madeBackup()
{
    const QString path = newPath();
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Refuse);
    return path;
}

DatabaseError BackupTest::refusal(const QString &path)
{
    TransferSide to(m_databases, false, BlobKind::Files);
    const DatabaseError error =
        errorOf([&] { restoreBackup(path, to.side(), RestoredSessions::Keep); });
    if (QFileInfo::exists(to.database.address().file) || QFileInfo::exists(to.filePath()))
        throw std::logic_error("something was written");
    const DatabaseError same = errorOf([&] { checkBackup(path); });
    if (same.kind() != error.kind() || same.message() != error.message())
        throw std::logic_error("a check says something else");
    return error;
}

void BackupTest::restoresEveryTableAndEveryFile_data()
{
    QTest::addColumn<bool>("fromPostgres");
    QTest::addColumn<bool>("toPostgres");
    QTest::addColumn<int>("fromKind");
    QTest::addColumn<int>("toKind");
    const int files = int(BlobKind::Files);
    const int chunks = int(BlobKind::Database);
    QTest::newRow("sqlite files to postgres chunks") << false << true << files << chunks;
    QTest::newRow("postgres chunks to sqlite files") << true << false << chunks << files;
    QTest::newRow("sqlite files to sqlite files") << false << false << files << files;
    QTest::newRow("postgres chunks to postgres chunks") << true << true << chunks << chunks;
}

void BackupTest::restoresEveryTableAndEveryFile()
{
    QFETCH(bool, fromPostgres);
    QFETCH(bool, toPostgres);
    QFETCH(int, fromKind);
    QFETCH(int, toKind);
    const QString path = newPath();
    TransferSide from(m_databases, fromPostgres, BlobKind(fromKind));
    TransferSide to(m_databases, toPostgres, BlobKind(toKind));
    from.fill(Migrations::latestVersion());
    from.addPageViews(3000);
    const CopyReport report =
        writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Refuse);
    QCOMPARE(report.tables, ZelTest::sumsOf(from.database));
    QCOMPARE(report.blobs, 1);
    BackupHeader header;
    QCOMPARE(checkBackup(path, &header).tables, report.tables);
    QCOMPARE(header.step, Migrations::latestVersion());
    QCOMPARE(header.engine, fromPostgres ? QStringLiteral("postgresql") : QStringLiteral("sqlite"));
    QCOMPARE(readBackupHeader(path).blobs, wordOf(BlobKind(fromKind)));
    QCOMPARE(restoreBackup(path, to.side(), RestoredSessions::Keep).tables, report.tables);
    QVERIFY(!UnfinishedCopy(to.database).isMarked());
    QCOMPARE(ZelTest::comparableSums(to.database), ZelTest::comparableSums(from.database));
    QCOMPARE(ZelTest::faultsOf(to), QString());
    QCOMPARE(decidedBlobKind(to.database), std::optional(BlobKind(toKind)));
}

void BackupTest::restoresEveryEarlierStep()
{
    QFETCH(bool, postgres);
    for (int step = 1; step < Migrations::latestVersion(); ++step) {
        const QString path = newPath();
        TransferSide from(m_databases, !postgres, BlobKind::Files);
        from.fill(step);
        const QList<TableInfo> tables = readContentTables(from.database);
        const CopyReport report =
            writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Refuse);
        QCOMPARE(Migrations(from.database).currentVersion(), step);
        TransferSide to(m_databases, postgres, BlobKind::Files);
        // A target that is further on is taken back to the step of the backup first.
        Migrations(to.database).migrate();
        restoreBackup(path, to.side(), RestoredSessions::Keep);
        Migrations(to.database).requireCurrent();
        const QList<TableInfo> now = readContentTables(to.database);
        QVERIFY(now.size() >= tables.size());
        QList<TableSum> restored = ZelTest::sumsOf(to.database, inTermsOf(now, tables));
        restored.removeIf(
            [](const TableSum &sum) { return sum.table == QLatin1String("service_setting"); });
        QList<TableSum> expected = report.tables;
        expected.removeIf(
            [](const TableSum &sum) { return sum.table == QLatin1String("service_setting"); });
        QCOMPARE(restored, expected);
        QVERIFY(step < 2 || ZelTest::faultsOf(to).isEmpty());
    }
}

void BackupTest::endsSessionsUnlessTheyAreKept()
{
    const QString path = madeBackup();
    for (const bool keep : {false, true}) {
        TransferSide to(m_databases, false, BlobKind::Files);
        restoreBackup(path, to.side(), keep ? RestoredSessions::Keep : RestoredSessions::End);
        QCOMPARE(to.database.runNative(QStringLiteral("SELECT COUNT(*) FROM session")).toInt(),
                 keep ? 2 : 0);
    }
}

void BackupTest::isReadableByItsOwnerOnly()
{
    const QString path = madeBackup();
    QCOMPARE(QFile::permissions(path),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
    QVERIFY(!QFileInfo::exists(path + QLatin1String(".part")));
}

void BackupTest::writesOverNothingUnlessForced()
{
    const QString path = newPath();
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    write(path, "dear");
    QVERIFY_THROWS_EXCEPTION(
        CopyError, writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Refuse));
    QCOMPARE(read(path), QByteArray("dear"));
    QVERIFY(!QFileInfo::exists(path + QLatin1String(".part")));
    write(path + QLatin1String(".part"), QByteArray(1000, 'x')); // as a killed one leaves it
    {
        // Somebody makes the file while it is being written.
        OutputFile file(path + QLatin1String("-new"), OutputFile::Existing::Refuse);
        write(path + QLatin1String("-new"), "first");
        QVERIFY_THROWS_EXCEPTION(CopyError, file.commit());
    }
    QCOMPARE(read(path + QLatin1String("-new")), QByteArray("first"));
    writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Replace);
    QCOMPARE(checkBackup(path).tables, ZelTest::sumsOf(from.database));
    const OutputFile writing(path, OutputFile::Existing::Replace);
    QVERIFY_THROWS_EXCEPTION(
        CopyError, writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Replace));
}

void BackupTest::holdsOneMoment()
{
    QFETCH(bool, postgres);
    const QString path = newPath();
    TransferSide from(m_databases, postgres, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    std::atomic<bool> isOver{false};
    std::atomic<int> written{0};
    std::thread writer([&] {
        Database database(from.database.address());
        for (qint64 id = 1000; !isOver; ++id) {
            database.tx([&] {
                database.exec(addAccount, {id});
                database.exec(addType, {id});
            });
            ++written;
        }
    });
    while (written < 5)
        std::this_thread::yield();
    CopyReport report;
    QString failure;
    int before = 0;
    int after = 0;
    constexpr int atLeast = 5;
    constexpr int atMost = 50; // until the writer was let on while a backup was made
    for (int round = 0; round < (after > before ? atLeast : atMost) && failure.isEmpty(); ++round) {
        try {
            before = written;
            report = writeBackup(from.database, *from.blobs, path, OutputFile::Existing::Replace);
            after = written;
        } catch (const std::exception &error) {
            failure = QString::fromUtf8(error.what());
        }
    }
    isOver = true;
    writer.join();
    QCOMPARE(failure, QString());
    QVERIFY2(after > before, "nothing was written during the backup");
    const auto rowsOf = [&report](const char *table) {
        for (const TableSum &sum : report.tables) {
            if (sum.table == QLatin1String(table))
                return sum.rows;
        }
        return qint64(-1);
    };
    QCOMPARE(rowsOf("account"), rowsOf("project_type"));
    QVERIFY(rowsOf("account") - 2 >= before);
    TransferSide to(m_databases, !postgres, BlobKind::Files);
    restoreBackup(path, to.side(), RestoredSessions::Keep);
    QCOMPARE(ZelTest::sumsOf(to.database), report.tables);
}

void BackupTest::canBeCheckedByCommonTools()
{
    const QString path = madeBackup();
    const QTemporaryDir folder;
    QProcess shell;
    shell.setWorkingDirectory(folder.path());
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("zstd -dc \"$0\" | tar -x && sha256sum -c manifest.sha256 && cat "
                                "tables/membership/*.jsonl | sha256sum && "
                                "cd blobs && for b in *; do sha256sum \"$b\"; done"),
                 path});
    QVERIFY(shell.waitForFinished());
    const QByteArray output = shell.readAllStandardOutput();
    QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
    QVERIFY2(output.contains("manifest.json: OK"), output.constData());
    const QByteArray manifest = read(folder.filePath(QStringLiteral("manifest.json")));
    const QByteArray sum = output.split('\n').at(1).left(64);
    QVERIFY2(manifest.contains(sum), output.constData());
    const QByteArray blob = "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb";
    QVERIFY2(output.contains(blob + "  " + blob), output.constData());
}

void BackupTest::refusesACutFile()
{
    const QByteArray whole = read(madeBackup());
    const QString path = newPath();
    QList<qsizetype> cuts{1, whole.size() - 1, whole.size() - 2, whole.size() - 5};
    for (int part = 0; part < 20; ++part)
        cuts << whole.size() * part / 20;
    for (const qsizetype cut : std::as_const(cuts)) {
        write(path, whole.left(cut));
        const DatabaseError error = refusal(path);
        QVERIFY2(error.kind() == DatabaseError::Kind::Corrupt, qPrintable(QString::number(cut)));
        QVERIFY2(error.message().contains(path), qPrintable(error.message()));
    }
}

void BackupTest::refusesADamagedFile()
{
    const QString sound = madeBackup();
    const QList<TableSum> sums = checkBackup(sound).tables;
    const QByteArray whole = read(sound);
    const QString path = newPath();
    int refused = 0;
    constexpr int places = 60;
    for (int place = 0; place < places; ++place) {
        QByteArray bytes = whole;
        const qsizetype at = whole.size() * place / places + place % 7;
        bytes[at] = char(bytes.at(at) ^ (1 << (place % 8)));
        write(path, bytes);
        try {
            // What is in no checksum, such as the time of an entry, is of no meaning either.
            QCOMPARE(checkBackup(path).tables, sums);
        } catch (const DatabaseError &error) {
            QCOMPARE(refusal(path).kind(), error.kind());
            ++refused;
        }
    }
    QVERIFY2(refused > places * 3 / 4, qPrintable(QString::number(refused)));
}

void BackupTest::refusesAChangedEntry_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("change");
    const auto row = [](const char *entry, const char *change) {
        QTest::addRow("%s of %s", change, entry)
            << QString::fromLatin1(entry) << QString::fromLatin1(change);
    };
    row("tables/account/", "loss");
    row("tables/account/", "doubling");
    row("tables/account/", "change");
    row("blobs/", "loss");
    row("blobs/", "doubling");
    row("blobs/", "change");
    row("manifest.json", "loss");
    row("manifest.json", "change");
    row("manifest.sha256", "loss");
    row("manifest.sha256", "change");
    row("manifest.sha256", "doubling");
    row("backup.json", "doubling");
    row("backup.json", "change");
    row("backup.json", "loss");
}

void BackupTest::refusesAChangedEntry()
{
    QFETCH(QString, entry);
    QFETCH(QString, change);
    QList<std::pair<QString, QByteArray>> entries = entriesOf(madeBackup());
    const QString path = newPath();
    writeArchive(path, entries);
    checkBackup(path);
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (!entries.at(i).first.startsWith(entry))
            continue;
        if (change == QLatin1String("loss"))
            entries.removeAt(i);
        else if (change == QLatin1String("doubling"))
            entries.insert(i, entries.at(i));
        else
            entries[i].second.replace('a', 'b');
        break;
    }
    writeArchive(path, entries);
    QCOMPARE(refusal(path).kind(), DatabaseError::Kind::Corrupt);
}

void BackupTest::readsNoFilesWhileTheDatabaseIsLocked()
{
    const QString path = madeBackup();
    TransferSide to(m_databases, false, BlobKind::Files);
    QStringList parts;
    const Progress note = [&parts](const QString &what, qint64, qint64) {
        const QString part = what == QLatin1String("files") ? what : QStringLiteral("rows");
        if (parts.isEmpty() || parts.constLast() != part)
            parts << part;
    };
    restoreBackup(path, to.side(), RestoredSessions::Keep, note);
    // Checked as a whole; the rows written; and gone through once more for the files.
    QCOMPARE(parts.join(QLatin1Char(' ')), QStringLiteral("rows files rows files"));
}

void BackupTest::refusesAFileThatIsReplacedMeanwhile()
{
    const QString path = madeBackup();
    const QString another = newPath();
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    from.addPageViews(1);
    writeBackup(from.database, *from.blobs, another, OutputFile::Existing::Refuse);
    TransferSide to(m_databases, false, BlobKind::Files);
    const DatabaseError error = errorOf([&] {
        restoreBackup(path, to.side(), RestoredSessions::Keep,
                      [&](const QString &what, qint64, qint64) {
                          // The first walk through it comes to its end.
                          if (what == QLatin1String("files") && QFile::exists(another)) {
                              QFile::remove(path);
                              QFile::rename(another, path);
                          }
                      });
    });
    QCOMPARE(error.kind(), DatabaseError::Kind::Corrupt);
    QVERIFY2(error.message().contains(QLatin1String("changed")), qPrintable(error.message()));
    QVERIFY(UnfinishedCopy(to.database).isMarked());
}

void BackupTest::refusesWhatIsNoBackup_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a letter") << QByteArray("Dear Sir or Madam");
    QTest::newRow("zeros") << QByteArray(100'000, '\0');
    QTest::newRow("a database") << QByteArray("SQLite format 3\0", 16) + QByteArray(4096, 'x');
    QTest::newRow("zstd alone") << QByteArray("\x28\xb5\x2f\xfd", 4);
    QTest::newRow("an archive of something else") << QByteArray("archive");
    QTest::newRow("another format") << QByteArray("format");
}

void BackupTest::refusesWhatIsNoBackup()
{
    QFETCH(QByteArray, content);
    const QString path = newPath();
    if (content == "archive")
        writeArchive(path, {{QStringLiteral("letter.txt"), "Dear Sir or Madam"}});
    else if (content == "format")
        writeArchive(path, {{QStringLiteral("backup.json"), "{\"format\":\"x\",\"version\":1}"}});
    else
        write(path, content);
    const DatabaseError error = refusal(path);
    QCOMPARE(error.kind(), DatabaseError::Kind::Corrupt);
    QVERIFY2(error.message().contains(QLatin1String("no backup")), qPrintable(error.message()));
    QVERIFY_THROWS_EXCEPTION(CopyError, checkBackup(path + QLatin1String("-none")));
    QVERIFY_THROWS_EXCEPTION(CopyError, checkBackup(m_databases.folder()));
}

void BackupTest::refusesABackupOfANewerProgram_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::newRow("form") << QByteArray("\"version\": 1") << QByteArray("\"version\": 2");
    QTest::newRow("step") << QByteArray("\"step\": ") +
                                 QByteArray::number(Migrations::latestVersion())
                          << QByteArray("\"step\": 999");
}

void BackupTest::refusesABackupOfANewerProgram()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QList<std::pair<QString, QByteArray>> entries = entriesOf(madeBackup());
    QVERIFY(entries.constFirst().second.contains(from));
    entries.first().second.replace(from, to);
    const QString path = newPath();
    writeArchive(path, entries);
    const DatabaseError error = refusal(path);
    QCOMPARE(error.kind(), DatabaseError::Kind::Newer);
    QByteArray output;
    QCOMPARE(runProgram({QStringLiteral("restore"), QStringLiteral("--check"), path}, &output),
             int(ExitNewerDatabase));
    QVERIFY2(output.contains("Update this program"), output.constData());
}

void BackupTest::refusesATargetWithRows()
{
    const QString path = madeBackup();
    TransferSide to(m_databases, false, BlobKind::Files);
    to.fill(1);
    const QList<TableSum> before = ZelTest::sumsOf(to.database);
    QVERIFY_THROWS_EXCEPTION(CopyError, restoreBackup(path, to.side(), RestoredSessions::Keep));
    QCOMPARE(ZelTest::sumsOf(to.database), before);
}

void BackupTest::leavesNoFileWhenTheDiskIsFull()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    from.addPageViews(20'000);
    const QString path = newPath();
    const QStringList arguments{QStringLiteral("backup"),
                                QStringLiteral("--database"),
                                from.database.address().file,
                                QStringLiteral("--files"),
                                from.folder() + QLatin1String("/files"),
                                path};
    QByteArray output;
    QCOMPARE(runProgram(arguments, &output, 100'000), int(ExitFailed));
    QVERIFY2(output.contains("cannot be written"), output.constData());
    QVERIFY(!QFileInfo::exists(path));
    QVERIFY(!QFileInfo::exists(path + QLatin1String(".part")));
    QCOMPARE(runProgram(arguments, &output), int(ExitFine));
}

void BackupTest::doesAllOfItOnTheCommandLine()
{
    TransferSide from(m_databases, true, BlobKind::Database);
    from.fill(Migrations::latestVersion());
    const QString path = newPath();
    const QString target = m_databases.fresh(false).file;
    const QString source = ZelTest::commandLineAddress(from.database.address());
    QByteArray output;
    const auto run = [&output](const QStringList &arguments) {
        return runProgram(arguments, &output);
    };
    const QString database = QStringLiteral("--database");
    QCOMPARE(run({QStringLiteral("backup"), database, source}), int(ExitUsage));
    QCOMPARE(run({QStringLiteral("backup"), database, source, path}), int(ExitFine));
    QCOMPARE(run({QStringLiteral("backup"), database, source, path}), int(ExitFailed));
    QVERIFY2(output.contains("--force"), output.constData());
    QCOMPARE(run({QStringLiteral("backup"), database, source, path, QStringLiteral("--force")}),
             int(ExitFine));
    QCOMPARE(run({QStringLiteral("restore"), database, target}), int(ExitUsage));
    QCOMPARE(run({QStringLiteral("restore"), path}), int(ExitUsage));
    QCOMPARE(run({QStringLiteral("restore"), path, database, target, QStringLiteral("--blobs"),
                  QStringLiteral("cloud")}),
             int(ExitUsage));
    QVERIFY(!QFileInfo::exists(target));
    QCOMPARE(run({QStringLiteral("restore"), QStringLiteral("--check"), path}), int(ExitFine));
    QVERIFY2(output.contains("is sound") && output.contains("page_view"), output.constData());
    QCOMPARE(run({QStringLiteral("restore"), path, database, target, QStringLiteral("--blobs"),
                  QStringLiteral("files"), QStringLiteral("--keep-sessions")}),
             int(ExitFine));
    QVERIFY2(output.contains("Restored to"), output.constData());
    QCOMPARE(run({QStringLiteral("doctor"), database, target, QStringLiteral("--deep")}),
             int(ExitFine));
    Database restored(DatabaseAddress::sqliteFile(target));
    QCOMPARE(ZelTest::comparableSums(restored), ZelTest::comparableSums(from.database));
}

ZEL_TEST_MAIN(BackupTest)
#include "tst_backup.moc"
