// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetuploads.h"
#include "tests/studio/assetspagefixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QThread>

#include <optional>

using namespace AssetTesting;
using namespace StudioTesting;

namespace {

/// A service error that names what went wrong, for the upload of the given number (from 1).
class FailAt
{
public:
    FailAt(AssetsPageFixture &fixture, int number, const QXSC::ServiceError &error)
    {
        fixture.client.atCall = [&fixture, number, error, this](const QString &call) {
            if (call.startsWith(QLatin1String("CreateAsset(")) && ++m_seen == number)
                fixture.client.failNext(QStringLiteral("CreateAsset"), error);
        };
    }

private:
    int m_seen = 0;
};

QString create(const QString &path, int folder = 1)
{
    return QStringLiteral("CreateAsset(\"%1\", \"\", %2, \"%3\", \"\", \"\", \"\")")
        .arg(path.section(QLatin1Char('/'), -1), QString::number(folder), path);
}

} // namespace

/// Dropping files on the assets page and uploading batches of them.
class TestAssetUploads : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
    }

    // Dropping

    void droppedFilesGoToTheBatchOfTheFolder()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QString a = picture(folder(f), QStringLiteral("a.png"));
        const QString b = picture(folder(f), QStringLiteral("sub/b.png"));
        f.drop({folder(f).filePath(QStringLiteral("sub")), a});
        QVERIFY(f.isShown("batchFrame"));
        QCOMPARE(child<QTabBar>(f.page, "newAssetTabStrip")->currentIndex(), 1);
        QCOMPARE(f.batchEntries(), (QStringList{a, b}));
        QVERIFY(f.button("batchNewAssetSave")->isEnabled());
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.client.calls().isEmpty());
        // What is on the list already is not listed twice.
        f.drop({a});
        QCOMPARE(f.batchEntries(), (QStringList{a, b}));
    }

    void aDropLeavesWhatWasTypedForASingleFile()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        click(f.page, "newAsset");
        type(f.page, "singleNewAssetName", QStringLiteral("half typed"));
        auto *box = child<QLineEdit>(f.page, "singleNewAssetUrl");
        f.data.setUrls(f.urlsOf({picture(folder(f), QStringLiteral("a.png"))}));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &f.data, Qt::LeftButton, {});
        QApplication::sendEvent(box, &enter);
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &f.data, Qt::LeftButton, {});
        QApplication::sendEvent(box, &drop);
        QTRY_COMPARE(f.batch->count(), 1);
        QVERIFY(box->text().isEmpty());
        QCOMPARE(child<QLineEdit>(f.page, "singleNewAssetName")->text(),
                 QStringLiteral("half typed"));
    }

    void whatIsNoPictureIsRefusedInOneSummary()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QString good = picture(folder(f), QStringLiteral("z.png"));
        QStringList paths{good};
        for (int i = 0; i < 5; ++i)
            paths << file(folder(f), QStringLiteral("%1.jpg").arg(i));
        ZelTest::MessageBoxDriver boxes;
        f.drop(paths);
        QCOMPARE(f.batchEntries(), QStringList{good});
        QVERIFY(boxes.shown().isEmpty());
        QCOMPARE(f.errors.problem().what,
                 QStringLiteral("5 of 6 files cannot be read as pictures and were left out."));
        QCOMPARE(f.errors.problem().advice,
                 QStringLiteral("\"0.jpg\", \"1.jpg\", \"2.jpg\" and 2 more."));
        QVERIFY(f.errors.problem().details.contains(paths.at(5)));
        QVERIFY(!f.errors.canRetry());
    }

    void withNothingLeftThePanelStaysClosed()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.drop({file(folder(f), QStringLiteral("only.txt"))});
        QVERIFY(!f.isShown("newAssetFrame"));
        QCOMPARE(f.errors.problem().what,
                 QStringLiteral("The file cannot be read as a picture and was left out."));
    }

    void aFolderWithoutTheRightSaysWhichOne()
    {
        AssetsPageFixture f;
        f.openAt("l3");
        const QString path = picture(folder(f), QStringLiteral("a.png"));
        QVERIFY(f.dragOver(f.urlsOf({path})));
        QVERIFY(f.isShown("dropHint"));
        const QString reason =
            QStringLiteral("You may not add anything to \"Papers\": the right to write (W) is "
                           "missing");
        QCOMPARE(child(f.page, "dropHint")->accessibleName(), reason);
        f.dropUrls(f.urlsOf({path}));
        QVERIFY(!f.isShown("dropHint"));
        QCOMPARE(f.errors.problem().what, QStringLiteral("Nothing was taken of what was dropped."));
        QCOMPARE(f.errors.problem().advice, reason + QLatin1Char('.'));
        QVERIFY(!f.isShown("uploadStrip"));
        QCOMPARE(f.batch->count(), 0);
    }

    void theHintSaysWhereFilesWouldGo()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        QVERIFY(f.dragOver(f.urlsOf({QStringLiteral("/a.png")})));
        QCOMPARE(child(f.page, "dropHint")->accessibleName(),
                 QStringLiteral("Drop pictures and folders here to upload them into \"Pictures\""));
        QVERIFY(child(f.page, "dropHint")->grab().toImage() != QImage());
        QDragLeaveEvent leave;
        QApplication::sendEvent(&f.page, &leave);
        QVERIFY(!f.isShown("dropHint"));
        // A text is nothing to upload.
        f.data.clear();
        f.data.setText(QStringLiteral("words"));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &f.data, Qt::LeftButton, {});
        QApplication::sendEvent(&f.page, &enter);
        QVERIFY(!f.isShown("dropHint"));
    }

    void withNoFolderSelectedADropSaysSo()
    {
        AssetsPageFixture f;
        f.client.assetFolders = nullptr;
        f.open();
        f.dropUrls(f.urlsOf({picture(folder(f), QStringLiteral("a.png"))}));
        QCOMPARE(f.errors.problem().advice, QStringLiteral("Select a folder first."));
    }

    void readingManyFilesShowsHowFarItIsAndCanBeCancelled()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        QStringList paths;
        for (int i = 0; i < 40; ++i)
            paths << picture(folder(f), QStringLiteral("%1.png").arg(i));
        f.dropUrls(f.urlsOf(paths));
        QVERIFY(f.isShown("uploadStrip"));
        QCOMPARE(f.text("uploadText"), QStringLiteral("Looking for files…"));
        // A second drop has to wait.
        QVERIFY(f.dragOver(f.urlsOf(paths)));
        QCOMPARE(child(f.page, "dropHint")->accessibleName(),
                 QStringLiteral("Other files are being read or uploaded just now"));
        QDragLeaveEvent leave;
        QApplication::sendEvent(&f.page, &leave);
        click(f.page, "uploadEnd");
        QVERIFY(!f.isShown("uploadStrip"));
        // Another reading after it ends alone, with its own files.
        f.drop(paths.mid(0, 1));
        QCOMPARE(f.batchEntries(), paths.mid(0, 1));
        QVERIFY(!f.errors.hasProblem());
    }

    void theReadingTellsHowFarItIs()
    {
        const ZelTest::LocaleFixture locale(QLocale(QLocale::English, QLocale::UnitedStates));
        Studio::UploadStrip strip;
        strip.showReading(12, 3456);
        QCOMPARE(child<QLabel>(strip, "uploadText")->text(),
                 QStringLiteral("Reading the dropped files: 12 of 3,456"));
        const auto *bar = child<QProgressBar>(strip, "uploadBar");
        QCOMPARE(bar->value(), 12);
        QCOMPARE(bar->maximum(), 3456);
        QVERIFY(bar->isVisibleTo(&strip));
        QCOMPARE(child<QPushButton>(strip, "uploadEnd")->text(), QStringLiteral("&Cancel"));
    }

    void leavingThePageForgetsADrop()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.dropUrls(f.urlsOf({picture(folder(f), QStringLiteral("a.png"))}));
        f.page.leave();
        QVERIFY(!f.isShown("uploadStrip"));
        f.open();
        QTest::qWait(50);
        QCOMPARE(f.batch->count(), 0);
        QVERIFY(!f.isShown("newAssetFrame"));
    }

    // Saving

    void aBatchIsSavedAndListed()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QString a = picture(folder(f), QStringLiteral("a.png"));
        const QString b = picture(folder(f), QStringLiteral("b.png"));
        f.drop({a, b});
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.client.calls(),
                 (QStringList{create(a), create(b),
                              QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)")}));
        QCOMPARE(f.batch->count(), 0);
        QVERIFY(!f.isShown("newAssetFrame"));
        QVERIFY(!f.isShown("uploadStrip"));
        QVERIFY(f.list->hasFocus() || f.list->view()->hasFocus());
    }

    void aBigBatchIsSavedInRuns()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QStringList paths = AssetsPageFixture::paths(700);
        f.batch->addItems(paths);
        click(f.page, "newAsset");
        child<QTabBar>(f.page, "newAssetTabStrip")->setCurrentIndex(1);
        QStringList uploads;
        QStringList others;
        QList<int> listedAfter;
        int longest = 0;
        QSet<QString> told;
        f.client.atCall = [&](const QString &call) {
            told.insert(f.text("uploadText"));
            longest = std::max(longest, f.batch->count());
            if (call.startsWith(QLatin1String("CreateAsset(")))
                uploads << call;
            else
                listedAfter << static_cast<int>(uploads.size());
        };
        click(f.page, "batchNewAssetSave");
        QVERIFY(!f.errors.hasProblem());
        QStringList expected;
        for (const QString &path : paths)
            expected << create(path);
        QCOMPARE(uploads, expected);
        QCOMPARE(listedAfter, (QList<int>{328, 656, 700}));
        QCOMPARE(longest, 328);
        QVERIFY(told.contains(QStringLiteral("Uploading file 1 of 700")));
        QVERIFY(told.contains(QStringLiteral("Uploading file 657 of 700")));
        QCOMPARE(f.batch->count(), 0);
        QVERIFY(!f.isShown("newAssetFrame"));
    }

    void whatWentUpIsMarkedWhileTheRestGoes()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems({QStringLiteral("/a.png"), QStringLiteral("/b.png")});
        QStringList atSecond;
        QString toolTip;
        bool showsBar = true;
        f.client.atCall = [&](const QString &call) {
            if (call != create(QStringLiteral("/b.png")))
                return;
            atSecond = f.batchEntries();
            toolTip = f.batch->item(0)->toolTip();
            showsBar = f.isShown("uploadBar");
        };
        openBatch(f);
        click(f.page, "batchNewAssetSave");
        QCOMPARE(atSecond, (QStringList{QStringLiteral("+/a.png"), QStringLiteral("/b.png")}));
        QCOMPARE(toolTip, QStringLiteral("Uploaded"));
        QVERIFY(!showsBar); // the manager's own tells it all
    }

    void aServiceGoneInTheMiddleLeavesWhatIsUpAndTheRestCanFollow()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        const QStringList paths = AssetsPageFixture::paths(10);
        f.batch->addItems(paths);
        openBatch(f);
        std::optional<FailAt> fail;
        fail.emplace(f, 7, gone());
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.uploads(), 7);
        QCOMPARE(f.errors.problem().what, QStringLiteral("\"6.png\" was not uploaded."));
        QCOMPARE(f.errors.problem().advice,
                 QStringLiteral("Nothing answers at http://here. Uploaded before it: 6 of 10 "
                                "files."));
        QVERIFY(f.errors.canRetry());
        // The panel is as it was, with what went up marked and nothing hanging.
        QVERIFY(f.isShown("batchFrame"));
        QVERIFY(!f.isShown("progressFrame"));
        QVERIFY(f.button("batchNewAssetSave")->isEnabled());
        QVERIFY(f.tree->isEnabled());
        for (int row = 0; row < 10; ++row)
            QCOMPARE(f.batchEntries().at(row).startsWith(QLatin1Char('+')), row < 6);
        QCOMPARE(f.text("uploadText"),
                 QStringLiteral("6 of 10 files are uploaded, 4 files are left."));

        QVERIFY(child(f.page, "uploadRest")->hasFocus());

        fail.reset();
        bool isTold = true;
        f.client.atCall = [&](const QString &) { isTold = f.errors.hasProblem(); };
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QVERIFY(!isTold); // while it goes on nothing says that it failed
        QStringList expected;
        for (const QString &path : paths.mid(6))
            expected << create(path);
        expected << QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)");
        QCOMPARE(f.client.calls(), expected);
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(!f.isShown("uploadStrip"));
        QVERIFY(!f.isShown("newAssetFrame"));
        QCOMPARE(f.batch->count(), 0);
    }

    void retryUploadsTheRestToo()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        std::optional<FailAt> fail;
        fail.emplace(f, 2, gone());
        click(f.page, "batchNewAssetSave");
        f.client.atCall = nullptr;
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.uploads(), 2);
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(!f.isShown("uploadStrip"));
    }

    void uploadingTheRestPreparesAsARetryDoes()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(2));
        openBatch(f);
        const FailAt fail(f, 1, gone());
        click(f.page, "batchNewAssetSave");
        f.client.takeCalls();
        bool isBack = false;
        f.errors.setBeforeRetry([&isBack] { return isBack; });
        click(f.page, "uploadRest");
        QVERIFY(f.client.calls().isEmpty());
        isBack = true;
        click(f.page, "uploadRest");
        QCOMPARE(f.uploads(), 2);
    }

    void aFailureInALaterRunCountsTheWholeBatch()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(700));
        openBatch(f);
        std::optional<FailAt> fail;
        fail.emplace(f, 401, gone());
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.errors.problem().what, QStringLiteral("\"400.png\" was not uploaded."));
        QVERIFY(f.errors.problem().advice.endsWith(
            QLatin1String("Uploaded before it: 400 of 700 files.")));
        QCOMPARE(f.text("uploadText"),
                 QStringLiteral("400 of 700 files are uploaded, 300 files are left."));
        QCOMPARE(f.batch->count(), 700 - 328);
        f.client.atCall = nullptr;
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QCOMPARE(f.uploads(), 300);
        QCOMPARE(f.client.calls().constFirst(), create(QStringLiteral("/pictures/400.png")));
        QVERIFY(!f.isShown("uploadStrip"));
    }

    void aFileThatIsGoneCanBeTakenOffAndTheRestUploaded()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        const FailAt fail(
            f, 2,
            QXSC::ServiceError(
                QXSC::ServiceError::Kind::Invalid,
                QStringLiteral("The file is not there (any more). Choose it again.")));
        click(f.page, "batchNewAssetSave");
        QVERIFY(!f.errors.canRetry()); // the same file would fail again
        QTest::mouseClick(f.batch->viewport(), Qt::LeftButton, {},
                          f.batch->visualItemRect(f.batch->item(1)).center());
        click(f.page, "removeBatch");
        QCOMPARE(f.text("uploadText"),
                 QStringLiteral("1 of 2 files are uploaded, 1 file is left."));
        QCOMPARE(f.batchEntries(), (QStringList{QStringLiteral("+/pictures/0.png"),
                                                QStringLiteral("/pictures/2.png")}));
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QCOMPARE(f.client.calls().constFirst(), create(QStringLiteral("/pictures/2.png")));
        QCOMPARE(f.uploads(), 1);
        QVERIFY(!f.errors.hasProblem());
    }

    void rightsWithdrawnMeanwhileAreTold()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        const FailAt fail(f, 3, refused());
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.errors.problem().what, QStringLiteral("\"2.png\" was not uploaded."));
        QCOMPARE(f.errors.problem().advice,
                 QStringLiteral("You may not do this. Uploaded before it: 2 of 3 files."));
        QVERIFY(!f.errors.canRetry());
        click(f.page, "batchNewAssetCancel");
        QCOMPARE(f.batchEntries(), QStringList{QStringLiteral("/pictures/2.png")});
    }

    void theRestGoesWhereTheBatchWasMeantToGo()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(2));
        openBatch(f);
        std::optional<FailAt> fail;
        fail.emplace(f, 2, gone());
        click(f.page, "batchNewAssetSave");
        f.client.atCall = nullptr;
        f.clickFolder("l4");
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l1"));
        QCOMPARE(f.client.calls().at(1), create(QStringLiteral("/pictures/1.png"), 1));
    }

    void aFolderThatIsGoneMeanwhileIsTold()
    {
        AssetsPageFixture f;
        f.openAt("l4");
        f.batch->addItems(AssetsPageFixture::paths(2));
        openBatch(f);
        std::optional<FailAt> fail;
        fail.emplace(f, 2, gone());
        click(f.page, "batchNewAssetSave");
        f.client.atCall = nullptr;
        f.client.assetFolders =
            ZelTest::assetFolderList({folder0(), AssetTesting::folder(1, 0, "Pictures")});
        f.tree->setFocus();
        press(Qt::Key_F5);
        QTRY_COMPARE(f.tree->nodeCount(), 2);
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QCOMPARE(f.uploads(), 0);
        QVERIFY(f.errors.problem().what.contains(QLatin1String("not there any more")));
        // Save puts them where a person wants them now.
        f.clickFolder("l1");
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.client.calls().at(1), create(QStringLiteral("/pictures/1.png"), 1));
    }

    void whatIsReadDuringAnUploadWaitsForItsEnd()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(2));
        openBatch(f);
        const QString fresh = picture(folder(f), QStringLiteral("fresh.png"));
        f.dropUrls(f.urlsOf({fresh, file(folder(f), QStringLiteral("bad.txt"))}));
        f.client.atCall = [&](const QString &call) {
            // The reading ends in the middle of the batch.
            if (call == create(QStringLiteral("/pictures/0.png")))
                QThread::msleep(300);
        };
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.uploads(), 2);
        QTRY_COMPARE(f.batchEntries(), QStringList{fresh});
        QVERIFY(f.isShown("batchFrame"));
        QVERIFY(f.errors.problem().what.startsWith(QLatin1String("1 of 2 files")));
        QVERIFY(!f.isShown("uploadStrip"));
    }

    void aDropAfterAFailureLeavesTheRestInSight()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        const FailAt fail(f, 2, gone());
        click(f.page, "batchNewAssetSave");
        f.dropUrls(f.urlsOf({picture(folder(f), QStringLiteral("more.png"))}));
        QTRY_COMPARE(f.batch->count(), 4);
        QCOMPARE(f.text("uploadText"),
                 QStringLiteral("1 of 4 files are uploaded, 3 files are left."));
        QVERIFY(f.isShown("uploadRest"));
    }

    void stopEndsBetweenFilesAndTheRestCanFollow()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(5));
        openBatch(f);
        // As the system delivers it: the click waits until events are handled.
        f.client.atCall = [&](const QString &call) {
            if (call == create(QStringLiteral("/pictures/1.png")))
                QMetaObject::invokeMethod(
                    f.button("uploadEnd"), [&] { click(f.page, "uploadEnd"); },
                    Qt::QueuedConnection);
        };
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.uploads(), 2);
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.isShown("batchFrame"));
        QVERIFY(!f.isShown("progressFrame"));
        QCOMPARE(f.text("uploadText"),
                 QStringLiteral("2 of 5 files are uploaded, 3 files are left."));
        f.client.atCall = nullptr;
        f.client.takeCalls();
        click(f.page, "uploadRest");
        QCOMPARE(f.uploads(), 3);
    }

    void escapeStopsToo()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(5));
        openBatch(f);
        f.client.atCall = [&](const QString &call) {
            if (call == create(QStringLiteral("/pictures/0.png")))
                QMetaObject::invokeMethod(
                    &f.page, [] { press(Qt::Key_Escape); }, Qt::QueuedConnection);
        };
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.uploads(), 1);
    }

    void cancelOfThePanelStopsClosesAndListsWhatIsUp()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(4));
        openBatch(f);
        f.client.atCall = [&](const QString &call) {
            if (call == create(QStringLiteral("/pictures/1.png")))
                QMetaObject::invokeMethod(
                    &f.page, [&] { click(f.page, "batchNewAssetCancel"); }, Qt::QueuedConnection);
        };
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.uploads(), 2);
        QVERIFY(!f.isShown("newAssetFrame"));
        QVERIFY(!f.isShown("uploadStrip"));
        QCOMPARE(f.client.calls().constLast(),
                 QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)"));
        // The list is kept, without what is up.
        QCOMPARE(f.batchEntries(), (QStringList{QStringLiteral("/pictures/2.png"),
                                                QStringLiteral("/pictures/3.png")}));
    }

    void cancelAfterAFailureListsWhatIsUp()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        const FailAt fail(f, 2, gone());
        click(f.page, "batchNewAssetSave");
        f.client.takeCalls();
        click(f.page, "batchNewAssetCancel");
        QCOMPARE(f.client.takeCalls(),
                 QStringList{QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)")});
        QVERIFY(!f.isShown("uploadStrip"));
        QCOMPARE(f.batch->count(), 2);
        // Without anything new nothing is listed.
        openBatch(f);
        click(f.page, "batchNewAssetCancel");
        QVERIFY(f.client.calls().isEmpty());
    }

    void nothingElseIsHeardWhileABatchIsSaved()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(3));
        openBatch(f);
        bool isDropTaken = true;
        f.client.atCall = [&](const QString &call) {
            if (call != create(QStringLiteral("/pictures/0.png")))
                return;
            QMetaObject::invokeMethod(
                &f.page,
                [&] {
                    f.clickFolder("l3");
                    QTest::mouseClick(child(f.page, "refreshAssets"), Qt::LeftButton);
                    QTest::mouseClick(f.batch->viewport(), Qt::LeftButton, {},
                                      f.batch->visualItemRect(f.batch->item(2)).center());
                    QTest::mouseClick(f.button("removeBatch"), Qt::LeftButton);
                    QTest::keyClick(f.tree, Qt::Key_Down);
                    QTest::keyClick(&f.page, Qt::Key_F5);
                    isDropTaken = f.dragOver(f.urlsOf({QStringLiteral("/a.png")}));
                },
                Qt::QueuedConnection);
        };
        click(f.page, "batchNewAssetSave");
        QTest::qWait(150); // the refresh button would answer its key by now
        QStringList expected;
        for (const QString &path : AssetsPageFixture::paths(3))
            expected << create(path);
        expected << QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)");
        QCOMPARE(f.client.calls(), expected);
        QVERIFY(!isDropTaken);
        QVERIFY(!f.isShown("dropHint"));
        // Afterwards everything is heard again.
        f.clickFolder("l3");
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l3"));
    }

    void closingTheWindowStopsTheBatch()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(5));
        openBatch(f);
        f.client.atCall = [&](const QString &call) {
            if (call == create(QStringLiteral("/pictures/0.png")))
                QMetaObject::invokeMethod(
                    &f.page,
                    [&] {
                        f.window.close();
                        f.page.remember(); // as the main window does
                    },
                    Qt::QueuedConnection);
        };
        click(f.page, "batchNewAssetSave");
        QCOMPARE(f.client.calls(), QStringList{create(QStringLiteral("/pictures/0.png"))});
    }

    void aListingThatFailsAfterTheBatchUploadsNothingTwice()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        f.batch->addItems(AssetsPageFixture::paths(2));
        openBatch(f);
        f.client.failNext(QStringLiteral("GetFolderAssets"), gone());
        click(f.page, "batchNewAssetSave");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.uploads(), 2);
        QVERIFY(!f.isShown("uploadStrip"));
        QVERIFY(!f.isShown("progressFrame"));
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.calls(),
                 QStringList{QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)")});
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(!f.isShown("newAssetFrame"));
    }

    // The single file

    void aSingleFileThatFailsCanBeTriedAgain()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        fillSingle(f);
        f.client.failNext(QStringLiteral("CreateAsset"), gone());
        click(f.page, "singleNewAssetSave");
        QVERIFY(f.errors.canRetry());
        QVERIFY(!f.isShown("progressFrame"));
        QVERIFY(f.isShown("singleFrame"));
        QVERIFY(f.button("singleNewAssetSave")->isEnabled());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.uploads(), 1);
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(!f.isShown("newAssetFrame"));
    }

    void aListingThatFailsAfterASingleFileUploadsItOnce()
    {
        AssetsPageFixture f;
        f.openAt("l1");
        fillSingle(f);
        f.client.failNext(QStringLiteral("GetFolderAssets"), gone());
        click(f.page, "singleNewAssetSave");
        QVERIFY(f.errors.canRetry());
        f.client.takeCalls();
        f.errors.retry();
        QCOMPARE(f.client.calls(),
                 QStringList{QStringLiteral("GetFolderAssets(1, \"\", \"\", 0, 0)")});
        QVERIFY(!f.isShown("newAssetFrame"));
    }

private:
    static QDir folder(const AssetsPageFixture &f) { return QDir(f.files.path()); }

    static QXSC::AssetFolderRecord folder0()
    {
        return {0, 0, false, QStringLiteral("root"), QStringLiteral("RWD")};
    }

    static void openBatch(const AssetsPageFixture &f)
    {
        click(f.page, "newAsset");
        child<QTabBar>(f.page, "newAssetTabStrip")->setCurrentIndex(1);
    }

    static void fillSingle(const AssetsPageFixture &f)
    {
        click(f.page, "newAsset");
        type(f.page, "singleNewAssetUrl", QStringLiteral("/one.png"));
        type(f.page, "singleNewAssetName", QStringLiteral("One"));
    }
};

ZEL_TEST_MAIN(TestAssetUploads)
#include "tst_assetuploads.moc"
