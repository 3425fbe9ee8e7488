// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/httpserviceclient.h"
#include "studio/embeddedservice.h"
#include "tests/studio/workspacefiles.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using Studio::EmbeddedService;
using Studio::Problem;
using namespace WorkspaceFiles;
using namespace std::chrono_literals;

namespace {

constexpr int Patience = 30000; // milliseconds; a loaded machine takes its time

/// A service and what it has told.
struct Service
{
    Service(const QString &program, const QString &workspace)
        : service(program, workspace)
        , ready(&service, &EmbeddedService::ready)
        , failed(&service, &EmbeddedService::failed)
        , ended(&service, &EmbeddedService::ended)
    {
    }

    explicit Service(const QString &workspace)
        : Service(serviceProgram(), workspace)
    {
    }

    bool start()
    {
        service.start();
        return QTest::qWaitFor([this] { return service.isRunning() || !failed.isEmpty(); },
                               Patience) &&
               service.isRunning();
    }

    Problem problem() const { return failed.constLast().constFirst().value<Problem>(); }

    void kill() { ::kill(static_cast<pid_t>(service.processId()), SIGKILL); }

    /// Whether the end is noticed although no event is handled.
    bool notices()
    {
        bool hasEnded = false;
        for (int i = 0; i < 200 && !hasEnded; ++i)
            hasEnded = service.hasEnded();
        return hasEnded;
    }

    EmbeddedService service;
    QSignalSpy ready;
    QSignalSpy failed;
    QSignalSpy ended;
};

class Observer : public QXSC::WaitObserver
{
public:
    void waiting(std::chrono::milliseconds) noexcept override { ++ticks; }

    void finished() noexcept override { ++ends; }

    int ticks = 0;
    int ends = 0;
};

bool signIn(QXSC::HttpServiceClient &client, const QString &address)
{
    bool success = false;
    client.authenticate(address, QStringLiteral("tomas"), QStringLiteral("sample-tomas"),
                        QStringLiteral("Studio"), {}, false, true, success);
    if (success)
        client.setActiveAccount(QStringLiteral("1001"), success);
    return success;
}

} // namespace

class TestEmbeddedService : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        qRegisterMetaType<Problem>();
        QVERIFY(m_folder.isValid());
        QVERIFY(makeSample(m_folder.filePath(QStringLiteral("sample"))));
    }

    void startsOverAFreshWorkspaceAndMakesItsFolder()
    {
        const QString file = fresh() + QStringLiteral("/not/yet/there/workspace");
        Service f(file);
        QVERIFY(f.service.address().isEmpty());
        QVERIFY(!f.service.hasEnded());
        QVERIFY(f.start());
        QCOMPARE(f.ready.size(), 1);
        QVERIFY(f.failed.isEmpty());
        QVERIFY(f.service.address().startsWith(QLatin1String("http://127.0.0.1:")));
        QVERIFY(isAlive(f.service.processId()));
        QVERIFY(QFile::exists(file));
    }

    void importsTheSampleFirst()
    {
        Service f(fresh() + QStringLiteral("/workspace"));
        f.service.setImports({sampleFolder()});
        QVERIFY(f.start());
        QXSC::HttpServiceClient client;
        QVERIFY(signIn(client, f.service.address()));
        QCOMPARE(client.projectTypes().size(), 2);
    }

    void startingTwiceDoesNothing()
    {
        Service f(sample());
        f.service.start();
        QVERIFY(f.start());
        const qint64 process = f.service.processId();
        f.service.start();
        QVERIFY(f.service.ensureRunning());
        QCOMPARE(f.service.processId(), process);
        QCOMPARE(f.ready.size(), 1);
    }

    void refusesABadWorkspaceAndLeavesItAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("imports");
        const QByteArray good = contentOf(m_folder.filePath(QStringLiteral("sample")));
        QVERIFY(good.size() > 20000);
        QByteArray damaged = good;
        damaged.replace(4096, 12000, QByteArray(12000, '\x5a'));
        for (const bool imports : {false, true}) {
            const char *how = imports ? "import" : "serve";
            QTest::addRow("no database, %s", how) << QByteArray(5000, 'x') << imports;
            QTest::addRow("header alone, %s", how) << good.left(100) << imports;
            QTest::addRow("pages overwritten, %s", how) << damaged << imports;
        }
    }

    void refusesABadWorkspaceAndLeavesItAlone()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const bool, imports);
        const QString file = fresh() + QStringLiteral("/workspace");
        QVERIFY(write(file, content));
        Service f(file);
        if (imports)
            f.service.setImports({sampleFolder()});
        QVERIFY(!f.start());
        QCOMPARE(f.problem().what,
                 QStringLiteral("The workspace file is damaged or is no workspace."));
        QVERIFY(f.problem().advice.contains(QLatin1String("The file was left as it is.")));
        QVERIFY(f.problem().details.contains(file));
        QVERIFY(f.problem().details.contains(QLatin1String("exit code 4")));
        QCOMPARE(contentOf(file), content);
        QVERIFY(!f.service.hasEnded()); // it never ran
    }

    void refusesAnotherProgramsDatabase()
    {
        const QString file = fresh() + QStringLiteral("/workspace");
        QVERIFY(runSql(file, {QStringLiteral("CREATE TABLE songs (title TEXT)"),
                              QStringLiteral("PRAGMA application_id = 12345")}));
        const QByteArray content = contentOf(file);
        Service f(file);
        QVERIFY(!f.start());
        QCOMPARE(f.problem().what,
                 QStringLiteral("The workspace file is damaged or is no workspace."));
        QCOMPARE(contentOf(file), content);
    }

    void refusesANewerWorkspaceAndLeavesItAlone()
    {
        const QString file = fresh() + QStringLiteral("/workspace");
        QVERIFY(makeNewer(file));
        const QByteArray content = contentOf(file);
        for (const bool imports : {false, true}) {
            Service f(file);
            if (imports)
                f.service.setImports({sampleFolder()});
            QVERIFY(!f.start());
            QCOMPARE(f.problem().what,
                     QStringLiteral("The workspace was made by a newer version of this program."));
            QVERIFY(f.problem().advice.endsWith(QLatin1String("Nothing was changed.")));
            QVERIFY(!f.problem().canRetry);
            QCOMPARE(contentOf(file), content);
        }
    }

    void tellsOfAProgramThatCannotBeStarted_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("missing") << fresh() + QStringLiteral("/zel-service");
        const QString plain = fresh() + QStringLiteral("/zel-service");
        write(plain, "no program");
        QTest::newRow("not executable") << plain;
    }

    void tellsOfAProgramThatCannotBeStarted()
    {
        QFETCH(const QString, program);
        Service f(program, sample());
        QVERIFY(!f.start());
        QCOMPARE(f.failed.size(), 1);
        QCOMPARE(f.problem().what,
                 QStringLiteral("The program of the service could not be started."));
        QVERIFY(f.problem().details.contains(program));
        QVERIFY(f.problem().canRetry);
        QVERIFY(!f.service.ensureRunning());
        QCOMPARE(f.failed.size(), 2);
    }

    void tellsOfAProgramThatGivesUp()
    {
        const QString program = makeScript(fresh() + QStringLiteral("/zel-service"),
                                           "echo 'The disk is full.' >&2\nexit 1\n");
        Service f(program, sample());
        QVERIFY(!f.start());
        QCOMPARE(f.problem().what,
                 QStringLiteral("The service on this computer could not be started."));
        QVERIFY(f.problem().details.contains(QLatin1String("exit code 1")));
        QVERIFY(f.problem().details.contains(QLatin1String("The disk is full.")));
        QVERIFY(f.problem().canRetry);
    }

    void doesNotTakeASignalForAnExitCode()
    {
        const QString program =
            makeScript(fresh() + QStringLiteral("/zel-service"), "kill -ILL $$\n"); // number 4
        Service f(program, sample());
        QVERIFY(!f.start());
        QCOMPARE(f.problem().what,
                 QStringLiteral("The service on this computer could not be started."));
        QVERIFY(f.problem().details.contains(QLatin1String("exit code 132")));
    }

    void givesUpOnAProgramThatSaysNothing()
    {
        const QString program =
            makeScript(fresh() + QStringLiteral("/zel-service"), "exec sleep 300\n");
        Service f(program, sample());
        f.service.setStartLimit(300ms);
        QVERIFY(!f.start());
        QCOMPARE(f.problem().what,
                 QStringLiteral("The service on this computer did not come up in time."));
        QVERIFY(f.problem().canRetry);
        QVERIFY(!f.service.ensureRunning());
        QCOMPARE(f.failed.size(), 2);
        QCOMPARE(f.service.processId(), 0);
    }

    void tellsOfAFolderThatCannotBeMade()
    {
        const QString blocked = fresh() + QStringLiteral("/blocked");
        QVERIFY(write(blocked, "a file"));
        Service f(blocked + QStringLiteral("/workspace"));
        QVERIFY(!f.start());
        QVERIFY(!f.problem().what.isEmpty());
        QVERIFY(f.problem().details.contains(blocked));
        QCOMPARE(contentOf(blocked), QByteArray("a file"));
    }

    void tellsThatItHasEnded()
    {
        Service f(sample());
        QVERIFY(f.start());
        QVERIFY(!f.service.hasEnded());
        f.kill();
        QVERIFY(f.notices());
        QCOMPARE(f.ended.size(), 1);
        QVERIFY(!f.service.isRunning());
        QVERIFY(f.service.address().isEmpty());
        QVERIFY(f.service.logTail().contains(QLatin1String("event=started")));
        QVERIFY(f.failed.isEmpty());
    }

    void comesBackOnTheSamePortWithItsSessions()
    {
        Service f(sample());
        QVERIFY(f.start());
        const QString address = f.service.address();
        QXSC::HttpServiceClient client;
        client.setDefaultServer(address);
        QVERIFY(signIn(client, QString()));
        f.kill();
        QVERIFY(f.notices());
        QVERIFY(f.service.ensureRunning());
        QCOMPARE(f.service.address(), address);
        QCOMPARE(f.ready.size(), 2);
        client.setDefaultServer(f.service.address());
        QCOMPARE(client.projectTypes().size(), 2);
    }

    void comesBackOnAnotherPortWhenItsOwnIsTaken()
    {
        Service f(sample());
        QVERIFY(f.start());
        const QString address = f.service.address();
        QXSC::HttpServiceClient client;
        client.setDefaultServer(address);
        QVERIFY(signIn(client, QString()));
        f.kill();
        QVERIFY(f.notices());
        QTcpServer squatter;
        QVERIFY(
            squatter.listen(QHostAddress::LocalHost, static_cast<quint16>(QUrl(address).port())));
        QVERIFY(f.service.ensureRunning());
        QVERIFY(f.failed.isEmpty());
        QVERIFY(f.service.address() != address);
        // The token is not for whoever listens at the old address.
        client.setDefaultServer(f.service.address());
        QVERIFY(!client.isSignedIn());
        QVERIFY(signIn(client, QString()));
        QVERIFY(!squatter.hasPendingConnections());
    }

    void tellsWhyItDoesNotComeBack()
    {
        const QString file = sample();
        Service f(file);
        QVERIFY(f.start());
        f.kill();
        QVERIFY(f.notices());
        for (const char *suffix : {"", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
        QVERIFY(write(file, QByteArray(5000, 'x')));
        QVERIFY(!f.service.ensureRunning());
        QCOMPARE(f.failed.size(), 1);
        QCOMPARE(f.problem().what,
                 QStringLiteral("The workspace file is damaged or is no workspace."));
        QVERIFY(f.service.hasEnded());
    }

    void bringsAServiceUpThatNeverStarted()
    {
        Service f(fresh() + QStringLiteral("/made/here/workspace"));
        f.service.setImports({sampleFolder()});
        QVERIFY(f.service.ensureRunning());
        QXSC::HttpServiceClient client;
        QVERIFY(signIn(client, f.service.address()));
    }

    void showsThatItIsWaiting()
    {
        const QString slow =
            makeScript(fresh() + QStringLiteral("/zel-service"),
                       "sleep 1\nexec " + QFile::encodeName(serviceProgram()) + " \"$@\"\n");
        Service f(slow, sample());
        Observer observer;
        QVERIFY(f.service.ensureRunning(&observer));
        QVERIFY(observer.ticks > 2);
        QCOMPARE(observer.ends, 1);
        QVERIFY(f.service.ensureRunning(&observer));
        QCOMPARE(observer.ends, 1); // nothing to wait for
    }

    void endsWithItsOwner()
    {
        auto f = std::make_unique<Service>(sample());
        QVERIFY(f->start());
        const qint64 process = f->service.processId();
        QVERIFY(isAlive(process));
        f.reset();
        QVERIFY(!isAlive(process));
    }

    void letsTheServiceFinishInOrder()
    {
        const QString end = fresh() + QStringLiteral("/end");
        const QString program =
            makeScript(fresh() + QStringLiteral("/zel-service"),
                       QFile::encodeName(serviceProgram()) + " \"$@\"\necho $? > " +
                           QFile::encodeName(end) + "\n");
        auto f = std::make_unique<Service>(program, sample());
        QVERIFY(f->start());
        f.reset();
        QCOMPARE(contentOf(end), QByteArray("0\n")); // nobody had to be killed
    }

    void endsWithAnOwnerThatIsKilled()
    {
        QProcess parent;
        parent.start(QStringLiteral(ZEL_SERVICE_PARENT), {serviceProgram(), sample()});
        QVERIFY(QTest::qWaitFor([&] { return parent.canReadLine(); }, Patience));
        const qint64 process = parent.readLine().trimmed().toLongLong();
        QVERIFY(isAlive(process));
        ::kill(static_cast<pid_t>(parent.processId()), SIGKILL);
        QVERIFY(parent.waitForFinished());
        QTRY_VERIFY_WITH_TIMEOUT(!isAlive(process), Patience);
    }

private:
    /// A folder of its own.
    QString fresh()
    {
        const QString path = m_folder.filePath(QString::number(++m_count));
        QDir().mkpath(path);
        return path;
    }

    /// A workspace of its own with the sample content.
    QString sample()
    {
        const QString file = fresh() + QStringLiteral("/workspace");
        QFile::copy(m_folder.filePath(QStringLiteral("sample")), file);
        return file;
    }

    QTemporaryDir m_folder;
    int m_count = 0;
};

ZEL_TEST_MAIN(TestEmbeddedService)
#include "tst_embeddedservice.moc"
