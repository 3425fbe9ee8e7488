// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "../webcontrols/pictureserver.h"
#include "assetmanagerfixture.h"
#include "testsupport/testcase.h"

#include <QElapsedTimer>
#include <QTimer>

/// The pictures of an asset manager's icon view: those the service gives, and icons for the rest.
class tst_AssetThumbnails : public ZelTest::TestCase
{
    Q_OBJECT

    static QXSC::AssetRecord withThumbnail(const char *name, const QString &url)
    {
        QXSC::AssetRecord record = asset(name);
        record.thumbnailUrl = url;
        return record;
    }

    static PictureServer::Answer picture(Qt::GlobalColor colour)
    {
        PictureServer::Answer answer;
        answer.body = pictureFile({60, 40}, colour);
        return answer;
    }

    static PictureServer::Answer refusal()
    {
        PictureServer::Answer answer;
        answer.status = 404;
        return answer;
    }

    static PictureServer::Answer silence()
    {
        PictureServer::Answer answer;
        answer.isSilent = true;
        return answer;
    }

    /// The colour in the middle of a line's picture, as it is painted.
    static QColor painted(AssetManagerFixture &f, qsizetype row)
    {
        const QPoint middle = f.list().cellRect(row).center();
        const QRect cell = f.list().cellRect(row);
        const QImage shown = f.list().viewport()->grab().toImage();
        return shown.pixelColor(middle.x(), cell.top() + f.list().largeIconSize().height() / 2);
    }

private slots:

    void showsThePicturesOfTheService()
    {
        PictureServer server([](const PictureServer::Request &request) {
            return picture(request.path == "/red.png" ? Qt::red : Qt::blue);
        });
        AssetManagerFixture f;
        f.open(1, {withThumbnail("a", server.url("/red.png")), asset("b", "XML"),
                   withThumbnail("c", server.url("/blue.png"))});
        QCOMPARE(server.count(), 2);
        QCOMPARE(f.list().largeIcon(0), 1);
        QCOMPARE(f.list().largeIcon(1), 2);
        QCOMPARE(f.list().largeIcon(2), 3);
        QCOMPARE(painted(f, 0), QColor(Qt::red));
        QCOMPARE(painted(f, 2), QColor(Qt::blue));
        // The small icons tell the type all the same.
        QCOMPARE(f.list().smallIcon(0), 1);
        QCOMPARE(f.list().smallIcon(1), 4);
    }

    void takesAnAddressForOneOnlyWhenItBeginsSo()
    {
        PictureServer server([](const PictureServer::Request &) { return picture(Qt::red); });
        const QString address = server.url("/x.png");
        AssetManagerFixture f;
        f.open(1, {withThumbnail("a", " " + address), withThumbnail("b", address.toUpper()),
                   withThumbnail("c", "ftp://there/x.png"), withThumbnail("d", "")});
        QCOMPARE(server.count(), 0);
        for (int row = 0; row < 4; ++row)
            QCOMPARE(f.list().model()->largeImage(row).pixmap(32).toImage(), typeIcon("Image", 32));
    }

    void showsTheBrokenPictureForOneThatDoesNotCome()
    {
        PictureServer server([](const PictureServer::Request &) { return refusal(); });
        AssetManagerFixture f;
        f.open(1, {withThumbnail("a", server.url("/gone.png")), withThumbnail("b", "https://")});
        for (int row = 0; row < 2; ++row) {
            QCOMPARE(f.list().largeIcon(row), row + 1);
            QCOMPARE(f.list().model()->largeImage(row).pixmap(48).toImage(),
                     typeIcon("Broken", 48));
        }
    }

    void showsALatePictureInItsPlace()
    {
        PictureServer server([](const PictureServer::Request &request) {
            PictureServer::Answer answer = picture(Qt::green);
            answer.delay = request.path == "/late.png" ? 4500 : 0;
            return answer;
        });
        AssetManagerFixture f;
        QElapsedTimer clock;
        clock.start();
        f.open(1, {withThumbnail("a", server.url("/late.png")),
                   withThumbnail("b", server.url("/now.png"))});
        QVERIFY2(clock.elapsed() >= 2900, "The listing did not wait for its pictures.");
        QCOMPARE(f.list().largeIcon(0), 1);
        QVERIFY(painted(f, 0) != QColor(Qt::green));
        QCOMPARE(painted(f, 1), QColor(Qt::green));
        QTRY_COMPARE_WITH_TIMEOUT(painted(f, 0), QColor(Qt::green), 30000);
    }

    void paintsTheLinesWhileItWaits()
    {
        PictureServer server([](const PictureServer::Request &) {
            PictureServer::Answer answer = picture(Qt::red);
            answer.delay = 600;
            return answer;
        });
        AssetManagerFixture f;
        f.client.folderAssets[1] =
            ZelTest::assetList({withThumbnail("a", server.url("/a.png")), asset("b")});
        f.init();

        class PaintCounter : public QObject
        {
        public:
            int paints = 0;

            bool eventFilter(QObject *, QEvent *event) override
            {
                paints += event->type() == QEvent::Paint;
                return false;
            }
        } counter;

        f.list().viewport()->installEventFilter(&counter);
        int during = 0;
        connect(f.manager, &ZelWebServiceControls::AssetManager::FolderSelected, this,
                [&] { during = counter.paints; });
        f.clickFolder(1);
        QVERIFY(during > 0);
    }

    void hearsNothingWhileItWaits()
    {
        PictureServer server([](const PictureServer::Request &) {
            PictureServer::Answer answer = picture(Qt::red);
            answer.delay = 700;
            return answer;
        });
        AssetManagerFixture f;
        f.client.folderAssets[1] = ZelTest::assetList({withThumbnail("a", server.url("/a.png"))});
        f.init();
        bool timerFired = false;
        QTimer::singleShot(100, this, [&] { timerFired = true; });
        bool pressed = false;
        connect(f.button("listMode"), &QPushButton::pressed, this, [&] { pressed = true; });
        // Delivered by the message loop of the wait, as a click of a person would be.
        f.atCall = [&](const QString &) {
            QMetaObject::invokeMethod(
                this,
                [&] {
                    QTest::mouseClick(f.button("listMode"), Qt::LeftButton);
                    QTest::keyClick(f.button("listMode"), Qt::Key_Space);
                },
                Qt::QueuedConnection);
        };
        bool firedDuring = true;
        connect(f.manager, &ZelWebServiceControls::AssetManager::FolderSelected, this,
                [&] { firedDuring = timerFired; });
        f.clickFolder(1);
        QVERIFY(!firedDuring);
        QVERIFY(!pressed);
        QCOMPARE(f.list().viewMode(), Zel::ListView::ViewMode::Icon);
        QTRY_VERIFY(timerFired);
    }

    void mayBeClosedWhileItWaits()
    {
        PictureServer server([](const PictureServer::Request &) { return silence(); });
        AssetManagerFixture f;
        f.client.folderAssets[1] = ZelTest::assetList({withThumbnail("a", server.url("/a.png"))});
        f.init();
        f.atCall = [&](const QString &) {
            QMetaObject::invokeMethod(
                this,
                [&] {
                    f.form.close();
                    delete f.manager;
                },
                Qt::QueuedConnection);
        };
        QElapsedTimer clock;
        clock.start();
        f.manager->setFocus();
        f.tree().selectNode(AssetManagerFixture::keyOf(3));
        f.clickFolder(1);
        QVERIFY(!f.manager);
        QVERIFY(f.form.isHidden());
        QCOMPARE(f.trail, QStringList{"GetFolderAssets(1, \"\", \"\", 0, 0)"});
    }

    void forgetsThePicturesOfTheFolderBefore()
    {
        PictureServer server([](const PictureServer::Request &request) {
            return request.path == "/silent.png" ? silence() : picture(Qt::blue);
        });
        AssetManagerFixture f;
        f.open(1, {withThumbnail("a", server.url("/silent.png"))});
        f.open(3, {asset("b", "pdf"), withThumbnail("c", server.url("/blue.png"))});
        QCOMPARE(painted(f, 1), QColor(Qt::blue));
        QCOMPARE(f.list().model()->largeImage(0).pixmap(32).toImage(), typeIcon("pdf", 32));
        f.open(2, {});
        QCOMPARE(f.list().count(), 0);
        QCOMPARE(f.list().model()->largeImages().size(), 0);
    }

    void keepsEveryPictureWithItsLineWhenSorted()
    {
        PictureServer server([](const PictureServer::Request &request) {
            return picture(request.path == "/a.png" ? Qt::red : Qt::blue);
        });
        AssetManagerFixture f;
        f.list().sortBy(0, Qt::DescendingOrder);
        f.open(1, {withThumbnail("a", server.url("/a.png")),
                   withThumbnail("b", server.url("/b.png"))});
        QCOMPARE(ListTesting::shownTexts(f.list()), (QStringList{"b", "a"}));
        QCOMPARE(painted(f, 0), QColor(Qt::red));
        QCOMPARE(painted(f, 1), QColor(Qt::blue));
        f.list().sortBy(0, Qt::AscendingOrder);
        QCOMPARE(painted(f, 0), QColor(Qt::red));
        QCOMPARE(painted(f, 1), QColor(Qt::blue));
    }
};

ZEL_TEST_MAIN(tst_AssetThumbnails)
#include "tst_assetthumbnails.moc"
