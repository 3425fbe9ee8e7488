// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "testsupport/testcase.h"

#include <QDir>

namespace {

const QString refusal =
    QStringLiteral("The image you have selected (%1) uses a format that cannot be read by Studio");

} // namespace

/// The panel for new assets: its tabs, choosing files, and which buttons are enabled.
class tst_NewAssetPanel : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void isSetUpAsDescribed()
    {
        const AssetManagerFixture f;
        const auto *tabs = f.child<QTabBar>("newAssetTabStrip");
        QCOMPARE(f.child<QGroupBox>("newAssetFrame")->title(), QString("New Asset"));
        QCOMPARE(tabs->count(), 2);
        QCOMPARE(tabs->tabText(0), QString("Single File"));
        QCOMPARE(tabs->tabText(1), QString("Batch"));
        QCOMPARE(tabs->tabToolTip(0), QString("Creates one asset at a time"));
        QCOMPARE(tabs->tabToolTip(1), QString("Creates multiple assets at once"));
        QCOMPARE(f.child<QLabel>("fileProgressTxt")->text(), QString("File Progress"));
        for (const char *bar : {"overallProgress", "fileProgress"}) {
            QCOMPARE(f.child<QProgressBar>(bar)->minimum(), 0);
            QCOMPARE(f.child<QProgressBar>(bar)->maximum(), 100);
        }
    }

    void opensEmptyAndReadyForTyping()
    {
        AssetManagerFixture f;
        f.open(1);
        for (const char *name :
             {"singleNewAssetName", "singleNewAssetDescription", "singleNewAssetUrl"})
            f.box(name)->setText("left over");
        f.press("newAsset");
        QVERIFY(f.child<QWidget>("newAssetFrame")->isVisible());
        QVERIFY(!f.child<QWidget>("assetListFrame")->isVisible());
        for (const char *name :
             {"singleNewAssetName", "singleNewAssetDescription", "singleNewAssetUrl"})
            QCOMPARE(f.box(name)->text(), QString());
        QVERIFY(f.box("singleNewAssetName")->hasFocus());
    }

    void showsTheFrameOfTheTab()
    {
        AssetManagerFixture f;
        f.open(1);
        f.press("newAsset");
        f.pressTab(1);
        QVERIFY(!f.child<QWidget>("singleFrame")->isVisible());
        QVERIFY(f.child<QWidget>("batchFrame")->isVisible());
        f.press("batchNewAssetCancel");
        f.press("newAsset");
        QVERIFY(!f.box("singleNewAssetName")->hasFocus());
        f.pressTab(0);
        QVERIFY(f.child<QWidget>("singleFrame")->isVisible());
        QVERIFY(!f.child<QWidget>("batchFrame")->isVisible());
    }

    void cancelBringsTheListBackAndKeepsTheBatch()
    {
        AssetManagerFixture f;
        openBatch(f, {f.picture("a.png")});
        f.press("batchNewAssetCancel");
        QVERIFY(!f.child<QWidget>("newAssetFrame")->isVisible());
        QVERIFY(f.child<QWidget>("assetListFrame")->isVisible());
        QCOMPARE(f.batch().size(), 1);
        f.press("newAsset");
        f.pressTab(0);
        f.press("singleNewAssetCancel");
        QVERIFY(f.child<QWidget>("assetListFrame")->isVisible());
    }

    void browsesForAPicture()
    {
        AssetManagerFixture f;
        const QString path = f.picture("a.png");
        f.init("jpg,wma");
        f.open(1);
        f.press("newAsset");
        f.files.choose({path});
        f.press("singleNewAssetBrowse");
        QCOMPARE(f.box("singleNewAssetUrl")->text(), QDir::toNativeSeparators(path));
        const auto shown = f.files.shown();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.constFirst().title, QString("Select Asset"));
        QVERIFY(!shown.constFirst().multiple);
        QCOMPARE(shown.constFirst().nameFilters,
                 (QStringList{"All Formats (*.jpg *.wma)", "JPEG (.jpg) (*.jpg)",
                              "Windows Media Audio (.wma) (*.wma)", "All (*)"}));
    }

    void refusesAFileThatIsNoPicture()
    {
        AssetManagerFixture f;
        const QString path = f.file("clip.avi", "RIFF....AVI ");
        f.init("avi");
        f.open(1);
        f.press("newAsset");
        f.files.choose({path});
        f.boxes.click(QMessageBox::Ok);
        f.press("singleNewAssetBrowse");
        QVERIFY(f.files.shown().constFirst().nameFilters.contains("Microsoft AVI (.avi) (*.avi)"));
        QCOMPARE(f.boxes.shown().size(), 1);
        QCOMPARE(f.boxes.shown().constFirst().text, refusal.arg(path));
        QCOMPARE(f.boxes.shown().constFirst().title, QString("Invalid Image Format"));
        QCOMPARE(f.boxes.shown().constFirst().buttons,
                 QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(f.box("singleNewAssetUrl")->text(), QString());
    }

    void tellsPicturesFromOtherFilesByTheirContent()
    {
        AssetManagerFixture f;
        QVERIFY(f.manager->IsValidImage(f.picture("picture.txt")));
        f.boxes.click(QMessageBox::Ok);
        QVERIFY(!f.manager->IsValidImage(f.file("text.png", "hello")));
        f.boxes.click(QMessageBox::Ok);
        QVERIFY(!f.manager->IsValidImage(f.file("empty.png", "")));
        f.boxes.click(QMessageBox::Ok);
        QVERIFY(!f.manager->IsValidImage("/nowhere/a.png"));
        QCOMPARE(f.boxes.shown().size(), 3);
    }

    void leavesTheBoxAloneWhenBrowsingIsCancelled()
    {
        AssetManagerFixture f;
        f.open(1);
        f.press("newAsset");
        f.box("singleNewAssetUrl")->setText("kept");
        f.files.cancel();
        f.press("singleNewAssetBrowse");
        QCOMPARE(f.box("singleNewAssetUrl")->text(), QString("kept"));
        QCOMPARE(f.trail, QStringList());
        QCOMPARE(f.boxes.shown().size(), 0);
    }

    void savesOnlyWithANameAndAFile()
    {
        AssetManagerFixture f;
        f.open(1);
        f.press("newAsset");
        QPushButton *save = f.button("singleNewAssetSave");
        QTest::keyClicks(f.box("singleNewAssetName"), "a");
        QVERIFY(!save->isEnabled());
        f.files.choose({f.picture("a.png")});
        f.press("singleNewAssetBrowse");
        QVERIFY(save->isEnabled());
        f.box("singleNewAssetName")->clear();
        QTest::keyClicks(f.box("singleNewAssetName"), "   ");
        QVERIFY(!save->isEnabled());
        QTest::keyClicks(f.box("singleNewAssetName"), "b");
        QVERIFY(save->isEnabled());
    }

    void typingAnAddressDoesNotCountUntilTheNameChanges()
    {
        AssetManagerFixture f;
        f.open(1);
        f.press("newAsset");
        QTest::keyClicks(f.box("singleNewAssetName"), "a");
        QTest::keyClicks(f.box("singleNewAssetUrl"), "/x/y.png");
        QVERIFY(!f.button("singleNewAssetSave")->isEnabled());
        QTest::keyClicks(f.box("singleNewAssetName"), "b");
        QVERIFY(f.button("singleNewAssetSave")->isEnabled());
    }

    void addsOneFileToTheBatch()
    {
        AssetManagerFixture f;
        const QString path = f.picture("a.png");
        openBatch(f, {path});
        QCOMPARE(f.batch(), QStringList{QDir::toNativeSeparators(path)});
        QVERIFY(f.files.shown().constFirst().multiple);
        QVERIFY(f.button("batchNewAssetSave")->isEnabled());
        QVERIFY(!f.button("removeBatch")->isEnabled());
    }

    void addsSeveralFilesAndSkipsTheUnreadable()
    {
        AssetManagerFixture f;
        const QString a = f.picture("a.png");
        const QString bad = f.file("b.png", "no picture");
        const QString c = f.picture("c.png");
        f.boxes.click(QMessageBox::Ok);
        openBatch(f, {a, bad, c});
        QCOMPARE(f.batch(),
                 (QStringList{QDir::toNativeSeparators(a), QDir::toNativeSeparators(c)}));
        QCOMPARE(f.boxes.shown().size(), 1);
        QCOMPARE(f.boxes.shown().constFirst().text, refusal.arg(QDir::toNativeSeparators(bad)));
    }

    void addsNothingWhenChoosingIsCancelled()
    {
        AssetManagerFixture f;
        openBatch(f, {});
        QCOMPARE(f.batch(), QStringList());
        QCOMPARE(f.trail, QStringList());
        QVERIFY(!f.button("batchNewAssetSave")->isEnabled());
    }

    void removesTheSelectedFileAndSelectsItsNeighbour()
    {
        AssetManagerFixture f;
        openBatch(f, {f.picture("a.png"), f.picture("b.png"), f.picture("c.png")});
        const auto names = [&f] {
            QStringList result;
            for (const QString &path : f.batch())
                result << QFileInfo(path).baseName();
            return result.join(u' ');
        };
        auto *list = f.child<QListWidget>("batchList");
        const auto select = [list](int row) {
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(list->item(row)).center());
        };
        const auto selected = [list] {
            const auto items = list->selectedItems();
            return items.isEmpty() ? -1 : list->row(items.constFirst());
        };
        select(2);
        f.press("removeBatch");
        QCOMPARE(names(), QString("a b"));
        QCOMPARE(selected(), 1);
        select(0);
        f.press("removeBatch");
        QCOMPARE(names(), QString("b"));
        QCOMPARE(selected(), 0);
        QVERIFY(f.button("removeBatch")->isEnabled());
        f.press("removeBatch");
        QCOMPARE(names(), QString());
        QCOMPARE(selected(), -1);
        QVERIFY(!f.button("removeBatch")->isEnabled());
        QVERIFY(!f.button("batchNewAssetSave")->isEnabled());
    }

private:
    /// Opens the batch tab of a folder and chooses these files; none cancels the dialog.
    static void openBatch(AssetManagerFixture &f, const QStringList &paths)
    {
        f.open(1);
        f.press("newAsset");
        f.pressTab(1);
        if (paths.isEmpty())
            f.files.cancel();
        else
            f.files.choose(paths);
        f.press("addBatch");
    }
};

ZEL_TEST_MAIN(tst_NewAssetPanel)
#include "tst_newassetpanel.moc"
