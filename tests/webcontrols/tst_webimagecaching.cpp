// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"
#include "testsupport/testcase.h"
#include "webcontrols/webimagelist.h"
#include "webcontrols/webimagesource.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace ZelWebControls;
using Answer = PictureServer::Answer;
using Request = PictureServer::Request;

namespace {

QColor shown(const QIcon &icon)
{
    const QImage image = icon.pixmap(QSize(64, 64)).toImage();
    return image.pixelColor(image.rect().center());
}

/// A server with one picture in versions: red as version 1, green as version 2.
class Versions
{
public:
    explicit Versions(const QList<QByteArray> &headers = {}, bool hasEtag = true)
        : server([this, headers, hasEtag](const Request &request) {
            const QByteArray version = '"' + QByteArray::number(current.load()) + '"';
            const QByteArray changed =
                current == 1 ? "Mon, 02 Jan 2006 15:04:05 GMT" : "Tue, 03 Jan 2006 15:04:05 GMT";
            Answer answer;
            answer.headers = headers;
            answer.headers << (hasEtag ? "ETag: " + version : "Last-Modified: " + changed);
            const bool isKnown = hasEtag ? request.headers.value("if-none-match") == version
                                         : request.headers.value("if-modified-since") == changed;
            if (isKnown)
                answer.status = 304;
            else
                answer.body = pictureFile({40, 30}, current == 1 ? Qt::red : Qt::green);
            unchanged += isKnown ? 1 : 0;
            return answer;
        })
    {
    }

    QString url() const { return server.url(QStringLiteral("picture")); }

    std::atomic<int> current = 1;
    std::atomic<int> unchanged = 0;
    PictureServer server;
};

/// The colour a fresh list shows once everything has arrived.
QColor seen(WebImageSource &source, const QString &url)
{
    WebImageList list;
    list.setSource(&source);
    list.addUrl(QStringLiteral("1"), url);
    for (int i = 0; i < 200 && !list.hasAllArrived(); ++i)
        QTest::qWait(20);
    return list.problem(QStringLiteral("1")).isEmpty() ? shown(list.images()[0]) : QColor();
}

} // namespace

class TestWebImageCaching : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void asksWhetherAPictureHasChanged_data()
    {
        QTest::addColumn<bool>("hasEtag");
        QTest::newRow("by its tag") << true;
        QTest::newRow("by its date") << false;
    }

    void asksWhetherAPictureHasChanged()
    {
        QFETCH(bool, hasEtag);
        Versions versions({}, hasEtag);
        WebImageSource source;
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(versions.unchanged.load(), 0);
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(versions.unchanged.load(), 1);
        versions.current = 2;
        QCOMPARE(seen(source, versions.url()), QColor(Qt::green));
        QCOMPARE(versions.unchanged.load(), 1);
        QCOMPARE(seen(source, versions.url()), QColor(Qt::green));
        QCOMPARE(versions.unchanged.load(), 2);
        QCOMPARE(versions.server.count(), 4);
    }

    void asksNothingWhileAPictureIsFresh()
    {
        Versions versions({"Cache-Control: private, max-age=3600"});
        WebImageSource source;
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        WebImageList list;
        list.setSource(&source);
        QSignalSpy arrived(&list, &WebImageList::arrived);
        list.addUrl(QStringLiteral("1"), versions.url());
        QVERIFY(list.hasAllArrived());
        QCOMPARE(shown(list.images()[0]), QColor(Qt::red));
        QCOMPARE(arrived.size(), 0);
        QCOMPARE(versions.server.count(), 1);
    }

    void asksEachTimeWhereTheServerWantsIt()
    {
        Versions versions({"Cache-Control: max-age=3600, no-cache"});
        WebImageSource source;
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(versions.server.count(), 2);
        QCOMPARE(versions.unchanged.load(), 1);
    }

    void keepsNothingThatIsNotToBeKept()
    {
        QTemporaryDir folder;
        Versions versions({"Cache-Control: no-store"});
        WebImageSource source;
        source.setCacheFolder(folder.path());
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(versions.server.count(), 2);
        QCOMPARE(versions.unchanged.load(), 0);
    }

    void forgetsWhatIsTooMuchForItsMemory()
    {
        Versions versions;
        WebImageSource source;
        source.setMemoryLimit(1024);
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        QCOMPARE(versions.unchanged.load(), 0);
    }

    void keepsPicturesFromRunToRunInTheFolderOfTheHost()
    {
        QTemporaryDir folder;
        Versions versions;
        for (int run = 0; run < 3; ++run) {
            WebImageSource source;
            source.setCacheFolder(folder.path());
            QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
            QCOMPARE(versions.unchanged.load(), run);
        }
        versions.current = 2;
        WebImageSource source;
        source.setCacheFolder(folder.path());
        QCOMPARE(seen(source, versions.url()), QColor(Qt::green));
        // In memory and on disk: one question, no picture sent.
        QCOMPARE(seen(source, versions.url()), QColor(Qt::green));
        QCOMPARE(versions.unchanged.load(), 3);
        QCOMPARE(versions.server.count(), 5);
    }

    void asksNothingWhileAPictureInTheFolderIsFresh()
    {
        QTemporaryDir folder;
        Versions versions({"Cache-Control: max-age=3600"});
        for (int run = 0; run < 2; ++run) {
            WebImageSource source;
            source.setCacheFolder(folder.path());
            QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
        }
        QCOMPARE(versions.server.count(), 1);
    }

    void goesOnWithoutAFolderItCannotWriteTo()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("file"));
        QFile(file).open(QIODevice::WriteOnly);
        Versions versions;
        WebImageSource source;
        source.setCacheFolder(file + QStringLiteral("/below"));
        QCOMPARE(seen(source, versions.url()), QColor(Qt::red));
    }

    void changesItsFolderWhilePicturesAreUnderWay()
    {
        PictureServer server([](const Request &) {
            Answer answer;
            answer.body = pictureFile({40, 30}, Qt::red);
            answer.delay = 20;
            return answer;
        });
        QTemporaryDir folder;
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        for (int i = 0; i < 40; ++i)
            list.addUrl(QString::number(i), server.url(QString::number(i)));
        for (int i = 0; i < 10; ++i) {
            source.setCacheFolder(folder.filePath(QString::number(i)));
            QTest::qWait(15);
        }
        QTRY_VERIFY(list.hasAllArrived());
        for (int i = 0; i < 40; ++i)
            QCOMPARE(list.problem(QString::number(i)), QString());
    }

    void remembersEachSizeByItself()
    {
        PictureServer server([](const Request &) {
            Answer answer;
            answer.body = pictureFile({400, 300}, Qt::red);
            answer.headers = {"Cache-Control: max-age=3600"};
            return answer;
        });
        WebImageSource source;
        const QUrl url(server.url(QStringLiteral("a")));
        QVERIFY(seen(source, url.toString()).isValid());
        QCOMPARE(source.remembered(url, {96, 96})->size(), QSize(96, 72));
        QVERIFY(!source.remembered(url, {144, 144}));
    }
};

ZEL_TEST_MAIN(TestWebImageCaching)
#include "tst_webimagecaching.moc"
