// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"

#include <QFontMetricsF>
#include <QScreen>
#include <QTest>
#include <QWidget>

using namespace Zel;

class TestTwips : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void anInchIsTheDpi()
    {
        QCOMPARE(pixelsFromTwips(1440, 96), 96);
        QCOMPARE(pixelsFromTwips(1440, 120), 120);
        QCOMPARE(twipsFromPixels(96, 96), 1440.0);
        QCOMPARE(twipsFromPixels(1, 96), 15.0);
        QCOMPARE(pixelsFromTwips(0, 96), 0);
    }

    void edgesRoundOnceAndHalfAwayFromZero()
    {
        QCOMPARE(pixelsFromTwips(7.4, 96), 0);
        QCOMPARE(pixelsFromTwips(7.5, 96), 1);
        QCOMPARE(pixelsFromTwips(-7.5, 96), -1);
        QCOMPARE(pixelsFromTwips(-125, 96), -8);
        QCOMPARE(pixelsFromTwips(4145, 96), 276);
        QCOMPARE(pixelsFromTwips(4145, 120), 345);
    }

    void neighboursShareAnEdgeOnEveryScreen()
    {
        for (int dpi : {72, 96, 108, 120, 144, 168, 192}) {
            int filled = 0;
            for (int i = 0; i < 40; ++i)
                filled += pixelsFromTwips(375.0 * (i + 1), dpi) - pixelsFromTwips(375.0 * i, dpi);
            QCOMPARE(filled, pixelsFromTwips(375.0 * 40, dpi));
        }
    }

    void pixelsComeBackThroughTwips()
    {
        for (int dpi : {72, 96, 120, 144}) {
            for (int pixels = -300; pixels <= 300; ++pixels)
                QCOMPARE(pixelsFromTwips(twipsFromPixels(pixels, dpi), dpi), pixels);
        }
    }

    void textIsMeasuredInTheFontOfTheWidget()
    {
        QWidget small;
        QWidget big;
        QFont font = small.font();
        font.setPointSize(font.pointSize() * 3);
        big.setFont(font);
        const QString text = QStringLiteral("Intro text");
        QVERIFY(textWidthTwips(text, &big) > 2 * textWidthTwips(text, &small));
        QVERIFY(textHeightTwips(&big) > 2 * textHeightTwips(&small));
        const double pixels = QFontMetricsF(small.font()).horizontalAdvance(text);
        QCOMPARE(textWidthTwips(text, &small), pixels * 1440 / logicalDpi(&small));
        QCOMPARE(textWidthTwips(QString(), &small), 0.0);
    }

    void withoutAWidgetTheFirstScreenCounts()
    {
        QCOMPARE(logicalDpi(nullptr),
                 qRound(QGuiApplication::primaryScreen()->logicalDotsPerInchX()));
    }
};

ZEL_TEST_MAIN(TestTwips)
#include "tst_twips.moc"
