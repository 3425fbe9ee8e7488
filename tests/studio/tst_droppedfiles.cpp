// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/dropreader.h"
#include "studio/dropsummary.h"
#include "tests/studio/assetspagefixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>

#include <unistd.h>

using namespace AssetTesting;
using Studio::DropContents;
using Studio::DroppedFiles;

namespace {

DroppedFiles walk(const QStringList &paths, int most = DroppedFiles::Most)
{
    return Studio::walkDropped(AssetsPageFixture::urlsOf(paths), most, [] { return false; });
}

} // namespace

/// What becomes of files and folders that are dropped.
class TestDroppedFiles : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_root = std::make_unique<QTemporaryDir>();
        QVERIFY(m_root->isValid());
    }

    void foldersAreWalkedInTheOrderOfNames()
    {
        for (const char *name :
             {"show/img10.png", "show/img2.png", "show/b/2.png", "show/a/1.png", "show/Img1.png"})
            QVERIFY(!file(root(), QLatin1String(name)).isEmpty());
        const QString single = file(root(), QStringLiteral("single.png"));
        const DroppedFiles found = walk({root().filePath(QStringLiteral("show")), single});
        QCOMPARE(relative(found.files),
                 (QStringList{"single.png", "show/Img1.png", "show/img2.png", "show/img10.png",
                              "show/a/1.png", "show/b/2.png"}));
        QVERIFY(found.unreachable.isEmpty());
        QVERIFY(!found.isCut);
    }

    void hiddenFilesInFoldersAreLeftOut()
    {
        file(root(), QStringLiteral("show/.hidden.png"));
        file(root(), QStringLiteral("show/.cache/a.png"));
        file(root(), QStringLiteral("show/seen.png"));
        QCOMPARE(relative(walk({root().filePath(QStringLiteral("show"))}).files),
                 QStringList{"show/seen.png"});
    }

    void linksThatLeadInCirclesAreWalkedOnce()
    {
        file(root(), QStringLiteral("show/deep/a.png"));
        QVERIFY(QFile::link(root().filePath(QStringLiteral("show")),
                            root().filePath(QStringLiteral("show/deep/again"))));
        QVERIFY(QFile::link(root().filePath(QStringLiteral("nowhere")),
                            root().filePath(QStringLiteral("show/dangling.png"))));
        QCOMPARE(relative(walk({root().filePath(QStringLiteral("show"))}).files),
                 QStringList{"show/deep/a.png"});
    }

    void aFileDroppedWithItsFolderIsTakenOnce()
    {
        const QString inside = file(root(), QStringLiteral("show/a.png"));
        QCOMPARE(relative(walk({inside, root().filePath(QStringLiteral("show")), inside}).files),
                 QStringList{"show/a.png"});
    }

    void whatCannotBeReachedIsNamed()
    {
        const QString missing = root().filePath(QStringLiteral("missing.png"));
        DroppedFiles found = Studio::walkDropped(
            {QUrl(QStringLiteral("https://example.org/a.png")), QUrl::fromLocalFile(missing)}, 10,
            [] { return false; });
        QCOMPARE(found.unreachable,
                 (QStringList{QStringLiteral("https://example.org/a.png"), missing}));
        QVERIFY(found.files.isEmpty());
        if (::geteuid() == 0)
            return; // for the superuser every folder opens
        const QString closed = root().filePath(QStringLiteral("closed"));
        file(root(), QStringLiteral("closed/a.png"));
        QFile::setPermissions(closed, QFile::WriteOwner);
        found = walk({closed});
        QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(found.unreachable, QStringList{closed});
    }

    void moreThanTheLimitIsCut()
    {
        for (int i = 0; i < 5; ++i)
            file(root(), QStringLiteral("show/%1.png").arg(i));
        const QString folder = root().filePath(QStringLiteral("show"));
        QCOMPARE(walk({folder}, 5).files.size(), 5);
        QVERIFY(!walk({folder}, 5).isCut);
        const DroppedFiles cut = walk({folder}, 3);
        QCOMPARE(relative(cut.files), (QStringList{"show/0.png", "show/1.png", "show/2.png"}));
        QVERIFY(cut.isCut);
    }

    void walkingIsGivenUpWhenAsked()
    {
        for (int i = 0; i < 5; ++i)
            file(root(), QStringLiteral("show/%1.png").arg(i));
        int asked = 0;
        const DroppedFiles found = Studio::walkDropped(AssetsPageFixture::urlsOf({root().path()}),
                                                       100, [&asked] { return ++asked > 4; });
        QVERIFY(found.files.size() < 5);
    }

    void readsEveryFileAndTellsHowFarItIs()
    {
        QStringList paths;
        for (int i = 0; i < 7; ++i)
            paths << picture(root(), QStringLiteral("%1.png").arg(i));
        paths << file(root(), QStringLiteral("text.png")) // the content decides
              << file(root(), QStringLiteral("empty.png"), {})
              << picture(root(), QStringLiteral("picture.txt"));
        Studio::DropReader reader;
        DropContents contents;
        int last = -1;
        int count = 0;
        bool isMonotone = true;
        connect(&reader, &Studio::DropReader::finished,
                [&](const DropContents &read) { contents = read; });
        connect(&reader, &Studio::DropReader::progressed, [&](int done, int all) {
            isMonotone = isMonotone && done >= last;
            last = done;
            count = all;
        });
        reader.read(AssetsPageFixture::urlsOf(paths));
        QVERIFY(reader.isReading());
        QTRY_VERIFY(!reader.isReading());
        QCOMPARE(contents.pictures.size(), 8);
        QCOMPARE(relative(contents.refused), (QStringList{"empty.png", "text.png"}));
        QVERIFY(isMonotone);
        QCOMPARE(count, 10);
    }

    void readingThatIsGivenUpSaysNothing()
    {
        QStringList paths;
        for (int i = 0; i < 50; ++i)
            paths << picture(root(), QStringLiteral("%1.png").arg(i));
        Studio::DropReader reader;
        QSignalSpy finished(&reader, &Studio::DropReader::finished);
        reader.read(AssetsPageFixture::urlsOf(paths));
        reader.cancel();
        QVERIFY(!reader.isReading());
        // What is read next is not disturbed by what was given up.
        reader.read(AssetsPageFixture::urlsOf(paths.mid(0, 2)));
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished.at(0).at(0).value<DropContents>().pictures.size(), 2);
    }

    void aReaderMayGoWhileItReads()
    {
        QStringList paths;
        for (int i = 0; i < 50; ++i)
            paths << picture(root(), QStringLiteral("%1.png").arg(i));
        Studio::DropReader reader;
        reader.read(AssetsPageFixture::urlsOf(paths));
    }

    void theSummaryNamesTheFirstAndCountsTheRest_data()
    {
        QTest::addColumn<int>("good");
        QTest::addColumn<int>("bad");
        QTest::addColumn<bool>("isCut");
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("advice");
        const auto row = [](const char *name, int good, int bad, bool isCut, const char *what,
                            const char *advice) {
            QTest::newRow(name) << good << bad << isCut << QString::fromLatin1(what)
                                << QString::fromLatin1(advice);
        };
        row("all good", 3, 0, false, "", "");
        row("nothing", 0, 0, false, "There are no files to upload in what was dropped.", "");
        row("the only one", 0, 1, false, "The file cannot be read as a picture and was left out.",
            "\"0.txt\".");
        row("one of many", 3, 1, false,
            "1 of 4 files cannot be read as a picture and was left out.", "\"0.txt\".");
        row("several", 1, 3, false, "3 of 4 files cannot be read as pictures and were left out.",
            "\"0.txt\", \"1.txt\", \"2.txt\".");
        row("many", 2000, 1200, false,
            "1,200 of 3,200 files cannot be read as pictures and were left out.",
            "\"0.txt\", \"1.txt\", \"2.txt\" and 1,197 more.");
        row("too many", 5000, 0, true, "More was dropped than can be taken at once.",
            "Only the first 5,000 files of the drop were looked at; drop the others afterwards.");
    }

    void theSummaryNamesTheFirstAndCountsTheRest()
    {
        QFETCH(const int, good);
        QFETCH(const int, bad);
        QFETCH(const bool, isCut);
        QFETCH(const QString, what);
        QFETCH(const QString, advice);
        const ZelTest::LocaleFixture locale(QLocale(QLocale::English, QLocale::UnitedStates));
        DropContents contents;
        contents.isCut = isCut;
        for (int i = 0; i < good; ++i)
            contents.pictures << QStringLiteral("/show/%1.png").arg(i);
        for (int i = 0; i < bad; ++i)
            contents.refused << QStringLiteral("/show/%1.txt").arg(i);
        const Studio::Problem problem = Studio::dropSummary(contents);
        QCOMPARE(problem.what, what);
        QCOMPARE(problem.advice, advice);
        QCOMPARE(problem.details, contents.refused.join(QLatin1Char('\n')));
        QVERIFY(!problem.canRetry);
    }

private:
    QDir root() const { return QDir(m_root->path()); }

    QStringList relative(const QStringList &paths) const
    {
        QStringList shorter;
        for (const QString &path : paths)
            shorter << root().relativeFilePath(path);
        return shorter;
    }

    std::unique_ptr<QTemporaryDir> m_root;
};

ZEL_TEST_MAIN(TestDroppedFiles)
#include "tst_droppedfiles.moc"
