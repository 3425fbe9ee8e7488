// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "platform/core/datetext.h"
#include "testsupport/testcase.h"

/// The asset list of an asset manager: listing, selecting, views, sorting and deleting assets.
class tst_AssetListing : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void showsTheAssetsOfAFolder()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a"), asset("b", "XML")});
        QCOMPARE(f.list().count(), 2);
        QCOMPARE(f.list().columnCaption(0), QString("Name"));
        QCOMPARE(f.list().columnCaption(1), QString("Description"));
        QCOMPARE(f.list().columnCaption(2), QString("Created"));
        QCOMPARE(f.list().text(1, 0), QString("b"));
        QCOMPARE(f.list().text(1, 1), QString("about b"));
        QCOMPARE(f.list().text(1, 2), Zel::generalDateText(asset("b").assetDate));
        QCOMPARE(f.list().tag(1).value<QXSC::AssetRecordPtr>()->guid, QString("guid-b"));
        QCOMPARE(f.list().selectedCount(), 0);
    }

    void givesEveryTypeItsIcons()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a", "Image"), asset("b", "pdf"), asset("c", "Other"), asset("d", "image"),
                   asset("e", "")});
        QList<int> icons;
        for (int row = 0; row < 5; ++row)
            icons << f.list().smallIcon(row) << f.list().largeIcon(row);
        QCOMPARE(icons, (QList<int>{1, 1, 6, 2, 10, 3, 10, 4, 10, 5}));
        const char *const shown[] = {"Image", "pdf", "Other", "Other", "Other"};
        for (int row = 0; row < 5; ++row)
            QCOMPARE(f.list().model()->largeImage(row).pixmap(48).toImage(),
                     typeIcon(shown[row], 48));
    }

    void hasAHiddenPictureBoxForEveryType()
    {
        const AssetManagerFixture f;
        for (const char *name : {"icon_Image", "icon_Audio", "icon_Video", "icon_XML", "icon_Text",
                                 "icon_pdf", "icon_Document", "icon_Presentation", "icon_Animation",
                                 "icon_Other", "icon_Broken"}) {
            const auto *box = f.child<QLabel>(name);
            QVERIFY2(box && box->isHidden(), name);
            QVERIFY(!box->pixmap(Qt::ReturnByValue).isNull());
        }
    }

    void showsTheHourglassAndLocksTheTreeWhileTheServiceWorks()
    {
        AssetManagerFixture f;
        f.init();
        bool seen = false;
        f.atCall = [&](const QString &) {
            seen = f.manager->cursor().shape() == Qt::WaitCursor && !f.tree().isEnabled() &&
                   !f.button("deleteFolder")->isEnabled();
        };
        f.clickFolder(3);
        QVERIFY(seen);
        QVERIFY(f.tree().isEnabled());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void keepsTheOldLinesWhenTheServiceFails()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a")});
        f.client.failNext("GetFolderAssets", Zel::RuntimeError(4321, "down"));
        f.clickFolder(3);
        QCOMPARE(f.trail.constLast(), QString("error 4321"));
        QCOMPARE(f.list().count(), 1);
        QVERIFY(f.tree().isEnabled());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void isEmptyForAnAnswerOfNothing()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a")});
        f.client.folderAssets[3] = nullptr;
        f.clickFolder(3);
        QCOMPARE(f.list().count(), 0);
        QCOMPARE(f.trail.constLast(), QString("FolderSelected"));
    }

    void failsBeyondWhat16BitsCount()
    {
        AssetManagerFixture f;
        f.init();
        auto many = std::make_shared<QXSC::AssetCollection>();
        const auto one = std::make_shared<QXSC::AssetRecord>(asset("a"));
        for (int i = 0; i < 32767; ++i)
            many->add(one);
        f.client.folderAssets[1] = many;
        f.clickFolder(1);
        QCOMPARE(f.trail.constLast(), QString("FolderSelected"));
        QCOMPARE(f.list().count(), 32767);
        auto more = std::make_shared<QXSC::AssetCollection>(*many);
        more->add(one);
        f.client.folderAssets[1] = more;
        f.clickFolder(1);
        QCOMPARE(f.trail.constLast(), QString("error 6"));
        QVERIFY(f.tree().isEnabled());
    }

    void failsOnAMissingRecord()
    {
        AssetManagerFixture f;
        f.init();
        auto assets = std::make_shared<QXSC::AssetCollection>();
        assets->add(nullptr);
        f.client.folderAssets[1] = assets;
        f.clickFolder(1);
        QCOMPARE(f.trail.constLast(), QString("error 91"));
    }

    void tellsTheClickedAsset()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a"), asset("b")});
        QCOMPARE(f.manager->getSelectedAssetGuid(), QVariant(QString("")));
        QVERIFY(!f.manager->getSelectedAsset());
        ListTesting::click(f.list(), 1);
        QCOMPARE(f.trail, QStringList{"AssetSelected"});
        QCOMPARE(f.manager->getSelectedAssetGuid(), QVariant(QString("guid-b")));
        QCOMPARE(f.manager->getSelectedAsset()->assetName, QString("b"));
        QVERIFY(f.button("deleteAsset")->isEnabled());
    }

    void enablesDeletionOnlyWithTheRight()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList({rootFolder(), folder(1, 0, "Art", "RW")});
        f.open(1, {asset("a")});
        ListTesting::click(f.list(), 0);
        QVERIFY(!f.button("deleteAsset")->isEnabled());
    }

    void disablesDeletionWhenTheGroundClearsTheSelection()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a")});
        ListTesting::click(f.list(), 0);
        f.trail.clear();
        ListTesting::clickGround(f.list());
        QVERIFY(!f.button("deleteAsset")->isEnabled());
        QCOMPARE(f.trail, QStringList());
    }

    void switchesTheView()
    {
        AssetManagerFixture f;
        QCOMPARE(f.list().viewMode(), Zel::ListView::ViewMode::Icon);
        f.press("listMode");
        QCOMPARE(f.list().viewMode(), Zel::ListView::ViewMode::Report);
        f.press("thumbnailMode");
        QCOMPARE(f.list().viewMode(), Zel::ListView::ViewMode::Icon);
    }

    void sortsByTheClickedHeader()
    {
        AssetManagerFixture f;
        f.press("listMode");
        f.open(1, {asset("b", "XML"), asset("a", "pdf"), asset("c")});
        ListTesting::clickHeader(f.list(), 0);
        QCOMPARE(ListTesting::shownTexts(f.list()), (QStringList{"c", "b", "a"}));
        ListTesting::clickHeader(f.list(), 0);
        QCOMPARE(ListTesting::shownTexts(f.list()), (QStringList{"a", "b", "c"}));
        QCOMPARE(f.list().sortKey(), 0);
        QVERIFY(f.list().isSorted());
    }

    void staysSortedInTheNextFolder()
    {
        AssetManagerFixture f;
        f.press("listMode");
        f.open(1, {asset("b"), asset("a")});
        ListTesting::clickHeader(f.list(), 0);
        f.open(3, {asset("x", "XML"), asset("z", "pdf"), asset("y", "Text")});
        QCOMPARE(ListTesting::shownTexts(f.list()), (QStringList{"z", "y", "x"}));
        ListTesting::click(f.list(), f.list().rowAt(0));
        QCOMPARE(f.manager->getSelectedAssetGuid().toString(), QString("guid-z"));
        QCOMPARE(f.list().smallIcon(f.list().rowAt(0)), 6);
    }

    void sortsCreatedByItsShownText()
    {
        AssetManagerFixture f;
        f.press("listMode");
        QXSC::AssetRecord early = asset("early");
        early.assetDate = QDateTime(QDate(2025, 12, 1), QTime(9, 0));
        QXSC::AssetRecord late = asset("late");
        late.assetDate = QDateTime(QDate(2026, 1, 1), QTime(9, 0));
        f.open(1, {early, late});
        const bool textOrder = f.list().text(0, 2) < f.list().text(1, 2);
        f.list().sortBy(2, Qt::AscendingOrder);
        QCOMPARE(ListTesting::shownTexts(f.list()).constFirst(),
                 QString(textOrder ? "early" : "late"));
        f.list().setSortByValue(true);
        f.list().setSorted(true);
        QCOMPARE(ListTesting::shownTexts(f.list()), (QStringList{"early", "late"}));
    }

    void deletesOneAsset()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a"), asset("b")});
        ListTesting::click(f.list(), 1);
        f.trail.clear();
        f.client.folderAssets[1] = ZelTest::assetList({asset("a")});
        f.boxes.click(QMessageBox::Yes);
        f.press("deleteAsset");
        QCOMPARE(
            f.boxes.shown().constFirst().text,
            QString("Are you sure you want to delete this asset? This action can not be undone."));
        QCOMPARE(f.boxes.shown().constFirst().buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(f.trail,
                 (QStringList{"DeleteAsset(\"guid-b\")", "GetFolderAssets(1, \"\", \"\", 0, 0)"}));
        QCOMPARE(f.list().count(), 1);
        QCOMPARE(f.enabled(), QString("newFolder newAsset"));
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }

    void deletesSeveralAssetsInTheOrderOfTheList()
    {
        AssetManagerFixture f;
        f.open(3, {asset("a"), asset("b"), asset("c"), asset("d")});
        f.list().sortBy(0, Qt::DescendingOrder);
        ListTesting::click(f.list(), 0);
        ListTesting::click(f.list(), 3, 0, Qt::ControlModifier);
        ListTesting::click(f.list(), 1, 0, Qt::ControlModifier);
        f.trail.clear();
        f.client.folderAssets[3] = ZelTest::assetList({});
        f.boxes.click(QMessageBox::Yes);
        f.press("deleteAsset");
        QCOMPARE(f.boxes.shown().constFirst().text,
                 QString("Are you sure you want to delete these 3 assets? This action can not be "
                         "undone."));
        QCOMPARE(f.trail,
                 (QStringList{"DeleteAsset(\"guid-d\")", "DeleteAsset(\"guid-b\")",
                              "DeleteAsset(\"guid-a\")", "GetFolderAssets(3, \"\", \"\", 0, 0)"}));
        QCOMPARE(f.enabled(), QString("newFolder deleteFolder newAsset"));
    }

    void keepsAssetsWhenTheAnswerIsNo()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a"), asset("b")});
        ListTesting::click(f.list(), 1);
        f.trail.clear();
        f.boxes.click(QMessageBox::No);
        f.press("deleteAsset");
        QCOMPARE(f.trail, QStringList());
        QCOMPARE(f.list().selectedCount(), 1);
        QVERIFY(!f.button("deleteAsset")->isEnabled());
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
        ListTesting::click(f.list(), 0);
        QVERIFY(f.button("deleteAsset")->isEnabled());
    }

    void stopsAtTheFirstAssetThatCannotBeDeleted()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a"), asset("b")});
        f.list().setFocus();
        QTest::keyClick(f.list().view(), Qt::Key_A, Qt::ControlModifier);
        f.trail.clear();
        f.client.failNext("DeleteAsset", Zel::RuntimeError(77, "no"));
        f.boxes.click(QMessageBox::Yes);
        f.press("deleteAsset");
        QCOMPARE(f.trail, (QStringList{"DeleteAsset(\"guid-a\")", "error 77"}));
        QCOMPARE(f.list().count(), 2);
        QCOMPARE(f.manager->cursor().shape(), Qt::ArrowCursor);
    }
};

ZEL_TEST_MAIN(tst_AssetListing)
#include "tst_assetlisting.moc"
