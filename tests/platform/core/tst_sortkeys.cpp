// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/datetext.h"
#include "platform/core/sortkeys.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <algorithm>

using namespace Zel;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

QString key(const char *text)
{
    return numberSortKey(QString::fromLatin1(text), english);
}

} // namespace

class TestSortKeys : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void aNumberHasThirtyDigitsOnEitherSide()
    {
        QCOMPARE(key("3"), QString(29, u'0') + QStringLiteral("3.") + QString(30, u'0'));
        QCOMPARE(key("1,234.5"), QString(26, u'0') + QStringLiteral("1234.5") + QString(29, u'0'));
        QCOMPARE(key("0"), QString(30, u'0') + u'.' + QString(30, u'0'));
        QCOMPARE(key("-0"), QString(30, u'0') + u'.' + QString(30, u'0'));
    }

    void aNegativeNumberIsInverted()
    {
        QCOMPARE(key("-2"), u'&' + QString(29, u'9') + QStringLiteral("7.") + QString(30, u'9'));
        QCOMPARE(key("-10"), u'&' + QString(28, u'9') + QStringLiteral("89.") + QString(30, u'9'));
        QCOMPARE(key("-0.0123456789"),
                 u'&' + QString(30, u'9') + QStringLiteral(".9876543210") + QString(20, u'9'));
    }

    void whatIsNoNumberHasTheEmptyKey()
    {
        QCOMPARE(key(""), QString());
        QCOMPARE(key("n/a"), QString());
    }

    void numbersSortByValue()
    {
        QStringList texts{QStringLiteral("3"),    QStringLiteral("-2"),  QStringLiteral("10"),
                          QStringLiteral("-10"),  QStringLiteral("x"),   QStringLiteral("0.5"),
                          QStringLiteral("-0.5"), QStringLiteral("1E9"), QStringLiteral("-1E9"),
                          QStringLiteral("0")};
        std::sort(texts.begin(), texts.end(), [](const QString &a, const QString &b) {
            return numberSortKey(a, english) < numberSortKey(b, english);
        });
        QCOMPARE(texts.join(u' '), QStringLiteral("x -1E9 -10 -2 -0.5 0 0.5 3 10 1E9"));
    }

    void aDateHasFourteenDigits()
    {
        QCOMPARE(dateSortKey(u"1/9/2007 3:04:05 PM", english), QStringLiteral("20070109150405"));
        QCOMPARE(dateSortKey(u"1/10/2007", english), QStringLiteral("20070110000000"));
        QCOMPARE(dateSortKey(u"12:00:01 AM", english), QStringLiteral("18991230000001"));
        QCOMPARE(dateSortKey(u"2/3/0100", english), QStringLiteral("01000203000000"));
        QCOMPARE(dateSortKey(u"12/31/9999 11:59:59 PM", english), QStringLiteral("99991231235959"));
    }

    void whatIsNoDateHasTheEmptyKey()
    {
        QCOMPARE(dateSortKey(u"", english), QString());
        QCOMPARE(dateSortKey(u"never", english), QString());
        QCOMPARE(dateSortNumber(u"never", english), -1);
    }

    void theNumberOfADateIsItsKey()
    {
        for (const char16_t *text : {u"1/9/2007 3:04:05 PM", u"2/3/0100", u"12:00:01 AM"})
            QCOMPARE(dateSortNumber(text, english), dateSortKey(text, english).toLongLong());
    }

    void theKeyIsThatOfTheClockEvenInTheSkippedHour()
    {
        // At two in the morning the clocks of this test's time zone went to three.
        const QDateTime skipped(QDate(2024, 3, 10), QTime(2, 30));
        QVERIFY(!skipped.isValid());
        QCOMPARE(dateSortKey(generalDateText(skipped, english), english),
                 QStringLiteral("20240310023000"));
    }
};

ZEL_TEST_MAIN(TestSortKeys)
#include "tst_sortkeys.moc"
