// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/httpserviceclient.h"
#include "studio/waitnotice.h"
#include "tests/service/client/scriptedserver.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QTest>

using Studio::WaitNotice;
using namespace StudioTesting;
using namespace std::chrono_literals;

namespace {

/// Counts what is painted and handled while it watches.
class Watcher : public QObject
{
public:
    int paints = 0;
    int clicks = 0;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->objectName() == QLatin1String("waitNotice"))
            ++paints;
        if (event->type() == QEvent::MouseButtonPress)
            ++clicks;
        return false;
    }
};

/// A service that takes longer than a person likes to wait.
ZelTest::ScriptedServer::Script slow(int milliseconds)
{
    return [milliseconds](const ZelTest::SeenRequest &, ZelTest::Wire &wire) {
        wire.sleep(milliseconds);
        wire.write(ZelTest::http(200, R"({"types":[]})"));
    };
}

} // namespace

class TestWaitNotice : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void isPaintedAtOnceWithoutAnEventLoop()
    {
        QWidget window;
        window.resize(500, 200);
        show(window);
        WaitNotice notice(&window);
        QVERIFY(!notice.isShown());
        Watcher watcher;
        qApp->installEventFilter(&watcher);
        notice.waiting(300ms);
        QVERIFY(notice.isShown());
        QCOMPARE(watcher.paints, 1);
        auto *label = child<QLabel>(window, "waitNotice");
        QCOMPARE(label->text(), QStringLiteral("Waiting for the service…"));
        QVERIFY(window.rect().contains(label->geometry()));
        // In the middle, give or take a pixel.
        QVERIFY(qAbs(label->geometry().center().x() - window.rect().center().x()) <= 1);
        notice.waiting(3100ms);
        QCOMPARE(watcher.paints, 2);
        QCOMPARE(label->text(), QStringLiteral("Waiting for the service… 3 s"));
        notice.finished();
        QVERIFY(!notice.isShown());
        qApp->removeEventFilter(&watcher);
    }

    void comesUpDuringASlowCallAndGoesWithIt()
    {
        ZelTest::SignedIn service(slow(900));
        QWidget window;
        window.resize(500, 200);
        show(window);
        WaitNotice notice(&window);
        service.client.setWaitObserver(&notice);
        Watcher watcher;
        qApp->installEventFilter(&watcher);
        // A click that comes meanwhile has to wait.
        QCoreApplication::postEvent(&window, new QMouseEvent(QEvent::MouseButtonPress, QPointF(),
                                                             QPointF(), Qt::LeftButton,
                                                             Qt::LeftButton, Qt::NoModifier));
        service.client.projectTypes();
        QVERIFY(watcher.paints > 1);
        QCOMPARE(watcher.clicks, 0);
        QVERIFY(!notice.isShown());
        QCoreApplication::processEvents();
        QCOMPARE(watcher.clicks, 1);
        qApp->removeEventFilter(&watcher);
        service.client.setWaitObserver(nullptr);
    }

    void staysAwayFromQuickCalls()
    {
        ZelTest::SignedIn service(slow(0));
        QWidget window;
        show(window);
        WaitNotice notice(&window);
        service.client.setWaitObserver(&notice);
        service.client.projectTypes();
        QVERIFY(!window.findChild<QLabel *>(QStringLiteral("waitNotice")));
        service.client.setWaitObserver(nullptr);
    }

    void goesWhenTheCallFails()
    {
        ZelTest::SignedIn service([](const ZelTest::SeenRequest &, ZelTest::Wire &wire) {
            wire.sleep(600);
            wire.reset();
        });
        QWidget window;
        show(window);
        WaitNotice notice(&window);
        service.client.setWaitObserver(&notice);
        Watcher watcher;
        qApp->installEventFilter(&watcher);
        QVERIFY(ZelTest::errorOf([&] { service.client.projectTypes(); }));
        QVERIFY(watcher.paints > 0);
        QVERIFY(!notice.isShown());
        qApp->removeEventFilter(&watcher);
        service.client.setWaitObserver(nullptr);
    }

    void livesWithAWindowThatIsHiddenOrGone()
    {
        auto window = std::make_unique<QWidget>();
        WaitNotice notice(window.get());
        notice.waiting(400ms);
        QVERIFY(!notice.isShown());
        show(*window);
        notice.waiting(400ms);
        QVERIFY(notice.isShown());
        window.reset();
        notice.waiting(500ms);
        notice.finished();
        QVERIFY(!notice.isShown());
    }

    void reachesTheScreenAtOnce()
    {
        // The pixels of the screen, not of a rendering made for the test.
        QWidget window;
        window.resize(500, 200);
        show(window);
        WaitNotice notice(&window);
        const auto onScreen = [&] { return window.screen()->grabWindow(window.winId()).toImage(); };
        const QImage before = onScreen();
        QVERIFY(!before.isNull());
        notice.waiting(300ms);
        const QRect place = child(window, "waitNotice")->geometry();
        const QImage during = onScreen();
        // Its round ends let the window through, its middle is in the window's inverse colours.
        QCOMPARE(during.pixelColor(place.topLeft()), before.pixelColor(place.topLeft()));
        QCOMPARE(during.pixelColor(place.center().x(), place.top() + 2),
                 window.palette().color(QPalette::WindowText));
        notice.finished();
        QCoreApplication::processEvents();
        QCOMPARE(onScreen(), before);
    }
};

ZEL_TEST_MAIN(TestWaitNotice)
#include "tst_waitnotice.moc"
