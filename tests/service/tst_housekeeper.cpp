// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/housekeeper.h"

#include "service/store/fileblobs.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace ZelTest;
using namespace Zel;
using Service::Housekeeper;

/// What clears up while the service runs.
class HousekeeperTest : public TestCase
{
    Q_OBJECT

private slots:
    void worksAgainAndAgainWhateverIsThrown();
    void beginsSoon();
    void endsWithoutWaitingForItsTime();
    void asksWorkThatIsBeingDoneToEnd();
    void clearsAwayWhatIsOfNoUse_data();
    void clearsAwayWhatIsOfNoUse();
    void leavesTheTrashWhileSomebodyStores();
    void letsOthersStoreBetweenTwoSlicesOfTheTrash();

private:
    TestDatabases m_databases;
};

void HousekeeperTest::worksAgainAndAgainWhateverIsThrown()
{
    std::atomic<int> count{0};
    const Housekeeper keeper(std::chrono::milliseconds(2), [&count](const std::stop_token &) {
        ++count;
        throw std::runtime_error("a fault of the test");
    });
    QTRY_VERIFY(count > 3);
}

void HousekeeperTest::beginsSoon()
{
    std::atomic<int> count{0};
    const Housekeeper keeper(std::chrono::minutes(1),
                             [&count](const std::stop_token &) { ++count; });
    QTRY_COMPARE(count.load(), 1);
}

void HousekeeperTest::endsWithoutWaitingForItsTime()
{
    std::atomic<int> count{0};
    {
        const Housekeeper keeper(std::chrono::hours(10),
                                 [&count](const std::stop_token &) { ++count; });
    }
    QCOMPARE(count.load(), 0);
}

void HousekeeperTest::asksWorkThatIsBeingDoneToEnd()
{
    std::atomic_bool begun = false;
    std::atomic_bool ended = false;
    {
        const Housekeeper keeper(std::chrono::milliseconds(2), [&](const std::stop_token &stop) {
            begun = true;
            while (!stop.stop_requested())
                std::this_thread::yield();
            ended = true;
        });
        QTRY_VERIFY(begun);
    }
    QVERIFY(ended);
}

void HousekeeperTest::clearsAwayWhatIsOfNoUse_data()
{
    QTest::addColumn<bool>("chunks");
    QTest::newRow("files") << false;
    QTest::newRow("chunks") << true;
}

void HousekeeperTest::clearsAwayWhatIsOfNoUse()
{
    QFETCH(bool, chunks);
    ApiFixture api(m_databases.filled(false, chunks ? BlobKind::Database : BlobKind::Files));
    Store &store = api.store();
    const AssetUser user{1002, store.users.find(QStringLiteral("maja"))->userId,
                         QStringLiteral("owner")};
    const QByteArray bytes = "some bytes";
    const QString sha =
        QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    const auto upload = [&](bool commit) {
        QString id;
        QCOMPARE(store.uploads.reserve(
                     user, {QStringLiteral("a"), {}, 0, {{QStringLiteral("a"), bytes.size()}}}, id),
                 Uploads::Outcome::Done);
        Uploads::Part part;
        QCOMPARE(store.uploads.open(user, id, 0, part), Uploads::Outcome::Done);
        part.part->append(bytes.constData(), bytes.size());
        store.uploads.close(part);
        if (!commit)
            return;
        const auto made = store.uploads.commit(user, id, {sha});
        QCOMPARE(made.outcome, Uploads::Outcome::Done);
        QCOMPARE(store.assets.remove(user, made.guid), Assets::Outcome::Done);
    };
    upload(true);
    upload(false);
    const RepeatKey key{1002, user.userId, QStringLiteral("a-key")};
    api.database().tx([&] { store.repeats.put(key, {"hash", 200, "{}"}); });
    const auto count = [&api](const char *table) {
        return api.database()
            .runNative(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table))
            .toLongLong();
    };
    const auto isAllThere = [&] {
        return count("upload") == 2 && count("idem") == 1 && store.assets.trash().size() == 1 &&
               store.blobs.has({1002, sha});
    };
    QVERIFY(isAllThere());
    Service::tidyUp(store);
    QVERIFY(isAllThere());
    api.advance(Assets::trashTimeMs + 1);
    std::stop_source stopped;
    stopped.request_stop();
    Service::tidyUp(store, stopped.get_token());
    QVERIFY(isAllThere());
    Service::tidyUp(store);
    QCOMPARE(store.assets.trash().size(), 0);
    QVERIFY(!store.blobs.has({1002, sha}));
    QCOMPARE(count("upload"), 0);
    QCOMPARE(count("idem"), 0);
    QCOMPARE(count("blob_content WHERE sha IS NULL"), 0);
}

void HousekeeperTest::leavesTheTrashWhileSomebodyStores()
{
    ApiFixture api(m_databases.filled(false));
    const auto hold = api.store().blobs.hold(BlobHold::Mode::Store);
    QVERIFY(!api.store().assets.purgeUnlessBusy(api.now()).has_value());
}

namespace {

/// Notes what is cleared, and whether others could store in between.
class WatchedBlobs : public FileBlobs
{
public:
    using FileBlobs::FileBlobs;

    std::unique_ptr<BlobHold> hold(BlobHold::Mode mode) override
    {
        auto other = FileBlobs::hold(BlobHold::Mode::ClearNow);
        if (!other)
            ++busy;
        other.reset();
        return FileBlobs::hold(mode);
    }

    void clear(const QStringList &unnamed) override
    {
        cleared << unnamed.size();
        FileBlobs::clear(unnamed);
    }

    int busy = 0;
    QList<qsizetype> cleared;
};

} // namespace

void HousekeeperTest::letsOthersStoreBetweenTwoSlicesOfTheTrash()
{
    ApiFixture api(m_databases.filled(false));
    Store &store = api.store();
    const QTemporaryDir folder;
    WatchedBlobs blobs(folder.path());
    Assets assets(api.database(), store.folders, blobs, [] { return 0; });
    constexpr qint64 slice = Assets::purgedAtOnce;
    const qint64 many = 2 * slice + 1;
    const auto fill = [&] {
        api.database().tx([&] {
            for (qint64 i = 0; i < many; ++i) {
                const AssetFile file{QStringLiteral("a"),
                                     QStringLiteral("%1").arg(i, 64, 10, QLatin1Char('0')),
                                     QStringLiteral("text/plain"), 1, false};
                Asset asset;
                asset.guid = QStringLiteral("old-%1").arg(i);
                asset.name = file.name;
                asset.createdById = store.users.find(QStringLiteral("maja"))->userId;
                assets.addBlob(1002, file);
                assets.add(1002, asset, {file});
            }
            api.database().runNative(
                QStringLiteral("UPDATE asset SET deleted_at = 5 WHERE guid LIKE 'old-%'"));
        });
    };
    fill();
    QCOMPARE(assets.purge(5), 0);
    blobs.cleared.clear();
    QCOMPARE(assets.purge(6), many);
    QCOMPARE(blobs.cleared, (QList<qsizetype>{slice, slice, 1}));
    fill();
    for (const qint64 gone : {slice, slice, qint64(1), qint64(0)})
        QCOMPARE(assets.purgeUnlessBusy(6), gone);
    QCOMPARE(blobs.cleared.mid(3), (QList<qsizetype>{slice, slice, 1, 0}));
    QCOMPARE(blobs.busy, 0);
}

ZEL_TEST_MAIN(HousekeeperTest)
#include "tst_housekeeper.moc"
