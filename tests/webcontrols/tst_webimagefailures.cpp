// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictureserver.h"
#include "testsupport/testcase.h"
#include "webcontrols/webimagelist.h"
#include "webcontrols/webimagesource.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryFile>
#include <QTest>

using namespace ZelWebControls;
using namespace std::chrono_literals;
using Answer = PictureServer::Answer;
using Request = PictureServer::Request;

namespace {

QColor shown(const QIcon &icon)
{
    const QImage image = icon.pixmap(QSize(64, 64)).toImage();
    return image.pixelColor(image.rect().center());
}

QIcon magenta()
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::magenta);
    return QIcon(pixmap);
}

Answer whole(const QByteArray &body)
{
    Answer answer;
    answer.body = body;
    return answer;
}

Answer moved(const QByteArray &to, int status = 302)
{
    Answer answer;
    answer.status = status;
    answer.headers = {"Location: " + to};
    return answer;
}

/// What the list says about one picture once it has failed.
QString problemOf(WebImageSource &source, const QString &url)
{
    WebImageList list;
    list.setSource(&source);
    list.setFailurePicture(magenta());
    QSignalSpy arrived(&list, &WebImageList::arrived);
    list.addUrl(QStringLiteral("1"), url);
    for (int i = 0; i < 200 && !list.hasAllArrived(); ++i)
        QTest::qWait(50);
    if (!list.hasAllArrived())
        return QStringLiteral("has not arrived");
    if (arrived.size() != 1)
        return QStringLiteral("was not told once");
    if (list.indexOf(QStringLiteral("1")) != 1 || shown(list.images()[0]) != QColor(Qt::magenta))
        return QStringLiteral("does not show the failure picture");
    return list.problem(QStringLiteral("1"));
}

} // namespace

class TestWebImageFailures : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void showsTheFailurePictureAndSaysWhy_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const Answer &answer, const char *reason) {
            QTest::newRow(name) << answer << QString::fromLatin1(reason);
        };
        const QByteArray good = pictureFile({40, 30}, Qt::red);
        row("not found", {404, {}, "<html>"}, "no longer there");
        row("gone", {410, {}, {}}, "no longer there");
        row("forbidden", {403, {}, good}, "does not give the picture out (status 403)");
        row("sign in", {401, {"WWW-Authenticate: Basic realm=\"x\""}, {}}, "status 401");
        row("broken server", {500, {}, good}, "status 500");
        row("nothing", {204, {}, {}}, "answered something else");
        row("part", {206, {}, good.left(20)}, "answered something else");
        row("not modified, unasked", {304, {}, {}}, "status 304");
        row("a page", whole("<!DOCTYPE html><title>Hello</title>"), "not a picture");
        row("noise", whole(QByteArray(5000, 'x')), "not a picture");
        row("empty", whole({}), "empty");
        row("half a picture", whole(good.left(good.size() / 2)), "cut off");
        Answer cut = whole(good);
        cut.cutAfter = good.size() / 2;
        row("connection lost", cut, "was lost");
        Answer silent;
        silent.isSilent = true;
        row("silence", silent, "did not answer in time");
        Answer large = whole(QByteArray(300'000, 'x'));
        row("too large", large, "larger than");
        large.hasLength = false;
        row("too large, unannounced", large, "larger than");
        Answer endless = whole(QByteArray(50'000, 'x'));
        endless.hasLength = false;
        endless.isEndless = true;
        row("endless", endless, "larger than");
        row("redirected to itself", moved("/picture"), "from one address to the next");
        row("redirected elsewhere", moved("http://127.0.0.2:9/picture"), "to another server");
        row("redirected to another port", moved("http://127.0.0.1:9/picture"), "to another server");
        row("redirected to a file", moved("file:///etc/hosts"), "to another server");
        row("redirected nowhere", moved(""), "status 302");
    }

    void showsTheFailurePictureAndSaysWhy()
    {
        QFETCH(Answer, answer);
        QFETCH(QString, reason);
        PictureServer server([&answer](const Request &) { return answer; });
        WebImageSource source;
        source.setTimeLimit(500ms);
        Zel::PictureLimits limits;
        limits.bytes = 200'000;
        source.setPictureLimits(limits);
        const QString problem = problemOf(source, server.url(QStringLiteral("picture")));
        QVERIFY2(problem.contains(reason), qPrintable(problem));
        QVERIFY(problem.endsWith(QLatin1Char('.')));
    }

    void refusesBombsServedToIt_data()
    {
        QTest::addColumn<QString>("path");
        for (const char *folder : {"too-large", "too-intricate", "too-many"}) {
            QDirIterator it(QStringLiteral(ZEL_FIXTURES "/pictures/broken/") +
                                QLatin1String(folder),
                            QDir::Files);
            while (it.hasNext()) {
                const QString path = it.next();
                QTest::newRow(qPrintable(path.section(QLatin1Char('/'), -2))) << path;
            }
        }
    }

    void refusesBombsServedToIt()
    {
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bomb = file.readAll();
        PictureServer server([&bomb](const Request &) { return whole(bomb); });
        WebImageSource source;
        const QString problem = problemOf(source, server.url(QStringLiteral("bomb")));
        QVERIFY2(problem.contains(QStringLiteral("more than can be shown")) ||
                     problem.contains(QStringLiteral("too intricate")) ||
                     problem.contains(QStringLiteral("more pictures")),
                 qPrintable(problem));
    }

    void sendsNoSecretsAlong()
    {
        PictureServer server([](const Request &request) {
            Answer answer = whole(pictureFile({4, 4}, Qt::red));
            answer.headers = {"Set-Cookie: spy=1; Path=/"};
            if (request.headers.contains("cookie") || request.headers.contains("authorization") ||
                request.headers.contains("referer"))
                answer.status = 500;
            return answer;
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        QTRY_VERIFY(list.hasAllArrived());
        list.addUrl(QStringLiteral("2"), server.url(QStringLiteral("b")));
        QTRY_VERIFY(list.hasAllArrived());
        QCOMPARE(list.problem(QStringLiteral("1")), QString());
        QCOMPARE(list.problem(QStringLiteral("2")), QString());
    }

    void followsRedirectionsOnTheSameServer()
    {
        PictureServer server([](const Request &request) {
            if (request.path == "/a")
                return moved("/b", 301);
            if (request.path == "/b")
                return moved("c?x=1", 307);
            return whole(pictureFile({40, 30}, Qt::red));
        });
        WebImageSource source;
        WebImageList list;
        list.setSource(&source);
        list.addUrl(QStringLiteral("1"), server.url(QStringLiteral("a")));
        QTRY_VERIFY(list.hasAllArrived());
        QCOMPARE(list.problem(QStringLiteral("1")), QString());
        QCOMPARE(shown(list.images()[0]), QColor(Qt::red));
        QCOMPARE(server.requests().last().path, QByteArray("/c?x=1"));
    }

    void asksAgainOnlyOfTheSameHostWhenSentToEncryption()
    {
        // There is no such port: what matters is that the step to https is taken.
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const QByteArray port = QByteArray::number(closed.serverPort());
        closed.close();
        PictureServer server(
            [&port](const Request &) { return moved("https://127.0.0.1:" + port + "/a"); });
        WebImageSource source;
        const QString problem = problemOf(source, server.url(QStringLiteral("a")));
        QVERIFY2(problem.contains(QStringLiteral("cannot be reached")), qPrintable(problem));
    }

    void saysThatAServerCannotBeReached()
    {
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const QString url = QStringLiteral("http://127.0.0.1:%1/a").arg(closed.serverPort());
        closed.close();
        WebImageSource source;
        QVERIFY(problemOf(source, url).contains(QStringLiteral("127.0.0.1 cannot be reached")));
    }

    void keepsTheNetworkPolicy()
    {
        PictureServer server([](const Request &) {
            Answer silent;
            silent.isSilent = true;
            return silent;
        });
        WebImageSource source;
        QXSC::NetworkPolicy policy;
        policy.inactivityLimit = 300ms;
        source.setNetworkPolicy(policy);
        QVERIFY(
            problemOf(source, server.url(QStringLiteral("a"))).contains(QStringLiteral("in time")));

        policy.caFile = QStringLiteral("/no/such/file.pem");
        source.setNetworkPolicy(policy);
        QVERIFY(problemOf(source, QStringLiteral("https://127.0.0.1:9/a"))
                    .contains(QStringLiteral("certificate authorities")));
    }

    void failsThousandsAtOnceWithoutEffort()
    {
        WebImageSource source;
        QXSC::NetworkPolicy policy;
        policy.caFile = QStringLiteral("/no/such/file.pem");
        source.setNetworkPolicy(policy);
        WebImageList list;
        list.setSource(&source);
        for (int i = 0; i < 20'000; ++i)
            list.addUrl(QString::number(i), QStringLiteral("https://127.0.0.1:9/%1").arg(i));
        QTRY_VERIFY_WITH_TIMEOUT(list.hasAllArrived(), 60000);
        QVERIFY(!list.problem(QStringLiteral("19999")).isEmpty());
    }

    void goesOnAfterFailures()
    {
        PictureServer server([](const Request &request) {
            if (request.path == "/good")
                return whole(pictureFile({40, 30}, Qt::red));
            Answer silent;
            silent.isSilent = true;
            return silent;
        });
        WebImageSource source;
        source.setTimeLimit(200ms);
        WebImageList list;
        list.setSource(&source);
        for (int i = 0; i < 13; ++i)
            list.addUrl(QString::number(i), server.url(QString::number(i)));
        list.addUrl(QStringLiteral("good"), server.url(QStringLiteral("good")));
        QTRY_VERIFY_WITH_TIMEOUT(list.hasAllArrived(), 20000);
        QCOMPARE(list.problem(QStringLiteral("good")), QString());
        QVERIFY(!list.problem(QStringLiteral("12")).isEmpty());
    }
};

ZEL_TEST_MAIN(TestWebImageFailures)
#include "tst_webimagefailures.moc"
