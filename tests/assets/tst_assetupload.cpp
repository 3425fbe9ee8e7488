// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "testsupport/testcase.h"

#include <QTimer>

/// Uploading: one file and batches, the progress frame, failures.
class tst_AssetUpload : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void uploadsASingleFile()
    {
        AssetManagerFixture f;
        openSingle(f);
        f.client.folderAssets[1] = ZelTest::assetList({asset("new")});
        f.press("singleNewAssetSave");
        QCOMPARE(
            f.trail,
            (QStringList{"CreateAsset(\" name \", \" about \", 1, \" /x/a.png\", \"\", \"\", \"\")",
                         "GetFolderAssets(1, \"\", \"\", 0, 0)"}));
        QCOMPARE(f.list().count(), 1);
        QVERIFY(f.child<QWidget>("progressFrame")->isHidden());
        QVERIFY(!f.child<QWidget>("newAssetFrame")->isVisible());
        QVERIFY(f.child<QWidget>("assetListFrame")->isVisible());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void showsProgressDuringTheCall()
    {
        AssetManagerFixture f;
        openSingle(f);
        QStringList seen;
        f.atCall = [&](const QString &call) {
            if (call.startsWith("CreateAsset"))
                seen << state(f);
        };
        connect(&f.client, &QXSC::ServiceClient::CreateAssetFileProgress, &f.form,
                [&] { seen << state(f); });
        f.press("singleNewAssetSave");
        QCOMPARE(seen, (QStringList{"shown 50 0 '' hourglass disabled",
                                    "shown 50 0 'Uploading  /x/a.png' hourglass disabled",
                                    "shown 50 50 'Uploading  /x/a.png' hourglass disabled",
                                    "shown 50 100 'Uploading  /x/a.png' hourglass disabled"}));
    }

    void leavesThePanelOpenWhenAnUploadFails()
    {
        AssetManagerFixture f;
        openSingle(f);
        f.client.failNext("CreateAsset", Zel::RuntimeError(99, "disk full"));
        f.press("singleNewAssetSave");
        QCOMPARE(f.trail.constLast(), QString("error 99"));
        QCOMPARE(f.trail.size(), 2);
        QVERIFY(f.child<QWidget>("newAssetFrame")->isVisible());
        QVERIFY(f.child<QWidget>("progressFrame")->isVisible());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void startsTheNextSaveWithEmptyBars()
    {
        AssetManagerFixture f;
        openSingle(f);
        f.press("singleNewAssetSave");
        openSingle(f);
        QString seen;
        f.atCall = [&](const QString &call) {
            if (call.startsWith("CreateAsset"))
                seen = state(f);
        };
        f.press("singleNewAssetSave");
        QCOMPARE(seen, QString("shown 50 0 '' hourglass disabled"));
    }

    void uploadsABatchAsAssetsOfTheirOwn()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png", "b.png", "/y/z/c d.png"});
        QList<int> overall;
        f.atCall = [&](const QString &call) {
            if (call.startsWith("CreateAsset"))
                overall << f.child<QProgressBar>("overallProgress")->value();
        };
        f.press("batchNewAssetSave");
        QCOMPARE(
            f.trail,
            (QStringList{"CreateAsset(\"a.png\", \"\", 1, \"/x/a.png\", \"\", \"\", \"\")",
                         "CreateAsset(\"b.png\", \"\", 1, \"b.png\", \"\", \"\", \"\")",
                         "CreateAsset(\"c d.png\", \"\", 1, \"/y/z/c d.png\", \"\", \"\", \"\")",
                         "GetFolderAssets(1, \"\", \"\", 0, 0)"}));
        QCOMPARE(overall, (QList<int>{0, 33, 67}));
        QCOMPARE(f.batch(), QStringList());
        QVERIFY(f.child<QWidget>("progressFrame")->isHidden());
        QVERIFY(f.child<QWidget>("assetListFrame")->isVisible());
        QVERIFY(!f.button("batchNewAssetSave")->isEnabled());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void staysAtNothingOverallForABatchOfOne()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png"});
        QStringList seen;
        connect(&f.client, &QXSC::ServiceClient::CreateAssetFileProgress, &f.form, [&] {
            seen << QString::number(f.child<QProgressBar>("overallProgress")->value());
        });
        f.press("batchNewAssetSave");
        QCOMPARE(seen, (QStringList{"0", "0", "0"}));
    }

    void keepsTheListWhenABatchFailsAndSaysHowFarItWas()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png", "/x/b.png", "/x/c.png"});
        f.atCall = [&](const QString &call) {
            if (call.startsWith("CreateAsset(\"b.png\""))
                f.client.failNext(
                    "CreateAsset",
                    QXSC::ServiceError(QXSC::ServiceError::Kind::Unreachable, "No connection."));
        };
        int kind = -1;
        connect(f.manager, &Zel::Control::runtimeError, &f.form,
                [&](const Zel::RuntimeError &error) {
                    const auto *service = dynamic_cast<const QXSC::ServiceError *>(&error);
                    kind = service ? int(service->kind()) : -2;
                });
        f.press("batchNewAssetSave");
        QCOMPARE(kind, int(QXSC::ServiceError::Kind::Unreachable));
        QCOMPARE(f.lastError, QString("\"b.png\" was not uploaded. No connection. Uploaded before "
                                      "it: 1 of 3 files."));
        QCOMPARE(f.batch().size(), 3);
        QVERIFY(f.child<QWidget>("progressFrame")->isVisible());
        QVERIFY(f.child<QWidget>("newAssetFrame")->isVisible());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
        f.child<QListWidget>("batchList")->setCurrentRow(1);
        QVERIFY(f.button("batchNewAssetSave")->isEnabled());
    }

    void overflowsAtThe329thFileOfABatch()
    {
        AssetManagerFixture f;
        QStringList paths;
        for (int i = 0; i < 329; ++i)
            paths << QStringLiteral("/x/%1.png").arg(i);
        openBatch(f, paths);
        f.press("batchNewAssetSave");
        QCOMPARE(f.trail.size(), 329);
        QCOMPARE(f.trail.constLast(), QString("error 6"));
        QVERIFY(f.lastError.contains("328 of 329"));
        QCOMPARE(f.batch().size(), 329);
    }

    void survivesBeingDestroyedWhileABatchYields()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png", "/x/b.png"});
        QTimer::singleShot(0, f.manager, [&] { delete f.manager; });
        f.button("batchNewAssetSave")->click();
        QVERIFY(!f.manager);
        QCOMPARE(f.trail, QStringList());
    }

    void survivesBeingDestroyedByACall()
    {
        AssetManagerFixture f;
        openSingle(f);
        f.atCall = [&](const QString &) { delete f.manager; };
        f.button("singleNewAssetSave")->click();
        QVERIFY(!f.manager);
        QCOMPARE(f.trail.size(), 1);
    }

    void savesABatchOnceAtATime()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png", "/x/b.png"});
        QTimer::singleShot(0, f.manager, [&] {
            f.child<QListWidget>("batchList")->setCurrentRow(0);
            f.press("batchNewAssetSave");
        });
        f.press("batchNewAssetSave");
        QCOMPARE(f.trail.size(), 3);
    }

    void endsWhereFilesAreTakenOffTheListMeanwhile()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png", "/x/b.png"});
        QTimer::singleShot(0, f.manager, [&] {
            f.child<QListWidget>("batchList")->setCurrentRow(1);
            f.press("removeBatch");
        });
        f.press("batchNewAssetSave");
        QCOMPARE(f.trail.size(), 2);
        QVERIFY(f.trail.constFirst().startsWith("CreateAsset(\"a.png\""));
    }

    void failsWithoutASelectedFolder()
    {
        AssetManagerFixture f;
        openBatch(f, {"/x/a.png"});
        f.tree().selectNode({});
        f.press("batchNewAssetSave");
        QCOMPARE(f.trail, QStringList{"error 91"});
    }

    void listensToTheLatestClientOnly()
    {
        AssetManagerFixture f;
        f.init();
        ZelTest::RecordingClient other;
        f.manager->Init(&other);
        emit f.client.CreateAssetFileProgress(40, "old");
        QCOMPARE(f.child<QProgressBar>("fileProgress")->value(), 0);
        f.manager->Init(&other);
        emit other.CreateAssetFileProgress(40, "new");
        QCOMPARE(f.child<QProgressBar>("fileProgress")->value(), 40);
        QCOMPARE(f.child<QLabel>("fileProgressTxt")->text(), QString("Uploading new"));
    }

private:
    static void openSingle(AssetManagerFixture &f)
    {
        f.open(1);
        f.press("newAsset");
        f.box("singleNewAssetDescription")->setText(" about ");
        f.box("singleNewAssetUrl")->setText(" /x/a.png");
        QTest::keyClicks(f.box("singleNewAssetName"), " name ");
    }

    static void openBatch(AssetManagerFixture &f, const QStringList &paths)
    {
        f.open(1);
        f.press("newAsset");
        f.pressTab(1);
        f.child<QListWidget>("batchList")->addItems(paths);
        QVERIFY(f.button("batchNewAssetSave")->isEnabled());
    }

    static QString state(const AssetManagerFixture &f)
    {
        return QStringLiteral("%1 %2 %3 '%4' %5 %6")
            .arg(f.child<QWidget>("progressFrame")->isVisible() ? "shown" : "hidden")
            .arg(f.child<QProgressBar>("overallProgress")->value())
            .arg(f.child<QProgressBar>("fileProgress")->value())
            .arg(f.child<QLabel>("fileProgressTxt")->text(),
                 f.manager->cursor().shape() == Qt::WaitCursor ? "hourglass" : "arrow",
                 f.button("singleNewAssetSave")->isEnabled() ? "enabled" : "disabled");
    }
};

ZEL_TEST_MAIN(tst_AssetUpload)
#include "tst_assetupload.moc"
