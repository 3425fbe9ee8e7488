// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include "records/textassetwidget.h"

#include <QMetaMethod>

using ZelWebServiceControls::TextAssetWidget;

/// What goes into a component page, and that it comes back as it was.
class tst_PageValues : public PageTest
{
    Q_OBJECT

private slots:

    void hasItsChildrenAndOperations()
    {
        QVERIFY(view());
        auto *assets = browser().findChild<TextAssetWidget *>(QStringLiteral("assetWidget"));
        QVERIFY(assets);
        QVERIFY(assets->isHidden());
        const QMetaObject *meta = browser().metaObject();
        QStringList members;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            members << QString::fromLatin1(meta->method(i).typeName()) + u' ' +
                           QString::fromLatin1(meta->method(i).methodSignature());
        const QStringList expected{
            QStringLiteral("void ShowModalDialog(QXSC::ServiceClient*,QString,QString,QString,"
                           "QString)"),
            QStringLiteral("void ShowModalDialog(QXSC::ServiceClient*,QString,QString,QString)"),
            QStringLiteral("void ResizeCallback()"),
            QStringLiteral("QString GetValue()"),
            QStringLiteral("QString getAssetDependencies()"),
            QStringLiteral("QVariant parseReturn(QVariant)")};
        QCOMPARE(members, expected);
        QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    }

    void namesTheFieldAndAsksForTheStyleSheet()
    {
        const qsizetype before = requests().size();
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            QCOMPARE(browser().windowTitle(), QStringLiteral("  Colours"));
            browser().close();
        });
        QCOMPARE(requests().mid(before, 1),
                 QStringList{QStringLiteral("GET /echo.html?stylesheet=studio.css")});
    }

    void handsTheValueOverOnceThePageIsThere()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            QCOMPARE(read(QStringLiteral("JSON.stringify(calls)")).toString(),
                     QStringLiteral("[{\"value\":\"old value\",\"count\":1,\"onPage\":true}]"));
            browser().close();
        });
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("old dependencies"));
    }

    void handsTheValueToEveryPageOfAUse()
    {
        use(QStringLiteral("noload.html"), [this] {
            waitForPage(QStringLiteral("noload.html"));
            run(QStringLiteral("location.href = 'echo.html'"));
            waitForValue();
            QCOMPARE(read(QStringLiteral("calls[0].value")).toString(),
                     QStringLiteral("old value"));
            QCOMPARE(read(QStringLiteral("typeof onresize")).toString(),
                     QStringLiteral("function"));
            browser().close();
        });
    }

    void everyTextGoesInAndOutUnchanged_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
        row("empty", QString());
        row("quotes", QStringLiteral("'single' \"double\" `back` \\ \\n ${x}"));
        row("line breaks", QStringLiteral("a\r\nb\nc\rd\u2028e\u2029f\tg"));
        row("markup", QStringLiteral("</script><script>alert(1)</script><!-- &amp; ]]>"));
        row("nul", QString::fromUtf16(u"a\0b", 3));
        row("beyond sixteen bits", QString::fromUcs4(U"\U0001F600 and \U0010FFFF"));
        row("lone surrogates", QString(QChar(0xD800)) + u'x' + QChar(0xDC00));
        row("byte order mark", QChar(0xFEFF) + QStringLiteral("first") + QChar(0xFEFF));
        row("no characters", QString(QChar(0xFFFF)) + QChar(0xFFFE));
        row("right to left", QStringLiteral("\u05E9\u05DC\u05D5\u05DD \u202E\u0645\u202C"));
        row("combining", QStringLiteral("e\u0301 \u00E9"));
        row("a script", QStringLiteral("'); location.href='close'; ('"));
        row("a megabyte", QString(1024 * 1024, u'\u00E4'));
        row("eight million", QString(8'000'000, u'x'));
    }

    void everyTextGoesInAndOutUnchanged()
    {
        QFETCH(QString, text);
        for (const bool asArray : {false, true}) {
            prepare(QStringLiteral("echo.html"), text, text);
            show([&] {
                waitForValue();
                run(asArray
                        ? QStringLiteral("returnValue = [[calls[0].value], ['', calls[0].value]];"
                                         "location.href = 'close'")
                        : QStringLiteral("returnValue = calls[0].value; location.href = 'close'"));
            });
            QCOMPARE(browser().returnCode(), qint16(1));
            QCOMPARE(browser().GetValue(), text);
            QCOMPARE(browser().getAssetDependencies(), text);
        }
    }

    void styleSheetsFindTheProgramsColours()
    {
        QPalette dark = browser().palette();
        dark.setColor(QPalette::Window, QColor(0x20, 0x21, 0x22));
        dark.setColor(QPalette::Highlight, QColor(0xab, 0xcd, 0xef));
        const QPalette former = browser().palette();
        const QString script =
            QStringLiteral("['window', 'highlight', 'color-scheme'].map(function (name) {"
                           "  return getComputedStyle(document.documentElement)"
                           "      .getPropertyValue('--studio-' + name).trim(); }).join(' ')");
        browser().setPalette(dark);
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            QCOMPARE(read(script).toString(), QStringLiteral("#202122 #abcdef dark"));
            browser().close();
        });
        browser().setPalette(former);
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            QVERIFY(read(script).toString().endsWith(QStringLiteral(" light")));
            // A page that has no colours of its own is readable as it is.
            QCOMPARE(view()->page()->backgroundColor(), QColor(Qt::white));
            browser().close();
        });
    }

    void aPageWithoutAUsableFunctionIsFine_data()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("absent") << QStringLiteral("noload.html");
        QTest::newRow("an element of that name") << QStringLiteral("shadowedload.html");
        QTest::newRow("failing") << QStringLiteral("throwingload.html");
        QTest::newRow("no HTML") << QStringLiteral("document.xml");
    }

    void aPageWithoutAUsableFunctionIsFine()
    {
        QFETCH(QString, page);
        use(page, [&] {
            if (page.startsWith(QLatin1String("throwing")))
                waitFor(QStringLiteral("window.called"), 1);
            else
                waitForPage(page);
            run(QStringLiteral("returnValue = 'fine'; location.href = '/close'"));
        });
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue(), QStringLiteral("fine"));
    }

    void thePageMayEndTheDialogWhenItIsHandedTheValue()
    {
        Answer page;
        page.headers << "Content-Type: text/html";
        page.body =
            "<script>function external_load(v) { returnValue = v + '!'; close(); }</script>";
        serve(QStringLiteral("/quick"), page);
        use(QStringLiteral("quick"));
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value!"));
    }
};

ZEL_PAGE_TEST_MAIN(tst_PageValues)
#include "tst_pagevalues.moc"
