// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/studio/assetspagefixture.h"
#include "testsupport/testcase.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QToolTip>

using namespace AssetTesting;
using namespace StudioTesting;
using Studio::Settings;

namespace {

const QString listRoot = QStringLiteral("GetFolderAssets(0, \"\", \"\", 0, 0)");
const QString listPictures = QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)");
const QString listFolders = QStringLiteral("GetAssetFolders(0)");

} // namespace

/// The page with the assets: loading, empty states, keys, menus, reasons, what is remembered.
class TestAssetsPage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void loadsWhenFirstShownAndNotAgain()
    {
        AssetsPageFixture f;
        QVERIFY(f.client.calls().isEmpty());
        QVERIFY(f.errors.attempt([&] { f.page.open(); }));
        QCOMPARE(f.client.takeCalls(), (QStringList{listFolders, listRoot}));
        QCOMPARE(f.tree->nodeCount(), 5);
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l0"));
        f.page.open();
        QVERIFY(f.client.calls().isEmpty());
    }

    void aRootThatMayNotBeReadIsNotListed()
    {
        AssetsPageFixture f;
        f.client.assetFolders = ZelTest::assetFolderList(
            {{0, 0, false, QStringLiteral("root"), QString()}, folder(1, 0, "Pictures")});
        // The tree writes the last record's rights on the last node: the root keeps its own.
        QVERIFY(f.errors.attempt([&] { f.page.open(); }));
        QCOMPARE(f.client.calls(), QStringList{listFolders});
        QCOMPARE(f.list->emptyText(), QStringLiteral("Select a folder to see its assets"));
    }

    void countsWhatIsShownAndSelected()
    {
        AssetsPageFixture f;
        f.open();
        QCOMPARE(f.text("assetCount"), QStringLiteral("0 assets"));
        f.clickFolder("l1");
        QCOMPARE(f.text("assetCount"), QStringLiteral("3 assets"));
        f.clickAsset(0);
        QCOMPARE(f.text("assetCount"), QStringLiteral("1 of 3 assets selected"));
        f.clickFolder("l3");
        QCOMPARE(f.text("assetCount"), QStringLiteral("1 asset"));
    }

    void anEmptyFolderSaysWhatToDo()
    {
        AssetsPageFixture f;
        f.openAt("l4");
        QCOMPARE(f.list->emptyText(),
                 QStringLiteral("This folder is empty. Drop pictures here, or choose New Asset."));
        f.client.folderAssets.remove(3);
        f.clickFolder("l3");
        QCOMPARE(f.list->emptyText(), QStringLiteral("This folder is empty"));
    }

    void noFoldersAreTold()
    {
        AssetsPageFixture f;
        f.client.assetFolders = nullptr;
        QVERIFY(!f.isShown("noFolders"));
        f.open();
        QVERIFY(f.isShown("noFolders"));
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.text("noFolders"), QStringLiteral("The service names no folders for you"));
        QCOMPARE(f.list->emptyText(), QStringLiteral("No assets"));
        QCOMPARE(f.button("newFolder")->toolTip(), QStringLiteral("Select a folder first"));
        f.client.assetFolders = ZelTest::assetFolderList({folder(0, 0, "root")});
        click(f.page, "refreshAssets");
        QVERIFY(!f.isShown("noFolders"));
        QCOMPARE(f.tree->nodeCount(), 1);
    }

    void foldersThatDoNotComeAreToldAndRetryBringsThem()
    {
        AssetsPageFixture f;
        f.client.failNext(QStringLiteral("GetAssetFolders"), gone());
        f.open();
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.list->emptyText(), QStringLiteral("The folders could not be loaded"));
        QVERIFY(!f.isShown("noFolders"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.client.takeCalls(), (QStringList{listFolders, listRoot}));
        QCOMPARE(f.tree->nodeCount(), 5);
    }

    void aRefusalToListTheFoldersIsTold()
    {
        AssetsPageFixture f;
        f.client.failNext(QStringLiteral("GetAssetFolders"), refused());
        f.open();
        QCOMPARE(f.errors.problem().what, QStringLiteral("You may not do this."));
        QVERIFY(!f.errors.canRetry());
        // Shown again, it asks again.
        f.open();
        QCOMPARE(f.tree->nodeCount(), 5);
    }

    void aFolderThatCannotBeListedShowsNothingOfAnother()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.client.failNext(QStringLiteral("GetFolderAssets"), gone());
        f.clickFolder("l3");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(f.list->emptyText(),
                 QStringLiteral("The assets of this folder could not be listed"));
        f.client.takeCalls();
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.client.takeCalls(),
                 QStringList{QStringLiteral("GetFolderAssets(3, \"\", \"\", 0, 0)")});
        QCOMPARE(f.list->text(0), QStringLiteral("Rules"));
        // And the control works on.
        f.clickFolder("l1");
        QCOMPARE(f.list->count(), 3);
    }

    void theFirstFolderFailingLeavesTheTree()
    {
        AssetsPageFixture f;
        f.client.failNext(QStringLiteral("GetFolderAssets"), gone());
        f.open();
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.tree->nodeCount(), 5);
        QCOMPARE(f.list->emptyText(),
                 QStringLiteral("The assets of this folder could not be listed"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l0"));
        QCOMPARE(f.list->emptyText(),
                 QStringLiteral("This folder is empty. Drop pictures here, or choose New Asset."));
    }

    void whatFailsInTheControlIsToldAndRetryBringsItBack()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.clickAsset(1);
        f.client.failNext(QStringLiteral("DeleteAsset"), gone());
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        click(f.page, "deleteAsset");
        QCOMPARE(boxes.shown().size(), 1); // the question alone
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.takeCalls(), (QStringList{listFolders, listPictures}));
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l1"));
        QCOMPARE(f.list->count(), 3);
        QVERIFY(!f.errors.hasProblem());
    }

    void refreshListsTheFolderAgainAndKeepsTheSelection()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.clickAsset(0);
        f.clickAsset(2, Qt::ControlModifier);
        f.client.folderAssets.insert(
            1, ZelTest::assetList({asset("Alps"), asset("Brook"), asset("Coast")}));
        click(f.page, "refreshAssets");
        QCOMPARE(f.client.takeCalls(), QStringList{listPictures});
        QCOMPARE(f.list->selectedRows(), QList<qsizetype>{2});
        QVERIFY(f.button("deleteAsset")->isEnabled());
        f.list->setFocus();
        press(Qt::Key_F5); // the button looks pressed for a moment first
        QTRY_COMPARE(f.client.calls(), QStringList{listPictures});
    }

    void refreshInTheTreeLoadsTheFoldersToo()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        QVERIFY(f.tree->hasFocus()); // listing has not taken the keyboard away
        f.client.assetFolders = ZelTest::assetFolderList(
            {folder(0, 0, "root"), folder(1, 0, "Pictures"), folder(7, 0, "New here")});
        press(Qt::Key_F5);
        QTRY_COMPARE(f.client.calls(), (QStringList{listFolders, listPictures}));
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l1"));
        QVERIFY(f.tree->contains(QStringLiteral("l7")));
        // A folder that is gone gives way to the root.
        f.client.takeCalls();
        f.client.assetFolders = ZelTest::assetFolderList({folder(0, 0, "root")});
        f.tree->setFocus();
        press(Qt::Key_F5);
        QTRY_COMPARE(f.client.calls(), (QStringList{listFolders, listRoot}));
    }

    void aRefreshThatFailsLeavesTheListAndCanBeRetried()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.client.failNext(QStringLiteral("GetFolderAssets"), gone());
        click(f.page, "refreshAssets");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.list->count(), 3);
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
    }

    void disabledButtonsSayWhy_data()
    {
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<bool>("select");
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("toolTip");
        const auto row = [](const char *name, const char *folder, bool select, const char *button,
                            const char *toolTip) {
            QTest::newRow(name) << QByteArray(folder) << select << QByteArray(button)
                                << QString::fromUtf8(toolTip);
        };
        row("no W, folder", "l3", false, "newFolder",
            "You may not add anything to \"Papers\": the right to write (W) is missing");
        row("no W, asset", "l3", false, "newAsset",
            "You may not add anything to \"Papers\": the right to write (W) is missing");
        row("no D, folder", "l3", false, "deleteFolder",
            "You may not delete anything in \"Papers\": the right to delete (D) is missing");
        row("no D, asset", "l3", true, "deleteAsset",
            "You may not delete anything in \"Papers\": the right to delete (D) is missing");
        row("the root", "l0", false, "deleteFolder", "The root folder cannot be deleted");
        row("folders in it", "l1", false, "deleteFolder",
            "\"Pictures\" is not empty: it holds other folders");
        row("assets in it", "l2", false, "deleteFolder",
            "\"Logos\" is not empty: delete its assets first");
        row("nothing selected", "l1", false, "deleteAsset", "Select the assets to delete");
        row("selected", "l1", true, "deleteAsset", "Delete the selected assets");
        row("empty", "l4", false, "deleteFolder",
            "Delete the selected folder, which has to be empty");
        row("may write", "l1", false, "newAsset", "Upload files into the selected folder");
    }

    void disabledButtonsSayWhy()
    {
        QFETCH(const QByteArray, folder);
        QFETCH(const bool, select);
        QFETCH(const QByteArray, button);
        QFETCH(const QString, toolTip);
        AssetsPageFixture f;
        f.client.folderAssets.insert(2, ZelTest::assetList({asset("Mark")}));
        f.openAt(folder.constData());
        if (select)
            f.clickAsset(0);
        const QPushButton *shown = f.button(button.constData());
        QCOMPARE(shown->toolTip(), toolTip);
        QCOMPARE(shown->accessibleDescription(), shown->isEnabled() ? QString() : toolTip);
    }

    void theButtonsOfThePanelSayWhy()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        click(f.page, "newAsset");
        QCOMPARE(f.button("singleNewAssetSave")->toolTip(),
                 QStringLiteral("Enter a name and choose a file first"));
        type(f.page, "singleNewAssetUrl", QStringLiteral("/one.png"));
        type(f.page, "singleNewAssetName", QStringLiteral("One"));
        QVERIFY(f.button("singleNewAssetSave")->isEnabled());
        QVERIFY(f.button("singleNewAssetSave")->toolTip().isEmpty());
        QCOMPARE(f.button("batchNewAssetSave")->toolTip(), QStringLiteral("Add files first"));
        QCOMPARE(f.button("removeBatch")->toolTip(),
                 QStringLiteral("Select a file of the list first"));
        f.batch->addItem(QStringLiteral("/two.png"));
        f.batch->setCurrentRow(0);
        QVERIFY(f.button("batchNewAssetSave")->toolTip().isEmpty());
        QCOMPARE(f.button("removeBatch")->toolTip(),
                 QStringLiteral("Take the selected file off the list"));
    }

    void copiesTheAddressesOfTheSelectedAssets()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.clickAsset(0);
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(f.client.takeCalls(), QStringList{QStringLiteral("assetAddress(\"guid-Dunes\")")});
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("http://here/a/1"));
        f.clickAsset(1, Qt::ControlModifier);
        f.rightClick(f.list->viewport(), f.list->cellRect(1).center());
        f.choose("copyAddress");
        const QMimeData *copied = QApplication::clipboard()->mimeData();
        QCOMPARE(copied->text(), QStringLiteral("http://here/a/1\nhttp://here/a/2"));
        QCOMPARE(copied->urls(), (QList<QUrl>{QUrl(QStringLiteral("http://here/a/1")),
                                              QUrl(QStringLiteral("http://here/a/2"))}));
    }

    void copyingWithNothingSelectedOrAFailureLeavesTheClipboard()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        QApplication::clipboard()->setText(QStringLiteral("before"));
        f.list->setFocus();
        press(Qt::Key_C, Qt::ControlModifier);
        QVERIFY(f.client.calls().isEmpty());
        f.clickAsset(0);
        f.client.failNext(QStringLiteral("assetAddress"), gone());
        press(Qt::Key_C, Qt::ControlModifier);
        QVERIFY(f.errors.canRetry());
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
        f.errors.retry();
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("http://here/a/1"));
    }

    void theMenuOfAnAssetOffersWhatTheButtonsDo()
    {
        AssetsPageFixture f;
        f.openAt("l3");
        f.rightClick(f.list->viewport(), f.list->cellRect(0).center());
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        auto *erase = child<QAction>(*menu, "deleteAsset");
        QVERIFY(!erase->isEnabled());
        QCOMPARE(erase->toolTip(), f.button("deleteAsset")->toolTip());
        QVERIFY(!child<QAction>(*menu, "newAsset")->isEnabled());
        f.choose("copyText");
        QVERIFY(QApplication::clipboard()->text().startsWith(QLatin1String("Rules\t\t")));

        f.clickFolder("l1");
        f.rightClick(f.list->viewport(), f.list->cellRect(0).center());
        f.choose("newAsset");
        QVERIFY(f.isShown("newAssetFrame"));
    }

    void theMenuOnTheGroundSelectsAllAndRefreshes()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QPoint ground = f.list->viewport()->rect().bottomRight() - QPoint(5, 5);
        f.rightClick(f.list->viewport(), ground);
        QVERIFY(!QApplication::activePopupWidget()->findChild<QAction *>(
            QStringLiteral("copyAddress")));
        f.choose("selectAll");
        QCOMPARE(f.list->selectedCount(), 3);
        QVERIFY(f.button("deleteAsset")->isEnabled());
        f.rightClick(f.list->viewport(), ground);
        f.choose("refresh");
        QCOMPARE(f.client.takeCalls(), QStringList{listPictures});
        f.clickFolder("l4");
        f.rightClick(f.list->viewport(), ground);
        QVERIFY(!child<QAction>(*QApplication::activePopupWidget(), "selectAll")->isEnabled());
        f.choose("refresh");
    }

    void theMenuOfAFolderIsAboutThatFolder()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.rightClick(f.tree->viewport(), f.tree->nodeRect(QStringLiteral("l4")).center());
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l4"));
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        f.client.takeCalls();
        f.choose("deleteFolder");
        QCOMPARE(f.client.calls().constFirst(), QStringLiteral("DeleteAssetFolder(4)"));
        f.rightClick(f.tree->viewport(), f.tree->nodeRect(QStringLiteral("l3")).center());
        const QWidget *menu = QApplication::activePopupWidget();
        for (const char *name : {"newFolder", "newAsset", "deleteFolder"}) {
            QVERIFY(!child<QAction>(*menu, name)->isEnabled());
            QCOMPARE(child<QAction>(*menu, name)->toolTip(), f.button(name)->toolTip());
        }
        f.choose("refresh");
    }

    void deleteInTheListDeletesAssetsAndInTheTreeFolders()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.clickAsset(0);
        press(Qt::Key_A, Qt::ControlModifier);
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        press(Qt::Key_Delete);
        QCOMPARE(f.client.takeCalls(),
                 (QStringList{QStringLiteral("DeleteAsset(\"guid-Dunes\")"),
                              QStringLiteral("DeleteAsset(\"guid-Alps\")"),
                              QStringLiteral("DeleteAsset(\"guid-Coast\")"), listPictures}));
        f.activate();
        f.clickFolder("l4");
        f.client.takeCalls();
        boxes.click(QMessageBox::Yes);
        press(Qt::Key_Delete);
        QCOMPARE(f.client.calls().constFirst(), QStringLiteral("DeleteAssetFolder(4)"));
        QCOMPARE(boxes.unexpected(), 0);
    }

    void deleteWhereNothingMayBeDeletedSaysWhy()
    {
        AssetsPageFixture f;
        f.openAt("l3");
        f.clickAsset(0);
        press(Qt::Key_Delete);
        QCOMPARE(QToolTip::text(), f.button("deleteAsset")->toolTip());
        QVERIFY(QToolTip::text().contains(QLatin1String("(D)")));
        QToolTip::hideText();
        QVERIFY(f.client.calls().isEmpty());
    }

    void deleteInTheBatchTakesAFileOffIt()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.drop({picture(QDir(f.files.path()), QStringLiteral("a.png")),
                picture(QDir(f.files.path()), QStringLiteral("b.png"))});
        QCOMPARE(f.batch->count(), 2);
        f.batch->setFocus();
        f.batch->setCurrentRow(0);
        press(Qt::Key_Delete);
        QCOMPARE(f.batch->count(), 1);
    }

    void sortsDatesByTimeNotByText()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        click(f.page, "listMode");
        auto *header = f.list->findChild<QHeaderView *>();
        const QPoint created(header->sectionViewportPosition(2) + 20, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, created);
        QStringList names;
        for (qsizetype at = 0; at < f.list->count(); ++at)
            names << f.list->text(f.list->rowAt(at));
        QCOMPARE(names, (QStringList{"Alps", "Coast", "Dunes"})); // the 12th, the 7th, the 3rd
    }

    void viewAndWidthsAreRemembered()
    {
        QList<double> widths;
        {
            AssetsPageFixture f;
            f.openAt("l1");
            QCOMPARE(f.list->viewMode(), Zel::ListView::ViewMode::Icon);
            click(f.page, "listMode");
            auto *header = f.list->findChild<QHeaderView *>();
            const QPoint edge(header->sectionViewportPosition(0) + header->sectionSize(0) - 1,
                              header->height() / 2);
            QTest::mousePress(header->viewport(), Qt::LeftButton, {}, edge);
            QTest::mouseMove(header->viewport(), edge - QPoint(40, 0));
            QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, edge - QPoint(40, 0));
            for (int column = 0; column < 3; ++column)
                widths << f.list->columnWidth(column);
            f.page.remember();
        }
        AssetsPageFixture next;
        next.open();
        QCOMPARE(next.list->viewMode(), Zel::ListView::ViewMode::Report);
        QVERIFY(next.button("listMode")->isChecked());
        for (int column = 0; column < 3; ++column)
            QCOMPARE(next.list->columnWidth(column), widths.at(column));
        click(next.page, "thumbnailMode");
        AssetsPageFixture last;
        last.open();
        QCOMPARE(last.list->viewMode(), Zel::ListView::ViewMode::Icon);
    }

    void widthsNobodyChangedAreNotKept()
    {
        AssetsPageFixture f;
        f.open();
        f.page.remember();
        QVERIFY(f.settings.assetColumnWidths().isEmpty());
    }

    void leavingForgetsEverythingOfTheAccount()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        click(f.page, "newAsset");
        type(f.page, "singleNewAssetName", QStringLiteral("secret"));
        f.batch->addItem(QStringLiteral("/secret.png"));
        f.page.leave();
        QCOMPARE(f.tree->nodeCount(), 0);
        QCOMPARE(f.list->count(), 0);
        QCOMPARE(f.batch->count(), 0);
        QVERIFY(child<QLineEdit>(f.page, "singleNewAssetName")->text().isEmpty());
        QVERIFY(!f.isShown("newAssetFrame"));
        QVERIFY(f.text("assetCount").isEmpty());
        QVERIFY(!f.button("newAsset")->isEnabled());
        f.client.takeCalls();
        f.open();
        QCOMPARE(f.tree->nodeCount(), 5);
    }

    void thePageGivesTheKeyboardToTheTreeAndTabGoesThrough()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.page.setFocus();
        QVERIFY(f.tree->hasFocus());
        child(f.page, "refreshAssets")->setFocus();
        press(Qt::Key_Tab);
        QVERIFY(f.tree->hasFocus());
    }
};

ZEL_TEST_MAIN(TestAssetsPage)
#include "tst_assetspage.moc"
