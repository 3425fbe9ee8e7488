// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/databaseblobs.h"
#include "service/store/fileblobs.h"
#include "service/store/store.h"
#include "tests/contract/contracttest.h"
#include "tests/contract/contracttls.h"
#include "tests/contract/serviceproxy.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

#include <sys/resource.h>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr qint16 root = 0;

AssetFileCollectionPtr filesOf(const QStringList &paths)
{
    auto files = std::make_shared<AssetFileCollection>();
    for (const QString &path : paths)
        files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{path}));
    return files;
}

QString upload(Client &client, const QString &path, qint16 folder = root,
               const QString &name = QStringLiteral("An asset"))
{
    return client.CreateAsset(name, QStringLiteral("Made by a test."), folder, filesOf({path}),
                              QString(), QString(), nullptr);
}

AssetCollectionPtr assetsOf(Client &client, qint16 folder,
                            const QString &formats = QStringLiteral("0"),
                            const QString &name = QString(), qint32 first = 0, qint32 count = 0)
{
    AssetCollectionPtr assets;
    client.GetFolderAssets(folder, name, formats, first, count, assets);
    return assets;
}

QStringList namesIn(const AssetCollectionPtr &assets)
{
    QStringList names;
    for (const AssetRecordPtr &asset : *assets)
        names << asset->assetName;
    return names;
}

/// Bytes that repeat nowhere near.
QByteArray content(qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 2463534242U;
    for (char &byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<char>(state);
    }
    return bytes;
}

/// What an address gives.
QByteArray fetch(const QString &address, int *status = nullptr, const QByteArray &range = {})
{
    QNetworkAccessManager manager;
    QNetworkRequest request = requestOf(address);
    if (!range.isEmpty())
        request.setRawHeader("Range", range);
    const std::unique_ptr<QNetworkReply> reply(manager.get(request));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(30'000);
    if (status)
        *status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return reply->readAll();
}

/// Counts how often it is told of a wait.
struct PauseObserver : WaitObserver
{
    void waiting(std::chrono::milliseconds) noexcept override
    {
        ++told;
        isWaiting = true;
    }

    void finished() noexcept override { isWaiting = false; }

    int told = 0;
    bool isWaiting = false;
};

} // namespace

/// Folders, assets and uploads through the client against the real service.
class ContractAssetsTest : public ContractTest
{
    Q_OBJECT

private slots:
    void showsTheSampleToEachPersonByTheirRights();
    void refusesWhatDoesNotFit();
    void listsTheRootOfAnAccountWithoutFolders();
    void makesFoldersParentsFirst();
    void refusesFoldersThatCannotBe();
    void deletesEmptyFoldersOnly();
    void letsViewersLookOnly();
    void keepsAccountsApart();
    void resolvesRightsByTheNearestEntry();
    void givesBackEveryByte_data();
    void givesBackEveryByte();
    void reportsProgressToAHundredOnceAFile();
    void tellsTypesByContent_data();
    void tellsTypesByContent();
    void filtersByFormatAndName();
    void givesThumbnailsOfPicturesOnly();
    void refusesWhatIsNoFile_data();
    void refusesWhatIsNoFile();
    void listsNothingOfAFileThatChangesMeanwhile();
    void listsNothingWhenTheRightIsWithdrawnMeanwhile();
    void deletesAssets();
    void goesOnAfterTheServiceWasKilled();
    void givesValuesThatHoldWhereverTheServiceMoves();
    void givesEachFileOfAnAssetItsAddress();
    void keepsStrangeNames_data();
    void keepsStrangeNames();
    void refusesForgedAddresses();
    void namesTheFileWhenTheServiceGoesAway();
    void endsWhenItsClientIsDeletedInTheMiddle();

private:
    QString file(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("a file of the test cannot be written");
        return file.fileName();
    }

    bool hasBlob(const QString &sha)
    {
        if (!hasChunks())
            return QFile::exists(Zel::FileBlobs(service().files).blobPath(sha));
        return Zel::DatabaseBlobs(database(), Zel::systemClock()).has({contractStudio, sha});
    }

    /// Has the database answer as if it were full to whatever is long, or ends that.
    void refuseLargeContents(bool refuse)
    {
        const QStringList begin{
            QStringLiteral("CREATE FUNCTION full_disk() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN "
                           "RAISE EXCEPTION USING ERRCODE = ''53100''; END'"),
            QStringLiteral("CREATE TRIGGER full_disk BEFORE INSERT ON blob_chunk FOR EACH ROW "
                           "WHEN (NEW.first_byte > 7000000) EXECUTE FUNCTION full_disk()")};
        const QStringList end{QStringLiteral("DROP TRIGGER full_disk ON blob_chunk"),
                              QStringLiteral("DROP FUNCTION full_disk()")};
        database().tx([&] {
            for (const QString &statement : refuse ? begin : end)
                database().runNative(statement);
        });
    }

    qint16 newFolder(Client &client, qint16 parent = root)
    {
        return client.CreateAssetFolder(parent, QStringLiteral("Folder %1").arg(++m_folders));
    }

    /// Says what a person may do in a folder, as somebody who runs the service does.
    void grant(const Person &person, qint64 folder, const QString &letters)
    {
        Zel::Store store(database(), Zel::PasswordHasher::Cost::Minimal);
        const QString id = store.users.find(person.user)->userId;
        database().tx([&] { store.folders.setLetters(contractStudio, folder, id, letters); });
    }

    QTemporaryDir m_folder;
    int m_folders = 0;
};

void ContractAssetsTest::showsTheSampleToEachPersonByTheirRights()
{
    const auto owner = signIn(maja(), brightwaterMedia);
    const auto author = signIn(tomas(), brightwaterMedia);
    QMap<QString, qint16> ids;
    QStringList letters;
    const auto folders = author->GetAssetFolders(0);
    for (const AssetFolderRecordPtr &folder : *folders) {
        ids.insert(folder->folderName, folder->folderId);
        letters << folder->folderName + QLatin1Char('=') + folder->permissions;
    }
    QCOMPARE(letters.join(QLatin1Char(' ')),
             QStringLiteral("Brightwater Media=RWD Audio=RWD Drop box=W Papers=R Pictures=RWD "
                            "QXStudio=RW Contracts= Logos=RWD"));
    const qint16 contracts = ids.value(QStringLiteral("Contracts"));
    QCOMPARE(owner->GetFolderPermissions(contracts), QStringLiteral("RWD"));
    QCOMPARE(assetsOf(*owner, contracts)->count(), 2);
    QCOMPARE(failureOf([&] { assetsOf(*author, contracts); }),
             QStringLiteral("Refused/not-allowed"));
    const auto pictures = assetsOf(*author, ids.value(QStringLiteral("Pictures")));
    QCOMPARE(pictures->count(), 7);
    for (const AssetRecordPtr &picture : *pictures) {
        QCOMPARE(picture->assetType, QStringLiteral("Image"));
        const QImage thumbnail = QImage::fromData(fetch(picture->thumbnailUrl));
        QVERIFY2(!thumbnail.isNull(), qPrintable(picture->assetName));
    }
    const auto logos = assetsOf(*author, ids.value(QStringLiteral("Logos")));
    for (const AssetRecordPtr &logo : *logos)
        QVERIFY2(!QImage::fromData(fetch(logo->thumbnailUrl)).isNull(),
                 qPrintable(logo->assetName));
}

/// A limit on the size of files stands in for a full disk, and a refusal of large contents for a
/// full database.
void ContractAssetsTest::refusesWhatDoesNotFit()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(QStringLiteral("large.bin"), content(12'000'000));
    struct rlimit limit = {8'000'000, RLIM_INFINITY};
    const auto limitFiles = [this](const struct rlimit &most) {
        for (const qint64 id : service().processIds())
            QCOMPARE(prlimit(static_cast<pid_t>(id), RLIMIT_FSIZE, &most, nullptr), 0);
    };
    limitFiles(limit);
    if (hasChunks())
        refuseLargeContents(true);
    QCOMPARE(failureOf([&] { upload(*client, path, folder); }),
             QStringLiteral("Refused/storage-full"));
    limit.rlim_cur = RLIM_INFINITY;
    limitFiles(limit);
    if (hasChunks())
        refuseLargeContents(false);
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
    QCOMPARE(failureOf([&] { upload(*client, path, folder); }), QStringLiteral("none"));
}

void ContractAssetsTest::listsTheRootOfAnAccountWithoutFolders()
{
    const auto client = signIn(nora(), quietRoom);
    const auto folders = client->GetAssetFolders(0);
    QCOMPARE(folders->count(), 1);
    QCOMPARE(folders->item(1)->folderId, qint16(0));
    QVERIFY(!folders->item(1)->hasParent);
    QVERIFY(!folders->item(1)->folderName.isEmpty());
    QVERIFY(!client->GetAssetFolders(17));
    QCOMPARE(assetsOf(*client, root)->count(), 0);
}

void ContractAssetsTest::makesFoldersParentsFirst()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 zebra = client->CreateAssetFolder(root, QStringLiteral("Zebra \U0001F993"));
    const qint16 below = client->CreateAssetFolder(zebra, QStringLiteral("A & B"));
    const qint16 apple = client->CreateAssetFolder(root, QStringLiteral("apple"));
    QVERIFY(zebra > 0 && below > zebra && apple > below);
    QList<qint16> order;
    const auto folders = client->GetAssetFolders(0);
    for (const AssetFolderRecordPtr &folder : *folders) {
        order << folder->folderId;
        if (folder->folderId == below) {
            QCOMPARE(folder->folderName, QStringLiteral("A & B"));
            QCOMPARE(folder->parentId, zebra);
            QVERIFY(folder->hasParent);
        }
    }
    QCOMPARE(order.first(), qint16(0));
    QVERIFY(order.indexOf(apple) < order.indexOf(zebra));
    QVERIFY(order.indexOf(zebra) < order.indexOf(below));
    QCOMPARE(client->GetAssetFolders(zebra)->count(), 1);
}

void ContractAssetsTest::refusesFoldersThatCannotBe()
{
    const auto client = signIn(nora(), contractStudio);
    client->CreateAssetFolder(root, QStringLiteral("Twice"));
    const auto make = [&](qint16 parent, const QString &name) {
        return failureOf([&] { client->CreateAssetFolder(parent, name); });
    };
    QCOMPARE(make(root, QStringLiteral("tWICE")), QStringLiteral("Conflict/conflict"));
    QCOMPARE(make(root, QStringLiteral("  ")), QStringLiteral("Invalid/invalid"));
    QCOMPARE(make(root, QStringLiteral("a/b")), QStringLiteral("Invalid/invalid"));
    QCOMPARE(make(root, QString(256, QLatin1Char('x'))), QStringLiteral("Invalid/invalid"));
    QCOMPARE(make(32000, QStringLiteral("x")), QStringLiteral("NotFound/not-found"));
    QCOMPARE(make(-1, QStringLiteral("x")), QStringLiteral("Invalid/invalid"));
}

void ContractAssetsTest::deletesEmptyFoldersOnly()
{
    const auto client = signIn(nora(), contractStudio);
    const auto remove = [&](qint16 folder) {
        return failureOf([&] { client->DeleteAssetFolder(folder); });
    };
    const qint16 outer = newFolder(*client);
    const qint16 inner = newFolder(*client, outer);
    const QString guid = upload(*client, file(QStringLiteral("a.txt"), "text"), inner);
    QCOMPARE(remove(outer), QStringLiteral("Conflict/not-empty"));
    QCOMPARE(remove(inner), QStringLiteral("Conflict/not-empty"));
    QCOMPARE(remove(root), QStringLiteral("Refused/not-allowed"));
    client->DeleteAsset(guid);
    QCOMPARE(remove(inner), QStringLiteral("none"));
    QCOMPARE(remove(inner), QStringLiteral("NotFound/not-found"));
    QCOMPARE(remove(outer), QStringLiteral("none"));
    // A number is not given out again.
    QVERIFY(newFolder(*client) > inner);
}

void ContractAssetsTest::letsViewersLookOnly()
{
    const auto author = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*author);
    const QString path = file(QStringLiteral("a.txt"), "text");
    const QString guid = upload(*author, path, folder);
    const auto viewer = signIn(vera(), contractStudio);
    QCOMPARE(viewer->GetFolderPermissions(folder), QStringLiteral("R"));
    QCOMPARE(assetsOf(*viewer, folder)->count(), 1);
    const QString refused = QStringLiteral("Refused/not-allowed");
    QCOMPARE(failureOf([&] { newFolder(*viewer, folder); }), refused);
    QCOMPARE(failureOf([&] { upload(*viewer, path, folder); }), refused);
    QCOMPARE(failureOf([&] { viewer->DeleteAsset(guid); }), refused);
    QCOMPARE(failureOf([&] { viewer->DeleteAssetFolder(folder); }), refused);
    grant(vera(), folder, QStringLiteral("RWD"));
    QCOMPARE(viewer->GetFolderPermissions(folder), QStringLiteral("R"));
}

void ContractAssetsTest::keepsAccountsApart()
{
    const auto here = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*here);
    const QString guid = upload(*here, file(QStringLiteral("a.txt"), "text"), folder);
    const auto there = signIn(nora(), quietRoom);
    const QString unknown = QStringLiteral("NotFound/not-found");
    QCOMPARE(failureOf([&] { assetsOf(*there, folder); }), unknown);
    QCOMPARE(failureOf([&] { there->GetAssetValue(guid); }), unknown);
    QCOMPARE(failureOf([&] { there->DeleteAsset(guid); }), unknown);
    QCOMPARE(failureOf([&] { there->GetFolderPermissions(folder); }), unknown);
    QCOMPARE(failureOf([&] { there->DeleteAsset(QStringLiteral("..")); }),
             QStringLiteral("NotFound"));
}

void ContractAssetsTest::resolvesRightsByTheNearestEntry()
{
    const auto client = signIn(olaf(), contractStudio);
    const qint16 outer = newFolder(*client);
    const qint16 inner = newFolder(*client, outer);
    QCOMPARE(client->GetFolderPermissions(inner), QStringLiteral("RWD"));
    grant(olaf(), outer, QStringLiteral("RW"));
    QCOMPARE(client->GetFolderPermissions(inner), QStringLiteral("RW"));
    const QString guid = upload(*client, file(QStringLiteral("a.txt"), "text"), inner);
    const QString refused = QStringLiteral("Refused/not-allowed");
    QCOMPARE(failureOf([&] { client->DeleteAsset(guid); }), refused);
    grant(olaf(), inner, QStringLiteral("D"));
    QCOMPARE(client->GetFolderPermissions(outer), QStringLiteral("RW"));
    QCOMPARE(client->GetFolderPermissions(inner), QStringLiteral("D"));
    QCOMPARE(failureOf([&] { assetsOf(*client, inner); }), refused);
    QCOMPARE(failureOf([&] { client->GetAssetValue(guid); }), refused);
    QCOMPARE(failureOf([&] { newFolder(*client, inner); }), refused);
    QCOMPARE(failureOf([&] { client->DeleteAsset(guid); }), QStringLiteral("none"));
}

void ContractAssetsTest::givesBackEveryByte_data()
{
    QTest::addColumn<qint64>("size");
    constexpr qint64 chunk = Zel::Uploads::chunkBytes;
    for (const qint64 size : {qint64(1), qint64(256 * 1024 - 1), qint64(256 * 1024),
                              qint64(256 * 1024 + 1), chunk - 1, chunk, chunk + 1, 2 * chunk + 3})
        QTest::addRow("%lld bytes", size) << size;
}

void ContractAssetsTest::givesBackEveryByte()
{
    QFETCH(qint64, size);
    const auto client = signIn(nora(), contractStudio);
    const QByteArray bytes = content(size);
    const QString guid = upload(*client, file(QStringLiteral("bytes.bin"), bytes));
    int status = 0;
    const QString address = client->assetAddress(guid);
    QVERIFY2(address.startsWith(service().address()), qPrintable(address));
    QCOMPARE(fetch(address, &status) == bytes, true);
    QCOMPARE(status, 200);
    if (size > 10) {
        QCOMPARE(fetch(address, &status, "bytes=3-9"), bytes.mid(3, 7));
        QCOMPARE(status, 206);
        QCOMPARE(fetch(address, &status, "bytes=-2"), bytes.right(2));
    }
    fetch(address, &status, "bytes=" + QByteArray::number(size) + '-');
    QCOMPARE(status, 416);
}

void ContractAssetsTest::reportsProgressToAHundredOnceAFile()
{
    const auto client = signIn(nora(), contractStudio);
    const QStringList paths{file(QStringLiteral("large.bin"), content(3'000'000)),
                            file(QStringLiteral("small.bin"), "x")};
    QList<std::pair<int, QString>> seen;
    connect(client.get(), &ServiceClient::CreateAssetFileProgress, this,
            [&](qint32 percent, const QString &path) {
                seen.append({percent, path});
            });
    client->CreateAsset(QStringLiteral("Two"), QString(), root, filesOf(paths), QString(),
                        QString(), nullptr);
    QVERIFY(seen.size() > 5);
    QCOMPARE(seen.last(), std::make_pair(100, paths.at(1)));
    seen.removeLast();
    for (qsizetype i = 0; i < seen.size(); ++i) {
        QCOMPARE(seen.at(i).second, paths.at(0));
        QVERIFY(i == 0 || seen.at(i).first > seen.at(i - 1).first);
    }
    QCOMPARE(seen.last().first, 100);
}

void ContractAssetsTest::tellsTypesByContent_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *name, const QByteArray &bytes, const char *type) {
        QTest::newRow(name) << QString::fromLatin1(name) << bytes << QString::fromLatin1(type);
    };
    row("a.gif", "GIF89a\1\0\1\0", "Image");
    row("picture.txt", QByteArray("\x89PNG\r\n\x1a\n") + QByteArray(50, '\0'), "Image");
    row("text.jpg", "just words", "Text");
    row("garbage.jpg", content(100), "Other");
    row("a.pdf", "%PDF-1.4\n", "pdf");
    row("a.xml", "<?xml version=\"1.0\"?><a/>", "XML");
    row("a.mp3", QByteArray("ID3\4\0\0\0\0\0\0", 10), "Audio");
    row("a.pptx", QByteArray("PK\3\4") + QByteArray(60, '\0'), "Presentation");
    row("a.docx", QByteArray("PK\3\4") + QByteArray(60, '\0'), "Document");
}

void ContractAssetsTest::tellsTypesByContent()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    upload(*client, file(name, bytes), folder);
    QTEST(assetsOf(*client, folder)->item(1)->assetType, "type");
}

void ContractAssetsTest::filtersByFormatAndName()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    for (const char *name : {"Beta.TXT", "alpha.txt", "gamma.bin", "none"}) {
        const QString text = QString::fromLatin1(name);
        upload(*client, file(text, "text"), folder, text);
    }
    const QStringList all{QStringLiteral("alpha.txt"), QStringLiteral("Beta.TXT"),
                          QStringLiteral("gamma.bin"), QStringLiteral("none")};
    QCOMPARE(namesIn(assetsOf(*client, folder)), all);
    QCOMPARE(namesIn(assetsOf(*client, folder, QString())), all);
    QCOMPARE(namesIn(assetsOf(*client, folder, QStringLiteral("jpg, .txt"))), all.mid(0, 2));
    QCOMPARE(namesIn(assetsOf(*client, folder, QStringLiteral("gif"))), QStringList());
    QCOMPARE(namesIn(assetsOf(*client, folder, QString(), QStringLiteral("BETA"))), all.mid(1, 1));
    QCOMPARE(namesIn(assetsOf(*client, folder, QString(), QString(), 1, 2)), all.mid(1, 2));
    const auto record = assetsOf(*client, folder)->item(1);
    QCOMPARE(record->assetDetail, QStringLiteral("Made by a test."));
    QVERIFY(qAbs(record->assetDate.secsTo(QDateTime::currentDateTime())) < 600);
    QCOMPARE(record->assetDate.timeSpec(), Qt::LocalTime);
}

void ContractAssetsTest::givesThumbnailsOfPicturesOnly()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    QImage picture(600, 300, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    const QString path = m_folder.filePath(QStringLiteral("green.png"));
    QVERIFY(picture.save(path));
    upload(*client, path, folder, QStringLiteral("A picture"));
    QFile whole(path);
    QVERIFY(whole.open(QIODevice::ReadOnly));
    upload(*client, file(QStringLiteral("cut.png"), whole.readAll().left(60)), folder,
           QStringLiteral("Broken"));
    const auto assets = assetsOf(*client, folder);
    const QString address = assets->item(1)->thumbnailUrl;
    QVERIFY2(address.startsWith(QLatin1String("http")), qPrintable(address));
    QCOMPARE(assets->item(2)->assetName, QStringLiteral("Broken"));
    QCOMPARE(assets->item(2)->thumbnailUrl, QString());
    const QImage thumbnail = QImage::fromData(fetch(address));
    QCOMPARE(thumbnail.size(), QSize(256, 128));
    QCOMPARE(thumbnail.pixelColor(5, 5), QColor(Qt::darkGreen));
}

void ContractAssetsTest::refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("word");
    QTest::newRow("web") << QStringLiteral("http://example.org/a.png")
                         << QStringLiteral("address on the web");
    QTest::newRow("missing") << m_folder.filePath(QStringLiteral("no \"such\" file.png"))
                             << QStringLiteral("no \"such\" file.png");
    QTest::newRow("folder") << m_folder.path() << m_folder.path();
    QTest::newRow("no path") << QString() << QStringLiteral("not there");
    QTest::newRow("nothing in it") << file(QStringLiteral("empty.png"), QByteArray())
                                   << QStringLiteral("empty.png\" is empty");
}

void ContractAssetsTest::refusesWhatIsNoFile()
{
    QFETCH(QString, path);
    QFETCH(QString, word);
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    // A good file before the bad one goes no further either.
    const QString good = file(QStringLiteral("good.txt"), "text");
    QSignalSpy progress(client.get(), &ServiceClient::CreateAssetFileProgress);
    QString sentence;
    try {
        client->CreateAsset(QStringLiteral("x"), QString(), folder, filesOf({good, path}),
                            QString(), QString(), nullptr);
    } catch (const ServiceError &error) {
        QCOMPARE(int(error.kind()), int(ServiceError::Kind::Invalid));
        sentence = error.description();
    }
    QVERIFY2(sentence.contains(word), qPrintable(sentence));
    QCOMPARE(progress.count(), 0);
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
}

void ContractAssetsTest::listsNothingOfAFileThatChangesMeanwhile()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(QStringLiteral("changing.bin"), content(2'000'000));
    QMetaObject::Connection once =
        connect(client.get(), &ServiceClient::CreateAssetFileProgress, this, [&] {
            disconnect(once);
            QFile changing(path);
            QVERIFY(changing.resize(1'000'000));
        });
    const QString failure = failureOf([&] { upload(*client, path, folder); });
    QCOMPARE(failure, QStringLiteral("Invalid"));
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
}

void ContractAssetsTest::listsNothingWhenTheRightIsWithdrawnMeanwhile()
{
    const auto client = signIn(olaf(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(QStringLiteral("late.bin"), content(2'000'000));
    QMetaObject::Connection once =
        connect(client.get(), &ServiceClient::CreateAssetFileProgress, this, [&] {
            disconnect(once);
            grant(olaf(), folder, QStringLiteral("R"));
        });
    QCOMPARE(failureOf([&] { upload(*client, path, folder); }),
             QStringLiteral("Refused/not-allowed"));
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
}

void ContractAssetsTest::deletesAssets()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString guid = upload(*client, file(QStringLiteral("a.txt"), "text"), folder);
    const QString address = client->assetAddress(guid);
    client->DeleteAsset(guid);
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
    QCOMPARE(failureOf([&] { client->DeleteAsset(guid); }), QStringLiteral("NotFound/not-found"));
    int status = 0;
    fetch(address, &status);
    QCOMPARE(status, 404);

    QByteArray output;
    QCOMPARE(service().runCommand({QStringLiteral("trash"), QStringLiteral("list")}, &output), 0);
    QVERIFY2(output.contains(guid.toLatin1()), output.constData());
    QCOMPARE(service().runCommand({QStringLiteral("trash"), QStringLiteral("purge")}, &output), 0);
    QVERIFY2(output.startsWith("0 removed"), output.constData());
    QCOMPARE(
        service().runCommand({QStringLiteral("trash"), QStringLiteral("restore"), guid}, &output),
        0);
    QCOMPARE(assetsOf(*client, folder)->count(), 1);
    QCOMPARE(fetch(address), QByteArray("text"));
    QCOMPARE(
        service().runCommand({QStringLiteral("trash"), QStringLiteral("restore"), guid}, &output),
        1);

    const QByteArray bytes = content(1234);
    const QString other = upload(*client, file(QStringLiteral("b.bin"), bytes), folder);
    const QString sha =
        QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    QVERIFY(hasBlob(sha));
    client->DeleteAsset(other);
    QCOMPARE(
        service().runCommand(
            {QStringLiteral("trash"), QStringLiteral("purge"), QStringLiteral("--all")}, &output),
        0);
    QVERIFY2(output.contains("removed for good"), output.constData());
    QVERIFY(!hasBlob(sha));
    QCOMPARE(fetch(address), QByteArray("text"));
}

void ContractAssetsTest::goesOnAfterTheServiceWasKilled()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QByteArray bytes = content(20'000'000);
    const QString path = file(QStringLiteral("resumed.bin"), bytes);
    int kills = 0;
    QList<int> seen;
    connect(client.get(), &ServiceClient::CreateAssetFileProgress, this, [&](qint32 percent) {
        seen << percent;
        if (percent < 40 || kills > 0)
            return;
        ++kills;
        service().kill();
        QVERIFY2(service().startAgain(), qPrintable(service().error()));
    });
    const QString guid = upload(*client, path, folder);
    QCOMPARE(kills, 1);
    QCOMPARE(seen.count(100), 1);
    QVERIFY(std::is_sorted(seen.begin(), seen.end()));
    QCOMPARE(fetch(client->assetAddress(guid)) == bytes, true);
}

void ContractAssetsTest::givesValuesThatHoldWhereverTheServiceMoves()
{
    const auto client = signIn(nora(), contractStudio);
    const QString guid = upload(*client, file(QStringLiteral("50 % \"off\".txt"), "text"));
    const QString value = client->GetAssetValue(guid);
    QVERIFY2(value.startsWith(QStringLiteral("/a/%1/50%20%25%20%22off%22.txt?s=").arg(guid)),
             qPrintable(value));
    QCOMPARE(client->GetAssetValue(guid.toUpper()), value);
    // Another service over the same workspace has another port.
    QCOMPARE(fetch(replica().address() + value), QByteArray("text"));
    // The name stands there for people.
    const qsizetype name = value.indexOf(QLatin1Char('/'), 3) + 1;
    const QString renamed =
        value.left(name) + QStringLiteral("other") + value.mid(value.indexOf(QLatin1Char('?')));
    QCOMPARE(fetch(service().address() + renamed), QByteArray("text"));
}

void ContractAssetsTest::givesEachFileOfAnAssetItsAddress()
{
    const auto client = signIn(nora(), contractStudio);
    const QString guid = client->CreateAsset(QStringLiteral("Two"), QString(), root,
                                             filesOf({file(QStringLiteral("first.txt"), "one"),
                                                      file(QStringLiteral("second.txt"), "two")}),
                                             QString(), QString(), nullptr);
    QString address = client->assetAddress(guid);
    QCOMPARE(fetch(address), QByteArray("one"));
    address.replace(QLatin1String("/first.txt"), QLatin1String("/1/second.txt"));
    QCOMPARE(fetch(address), QByteArray("two"));
    int status = 0;
    for (const char *place : {"/2/", "/-1/", "/x/"}) {
        QString other = address;
        fetch(other.replace(QLatin1String("/1/"), QLatin1String(place)), &status);
        QCOMPARE(status, 404);
    }
}

void ContractAssetsTest::keepsStrangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << QStringLiteral("a \"b\" 'c' `d`.txt");
    QTest::newRow("back slash") << QStringLiteral("a\\b\\.txt");
    QTest::newRow("address marks") << QStringLiteral("a?b#c&d=e;f%2F%.txt");
    QTest::newRow("line break and bell") << QStringLiteral("a\r\nb\a.txt");
    QTest::newRow("emoji") << QStringLiteral("\U0001F993\U0001F1E9\U0001F1EA.txt");
    QTest::newRow("right to left") << QStringLiteral("\u05d0\u05d1\u202e.txt");
    QTest::newRow("dots and blanks") << QStringLiteral("... .");
    QTest::newRow("255 bytes") << QString(QStringLiteral("\u20ac").repeated(85));
}

void ContractAssetsTest::keepsStrangeNames()
{
    QFETCH(QString, name);
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(name, "text");
    const QString given = name + QLatin1Char('/');
    const QString guid = upload(*client, path, folder, given);
    QCOMPARE(namesIn(assetsOf(*client, folder)), QStringList(given));
    QNetworkAccessManager manager;
    const QUrl address(client->assetAddress(guid));
    QVERIFY(address.isValid());
    const std::unique_ptr<QNetworkReply> reply(
        manager.get(requestOf(address.toString(QUrl::FullyEncoded))));
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->readAll(), QByteArray("text"));
    QCOMPARE(reply->rawHeader("Content-Disposition"),
             "inline; filename*=UTF-8''" + QUrl::toPercentEncoding(name));
}

void ContractAssetsTest::refusesForgedAddresses()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    QImage picture(10, 10, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString path = m_folder.filePath(QStringLiteral("red.png"));
    QVERIFY(picture.save(path));
    const QString guid = upload(*client, path, folder);
    const QString other = upload(*client, path, folder);
    const QString address = client->assetAddress(guid);
    const QString thumbnail = assetsOf(*client, folder)->item(1)->thumbnailUrl;
    int status = 0;
    fetch(address, &status);
    QCOMPARE(status, 200);
    const auto expectRefused = [&](QString from, const QString &part, const QString &instead) {
        QVERIFY2(from.contains(part), qPrintable(from));
        fetch(from.replace(part, instead), &status);
        QCOMPARE(status, 403);
    };
    const auto latin = [](const char *text) { return QString::fromLatin1(text); };
    expectRefused(address, guid, other);
    expectRefused(address, latin("s=2001."), latin("s=2002."));
    expectRefused(address, latin("s=2001."), latin("s="));
    expectRefused(address, latin("s=2001."), latin("s=2001.x"));
    expectRefused(address, latin("?s="), latin("?t="));
    expectRefused(address, latin("s=2001."), latin("s=2001.&s2="));
    expectRefused(thumbnail, latin("&e="), latin("&e=9"));
    expectRefused(thumbnail, latin("a=2001"), latin("a=2002"));
    expectRefused(thumbnail, latin("/256?"), latin("/128?"));
    expectRefused(thumbnail, latin("&s="), latin("&s=x"));
    expectRefused(thumbnail, latin("&s="), latin("&t="));
}

/// The connection is gone for good: the sentence names the file, nothing is listed.
void ContractAssetsTest::namesTheFileWhenTheServiceGoesAway()
{
    const auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(QStringLiteral("lonely.bin"), content(4'000'000));
    ServiceProxy proxy(service().port());
    Client away;
    QVERIFY(authenticate(away, proxy.address(), nora().user, nora().password));
    QVERIFY(chooseAccount(away, QString::number(contractStudio)));
    NetworkPolicy policy = away.networkPolicy();
    policy.retryLimit = std::chrono::seconds(4);
    away.setNetworkPolicy(policy);
    PauseObserver observer;
    away.setWaitObserver(&observer);
    int most = 0;
    connect(&away, &ServiceClient::CreateAssetFileProgress, this, [&](qint32 percent) {
        most = percent;
        if (percent >= 60)
            proxy.setFate(ServiceProxy::Fate::LoseRequest);
    });
    QString sentence;
    try {
        upload(away, path, folder);
    } catch (const ServiceError &error) {
        sentence = error.description();
        QVERIFY2(error.isTransient(), qPrintable(sentence));
    }
    QVERIFY2(sentence.startsWith(QStringLiteral("\"lonely.bin\" was not uploaded. ")),
             qPrintable(sentence));
    QVERIFY(most >= 60 && most < 70);
    away.setWaitObserver(nullptr);
    QVERIFY(observer.told > 10);
    QVERIFY(!observer.isWaiting);
    QCOMPARE(assetsOf(*client, folder)->count(), 0);
}

void ContractAssetsTest::endsWhenItsClientIsDeletedInTheMiddle()
{
    auto client = signIn(nora(), contractStudio);
    const qint16 folder = newFolder(*client);
    const QString path = file(QStringLiteral("x.bin"), content(2'000'000));
    Client *doomed = client.release();
    connect(doomed, &ServiceClient::CreateAssetFileProgress, doomed, [&] { delete doomed; });
    QCOMPARE(failureOf([&] { upload(*doomed, path, folder); }), QStringLiteral("ConnectionLost"));
    QCOMPARE(assetsOf(*signIn(nora(), contractStudio), folder)->count(), 0);
}

ZEL_TEST_MAIN(ContractAssetsTest)
#include "tst_contractassets.moc"
