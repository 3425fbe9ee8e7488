// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "assets/assetintake.h"
#include "testsupport/testcase.h"

using ZelWebServiceControls::AssetIntake;

namespace {

/// Lets a batch go on for so many files.
class Limited : public AssetIntake
{
public:
    Limited(ZelWebServiceControls::AssetManager &manager, int limit)
        : AssetIntake(manager)
        , m_limit(limit)
    {
    }

    QList<int> seen;

protected:
    bool mayUpload(int index) override { return index < m_limit; }

    void uploaded(int index) override { seen << index; }

private:
    int m_limit;
};

QStringList files(int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths << QStringLiteral("/%1.png").arg(i);
    return paths;
}

} // namespace

/// What a C++ host does with an asset manager beside its interface.
class TestAssetIntake : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void putsFilesOnTheBatchAndOpensIt()
    {
        AssetManagerFixture f;
        AssetIntake intake(*f.manager);
        f.manager->Init(&f.client);
        intake.showFolder(QStringLiteral("l1"));
        intake.addFiles(files(2));
        intake.openBatch();
        QCOMPARE(batch(f).count(), 2);
        QVERIFY(f.manager->findChild<QWidget *>(QStringLiteral("batchFrame"))->isVisible());
        QVERIFY(save(f)->isEnabled());
    }

    void theSaveButtonSavesThroughIt()
    {
        AssetManagerFixture f;
        Limited intake(*f.manager, 10);
        prepare(f, intake, 2);
        QTest::mouseClick(save(f), Qt::LeftButton);
        QCOMPARE(intake.seen, (QList<int>{0, 1}));
        QCOMPARE(batch(f).count(), 0);
    }

    void aBatchCanBeEndedBetweenFiles()
    {
        AssetManagerFixture f;
        Limited intake(*f.manager, 2);
        prepare(f, intake, 4);
        QVERIFY(!intake.saveBatch());
        QCOMPARE(intake.seen, (QList<int>{0, 1}));
        QCOMPARE(batch(f).count(), 4);
        intake.endProgress();
        QVERIFY(!f.manager->findChild<QWidget *>(QStringLiteral("progressFrame"))->isVisible());
        QVERIFY(save(f)->isEnabled());
    }

    void anErrorCountsTheFilesAround()
    {
        AssetManagerFixture f;
        AssetIntake intake(*f.manager);
        prepare(f, intake, 3);
        intake.setAround(328, 100);
        f.client.failNext(QStringLiteral("CreateAsset"),
                          Zel::RuntimeError(75, QStringLiteral("It fell over.")));
        QString told;
        try {
            intake.saveBatch();
        } catch (const Zel::RuntimeError &error) {
            told = error.description();
        }
        QCOMPARE(told, QStringLiteral("\"0.png\" was not uploaded. It fell over. Uploaded before "
                                      "it: 328 of 431 files."));
    }

    void theLongestBatchFitsAndOneMoreDoesNot()
    {
        AssetManagerFixture f;
        AssetIntake intake(*f.manager);
        prepare(f, intake, AssetIntake::LongestBatch);
        QVERIFY(intake.saveBatch());
        prepare(f, intake, AssetIntake::LongestBatch + 1);
        QVERIFY_THROWS_EXCEPTION(Zel::RuntimeError, intake.saveBatch());
    }

    void forgettingLeavesNothing()
    {
        AssetManagerFixture f;
        AssetIntake intake(*f.manager);
        prepare(f, intake, 2);
        intake.forget();
        QCOMPARE(batch(f).count(), 0);
        QCOMPARE(f.manager->findChild<Zel::TreeView *>()->nodeCount(), 0);
        QVERIFY(!f.manager->findChild<QWidget *>(QStringLiteral("newAssetFrame"))->isVisible());
        QVERIFY_THROWS_EXCEPTION(Zel::RuntimeError, f.manager->Init(nullptr));
    }

    void theNewestCountsAndOneThatIsGoneDoesNot()
    {
        AssetManagerFixture f;
        Limited first(*f.manager, 10);
        {
            Limited second(*f.manager, 10);
            prepare(f, second, 1);
            QTest::mouseClick(save(f), Qt::LeftButton);
            QCOMPARE(second.seen, QList<int>{0});
            QVERIFY(first.seen.isEmpty());
        }
        prepare(f, first, 1);
        QTest::mouseClick(save(f), Qt::LeftButton);
        QCOMPARE(batch(f).count(), 0); // the control saves by itself
        QVERIFY(first.seen.isEmpty());
    }

    void nothingHappensOnceTheManagerIsGone()
    {
        auto manager = std::make_unique<ZelWebServiceControls::AssetManager>();
        AssetIntake intake(*manager);
        manager.reset();
        intake.addFiles(files(1));
        intake.openBatch();
        intake.showFolder(QStringLiteral("l1"));
        intake.relist();
        intake.endProgress();
        intake.finish();
        intake.forget();
        QVERIFY(!intake.saveBatch());
    }

private:
    static QListWidget &batch(const AssetManagerFixture &f)
    {
        return *f.manager->findChild<QListWidget *>(QStringLiteral("batchList"));
    }

    static QPushButton *save(const AssetManagerFixture &f)
    {
        return f.manager->findChild<QPushButton *>(QStringLiteral("batchNewAssetSave"));
    }

    static void prepare(AssetManagerFixture &f, AssetIntake &intake, int count)
    {
        f.manager->Init(&f.client);
        intake.showFolder(QStringLiteral("l1"));
        batch(f).clear();
        intake.addFiles(files(count));
        intake.openBatch();
    }
};

ZEL_TEST_MAIN(TestAssetIntake)
#include "tst_assetintake.moc"
