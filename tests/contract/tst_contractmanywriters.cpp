// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"

#include <QMutex>
#include <QSet>
#include <QTest>
#include <QThread>

using namespace ZelTest;

namespace {

const QString session = QStringLiteral("session");
constexpr int writers = 8;

/// Runs `work(number)` in eight threads at once and returns what went wrong in them.
QStringList inEightThreads(const std::function<void(int)> &work)
{
    QMutex mutex;
    QStringList failures;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int number = 0; number < writers; ++number) {
        threads.emplace_back(QThread::create([&, number] {
            try {
                work(number);
            } catch (const std::exception &error) {
                const QMutexLocker lock(&mutex);
                failures << QString::fromUtf8(error.what());
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        thread->wait();
    return failures;
}

} // namespace

class TestContractManyWriters : public ContractTest
{
    Q_OBJECT

private slots:
    void everyProjectIsMadeOnce();
    void theSameProjectIsMadeOnce();
    void oneOfSeveralOfTheSameGuidIsMade();
    void sessionsOfOnePersonDoNotGetInEachOthersWay();
};

void TestContractManyWriters::everyProjectIsMadeOnce()
{
    const auto reader = signIn(nora(), contractStudio);
    const qsizetype before = projectsOf(*reader, session)->count();
    constexpr int each = 12;
    QMutex mutex;
    QSet<QString> made;
    const QStringList failures = inEightThreads([&](int number) {
        const auto client = signIn(number % 2 == 0 ? nora() : olaf(), contractStudio);
        for (int i = 0; i < each; ++i) {
            const auto project = client->createProject(newProject());
            // What is acknowledged is there for everybody.
            const auto found = withGuid(projectsOf(*client, session), project->guid);
            if (found.size() != 1 || textOf(*found.first()) != textOf(*project))
                throw std::runtime_error("an acknowledged project is not in the list");
            const QMutexLocker lock(&mutex);
            made.insert(project->guid);
        }
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
    QCOMPARE(made.size(), writers * each);
    const auto projects = projectsOf(*reader, session);
    QCOMPARE(projects->count(), before + writers * each);
    for (const QString &guid : made)
        QCOMPARE(withGuid(projects, guid).size(), 1);
}

void TestContractManyWriters::theSameProjectIsMadeOnce()
{
    const auto reader = signIn(nora(), contractStudio);
    for (int round = 0; round < 5; ++round) {
        const qsizetype before = projectsOf(*reader, session)->count();
        const QXSC::NewProject project = newProject();
        QMutex mutex;
        QSet<QString> answers;
        const QStringList failures = inEightThreads([&](int) {
            const auto client = signIn(nora(), contractStudio);
            const auto answer = client->createProject(project);
            const QMutexLocker lock(&mutex);
            answers.insert(textOf(*answer));
        });
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
        QCOMPARE(answers.size(), 1); // to the millisecond of its making
        QCOMPARE(projectsOf(*reader, session)->count(), before + 1);
    }
}

void TestContractManyWriters::oneOfSeveralOfTheSameGuidIsMade()
{
    const auto reader = signIn(nora(), contractStudio);
    const QString guid = newGuid();
    QMutex mutex;
    QStringList winners;
    int conflicts = 0;
    const QStringList failures = inEightThreads([&](int number) {
        const auto client = signIn(nora(), contractStudio);
        QXSC::NewProject project = newProject(QStringLiteral("Number %1").arg(number));
        project.guid = guid;
        const QString failure = failureOf([&] { client->createProject(project); });
        const QMutexLocker lock(&mutex);
        if (failure == QLatin1String("none"))
            winners << project.name;
        conflicts += failure == QLatin1String("Conflict/conflict");
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
    QCOMPARE(winners.size(), 1);
    QCOMPARE(conflicts, writers - 1);
    const auto found = withGuid(projectsOf(*reader, session), guid);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first()->name, winners.first());
}

void TestContractManyWriters::sessionsOfOnePersonDoNotGetInEachOthersWay()
{
    const QStringList failures = inEightThreads([&](int number) {
        const qint64 account = number % 2 == 0 ? contractStudio : quietRoom;
        for (int i = 0; i < 5; ++i) {
            const auto client = signIn(nora(), account);
            if (client->projectTypes().size() != (account == contractStudio ? 1 : 4))
                throw std::runtime_error("these are another account's types");
            client->signOut();
            if (failureOf([&] { accountsOf(*client); }) != QLatin1String("SignedOut"))
                throw std::runtime_error("the session goes on");
        }
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
}

ZEL_TEST_MAIN(TestContractManyWriters)
#include "tst_contractmanywriters.moc"
