// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/databaseblobs.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSet>
#include <QTest>
#include <QThread>
#include <QUrl>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

using namespace ZelTest;
using Zel::Uploads;

namespace {

constexpr qint64 brightwater = 1001;
constexpr qint64 harbour = 1002;
const QString maja = QStringLiteral("maja");
const QString tomas = QStringLiteral("tomas");

QByteArray sha(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

QJsonObject fileOf(const QString &name, double size)
{
    return {{QStringLiteral("name"), name}, {QStringLiteral("size"), size}};
}

QJsonObject uploadOf(const QJsonArray &files, int folder = 0)
{
    return {{QStringLiteral("name"), QStringLiteral("An asset")},
            {QStringLiteral("detail"), QString()},
            {QStringLiteral("folderId"), folder},
            {QStringLiteral("files"), files}};
}

QString detailOf(const HttpReply &reply)
{
    return reply.json().value(QLatin1String("detail")).toString();
}

qint64 receivedOf(const HttpReply &reply)
{
    return reply.json().value(QLatin1String("received")).toInteger(-1);
}

} // namespace

/// Uploads, and the addresses of what they become, call by call over a socket.
class UploadsTest : public TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::addColumn<bool>("chunks");
        QTest::newRow("sqlite, files") << false << false;
        QTest::newRow("sqlite, chunks") << false << true;
        QTest::newRow("postgres, chunks") << true << true;
    }

    void init()
    {
        TestCase::init();
        QFETCH_GLOBAL(bool, postgres);
        QFETCH_GLOBAL(bool, chunks);
        m_chunks = chunks;
        // One service for all rows of a function.
        const QByteArray function = QTest::currentTestFunction() + QByteArray::number(postgres) +
                                    QByteArray::number(chunks);
        if (m_function != function) {
            m_api.reset();
            m_api = std::make_unique<ApiFixture>(m_databases.filled(postgres, kind()));
            m_function = function;
        }
        m_token = m_api->token(maja, harbour);
    }

    void cleanupTestCase() { m_api.reset(); }

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
    void answersTagsAndRanges_data();
    void answersTagsAndRanges();
    void answersAnyRangeOfALongFile();
    void sendsFilesAsNothingThatActs();
    void endsAddressesOfThumbnailsOnly();

    void manyCommitsAtOnceMakeOneAsset();
    void addressesLeadNowhereElse_data();
    void addressesLeadNowhereElse();

private:
    HttpReply call(const QByteArray &method, const QByteArray &target,
                   const QByteArray &body = QByteArray())
    {
        return m_api->call(method, target, m_token, body);
    }

    /// The path of an upload that is reserved for one file, or several.
    QByteArray reserve(const QList<qint64> &sizes, int folder = 0)
    {
        QJsonArray files;
        for (const qint64 size : sizes)
            files.append(fileOf(QStringLiteral("file %1.bin").arg(files.size()), double(size)));
        const HttpReply reply = call("POST", "/v1/uploads", json(uploadOf(files, folder)));
        if (reply.status != 201)
            throw std::runtime_error("no upload: " + reply.body.toStdString());
        return "/v1/uploads/" + reply.json().value(QLatin1String("uploadId")).toString().toLatin1();
    }

    HttpReply put(const QByteArray &upload, qint64 offset, const QByteArray &bytes, int file = 0)
    {
        return call("PUT",
                    upload + "/files/" + QByteArray::number(file) +
                        "?offset=" + QByteArray::number(offset),
                    bytes);
    }

    HttpReply commit(const QByteArray &upload, const QByteArrayList &checksums)
    {
        QJsonArray list;
        for (const QByteArray &checksum : checksums)
            list.append(QString::fromLatin1(checksum));
        return call("POST", upload + "/commit", json({{QStringLiteral("checksums"), list}}));
    }

    QByteArray newAsset(const QByteArray &bytes)
    {
        const QByteArray upload = reserve({bytes.size()});
        put(upload, 0, bytes);
        return commit(upload, {sha(bytes)})
            .json()
            .value(QLatin1String("guid"))
            .toString()
            .toLatin1();
    }

    QByteArray addressOf(const QByteArray &guid)
    {
        return call("GET", "/v1/assets/" + guid + "/value")
            .json()
            .value(QLatin1String("value"))
            .toString()
            .toLatin1();
    }

    QJsonArray listed(int folder = 0)
    {
        return call("GET", "/v1/asset-folders/" + QByteArray::number(folder) + "/assets")
            .json()
            .value(QLatin1String("assets"))
            .toObject()
            .value(QLatin1String("rows"))
            .toArray();
    }

    Zel::BlobKind kind() const { return m_chunks ? Zel::BlobKind::Database : Zel::BlobKind::Files; }

    /// How many files are on their way.
    qint64 parts() const
    {
        if (!m_chunks)
            return QDir(m_api->files() + QStringLiteral("/uploads")).entryList(QDir::Files).size();
        return m_api->database()
            .runNative(QStringLiteral("SELECT COUNT(*) FROM blob_content WHERE sha IS NULL"))
            .toLongLong();
    }

    /// Begins to send a file and returns when the service waits for its bytes.
    void begin(HttpProbe &probe, const QByteArray &upload, qint64 size) const
    {
        probe.send(
            "PUT " + upload + "/files/0?offset=0 HTTP/1.1\r\nHost: 127.0.0.1:" +
            QByteArray::number(m_api->port()) + "\r\nAuthorization: Bearer " + m_token.toLatin1() +
            "\r\nExpect: 100-continue\r\nContent-Length: " + QByteArray::number(size) + "\r\n\r\n");
        QCOMPARE(probe.read().status, 100);
    }

    /// The bytes as another daemon of the same database sees them.
    std::unique_ptr<Zel::Store> otherDaemon()
    {
        return std::make_unique<Zel::Store>(
            m_api->database(), Zel::PasswordHasher::Cost::Minimal, [this] { return m_api->now(); },
            Zel::BlobPlace(kind(), m_api->files()));
    }

    static Zel::PartId partOf(const QByteArray &upload)
    {
        return {harbour, QString::fromLatin1(upload.mid(upload.lastIndexOf('/') + 1)), 0};
    }

    TestDatabases m_databases;
    std::unique_ptr<ApiFixture> m_api;
    QByteArray m_function;
    bool m_chunks = false;
    QString m_token;
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
    begin(slow, upload, 4);
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
        begin(broken, upload, 10);
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

void UploadsTest::answersTagsAndRanges_data()
{
    QTest::addColumn<QByteArrayList>("headers");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    const QByteArray whole = "0123456789";
    const auto row = [](const char *name, const QByteArrayList &headers, int status,
                        const QByteArray &body) {
        QTest::newRow(name) << headers << status << body;
    };
    row("no header", {}, 200, whole);
    row("the tag", {"If-None-Match: TAG"}, 304, {});
    row("among others", {"If-None-Match: \"x\", TAG"}, 304, {});
    row("weak", {"If-None-Match: W/TAG"}, 304, {});
    row("any", {"If-None-Match: *"}, 304, {});
    row("another tag", {"If-None-Match: \"x\""}, 200, whole);
    row("beginning", {"Range: bytes=0-3"}, 206, "0123");
    row("one byte", {"Range: bytes=9-9"}, 206, "9");
    row("to the end", {"Range: bytes=7-"}, 206, "789");
    row("beyond the end", {"Range: bytes=7-99999999999999"}, 206, "789");
    row("the last ones", {"Range: bytes=-2"}, 206, "89");
    row("more than there are", {"Range: bytes=-99"}, 206, whole);
    row("behind the end", {"Range: bytes=10-"}, 416, {});
    row("none of the last", {"Range: bytes=-0"}, 416, {});
    row("backwards", {"Range: bytes=5-3"}, 416, {});
    row("no number", {"Range: bytes=a-b"}, 200, whole);
    row("half a number", {"Range: bytes=a-3"}, 200, whole);
    row("no end at all", {"Range: bytes=-"}, 200, whole);
    row("a number too large", {"Range: bytes=99999999999999999999-"}, 416, {});
    row("signs", {"Range: bytes=+1-3"}, 200, whole);
    row("two ranges", {"Range: bytes=0-1,3-4"}, 200, whole);
    row("other units", {"Range: lines=0-1"}, 200, whole);
    row("if it is the same", {"Range: bytes=0-1", "If-Range: TAG"}, 206, "01");
    row("if it is another", {"Range: bytes=0-1", "If-Range: \"x\""}, 200, whole);
    row("if it is weakly the same", {"Range: bytes=0-1", "If-Range: W/TAG"}, 200, whole);
    row("tag before range", {"Range: bytes=0-1", "If-None-Match: TAG"}, 304, {});
}

void UploadsTest::answersTagsAndRanges()
{
    QFETCH(QByteArrayList, headers);
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    const QByteArray whole = "0123456789";
    const QByteArray address = addressOf(newAsset(whole));
    const QByteArray tag = '"' + sha(whole) + '"';
    for (QByteArray &header : headers)
        header.replace("TAG", tag);
    const HttpReply reply = m_api->request("GET", address, QByteArray(), headers);
    QCOMPARE(reply.status, status);
    if (status == 416) {
        QCOMPARE(reply.headers.value("content-range"), QByteArray("bytes */10"));
        return;
    }
    QCOMPARE(reply.body, body);
    QCOMPARE(reply.headers.value("etag"), tag);
    const HttpReply head = m_api->request("HEAD", address, QByteArray(), headers);
    QCOMPARE(head.status, status);
    QCOMPARE(head.headers.value("content-length"), reply.headers.value("content-length"));
}

void UploadsTest::answersAnyRangeOfALongFile()
{
    QByteArray bytes(5'000'001, Qt::Uninitialized);
    QRandomGenerator random(20261121);
    for (char &byte : bytes)
        byte = static_cast<char>(random.generate());
    const QByteArray address = addressOf(newAsset(bytes));
    const auto range = [&](qint64 first, qint64 last) {
        return HttpProbe::request(
            m_api->port(), "GET", address, QByteArray(),
            {"Range: bytes=" + QByteArray::number(first) + '-' + QByteArray::number(last)});
    };
    constexpr qint64 border = Zel::DatabaseBlobs::chunkBytes;
    QCOMPARE(range(border - 2, border + 1).body, bytes.mid(border - 2, 4));
    for (int i = 0; i < 100; ++i) {
        const qint64 first = random.bounded(bytes.size());
        const qint64 last = random.bounded(first, bytes.size());
        const HttpReply reply = range(first, last);
        QCOMPARE(reply.status, 206);
        QVERIFY(reply.body == bytes.mid(first, last - first + 1));
    }
    QVERIFY(m_api->call("GET", address, QString()).body == bytes);
}

void UploadsTest::sendsFilesAsNothingThatActs()
{
    const QByteArray address = addressOf(newAsset("<html><script>alert(1)</script></html>"));
    const HttpReply reply = m_api->call("GET", address, QString());
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.headers.value("x-content-type-options"), QByteArray("nosniff"));
    QCOMPARE(reply.headers.value("content-security-policy"),
             QByteArray("default-src 'none'; sandbox"));
    QCOMPARE(reply.headers.value("accept-ranges"), QByteArray("bytes"));
}

void UploadsTest::endsAddressesOfThumbnailsOnly()
{
    QImage picture(300, 300, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG"));
    const QByteArray address = addressOf(newAsset(buffer.data()));
    QVERIFY2(address.startsWith("/a/"), address.constData());
    const QString whole = listed().at(0).toArray().at(4).toString();
    const QByteArray thumbnail = QUrl(whole).toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    const auto status = [this](const QByteArray &target) {
        return m_api->call("GET", target, QString()).status;
    };
    QCOMPARE(status(thumbnail), 200);
    // The same address for a while, so that it can be kept in a cache.
    QCOMPARE(listed().at(0).toArray().at(4).toString(), whole);
    constexpr qint64 hour = 60LL * 60 * 1000;
    m_api->advance(24 * hour);
    QCOMPARE(status(thumbnail), 200);
    m_api->advance(hour + 1);
    const HttpReply ended = m_api->call("GET", thumbnail, QString());
    QCOMPARE(ended.status, 403);
    QCOMPARE(ended.code(), QStringLiteral("expired-address"));
    m_api->advance(20LL * 365 * 24 * hour);
    QCOMPARE(status(address), 200);
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

void UploadsTest::addressesLeadNowhereElse_data()
{
    QTest::addColumn<QByteArray>("path");
    const auto row = [](const char *path) { QTest::newRow(path) << QByteArray(path); };
    for (const char *path :
         {"/a/../../../etc/passwd", "/a/%2e%2e/%2e%2e/%2e%2e/etc/passwd",
          "/a/%2e%2e%2f%2e%2e%2f%2e%2e%2fetc%2fpasswd/x", "/a/..%2f..%2fworkspace.db/x?s=1002.x",
          "/a/..\\..\\workspace.db/x", "/a//etc/passwd", "/a/{guid}/../../../etc/passwd",
          "/a/{guid}/%2e%2e%2f0/x", "/a/{guid}/..%2f..%2fuploads/x", "/a/%00/x", "/a/{guid}%00/x",
          "/a/.../x", "/a/./x"})
        row(path);
    for (const char *path : {"/t/../../../etc/passwd", "/t/{guid}/../256", "/t/{guid}/%2e%2e%2f256",
                             "/t/{guid}/256%2f..%2f..", "/t/..%2f..%2fworkspace.db/256",
                             "/t/{guid}/../../../etc/passwd"})
        row(path);
    for (const char *path :
         {"/p/../../../etc/passwd", "/p/{guid}/../../workspace.db", "/p/..%2f..%2fworkspace.db/1",
          "/p/{guid}/%2e%2e%2f%2e%2e%2fetc%2fpasswd"})
        row(path);
}

void UploadsTest::addressesLeadNowhereElse()
{
    QFETCH(QByteArray, path);
    const QByteArray guid = newAsset("what is asked for");
    const QByteArray address = addressOf(guid);
    QCOMPARE(HttpProbe::request(m_api->port(), "GET", address).body,
             QByteArray("what is asked for"));
    path.replace("{guid}", guid);
    // With the signature of an asset, too.
    for (const QByteArray &signature : {QByteArray(), address.mid(address.indexOf('?'))}) {
        const HttpReply reply =
            HttpProbe::request(m_api->port(), "GET", path.contains('?') ? path : path + signature);
        QVERIFY2(reply.status >= 400 && reply.status < 500, reply.body.constData());
        QVERIFY2(!reply.code().isEmpty(), reply.body.constData());
    }
}

ZEL_TEST_MAIN(UploadsTest)
#include "tst_uploads.moc"
