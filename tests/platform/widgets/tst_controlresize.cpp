// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/runtimeerror.h"
#include "platform/widgets/control.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QVBoxLayout>

/// A control that notes what it is told about its size and look.
class Frame : public Zel::Control
{
    Q_OBJECT

public:
    using Control::Control;

    QList<double> widths; // twips, each time it was resized
    int appearances = 0;
    bool fails = false;

protected:
    void resized() override
    {
        widths << Zel::twipsGeometry(this).width;
        if (fails)
            throw Zel::RuntimeError(Zel::RuntimeError::Overflow);
    }

    void appearanceChanged() override
    {
        ++appearances;
        if (fails)
            throw Zel::RuntimeError(Zel::RuntimeError::Overflow);
    }
};

class TestControlResize : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void aSizeInTwipsIsToldAtOnceAndExactly_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("hidden") << false;
        QTest::newRow("shown") << true;
    }

    void aSizeInTwipsIsToldAtOnceAndExactly()
    {
        QFETCH(bool, shown);
        QWidget window;
        auto *frame = new Frame(&window);
        window.setVisible(shown);
        frame->setVisible(shown);
        frame->widths.clear();
        Zel::setTwipsGeometry(frame, {0, 0, 4150, 300});
        QCOMPARE(frame->widths, QList<double>{4150});
        // One more twip is no other pixel, but another size.
        Zel::setTwipsGeometry(frame, {0, 0, 4151, 300});
        QCOMPARE(frame->widths, (QList<double>{4150, 4151}));
    }

    void beingShownLaterDoesNotUndoWhatWasSetSince()
    {
        QWidget window;
        auto *frame = new Frame(&window);
        Zel::setTwipsGeometry(frame, {0, 0, 4150, 300});
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(frame->widths, QList<double>{4150});
    }

    void movingIsNoResize()
    {
        QWidget window;
        auto *frame = new Frame(&window);
        window.show();
        Zel::setTwipsGeometry(frame, {0, 0, 4150, 370});
        frame->widths.clear();
        for (int top = 0; top < 40; ++top)
            Zel::setTwipsTop(frame, top);
        QCOMPARE(frame->widths, QList<double>());
    }

    void aSizeFromQtWhileHiddenIsToldWhenShown()
    {
        Frame frame;
        frame.resize(200, 100);
        QCOMPARE(frame.widths, QList<double>());
        frame.show();
        QCOMPARE(frame.widths, QList<double>{Zel::twipsFromPixels(200, Zel::logicalDpi(&frame))});
    }

    void aLayoutResizesIt()
    {
        QWidget window;
        auto *frame = new Frame;
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(frame);
        window.resize(300, 100);
        window.show();
        window.resize(400, 100);
        const int dpi = Zel::logicalDpi(frame);
        QCOMPARE(frame->widths,
                 (QList<double>{Zel::twipsFromPixels(300, dpi), Zel::twipsFromPixels(400, dpi)}));
    }

    void anErrorOfLayingOutReachesTheHostInsteadOfTheEventLoop()
    {
        Frame frame;
        frame.fails = true;
        QList<int> numbers;
        connect(&frame, &Zel::Control::runtimeError, this,
                [&](const Zel::RuntimeError &error) { numbers << error.number(); });
        frame.resize(200, 100);
        frame.show();
        QCOMPARE(numbers, QList<int>{6});
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::black);
        frame.setPalette(dark);
        QCOMPARE(numbers, (QList<int>{6, 6}));
    }

    void paletteStyleAndFontChangeItsAppearance()
    {
        Frame frame;
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::black);
        frame.setPalette(dark);
        QCOMPARE(frame.appearances, 1);
        QFont big = frame.font();
        big.setPointSize(big.pointSize() + 5);
        frame.setFont(big);
        QCOMPARE(frame.appearances, 2);
        const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("Windows")));
        frame.setStyle(style.get());
        QCOMPARE(frame.appearances, 3);
        frame.setEnabled(false);
        QCOMPARE(frame.appearances, 3);
        frame.setStyle(nullptr);
    }
};

ZEL_TEST_MAIN(TestControlResize)
#include "tst_controlresize.moc"
