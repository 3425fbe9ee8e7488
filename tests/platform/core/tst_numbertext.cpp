// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/numbertext.h"
#include "testsupport/testcase.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Zel;

class TestNumberText : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void writesAtMostFifteenDigits_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *text, double value) {
            QTest::newRow(text) << value << QString::fromLatin1(text);
        };
        row("0", 0);
        row("0", -0.0);
        row("1", 1);
        row("-1", -1);
        row("0.5", 0.5);
        row("0.1", 0.1);
        row("0.3", 0.1 + 0.2);
        row("0.333333333333333", 1.0 / 3);
        row("0.666666666666667", 2.0 / 3);
        row("-12.75", -12.75);
        row("123456789012345", 123456789012345.0);
        row("999999999999999", 999999999999999.0);
        row("1E+15", 999999999999999.9);
        row("1E+15", 1e15);
        row("1.23456789012346E+15", 1234567890123456.0);
        row("1.5E+16", 1.5e16);
        row("1E+100", 1e100);
        row("0.0001", 0.0001);
        row("1E-05", 0.00001);
        row("1.5E-05", 0.000015);
        row("-2E-300", -2e-300);
        row("1.79769313486232E+308", std::numeric_limits<double>::max());
        row("INF", std::numeric_limits<double>::infinity());
        row("-INF", -std::numeric_limits<double>::infinity());
        row("NAN", std::numeric_limits<double>::quiet_NaN());
    }

    void writesAtMostFifteenDigits()
    {
        QFETCH(double, value);
        QTEST(invariantNumberText(value), "text");
    }

    void usesTheSeparatorOfTheLocaleAndNeverGroups()
    {
        const QLocale german(QLocale::German, QLocale::Germany);
        QCOMPARE(numberText(1234567.25, german), QStringLiteral("1234567,25"));
        QCOMPARE(numberText(1.5e-7, german), QStringLiteral("1,5E-07"));
        QCOMPARE(numberText(1234567.25, QLocale(QLocale::English)), QStringLiteral("1234567.25"));
        QCOMPARE(invariantNumberText(1234567.25), QStringLiteral("1234567.25"));
        QCOMPARE(numberText(1.5, QLocale(QLocale::Arabic, QLocale::Egypt)),
                 QStringLiteral("1\u066B5"));
    }

    void readsWhatPeopleWrite_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        const auto row = [](const char *text, double value) {
            QTest::newRow(text) << QString::fromUtf8(text) << value;
        };
        row("0", 0);
        row("  42\t", 42);
        row("-42", -42);
        row("- 42", -42);
        row("42-", -42);
        row("42 -", -42);
        row("+42", 42);
        row("42+", 42);
        row("(42)", -42);
        row("( 42.5 )", -42.5);
        row(".5", 0.5);
        row("5.", 5);
        row("1,234,567.25", 1234567.25);
        row("1E3", 1000);
        row("1e+3", 1000);
        row("1D3", 1000);
        row("1d-3", 0.001);
        row("1.5E-05", 0.000015);
        row("\u22125", -5);
        row("\u200E-5", -5);
        row("\u0661\u0662", 12);
        row("\U0001E951\U0001E952", 12);
        row("0.1", 0.1);
        row("179769313486231570000000000000000000000", 1.7976931348623157e38);
        row("1E-400", 0);
        row("0.0000001E-330", 0);
        row("0E999999999999999999999", 0);
        row("1E-999999999999999999999", 0);
    }

    void readsWhatPeopleWrite()
    {
        QFETCH(QString, text);
        const auto read = numberFromText(text, QLocale::c());
        QVERIFY(read.has_value());
        QTEST(*read, "value");
        QVERIFY(isNumeric(text, QLocale::c()));
    }

    void takesNothingElseForANumber_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"",       " ",
                                 "-",      ".",
                                 "E5",     "1E",
                                 "1E+",    "abc",
                                 "1 2",    "1a",
                                 "--5",    "-5-",
                                 "(-5)",   "(5)-",
                                 "(5",     "5)",
                                 "()",     ",5",
                                 "1.2.3",  "1.2,3",
                                 "0x10",   "1E400",
                                 "-1E400", "INF",
                                 "NAN",    "1E999999999999999999999",
                                 "10:30",  "1/2",
                                 "True"})
            QTest::newRow(text) << QString::fromLatin1(text);
        QTest::newRow("400 digits") << QString(400, u'9');
        QTest::newRow("400 digits with a small exponent")
            << QString(400, u'9') + QStringLiteral("E-5");
        QTest::newRow("longer than any number") << QString(10000, u'1');
    }

    void takesNothingElseForANumber()
    {
        QFETCH(QString, text);
        QVERIFY(!numberFromText(text, QLocale::c()).has_value());
        QVERIFY(!isNumeric(text, QLocale::c()));
    }

    void readsTheSeparatorsOfTheLocale()
    {
        const QLocale german(QLocale::German, QLocale::Germany);
        QCOMPARE(numberFromText(u"1.234,5", german), std::optional(1234.5));
        QVERIFY(!numberFromText(u"1,5,5", german));
        const QLocale french(QLocale::French, QLocale::France);
        QCOMPARE(numberFromText(u"1\u202F234,5", french), std::optional(1234.5));
        QCOMPARE(numberFromText(u"1 234,5", french), std::optional(1234.5));
        QCOMPARE(numberFromText(u"1\u00A0234,5", french), std::optional(1234.5));
        const QLocale swiss(QLocale::German, QLocale::Switzerland);
        QCOMPARE(numberFromText(u"1\u2019234.5", swiss), std::optional(1234.5));
        QCOMPARE(numberFromText(u"1'234.5", swiss), std::optional(1234.5));
    }

    void everyLocaleReadsBackWhatItWrites()
    {
        const double values[] = {0,    -1,       0.5,     -0.5,   1234567.25,
                                 1e15, -1.5e-05, 1.0 / 3, 1e-300, 123456789012345.0};
        const auto locales =
            QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
        QVERIFY(locales.size() > 500);
        for (const QLocale &locale : locales) {
            for (const double value : values) {
                const QString text = numberText(value, locale);
                const auto read = numberFromText(text, locale);
                QVERIFY2(read.has_value(), qPrintable(locale.name() + u' ' + text));
                QVERIFY2(std::fabs(*read - value) <= std::fabs(value) * 1e-14,
                         qPrintable(locale.name() + u' ' + text));
            }
            const QString grouped = locale.toString(1234567.25, 'f', 2);
            QCOMPARE(numberFromText(grouped, locale), std::optional(1234567.25));
            QCOMPARE(numberFromText(locale.toString(-1234), locale), std::optional(-1234.0));
        }
    }

    void fixesTheNumberOfDigits_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("integerDigits");
        QTest::addColumn<int>("fractionDigits");
        QTest::addColumn<QString>("text");
        const auto row = [](double value, int whole, int fraction, const char *text) {
            QTest::addRow("%g as %d.%d", value, whole, fraction)
                << value << whole << fraction << QString::fromLatin1(text);
        };
        row(0, 3, 2, "000.00");
        row(-0.0, 1, 1, "0.0");
        row(3, 2, 2, "03.00");
        row(-3.25, 2, 2, "-03.25");
        row(12345, 2, 1, "12345.0");
        row(0.1, 1, 20, "0.10000000000000000000");
        row(1.0 / 3, 1, 20, "0.33333333333333300000");
        row(2.0 / 3, 1, 16, "0.6666666666666670");
        row(0.125, 1, 2, "0.13");
        row(-0.125, 1, 2, "-0.13");
        row(0.124, 1, 2, "0.12");
        row(9.995, 1, 2, "10.00");
        row(999.5, 1, 0, "1000");
        row(0.5, 1, 0, "1");
        row(0.4, 1, 0, "0");
        row(0.05, 1, 1, "0.1");
        row(0.04, 1, 1, "0.0");
        row(-0.04, 1, 1, "0.0");
        row(0.004, 1, 1, "0.0");
        row(0.5, 0, 2, ".50");
        row(1e20, 1, 1, "100000000000000000000.0");
        row(123456789012345678.0, 1, 1, "123456789012346000.0");
    }

    void fixesTheNumberOfDigits()
    {
        QFETCH(double, value);
        QFETCH(int, integerDigits);
        QFETCH(int, fractionDigits);
        QTEST(fixedText(value, integerDigits, fractionDigits), "text");
    }

    void keepsAllDigitsOfAHugeNumber()
    {
        const QString huge = fixedText(1e40, 30, 30);
        QCOMPARE(huge, u'1' + QString(40, u'0') + u'.' + QString(30, u'0'));
        QCOMPARE(fixedText(std::numeric_limits<double>::max(), 30, 0).size(), 309);
    }

    void whatIsNoFiniteNumberHasNoFixedText()
    {
        QCOMPARE(errorNumber([] { fixedText(std::numeric_limits<double>::infinity(), 1, 1); }), 6);
        QCOMPARE(errorNumber([] { fixedText(std::numeric_limits<double>::quiet_NaN(), 1, 1); }), 6);
    }
};

ZEL_TEST_MAIN(TestNumberText)
#include "tst_numbertext.moc"
