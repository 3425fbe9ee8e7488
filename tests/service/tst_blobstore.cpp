// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/blobstore.h"

#include "service/store/databaseblobs.h"
#include "service/store/databaseerror.h"
#include "service/store/fileblobs.h"
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <atomic>
#include <csignal>
#include <thread>

#include <sys/resource.h>

using namespace Zel;

namespace {

constexpr qint64 chunk = DatabaseBlobs::chunkBytes;
constexpr qint64 account = 7;
constexpr qint64 start = 1'780'000'000'000;

QByteArray bytesOf(qint64 size, quint32 seed = 20261121)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char &byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

QString shaOf(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

/// In pieces as they come from a socket.
void append(BlobPart &part, const QByteArray &bytes)
{
    constexpr qsizetype piece = 256 * 1024;
    for (qsizetype at = 0; at < bytes.size(); at += piece)
        part.append(bytes.constData() + at, std::min(piece, bytes.size() - at));
}

PartId partId(const QString &uploadId = QStringLiteral("upload"))
{
    return {account, uploadId, 0};
}

} // namespace

/// Bytes in files and in chunks, on SQLite and on PostgreSQL. Two stores of one database stand for
/// two daemons; where the bytes are in the database they share nothing else.
class BlobStoreTest : public ZelTest::TestCase
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

    void init();
    void cleanup();

    void givesBackWhatItWasGiven_data();
    void givesBackWhatItWasGiven();
    void readsAnySection();
    void goesOnAtAnotherDaemon();
    void letsOneOfTwoWritersThrough();
    void takesNothingForAPartThatWasDropped();
    void tellsWhatCameBeforeFromWhatIsNotWritten();
    void keepsEqualBytesOnce();
    void keepsThumbnailsWithTheirBlob();
    void namesNothingThatIsNotThere();
    void namesNothingThatWasBegunAnewSinceItWasCompared();
    void namesNothingThatWasBegunAnewWhileItWasOpen();
    void clearsAwayWhatWasForgotten();
    void clearsAwayPartsThatNobodyKnows();
    void isFullWhenTheDatabaseIs();
    void findsDamage();
    void refusesOtherBytesThanAreNamed();
    void makesFilesThatHaveNoName();
    void losesNothingToAPurgeAtTheSameTime();
    void becomesAnAssetOnceWhoeverAsks();
    void isDecidedOnce();

private:
    std::unique_ptr<Store> newStore(const ThumbnailMaker &thumbnailMaker = Thumbnails::decodeFile)
    {
        return std::make_unique<Store>(
            *m_database, PasswordHasher::Cost::Minimal, [this] { return m_now.load(); },
            BlobPlace(kind(), m_files->path()), thumbnailMaker);
    }

    BlobKind kind() const { return m_chunks ? BlobKind::Database : BlobKind::Files; }

    /// A blob with a name, as the end of an upload makes it.
    BlobId stored(const QByteArray &bytes, const QByteArrayList &thumbnails = {})
    {
        const BlobId id{account, shaOf(bytes)};
        CheckedPart checked{partId(), QString()};
        {
            const auto part = m_store->blobs.openPart(partId());
            append(*part, bytes);
            m_store->blobs.prepare(*part, id.sha, thumbnails);
            checked.identity = part->identity();
        }
        m_database->tx([&] { m_store->blobs.name(checked, id); });
        m_store->blobs.dropPart(partId());
        return id;
    }

    qint64 count(const char *what)
    {
        return m_database->runNative(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(what))
            .toLongLong();
    }

    void change(const QString &sql)
    {
        m_database->tx([&] { m_database->runNative(sql); });
    }

    AssetUser newUser();
    QString upload(Store &store, const AssetUser &user, const QByteArrayList &files);
    void fill(Store &store, const AssetUser &user, const QString &id, qint64 position,
              const QByteArray &bytes);

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Store> m_other;
    std::atomic<qint64> m_now{start};
    bool m_chunks = false;
    bool m_postgres = false;
};

void BlobStoreTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    QFETCH_GLOBAL(bool, chunks);
    m_chunks = chunks;
    m_postgres = postgres;
    m_now = start;
    m_files = std::make_unique<QTemporaryDir>();
    m_database = std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = newStore();
    m_other = newStore();
}

void BlobStoreTest::cleanup()
{
    if (m_chunks)
        QCOMPARE(QDir(m_files->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
    m_store.reset();
    m_other.reset();
    m_database.reset();
    m_files.reset();
}

void BlobStoreTest::givesBackWhatItWasGiven_data()
{
    QTest::addColumn<qint64>("size");
    for (const qint64 size :
         {qint64(0), qint64(1), chunk - 1, chunk, chunk + 1, 2 * chunk, 3 * chunk + 7})
        QTest::addRow("%lld", static_cast<long long>(size)) << size;
}

void BlobStoreTest::givesBackWhatItWasGiven()
{
    QFETCH(qint64, size);
    const QByteArray bytes = bytesOf(size);
    const BlobId id{account, shaOf(bytes)};
    stored(bytes);
    const auto source = m_other->blobs.open(id);
    QVERIFY(source);
    QCOMPARE(source->size(), size);
    QVERIFY(source->readAll() == bytes);
    QCOMPARE(m_other->blobs.verify(id), BlobState::Whole);
    QVERIFY(!m_other->blobs.open({account, shaOf("another")}));
    if (m_chunks)
        QVERIFY(!m_other->blobs.open({account + 1, id.sha}));
    QList<std::pair<QString, qint64>> seen;
    m_other->blobs.visit([&seen](const BlobId &blob, qint64 blobSize) {
        seen.append({blob.sha, blobSize});
    });
    QCOMPARE(seen, (QList<std::pair<QString, qint64>>{{id.sha, size}}));
}

void BlobStoreTest::readsAnySection()
{
    const QByteArray bytes = bytesOf(3 * chunk + 12345);
    const auto source = m_store->blobs.open(stored(bytes));
    const auto section = [&source](qint64 first, qint64 length) {
        QByteArray all;
        while (all.size() < length) {
            const QByteArray piece = source->read(first + all.size(), length - all.size());
            if (piece.isEmpty())
                break;
            all += piece;
        }
        return all;
    };
    for (const qint64 border : {chunk, 2 * chunk, 3 * chunk})
        QVERIFY(section(border - 5, 10) == bytes.mid(border - 5, 10));
    QRandomGenerator random(5);
    for (int i = 0; i < 100; ++i) {
        const qint64 first = random.bounded(bytes.size());
        const qint64 length = 1 + random.bounded(bytes.size() - first);
        QVERIFY(section(first, length) == bytes.mid(first, length));
    }
    QCOMPARE(source->read(bytes.size(), 1), QByteArray());
}

void BlobStoreTest::goesOnAtAnotherDaemon()
{
    const QByteArray bytes = bytesOf(3 * chunk + 100);
    const qint64 middle = chunk + 100'000;
    PartProgress progress;
    {
        const auto part = m_store->blobs.openPart(partId());
        append(*part, bytes.left(middle));
        part->flush();
        progress = part->takeProgress();
    }
    {
        const auto part = m_other->blobs.openPart(partId());
        QCOMPARE(part->size(), middle);
        append(*part, bytes.mid(middle, chunk));
        part->flush();
    }
    // The first one again, with what it knows of the beginning.
    const auto part = m_store->blobs.openPart(partId(), std::move(progress));
    QCOMPARE(part->size(), middle + chunk);
    append(*part, bytes.mid(middle + chunk));
    part->flush();
    QCOMPARE(part->checksum(), shaOf(bytes));
    QVERIFY(part->readAll() == bytes);
}

void BlobStoreTest::letsOneOfTwoWritersThrough()
{
    const QByteArray mine = bytesOf(chunk + 10, 1);
    const QByteArray theirs = bytesOf(chunk + 10, 2);
    auto part = m_store->blobs.openPart(partId());
    QVERIFY2(!m_store->blobs.openPart(partId()), "one of the same daemon is refused at once");
    auto other = m_other->blobs.openPart(partId());
    QCOMPARE(bool(other), m_chunks); // the lock on a file is seen by everybody
    if (other) {
        append(*part, mine.left(10));
        append(*other, theirs.left(20));
        other->flush();
        QVERIFY_THROWS_EXCEPTION(BlobBusy, part->flush());
        QCOMPARE(part->size(), 0);
        part->flush(); // nothing is left of it
        append(*other, theirs.mid(20));
        other->flush();
        QCOMPARE(other->checksum(), shaOf(theirs));
        other.reset();
    }
    PartProgress progress = part->takeProgress();
    part.reset();
    // Who was refused goes on behind what the other one wrote.
    part = m_store->blobs.openPart(partId(), std::move(progress));
    QVERIFY(part);
    const QByteArray before = m_chunks ? theirs : QByteArray();
    QCOMPARE(part->size(), before.size());
    append(*part, mine);
    part->flush();
    QCOMPARE(part->checksum(), shaOf(before + mine));
}

void BlobStoreTest::takesNothingForAPartThatWasDropped()
{
    auto part = m_store->blobs.openPart(partId());
    append(*part, "begun");
    part->flush();
    m_other->blobs.dropPart(partId());
    append(*part, "more");
    if (m_chunks)
        QVERIFY_THROWS_EXCEPTION(BlobBusy, part->flush());
    else
        part->flush();
    part.reset();
    QCOMPARE(m_other->blobs.openPart(partId())->size(), 0);
    QCOMPARE(count("blob_chunk"), 0);
    QCOMPARE(count("blob_content"), 0);
}

void BlobStoreTest::tellsWhatCameBeforeFromWhatIsNotWritten()
{
    {
        const auto part = m_store->blobs.openPart(partId());
        append(*part, "0123");
        part->flush();
        append(*part, "45");
        QCOMPARE(part->size(), 6);
        QCOMPARE(part->readAll(), QByteArray("012345"));
        QCOMPARE(part->checksum(), shaOf("012345"));
    }
    // Bytes given to the system stay there; those gathered for a chunk were never told of.
    QCOMPARE(m_other->blobs.openPart(partId())->size(), m_chunks ? 4 : 6);
}

void BlobStoreTest::keepsEqualBytesOnce()
{
    const QByteArray bytes = bytesOf(chunk + 1);
    stored(bytes);
    const qint64 chunks = count("blob_chunk");
    const BlobId again = stored(bytes);
    QCOMPARE(count("blob_chunk"), chunks);
    QCOMPARE(m_store->blobs.verify(again), BlobState::Whole);
}

void BlobStoreTest::keepsThumbnailsWithTheirBlob()
{
    const QByteArrayList thumbnails{"large", "middle", "small"};
    const QByteArray bytes = "a picture";
    const BlobId id = stored(bytes);
    QCOMPARE(m_store->blobs.thumbnailsOf(id), QByteArrayList());
    // They come with the second picture of the same bytes, too.
    stored(bytes, thumbnails);
    QCOMPARE(m_other->blobs.thumbnailsOf(id), thumbnails);
    QCOMPARE(m_other->blobs.openThumbnail(id, 128)->readAll(), QByteArray("middle"));
    QVERIFY(!m_other->blobs.openThumbnail(id, 100));
    m_database->tx([&] { m_store->blobs.forget(id); });
    m_store->blobs.clear({id.sha});
    QCOMPARE(m_other->blobs.thumbnailsOf(id), QByteArrayList());
    QCOMPARE(count("blob_thumbnail"), 0);
}

void BlobStoreTest::namesNothingThatIsNotThere()
{
    const BlobId id{account, shaOf("x")};
    QVERIFY_THROWS_EXCEPTION(BlobGone, m_database->tx([&] { m_store->blobs.expect(id); }));
    if (m_chunks)
        QVERIFY_THROWS_EXCEPTION(BlobGone, m_database->tx([&] {
            m_store->blobs.name({partId(), QString()}, id);
        }));
    stored("x");
    m_database->tx([&] { m_store->blobs.expect(id); });
}

/// Another call says another checksum of a file while the first one is at the next file, and the
/// file is sent anew.
void BlobStoreTest::namesNothingThatWasBegunAnewSinceItWasCompared()
{
    const AssetUser user = newUser();
    const QByteArray bytes = "these bytes";
    const QByteArray picture = "\x89PNG\r\n\x1a\n";
    QString id;
    Uploads::Commit meanwhile;
    const auto store = newStore([&](const QString &) {
        meanwhile = m_other->uploads.commit(user, id, {shaOf("others"), shaOf("others")});
        fill(*m_other, user, id, 0, "other bytes");
        return QByteArrayList();
    });
    id = upload(*store, user, {bytes, picture});
    const auto made = store->uploads.commit(user, id, {shaOf(bytes), shaOf(picture)});
    QCOMPARE(meanwhile.outcome, Uploads::Outcome::Checksum);
    // Over files the first one has its name from the moment it was compared.
    const BlobId blob{account, shaOf(bytes)};
    QCOMPARE(made.outcome, m_chunks ? Uploads::Outcome::Incomplete : Uploads::Outcome::Done);
    QCOMPARE(m_store->blobs.verify(blob), m_chunks ? BlobState::Missing : BlobState::Whole);
    QCOMPARE(count("asset"), m_chunks ? 0 : 1);
}

void BlobStoreTest::namesNothingThatWasBegunAnewWhileItWasOpen()
{
    const BlobId id{account, shaOf("these bytes")};
    const auto part = m_store->blobs.openPart(partId());
    append(*part, "these bytes");
    part->flush();
    m_other->blobs.dropPart(partId());
    const auto anew = m_other->blobs.openPart(partId());
    append(*anew, "these");
    anew->flush();
    const auto name = [&] {
        m_store->blobs.prepare(*part, id.sha, {});
        m_database->tx([&] { m_store->blobs.name({partId(), part->identity()}, id); });
    };
    QVERIFY_THROWS_EXCEPTION(BlobGone, name());
    QVERIFY(!m_store->blobs.has(id));
}

void BlobStoreTest::clearsAwayWhatWasForgotten()
{
    const BlobId id = stored(bytesOf(2 * chunk));
    const BlobId kept = stored("kept");
    m_database->tx([&] { m_store->blobs.forget(id); });
    m_store->blobs.clear({id.sha});
    QCOMPARE(m_store->blobs.verify(id), BlobState::Missing);
    QCOMPARE(m_store->blobs.verify(kept), BlobState::Whole);
    QCOMPARE(count("blob_chunk"), m_chunks ? 1 : 0);
}

void BlobStoreTest::clearsAwayPartsThatNobodyKnows()
{
    const auto begin = [this](const QString &uploadId) {
        const auto part = m_store->blobs.openPart(partId(uploadId));
        append(*part, "begun");
        part->flush();
    };
    const auto size = [this](const QString &uploadId) {
        return m_store->blobs.openPart(partId(uploadId))->size();
    };
    const QString old = QStringLiteral("old");
    begin(old);
    m_now = start + DatabaseBlobs::partLifeMs + 1;
    if (!m_chunks) {
        QFile file(FileBlobs(m_files->path()).partPath(partId(old)));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(
            QDateTime::currentDateTimeUtc().addMSecs(-DatabaseBlobs::partLifeMs - 1),
            QFileDevice::FileModificationTime));
    }
    const QString fresh = QStringLiteral("fresh");
    begin(fresh);
    const BlobId blob = stored("made long ago");
    m_store->blobs.clear({});
    QCOMPARE(size(old), 0);
    QCOMPARE(size(fresh), 5);
    QCOMPARE(m_store->blobs.verify(blob), BlobState::Whole);
}

void BlobStoreTest::isFullWhenTheDatabaseIs()
{
    const auto setFull = [this](bool full) {
        if (!m_chunks) {
            const struct rlimit limit = {full ? rlim_t(chunk) : RLIM_INFINITY, RLIM_INFINITY};
            QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        } else if (!m_postgres) {
            const qint64 pages =
                m_database->runNative(QStringLiteral("PRAGMA page_count")).toLongLong();
            constexpr qint64 pageBytes = 4096;
            const qint64 more = chunk / pageBytes + 24; // room for one chunk and not for two
            m_database->runNative(
                QStringLiteral("PRAGMA max_page_count = %1").arg(full ? pages + more : 1'000'000));
        } else if (full) {
            change(QStringLiteral("CREATE FUNCTION full_disk() RETURNS trigger LANGUAGE plpgsql AS "
                                  "'BEGIN RAISE EXCEPTION USING ERRCODE = ''53100''; END'"));
            change(QStringLiteral("CREATE TRIGGER full_disk BEFORE INSERT ON blob_chunk FOR EACH "
                                  "ROW WHEN (NEW.first_byte > 0) EXECUTE FUNCTION full_disk()"));
        } else {
            change(QStringLiteral("DROP TRIGGER full_disk ON blob_chunk"));
        }
    };
    std::signal(SIGXFSZ, SIG_IGN);
    const QByteArray bytes = bytesOf(2 * chunk);
    setFull(true);
    {
        const auto part = m_store->blobs.openPart(partId());
        bool full = false;
        try {
            append(*part, bytes);
        } catch (const BlobError &error) {
            full = error.isFull();
        }
        QVERIFY(full);
        QCOMPARE(part->size(), chunk);
    }
    setFull(false);
    const auto part = m_store->blobs.openPart(partId());
    QCOMPARE(part->size(), chunk);
    append(*part, bytes.mid(chunk));
    part->flush();
    QCOMPARE(part->checksum(), shaOf(bytes));
}

void BlobStoreTest::findsDamage()
{
    const BlobId id = stored(bytesOf(2 * chunk + 5));
    const auto damage = [&](const QString &sql) {
        if (m_chunks) {
            change(sql);
            return;
        }
        QFile file(FileBlobs(m_files->path()).blobPath(id.sha));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write("other bytes") > 0);
    };
    damage(m_postgres
               ? QStringLiteral("UPDATE blob_chunk SET bytes = '\\x0102030405' WHERE size = 5")
               : QStringLiteral("UPDATE blob_chunk SET bytes = x'0102030405' WHERE size = 5"));
    QCOMPARE(m_store->blobs.verify(id), BlobState::Damaged);
    if (!m_chunks)
        return;
    damage(QStringLiteral("DELETE FROM blob_chunk WHERE first_byte = %1").arg(chunk));
    QCOMPARE(m_store->blobs.verify(id), BlobState::Damaged);
    QVERIFY_THROWS_EXCEPTION(BlobError, m_store->blobs.open(id)->readAll());
}

void BlobStoreTest::refusesOtherBytesThanAreNamed()
{
    MemorySource bytes("these bytes");
    const BlobId id{account, shaOf("others")};
    QVERIFY_THROWS_EXCEPTION(BlobError, m_store->blobs.add(id, bytes, {}));
    QVERIFY(!m_store->blobs.has(id));
    QCOMPARE(count("blob_content"), 0);
    const BlobId right{account, shaOf("these bytes")};
    m_store->blobs.add(right, bytes, {"1", "2", "3"});
    m_store->blobs.add(right, bytes, {});
    QCOMPARE(m_other->blobs.open(right)->readAll(), QByteArray("these bytes"));
    QCOMPARE(m_other->blobs.thumbnailsOf(right), (QByteArrayList{"1", "2", "3"}));
}

void BlobStoreTest::makesFilesThatHaveNoName()
{
    const QByteArray bytes = bytesOf(chunk + 100);
    const auto part = m_store->blobs.openPart(partId());
    append(*part, bytes);
    const auto before = QDir::temp().entryList({QStringLiteral("zel-??????")}, QDir::Files);
    const auto local = part->localFile();
    QFile file(local->path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes);
    if (m_chunks)
        QCOMPARE(QDir::temp().entryList({QStringLiteral("zel-??????")}, QDir::Files), before);
}

AssetUser BlobStoreTest::newUser()
{
    return m_database->tx([&] {
        m_store->accounts.add({account, QStringLiteral("Account")});
        const User user =
            m_store->users.add(QStringLiteral("ann"), QStringLiteral("Ann"), QStringLiteral("x"));
        m_store->accounts.setRole(account, user.userId, QStringLiteral("owner"));
        return AssetUser{account, user.userId, QStringLiteral("owner")};
    });
}

/// The id of an upload with its bytes.
QString BlobStoreTest::upload(Store &store, const AssetUser &user, const QByteArrayList &files)
{
    QString id;
    NewUpload wanted{QStringLiteral("a"), {}, 0, {}};
    for (const QByteArray &bytes : files)
        wanted.files.append({QStringLiteral("a"), bytes.size()});
    if (store.uploads.reserve(user, wanted, id) != Uploads::Outcome::Done)
        throw std::runtime_error("no upload");
    for (qsizetype i = 0; i < files.size(); ++i)
        fill(store, user, id, i, files.at(i));
    return id;
}

void BlobStoreTest::fill(Store &store, const AssetUser &user, const QString &id, qint64 position,
                         const QByteArray &bytes)
{
    Uploads::Part part;
    if (store.uploads.open(user, id, position, part) != Uploads::Outcome::Done)
        throw std::runtime_error("no part");
    part.part->append(bytes.constData(), bytes.size());
    store.uploads.close(part);
}

void BlobStoreTest::losesNothingToAPurgeAtTheSameTime()
{
    constexpr int rounds = 25;
    const AssetUser user = newUser();
    const QByteArray bytes = "the same bytes each time";
    std::atomic<bool> ended{false};
    std::atomic<int> failures{0};
    std::thread purger([&] {
        while (!ended) {
            try {
                m_other->assets.purge(m_now + 1);
            } catch (const DatabaseError &error) {
                failures += error.kind() != DatabaseError::Kind::Conflict &&
                            error.kind() != DatabaseError::Kind::Busy;
            }
        }
    });
    QStringList kept;
    for (int i = 0; i < rounds; ++i) {
        const auto made =
            m_store->uploads.commit(user, upload(*m_store, user, {bytes}), {shaOf(bytes)});
        if (made.outcome != Uploads::Outcome::Done)
            ++failures;
        QList<AssetFile> files;
        const auto found = m_store->assets.find(user, made.guid, files);
        const auto source = m_store->blobs.open({account, shaOf(bytes)});
        if (found != Assets::Outcome::Done || !source || source->readAll() != bytes)
            ++failures;
        if (m_store->assets.remove(user, made.guid) != Assets::Outcome::Done)
            ++failures;
    }
    ended = true;
    purger.join();
    QCOMPARE(failures.load(), 0);
    m_store->assets.purge(m_now + 1);
    QCOMPARE(count("blob_chunk"), 0);
    QVERIFY(!m_store->blobs.has({account, shaOf(bytes)}));
}

void BlobStoreTest::becomesAnAssetOnceWhoeverAsks()
{
    const AssetUser user = newUser();
    for (int round = 0; round < 10; ++round) {
        const QByteArray bytes = "round " + QByteArray::number(round);
        const QString id = upload(*m_store, user, {bytes});
        Uploads::Commit one;
        Uploads::Commit two;
        std::thread thread([&] { one = m_store->uploads.commit(user, id, {shaOf(bytes)}); });
        two = m_other->uploads.commit(user, id, {shaOf(bytes)});
        thread.join();
        // One may find the other at it and say so.
        const auto isFine = [](const Uploads::Commit &commit) {
            return commit.outcome == Uploads::Outcome::Done ||
                   commit.outcome == Uploads::Outcome::Busy;
        };
        QVERIFY(isFine(one) && isFine(two));
        QVERIFY(one.outcome == Uploads::Outcome::Done || two.outcome == Uploads::Outcome::Done);
        if (one.outcome == two.outcome)
            QCOMPARE(one.guid, two.guid);
        QCOMPARE(count("asset"), round + 1);
        QCOMPARE(m_store->blobs.verify({account, shaOf(bytes)}), BlobState::Whole);
        QCOMPARE(count("blob_content WHERE sha IS NULL"), 0);
    }
}

void BlobStoreTest::isDecidedOnce()
{
    QVERIFY(!decidedBlobKind(*m_database));
    QCOMPARE(decideBlobKind(*m_database, kind()), kind());
    QCOMPARE(decidedBlobKind(*m_database), kind());
    QCOMPARE(decideBlobKind(*m_database, std::nullopt), kind());
    const BlobKind another = m_chunks ? BlobKind::Files : BlobKind::Database;
    QVERIFY_THROWS_EXCEPTION(BlobKindError, decideBlobKind(*m_database, another));
    // Nobody asked for anything: in files, and so are those of before there was a choice.
    change(QStringLiteral("DELETE FROM service_setting"));
    QCOMPARE(decideBlobKind(*m_database, std::nullopt), BlobKind::Files);
    change(QStringLiteral("DELETE FROM service_setting"));
    change(QStringLiteral("INSERT INTO theme_preview (account_id, sha, size, mime) "
                          "VALUES (0, 'x', 1, 'image/png')"));
    QCOMPARE(decidedBlobKind(*m_database), BlobKind::Files);
    QVERIFY_THROWS_EXCEPTION(BlobKindError, decideBlobKind(*m_database, BlobKind::Database));
    change(QStringLiteral("UPDATE service_setting SET value = 'cupboard'"));
    QVERIFY_THROWS_EXCEPTION(DatabaseError, decidedBlobKind(*m_database));
}

ZEL_TEST_MAIN(BlobStoreTest)
#include "tst_blobstore.moc"
