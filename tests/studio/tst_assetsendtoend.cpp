// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetpicker.h"
#include "tests/studio/assetspagefixture.h"
#include "tests/studio/runningstudio.h"
#include "testsupport/testcase.h"

#include <QClipboard>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTabBar>

#include <csignal>

using namespace AssetTesting;
using namespace StudioTesting;
using namespace WorkspaceFiles;
using ZelWebServiceControls::AssetPicker;

namespace {

/// Studio over the sample content, signed in as somebody, on the assets page.
struct RunningAssets : RunningStudio
{
    RunningAssets(const Studio::Options &options, const QString &user)
        : RunningStudio(options)
        , tree(child<Zel::TreeView>(window, "assetFolderView"))
        , assets(child<Zel::ListView>(window, "assetList"))
        , batch(child<QListWidget>(window, "batchList"))
    {
        isReady = canSignIn();
        if (!isReady)
            return;
        signIn(user, QStringLiteral("sample-") + user);
        if (isShown("accountsList"))
            click(window, "selectAccount");
        click(window, "railPage_1");
        isReady = tree->nodeCount() > 0;
    }

    QString keyOf(const QString &folder) const { return keyBelow(tree->topKeys(), folder); }

    void clickFolder(const QString &folder) const
    {
        const QString key = keyOf(folder);
        QVERIFY2(!key.isEmpty(), qPrintable(folder));
        tree->ensureVisible(key);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->nodeRect(key).center());
    }

    void clickAsset(const QString &name) const
    {
        const qsizetype row = names().indexOf(name);
        QVERIFY2(row >= 0, qPrintable(name));
        QTest::mouseClick(assets->viewport(), Qt::LeftButton, {}, assets->cellRect(row).center());
    }

    /// The names in the order of the records.
    QStringList names() const
    {
        QStringList all;
        for (qsizetype row = 0; row < assets->count(); ++row)
            all << assets->text(row);
        return all;
    }

    QStringList sortedNames() const
    {
        QStringList all = names();
        all.sort();
        return all;
    }

    void dropFiles(const QStringList &paths)
    {
        QMimeData data;
        data.setUrls(AssetsPageFixture::urlsOf(paths));
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(assets->viewport(), &enter);
        QDropEvent drop(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(assets->viewport(), &drop);
        QVERIFY(comes([this] { return !isShown("uploadStrip"); }));
    }

    QString addressOf(const QString &name) const
    {
        clickAsset(name);
        press(Qt::Key_C, Qt::ControlModifier);
        return QApplication::clipboard()->text();
    }

    bool isReady = false;
    Zel::TreeView *tree;
    Zel::ListView *assets;
    QListWidget *batch;

private:
    QString keyBelow(const QStringList &keys, const QString &folder) const
    {
        for (const QString &key : keys) {
            if (tree->text(key) == folder)
                return key;
            if (const QString below = keyBelow(tree->childKeys(key), folder); !below.isEmpty())
                return below;
        }
        return {};
    }
};

struct Fetched
{
    int status = 0;
    QByteArray bytes;
};

Fetched fetch(const QString &address)
{
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.get(QNetworkRequest(QUrl(address))));
    if (!QTest::qWaitFor([&] { return reply->isFinished(); }, RunningStudio::Patience))
        return {};
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll()};
}

} // namespace

/// The assets page over the real service and the sample content.
class TestAssetsEndToEnd : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        QVERIFY(m_folder.isValid());
    }

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
    }

    void browsesTheFolders()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l0"));
        QCOMPARE(f.sortedNames(), (QStringList{"Read me first", "Title picture"}));
        f.clickFolder(QStringLiteral("Logos"));
        QCOMPARE(f.sortedNames(),
                 (QStringList{"Aurora 3", "Brightwater", "Brightwater, dark", "Partner badge"}));
        const auto logo = f.assets->tag(0).value<QXSC::AssetRecordPtr>();
        const Fetched thumbnail = fetch(logo->thumbnailUrl);
        QCOMPARE(thumbnail.status, 200);
        QVERIFY(!QImage::fromData(thumbnail.bytes).isNull());
        // Thumbnails are kept for the next start.
        QTRY_VERIFY(QDir(Studio::pictureFolder()).exists() &&
                    !QDir(Studio::pictureFolder()).isEmpty());
        QVERIFY(!f.keyOf(QStringLiteral("QXStudio")).isEmpty());
        QVERIFY(!f.isShown("errorBar"));
    }

    void anAuthorSeesAndMayDoWhatTheRightsSay()
    {
        RunningAssets f(options(), QStringLiteral("tomas"));
        QVERIFY(f.isReady);
        QVERIFY(f.keyOf(QStringLiteral("Contracts")).isEmpty()); // no R
        f.clickFolder(QStringLiteral("Papers"));
        QVERIFY(child(f.window, "newAsset")->toolTip().contains(QLatin1String("(W)")));
        QVERIFY(!child(f.window, "newAsset")->isEnabled());
        f.dropFiles({picture(QDir(m_folder.path()), QStringLiteral("a.png"))});
        QVERIFY(f.advice().contains(QLatin1String("write (W)")));
        QCOMPARE(f.batch->count(), 0);
    }

    void uploadsOneCopiesItsAddressAndDeletesIt()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Logos"));
        const qsizetype before = f.assets->count();
        const QString path = picture(QDir(m_folder.path()), QStringLiteral("one & only.png"));
        click(f.window, "newAsset");
        child<QTabBar>(f.window, "newAssetTabStrip")->setCurrentIndex(0);
        type(f.window, "singleNewAssetUrl", path);
        type(f.window, "singleNewAssetName", QStringLiteral("The one"));
        click(f.window, "singleNewAssetSave");
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(f.assets->count(), before + 1);

        const QString address = f.addressOf(QStringLiteral("The one"));
        QVERIFY2(address.startsWith(f.app.embeddedService()->address()), qPrintable(address));
        const Fetched bytes = fetch(address);
        QCOMPARE(bytes.status, 200);
        QCOMPARE(bytes.bytes, contentOf(path));

        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        press(Qt::Key_Delete);
        QCOMPARE(boxes.unexpected(), 0);
        QCOMPARE(f.assets->count(), before);
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(fetch(address).status, 404);
    }

    void uploadsADroppedFolderAndPicksFromIt()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Drop box"));
        const QDir show(m_folder.filePath(QStringLiteral("show")));
        const QStringList pictures{picture(show, QStringLiteral("1 \"quoted\".png")),
                                   picture(show, QStringLiteral("2 \U0001F600.png")),
                                   picture(show, QStringLiteral("sub/3.png"))};
        file(show, QStringLiteral("notes.txt"));
        f.dropFiles({show.path()});
        QCOMPARE(f.what(),
                 QStringLiteral("1 of 4 files cannot be read as a picture and was left out."));
        QCOMPARE(f.batch->count(), 3);
        click(f.window, "batchNewAssetSave");
        QVERIFY2(!f.isShown("errorBar"), qPrintable(f.what() + f.advice()));
        QCOMPARE(f.sortedNames(),
                 (QStringList{"1 \"quoted\".png", QStringLiteral("2 \U0001F600.png"), "3.png"}));
        QCOMPARE(fetch(f.addressOf(QStringLiteral("3.png"))).bytes, contentOf(pictures.at(2)));

        auto &picker = Zel::sharedForm<AssetPicker>();
        picker.Init(&f.app.client(), QString(), {});
        QTimer::singleShot(0, &picker, [&] {
            auto *tree = child<Zel::TreeView>(picker, "assetFolderView");
            auto *list = child<Zel::ListView>(picker, "assetList");
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                              tree->nodeRect(f.keyOf(QStringLiteral("Drop box"))).center());
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->cellRect(0).center());
            QTest::mouseClick(child(picker, "OKButton"), Qt::LeftButton);
        });
        picker.showModal(&f.window);
        QCOMPARE(picker.returnValue(), qint16(1));
        QCOMPARE(picker.guid(), f.assets->tag(0).value<QXSC::AssetRecordPtr>()->guid);
        QCOMPARE(fetch(f.app.client().assetAddress(picker.guid())).bytes,
                 contentOf(pictures.at(f.names().at(0).startsWith(QLatin1Char('1'))   ? 0
                                       : f.names().at(0).startsWith(QLatin1Char('2')) ? 1
                                                                                      : 2)));
    }

    void aServiceThatEndsInABatchLeavesWhatIsUpAndTheRestFollows()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Drop box"));
        const QDir show(m_folder.filePath(QStringLiteral("many")));
        QStringList paths;
        QStringList names;
        for (int i = 0; i < 5; ++i) {
            names << QStringLiteral("%1.png").arg(i);
            paths << picture(show, names.constLast());
        }
        f.dropFiles(paths);
        // Between the third file and the fourth.
        QTimer killer;
        killer.callOnTimeout([&] {
            if (f.batch->count() < 5 || f.batch->item(2)->flags() & Qt::ItemIsEnabled)
                return;
            killer.stop();
            ::kill(f.process(), SIGKILL);
            while (!f.app.embeddedService()->hasEnded())
                QThread::msleep(1);
        });
        killer.start(0);
        click(f.window, "batchNewAssetSave");
        QVERIFY(!killer.isActive());
        QTRY_VERIFY(!f.app.embeddedService()->isRunning());
        QCOMPARE(f.what(), QStringLiteral("\"3.png\" was not uploaded."));
        QCOMPARE(f.advice(), QStringLiteral("The service on this computer has stopped. Nothing on "
                                            "screen is lost. Retry starts it again."));
        QCOMPARE(child<QLabel>(f.window, "uploadText")->text(),
                 QStringLiteral("3 of 5 files are uploaded, 2 files are left."));
        click(f.window, "uploadRest");
        QVERIFY2(!f.isShown("errorBar"), qPrintable(f.what() + f.advice()));
        QCOMPARE(f.sortedNames(), names);
        QVERIFY(!f.isShown("uploadStrip"));
        QCOMPARE(fetch(f.addressOf(QStringLiteral("0.png"))).bytes, contentOf(paths.at(0)));
        QCOMPARE(fetch(f.addressOf(QStringLiteral("4.png"))).bytes, contentOf(paths.at(4)));
    }

    void oddNamesArriveOrAreToldWithTheirName()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Drop box"));
        const QDir show(m_folder.filePath(QStringLiteral("odd")));
        const QStringList names{QStringLiteral("a\\b.png"), QStringLiteral("tab\there.png"),
                                QStringLiteral("it's 100 % <b>&amp; \"so\".png"),
                                QString(251, QLatin1Char('n')) + QStringLiteral(".png")};
        QStringList paths;
        for (const QString &name : names)
            paths << picture(show, name);
        f.dropFiles(paths);
        QCOMPARE(f.batch->count(), 4);
        click(f.window, "batchNewAssetSave");
        QVERIFY2(!f.isShown("errorBar"), qPrintable(f.what() + f.advice()));
        QStringList expected = names;
        expected.sort();
        QCOMPARE(f.sortedNames(), expected);
    }

    void aFileDeletedBeforeItsTurnIsNamed()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Drop box"));
        const QDir show(m_folder.filePath(QStringLiteral("vanishing")));
        const QStringList paths{picture(show, QStringLiteral("a.png")),
                                picture(show, QStringLiteral("b. c.png"))};
        f.dropFiles(paths);
        QVERIFY(QFile::remove(paths.at(1)));
        click(f.window, "batchNewAssetSave");
        QCOMPARE(f.what(), QStringLiteral("\"b. c.png\" was not uploaded."));
        QVERIFY(f.advice().contains(QLatin1String("is not there (any more)")));
        QVERIFY(f.advice().contains(QLatin1String("Uploaded before it: 1 of 2 files.")));
        click(f.window, "batchNewAssetCancel");
        QCOMPARE(f.names(), QStringList{"a.png"});
    }

    void makesAndDeletesAFolder()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        const qint16 made = f.app.client().CreateAssetFolder(0, QStringLiteral("Made elsewhere"));
        QVERIFY(made > 0);
        f.tree->setFocus();
        press(Qt::Key_F5);
        QVERIFY(f.comes([&] { return !f.keyOf(QStringLiteral("Made elsewhere")).isEmpty(); }));
        f.clickFolder(QStringLiteral("Made elsewhere"));
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        press(Qt::Key_Delete);
        QVERIFY(f.keyOf(QStringLiteral("Made elsewhere")).isEmpty());
        QCOMPARE(f.tree->selectedNode(), QStringLiteral("l0"));
        QVERIFY(!f.isShown("errorBar"));
    }

    void somebodyElseSeesNothingOfIt()
    {
        RunningAssets f(options(), QStringLiteral("maja"));
        QVERIFY(f.isReady);
        f.clickFolder(QStringLiteral("Contracts"));
        QVERIFY(f.assets->count() > 0);
        chooseFromMenu(f.window, "accountButton", {QStringLiteral("signOut")});
        QCOMPARE(f.assets->count(), 0);
        f.signIn(QStringLiteral("tomas"), QStringLiteral("sample-tomas"));
        QVERIFY(f.comes([&] { return f.tree->nodeCount() > 0; }));
        QVERIFY(f.keyOf(QStringLiteral("Contracts")).isEmpty());
        QVERIFY(!f.isShown("errorBar"));
    }

private:
    /// A workspace of its own with the sample content.
    Studio::Options options()
    {
        Studio::Options options;
        options.serviceProgram = serviceProgram();
        options.workspace = m_folder.filePath(QStringLiteral("workspace%1/file").arg(++m_count));
        QDir().mkpath(QFileInfo(options.workspace).path());
        return makeSample(options.workspace) ? options : Studio::Options();
    }

    QTemporaryDir m_folder;
    int m_count = 0;
};

ZEL_TEST_MAIN(TestAssetsEndToEnd)
#include "tst_assetsendtoend.moc"
