// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include "records/web/pageresult.h"

using ZelWebServiceControls::MostResultCharacters;

/// What a component page leaves as its result, and what becomes of it.
class tst_PageResults : public PageTest
{
    Q_OBJECT

private slots:

    void everyShapeHasItsOutcome_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<bool>("isAccepted");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("dependencies");
        const auto rows = table(QStringLiteral("results.table"));
        QVERIFY(rows.size() >= 20);
        for (const QStringList &row : rows) {
            const bool isAccepted = row.at(1) == QLatin1String("accepted");
            const bool keepsDependencies = !isAccepted || row.at(3) == QLatin1String("=");
            QTest::newRow(qPrintable(row.at(0)))
                << row.at(0) << isAccepted << (isAccepted ? row.at(2) : QStringLiteral("old value"))
                << (keepsDependencies ? QStringLiteral("old dependencies") : row.at(3));
        }
    }

    void everyShapeHasItsOutcome()
    {
        QFETCH(QString, expression);
        for (const char *ending : {"location.href = 'close'", "window.close()"}) {
            use(QStringLiteral("echo.html"), [&] {
                waitForValue();
                run(QStringLiteral("returnValue = %1; %2")
                        .arg(expression, QString::fromLatin1(ending)));
            });
            QTEST(browser().returnCode() == 1, "isAccepted");
            QTEST(browser().GetValue(), "value");
            QTEST(browser().getAssetDependencies(), "dependencies");
        }
    }

    void arraysWithATextFormOfTheirOwnAreReadAsTheyAre()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("Array.prototype.toJSON = function () { return 'HA'; };"
                               "returnValue = [['real'], ['', 'too']]; location.href = 'close'"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("real"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("too"));
    }

    void theResultIsReadWhenTheScriptHasEndedButAtTheMomentOfClosing()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral(
                "returnValue = 'before'; location.href = 'close'; returnValue = 'after'"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("after"));
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("returnValue = 'before'; close(); returnValue = 'after'"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("before"));
    }

    void aResultOfTheLargestSizeIsTaken()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("returnValue = 'x'.repeat(%1); location.href = 'close'")
                    .arg(MostResultCharacters));
        });
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue().size(), MostResultCharacters);
    }

    void aLargerResultIsAnErrorThatKeepsTheValue_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::newRow("one more") << QStringLiteral("'x'.repeat(%1)").arg(MostResultCharacters + 1);
        QTest::newRow("a hundred million") << QStringLiteral("'x'.repeat(100 * 1024 * 1024)");
        QTest::newRow("in two texts")
            << QStringLiteral("[['x'.repeat(9000000)], ['', 'x'.repeat(9000000)]]");
        QTest::newRow("too many elements") << QStringLiteral("new Array(100001).fill('')");
        QTest::newRow("a length without end") << QStringLiteral("({length: Infinity, 0: ['a']})");
    }

    void aLargerResultIsAnErrorThatKeepsTheValue()
    {
        QFETCH(QString, expression);
        QList<Zel::RuntimeError> errors;
        const auto connection = connect(&browser(), &Zel::Form::runtimeError, this,
                                        [&](const Zel::RuntimeError &error) { errors << error; });
        use(QStringLiteral("echo.html"), [&] {
            waitForValue();
            run(QStringLiteral("returnValue = %1; location.href = 'close'").arg(expression));
        });
        disconnect(connection);
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("old dependencies"));
        QCOMPARE(errors.size(), 1);
        QCOMPARE(errors[0].number(), 6);
        QVERIFY(errors[0].description().contains(QStringLiteral("16 million characters")));
    }

    void aPageThatDoesNotAnswerIsClosedWithAWord()
    {
        boxes().click(QMessageBox::Ok);
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("returnValue = 'never seen'; location.href = 'close';"
                               "for (;;) {}"));
        });
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(browser().GetValue(), QStringLiteral("old value"));
        QCOMPARE(boxes().shown().size(), 1);
        QCOMPARE(boxes().shown()[0].text,
                 QStringLiteral("The page did not answer. The value is kept as it was."));
        // The next use has a process of its own.
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("returnValue = 'well'; close()"));
        });
        QCOMPARE(browser().GetValue(), QStringLiteral("well"));
    }

    void aPersonNeedNotWaitForAPageThatDoesNotAnswer()
    {
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            run(QStringLiteral("for (;;) {}"));
            browser().close();
        });
        QCOMPARE(browser().returnCode(), qint16(2));
        QCOMPARE(boxes().shown().size(), 0);
    }

    void parseReturnReadsObjectsByTheirLength()
    {
        const QVariantList arrays{QVariantList{"abc"}, QVariantList{"", "x,y"}};
        const QVariantMap inner{{"length", 1}, {"0", "abc"}, {"1", "beyond"}};
        const QVariantMap empty{{"length", 0}, {"0", "abc"}};
        const QVariantMap outer{{"length", 2}, {"0", inner}, {"1", QVariantList{"", "x,y"}}};
        QCOMPARE(browser().parseReturn("abc"), QVariant("abc"));
        QCOMPARE(browser().parseReturn(5), QVariant(5));
        QCOMPARE(browser().parseReturn(QVariant()), QVariant());
        QCOMPARE(browser().parseReturn(QVariantList()), QVariant(QVariantList()));
        QCOMPARE(browser().parseReturn(empty), QVariant(empty));
        QCOMPARE(browser().parseReturn(arrays), QVariant(arrays));
        QCOMPARE(browser().parseReturn(outer), QVariant(arrays));
        const QVariantMap sparse{{"length", 2}, {"1", true}};
        QCOMPARE(browser().parseReturn(sparse), QVariant(QVariantList{QVariant(), true}));
    }
};

ZEL_PAGE_TEST_MAIN(tst_PageResults)
#include "tst_pageresults.moc"
