// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphbars.h"
#include "testsupport/testcase.h"

#include <QTest>

using ZelDataVisualization::GraphWindow;

/// Which part of the figures a graph shows.
class tst_GraphWindow : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void ofNothingShowsNothing()
    {
        GraphWindow window(0, true);
        window.fit(20);
        window.zoomIn(-1);
        window.zoomOut(-1);
        window.showAll();
        QCOMPARE(window.shown(), 0);
        QCOMPARE(window.bars(), 0);
        QVERIFY(!window.canZoomIn() && !window.canZoomOut());
    }

    void fitsTheRoomWithinBounds()
    {
        GraphWindow window(1'000, true);
        window.fit(12);
        QCOMPARE(window.shown(), 12);
        window.fit(1);
        QCOMPARE(window.shown(), GraphWindow::LeastAtFirst);
        window.fit(500);
        QCOMPARE(window.shown(), GraphWindow::MostAtFirst);
        GraphWindow few(4, true);
        few.fit(1);
        QCOMPARE(few.shown(), 4);
    }

    void groupsWhatHasNoRoomForABarEach()
    {
        GraphWindow window(3'001, true);
        window.showAll();
        QCOMPARE(window.shown(), 3'001);
        QCOMPARE(window.group(), 51);
        QCOMPARE(window.bars(), 59);
        QCOMPARE(window.barOf(50), 0);
        QCOMPARE(window.barOf(51), 1);
    }

    void neverGroupsWhatHasNoAverage()
    {
        GraphWindow window(500, false);
        window.showAll();
        QCOMPARE(window.shown(), GraphWindow::MostBars);
        QCOMPARE(window.group(), 1);
        QVERIFY(!window.canZoomOut());
    }

    void staysInside()
    {
        GraphWindow window(100, true);
        window.fit(10);
        window.scrollTo(1'000);
        QCOMPARE(window.first(), 90);
        window.scrollTo(-5);
        QCOMPARE(window.first(), 0);
        window.reveal(99);
        QCOMPARE(window.first(), 90);
        window.reveal(95);
        QCOMPARE(window.first(), 90);
        window.reveal(40);
        QCOMPARE(window.first(), 40);
    }

    void zoomsAroundAFigure()
    {
        GraphWindow window(1'000, true);
        window.fit(20);
        window.scrollTo(490);
        window.zoomIn(500);
        QCOMPARE(window.first(), 495);
        QCOMPARE(window.shown(), 10);
        window.zoomOut(500);
        window.zoomOut(500);
        QCOMPARE(window.first(), 480);
        QCOMPARE(window.shown(), 40);
    }
};

ZEL_TEST_MAIN(tst_GraphWindow)
#include "tst_graphwindow.moc"
