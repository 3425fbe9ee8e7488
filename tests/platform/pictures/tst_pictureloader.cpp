// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "picturefixtures.h"
#include "platform/pictures/pictureloader.h"
#include "testsupport/testcase.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Zel;

namespace {

struct Expected
{
    QByteArray format;
    QSize size;

    struct Pixel
    {
        QPoint at;
        QRgb color;
        int off;
    };

    QList<Pixel> pixels;
};

Expected expectedOf(const QString &path)
{
    Expected expected;
    const auto lines = PictureFixtures::bytesOf(path + QStringLiteral(".expected")).split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.split(' ');
        if (words[0] == "format")
            expected.format = words[1];
        else if (words[0] == "size")
            expected.size = {words[1].split('x')[0].toInt(), words[1].split('x')[1].toInt()};
        else if (words[0] == "pixel")
            expected.pixels << Expected::Pixel{{words[1].toInt(), words[2].toInt()},
                                               QRgb(words[3].toUInt(nullptr, 16)),
                                               words[4].toInt()};
    }
    return expected;
}

void verifyPixels(const QImage &image, const Expected &expected)
{
    QCOMPARE(image.size(), expected.size);
    for (const Expected::Pixel &pixel : expected.pixels) {
        const QColor seen = image.pixelColor(pixel.at);
        const QByteArray text = QStringLiteral("%1,%2 is %3, not %4")
                                    .arg(pixel.at.x())
                                    .arg(pixel.at.y())
                                    .arg(seen.name(), QColor(pixel.color).name())
                                    .toUtf8();
        QVERIFY2(PictureFixtures::isNear(seen.rgb(), pixel.color, pixel.off), text.constData());
    }
}

/// A part of the sentence for each folder of broken pictures.
QString sentenceOf(const QString &reason)
{
    static const QHash<QString, QString> sentences{
        {QStringLiteral("cut-off"), QStringLiteral("cut off")},
        {QStringLiteral("too-large"), QStringLiteral("which is more than can be shown")},
        {QStringLiteral("damaged"), QStringLiteral("damaged")},
        {QStringLiteral("not-a-picture"), QStringLiteral("not a picture")},
        {QStringLiteral("too-intricate"), QStringLiteral("too intricate")},
        {QStringLiteral("too-many"), QStringLiteral("more pictures than can be read")},
        {QStringLiteral("empty"), QStringLiteral("empty")}};
    return sentences.value(reason, QStringLiteral("no such folder"));
}

void addFiles(const QString &name)
{
    QTest::addColumn<QString>("path");
    const QString root = PictureFixtures::folder(name);
    const QStringList files = PictureFixtures::files(name);
    for (const QString &path : files)
        QTest::newRow(qPrintable(path.mid(root.size() + 1))) << path;
}

} // namespace

class TestPictureLoader : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void readsEveryGoodPicture_data() { addFiles(QStringLiteral("good")); }

    void readsEveryGoodPicture()
    {
        QFETCH(QString, path);
        const Expected expected = expectedOf(path);
        QVERIFY(!expected.pixels.isEmpty());

        const PictureLoader loader;
        const PictureInfo info = loader.probeFile(path);
        QCOMPARE(info.problem, QString());
        QCOMPARE(info.format, expected.format);
        QCOMPARE(info.size, expected.size);

        const Picture picture = loader.loadFile(path);
        QCOMPARE(picture.problem, QString());
        verifyPixels(picture.image, expected);
        QVERIFY(PictureLoader::canRead(path));
    }

    void looksAtTheContentAndNeverAtTheName_data() { addFiles(QStringLiteral("good")); }

    void looksAtTheContentAndNeverAtTheName()
    {
        QFETCH(QString, path);
        QTemporaryDir folder;
        const QString renamed = folder.filePath(QStringLiteral("picture.txt"));
        QVERIFY(QFile::copy(path, renamed));
        QCOMPARE(PictureLoader().loadFile(renamed).problem, QString());
        QCOMPARE(PictureLoader().load(PictureFixtures::bytesOf(path)).problem, QString());
    }

    void fitsIntoTheRoomGiven_data() { addFiles(QStringLiteral("good")); }

    void fitsIntoTheRoomGiven()
    {
        QFETCH(QString, path);
        const Expected expected = expectedOf(path);
        const QSize room(20, 100);
        const Picture picture = PictureLoader().loadFile(path, room);
        QCOMPARE(picture.problem, QString());
        QCOMPARE(picture.image.width(), 20);
        const double height = 20.0 * expected.size.height() / expected.size.width();
        QVERIFY(std::abs(picture.image.height() - height) <= 1);
    }

    void refusesEveryBrokenPictureWithASentence_data() { addFiles(QStringLiteral("broken")); }

    void refusesEveryBrokenPictureWithASentence()
    {
        QFETCH(QString, path);
        const PictureFixtures::QuietReaders quiet;
        const QString reason = path.section(QLatin1Char('/'), -2, -2);
        const Picture picture = PictureLoader().loadFile(path);
        QVERIFY2(picture.isNull(), "the picture was read");
        QVERIFY2(picture.problem.contains(sentenceOf(reason)), qPrintable(picture.problem));
        QVERIFY(picture.problem.endsWith(QLatin1Char('.')));
        QVERIFY(!PictureLoader::canRead(path));
    }

    void enlargesDrawingsAndNothingElse()
    {
        const QSize room(640, 480);
        const auto sizeIn = [&room](const char *name) {
            return PictureLoader()
                .loadFile(PictureFixtures::folder(QLatin1String(name)), room)
                .image.size();
        };
        QCOMPARE(sizeIn("good/plain.png"), QSize(64, 48));
        QCOMPARE(sizeIn("good/photo.jpg"), QSize(64, 48));
        QCOMPARE(sizeIn("good/drawing.svg"), room);
        QCOMPARE(sizeIn("good/poster.emf"), room);
        QCOMPARE(sizeIn("good/plain.wmf"), room);
    }

    void drawsLinesOfEnlargedDrawingsInAllDetail()
    {
        const QString path = PictureFixtures::folder(QStringLiteral("good/poster.emf"));
        const QImage image = PictureLoader().loadFile(path, {1280, 960}).image;
        // An edge is at most one grey pixel wide, not a ramp of four.
        int between = 0;
        for (int x = 60; x < 100; ++x) {
            const QRgb pixel = image.pixel(x, 120);
            const bool isEdge = !PictureFixtures::isNear(pixel, qRgb(255, 255, 255), 2) &&
                                !PictureFixtures::isNear(pixel, qRgb(200, 30, 30), 2);
            between += isEdge ? 1 : 0;
        }
        QVERIFY2(between <= 1, qPrintable(QString::number(between)));
    }

    void choosesTheSizeOfAnIconThatFitsBest()
    {
        const QString path = PictureFixtures::folder(QStringLiteral("good/sizes.ico"));
        const PictureLoader loader;
        QCOMPARE(loader.loadFile(path).image.size(), QSize(64, 48));
        QCOMPARE(loader.loadFile(path, {16, 16}).image.size(), QSize(16, 16));
        QCOMPARE(loader.loadFile(path, {32, 32}).image.size(), QSize(32, 32));
        QCOMPARE(loader.loadFile(path, {200, 200}).image.size(), QSize(64, 48));
    }

    void keepsAPixelOfAVeryNarrowPicture()
    {
        QImage strip(4000, 2, QImage::Format_RGB32);
        strip.fill(Qt::blue);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("strip.png"));
        QVERIFY(strip.save(path));
        const QImage image = PictureLoader().loadFile(path, {100, 100}).image;
        QCOMPARE(image.size(), QSize(100, 1));
    }

    void appliesTheLimitsItIsGiven()
    {
        const QString path = PictureFixtures::folder(QStringLiteral("good/plain.png"));
        const auto problemWith = [&path](auto set) {
            PictureLimits limits;
            set(limits);
            return PictureLoader(limits).loadFile(path).problem;
        };
        const QString large = sentenceOf(QStringLiteral("too-large"));
        QVERIFY(problemWith([](auto &l) { l.edge = 63; }).contains(large));
        QVERIFY(problemWith([](auto &l) { l.pixels = 64 * 48 - 1; }).contains(large));
        QVERIFY(
            problemWith([](auto &l) { l.bytes = 100; }).contains(QStringLiteral("larger than")));
        QCOMPARE(problemWith([](auto &l) { l.pixels = 64 * 48; }), QString());

        PictureLimits oneFrame;
        oneFrame.frames = 1;
        const PictureLoader strict(oneFrame);
        QVERIFY(strict.loadFile(PictureFixtures::folder(QStringLiteral("good/moving.gif")))
                    .problem.contains(sentenceOf(QStringLiteral("too-many"))));
        QCOMPARE(strict.loadFile(PictureFixtures::folder(QStringLiteral("good/plain.gif"))).problem,
                 QString());
    }

    void boundsTheCanvasOfADrawingThatNamesALargerOne()
    {
        const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='50000' "
                               "height='25000'><rect width='50000' height='25000'/></svg>";
        QCOMPARE(PictureLoader().probe(svg).size, QSize(4096, 2048));
        QCOMPARE(PictureLoader().load(svg).image.size(), QSize(4096, 2048));
        QCOMPARE(PictureLoader().load(svg, {100, 100}).image.size(), QSize(100, 50));
    }

    void readsRegularFilesOnly()
    {
        QTemporaryDir folder;
        const QString pipe = folder.filePath(QStringLiteral("pipe.png"));
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        const PictureLoader loader;
        const QString missing = QStringLiteral("no such file");
        QVERIFY(loader.loadFile(pipe).problem.contains(missing));
        QVERIFY(loader.loadFile(QStringLiteral("/dev/zero")).problem.contains(missing));
        QVERIFY(loader.loadFile(folder.path()).problem.contains(missing));
        QVERIFY(
            loader.loadFile(folder.filePath(QStringLiteral("gone.png"))).problem.contains(missing));
        QVERIFY(loader.loadFile(QString()).problem.contains(missing));
    }

    void readsNamesOfAnyKind()
    {
        QTemporaryDir folder;
        const QString name = QStringLiteral("a \"picture\"\n'of' 🙂 100%.png");
        const QString path = folder.filePath(name);
        QVERIFY(QFile::copy(PictureFixtures::folder(QStringLiteral("good/plain.png")), path));
        QVERIFY(PictureLoader::canRead(path));
    }
};

ZEL_TEST_MAIN(TestPictureLoader)
#include "tst_pictureloader.moc"
