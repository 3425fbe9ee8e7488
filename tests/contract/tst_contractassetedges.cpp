// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/waitobserver.h"
#include "service/store/store.h"
#include "tests/contract/contracttest.h"
#include "tests/contract/serviceproxy.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr qint16 root = 0;
constexpr int lastFolder = 32767;

const Zel::SqlText setNextFolder(R"sql(
    INSERT INTO asset_space (account_id, next_folder) VALUES ($1, $2)
    ON CONFLICT (account_id) DO UPDATE SET next_folder = excluded.next_folder
)sql");

const Zel::SqlText fillWithFolders(R"sql(
    INSERT INTO asset_folder (account_id, folder_id, parent_id, name)
    WITH RECURSIVE number (n) AS
        (SELECT CAST(1 AS BIGINT) UNION ALL SELECT n + 1 FROM number WHERE n < 32767)
    SELECT CAST($1 AS BIGINT), n, 0, 'Folder ' || CAST(n AS TEXT) FROM number
    WHERE n NOT IN (SELECT folder_id FROM asset_folder WHERE account_id = $1)
)sql");

const Zel::SqlText dropFolders(R"sql(
    DELETE FROM asset_folder WHERE account_id = $1
)sql");

const Zel::SqlText expire(R"sql(
    UPDATE session SET expires_at = 1 WHERE app_name = $1
)sql");

AssetFileCollectionPtr fileAt(const QString &path)
{
    auto files = std::make_shared<AssetFileCollection>();
    files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path}));
    return files;
}

AssetCollectionPtr assetsOf(Client &client, qint16 folder, const QString &name = QString(),
                            qint32 first = 0, qint32 count = 0)
{
    AssetCollectionPtr assets;
    client.GetFolderAssets(folder, name, QString(), first, count, assets);
    return assets;
}

/// The names of the folders below one, in the order of the answer.
QStringList foldersBelow(Client &client, qint16 folder)
{
    QStringList names;
    const auto folders = client.GetAssetFolders(folder);
    for (const AssetFolderRecordPtr &one : *folders)
        names << one->folderName;
    return names;
}

/// Does something now and then while a call or a pause takes its time.
struct Watcher : WaitObserver
{
    void waiting(std::chrono::milliseconds) noexcept override { action(); }

    void finished() noexcept override {}

    std::function<void()> action;
};

} // namespace

/// Where folders, assets and uploads come to their limits, through the client against the real
/// service.
class ContractAssetEdgesTest : public ContractTest
{
    Q_OBJECT

private slots:
    void theLastFolderNumberIsGivenOutOnceAndThenRefused();
    void listsFoldersByFoldedNameInByteOrder();
    void listsAssetsOfOneNameByGuid();
    void listsNothingPastTheEnd();
    void theSameFolderNumberInTwoAccountsIsTwoFolders();
    void keepsFoldersOfOtherAccountsOutOfReach();
    void assetAddressIsGuardedLikeTheValue();
    void refusesAFileBeyondTheLimitBeforeAByteIsSent();
    void refusesAPersonWithoutTheRightBeforeAByteIsSent();
    void refusesTextsThatCannotBeStored_data();
    void refusesTextsThatCannotBeStored();
    void keepsDescriptionsCodeUnitForCodeUnit_data();
    void keepsDescriptionsCodeUnitForCodeUnit();
    void anUploadWhoseCommitAnswerIsLostIsOneAsset();
    void anUploadWhoseSessionEndsAsksToSignIn();

private:
    QString file(const QString &name, const QByteArray &bytes = QByteArrayLiteral("text"))
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("a file of the test cannot be written");
        return file.fileName();
    }

    QString upload(Client &client, qint16 folder, const QString &name = QStringLiteral("An asset"),
                   const QString &detail = QString())
    {
        return client.CreateAsset(name, detail, folder, fileAt(file(QStringLiteral("a.txt"))),
                                  QString(), QString(), nullptr);
    }

    qint16 newFolder(Client &client, qint16 parent = root)
    {
        return client.CreateAssetFolder(parent, newGuid());
    }

    void setNextNumber(qint64 account, qint64 number)
    {
        database().tx([&] { database().exec(setNextFolder, {account, number}); });
    }

    /// An upload that is refused for `failure` with the one request that asks for it.
    void verifyRefusedAtOnce(const Person &person, const QString &path, const QString &failure);

    QTemporaryDir m_folder;
};

void ContractAssetEdgesTest::theLastFolderNumberIsGivenOutOnceAndThenRefused()
{
    const auto client = signIn(nora(), quietRoom);
    QCOMPARE(newFolder(*client), qint16(1));
    setNextNumber(quietRoom, lastFolder);
    QCOMPARE(newFolder(*client), qint16(lastFolder));
    // From here on the least number that is free, of those that were never given out and of those
    // whose folder is gone.
    QCOMPARE(newFolder(*client), qint16(2));
    client->DeleteAssetFolder(1);
    QCOMPARE(newFolder(*client), qint16(1));

    database().tx([&] { database().exec(fillWithFolders, {quietRoom}); });
    QCOMPARE(failureOf([&] { newFolder(*client); }), QStringLiteral("Conflict/too-many-folders"));
    QCOMPARE(client->GetAssetFolders(0)->count(), lastFolder + 1);
    client->DeleteAssetFolder(lastFolder);
    QCOMPARE(newFolder(*client, 5), qint16(lastFolder));
    QCOMPARE(failureOf([&] { newFolder(*client); }), QStringLiteral("Conflict/too-many-folders"));
    database().tx([&] { database().exec(dropFolders, {quietRoom}); });
    setNextNumber(quietRoom, 1);
}

void ContractAssetEdgesTest::listsFoldersByFoldedNameInByteOrder()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 parent = newFolder(*client);
    const QStringList inOrder{
        QStringLiteral("10"),        QStringLiteral("9"),          QStringLiteral("apple"),
        QStringLiteral("Apple pie"), QStringLiteral("ZEBRA"),      QString::fromUtf8("Äpfel"),
        QStringLiteral("\ufffd"),    QStringLiteral("\U0001F600"), QStringLiteral("\U0001F601")};
    for (qsizetype i = 0; i < inOrder.size(); ++i)
        client->CreateAssetFolder(parent, inOrder.at((i * 4 + 3) % inOrder.size()));
    QCOMPARE(foldersBelow(*client, parent), inOrder);
}

void ContractAssetEdgesTest::listsAssetsOfOneNameByGuid()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    QStringList guids;
    for (const char *name : {"Same", "same", "Same", "SAME", "Same"})
        guids << upload(*client, folder, QString::fromLatin1(name));
    std::sort(guids.begin(), guids.end());
    QStringList listed;
    const auto assets = assetsOf(*client, folder);
    for (const AssetRecordPtr &asset : *assets)
        listed << asset->guid;
    QCOMPARE(listed, guids);
}

void ContractAssetEdgesTest::listsNothingPastTheEnd()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    upload(*client, folder);
    for (const qint32 first : {1, 2, std::numeric_limits<qint32>::max()}) {
        const auto assets = assetsOf(*client, folder, QString(), first, 10);
        QVERIFY(assets); // none is a list, not nothing
        QCOMPARE(assets->count(), 0);
    }
    QCOMPARE(assetsOf(*client, folder, QString(), 0, std::numeric_limits<qint32>::max())->count(),
             1);
}

void ContractAssetEdgesTest::theSameFolderNumberInTwoAccountsIsTwoFolders()
{
    constexpr qint16 number = 20'000;
    const auto here = signIn(nora(), contractStudio);
    const auto there = signIn(nora(), quietRoom);
    setNextNumber(contractStudio, number);
    setNextNumber(quietRoom, number);
    QCOMPARE(here->CreateAssetFolder(root, QStringLiteral("Here")), number);
    QCOMPARE(there->CreateAssetFolder(root, QStringLiteral("There")), number);
    const QString guid = upload(*here, number);
    QCOMPARE(assetsOf(*here, number)->count(), 1);
    QCOMPARE(assetsOf(*there, number)->count(), 0);
    there->CreateAssetFolder(number, QStringLiteral("Below there"));
    QCOMPARE(foldersBelow(*here, number), QStringList());
    QCOMPARE(foldersBelow(*there, number), QStringList(QStringLiteral("Below there")));
    QCOMPARE(failureOf([&] { here->DeleteAssetFolder(number); }),
             QStringLiteral("Conflict/not-empty"));
    there->DeleteAssetFolder(number + 1);
    there->DeleteAssetFolder(number);
    QVERIFY(!there->GetAssetFolders(number));
    QCOMPARE(assetsOf(*here, number)->item(1)->guid, guid);
}

void ContractAssetEdgesTest::keepsFoldersOfOtherAccountsOutOfReach()
{
    setNextNumber(contractStudio, 21'000);
    const auto here = signIn(nora(), contractStudio);
    const auto there = signIn(nora(), quietRoom);
    const qint16 folder = newFolder(*here);
    const QString unknown = QStringLiteral("NotFound/not-found");
    for (const qint16 id : {folder, qint16(32'000)}) {
        QVERIFY(!there->GetAssetFolders(id));
        QCOMPARE(failureOf([&] { newFolder(*there, id); }), unknown);
        QCOMPARE(failureOf([&] { upload(*there, id); }), unknown);
        QCOMPARE(failureOf([&] { there->DeleteAssetFolder(id); }), unknown);
        QCOMPARE(failureOf([&] { assetsOf(*there, id); }), unknown);
    }
    QCOMPARE(here->GetAssetFolders(folder)->count(), 0);
}

void ContractAssetEdgesTest::assetAddressIsGuardedLikeTheValue()
{
    const auto author = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*author);
    const QString guid = upload(*author, folder);
    const auto failures = [&](Client &client, const QString &asset) {
        return QStringList{failureOf([&] { client.assetAddress(asset); }),
                           failureOf([&] { client.GetAssetValue(asset); })};
    };
    const auto both = [](const char *text) {
        return QStringList{QString::fromLatin1(text), QString::fromLatin1(text)};
    };
    QCOMPARE(failures(*author, guid), both("none"));
    QCOMPARE(failures(*author, newGuid()), both("NotFound/not-found"));
    QCOMPARE(failures(*author, QStringLiteral("a/../b")), both("NotFound/not-found"));
    QCOMPARE(failures(*author, QString()), both("NotFound"));
    QCOMPARE(failures(*signIn(nora(), quietRoom), guid), both("NotFound/not-found"));
    const auto olafs = signIn(olaf(), contractStudio);
    QCOMPARE(failures(*olafs, guid), both("none"));
    Zel::Store store(database(), Zel::PasswordHasher::Cost::Minimal);
    const QString id = store.users.find(olaf().user)->userId;
    database().tx(
        [&] { store.folders.setLetters(contractStudio, folder, id, QStringLiteral("WD")); });
    QCOMPARE(failures(*olafs, guid), both("Refused/not-allowed"));
}

void ContractAssetEdgesTest::verifyRefusedAtOnce(const Person &person, const QString &path,
                                                 const QString &failure)
{
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), person.user, person.password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    QSignalSpy progress(&client, &ServiceClient::CreateAssetFileProgress);
    const int before = proxy.requests();
    QCOMPARE(failureOf([&] {
                 client.CreateAsset(QStringLiteral("x"), QString(), root, fileAt(path), QString(),
                                    QString(), nullptr);
             }),
             failure);
    QCOMPARE(proxy.requests(), before + 1);
    QCOMPARE(progress.count(), 0);
}

void ContractAssetEdgesTest::refusesAFileBeyondTheLimitBeforeAByteIsSent()
{
    const QString path = file(QStringLiteral("huge.bin"));
    QVERIFY(QFile::resize(path, Zel::Uploads::largestBytes + 1)); // takes no room
    verifyRefusedAtOnce(nora(), path, QStringLiteral("Invalid/too-large"));
}

void ContractAssetEdgesTest::refusesAPersonWithoutTheRightBeforeAByteIsSent()
{
    const QString path = file(QStringLiteral("large.bin"), QByteArray(2'000'000, 'x'));
    verifyRefusedAtOnce(vera(), path, QStringLiteral("Refused/not-allowed"));
}

void ContractAssetEdgesTest::refusesTextsThatCannotBeStored_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("NUL") << QStringLiteral("a\0b");
    QTest::newRow("NUL alone") << QString(QChar(0));
    QTest::newRow("high surrogate alone") << QStringLiteral("a") + QChar(0xd800);
    QTest::newRow("low surrogate first") << QChar(0xdc00) + QStringLiteral("a");
    QTest::newRow("surrogates in the wrong order")
        << QString(QChar(0xdc00)) + QString(QChar(0xd800));
    QTest::newRow("no character") << QStringLiteral("a\uffff");
    QTest::newRow("a turned byte order mark") << QString(QChar(0xfffe));
}

void ContractAssetEdgesTest::refusesTextsThatCannotBeStored()
{
    QFETCH(QString, text);
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString refused = QStringLiteral("Invalid/invalid-text");
    QCOMPARE(failureOf([&] { upload(*client, folder, text); }), refused);
    QCOMPARE(failureOf([&] { upload(*client, folder, QStringLiteral("x"), text); }), refused);
    const QString asFolder = failureOf([&] { client->CreateAssetFolder(folder, text); });
    QVERIFY2(asFolder.startsWith(QLatin1String("Invalid/invalid")), qPrintable(asFolder));
    QCOMPARE(failureOf([&] { assetsOf(*client, folder, text); }), refused);
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
    QCOMPARE(foldersBelow(*client, folder), QStringList());
}

void ContractAssetEdgesTest::keepsDescriptionsCodeUnitForCodeUnit_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << QStringLiteral("  a\u00a0b \t ");
    QTest::newRow("line ends") << QStringLiteral("a\r\nb\nc\rd\u2028e\u2029f\v\fg");
    QTest::newRow("controls") << QStringLiteral("a\x01\x1f\x7f\u0085");
    QTest::newRow("markup") << QStringLiteral("<b>&amp; \"it's\" \\n %41 $1 ?");
    QTest::newRow("astral and combining")
        << QString::fromUtf8("😀 A\u0308 Ä 日本 👩‍👩‍👧");
    QTest::newRow("byte order marks") << QStringLiteral("\ufeffa\ufeff");
    QTest::newRow("private and replacement") << QStringLiteral("\ue000\ufffd\ufffc");
    QTest::newRow("as long as can be")
        << QString(Zel::Assets::longestDetail / 2, QChar(0x20ac)) +
               QString(Zel::Assets::longestDetail - Zel::Assets::longestDetail / 2, QChar('x'));
}

void ContractAssetEdgesTest::keepsDescriptionsCodeUnitForCodeUnit()
{
    QFETCH(QString, text);
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    upload(*client, folder, QStringLiteral("x"), text);
    QCOMPARE(assetsOf(*client, folder)->item(1)->assetDetail, text);
    if (text.size() == Zel::Assets::longestDetail)
        QCOMPARE(failureOf([&] {
                     upload(*client, folder, QStringLiteral("x"), text + QLatin1Char('y'));
                 }),
                 QStringLiteral("Invalid/invalid"));
}

void ContractAssetEdgesTest::anUploadWhoseCommitAnswerIsLostIsOneAsset()
{
    const auto reader = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*reader);
    ServiceProxy proxy(service().port());
    Client client;
    QVERIFY(authenticate(client, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    int atTheEnd = 0;
    connect(&client, &ServiceClient::CreateAssetFileProgress, &client, [&](qint32 percent) {
        if (percent < 100)
            return;
        atTheEnd = proxy.requests();
        proxy.setFate(ServiceProxy::Fate::LoseAnswer);
    });
    // The second commit is on its way: the answer to the first one is lost for certain.
    Watcher watcher;
    watcher.action = [&] {
        if (atTheEnd > 0 && proxy.requests() >= atTheEnd + 2)
            proxy.setFate(ServiceProxy::Fate::PassOn);
    };
    client.setWaitObserver(&watcher);
    const QString guid = upload(client, folder);
    client.setWaitObserver(nullptr);
    QVERIFY(proxy.requests() >= atTheEnd + 2);
    const auto assets = assetsOf(*reader, folder);
    QCOMPARE(assets->count(), 1);
    QCOMPARE(assets->item(1)->guid, guid);
}

void ContractAssetEdgesTest::anUploadWhoseSessionEndsAsksToSignIn()
{
    const auto reader = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*reader);
    const QString program = newGuid();
    Client client;
    QVERIFY(authenticate(client, service().address(), nora().user, nora().password, program));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    int most = 0;
    connect(&client, &ServiceClient::CreateAssetFileProgress, &client, [&](qint32 percent) {
        if (most == 0)
            database().tx([&] { database().exec(expire, {program}); });
        most = percent;
    });
    const QString path = file(QStringLiteral("long.bin"), QByteArray(4'000'000, 'x'));
    QCOMPARE(failureOf([&] {
                 client.CreateAsset(QStringLiteral("x"), QString(), folder, fileAt(path), QString(),
                                    QString(), nullptr);
             }),
             QStringLiteral("SignedOut/signed-out"));
    QVERIFY(most > 0 && most < 100);
    QVERIFY(!client.isSignedIn());
    QCOMPARE(assetsOf(*reader, folder)->count(), 0);
    // What is on the screen can be sent again after signing in.
    QVERIFY(authenticate(client, service().address(), nora().user, nora().password));
    QVERIFY(chooseAccount(client, QString::number(contractStudio)));
    upload(client, folder);
    QCOMPARE(assetsOf(*reader, folder)->count(), 1);
}

ZEL_TEST_MAIN(ContractAssetEdgesTest)
#include "tst_contractassetedges.moc"
