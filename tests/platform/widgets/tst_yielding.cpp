// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/yielding.h"

#include "testsupport/testcase.h"

#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;
using Zel::waitWhilePainting;
using Zel::yieldOnce;

namespace {

class PaintedWidget : public QWidget
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
};

} // namespace

class TestYielding : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void whatWaitsIsHandledOnce()
    {
        int rounds = 0;
        std::function<void()> again = [&] {
            ++rounds;
            QMetaObject::invokeMethod(this, again, Qt::QueuedConnection);
        };
        QTimer::singleShot(0, this, again);
        QVERIFY(yieldOnce(this));
        QVERIFY(rounds > 0);
        QVERIFY(rounds < 10);
        again = [] {};
        QVERIFY(yieldOnce(this));
    }

    void theUserMayClickMeanwhile()
    {
        QPushButton button;
        button.show();
        int clicks = 0;
        connect(&button, &QPushButton::clicked, this, [&] { ++clicks; });
        QTimer::singleShot(0, this, [&] { QTest::mouseClick(&button, Qt::LeftButton); });
        QCOMPARE(clicks, 0);
        QVERIFY(yieldOnce(&button));
        QCOMPARE(clicks, 1);
    }

    void captionsRepaintMeanwhile()
    {
        PaintedWidget widget;
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        const int before = widget.paints;
        widget.update();
        QCOMPARE(widget.paints, before);
        QVERIFY(yieldOnce(&widget));
        QVERIFY(widget.paints > before);
    }

    void tellsThatTheObjectIsGone()
    {
        auto *widget = new QWidget;
        QPointer<QWidget> alive(widget);
        QTimer::singleShot(0, this, [&] { delete widget; });
        QVERIFY(!yieldOnce(widget));
        QVERIFY(!alive);
    }

    void nothingIsNeverAlive() { QVERIFY(!yieldOnce(nullptr)); }

    void waitsUntilItIsDone()
    {
        int asked = 0;
        QVERIFY(waitWhilePainting(this, 1h, [&] { return ++asked > 3; }));
        QCOMPARE(asked, 4);
    }

    void waitsNoLongerThanItMay()
    {
        QVERIFY(waitWhilePainting(this, 20ms, [] { return false; }));
        QVERIFY(waitWhilePainting(this, 0ms, [] { return false; }));
    }

    void paintsWhileItWaits()
    {
        PaintedWidget widget;
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        const int before = widget.paints;
        widget.update();
        QVERIFY(waitWhilePainting(&widget, 1min, [&] { return widget.paints > before; }));
        QVERIFY(widget.paints > before);
    }

    void hearsNeitherPersonNorTimerWhileItWaits()
    {
        QPushButton button;
        button.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
        button.show();
        button.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&button));
        int heard = 0;
        connect(&button, &QPushButton::pressed, this, [&] { ++heard; });
        QTimer::singleShot(1, this, [&] { ++heard; });
        bool tried = false;
        QMetaObject::invokeMethod(
            this,
            [&] {
                QTest::mouseClick(&button, Qt::LeftButton);
                QTest::keyClick(&button, Qt::Key_Space);
                QTest::keyClick(&button, Qt::Key_B, Qt::ControlModifier);
                tried = true;
            },
            Qt::QueuedConnection);
        QVERIFY(waitWhilePainting(&button, 50ms, [] { return false; }));
        QVERIFY(tried);
        QCOMPARE(heard, 0);
        // Afterwards everything is as it was.
        QTest::mouseClick(&button, Qt::LeftButton);
        QTRY_COMPARE(heard, 2);
    }

    void aPressBegunBeforeMayEnd()
    {
        QPushButton button;
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        int released = 0;
        connect(&button, &QPushButton::released, this, [&] { ++released; });
        QTest::mousePress(&button, Qt::LeftButton);
        QMetaObject::invokeMethod(
            this, [&] { QTest::mouseRelease(&button, Qt::LeftButton); }, Qt::QueuedConnection);
        QVERIFY(waitWhilePainting(&button, 1min, [&] { return released == 1; }));
        QCOMPARE(released, 1);
    }

    void windowsMayBeClosedWhileItWaits()
    {
        auto *widget = new QWidget;
        widget->setAttribute(Qt::WA_QuitOnClose, false);
        widget->show();
        QMetaObject::invokeMethod(
            this,
            [&] {
                widget->close();
                delete widget;
            },
            Qt::QueuedConnection);
        QVERIFY(!waitWhilePainting(widget, 1min, [] { return false; }));
    }
};

ZEL_TEST_MAIN(TestYielding)
#include "tst_yielding.moc"
