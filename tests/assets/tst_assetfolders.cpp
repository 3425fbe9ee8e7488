// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "testsupport/testcase.h"

#include <QDialog>
#include <QTimer>

using ZelWebServiceControls::FolderNames;

/// The folder tree of an asset manager: how it is built, selecting, making and deleting folders.
class tst_AssetFolders : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void buildsTheTreeInTheOrderOfTheService()
    {
        AssetManagerFixture f;
        f.manager->Init(&f.client);
        QCOMPARE(f.trail, QStringList{QStringLiteral("GetAssetFolders(0)")});
        QCOMPARE(f.shownTree(), (QStringList{"l0 All Folders [RWD]", "  l1 Art [RWD]",
                                             "    l2 Deep [RWD]", "  l3 Bare [RWD]"}));
        for (const QString key : {"l0", "l1", "l2", "l3"}) {
            QVERIFY(f.tree().isExpanded(key));
            QCOMPARE(f.tree().image(key), 1);
            QCOMPARE(f.tree().expandedImage(key), 2);
        }
        QCOMPARE(f.enabled(), QString());
    }

    void showsNoFoldersWhenTheServiceAnswersNothing()
    {
        AssetManagerFixture f;
        f.open(1, {asset("a")});
        f.client.assetFolders = nullptr;
        f.init();
        QCOMPARE(f.tree().nodeCount(), 0);
        QCOMPARE(f.enabled(), QString());
    }

    void leavesRestrictedFoldersOutWithAllBelowThem()
    {
        AssetManagerFixture f;
        f.init({}, std::make_shared<FolderNames>(FolderNames{"art", "Art"}));
        QCOMPARE(f.shownTree(), (QStringList{"l0 All Folders [RWD]", "  l3 Bare [RWD]"}));
    }

    void comparesRestrictedNamesExactly()
    {
        AssetManagerFixture f;
        f.init({}, std::make_shared<FolderNames>(FolderNames{"art", "Ar", "Art "}));
        QCOMPARE(f.tree().nodeCount(), 4);
    }

    void leavesUnreadableFoldersOutWithAllBelowThem()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList(
            {rootFolder(), folder(1, 0, "Art", "rWD"), folder(2, 1, "Deep"), folder(3, 0, "Bare")});
        f.init();
        QVERIFY(!f.tree().contains("l1") && !f.tree().contains("l2"));
        QVERIFY(f.tree().contains("l3"));
    }

    void writesTheRightsOfALeftOutFolderOntoTheLastNode()
    {
        AssetManagerFixture f;
        f.client.assetFolders =
            ZelTest::assetFolderList({rootFolder(), folder(3, 0, "Bare"), folder(1, 0, "Art", "W"),
                                      folder(2, 1, "Deep", "RX")});
        f.init();
        QCOMPARE(f.shownTree(), (QStringList{"l0 All Folders [RWD]", "  l3 Bare [RX]"}));
    }

    void doesNothingForALeftOutFolderBeforeAnyNode()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList(
            {folder(1, 0, "Art", "W"), folder(2, 1, "Deep"), rootFolder("R")});
        f.init();
        QCOMPARE(f.shownTree(), QStringList{"l0 All Folders [R]"});
    }

    void leavesAFolderOutThatComesBeforeItsParent()
    {
        AssetManagerFixture f;
        f.client.assetFolders =
            ZelTest::assetFolderList({rootFolder(), folder(2, 1, "Deep"), folder(1, 0, "Art")});
        f.init();
        QCOMPARE(f.shownTree(), (QStringList{"l0 All Folders [RWD]", "  l1 Art [RWD]"}));
    }

    void hangsAFolderThatIsItsOwnParentUnderTheRoot()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList({rootFolder(), folder(5, 5, "Loop")});
        f.init();
        QCOMPARE(f.tree().parentKey("l5"), QString("l0"));
    }

    void failsWhereTheRootIsMissing()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList({folder(1, 0, "Art")});
        QCOMPARE(ZelTest::errorNumber([&] { f.manager->Init(&f.client); }), 35601);
    }

    void failsWithoutAClient()
    {
        AssetManagerFixture f;
        QCOMPARE(ZelTest::errorNumber([&] { f.manager->Init(nullptr); }), 91);
    }

    void failsWhenTheClientIsGone()
    {
        AssetManagerFixture f;
        auto client = std::make_unique<ZelTest::RecordingClient>();
        client->assetFolders = f.client.assetFolders;
        f.manager->Init(client.get());
        client.reset();
        f.clickFolder(1);
        QCOMPARE(f.trail, QStringList{"error 91"});
        QVERIFY(f.tree().isEnabled());
        QVERIFY(f.tree().contains(AssetManagerFixture::keyOf(2)));
    }

    void listsTheClickedFolder()
    {
        AssetManagerFixture f;
        f.client.folderAssets[1] = ZelTest::assetList({asset("a")});
        f.init("jpg,bmp");
        f.clickFolder(1);
        QCOMPARE(f.trail,
                 (QStringList{"GetFolderAssets(1, \"\", \"jpg,bmp\", 0, 0)", "FolderSelected"}));
        QCOMPARE(f.child<QGroupBox>("assetListFrame")->title(), QString("Assets in Art"));
        QCOMPARE(f.list().count(), 1);
        QCOMPARE(f.enabled(), QString("newFolder newAsset"));
    }

    void showsAnAmpersandInTheCaptionAsItStands()
    {
        AssetManagerFixture f;
        f.client.assetFolders = ZelTest::assetFolderList({rootFolder(), folder(1, 0, "R&D")});
        f.open(1);
        QCOMPARE(f.child<QGroupBox>("assetListFrame")->title(), QString("Assets in R&&D"));
    }

    void followsTheKeyboard()
    {
        AssetManagerFixture f;
        f.open(0);
        QTest::keyClick(&f.tree(), Qt::Key_Down);
        QCOMPARE(f.trail, (QStringList{"GetFolderAssets(1, \"\", \"\", 0, 0)", "FolderSelected"}));
    }

    void enablesButtonsByTheRights_data()
    {
        QTest::addColumn<QByteArray>("permissions");
        QTest::addColumn<QString>("enabled");
        QTest::newRow("read") << QByteArray("R") << "";
        QTest::newRow("write") << QByteArray("WR") << "newFolder newAsset";
        QTest::newRow("delete") << QByteArray("xDR") << "deleteFolder";
        QTest::newRow("all") << QByteArray("RWD") << "newFolder deleteFolder newAsset";
        QTest::newRow("small letters") << QByteArray("Rwd") << "";
    }

    void enablesButtonsByTheRights()
    {
        QFETCH(QByteArray, permissions);
        QFETCH(QString, enabled);
        AssetManagerFixture f;
        f.client.assetFolders =
            ZelTest::assetFolderList({rootFolder(), folder(1, 0, "Art", permissions.constData())});
        f.open(1);
        QCOMPARE(f.enabled(), enabled);
    }

    void deletesNeitherRootNorFilledFoldersByTheButton()
    {
        AssetManagerFixture f;
        f.open(0);
        QVERIFY(!f.button("deleteFolder")->isEnabled());
        f.open(1);
        QVERIFY(!f.button("deleteFolder")->isEnabled());
        f.open(3, {asset("a")});
        QVERIFY(!f.button("deleteFolder")->isEnabled());
        f.open(3);
        QVERIFY(f.button("deleteFolder")->isEnabled());
    }

    void makesAFolderBelowTheSelectedOne()
    {
        AssetManagerFixture f;
        f.open(3);
        f.client.createdFolder = 9;
        f.client.folderPermissions[9] = "RW";
        typeName(" ");
        f.press("newFolder");
        QCOMPARE(f.trail, (QStringList{"CreateAssetFolder(3, \" \")", "GetFolderPermissions(9)",
                                       "GetFolderAssets(9, \"\", \"\", 0, 0)", "FolderSelected"}));
        QCOMPARE(f.tree().parentKey("l9"), QString("l3"));
        QCOMPARE(f.tree().text("l9"), QString(" "));
        QCOMPARE(f.tree().tag("l9").toString(), QString("RW"));
        QCOMPARE(f.tree().image("l9"), 1);
        QCOMPARE(f.tree().expandedImage("l9"), 2);
        QCOMPARE(f.tree().selectedNode(), QString("l9"));
        QVERIFY(f.tree().isExpanded("l9"));
        QCOMPARE(f.enabled(), QString("newFolder newAsset"));
    }

    void makesNoFolderWhenTheServiceMakesNone()
    {
        AssetManagerFixture f;
        f.open(3);
        f.client.createdFolder = 0;
        typeName("New");
        f.press("newFolder");
        QCOMPARE(f.trail, QStringList{"CreateAssetFolder(3, \"New\")"});
        QCOMPARE(f.tree().nodeCount(), 4);
    }

    void asksTheServiceForNothingWhenTheNameIsCancelled()
    {
        AssetManagerFixture f;
        f.open(3);
        QTimer::singleShot(
            0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        f.press("newFolder");
        QCOMPARE(f.trail, QStringList());
    }

    void reportsAFolderThatCannotBeMade()
    {
        AssetManagerFixture f;
        f.open(3);
        f.client.failNext("CreateAssetFolder", Zel::RuntimeError(1234, "no"));
        typeName("New");
        f.press("newFolder");
        QCOMPARE(f.trail, (QStringList{"CreateAssetFolder(3, \"New\")", "error 1234"}));
    }

    void deletesAFolderAndSelectsItsParent()
    {
        AssetManagerFixture f;
        f.open(2);
        f.boxes.click(QMessageBox::Yes);
        f.press("deleteFolder");
        QCOMPARE(f.boxes.shown().size(), 1);
        QCOMPARE(f.boxes.shown().constFirst().text,
                 QString("Are you sure you want to delete this folder?"));
        QCOMPARE(f.boxes.shown().constFirst().buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(f.trail, (QStringList{"DeleteAssetFolder(2)", "GetAssetFolders(0)",
                                       "GetFolderAssets(1, \"\", \"\", 0, 0)", "FolderSelected"}));
        QCOMPARE(f.tree().selectedNode(), QString("l1"));
    }

    void keepsAFolderWhenTheAnswerIsNo()
    {
        AssetManagerFixture f;
        f.open(2);
        f.boxes.press(Qt::Key_Escape);
        f.press("deleteFolder");
        QCOMPARE(f.boxes.shown().size(), 1);
        QCOMPARE(f.trail, QStringList());
    }

    void refusesToDeleteTheRoot()
    {
        AssetManagerFixture f;
        f.open(3);
        // A host moves the selection without a click, so the states are those of the other folder.
        f.tree().selectNode("l0");
        f.boxes.click(QMessageBox::Ok);
        f.press("deleteFolder");
        QCOMPARE(f.boxes.shown().constFirst().text, QString("You can not delete the root folder"));
        QCOMPARE(f.boxes.shown().constFirst().buttons,
                 QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(f.trail, QStringList());
    }

private:
    /// Types into the form for the name, once it is up, and presses Enter.
    static void typeName(const QString &name)
    {
        QTimer::singleShot(0, [name] {
            QWidget *form = QApplication::activeModalWidget();
            QVERIFY(form);
            QTest::keyClicks(form->findChild<QLineEdit *>("folderNameTxt"), name);
            QTest::mouseClick(form->findChild<QPushButton *>("okCmd"), Qt::LeftButton);
        });
    }
};

ZEL_TEST_MAIN(tst_AssetFolders)
#include "tst_assetfolders.moc"
