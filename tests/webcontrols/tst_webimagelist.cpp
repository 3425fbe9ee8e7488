// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"
#include "platform/core/runtimeerror.h"
#include "testsupport/testcase.h"
#include "webcontrols/webimagelist.h"
#include "webcontrols/webimagesource.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelWebControls;
using Answer = PictureServer::Answer;
using Request = PictureServer::Request;

namespace {

Answer picture(Qt::GlobalColor color, const QList<QByteArray> &headers = {})
{
    Answer answer;
    answer.body = pictureFile({40, 30}, color);
    answer.headers = headers;
    return answer;
}

QIcon iconOf(Qt::GlobalColor color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(color);
    return QIcon(pixmap);
}

/// The colour in the middle of what a view would paint.
QColor shown(const QIcon &icon)
{
    const QImage image = icon.pixmap(QSize(64, 64)).toImage();
    return image.pixelColor(image.rect().center());
}

int errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const Zel::RuntimeError &error) {
        return error.number();
    }
    return 0;
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    for (QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         it.hasNext();)
        files << it.next();
    return files;
}

} // namespace

class TestWebImageList : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void countsFromOneInTheOrderOfAdding()
    {
        PictureServer server([](const Request &) { return picture(Qt::red); });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.addPicture(QStringLiteral("1"), iconOf(Qt::blue));
        list.addUrl(QStringLiteral("2"), server.url(QStringLiteral("a")));
        list.addPicture(QStringLiteral("x"), iconOf(Qt::green));
        list.addUrl(QStringLiteral("3"), QStringLiteral("file:///etc/hosts"));
        QCOMPARE(list.count(), 4);
        QCOMPARE(list.indexOf(QStringLiteral("1")), 1);
        QCOMPARE(list.indexOf(QStringLiteral("2")), 2);
        QCOMPARE(list.indexOf(QStringLiteral("x")), 3);
        QCOMPARE(list.indexOf(QStringLiteral("3")), 4);
        QVERIFY(list.indexOf(QStringLiteral("X")) >= 65535);
        QVERIFY(list.indexOf(QString()) >= 65535);

        QTRY_VERIFY(list.hasAllArrived());
        const QList<QIcon> images = list.images();
        QCOMPARE(images.size(), 4);
        QCOMPARE(shown(images[0]), QColor(Qt::blue));
        QCOMPARE(shown(images[1]), QColor(Qt::red));
        QCOMPARE(shown(images[2]), QColor(Qt::green));

        list.clear();
        QCOMPARE(list.count(), 0);
        QVERIFY(list.images().isEmpty());
        QVERIFY(list.indexOf(QStringLiteral("1")) >= 65535);
    }

    void refusesAKeyTwiceAndMoreThanItsIndicesCanTell()
    {
        WebImageList list;
        list.addPicture(QStringLiteral("0"), QIcon());
        QCOMPARE(errorOf([&] { list.addPicture(QStringLiteral("0"), QIcon()); }), 457);
        QCOMPARE(errorOf([&] { list.addUrl(QStringLiteral("0"), QStringLiteral("x")); }), 457);
        for (int i = 1; i < 65534; ++i)
            list.addPicture(QString::number(i), QIcon());
        QCOMPARE(list.indexOf(QStringLiteral("65533")), 65534);
        QCOMPARE(errorOf([&] { list.addPicture(QStringLiteral("more"), QIcon()); }), 6);
        QCOMPARE(list.count(), 65534);
    }

    void needsNothingToArriveWhereNothingIsFetched()
    {
        WebImageList list;
        QVERIFY(list.hasAllArrived());
        list.addPicture(QStringLiteral("1"), iconOf(Qt::blue));
        QVERIFY(list.hasAllArrived());
    }

    void tellsOfEachArrivalAndOfTheLast()
    {
        PictureServer server([](const Request &) { return picture(Qt::red); });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        QSignalSpy arrived(&list, &WebImageList::arrived);
        QSignalSpy all(&list, &WebImageList::allArrived);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        list.addUrl(QStringLiteral("2"), server.url(QStringLiteral("b")));
        list.addUrl(QStringLiteral("bad"), QStringLiteral("gopher://x"));
        QVERIFY(!list.hasAllArrived());
        QCOMPARE(arrived.size(), 0);
        QTRY_COMPARE(all.size(), 1);
        QVERIFY(list.hasAllArrived());
        QStringList keys;
        for (const QList<QVariant> &call : arrived)
            keys << call[0].toString();
        keys.sort();
        QCOMPARE(keys, (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
    }

    void fetchesWebAddressesOnly_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("nothing") << QString();
        QTest::newRow("file") << QStringLiteral("file:///etc/hosts");
        QTest::newRow("path") << QStringLiteral("/tmp/a.png");
        QTest::newRow("resource") << QStringLiteral("qrc:/a.png");
        QTest::newRow("data") << QStringLiteral("data:image/png;base64,AAAA");
        QTest::newRow("ftp") << QStringLiteral("ftp://127.0.0.1/a.png");
        QTest::newRow("no host") << QStringLiteral("http:///a.png");
        QTest::newRow("begins like one") << QStringLiteral("httpx://127.0.0.1/");
        QTest::newRow("words") << QStringLiteral("http is a protocol");
    }

    void fetchesWebAddressesOnly()
    {
        QFETCH(QString, url);
        WebImageList list;
        list.setFailurePicture(iconOf(Qt::magenta));
        list.addUrl(QStringLiteral("1"), url);
        QVERIFY(list.hasAllArrived());
        QVERIFY(list.problem(QStringLiteral("1")).contains(QStringLiteral("not an address")));
        QCOMPARE(shown(list.images()[0]), QColor(Qt::magenta));
    }

    void askedFirstOfAllShowsThePictureLater()
    {
        // Views take the icons before the pictures are there.
        PictureServer server([](const Request &) { return picture(Qt::red); });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        const QIcon icon = list.images()[0];
        QVERIFY(!icon.isNull());
        QVERIFY(shown(icon) != QColor(Qt::red));
        const QSize before = icon.actualSize({96, 96});
        QTRY_VERIFY(list.hasAllArrived());
        QCOMPARE(shown(icon), QColor(Qt::red));
        QCOMPARE(icon.actualSize({96, 96}), before);
    }

    void asksNeverMoreThanSixThingsAtATimeOfAServer()
    {
        const auto slow = [](const Request &) {
            Answer answer = picture(Qt::red);
            answer.delay = 15;
            return answer;
        };
        PictureServer one(slow);
        PictureServer other(slow);
        WebImageSource source;
        WebImageList first;
        WebImageList second;
        first.setSource(&source);
        second.setSource(&source);
        for (int i = 0; i < 60; ++i) {
            const QString key = QString::number(i);
            first.addUrl(key, one.url(key));
            second.addUrl(key, i % 2 ? one.url(QStringLiteral("x") + key) : other.url(key));
        }
        QTRY_VERIFY_WITH_TIMEOUT(first.hasAllArrived() && second.hasAllArrived(), 20000);
        QCOMPARE(one.count(), 90);
        QCOMPARE(other.count(), 30);
        QCOMPARE(one.mostAtATime(), 6);
        QCOMPARE(other.mostAtATime(), 6);
    }

    void forgetsWhatIsUnderWayWhenCleared()
    {
        PictureServer server([](const Request &request) {
            Answer answer = picture(request.path == "/new" ? Qt::green : Qt::red);
            answer.delay = request.path == "/new" ? 0 : 100;
            return answer;
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        QSignalSpy arrived(&list, &WebImageList::arrived);
        for (int i = 0; i < 200; ++i)
            list.addUrl(QString::number(i), server.url(QStringLiteral("old")));
        QTRY_VERIFY(server.count() >= 6);
        list.clear();
        QVERIFY(list.hasAllArrived());
        list.addUrl(QStringLiteral("7"), server.url(QStringLiteral("new")));
        const int before = int(arrived.size());
        QTRY_VERIFY(list.hasAllArrived());
        QCOMPARE(shown(list.images()[0]), QColor(Qt::green));
        QTest::qWait(250); // what was under way would have come by now
        QCOMPARE(arrived.size(), before + 1);
        QCOMPARE(list.count(), 1);
        QVERIFY2(server.count() < 60, qPrintable(QString::number(server.count())));
    }

    void isNeverHeardOfAgainOnceDestroyed()
    {
        PictureServer server([](const Request &) {
            Answer answer = picture(Qt::red);
            answer.delay = 30;
            return answer;
        });
        WebImageSource source;
        auto list = std::make_unique<WebImageList>();
        list->setSource(&source);
        for (int i = 0; i < 30; ++i)
            list->addUrl(QString::number(i), server.url(QString::number(i)));
        const QList<QIcon> icons = list->images();
        QTRY_VERIFY(server.count() >= 6);
        list.reset();
        QTest::qWait(150);
        QVERIFY(!shown(icons[29]).isValid() || shown(icons[29]) != QColor(Qt::red));
    }

    void survivesBeingClearedOrDestroyedByWhoHearsOfAnArrival()
    {
        PictureServer server([](const Request &) { return picture(Qt::red); });
        WebImageSource source;
        WebImageList cleared;
        cleared.setSource(&source);
        connect(&cleared, &WebImageList::arrived, &cleared, &WebImageList::clear);
        auto *destroyed = new WebImageList;
        QPointer<WebImageList> watched(destroyed);
        destroyed->setSource(&source);
        connect(destroyed, &WebImageList::arrived, this, [destroyed] { delete destroyed; });
        for (int i = 0; i < 20; ++i) {
            cleared.addUrl(QString::number(i), server.url(QString::number(i)));
            destroyed->addUrl(QString::number(i), server.url(QString::number(i)));
        }
        QTRY_VERIFY(!watched && cleared.count() == 0);
    }

    void failsWhatIsUnderWayWhenItsSourceGoes()
    {
        PictureServer server([](const Request &) {
            Answer silent;
            silent.isSilent = true;
            return silent;
        });
        WebImageList list;
        {
            WebImageSource source;
            list.setSource(&source);
            for (int i = 0; i < 20; ++i)
                list.addUrl(QString::number(i), server.url(QString::number(i)));
            QTRY_VERIFY(server.count() == 6);
        }
        QVERIFY(list.hasAllArrived());
        QVERIFY(!list.problem(QStringLiteral("19")).isEmpty());
    }

    void takesFiveThousandPictures()
    {
        PictureServer server([](const Request &request) {
            const bool isOdd = request.path.endsWith('1');
            return isOdd ? Answer{404, {}, {}} : picture(Qt::red);
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        for (int i = 0; i < 5000; ++i)
            list.addUrl(QString::number(i), server.url(QString::number(i)));
        QTRY_VERIFY_WITH_TIMEOUT(list.hasAllArrived(), 120000);
        QCOMPARE(server.count(), 5000);
        const QList<QIcon> images = list.images();
        for (int i = 0; i < 5000; i += 499) {
            const QString key = QString::number(i);
            QCOMPARE(list.indexOf(key), i + 1);
            QCOMPARE(list.problem(key).isEmpty(), !key.endsWith(QLatin1Char('1')));
            QCOMPARE(shown(images[i]) == QColor(Qt::red), !key.endsWith(QLatin1Char('1')));
        }
    }

    void writesNoFileUnlessGivenAFolder()
    {
        PictureServer server(
            [](const Request &) { return picture(Qt::red, {"Cache-Control: max-age=60"}); });
        const QStringList before = filesBelow(QDir::homePath());
        QTemporaryDir folder;
        {
            WebImageSource source;
            WebImageList list;
            list.setSource(&source);
            list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
            QTRY_VERIFY(list.hasAllArrived());
        }
        QCOMPARE(filesBelow(QDir::homePath()), before);
        {
            WebImageSource source;
            source.setCacheFolder(folder.path());
            WebImageList list;
            list.setSource(&source);
            list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
            QTRY_VERIFY(list.hasAllArrived());
        }
        QCOMPARE(filesBelow(QDir::homePath()), before);
        QVERIFY(!filesBelow(folder.path()).isEmpty());
    }
};

ZEL_TEST_MAIN(TestWebImageList)
#include "tst_webimagelist.moc"
