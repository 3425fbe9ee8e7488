// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/serviceproxy.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace ZelTest;

namespace {

const QString session = QStringLiteral("session");
constexpr int writers = 4;
constexpr int rounds = 5;
constexpr int projectsOfRound = 10;

/// Signs in, then makes projects in rounds, each project for as long as it takes until the service
/// says that it is made, and notes which ones it said that of.
class Writer
{
public:
    explicit Writer(const QString &address)
    {
        m_thread.reset(QThread::create([this, address] { work(address); }));
        m_thread->start();
        m_signedIn.acquire();
    }

    ~Writer()
    {
        m_begun.release(rounds);
        wait();
    }

    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;

    void beginRound() { m_begun.release(); }

    void wait() { m_thread->wait(); }

    int acknowledged() const { return m_acknowledged; }

    // After `wait`:
    QStringList guids;
    QStringList faults;
    int repeated = 0;

private:
    void work(const QString &address)
    {
        try {
            Client client;
            authenticate(client, address, nora().user, nora().password);
            chooseAccount(client, QString::number(contractStudio));
            m_signedIn.release();
            for (int i = 0; i < rounds * projectsOfRound; ++i) {
                if (i % projectsOfRound == 0)
                    m_begun.acquire();
                make(client);
            }
        } catch (const std::exception &error) {
            faults << QString::fromUtf8(error.what());
            m_signedIn.release();
        }
    }

    void make(Client &client)
    {
        const QXSC::NewProject project = newProject();
        constexpr qint64 longestMs = 60'000;
        QElapsedTimer timer;
        timer.start();
        while (true) {
            try {
                client.createProject(project);
                guids << project.guid;
                ++m_acknowledged;
                return;
            } catch (const QXSC::ServiceError &error) {
                if (!error.isTransient() || error.kind() == QXSC::ServiceError::Kind::BadAnswer ||
                    timer.hasExpired(longestMs))
                    throw;
                ++repeated;
                QThread::msleep(10);
            }
        }
    }

    QSemaphore m_signedIn;
    QSemaphore m_begun;
    std::unique_ptr<QThread> m_thread;
    std::atomic_int m_acknowledged = 0;
};

using Writers = std::vector<std::unique_ptr<Writer>>;

int acknowledged(const Writers &all)
{
    int sum = 0;
    for (const auto &writer : all)
        sum += writer->acknowledged();
    return sum;
}

} // namespace

class TestContractReplicas : public ContractTest
{
    Q_OBJECT

private slots:
    void anotherServiceOfTheDatabaseTakesTheSession();
    void theAccountChosenHereIsChosenThere();
    void whatOneServiceStoresTheOtherAnswers();
    void signingOutHereIsSigningOutThere();
    void guessesAreCountedTogether();
    void theSameProjectIsMadeOnceByBoth();
    void losesNothingWhenItIsStoppedAgainAndAgain();
    void losesNothingWhenItIsKilledAgainAndAgain();

private:
    /// Writes while `interrupt` ends the service a few times, then looks for what was acknowledged.
    void interruptWriters(const std::function<void()> &interrupt);
};

void TestContractReplicas::anotherServiceOfTheDatabaseTakesTheSession()
{
    ServiceProxy door(service().port());
    Client client;
    QVERIFY(authenticate(client, door.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    const auto made = client.createProject(newProject());
    for (const quint16 port : {replica().port(), service().port(), replica().port()}) {
        door.forwardTo(port);
        const auto found = withGuid(projectsOf(client, session), made->guid);
        QCOMPARE(found.size(), 1);
        QCOMPARE(textOf(*found.first()), textOf(*made));
    }
    QCOMPARE(service().stop(), 0);
    QVERIFY(client.createProject(newProject())); // the other one is enough
}

void TestContractReplicas::theAccountChosenHereIsChosenThere()
{
    ServiceProxy door(service().port());
    Client client;
    QVERIFY(authenticate(client, door.address(), nora().user, nora().password));
    door.forwardTo(replica().port());
    QVERIFY(chooseAccount(client, QString::number(quietRoom)));
    door.forwardTo(service().port());
    QCOMPARE(client.projectTypes().size(), 4);
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    door.forwardTo(replica().port());
    QCOMPARE(client.projectTypes().size(), 1);
}

void TestContractReplicas::whatOneServiceStoresTheOtherAnswers()
{
    const auto here = signIn(nora(), contractStudio);
    Client there;
    QVERIFY(authenticate(there, replica().address(), olaf().user, olaf().password));
    QVERIFY(chooseAccount(there, QString::number(contractStudio)));
    for (int round = 0; round < 5; ++round) {
        const auto byNora = here->createProject(newProject());
        QCOMPARE(withGuid(projectsOf(there, session), byNora->guid).size(), 1);
        const auto byOlaf = there.createProject(newProject());
        QCOMPARE(withGuid(projectsOf(*here, session), byOlaf->guid).size(), 1);
    }
}

void TestContractReplicas::signingOutHereIsSigningOutThere()
{
    ServiceProxy door(service().port());
    Client client;
    const QString program = newGuid();
    QVERIFY(authenticate(client, door.address(), nora().user, nora().password, program));
    door.forwardTo(replica().port());
    QVERIFY(accountsOf(client));
    static const Zel::SqlText count(R"sql(
        SELECT COUNT(*) FROM session WHERE app_name = $1
    )sql");
    const auto sessions = [&] {
        return database()
            .row(count, {program}, [](const Zel::SqlRow &row) { return row.integer(0); })
            .value();
    };
    QCOMPARE(sessions(), 1);
    client.signOut();
    QCOMPARE(sessions(), 0);
}

void TestContractReplicas::guessesAreCountedTogether()
{
    const QStringList addresses{service().address(), replica().address()};
    const QString user = QStringLiteral("someone else");
    QString failure = QStringLiteral("none");
    int guesses = 0;
    for (; failure == QLatin1String("none") && guesses < 25; ++guesses) {
        Client client;
        failure = failureOf([&] {
            authenticate(client, addresses.at(guesses % 2), user, QStringLiteral("guess"));
        });
    }
    QCOMPARE(failure, QStringLiteral("TooManyAttempts/too-many-attempts"));
    static const Zel::SqlText block(R"sql(
        UPDATE sign_in_attempt SET blocked_until = blocked_until + 3600000
    )sql");
    database().tx([&] { database().exec(block); });
    for (const QString &address : addresses) {
        Client client;
        QCOMPARE(failureOf([&] { authenticate(client, address, user, QStringLiteral("guess")); }),
                 QStringLiteral("TooManyAttempts/too-many-attempts"));
    }
}

void TestContractReplicas::theSameProjectIsMadeOnceByBoth()
{
    const auto reader = signIn(nora(), contractStudio);
    const QStringList addresses{service().address(), replica().address()};
    for (int round = 0; round < 5; ++round) {
        const QXSC::NewProject project = newProject();
        QMutex mutex;
        QStringList answers;
        std::vector<std::unique_ptr<QThread>> threads;
        for (const QString &address : addresses) {
            threads.emplace_back(QThread::create([&, address] {
                Client client;
                QString answer;
                const QString failure = failureOf([&] {
                    authenticate(client, address, nora().user, nora().password);
                    chooseAccount(client, QString::number(contractStudio));
                    answer = textOf(*client.createProject(project));
                });
                const QMutexLocker lock(&mutex);
                answers << (failure == QLatin1String("none") ? answer : failure);
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            thread->wait();
        const auto found = withGuid(projectsOf(*reader, session), project.guid);
        QCOMPARE(found.size(), 1);
        QCOMPARE(answers, (QStringList{textOf(*found.first()), textOf(*found.first())}));
    }
}

void TestContractReplicas::interruptWriters(const std::function<void()> &interrupt)
{
    const auto reader = signIn(nora(), contractStudio);
    const qsizetype before = projectsOf(*reader, session)->count();
    Writers all;
    for (int i = 0; i < writers; ++i)
        all.push_back(std::make_unique<Writer>(service().address()));
    for (int round = 0; round < rounds; ++round) {
        const int done = round * writers * projectsOfRound;
        QVERIFY(QTest::qWaitFor([&] { return acknowledged(all) == done; }, 60'000));
        for (const auto &writer : all)
            writer->beginRound();
        QVERIFY(QTest::qWaitFor([&] { return acknowledged(all) > done; }, 60'000));
        interrupt(); // with a call of each writer on its way, or nearly so
        QVERIFY2(service().startAgain(), qPrintable(service().error()));
    }
    QStringList guids;
    int repeated = 0;
    for (const auto &writer : all) {
        writer->wait();
        QCOMPARE(writer->faults, QStringList());
        guids += writer->guids;
        repeated += writer->repeated;
    }
    QCOMPARE(guids.size(), writers * rounds * projectsOfRound);
    QVERIFY(repeated > 0); // else no call was interrupted
    const auto projects = projectsOf(*reader, session);
    for (const QString &guid : guids)
        QCOMPARE(withGuid(projects, guid).size(), 1);
    QCOMPARE(projects->count(), before + writers * rounds * projectsOfRound); // and not one more
}

void TestContractReplicas::losesNothingWhenItIsStoppedAgainAndAgain()
{
    interruptWriters([this] { QCOMPARE(service().stop(), 0); });
}

void TestContractReplicas::losesNothingWhenItIsKilledAgainAndAgain()
{
    interruptWriters([this] { service().kill(); });
}

ZEL_TEST_MAIN(TestContractReplicas)
#include "tst_contractreplicas.moc"
