// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/yielding.h"

#include "testsupport/testcase.h"

#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using Zel::yieldOnce;

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
        class Painted : public QWidget
        {
        public:
            int paints = 0;

        protected:
            void paintEvent(QPaintEvent *) override { ++paints; }
        };

        Painted widget;
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
};

ZEL_TEST_MAIN(TestYielding)
#include "tst_yielding.moc"
