// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "picturefixtures.h"
#include "platform/pictures/pictureloader.h"
#include "testsupport/testcase.h"

#include <QBuffer>
#include <QPainter>
#include <QProcess>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace Zel;

namespace {

QByteArray svg(const QByteArray &content, const QByteArray &before = {})
{
    return before +
           "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "width='20' height='20'>" +
           content + "</svg>";
}

QByteArray redPng()
{
    QImage image(10, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QColor middle(const QImage &image)
{
    return image.pixelColor(image.rect().center());
}

/// What Qt's own renderer makes of a document.
QImage unguarded(const QByteArray &document)
{
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(document).render(&painter);
    return image;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class TestDrawings : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void opensNoFileThatADrawingNames_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<bool>("isDrawnUnguarded");
        QTest::newRow("image") << svg("<image width='20' height='20' xlink:href='%1/red.png'/>")
                               << true;
        QTest::newRow("style sheet") << svg("<rect class='a' fill='none' width='20' height='20'/>",
                                            "<?xml-stylesheet type='text/css' href='%1/red.css'?>")
                                     << false;
        QTest::newRow("address") << svg("<image width='20' height='20' "
                                        "xlink:href='file://%1/red.png'/>")
                                 << false;
        QTest::newRow("imported style")
            << svg("<style>@import url('%1/red.css');</style><rect class='a' fill='none' "
                   "width='20' height='20'/>")
            << false;
        QTest::newRow("entity") << svg("<text>&red;</text>",
                                       "<!DOCTYPE svg [<!ENTITY red SYSTEM '%1/red.css'>]>")
                                << false;
    }

    void opensNoFileThatADrawingNames()
    {
        QFETCH(QByteArray, document);
        QFETCH(bool, isDrawnUnguarded);
        const PictureFixtures::QuietReaders quiet;
        QTemporaryDir folder;
        write(folder.filePath(QStringLiteral("red.png")), redPng());
        write(folder.filePath(QStringLiteral("red.css")), ".a { fill: red }");
        document.replace("%1", folder.path().toUtf8());
        if (isDrawnUnguarded)
            QCOMPARE(middle(unguarded(document)), QColor(Qt::red));
        const Picture picture = PictureLoader().load(document);
        QVERIFY(picture.isNull() || middle(picture.image).alpha() == 0);
    }

    void drawsAnImageInsideTheDocument()
    {
        const QByteArray data = "data:image/png;base64," + redPng().toBase64();
        const Picture picture =
            PictureLoader().load(svg("<image width='20' height='20' xlink:href='" + data + "'/>"));
        QCOMPARE(picture.problem, QString());
        QCOMPARE(middle(picture.image), QColor(Qt::red));
    }

    void leavesOutADrawingInsideADrawing()
    {
        const QByteArray inner = svg("<rect width='20' height='20' fill='red'/>");
        const QByteArray data = "data:image/svg+xml;base64," + inner.toBase64();
        const QByteArray document =
            svg("<image width='20' height='20' xlink:href='" + data + "'/>");
        QCOMPARE(middle(unguarded(document)), QColor(Qt::red));
        QCOMPARE(middle(PictureLoader().load(document).image).alpha(), 0);
    }

    void leavesOutAnImageInsideThatIsTooLarge()
    {
        const QByteArray bomb = PictureFixtures::bytesOf(
            PictureFixtures::folder(QStringLiteral("broken/too-large/whole.png")));
        QVERIFY(!bomb.isEmpty());
        const Picture picture = PictureLoader().load(
            svg("<image width='20' height='20' xlink:href='data:image/png;base64," +
                bomb.toBase64() + "'/>"));
        QCOMPARE(picture.problem, QString());
        QCOMPARE(middle(picture.image).alpha(), 0);
    }

    void refusesManyImagesThatAreTooLargeTogether()
    {
        PictureLimits limits;
        limits.pixels = 250;
        const QByteArray image =
            "<image width='10' height='10' xlink:href='data:image/png;base64," +
            redPng().toBase64() + "'/>";
        QCOMPARE(PictureLoader(limits).load(svg(image + image)).problem, QString());
        QVERIFY(!PictureLoader(limits).load(svg(image + image + image)).problem.isEmpty());
    }

    void readsEntitiesOfDrawingProgramsAndRefusesThoseThatMultiply()
    {
        const QByteArray one = svg("<rect width='20' height='20' fill='&paint;'/>",
                                   "<!DOCTYPE svg [<!ENTITY paint 'red'>]>");
        QCOMPARE(middle(PictureLoader().load(one).image), QColor(Qt::red));

        QByteArray entities = "<!DOCTYPE svg [<!ENTITY a0 'ha'>";
        for (int i = 1; i < 12; ++i) {
            const QByteArray former = "&a" + QByteArray::number(i - 1) + ";";
            entities += "<!ENTITY a" + QByteArray::number(i) + " '" + former.repeated(10) + "'>";
        }
        QVERIFY(
            !PictureLoader().load(svg("<text>&a11;</text>", entities + "]>")).problem.isEmpty());
    }

    void leavesOutWhatActs()
    {
        const Picture picture = PictureLoader().load(
            svg("<script>while(1);</script><rect width='20' height='20' fill='red' onload='x()'>"
                "<animate attributeName='fill' values='blue;blue' dur='1s'/></rect>"
                "<foreignObject><rect width='20' height='20'/></foreignObject>"));
        QCOMPARE(picture.problem, QString());
        QCOMPARE(middle(picture.image), QColor(Qt::red));
    }

    void readsSizesInAllUnits_data()
    {
        QTest::addColumn<QByteArray>("size");
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("inches") << QByteArray("width='2in' height='1in'") << QSize(192, 96);
        QTest::newRow("millimetres")
            << QByteArray("width='50.8mm' height='25.4mm'") << QSize(192, 96);
        QTest::newRow("points") << QByteArray("width='144pt' height='72pt'") << QSize(192, 96);
        QTest::newRow("one edge") << QByteArray("width='100' viewBox='0 0 400 200'")
                                  << QSize(100, 50);
        QTest::newRow("the other edge")
            << QByteArray("height='100' viewBox='0 0 400 200'") << QSize(200, 100);
        QTest::newRow("percent") << QByteArray("width='100%' height='100%' viewBox='-5,-5 30 40'")
                                 << QSize(30, 40);
        QTest::newRow("none") << QByteArray() << QSize();
        QTest::newRow("nothing") << QByteArray("width='0' height='5'") << QSize();
        QTest::newRow("negative") << QByteArray("viewBox='0 0 -5 5'") << QSize();
        QTest::newRow("words") << QByteArray("width='wide' height='1e999'") << QSize();
    }

    void readsSizesInAllUnits()
    {
        QFETCH(QByteArray, size);
        QFETCH(QSize, pixels);
        const PictureInfo info = PictureLoader().probe("<svg xmlns='http://www.w3.org/2000/svg' " +
                                                       size + "><rect width='9'/></svg>");
        if (pixels.isEmpty())
            QVERIFY(info.problem.contains(QStringLiteral("how large")));
        else
            QCOMPARE(info.size, pixels);
    }

    void drawsTheSameInEveryThread()
    {
        const QStringList files = PictureFixtures::files(QStringLiteral("good"));
        const PictureLoader loader;
        QList<QImage> expected;
        for (const QString &path : files)
            expected << loader.loadFile(path).image;
        std::atomic<int> different = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 6; ++i)
            threads.emplace_back([&] {
                for (qsizetype f = 0; f < files.size(); ++f)
                    different += loader.loadFile(files[f]).image == expected[f] ? 0 : 1;
            });
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(different.load(), 0);
    }

    void needsNoScreenAndNoFonts()
    {
        // The same pictures in a program without an application for windows: all but the texts.
        QProcess program;
        program.start(QStringLiteral(ZEL_PICTURES_WITHOUT_SCREEN),
                      {PictureFixtures::folder(QStringLiteral("good/drawing.svg")),
                       PictureFixtures::folder(QStringLiteral("good/poster.emf")),
                       PictureFixtures::folder(QStringLiteral("good/grid.wmf")),
                       PictureFixtures::folder(QStringLiteral("good/photo.jpg"))});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.readAllStandardOutput(), QByteArray("64x48\n320x240\n320x160\n64x48\n"));
        QCOMPARE(program.exitCode(), 0);
    }
};

ZEL_TEST_MAIN(TestDrawings)
#include "tst_drawings.moc"
