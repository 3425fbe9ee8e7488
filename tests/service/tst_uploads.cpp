// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/uploadsfixture.h"

#include <QSet>
#include <QThread>

#include <mutex>
#include <thread>
#include <vector>

using namespace ZelTest;
using Zel::Uploads;

/// Uploads, call by call over a socket.
class UploadsTest : public UploadsFixture
{
    Q_OBJECT

private slots:

    void initTestCase_data() { addKinds(); }

    void init() { begin(); }

    void cleanupTestCase() { end(); }

    void refusesWhatIsNoUpload_data();
    void refusesWhatIsNoUpload();
    void refusesWhatHasNoRoom();
    void refusesFoldersWithoutTheRight();
    void takesTheNameOutOfAPath();
    void takesPiecesInTheirOrderOnly();
    void refusesMoreThanWasSaid();
    void letsOneCallWriteAFile();
    void keepsWhatCameBeforeTheConnectionBroke();
    void showsUploadsToTheirOwnerOnly();
    void becomesAnAssetOnce();
    void refusesWhatIsNotWholeOrNotTheSame();
    void clearsAwayWhatARefusedUploadLeft();
    void refusesWhatAreNoChecksums_data();
    void refusesWhatAreNoChecksums();
    void checksWhatAnotherDaemonTookIn();
    void readsNothingAgainAtTheEnd();
    void looksAtTheRightAgainAtTheEnd();
    void forgetsUploadsAfterADay();
    void dropsUploads();
    void keepsEqualBytesOnce();

    void manyCommitsAtOnceMakeOneAsset();
};

void UploadsTest::refusesWhatIsNoUpload_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *name, const QJsonObject &object, int status, const char *word) {
        QTest::newRow(name) << json(object) << status << QString::fromUtf8(word);
    };
    const QJsonArray good{fileOf(QStringLiteral("a.png"), 5)};
    QJsonObject changed = uploadOf(good);
    changed.insert(QStringLiteral("name"), QStringLiteral("  "));
    row("blank name", changed, 400, "name");
    changed.insert(QStringLiteral("name"), QString(1001, QLatin1Char('x')));
    row("long name", changed, 400, "\"name\"");
    changed = uploadOf(good);
    changed.insert(QStringLiteral("more"), 1);
    row("a field too many", changed, 400, "more");
    row("no files", uploadOf({}), 400, "files");
    row("no objects", uploadOf({5}), 400, "files");
    row("an empty file", uploadOf({fileOf(QStringLiteral("null \"0\".png"), 0)}), 400,
        "\"null \"0\".png\" is empty");
    row("less than nothing", uploadOf({fileOf(QStringLiteral("a"), -1)}), 400, "size");
    row("half a byte", uploadOf({fileOf(QStringLiteral("a"), 1.5)}), 400, "size");
    row("a file without a name", uploadOf({fileOf(QStringLiteral("a/"), 1)}), 400, "needs a name");
    row("no such folder", uploadOf(good, 17), 404, "folder");
    row("no folder number", uploadOf(good, -1), 400, "folderId");
    row("too large", uploadOf({fileOf(QStringLiteral("vast.mov"), 1e15)}), 413, "\"vast.mov\"");
    row("too large together",
        uploadOf({fileOf(QStringLiteral("a"), 4e10), fileOf(QStringLiteral("b"), 4e10)}), 413,
        "(and 1 more)");
    QJsonArray many;
    for (int i = 0; i <= Uploads::mostFiles; ++i)
        many.append(fileOf(QString::number(i), 1));
    row("too many files", uploadOf(many), 400, "100 files");
}

void UploadsTest::refusesWhatIsNoUpload()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QString, word);
    const HttpReply reply = call("POST", "/v1/uploads", body);
    QCOMPARE(reply.status, status);
    QVERIFY2(detailOf(reply).contains(word), reply.body.constData());
    QCOMPARE(parts(), 0);
}

void UploadsTest::refusesWhatHasNoRoom()
{
    m_api->store().blobs.setRoomMeter([] { return Uploads::reserveBytes + 1000; });
    const auto ask = [this](int size) {
        return call("POST", "/v1/uploads", json(uploadOf({fileOf(QStringLiteral("b.mov"), size)})));
    };
    const HttpReply reply = ask(1001);
    QCOMPARE(reply.status, 507);
    QCOMPARE(reply.code(), QStringLiteral("storage-full"));
    QCOMPARE(detailOf(reply), QStringLiteral("The service has no room for \"b.mov\"."));
    QCOMPARE(ask(1000).status, 201);
}

void UploadsTest::refusesFoldersWithoutTheRight()
{
    m_token = m_api->token(tomas, brightwater);
    const auto papers =
        m_api->store().folders.findPath(brightwater, QStringLiteral("Papers")).value_or(0);
    QVERIFY(papers > 0);
    const HttpReply reply =
        call("POST", "/v1/uploads",
             json(uploadOf({fileOf(QStringLiteral("a"), 1)}, static_cast<int>(papers))));
    QCOMPARE(reply.status, 403);
    QCOMPARE(reply.code(), QStringLiteral("not-allowed"));
}

void UploadsTest::takesTheNameOutOfAPath()
{
    const QJsonArray files{fileOf(QStringLiteral("../../etc/passwd"), 4),
                           fileOf(QStringLiteral(".."), 4)};
    const HttpReply reserved = call("POST", "/v1/uploads", json(uploadOf(files)));
    const QByteArray upload =
        "/v1/uploads/" + reserved.json().value(QLatin1String("uploadId")).toString().toLatin1();
    QCOMPARE(put(upload, 0, "text", 0).status, 200);
    QCOMPARE(put(upload, 0, "text", 1).status, 200);
    const QByteArray guid = commit(upload, {sha("text"), sha("text")})
                                .json()
                                .value(QLatin1String("guid"))
                                .toString()
                                .toLatin1();
    const QJsonArray given =
        call("GET", "/v1/assets/" + guid + "/value").json().value(QLatin1String("files")).toArray();
    QCOMPARE(given.size(), 2);
    const auto field = [&given](int i, const char *name) {
        return given.at(i).toObject().value(QLatin1String(name)).toString();
    };
    QCOMPARE(field(0, "name"), QStringLiteral("passwd"));
    QVERIFY2(field(0, "value").contains(QLatin1String("/passwd?s=")),
             qPrintable(field(0, "value")));
    QVERIFY2(field(1, "value").contains(QLatin1String("/1/file?s=")),
             qPrintable(field(1, "value")));
    for (int i = 0; i < 2; ++i)
        QCOMPARE(m_api->call("GET", field(i, "value").toLatin1(), QString()).body,
                 QByteArray("text"));
}

void UploadsTest::takesPiecesInTheirOrderOnly()
{
    const QByteArray upload = reserve({10});
    QCOMPARE(receivedOf(put(upload, 0, "")), 0);
    QCOMPARE(receivedOf(put(upload, 0, "abcd")), 4);
    for (const qint64 offset : {qint64(0), qint64(3), qint64(5), qint64(1) << 60}) {
        const HttpReply reply = put(upload, offset, "xy");
        QCOMPARE(reply.status, 409);
        QCOMPARE(reply.code(), QStringLiteral("offset"));
        QCOMPARE(receivedOf(reply), 4);
    }
    QCOMPARE(put(upload, -1, "xy").status, 400);
    QCOMPARE(put(upload, 0, "xy", 1).status, 404);
    QCOMPARE(put(upload, 0, "xy", -1).status, 404);
    QCOMPARE(call("PUT", upload + "/files/x?offset=4", "xy").status, 404);
    QCOMPARE(receivedOf(put(upload, 4, "efghij")), 10);
    QCOMPARE(commit(upload, {sha("abcdefghij")}).status, 201);
}

void UploadsTest::refusesMoreThanWasSaid()
{
    const QByteArray upload = reserve({4});
    const HttpReply reply = put(upload, 0, "abcde");
    QCOMPARE(reply.status, 413);
    QVERIFY2(detailOf(reply).contains(QLatin1String("\"file 0.bin\"")), reply.body.constData());
    QCOMPARE(receivedOf(put(upload, 0, "")), 0);
    // A piece beyond the limit of pieces is not even begun.
    const QByteArray large = reserve({Uploads::chunkBytes + 1});
    QCOMPARE(put(large, 0, QByteArray(Uploads::chunkBytes + 1, 'x')).status, 413);
    QCOMPARE(receivedOf(put(large, 0, "")), 0);
    QCOMPARE(receivedOf(put(large, 0, QByteArray(Uploads::chunkBytes, 'x'))), Uploads::chunkBytes);
}

void UploadsTest::letsOneCallWriteAFile()
{
    const QByteArray upload = reserve({4});
    HttpProbe slow(m_api->port());
    beginToSend(slow, upload, 4);
    slow.send("ab");
    HttpReply reply = put(upload, 0, "");
    QCOMPARE(reply.code(), QStringLiteral("busy"));
    QVERIFY2(detailOf(reply).contains(QLatin1String("\"file 0.bin\"")), reply.body.constData());
    QCOMPARE(commit(upload, {sha("abcd")}).code(), QStringLiteral("busy"));
    slow.send("cd");
    QCOMPARE(receivedOf(slow.read()), 4);
    QCOMPARE(commit(upload, {sha("abcd")}).status, 201);
}

void UploadsTest::keepsWhatCameBeforeTheConnectionBroke()
{
    const QByteArray bytes = "0123456789";
    const QByteArray upload = reserve({10});
    {
        HttpProbe broken(m_api->port());
        beginToSend(broken, upload, 10);
        broken.send(bytes.left(6));
    }
    QTRY_COMPARE(receivedOf(put(upload, 0, "")), 6);
    QCOMPARE(receivedOf(put(upload, 6, bytes.mid(6))), 10);
    QCOMPARE(commit(upload, {sha(bytes)}).status, 201);
}

void UploadsTest::showsUploadsToTheirOwnerOnly()
{
    m_token = m_api->token(maja, brightwater);
    const QByteArray upload = reserve({4});
    const QString mine = m_token;
    for (const QString &other : {m_api->token(tomas, brightwater), m_api->token(maja, harbour)}) {
        m_token = other;
        QCOMPARE(put(upload, 0, "abcd").status, 404);
        QCOMPARE(commit(upload, {sha("abcd")}).status, 404);
        QCOMPARE(call("DELETE", upload).status, 404);
    }
    m_token = mine;
    QCOMPARE(put(upload, 0, "abcd").status, 200);
}

void UploadsTest::becomesAnAssetOnce()
{
    const QByteArray upload = reserve({4, 2});
    put(upload, 0, "abcd", 0);
    put(upload, 0, "ef", 1);
    QCOMPARE(listed().size(), 0);
    const HttpReply first = commit(upload, {sha("abcd"), sha("ef")});
    QCOMPARE(first.status, 201);
    QCOMPARE(commit(upload, {sha("abcd"), sha("ef")}).body, first.body);
    QCOMPARE(listed().size(), 1);
    QCOMPARE(put(upload, 0, "").status, 404);
    QCOMPARE(parts(), 0);
    // Given up afterwards it stays an asset.
    QCOMPARE(call("DELETE", upload).status, 204);
    QCOMPARE(listed().size(), 1);
}

void UploadsTest::refusesWhatIsNotWholeOrNotTheSame()
{
    const QByteArray upload = reserve({4, 2});
    put(upload, 0, "abcd", 0);
    put(upload, 0, "e", 1);
    HttpReply reply = commit(upload, {sha("abcd"), sha("ef")});
    QCOMPARE(reply.code(), QStringLiteral("incomplete"));
    QVERIFY2(detailOf(reply).contains(QLatin1String("\"file 1.bin\"")), reply.body.constData());
    QCOMPARE(commit(upload, {sha("abcd")}).code(), QStringLiteral("checksum"));
    put(upload, 1, "x", 1);
    reply = commit(upload, {sha("abcd"), sha("ef")});
    QCOMPARE(reply.code(), QStringLiteral("checksum"));
    QVERIFY2(detailOf(reply).contains(QLatin1String("\"file 1.bin\"")), reply.body.constData());
    QCOMPARE(listed().size(), 0);
    // That file can be sent again.
    QCOMPARE(receivedOf(put(upload, 0, "", 1)), 0);
    QCOMPARE(receivedOf(put(upload, 0, "ef", 1)), 2);
    QCOMPARE(commit(upload, {sha("abcd"), sha("ef")}).status, 201);
}

void UploadsTest::clearsAwayWhatARefusedUploadLeft()
{
    Zel::Store &store = m_api->store();
    const auto blob = [](const QByteArray &bytes) {
        return Zel::BlobId{harbour, QString::fromLatin1(sha(bytes))};
    };
    const auto notes = [this] {
        return QDir(m_api->files() + QStringLiteral("/unsettled")).entryList(QDir::Files);
    };
    newAsset("kept");
    QCOMPARE(notes(), QStringList());
    const QByteArray upload = reserve({4, 2});
    put(upload, 0, "abcd", 0);
    put(upload, 0, "xx", 1);
    QCOMPARE(commit(upload, {sha("abcd"), sha("ef")}).code(), QStringLiteral("checksum"));
    QCOMPARE(call("DELETE", upload).status, 204);
    // Over files a file has its name before the next one is compared.
    QCOMPARE(store.blobs.has(blob("abcd")), !m_chunks);
    QCOMPARE(notes().size(), m_chunks ? 0 : 1);
    // As one that is killed before it could say that the row is there leaves it.
    if (!m_chunks) {
        QFile note(m_api->files() + QStringLiteral("/unsettled/") + blob("kept").sha);
        QVERIFY(note.open(QIODevice::WriteOnly));
    }
    store.assets.purge(0);
    QVERIFY(!store.blobs.has(blob("abcd")));
    QVERIFY(store.blobs.has(blob("kept")));
    QCOMPARE(notes(), QStringList());
}

void UploadsTest::refusesWhatAreNoChecksums_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("none") << QByteArray("{}");
    QTest::newRow("no list") << QByteArray(R"({"checksums": "x"})");
    QTest::newRow("numbers") << QByteArray(R"({"checksums": [1]})");
    QTest::newRow("short") << QByteArray(R"({"checksums": ["abc"]})");
    QTest::newRow("capitals") << "{\"checksums\": [\"" + sha("abcd").toUpper() + "\"]}";
    QTest::newRow("a path") << "{\"checksums\": [\"../" + sha("abcd").mid(3) + "\"]}";
    QTest::newRow("line break") << "{\"checksums\": [\"" + sha("abcd") + "\\n\"]}";
}

void UploadsTest::refusesWhatAreNoChecksums()
{
    QFETCH(QByteArray, body);
    const QByteArray upload = reserve({4});
    put(upload, 0, "abcd");
    const HttpReply reply = call("POST", upload + "/commit", body);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("invalid"));
    QCOMPARE(listed().size(), 0);
}

/// The checksum of what came is kept in memory. Bytes that another process has written, or changed,
/// in between are seen all the same.
void UploadsTest::checksWhatAnotherDaemonTookIn()
{
    const auto other = otherDaemon();
    const auto append = [&other](const QByteArray &upload, const QByteArray &bytes) {
        const auto part = other->blobs.openPart(partOf(upload));
        part->append(bytes.constData(), bytes.size());
        part->flush();
    };
    const QByteArray upload = reserve({6});
    put(upload, 0, "ab");
    append(upload, "cd");
    QCOMPARE(receivedOf(put(upload, 4, "ef")), 6);
    QCOMPARE(commit(upload, {sha("abcdef")}).status, 201);

    const QByteArray begunAnew = reserve({4});
    put(begunAnew, 0, "xx");
    other->blobs.dropPart(partOf(begunAnew));
    // The next file gets the same number, and the times of files go in ticks of some milliseconds.
    constexpr unsigned long longerThanATick = 20;
    QThread::msleep(longerThanATick);
    append(begunAnew, "ab");
    put(begunAnew, 2, "cd");
    QCOMPARE(commit(begunAnew, {sha("abcd")}).status, 201);
}

/// What was taken in is added to the checksum at once, and stays so when a client asks how far it
/// came: bytes that have changed where they lie are not looked at any more.
void UploadsTest::readsNothingAgainAtTheEnd()
{
    const QByteArray upload = reserve({6});
    put(upload, 0, "abcd");
    QCOMPARE(put(upload, 0, "").code(), QStringLiteral("offset"));
    QCOMPARE(put(upload, 9, "x").code(), QStringLiteral("offset"));
    if (m_chunks) {
        m_api->database().tx([&] {
            m_api->database().runNative(
                QStringLiteral("UPDATE blob_chunk SET bytes = %1 WHERE size = 4")
                    .arg(m_api->database().address().engine ==
                                 Zel::DatabaseAddress::Engine::Postgres
                             ? QStringLiteral("'\\x78787878'")
                             : QStringLiteral("x'78787878'")));
        });
    } else {
        QFile file(m_api->files() + QStringLiteral("/uploads/") + partOf(upload).uploadId +
                   QStringLiteral("-0"));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write("xxxx") == 4);
    }
    QCOMPARE(receivedOf(put(upload, 4, "ef")), 6);
    QCOMPARE(commit(upload, {sha("abcdef")}).status, 201);
}

void UploadsTest::looksAtTheRightAgainAtTheEnd()
{
    m_token = m_api->token(tomas, brightwater);
    const auto folder =
        m_api->store().folders.findPath(brightwater, QStringLiteral("QXStudio")).value_or(0);
    QVERIFY(folder > 0);
    const QByteArray upload = reserve({4}, static_cast<int>(folder));
    const auto before = listed(static_cast<int>(folder)).size();
    put(upload, 0, "abcd");
    const QString user = m_api->store().users.find(tomas)->userId;
    m_api->database().tx(
        [&] { m_api->store().folders.setLetters(brightwater, folder, user, QStringLiteral("R")); });
    QCOMPARE(commit(upload, {sha("abcd")}).code(), QStringLiteral("not-allowed"));
    QCOMPARE(listed(static_cast<int>(folder)).size(), before);
}

void UploadsTest::forgetsUploadsAfterADay()
{
    const QByteArray upload = reserve({4});
    put(upload, 0, "ab");
    m_api->advance(Uploads::lifeMs - 1);
    m_token = m_api->token(maja, harbour); // the session has ended long before
    QCOMPARE(receivedOf(put(upload, 2, "c")), 3);
    m_api->advance(1);
    QCOMPARE(put(upload, 3, "d").status, 404);
    QCOMPARE(commit(upload, {sha("abcd")}).status, 404);
    QCOMPARE(parts(), 1);
    m_api->store().uploads.forgetExpired();
    QCOMPARE(parts(), 0);
}

void UploadsTest::dropsUploads()
{
    const QByteArray upload = reserve({4});
    put(upload, 0, "ab");
    QCOMPARE(parts(), 1);
    QCOMPARE(call("DELETE", upload).status, 204);
    QCOMPARE(parts(), 0);
    QCOMPARE(call("DELETE", upload).status, 404);
    QCOMPARE(put(upload, 2, "cd").status, 404);
    QCOMPARE(call("DELETE", "/v1/uploads/..%2F..%2Flock").status, 404);
}

void UploadsTest::keepsEqualBytesOnce()
{
    const QByteArray first = newAsset("same");
    const QByteArray second = newAsset("same");
    QVERIFY(first != second);
    Zel::Store &store = m_api->store();
    const Zel::BlobId blob{harbour, QString::fromLatin1(sha("same"))};
    QVERIFY(store.blobs.has(blob));
    const auto purgeOne = [&](const QByteArray &guid) {
        QCOMPARE(call("DELETE", "/v1/assets/" + guid).status, 204);
        QCOMPARE(store.assets.purge(m_api->now() + 1), 1);
    };
    purgeOne(first);
    QVERIFY(store.blobs.has(blob));
    QCOMPARE(m_api->call("GET", addressOf(second), QString()).body, QByteArray("same"));
    purgeOne(second);
    QVERIFY(!store.blobs.has(blob));
}

/// By two daemons of the same database.
void UploadsTest::manyCommitsAtOnceMakeOneAsset()
{
    const auto other = otherDaemon();
    const auto session = m_api->store().sessions.find(m_token);
    const Zel::AssetUser user{harbour, session->userId, session->role};
    for (int round = 0; round < 5; ++round) {
        const qsizetype before = listed().size();
        const QByteArray bytes = "round " + QByteArray::number(round);
        const QByteArray upload = reserve({bytes.size()});
        QCOMPARE(put(upload, 0, bytes).status, 200);
        const QString id = partOf(upload).uploadId;
        const QStringList checksums{QString::fromLatin1(sha(bytes))};
        std::mutex mutex;
        QSet<QString> guids;
        QList<int> outcomes;
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                Zel::Store &store = i % 2 == 0 ? m_api->store() : *other;
                Uploads::Commit commit;
                do { // as a client does that is told to try again
                    commit = store.uploads.commit(user, id, checksums);
                } while (commit.outcome == Uploads::Outcome::Busy);
                const std::lock_guard lock(mutex);
                guids.insert(commit.guid);
                outcomes << int(commit.outcome);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(outcomes, QList<int>(8, int(Uploads::Outcome::Done)));
        QCOMPARE(guids.size(), 1);
        QVERIFY(!guids.contains(QString()));
        QCOMPARE(listed().size(), before + 1);
        QCOMPARE(parts(), 0);
        QCOMPARE(HttpProbe::request(m_api->port(), "GET", addressOf(guids.constBegin()->toLatin1()))
                     .body,
                 bytes);
    }
}

ZEL_TEST_MAIN(UploadsTest)
#include "tst_uploads.moc"
