// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacecopy.h"

#include "service/daemon/exitcodes.h"
#include "service/store/blobkind.h"
#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/unfinishedcopy.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/httpprobe.h"
#include "tests/service/steprows.h"
#include "tests/service/transferfixture.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QTest>

#include <atomic>
#include <limits>
#include <thread>

#include <sys/resource.h>

using namespace Zel;
using namespace Zel::Service;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;
using ZelTest::ServiceProcess;
using ZelTest::TransferSide;

namespace {

const SqlText addAccount(R"sql(
    INSERT INTO account (account_id, name, name_key) VALUES ($1, 'n', 'n')
)sql");

const SqlText addType(R"sql(
    INSERT INTO project_type (account_id, type_id, name, position) VALUES ($1, 't', 'n', 1)
)sql");

QString messageOf(const std::function<void()> &function)
{
    try {
        function();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what());
    }
    throw std::logic_error("nothing was thrown");
}

CopyReport copy(TransferSide &from, TransferSide &to)
{
    return WorkspaceCopy(from.side(), to.side()).run();
}

bool isReady(Database &database)
{
    return !UnfinishedCopy(database).isMarked() &&
           Migrations(database).currentVersion() == Migrations::latestVersion();
}

qint64 rowsOf(const CopyReport &report, const char *table)
{
    for (const TableSum &sum : report.tables) {
        if (sum.table == QLatin1String(table))
            return sum.rows;
    }
    throw std::logic_error("no such table");
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("the test file cannot be written");
}

/// Every file below a folder.
QMap<QString, QByteArray> contentOf(const QString &folder)
{
    QMap<QString, QByteArray> content;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("an exported file cannot be read");
        content.insert(QDir(folder).relativeFilePath(file.fileName()), file.readAll());
    }
    return content;
}

struct Ended
{
    int code = -1; ///< -1 when it was killed
    QByteArray output;
};

/// Runs `zel-service`; kills it after some milliseconds when that is positive, and lets it write
/// files up to a size when that is.
Ended runProgram(const QStringList &arguments, int killAfterMs = 0, rlim_t longestFile = 0)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setChildProcessModifier([longestFile] {
        const rlimit limit{longestFile, longestFile};
        if (longestFile > 0)
            ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    process.start(QStringLiteral(ZEL_BIN_DIR "/zel-service"), arguments);
    if (killAfterMs > 0 && process.waitForStarted() && !process.waitForFinished(killAfterMs))
        process.kill();
    process.waitForFinished(120'000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAll()};
}

} // namespace

/// Workspaces are copied between databases, and copies go wrong.
class WorkspaceCopyTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void copiesEveryTableAndEveryFile_data();
    void copiesEveryTableAndEveryFile();
    void comesBackAsItWas();

    void takesATargetWithoutRows_data() { bothEngines(); }

    void takesATargetWithoutRows();

    void refusesATargetWithRows_data() { bothEngines(); }

    void refusesATargetWithRows();
    void refusesATargetThatIsTheSource();
    void refusesATargetWithTablesOfAnotherProgram();
    void refusesASourceOfAnotherStep();
    void refusesASourceWithoutItsFiles();

    void isUnfinishedUntilDamageIsMended_data() { bothEngines(); }

    void isUnfinishedUntilDamageIsMended();

    void copiesOneMoment_data() { bothEngines(); }

    void copiesOneMoment();

    void copiesManyRowsInTheMemoryOfFew_data() { bothEngines(); }

    void copiesManyRowsInTheMemoryOfFew();

    void leavesNoHalfWorkspaceWhenKilled_data() { bothEngines(); }

    void leavesNoHalfWorkspaceWhenKilled();
    void saysThatTheDiskIsFull();
    void keepsPeopleSignedInAndAddressesOfFiles();
    void exportsTheSameThereAndBack();
    void rehearsesWithoutWriting();
    void refusesAWrongCommandLine_data();
    void refusesAWrongCommandLine();

private:
    void bothEngines()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    ZelTest::TestDatabases m_databases;
};

void WorkspaceCopyTest::copiesEveryTableAndEveryFile_data()
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
    QTest::newRow("postgres files to sqlite chunks") << true << false << files << chunks;
}

void WorkspaceCopyTest::copiesEveryTableAndEveryFile()
{
    QFETCH(bool, fromPostgres);
    QFETCH(bool, toPostgres);
    QFETCH(int, fromKind);
    QFETCH(int, toKind);
    TransferSide from(m_databases, fromPostgres, BlobKind(fromKind));
    TransferSide to(m_databases, toPostgres, BlobKind(toKind));
    from.fill(Migrations::latestVersion());
    QCOMPARE(ZelTest::faultsOf(from), QString());
    const CopyReport report = copy(from, to);
    QCOMPARE(report.tables, ZelTest::sumsOf(from.database));
    QCOMPARE(report.blobs, 1);
    QCOMPARE(report.blobBytes, 1);
    QVERIFY(isReady(to.database));
    QCOMPARE(ZelTest::comparableSums(to.database), ZelTest::comparableSums(from.database));
    QCOMPARE(ZelTest::faultsOf(to), QString());
    QCOMPARE(decidedBlobKind(to.database), std::optional(BlobKind(toKind)));
    // PostgreSQL makes its plans by the rows that are there now.
    if (toPostgres)
        QVERIFY(to.database
                    .runNative(QStringLiteral(
                        "SELECT reltuples FROM pg_class WHERE relname = 'page_view'"))
                    .toLongLong() >= 0);
}

void WorkspaceCopyTest::comesBackAsItWas()
{
    TransferSide first(m_databases, false, BlobKind::Files);
    TransferSide second(m_databases, true, BlobKind::Database);
    TransferSide third(m_databases, false, BlobKind::Files);
    first.fill(Migrations::latestVersion());
    copy(first, second);
    copy(second, third);
    QCOMPARE(ZelTest::sumsOf(third.database), ZelTest::sumsOf(first.database));
    QCOMPARE(ZelTest::faultsOf(third), QString());
}

void WorkspaceCopyTest::takesATargetWithoutRows()
{
    QFETCH(bool, postgres);
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    for (int step = 0; step <= Migrations::latestVersion(); ++step) {
        TransferSide to(m_databases, postgres, BlobKind::Files);
        Migrations(to.database).migrate(step);
        copy(from, to);
        QVERIFY(isReady(to.database));
        QCOMPARE(ZelTest::sumsOf(to.database), ZelTest::sumsOf(from.database));
    }
}

void WorkspaceCopyTest::refusesATargetWithRows()
{
    QFETCH(bool, postgres);
    TransferSide from(m_databases, false, BlobKind::Files);
    TransferSide to(m_databases, postgres, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    to.fill(1);
    const QList<TableSum> before = ZelTest::sumsOf(to.database);
    const QString message = messageOf([&] { copy(from, to); });
    QVERIFY2(message.contains(QLatin1String("is not empty")), qPrintable(message));
    QVERIFY(!UnfinishedCopy(to.database).isMarked());
    QCOMPARE(Migrations(to.database).currentVersion(), 1);
    QCOMPARE(ZelTest::sumsOf(to.database), before);
    QVERIFY(!QFileInfo::exists(to.filePath()));
}

void WorkspaceCopyTest::refusesATargetThatIsTheSource()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    TransferSide same(from.database.address(), BlobKind::Files);
    const QList<TableSum> before = ZelTest::sumsOf(from.database);
    QVERIFY_THROWS_EXCEPTION(CopyError, copy(from, same));
    QCOMPARE(ZelTest::sumsOf(from.database), before);
}

void WorkspaceCopyTest::refusesATargetWithTablesOfAnotherProgram()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    TransferSide to(m_databases, true, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    to.database.tx([&] {
        to.database.runNative(QStringLiteral("CREATE TABLE account (name TEXT)"));
        to.database.runNative(QStringLiteral("CREATE TABLE notes (note TEXT)"));
    });
    const QString message = messageOf([&] { copy(from, to); });
    QVERIFY2(message.contains(QLatin1String("another program")), qPrintable(message));
    to.database.tx([&] { to.database.runNative(QStringLiteral("DROP TABLE account")); });
    copy(from, to);
    QCOMPARE(to.database.runNative(QStringLiteral("SELECT COUNT(*) FROM notes")).toInt(), 0);
}

void WorkspaceCopyTest::refusesASourceOfAnotherStep()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    TransferSide to(m_databases, false, BlobKind::Files);
    const QString target = to.database.address().file;
    from.fill(Migrations::latestVersion() - 1);
    const QString older = messageOf([&] { copy(from, to); });
    QVERIFY2(older.contains(QLatin1String("zel-service migrate")), qPrintable(older));
    from.database.tx([&] {
        from.database.runNative(QStringLiteral("INSERT INTO schema_version VALUES (999, 0)"));
    });
    const QString newer = messageOf([&] { copy(from, to); });
    QVERIFY2(newer.contains(QLatin1String("newer program")), qPrintable(newer));
    TransferSide none(m_databases, false, BlobKind::Files);
    none.database.open();
    QVERIFY_THROWS_EXCEPTION(DatabaseError, copy(none, to));
    QVERIFY(!QFileInfo::exists(target));
}

void WorkspaceCopyTest::refusesASourceWithoutItsFiles()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    TransferSide to(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    QVERIFY(QFile::remove(from.filePath()));
    const QString message = messageOf([&] { copy(from, to); });
    QVERIFY2(message.contains(QLatin1String("is not there")), qPrintable(message));
    QVERIFY(!QFileInfo::exists(to.database.address().file));
    QVERIFY_THROWS_EXCEPTION(CopyError, WorkspaceCopy(from.side(), to.side()).rehearse());
}

void WorkspaceCopyTest::isUnfinishedUntilDamageIsMended()
{
    QFETCH(bool, postgres);
    TransferSide from(m_databases, false, BlobKind::Files);
    TransferSide to(m_databases, postgres, postgres ? BlobKind::Database : BlobKind::Files);
    from.fill(Migrations::latestVersion());
    QVERIFY(QFile::setPermissions(from.filePath(), QFile::ReadOwner | QFile::WriteOwner));
    write(from.filePath(), "b");
    const QString message = messageOf([&] { copy(from, to); });
    QVERIFY2(message.contains(QLatin1String("ca978112")), qPrintable(message));
    QVERIFY(UnfinishedCopy(to.database).isMarked());
    QVERIFY_THROWS_EXCEPTION(DatabaseError, Migrations(to.database).requireCurrent());
    write(from.filePath(), "a");
    copy(from, to);
    QVERIFY(isReady(to.database));
    QCOMPARE(ZelTest::comparableSums(to.database), ZelTest::comparableSums(from.database));
    QCOMPARE(ZelTest::faultsOf(to), QString());
}

void WorkspaceCopyTest::copiesOneMoment()
{
    QFETCH(bool, postgres);
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
    const int before = written;
    TransferSide to(m_databases, !postgres, BlobKind::Files);
    CopyReport report;
    QString failure;
    try {
        report = copy(from, to);
    } catch (const std::exception &error) {
        failure = QString::fromUtf8(error.what());
    }
    const int after = written;
    isOver = true;
    writer.join();
    QCOMPARE(failure, QString());
    QVERIFY2(after > before, "nothing was written during the copy");
    QCOMPARE(rowsOf(report, "account") - 2, rowsOf(report, "project_type") - 2);
    QVERIFY(rowsOf(report, "account") - 2 >= before);
    QVERIFY(isReady(to.database));
}

void WorkspaceCopyTest::copiesManyRowsInTheMemoryOfFew()
{
    QFETCH(bool, postgres);
#if defined(__SANITIZE_ADDRESS__)
    // The sanitizer keeps freed memory back, so that it shows nothing.
    constexpr qint64 most = std::numeric_limits<qint64>::max();
#else
    constexpr qint64 most = 12LL * 1024 * 1024;
#endif
    constexpr int views = 100'000;
    TransferSide from(m_databases, postgres, BlobKind::Files);
    TransferSide to(m_databases, !postgres, BlobKind::Files);
    TransferSide again(m_databases, !postgres, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    copy(from, to);
    ZelTest::resetPeakMemory();
    const qint64 few = ZelTest::peakMemory();
    from.addPageViews(views);
    ZelTest::resetPeakMemory();
    const CopyReport report = copy(from, again);
    const qint64 many = ZelTest::peakMemory();
    QCOMPARE(rowsOf(report, "page_view"), views + 3);
    QVERIFY2(many - few < most, qPrintable(QString::number((many - few) / 1024)));
}

void WorkspaceCopyTest::leavesNoHalfWorkspaceWhenKilled()
{
    QFETCH(bool, postgres);
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    from.addPageViews(5000);
    const QString source = from.database.address().file;
    const QString fromFiles = from.folder() + QLatin1String("/files");
    const DatabaseAddress target = m_databases.fresh(postgres);
    const QString to = ZelTest::commandLineAddress(target);
    const QTemporaryDir files;
    const QStringList arguments{QStringLiteral("copy"),
                                QStringLiteral("--database"),
                                source,
                                QStringLiteral("--files"),
                                fromFiles,
                                QStringLiteral("--to"),
                                to,
                                QStringLiteral("--to-files"),
                                files.filePath(QStringLiteral("f")),
                                QStringLiteral("--to-blobs"),
                                QStringLiteral("files")};
    int unfinished = 0;
    int delay = 15; // milliseconds
    while (unfinished < 6 && delay < 20'000) {
        const Ended ended = runProgram(arguments, delay);
        if (ended.code == 0)
            break;
        QCOMPARE(ended.code, -1);
        // However long this machine takes until it begins, the copy is come upon.
        const int longer = std::max(15, delay / 4);
        if (!postgres && !QFileInfo::exists(target.file)) {
            delay += longer;
            continue;
        }
        Database database(target, Database::Missing::Create);
        if (!UnfinishedCopy(database).isMarked()) {
            QCOMPARE(Migrations(database).currentVersion(), 0);
            delay += longer;
            continue;
        }
        delay += 15;
        ++unfinished;
        const Ended serve = runProgram({QStringLiteral("serve"), QStringLiteral("--database"), to});
        QCOMPARE(serve.code, int(ExitFailed));
        QVERIFY2(serve.output.contains("did not end"), serve.output.constData());
    }
    QVERIFY2(unfinished > 0, "no kill came in the middle");
    const Ended ended = runProgram(arguments);
    QVERIFY2(ended.code == 0, ended.output.constData());
    Database database(target);
    QVERIFY(isReady(database));
    QCOMPARE(ZelTest::sumsOf(database), ZelTest::sumsOf(from.database));
}

void WorkspaceCopyTest::saysThatTheDiskIsFull()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    from.addPageViews(20'000);
    const QString target = m_databases.fresh(false).file;
    const QStringList arguments{QStringLiteral("copy"),
                                QStringLiteral("--database"),
                                from.database.address().file,
                                QStringLiteral("--files"),
                                from.folder() + QLatin1String("/files"),
                                QStringLiteral("--to"),
                                target};
    const Ended full = runProgram(arguments, 0, 2 * 1024 * 1024);
    QCOMPARE(full.code, int(ExitFailed));
    QVERIFY2(full.output.contains("zel-service: "), full.output.constData());
    {
        Database database(DatabaseAddress::sqliteFile(target));
        QVERIFY(UnfinishedCopy(database).isMarked());
    }
    const Ended ended = runProgram(arguments);
    QVERIFY2(ended.code == 0, ended.output.constData());
}

void WorkspaceCopyTest::keepsPeopleSignedInAndAddressesOfFiles()
{
    ServiceProcess source;
    QVERIFY2(source.start(), qPrintable(source.error()));
    const auto call = [](const ServiceProcess &service, const char *method,
                         const QByteArray &target, const QByteArray &token,
                         const QByteArray &body = QByteArray()) {
        return HttpProbe::request(
            service.port(), method, target, body,
            token.isEmpty() ? QByteArrayList() : QByteArrayList{"Authorization: Bearer " + token});
    };
    const QByteArray token =
        call(source, "POST", "/v1/sessions", {},
             R"({"user": "maja", "password": "sample-maja", "appName": "copy"})")
            .json()
            .value(QLatin1String("token"))
            .toString()
            .toLatin1();
    QCOMPARE(call(source, "PUT", "/v1/sessions/current/account", token, R"({"accountId": "1002"})")
                 .status,
             204);
    const QByteArray reserved =
        call(source, "POST", "/v1/uploads", token,
             R"({"name": "n", "detail": "", "folderId": 0, "files": [{"name": "x", "size": 5}]})")
            .json()
            .value(QLatin1String("uploadId"))
            .toString()
            .toLatin1();
    QCOMPARE(
        call(source, "PUT", "/v1/uploads/" + reserved + "/files/0?offset=0", token, "bytes").status,
        200);
    const QString guid =
        call(
            source, "POST", "/v1/uploads/" + reserved + "/commit", token,
            R"({"checksums": ["277089d91c0bdf4f2e6862ba7e4a07605119431f5d13f726dd352b06f1b206a9"]})")
            .json()
            .value(QLatin1String("guid"))
            .toString();
    const QByteArray address =
        call(source, "GET", "/v1/assets/" + guid.toLatin1() + "/value", token)
            .json()
            .value(QLatin1String("value"))
            .toString()
            .toLatin1();
    QCOMPARE(call(source, "GET", address, {}).body, QByteArray("bytes"));
    const QByteArray projects = call(source, "GET", "/v1/projects?type=webcast", token).body;
    QCOMPARE(source.stop(), int(ExitFine));

    ServiceProcess target;
    target.database = ZelTest::commandLineAddress(m_databases.fresh(true));
    QByteArray output;
    QCOMPARE(source.runCommand({QStringLiteral("copy"), QStringLiteral("--to"), target.database,
                                QStringLiteral("--to-blobs"), QStringLiteral("database")},
                               &output),
             int(ExitFine));
    QVERIFY2(output.contains("session(s) are active") && output.contains("page_view"),
             output.constData());
    QVERIFY2(target.startAgain(), qPrintable(target.error()));
    QCOMPARE(call(target, "GET", "/v1/projects?type=webcast", token).body, projects);
    QCOMPARE(call(target, "GET", address, {}).body, QByteArray("bytes"));
    QCOMPARE(target.stop(), int(ExitFine));
    QCOMPARE(target.runCommand({QStringLiteral("doctor"), QStringLiteral("--deep")}, &output),
             int(ExitFine));
}

void WorkspaceCopyTest::exportsTheSameThereAndBack()
{
    const QTemporaryDir folder;
    ServiceProcess first;
    ServiceProcess second;
    ServiceProcess third;
    QVERIFY2(first.start(), qPrintable(first.error()));
    QCOMPARE(first.stop(), int(ExitFine));
    second.database = ZelTest::commandLineAddress(m_databases.fresh(true));
    third.database = m_databases.fresh(false).file;
    third.files = third.database + QLatin1String(".files");
    QByteArray output;
    const auto run = [&output](ServiceProcess &service, const QStringList &arguments) {
        return service.runCommand(arguments, &output);
    };
    QVERIFY2(run(first, {QStringLiteral("copy"), QStringLiteral("--to"), second.database,
                         QStringLiteral("--to-blobs"), QStringLiteral("database")}) == 0,
             output.constData());
    QVERIFY2(run(second, {QStringLiteral("copy"), QStringLiteral("--to"), third.database,
                          QStringLiteral("--to-blobs"), QStringLiteral("files")}) == 0,
             output.constData());
    QList<QMap<QString, QByteArray>> exports;
    for (ServiceProcess *service : {&first, &second, &third}) {
        const QString path = folder.filePath(QString::number(exports.size()));
        QVERIFY2(run(*service, {QStringLiteral("export"), path}) == 0, output.constData());
        exports << contentOf(path);
    }
    QVERIFY2(exports.constFirst().size() > 20, qPrintable(exports.constFirst().keys().join(u' ')));
    QCOMPARE(exports.at(1), exports.at(0));
    QCOMPARE(exports.at(2), exports.at(0));
}

void WorkspaceCopyTest::rehearsesWithoutWriting()
{
    TransferSide from(m_databases, false, BlobKind::Files);
    from.fill(Migrations::latestVersion());
    const QString target = m_databases.fresh(false).file;
    const QStringList arguments{QStringLiteral("copy"),
                                QStringLiteral("--database"),
                                from.database.address().file,
                                QStringLiteral("--files"),
                                from.folder() + QLatin1String("/files"),
                                QStringLiteral("--to"),
                                target};
    const Ended rehearsed = runProgram(arguments + QStringList{QStringLiteral("--dry-run")});
    QVERIFY2(rehearsed.code == 0 && rehearsed.output.contains("nothing was written"),
             rehearsed.output.constData());
    QVERIFY(!QFileInfo::exists(target));
    QVERIFY(!QFileInfo::exists(target + QLatin1String(".files")));
    const Ended copied = runProgram(arguments);
    QCOMPARE(copied.code, 0);
    const QByteArray sums = rehearsed.output.left(rehearsed.output.indexOf("All of it"));
    QVERIFY(sums.contains("sha256"));
    QVERIFY2(copied.output.startsWith(sums), copied.output.constData());
}

void WorkspaceCopyTest::refusesAWrongCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no target") << QStringList{};
    QTest::newRow("an argument") << QStringList{QStringLiteral("--to"), QStringLiteral("/x/y.db"),
                                                QStringLiteral("more")};
    QTest::newRow("no place") << QStringList{QStringLiteral("--to"), QStringLiteral("/x/y.db"),
                                             QStringLiteral("--to-blobs"), QStringLiteral("cloud")};
}

void WorkspaceCopyTest::refusesAWrongCommandLine()
{
    QFETCH(QStringList, arguments);
    const QString source = m_databases.folder() + QLatin1String("/none.db");
    const Ended ended = runProgram(
        QStringList{QStringLiteral("copy"), QStringLiteral("--database"), source} + arguments);
    QVERIFY2(ended.code == int(ExitUsage), ended.output.constData());
    QVERIFY(!QFileInfo::exists(source));
}

ZEL_TEST_MAIN(WorkspaceCopyTest)
#include "tst_workspacecopy.moc"
