// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int Patience = 250000; // milliseconds
constexpr int StepsInAPart = 77;

struct Outcome
{
    int exitCode = -1;
    QByteArray output;
};

Outcome runTour(const QStringList &arguments)
{
    QProcess studio;
    studio.setProcessChannelMode(QProcess::MergedChannels);
    studio.start(QStringLiteral(ZEL_BIN_DIR "/studio"), arguments);
    if (!studio.waitForFinished(Patience) || studio.exitStatus() != QProcess::NormalExit)
        return {-1, studio.readAll() + studio.errorString().toUtf8()};
    return {studio.exitCode(), studio.readAll()};
}

/// The middle brightness of a picture's corner, where the window's own ground is.
bool isDarkPicture(const QImage &picture)
{
    return qGray(picture.pixel(picture.width() - 3, picture.height() - 3)) < 128;
}

} // namespace

/// Lets the program walk through itself and looks at what it brings home.
class StudioTour : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void everyStepComesOut()
    {
        const QString folder = QStringLiteral(ZEL_TOUR_DIR);
        QVERIFY(QDir().mkpath(folder));
        // What an earlier tour has left goes, what a person has put there stays.
        const QString stale = folder + QStringLiteral("/99-light-100-of-yesterday.png");
        const QString foreign = folder + QStringLiteral("/notes.txt");
        for (const QString &path : {stale, foreign}) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const Outcome outcome = runTour({QStringLiteral("--tour"), folder});
        QVERIFY2(outcome.exitCode == 0, outcome.output.constData());
        QVERIFY(!QFile::exists(stale));
        QVERIFY(QFile::remove(foreign));
        QCOMPARE(picturesIn(folder).size(), 4 * StepsInAPart);
    }

    void everyPictureIsOfItsPart()
    {
        const QDir folder(QStringLiteral(ZEL_TOUR_DIR));
        for (const char *look : {"light", "dark"}) {
            for (const int scale : {100, 150}) {
                const QString part = QStringLiteral("%1-%2").arg(QLatin1String(look)).arg(scale);
                const QStringList files =
                    folder.entryList({QStringLiteral("*-%1-*.png").arg(part)}, QDir::Files);
                QCOMPARE(files.size(), StepsInAPart);
                for (const QString &file : files) {
                    const QImage picture(folder.filePath(file));
                    QVERIFY2(picture.size() == QSize(1400, 840) * scale / 100, qPrintable(file));
                    QVERIFY2(isDarkPicture(picture) == (part.startsWith(QLatin1String("dark"))),
                             qPrintable(file));
                }
            }
        }
    }

    void theIndexShowsThemAll()
    {
        QFile file(QStringLiteral(ZEL_TOUR_DIR "/index.html"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString index = QString::fromUtf8(file.readAll());
        const QStringList pictures = picturesIn(QStringLiteral(ZEL_TOUR_DIR));
        for (const QString &picture : pictures)
            QVERIFY2(index.contains(QStringLiteral("src=\"%1\"").arg(picture)),
                     qPrintable(picture));
        QCOMPARE(index.count(QStringLiteral("<img ")), pictures.size());
    }

    void aStepThatDoesNotComeOutFailsTheTour()
    {
        const QTemporaryDir folder;
        const Outcome outcome =
            runTour({QStringLiteral("--tour"), folder.path(), QStringLiteral("--service-program"),
                     folder.filePath(QStringLiteral("no-service"))});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.output.contains("tour: expected the service on this computer to start"),
                 outcome.output.constData());
        QVERIFY(picturesIn(folder.path()).isEmpty());
    }

    void aFolderThatCannotBeMadeFailsTheTour()
    {
        const QTemporaryDir folder;
        const QString blocked = folder.filePath(QStringLiteral("file"));
        QFile file(blocked);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const Outcome outcome =
            runTour({QStringLiteral("--tour"), blocked + QStringLiteral("/tour")});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.output.contains("cannot make the folder"));
    }

    void aWrongCommandLineIsTold_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no such option") << QStringList{"--fly"};
        QTest::newRow("something left over") << QStringList{"--tour", "/tmp/x", "left", "over"};
        QTest::newRow("no time at all") << QStringList{"--time-limit", "0", "--tour", "/tmp/x"};
        QTest::newRow("no number") << QStringList{"--time-limit", "soon", "--tour", "/tmp/x"};
    }

    void aWrongCommandLineIsTold()
    {
        QFETCH(const QStringList, arguments);
        const Outcome outcome = runTour(arguments);
        QVERIFY(outcome.exitCode == 1 || outcome.exitCode == 2);
        QVERIFY(!outcome.output.isEmpty());
    }

private:
    static QStringList picturesIn(const QString &folder)
    {
        return QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    }
};

ZEL_TEST_MAIN(StudioTour)
#include "studio_tour.moc"
