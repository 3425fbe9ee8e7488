// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include "records/web/componentpage.h"

#include <QSignalSpy>

/// How a component page ends the dialog, and that the next one begins anew.
class tst_PageEndings : public PageTest
{
    Q_OBJECT

private slots:

    void init()
    {
        PageTest::init();
        Answer redirect;
        redirect.status = 302;
        redirect.headers << "Location: /elsewhere/close";
        serve(QStringLiteral("/redirect-to-close"), redirect);
    }

    void everyWayToEndTakesTheResult_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way :
             {"link", "query", "script", "assign", "replace", "form", "window", "self", "timer",
              "frame", "inner", "redirect", "handled", "twice", "history"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void everyWayToEndTakesTheResult()
    {
        QFETCH(QString, way);
        QSignalSpy finished(&browser(), &QDialog::finished);
        use(QStringLiteral("endings.html"), [&] { click(way); });
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue(), QStringLiteral("new value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("new dependencies"));
        QCOMPARE(finished.size(), 1);
        for (const QString &request : requests())
            QVERIFY2(!request.contains(QStringLiteral("/close")) ||
                         request.contains(QStringLiteral("stylesheet")),
                     qPrintable(request));
        // What went before leaves no trace.
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            QCOMPARE(read(QStringLiteral("typeof returnValue")).toString(),
                     QStringLiteral("undefined"));
            QCOMPARE(read(QStringLiteral("history.length")).toInt(), 1);
            browser().close();
        });
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("old dependencies"));
    }

    void onlyAnAddressWhoseLastSegmentIsCloseEnds_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("ends");
        for (const QStringList &row : table(QStringLiteral("closeaddresses.table")))
            QTest::newRow(qPrintable(row.at(0)))
                << row.at(0) << (row.at(1) == QLatin1String("ends"));
    }

    void onlyAnAddressWhoseLastSegmentIsCloseEnds()
    {
        QFETCH(QString, address);
        QFETCH(bool, ends);
        Answer page;
        page.headers << "Content-Type: text/html";
        page.body = "<script>window.isThere = true</script>";
        for (const char *path :
             {"/closed", "/a", "/close", "/close/", "/CLOSE", "/x%2Fclose", "/disclose"})
            serve(QString::fromLatin1(path), page);
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            run(QStringLiteral("returnValue = 'ended'; location.href = '%1'")
                    .arg(QString(address).replace(u'\\', QLatin1String("\\\\"))));
            if (ends)
                return;
            if (address.startsWith(u'#'))
                waitFor(QStringLiteral("location.hash"), address);
            else
                waitFor(QStringLiteral("window.isThere"), true);
            QVERIFY(browser().isVisible());
            browser().close();
        });
        QCOMPARE(browser().returnCode(), qint16(ends ? 1 : 2));
        QCOMPARE(browser().GetValue(),
                 ends ? QStringLiteral("ended") : QStringLiteral("old value"));
    }

    void closingTheWindowIsCancelling()
    {
        use(QStringLiteral("endings.html"), [this] {
            waitForPage(QStringLiteral("endings.html"));
            browser().close();
        });
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("old dependencies"));
    }

    void aPageIsNotHeardOnceTheDialogIsGone()
    {
        QPointer<QWebEnginePage> page;
        use(QStringLiteral("endings.html"), [&] {
            waitForPage(QStringLiteral("endings.html"));
            page = view()->page();
            run(QStringLiteral("setInterval(function () {"
                               "  window.open('x'); location.href = 'close'; alert('still here');"
                               "}, 20)"));
            browser().close();
        });
        QVERIFY(waitUntil([&] { return !page; }));
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(boxes().shown().size(), 0);
    }

    void anEndThatComesAfterTheLastIsNotHeardInTheNextUse()
    {
        // The answer about the first page's result arrives when the second is being shown.
        prepare(QStringLiteral("endings.html"));
        show([this] {
            waitForPage(QStringLiteral("endings.html"));
            run(QStringLiteral("location.href = 'close'"));
            browser().close();
        });
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            QVERIFY(browser().isVisible());
            QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
            run(QStringLiteral("returnValue = 'second'; close()"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("second"));
    }

    void aFirstAddressThatLeadsToCloseHasNoResult()
    {
        use(QStringLiteral("redirect-to-close"));
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
    }

    void aPageMayBeSharedOutWhileItsUseIsPreparedAgain()
    {
        prepare(QStringLiteral("endings.html"));
        prepare(QStringLiteral("echo.html"), QStringLiteral("second value"));
        show([this] {
            waitForValue();
            QCOMPARE(read(QStringLiteral("calls[0].value")).toString(),
                     QStringLiteral("second value"));
            browser().close();
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("second value"));
    }

    void theRawTextAfterTheLastSlashCounts()
    {
        using ZelWebServiceControls::isCloseAddress;
        const QString host = QStringLiteral("http://host/");
        QVERIFY(isCloseAddress(QUrl(host + QStringLiteral("a/close"))));
        QVERIFY(isCloseAddress(QUrl(host + QStringLiteral("a?b=/close"))));
        QVERIFY(!isCloseAddress(QUrl(host + QStringLiteral("a?close"))));
        QVERIFY(!isCloseAddress(QUrl(host + QStringLiteral("closed"))));
        QVERIFY(!isCloseAddress(QUrl(host + QStringLiteral("Close"))));
        QVERIFY(!isCloseAddress(QUrl(host + QStringLiteral("close#f"))));
        QVERIFY(!isCloseAddress(QUrl()));
    }
};

ZEL_PAGE_TEST_MAIN(tst_PageEndings)
#include "tst_pageendings.moc"
