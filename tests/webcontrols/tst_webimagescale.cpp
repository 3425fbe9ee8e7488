// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"
#include "testsupport/testcase.h"
#include "webcontrols/webimage.h"
#include "webcontrols/webimagelist.h"
#include "webcontrols/webimagesource.h"

#include <QBuffer>
#include <QPainter>
#include <QTest>

using namespace ZelWebControls;
using Answer = PictureServer::Answer;
using Request = PictureServer::Request;

namespace {

/// Black and white lines, one pixel each: any scaling but none turns them grey.
QByteArray linesFile(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, x % 2 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

bool isCrisp(const QImage &image, const QRect &area)
{
    for (int x = area.left(); x <= area.right(); ++x) {
        const QRgb pixel = image.pixel(x, area.center().y());
        if (qGray(pixel) != 0 && qGray(pixel) != 255)
            return false;
        if (x > area.left() && qGray(pixel) == qGray(image.pixel(x - 1, area.center().y())))
            return false;
    }
    return true;
}

Answer whole(const QByteArray &body)
{
    Answer answer;
    answer.body = body;
    return answer;
}

} // namespace

/// On a screen where three pixels stand for two of a layout.
class TestWebImageScale : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void decodesForThePixelsOfTheScreen()
    {
        PictureServer server([](const Request &) {
            return whole(pictureFile({400, 300}, Qt::red));
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.setView({96, 96}, 1.5);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        QTRY_VERIFY(list.hasAllArrived());
        const QPixmap pixmap = list.images()[0].pixmap(QSize(96, 96), 1.5);
        QCOMPARE(pixmap.size(), QSize(144, 144));
        QCOMPARE(pixmap.devicePixelRatio(), 1.5);
        const QImage image = pixmap.toImage();
        QCOMPARE(image.pixelColor(1, 72), QColor(Qt::red));
        QCOMPARE(image.pixelColor(142, 72), QColor(Qt::red));
        QCOMPARE(image.pixelColor(72, 19), QColor(Qt::red));
        QCOMPARE(image.pixelColor(72, 16).alpha(), 0);
    }

    void showsEachPixelOfAPictureOnOneOfTheScreen()
    {
        // 60 by 30 pixels of the picture are 40 by 20 of the layout.
        PictureServer server([](const Request &) { return whole(linesFile({60, 30})); });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.setView({40, 40}, 1.5);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        QTRY_VERIFY(list.hasAllArrived());
        const QIcon icon = list.images()[0];
        QVERIFY(isCrisp(icon.pixmap(QSize(40, 40), 1.5).toImage(), {0, 20, 60, 20}));

        // As a view paints it: straight onto itself, wherever the place lies.
        QImage canvas(300, 300, QImage::Format_RGB32);
        canvas.setDevicePixelRatio(1.5);
        canvas.fill(Qt::green);
        QPainter painter(&canvas);
        icon.paint(&painter, QRect(30, 31, 40, 40));
        painter.end();
        QVERIFY(isCrisp(canvas, {45, 67, 60, 20}));
    }

    void makesPicturesAnewForAnotherView()
    {
        PictureServer server([](const Request &) {
            return whole(pictureFile({400, 400}, Qt::red));
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.setView({20, 20}, 1);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        list.addUrl(QStringLiteral("bad"), QStringLiteral("file:///x"));
        const QIcon icon = list.images()[0];
        QTRY_VERIFY(list.hasAllArrived());
        const auto width = [&icon] {
            const QImage image = icon.pixmap(QSize(100, 100), 1.5).toImage();
            int count = 0;
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, 75) == QColor(Qt::red) ? 1 : 0;
            return count;
        };
        QCOMPARE(width(), 30); // 20 of the layout
        list.setView({100, 100}, 1.5);
        QVERIFY(list.hasAllArrived());
        QCOMPARE(width(), 30);
        QTRY_COMPARE(width(), 150);
        QCOMPARE(server.count(), 2);
        list.setView({100, 100}, 1.5);
        QTest::qWait(50);
        QCOMPARE(server.count(), 2);
    }

    void fillsTheRoomOfAControl()
    {
        PictureServer server([](const Request &) {
            return whole(pictureFile({400, 400}, Qt::red));
        });
        WebImageSource source;
        WebImage image;
        QCOMPARE(image.devicePixelRatioF(), 1.5);
        image.resize(100, 80);
        image.setSource(&source);
        image.setUrl(server.url(QStringLiteral("a")));
        QTRY_VERIFY(!image.isLoading());
        const QImage seen = image.grab().toImage();
        QCOMPARE(seen.size(), QSize(150, 120));
        QCOMPARE(seen.pixelColor(75, 1), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(75, 118), QColor(Qt::red));
        QCOMPARE(seen.pixelColor(16, 60), QColor(Qt::red));
        QVERIFY(seen.pixelColor(13, 60) != QColor(Qt::red));
    }

    void showsThePixelsOfAPictureInAControl()
    {
        PictureServer server([](const Request &) { return whole(linesFile({60, 30})); });
        WebImageSource source;
        WebImage image;
        image.resize(91, 61); // the middle falls between pixels
        image.setSource(&source);
        image.setUrl(server.url(QStringLiteral("a")));
        QTRY_VERIFY(!image.isLoading());
        const QImage seen = image.grab().toImage();
        int first = 0;
        while (first < seen.width() && qGray(seen.pixel(first, 45)) != 255)
            ++first;
        QVERIFY(isCrisp(seen, {first, 40, 60, 10}));
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "1.5");
    return ZelTest::runTest(argc, argv,
                            []() -> ZelTest::TestCase * { return new TestWebImageScale; });
}

#include "tst_webimagescale.moc"
