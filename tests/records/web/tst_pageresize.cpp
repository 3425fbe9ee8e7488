// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include "platform/widgets/latebound.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"

/// The sizes of the dialog and of the page in it.
class tst_PageResize : public PageTest
{
    Q_OBJECT

    /// The page's content as the page sees it.
    QSize content()
    {
        const QVariantList size =
            read(QStringLiteral("[document.body.offsetWidth, document.body.offsetHeight]"))
                .toList();
        return QSize(size.value(0).toInt(), size.value(1).toInt());
    }

private slots:

    void thePageFollowsTheDialogBut300Twips()
    {
        use(QStringLiteral("sized.html"), [this] {
            const int dpi = Zel::logicalDpi(&browser());
            const int below = Zel::pixelsFromTwips(300, dpi);
            for (const QSize &size : {QSize(500, 300), QSize(640, 480), QSize(333, 222)}) {
                browser().resize(size);
                QVERIFY(waitUntil([&] { return browser().size() == size; }));
                QCOMPARE(view()->geometry(), QRect(0, 0, size.width(), size.height() - below));
                QCOMPARE(Zel::twipsGeometry(view()).height,
                         Zel::twipsFromPixels(size.height(), dpi) - 300);
            }
            browser().close();
        });
    }

    void loadingAPageLeavesTheDialogAsItIs()
    {
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            waitFor(QStringLiteral("innerWidth + ' ' + innerHeight"), QStringLiteral("600 380"));
            waitForFrames();
            QCOMPARE(browser().size(), QSize(600, 400));
            QCOMPARE(view()->size(), QSize(600, 380));
            browser().close();
        });
    }

    void afterAResizeTheDialogTakesThePagesSizeOnce_data()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("smaller") << QStringLiteral("sized.html");
        QTest::newRow("higher than its window") << QStringLiteral("growing.html");
    }

    void afterAResizeTheDialogTakesThePagesSizeOnce()
    {
        QFETCH(QString, page);
        use(page, [&] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            run(QStringLiteral("var resizes = 0;"
                               "addEventListener('resize', function () { ++resizes; })"));
            waitForFrames();
            run(QStringLiteral("resizes = 0"));
            browser().resize(560, 420);
            const int below = Zel::pixelsFromTwips(300, Zel::logicalDpi(&browser()));
            QVERIFY(waitUntil([&] { return browser().size() != QSize(560, 420); }));
            QCOMPARE(browser().size(), content() + QSize(0, below));
            // The page keeps its size from now on, so there is nothing to follow any more.
            QCOMPARE(view()->size(), QSize(560, 420 - below));
            browser().resize(500, 500);
            QCOMPARE(view()->size(), QSize(560, 420 - below));
            waitForFrames();
            QCOMPARE(read(QStringLiteral("resizes")).toInt(), 1);
            QCOMPARE(browser().size(), QSize(500, 500));
            browser().close();
        });
    }

    void thePageMayAskForItsSize()
    {
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            run(QStringLiteral("document.body.style.width = '300px';"
                               "document.getElementById('content').style.height = '111px';"
                               "window.onresize(1, 2, 3)"));
            const QSize expected = QSize(300, 111 + 20);
            QVERIFY(waitUntil([&] { return browser().size() == expected; }));
            browser().close();
        });
    }

    void theCallbackIsReachedByNameToo()
    {
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            Zel::LateBound(&browser()).call(QStringLiteral("ResizeCallback"));
            const QSize expected = content() + QSize(0, 20);
            QVERIFY(waitUntil([&] { return browser().size() == expected; }));
            browser().close();
        });
    }

    void aPagesOwnSizeHoldsForTheRestOfItsUseOnly()
    {
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            run(QStringLiteral("window.onresize()"));
            QVERIFY(waitUntil([&] { return browser().size() != QSize(600, 400); }));
            browser().close();
        });
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            waitFor(QStringLiteral("innerWidth + ' ' + innerHeight"), QStringLiteral("600 380"));
            waitForFrames();
            QCOMPARE(browser().size(), QSize(600, 400));
            QCOMPARE(view()->size(), QSize(600, 380));
            browser().close();
        });
    }

    void aSizeThatNoScreenHasIsHeldBack()
    {
        use(QStringLiteral("sized.html"), [this] {
            waitFor(QStringLiteral("typeof onresize"), QStringLiteral("function"));
            run(QStringLiteral("document.body.style.width = '1000000px'; window.onresize()"));
            QVERIFY(waitUntil([&] { return browser().width() != 600; }));
            QVERIFY(browser().width() <= 8192);
            browser().close();
        });
    }

    void aPageWithoutABodyIsFine()
    {
        Answer drawing;
        drawing.headers << "Content-Type: image/svg+xml";
        drawing.body = "<svg xmlns='http://www.w3.org/2000/svg'><rect width='9' height='9'/></svg>";
        serve(QStringLiteral("/drawing"), drawing);
        use(QStringLiteral("drawing"), [this] {
            waitForPage(QStringLiteral("drawing"));
            QVERIFY(read(QStringLiteral("document.body")).isNull());
            Zel::LateBound(&browser()).call(QStringLiteral("ResizeCallback"));
            QVERIFY(!read(QStringLiteral("1")).isNull());
            QCOMPARE(browser().size(), QSize(600, 400));
            browser().close();
        });
    }
};

ZEL_PAGE_TEST_MAIN(tst_PageResize)
#include "tst_pageresize.moc"
