// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "picturefixtures.h"
#include "platform/pictures/pictureloader.h"
#include "testsupport/testcase.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Zel;

namespace {

constexpr QSize Small(48, 48);
constexpr int Rounds = 400;

/// Either an image or a sentence, never both or none.
void verifyAnswer(const Picture &picture)
{
    QCOMPARE(picture.isNull(), !picture.problem.isEmpty());
}

/// TIFF lists what it holds wherever it likes, and what a camera writes behind its picture is no
/// part of it.
bool mayLackItsEnd(const QString &path)
{
    return path.endsWith(QLatin1String(".tif")) || path.endsWith(QLatin1String("trailer.jpg"));
}

/// Without the line ends and blanks that a text may or may not end with.
QByteArray contentOf(const QString &path)
{
    QByteArray bytes = PictureFixtures::bytesOf(path);
    const QList<char> blanks{'\0', '\n', ' '};
    while (path.endsWith(QLatin1String(".svg")) && blanks.contains(bytes.back()))
        bytes.chop(1);
    return bytes;
}

} // namespace

/// Damages every good picture in many ways: whatever comes, the program goes on. Random, but the
/// same at each run.
class TestPictureDamage : public ZelTest::TestCase
{
    Q_OBJECT

    void addGoodFiles()
    {
        QTest::addColumn<QString>("path");
        const QStringList files = PictureFixtures::files(QStringLiteral("good"));
        for (const QString &path : files)
            QTest::newRow(qPrintable(path.section(QLatin1Char('/'), -1))) << path;
    }

private slots:

    void refusesAPictureCutOffAnywhere_data() { addGoodFiles(); }

    void refusesAPictureCutOffAnywhere()
    {
        QFETCH(QString, path);
        const PictureFixtures::QuietReaders quiet;
        const QByteArray whole = contentOf(path);
        const bool mustRefuse = !mayLackItsEnd(path);
        const qsizetype step = std::max<qsizetype>(1, whole.size() / 401);
        const PictureLoader loader;
        for (qsizetype length = 0; length < whole.size(); length += length < 64 ? 1 : step) {
            const Picture picture = loader.load(whole.left(length), Small);
            verifyAnswer(picture);
            QVERIFY2(!mustRefuse || picture.isNull(), qPrintable(QString::number(length)));
            QCOMPARE(loader.probe(whole.left(length)).isNull(),
                     !loader.probe(whole.left(length)).problem.isEmpty());
        }
    }

    void survivesFlippedBits_data() { addGoodFiles(); }

    void survivesFlippedBits()
    {
        QFETCH(QString, path);
        const PictureFixtures::QuietReaders quiet;
        const QByteArray whole = PictureFixtures::bytesOf(path);
        QRandomGenerator random(quint32(whole.size()));
        const PictureLoader loader;
        for (int round = 0; round < Rounds; ++round) {
            QByteArray bytes = whole;
            for (int flips = random.bounded(1, 6); flips > 0; --flips) {
                // Headers decide most; half of the flips go there.
                const auto range =
                    random.bounded(2) ? std::min<qsizetype>(128, bytes.size()) : bytes.size();
                const qsizetype at = random.bounded(quint32(range));
                bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
            }
            verifyAnswer(loader.load(bytes, Small));
        }
    }

    void survivesExtremeNumbersAnywhere_data() { addGoodFiles(); }

    void survivesExtremeNumbersAnywhere()
    {
        QFETCH(QString, path);
        const PictureFixtures::QuietReaders quiet;
        const QByteArray whole = PictureFixtures::bytesOf(path);
        QRandomGenerator random(quint32(whole.size()) + 1);
        const QList<QByteArray> numbers{
            QByteArray(4, '\xFF'),       QByteArray(4, '\0'),
            QByteArray("\0\0\0\x80", 4), QByteArray("\xFF\x7F", 2),
            QByteArray("\x00\x80", 2),   QByteArray("\xFF\xFF\xFF\x7F", 4)};
        const PictureLoader loader;
        for (int round = 0; round < Rounds; ++round) {
            QByteArray bytes = whole;
            const QByteArray &number = numbers[random.bounded(int(numbers.size()))];
            const auto range = std::min<qsizetype>(round % 2 ? 200 : bytes.size(), bytes.size());
            // Numbers stand at even places in most forms.
            const qsizetype at = random.bounded(quint32(range)) / 2 * 2;
            bytes.replace(at, number.size(), number);
            verifyAnswer(loader.load(bytes, Small));
        }
    }

    void survivesPartsOfOtherPictures()
    {
        const PictureFixtures::QuietReaders quiet;
        QList<QByteArray> all;
        const QStringList files = PictureFixtures::files(QStringLiteral("good"));
        for (const QString &path : files)
            all << PictureFixtures::bytesOf(path);
        QRandomGenerator random(11);
        const PictureLoader loader;
        for (int round = 0; round < 10 * Rounds; ++round) {
            const QByteArray &one = all[random.bounded(int(all.size()))];
            const QByteArray &other = all[random.bounded(int(all.size()))];
            const qsizetype start = random.bounded(quint32(one.size()));
            verifyAnswer(loader.load(
                one.left(start) + other.mid(random.bounded(quint32(other.size()))), Small));
        }
    }
};

ZEL_TEST_MAIN(TestPictureDamage)
#include "tst_picturedamage.moc"
