// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/booleans.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <limits>

using namespace Zel;

class TestBooleans : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void areMinusOneAndZero()
    {
        static_assert(booleanNumber(true) == -1);
        static_assert(booleanNumber(false) == 0);
        QVERIFY(booleanFromNumber(-1));
        QVERIFY(booleanFromNumber(0.001));
        QVERIFY(booleanFromNumber(std::numeric_limits<double>::quiet_NaN()));
        QVERIFY(!booleanFromNumber(0));
        QVERIFY(!booleanFromNumber(-0.0));
    }

    void areWrittenTrueAndFalse()
    {
        QCOMPARE(booleanText(true), QStringLiteral("True"));
        QCOMPARE(booleanText(false), QStringLiteral("False"));
    }

    void readTheirWordsInAnyCase()
    {
        for (const char *text : {"True", "true", "TRUE", " tRuE "})
            QVERIFY2(booleanFromText(QString::fromLatin1(text)), text);
        for (const char *text : {"False", "false", "FALSE", "\tfalse"})
            QVERIFY2(!booleanFromText(QString::fromLatin1(text)), text);
    }

    void readNumbersAsTheLocaleWritesThem()
    {
        QVERIFY(booleanFromText(u"1"));
        QVERIFY(booleanFromText(u"-1"));
        QVERIFY(!booleanFromText(u"0"));
        QVERIFY(!booleanFromText(u"0,00", QLocale(QLocale::German)));
        QVERIFY(booleanFromText(u"0,01", QLocale(QLocale::German)));
    }

    void anyOtherTextIsAMismatch()
    {
        for (const char *text : {"", " ", "banana", "yes", "Truee", "Wahr", "0 0"})
            QCOMPARE(errorNumber([text] { booleanFromText(QString::fromLatin1(text)); }), 13);
    }
};

ZEL_TEST_MAIN(TestBooleans)
#include "tst_booleans.moc"
