// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/waitobserver.h"
#include "tests/contract/contracttest.h"
#include "tests/contract/databaseoutage.h"
#include "tests/contract/everycall.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/serviceproxy.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QMutex>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace ZelTest;
using namespace std::chrono_literals;

namespace {

const QString session = QStringLiteral("session");

/// Stops the service where it stands, until it is let go on or killed.
class Pause
{
public:
    explicit Pause(const ServiceUnderTest &service)
        : m_ids(service.processIds())
    {
        for (const qint64 id : m_ids) {
            ::kill(static_cast<pid_t>(id), SIGSTOP);
            siginfo_t state{};
            ::waitid(P_PID, static_cast<id_t>(id), &state, WSTOPPED); // all its threads
        }
    }

    ~Pause() { end(); }

    Pause(const Pause &) = delete;
    Pause &operator=(const Pause &) = delete;

    void end()
    {
        for (const qint64 id : m_ids)
            ::kill(static_cast<pid_t>(id), SIGCONT);
    }

private:
    QList<qint64> m_ids;
};

/// Does something once, in the middle of a call that takes its time.
class MidCall : public QXSC::WaitObserver
{
public:
    MidCall(Client &client, std::function<void()> action)
        : m_client(client)
        , m_action(std::move(action))
    {
        m_client.setWaitObserver(this);
    }

    ~MidCall() override { m_client.setWaitObserver(nullptr); }

    bool isDone() const { return !m_action; }

    void waiting(std::chrono::milliseconds) noexcept override
    {
        if (const auto action = std::exchange(m_action, nullptr))
            action();
    }

    void finished() noexcept override {}

private:
    Client &m_client;
    std::function<void()> m_action;
};

/// Does something for as long as it takes until it is done; what is no passing failure is thrown.
template <typename Action>
void stubbornly(const Action &action)
{
    const QDeadlineTimer deadline(60'000);
    while (true) {
        try {
            action();
            return;
        } catch (const QXSC::ServiceError &error) {
            if (!error.isTransient() || error.kind() == QXSC::ServiceError::Kind::BadAnswer ||
                deadline.hasExpired())
                throw;
        }
    }
}

} // namespace

class TestContractFailures : public ContractTest
{
    Q_OBJECT

private slots:
    void init();

    void aServiceThatIsGoneIsUnreachableInEveryCall();
    void theSessionGoesOnAfterTheServiceStartedAgain();
    void aServiceKilledInTheMiddleLosesTheConnection();

    void aServiceThatDoesNotAnswerTimesOut_data() { addEveryCall(); }

    void aServiceThatDoesNotAnswerTimesOut();
    void anAnswerThatIsLostCanBeAskedForAgain();
    void aRequestThatIsLostChangesNothing();

    void everyCallTellsThatItsAnswerWasLost_data() { addEveryCall(); }

    void everyCallTellsThatItsAnswerWasLost();
    void aSignInWhoseAnswerIsLostCanBeRepeated();
    void signingOutOfAServiceThatIsGoneIsQuiet();
    void aDatabaseThatIsAwayMakesTheServiceUnavailable();
    void aServiceThatIsStoppedFinishesTheCallInFlight();
    void aServiceWhoseLogNobodyReadsGoesOn();
    void connectionsCutUnderTheServiceLoseNothing();

private:
    /// Whether a call waits for a hold; told by PostgreSQL alone.
    bool isHeldBack();
    /// Ends all connections to PostgreSQL, or takes the file of SQLite away for a moment. Returns
    /// how many there were.
    int interruptTheDatabase();

    std::unique_ptr<Client> m_client;
};

void TestContractFailures::init()
{
    ContractTest::init();
    m_client = signIn(nora(), contractStudio);
}

void TestContractFailures::aServiceThatIsGoneIsUnreachableInEveryCall()
{
    QCOMPARE(service().stop(), 0);
    QStringList others;
    for (const NamedCall &one : everyCall()) {
        const QString failure = failureOf([&] { one.call(*m_client); });
        if (failure != QLatin1String("Unreachable"))
            others << QLatin1String(one.name) + QLatin1String(": ") + failure;
    }
    QCOMPARE(others, QStringList());
    QVERIFY(m_client->isSignedIn());
    Client other;
    QCOMPARE(
        failureOf([&] { authenticate(other, service().address(), nora().user, nora().password); }),
        QStringLiteral("Unreachable"));
}

void TestContractFailures::theSessionGoesOnAfterTheServiceStartedAgain()
{
    const quint16 port = service().port();
    QCOMPARE(service().stop(), 0);
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QCOMPARE(service().port(), port);
    QCOMPARE(projectsOf(*m_client, session)->item(1)->createdBy,
             QStringLiteral("Nora \"Quote\" O'Brien"));
    service().kill();
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QVERIFY(m_client->createProject(newProject()));
}

void TestContractFailures::aServiceKilledInTheMiddleLosesTheConnection()
{
    const QXSC::NewProject project = newProject();
    Pause pause(service());
    MidCall midCall(*m_client, [this] { service().kill(); });
    QCOMPARE(failureOf([&] { m_client->createProject(project); }),
             QStringLiteral("ConnectionLost"));
    QVERIFY(midCall.isDone());
    QVERIFY(m_client->isSignedIn());
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QVERIFY(withGuid(projectsOf(*m_client, session), project.guid).isEmpty());
    m_client->createProject(project);
    QCOMPARE(withGuid(projectsOf(*m_client, session), project.guid).size(), 1);
}

void TestContractFailures::aServiceThatDoesNotAnswerTimesOut()
{
    QFETCH(Call, call);
    QXSC::NetworkPolicy impatient = Client::policy();
    impatient.inactivityLimit = 50ms;
    {
        const Pause pause(service());
        m_client->setNetworkPolicy(impatient);
        QCOMPARE(failureOf([&] { call(*m_client); }), QStringLiteral("TimedOut"));
    }
    m_client->setNetworkPolicy(Client::policy());
    QVERIFY(m_client->isSignedIn());
    QTEST(failureOf([&] { call(*m_client); }), "ending");
}

void TestContractFailures::anAnswerThatIsLostCanBeAskedForAgain()
{
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const QXSC::NewProject project = newProject();

    proxy.setFate(ServiceProxy::Fate::LoseAnswer);
    const int before = proxy.requests();
    QCOMPARE(failureOf([&] { client.createProject(project); }), QStringLiteral("ConnectionLost"));
    QCOMPARE(proxy.requests(), before + 2); // sent once more, as the guid tells it is the same
    const auto made = withGuid(projectsOf(*m_client, session), project.guid);
    QCOMPARE(made.size(), 1); // the service had done it

    proxy.setFate(ServiceProxy::Fate::PassOn);
    QCOMPARE(textOf(*client.createProject(project)), textOf(*made.first()));
    QCOMPARE(withGuid(projectsOf(*m_client, session), project.guid).size(), 1);
}

void TestContractFailures::aRequestThatIsLostChangesNothing()
{
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const QXSC::NewProject project = newProject();
    proxy.setFate(ServiceProxy::Fate::LoseRequest);
    QCOMPARE(failureOf([&] { client.createProject(project); }), QStringLiteral("ConnectionLost"));
    QVERIFY(withGuid(projectsOf(*m_client, session), project.guid).isEmpty());
    proxy.setFate(ServiceProxy::Fate::PassOn);
    QVERIFY(client.createProject(project));
}

void TestContractFailures::everyCallTellsThatItsAnswerWasLost()
{
    QFETCH(Call, call);
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    for (const auto fate : {ServiceProxy::Fate::LoseAnswer, ServiceProxy::Fate::LoseRequest}) {
        proxy.setFate(fate);
        QCOMPARE(failureOf([&] { call(client); }), QStringLiteral("ConnectionLost"));
        QVERIFY(client.isSignedIn());
    }
    proxy.setFate(ServiceProxy::Fate::PassOn);
    QTEST(failureOf([&] { call(client); }), "ending");
}

void TestContractFailures::aSignInWhoseAnswerIsLostCanBeRepeated()
{
    ServiceProxy proxy(service().port());
    Client client;
    const auto signsIn = [&] {
        return authenticate(client, proxy.address(), nora().user, nora().password);
    };
    for (const auto fate : {ServiceProxy::Fate::LoseAnswer, ServiceProxy::Fate::LoseRequest}) {
        proxy.setFate(fate);
        const int before = proxy.requests();
        QCOMPARE(failureOf(signsIn), QStringLiteral("ConnectionLost"));
        QCOMPARE(proxy.requests(), before + 1);
        QVERIFY(!client.isSignedIn());
    }
    proxy.setFate(ServiceProxy::Fate::PassOn);
    QVERIFY(signsIn());
    QCOMPARE(accountsOf(client)->count(), 3);
}

void TestContractFailures::signingOutOfAServiceThatIsGoneIsQuiet()
{
    QCOMPARE(service().stop(), 0);
    QCOMPARE(failureOf([&] { m_client->signOut(); }), QStringLiteral("none"));
    QVERIFY(!m_client->isSignedIn());
}

void TestContractFailures::aDatabaseThatIsAwayMakesTheServiceUnavailable()
{
    const QXSC::NewProject project = newProject();
    DatabaseOutage outage(database(), postgres());
    QCOMPARE(failureOf([&] { m_client->createProject(project); }),
             QStringLiteral("Unavailable/unavailable"));
    QVERIFY(m_client->isSignedIn());
    QVERIFY(outage.end());
    m_client->createProject(project);
    QCOMPARE(withGuid(projectsOf(*m_client, session), project.guid).size(), 1);
}

bool TestContractFailures::isHeldBack()
{
    if (!postgres())
        return true;
    const QDeadlineTimer deadline(20'000);
    while (!deadline.hasExpired()) {
        if (postgres()
                ->run(QStringLiteral("SELECT COUNT(*) FROM pg_locks WHERE NOT granted"))
                .toInt() > 0)
            return true;
        QThread::msleep(20);
    }
    return false;
}

void TestContractFailures::aServiceThatIsStoppedFinishesTheCallInFlight()
{
    const QXSC::NewProject project = newProject();
    WriteHold hold(database());
    bool isHeld = false;
    MidCall midCall(*m_client, [&] {
        isHeld = isHeldBack();
        service().terminate();
        hold.release();
    });
    const auto made = m_client->createProject(project);
    QVERIFY(midCall.isDone());
    QVERIFY(isHeld);
    QCOMPARE(service().waitForEnd(), 0);
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    const auto found = withGuid(projectsOf(*m_client, session), project.guid);
    QCOMPARE(found.size(), 1);
    QCOMPARE(textOf(*found.first()), textOf(*made));
}

void TestContractFailures::aServiceWhoseLogNobodyReadsGoesOn()
{
    QTemporaryDir folder;
    ServiceProcess quiet;
    service().join(quiet);
    quiet.logPath = folder.filePath(QStringLiteral("pipe"));
    const QByteArray path = QFile::encodeName(quiet.logPath);
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    QFile reader;
    QVERIFY(reader.open(::open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC),
                        QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle));
    // Two pages: one alone counts as full from the first line on.
    QVERIFY(::fcntl(reader.handle(), F_SETPIPE_SZ, 8192) > 0);
    QVERIFY2(quiet.startAgain(), qPrintable(quiet.error()));

    constexpr int calls = 150; // more lines than the pipe holds
    Client client;
    QVERIFY(authenticate(client, quiet.address(), nora().user, nora().password));
    for (int call = 0; call < calls; ++call)
        QCOMPARE(accountsOf(client)->count(), 3);
    const QByteArray kept = reader.read(1024 * 1024);
    QVERIFY(kept.startsWith("time=") && kept.endsWith('\n'));
    QVERIFY(kept.count('\n') < calls);
    QVERIFY(accountsOf(client));
    QCOMPARE(quiet.stop(), 0);
    const QByteArray later = reader.read(1024 * 1024);
    QVERIFY2(later.contains(" level=warning lost="), later.constData());
    QVERIFY2(later.contains(" event=stopped "), later.constData());
}

int TestContractFailures::interruptTheDatabase()
{
    if (!postgres()) {
        const WriteHold hold(database());
        return 1;
    }
    return postgres()
        ->run(QStringLiteral("SELECT COUNT(pg_terminate_backend(pid)) FROM pg_stat_activity "
                             "WHERE datname = '%1'")
                  .arg(database().address().database))
        .toInt();
}

void TestContractFailures::connectionsCutUnderTheServiceLoseNothing()
{
    constexpr int writers = 4;
    constexpr int each = 15;
    const qsizetype before = projectsOf(*m_client, session)->count();
    std::atomic_int running = writers;
    QMutex mutex;
    QStringList made;
    QStringList faults;
    const auto write = [&] {
        try {
            Client client;
            stubbornly([&] {
                authenticate(client, service().address(), nora().user, nora().password);
                chooseAccount(client, QString::number(contractStudio));
            });
            for (int i = 0; i < each; ++i) {
                const QXSC::NewProject project = newProject();
                stubbornly([&] { client.createProject(project); });
                const QMutexLocker lock(&mutex);
                made << project.guid;
            }
        } catch (const std::exception &error) {
            const QMutexLocker lock(&mutex);
            faults << QString::fromUtf8(error.what());
        }
        --running;
    };
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < writers; ++i) {
        threads.emplace_back(QThread::create(write));
        threads.back()->start();
    }
    int cut = 0;
    while (running > 0) {
        cut += interruptTheDatabase();
        QThread::msleep(20);
    }
    for (const auto &thread : threads)
        thread->wait();
    QVERIFY(cut > 0);
    QCOMPARE(faults, QStringList());
    QCOMPARE(made.size(), writers * each);
    const auto projects = projectsOf(*m_client, session);
    for (const QString &guid : made)
        QCOMPARE(withGuid(projects, guid).size(), 1);
    QCOMPARE(projects->count(), before + writers * each); // and not one more
}

ZEL_TEST_MAIN(TestContractFailures)
#include "tst_contractfailures.moc"
