// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"
#include "testsupport/testcase.h"
#include "webcontrols/webimage.h"
#include "webcontrols/webimagesource.h"

#include <QAccessible>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <atomic>

using namespace ZelWebControls;
using Answer = PictureServer::Answer;
using Request = PictureServer::Request;

namespace {

Answer picture(const QSize &size, Qt::GlobalColor color)
{
    Answer answer;
    answer.body = pictureFile(size, color);
    return answer;
}

QImage painted(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// How many pixels differ from the ground.
int drawn(QWidget &widget)
{
    const QImage image = painted(widget);
    const QRgb ground = image.pixel(0, 0);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == ground ? 0 : 1;
    }
    return count;
}

} // namespace

class TestWebImage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void showsAPictureInItsProportionsInTheMiddle()
    {
        PictureServer server([](const Request &) { return picture({400, 100}, Qt::red); });
        WebImageSource source;
        WebImage image;
        image.resize(200, 200);
        image.setSource(&source);
        QSignalSpy arrived(&image, &WebImage::Arrived);
        image.setUrl(server.url(QStringLiteral("a")));
        QVERIFY(image.isLoading());
        QTRY_COMPARE(arrived.size(), 1);
        const QImage seen = painted(image);
        QCOMPARE(seen.pixelColor(100, 100), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(1, 100), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(198, 100), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(100, 76), QColor(Qt::red));
        QVERIFY(seen.pixelColor(100, 73) != QColor(Qt::red));
        QVERIFY(seen.pixelColor(100, 127) != QColor(Qt::red));
        QCOMPARE(drawn(image), 200 * 50);
    }

    void enlargesNothing()
    {
        PictureServer server([](const Request &) { return picture({20, 10}, Qt::red); });
        WebImageSource source;
        WebImage image;
        image.resize(200, 200);
        image.setSource(&source);
        image.setUrl(server.url(QStringLiteral("a")));
        QTRY_VERIFY(!image.isLoading());
        QCOMPARE(drawn(image), 20 * 10);
        QCOMPARE(painted(image).pixelColor(100, 100), QColor(Qt::red));
    }

    void showsThePlaceOfAPictureOnItsWayOnLightAndOnDark_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::newRow("light") << QColor(Qt::white);
        QTest::newRow("dark") << QColor(30, 30, 30);
    }

    void showsThePlaceOfAPictureOnItsWayOnLightAndOnDark()
    {
        QFETCH(QColor, ground);
        PictureServer server([](const Request &) {
            Answer silent;
            silent.isSilent = true;
            return silent;
        });
        WebImageSource source;
        WebImage image;
        image.resize(120, 90);
        QPalette palette = image.palette();
        palette.setColor(QPalette::Window, ground);
        image.setPalette(palette);
        QCOMPARE(drawn(image), 0);
        image.setSource(&source);
        image.setUrl(server.url(QStringLiteral("a")));
        QVERIFY(drawn(image) > 100);
        // Seen, and not loud.
        const QImage seen = painted(image);
        int strongest = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x)
                strongest =
                    std::max(strongest, std::abs(qGray(seen.pixel(x, y)) - qGray(ground.rgb())));
        }
        QVERIFY(strongest > 30);
        QVERIFY(strongest < 130);
        QCOMPARE(image.accessibleDescription(), QStringLiteral("Loading"));
    }

    void saysWhyThereIsNoPicture()
    {
        PictureServer server([](const Request &) { return Answer{404, {}, {}}; });
        WebImageSource source;
        WebImage image;
        image.resize(120, 90);
        image.setSource(&source);
        QSignalSpy failed(&image, &WebImage::Failed);
        QSignalSpy arrived(&image, &WebImage::Arrived);
        image.setUrl(server.url(QStringLiteral("a")));
        QTRY_COMPARE(failed.size(), 1);
        QCOMPARE(arrived.size(), 0);
        QVERIFY(image.problem().contains(QStringLiteral("no longer there")));
        QCOMPARE(image.toolTip(), image.problem());
        QCOMPARE(image.accessibleDescription(), image.problem());
        QVERIFY(drawn(image) > 100);

        QPixmap own(16, 16);
        own.fill(Qt::magenta);
        image.setFailurePicture(QIcon(own));
        QCOMPARE(painted(image).pixelColor(60, 45), QColor(Qt::magenta));

        image.setUrl(QStringLiteral("file:///etc/hosts"));
        QVERIFY(image.problem().contains(QStringLiteral("not an address")));
        image.setUrl(QString());
        QCOMPARE(image.problem(), QString());
        QCOMPARE(image.toolTip(), QString());
        QCOMPARE(drawn(image), 0);
    }

    void showsAPictureOfTheHost()
    {
        WebImage image;
        image.resize(100, 100);
        QPixmap pixmap(50, 20);
        pixmap.fill(Qt::blue);
        image.setPicture(pixmap);
        QCOMPARE(drawn(image), 50 * 20);
        QCOMPARE(painted(image).pixelColor(50, 50), QColor(Qt::blue));
        QCOMPARE(image.Picture().size(), QSize(50, 20));
        QCOMPARE(image.Url(), QString());
        image.setUrl(QStringLiteral("x"));
        QVERIFY(image.Picture().isNull());
    }

    void isReachedByItsNamesLateBound()
    {
        WebImage image;
        QVERIFY(image.setProperty("Url", QStringLiteral("x")));
        QCOMPARE(image.property("Url").toString(), QStringLiteral("x"));
        QPixmap pixmap(5, 5);
        pixmap.fill(Qt::blue);
        QVERIFY(image.setProperty("Picture", pixmap));
        QCOMPARE(image.property("Picture").value<QPixmap>().size(), QSize(5, 5));
        QCOMPARE(Zel::Control::eventNames(&WebImage::staticMetaObject),
                 (QStringList{QStringLiteral("Arrived"), QStringLiteral("Failed")}));
    }

    void forgetsAFormerAddress()
    {
        PictureServer server([](const Request &request) {
            Answer answer = picture({50, 50}, request.path == "/slow" ? Qt::red : Qt::green);
            answer.delay = request.path == "/slow" ? 150 : 0;
            return answer;
        });
        WebImageSource source;
        WebImage image;
        image.resize(100, 100);
        image.setSource(&source);
        QSignalSpy arrived(&image, &WebImage::Arrived);
        image.setUrl(server.url(QStringLiteral("slow")));
        QTRY_COMPARE(server.count(), 1);
        image.setUrl(server.url(QStringLiteral("fast")));
        QTRY_COMPARE(arrived.size(), 1);
        QTest::qWait(250);
        QCOMPARE(arrived.size(), 1);
        QCOMPARE(painted(image).pixelColor(50, 50), QColor(Qt::green));
    }

    void mayBeDestroyedWhileItsPictureIsOnItsWay()
    {
        PictureServer server([](const Request &) {
            Answer answer = picture({50, 50}, Qt::red);
            answer.delay = 50;
            return answer;
        });
        WebImageSource source;
        auto image = std::make_unique<WebImage>();
        image->setSource(&source);
        image->setUrl(server.url(QStringLiteral("a")));
        QTRY_COMPARE(server.count(), 1);
        image.reset();
        QTest::qWait(120);

        auto *own = new WebImage;
        own->setSource(&source);
        const QPointer<WebImage> watched(own);
        connect(own, &WebImage::Arrived, this, [own] { delete own; });
        own->setUrl(server.url(QStringLiteral("b")));
        QTRY_VERIFY(!watched);
    }

    void outlivesItsSource()
    {
        WebImage image;
        {
            WebImageSource source;
            image.setSource(&source);
            image.setUrl(QStringLiteral("http://127.0.0.1:9/a"));
        }
        image.setUrl(QString());
        QVERIFY(!image.isLoading());
    }

    void asksForTheSizeItHas()
    {
        PictureServer server([](const Request &) {
            Answer answer = picture({400, 400}, Qt::red);
            answer.headers = {"Cache-Control: max-age=3600"};
            return answer;
        });
        WebImageSource source;
        const QUrl url(server.url(QStringLiteral("a")));
        WebImage image;
        image.resize(100, 100);
        image.setSource(&source);
        QSignalSpy arrived(&image, &WebImage::Arrived);
        image.setUrl(url.toString());
        QTRY_COMPARE(arrived.size(), 1);
        image.show();
        QVERIFY(QTest::qWaitForWindowExposed(&image));
        QVERIFY(source.remembered(url, {100, 100}));
        QVERIFY(!source.remembered(url, {300, 200}));
        image.resize(300, 200);
        // What is there stays until the better one comes.
        QVERIFY(drawn(image) >= 100 * 100);
        QTRY_COMPARE(drawn(image), 200 * 200);
        QVERIFY(source.remembered(url, {300, 200}));
        QCOMPARE(arrived.size(), 1);
    }

    void fetchesNothingInDesignMode()
    {
        PictureServer server([](const Request &) { return picture({50, 50}, Qt::red); });
        WebImageSource source;
        WebImage image;
        image.setMode(Zel::Control::Mode::Design);
        image.resize(100, 100);
        image.setSource(&source);
        QVERIFY(drawn(image) > 0);
        image.setUrl(server.url(QStringLiteral("a")));
        QTest::qWait(100);
        QCOMPARE(server.count(), 0);
        QCOMPARE(image.Url(), server.url(QStringLiteral("a")));
    }

    void isAPictureToAssistiveTechnology()
    {
        WebImage image;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&image);
        QVERIFY(face);
        QCOMPARE(face->role(), QAccessible::Graphic);
        QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Picture"));
        QCOMPARE(face->text(QAccessible::Description), QStringLiteral("No picture"));
        image.setAccessibleName(QStringLiteral("Preview of the theme"));
        image.setUrl(QStringLiteral("x"));
        QCOMPARE(face->text(QAccessible::Name), QStringLiteral("Preview of the theme"));

        QWidget plain;
        QAccessibleInterface *other = QAccessible::queryAccessibleInterface(&plain);
        QVERIFY(other);
        QVERIFY(other->role() != QAccessible::Graphic);
    }

    void usesTheSharedSourceOfTheProgram()
    {
        PictureServer server([](const Request &) { return picture({50, 50}, Qt::red); });
        WebImage image;
        image.resize(100, 100);
        image.setUrl(server.url(QStringLiteral("a")));
        QTRY_VERIFY(!image.isLoading());
        QCOMPARE(painted(image).pixelColor(50, 50), QColor(Qt::red));
        QVERIFY(WebImageSource::shared());
        QCOMPARE(WebImageSource::shared(), WebImageSource::shared());
    }
};

ZEL_TEST_MAIN(TestWebImage)
#include "tst_webimage.moc"
