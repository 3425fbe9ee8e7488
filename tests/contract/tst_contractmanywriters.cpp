// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"

#include <QFile>
#include <QMutex>
#include <QScopeGuard>
#include <QSemaphore>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <array>

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

std::unique_ptr<Client> signInAt(const QString &address, const Person &person)
{
    auto client = std::make_unique<Client>();
    if (!authenticate(*client, address, person.user, person.password) ||
        !chooseAccount(*client, QString::number(contractStudio)))
        throw std::runtime_error("nobody may sign in");
    return client;
}

/// The ids of the folders of that name.
QList<qint16> foldersNamed(Client &client, const QString &name)
{
    QList<qint16> ids;
    const auto folders = client.GetAssetFolders(0);
    for (const QXSC::AssetFolderRecordPtr &folder : *folders) {
        if (folder->folderName == name)
            ids << folder->folderId;
    }
    return ids;
}

const Zel::SqlText countStrayAssets(R"sql(
    SELECT COUNT(*) FROM asset a
    WHERE a.account_id = $1 AND a.folder_id <> 0
      AND NOT EXISTS (SELECT f.folder_id FROM asset_folder f
                      WHERE f.account_id = a.account_id AND f.folder_id = a.folder_id)
)sql");

} // namespace

class TestContractManyWriters : public ContractTest
{
    Q_OBJECT

private slots:
    void everyProjectIsMadeOnce();
    void theSameProjectIsMadeOnce();
    void oneOfSeveralOfTheSameGuidIsMade();
    void sessionsOfOnePersonDoNotGetInEachOthersWay();
    void everyFolderGetsANumberOfItsOwn();
    void oneOfEightMakesTheFolderOfOneName();
    void noAssetLandsInAFolderBeingDeleted();
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

/// Also where some of the folders are deleted meanwhile: a number means one folder for good.
void TestContractManyWriters::everyFolderGetsANumberOfItsOwn()
{
    constexpr int each = 8;
    const QStringList addresses{service().address(), replica().address()};
    QMutex mutex;
    QList<qint16> given;
    const QStringList failures = inEightThreads([&](int number) {
        const auto client = signInAt(addresses.at(number % 2), number % 3 == 0 ? nora() : olaf());
        for (int i = 0; i < each; ++i) {
            const qint16 id = client->CreateAssetFolder(0, newGuid());
            if (i % 2 == 0)
                client->DeleteAssetFolder(id);
            const QMutexLocker lock(&mutex);
            given << id;
        }
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
    QCOMPARE(given.size(), writers * each);
    QCOMPARE(QSet<qint16>(given.begin(), given.end()).size(), writers * each);
    QVERIFY(*std::min_element(given.begin(), given.end()) > 0);
}

void TestContractManyWriters::oneOfEightMakesTheFolderOfOneName()
{
    const QStringList addresses{service().address(), replica().address()};
    const auto reader = signIn(nora(), contractStudio);
    for (int round = 0; round < 4; ++round) {
        const QString name = newGuid();
        QMutex mutex;
        QList<qint16> made;
        int conflicts = 0;
        const QStringList failures = inEightThreads([&](int number) {
            const auto client = signInAt(addresses.at(number % 2), olaf());
            qint16 id = 0;
            const QString failure = failureOf(
                [&] { id = client->CreateAssetFolder(0, number % 2 ? name : name.toUpper()); });
            const QMutexLocker lock(&mutex);
            if (failure == QLatin1String("none"))
                made << id;
            conflicts += failure == QLatin1String("Conflict/conflict");
        });
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
        QCOMPARE(made.size(), 1);
        QCOMPARE(conflicts, writers - 1);
        QCOMPARE(foldersNamed(*reader, name) + foldersNamed(*reader, name.toUpper()), made);
    }
}

/// Four uploads end while their folders are being deleted: either the asset is there in its folder
/// or neither of them is.
void TestContractManyWriters::noAssetLandsInAFolderBeingDeleted()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("small.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") == 4);
    file.close();
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    files->add(std::make_shared<QXSC::AssetFileEntry>(QXSC::AssetFileEntry{file.fileName()}));

    const QStringList addresses{service().address(), replica().address()};
    const auto reader = signIn(nora(), contractStudio);
    for (int round = 0; round < 4; ++round) {
        struct Pair
        {
            qint16 folder = 0;
            QString name = newGuid();
            QSemaphore sent;
            QString uploading;
            QString deleting;
        };

        std::array<Pair, writers / 2> pairs;
        for (Pair &pair : pairs)
            pair.folder = reader->CreateAssetFolder(0, pair.name);
        const QStringList failures = inEightThreads([&](int number) {
            Pair &pair = pairs.at(static_cast<std::size_t>(number / 2));
            // Whatever becomes of the upload, its partner does not wait for ever.
            const auto told =
                qScopeGuard([&pair, number] { pair.sent.release(number % 2 == 0 ? 1 : 0); });
            const auto client = signInAt(addresses.at(number % 2), olaf());
            if (number % 2 == 0) {
                QObject::connect(
                    client.get(), &QXSC::ServiceClient::CreateAssetFileProgress, client.get(),
                    [&](qint32 percent) { pair.sent.release(percent == 100 ? 1 : 0); });
                pair.uploading = failureOf([&] {
                    client->CreateAsset(pair.name, QString(), pair.folder, files, QString(),
                                        QString(), nullptr);
                });
            } else {
                pair.sent.acquire();
                pair.deleting = failureOf([&] { client->DeleteAssetFolder(pair.folder); });
            }
        });
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char(10))));
        for (const Pair &pair : pairs) {
            const bool isListed = pair.uploading == QLatin1String("none");
            QCOMPARE(pair.deleting,
                     isListed ? QStringLiteral("Conflict/not-empty") : QStringLiteral("none"));
            QCOMPARE(foldersNamed(*reader, pair.name).size(), isListed ? 1 : 0);
            if (!isListed)
                QCOMPARE(pair.uploading, QStringLiteral("Refused/not-allowed"));
        }
    }
    const auto stray = database().row(countStrayAssets, {contractStudio},
                                      [](const Zel::SqlRow &row) { return row.integer(0); });
    QCOMPARE(stray.value(), 0);
}

ZEL_TEST_MAIN(TestContractManyWriters)
#include "tst_contractmanywriters.moc"
