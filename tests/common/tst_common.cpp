// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "common/common.h"

#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>

using namespace ZelWebServiceControls;
using ZelTest::errorNumber;

class TestCommon : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void entitiesBecomeCharacters_data()
    {
        QTest::addColumn<QVariant>("text");
        QTest::addColumn<QString>("unescaped");
        const auto row = [](const char *text, const char *unescaped) {
            QTest::newRow(*text ? text : "nothing")
                << QVariant(QString::fromUtf8(text)) << QString::fromUtf8(unescaped);
        };
        row("", "");
        row("plain text", "plain text");
        row("&lt;x&gt;", "<x>");
        row("&quot;Tom&apos;s&quot; &amp; co", "\"Tom's\" & co");
        row("&lt;&lt;&gt;&gt;&amp;&amp;", "<<>>&&");
        // "&amp;" comes first, so what it uncovers is turned too, by the later passes only.
        row("a &amp;amp; b", "a &amp; b");
        row("&amp;lt;", "<");
        row("&amp;gt;&amp;quot;&amp;apos;", ">\"'");
        row("&amp;amp;lt;", "&amp;lt;");
        row("&AMP; &Lt; &lt &; & lt; &#38; &nbsp;", "&AMP; &Lt; &lt &; & lt; &#38; &nbsp;");
        row("Ä&amp;Ö", "Ä&Ö");
        QTest::newRow("a number") << QVariant(5) << QStringLiteral("5");
        QTest::newRow("a boolean") << QVariant(true) << QStringLiteral("True");
        QTest::newRow("no value") << QVariant() << QString();
        QTest::newRow("a value without a text")
            << QVariant::fromValue<QObject *>(nullptr) << QString();
    }

    void entitiesBecomeCharacters()
    {
        QFETCH(QVariant, text);
        QFETCH(QString, unescaped);
        QCOMPARE(Common::XmlUnescape(text), unescaped);
    }

    void unescapingKeepsEveryOtherCodeUnit()
    {
        QString text(QStringLiteral("x&lt;"));
        text.prepend(QChar(u'\0'));
        text.append(QChar(0xD800));
        QString expected(QStringLiteral("x<"));
        expected.prepend(QChar(u'\0'));
        expected.append(QChar(0xD800));
        QCOMPARE(Common::XmlUnescape(text), expected);
    }

    void durationsTruncateHoursAndMinutesAndRoundSeconds_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        const auto row = [](double seconds, const char *text) {
            QTest::addRow("%.10g", seconds) << seconds << QString::fromLatin1(text);
        };
        row(0, "00:00:00");
        row(3725, "01:02:05");
        row(90000, "25:00:00");
        row(59.4, "00:00:59");
        // The rounded 60 wraps while the minutes stay.
        row(59.6, "00:00:00");
        row(3599.5, "00:59:00");
        row(119.9, "00:01:00");
        // Halves go to the even number.
        row(0.5, "00:00:00");
        row(1.5, "00:00:02");
        row(2.5, "00:00:02");
        row(59.5, "00:00:00");
        row(58.5, "00:00:58");
        row(359999, "99:59:59");
        row(360000, "100:00:00");
        row(117964799.4, "32767:59:59");
        row(117964799.9, "32767:59:00");
        row(-5, "00:00:0-5");
        row(-3725, "0-1:0-2:0-5");
    }

    void durationsTruncateHoursAndMinutesAndRoundSeconds()
    {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(Common::FormatDuration(seconds), text);
    }

    void durationsFrom32768HoursOnOverflow()
    {
        for (const double seconds : {32768.0 * 3600, 1e12, 1e300, -32769.0 * 3600,
                                     std::numeric_limits<double>::infinity(), std::nan("")})
            QCOMPARE(errorNumber([&] { Common::FormatDuration(seconds); }), 6);
    }

    void numbersBelowTenGetAZeroInFront()
    {
        QCOMPARE(Common::PadTwoDigits(0), QStringLiteral("00"));
        QCOMPARE(Common::PadTwoDigits(9), QStringLiteral("09"));
        QCOMPARE(Common::PadTwoDigits(10), QStringLiteral("10"));
        QCOMPARE(Common::PadTwoDigits(99), QStringLiteral("99"));
        QCOMPARE(Common::PadTwoDigits(100), QStringLiteral("100"));
        QCOMPARE(Common::PadTwoDigits(32767), QStringLiteral("32767"));
        QCOMPARE(Common::PadTwoDigits(-5), QStringLiteral("0-5"));
        QCOMPARE(Common::PadTwoDigits(-32768), QStringLiteral("0-32768"));
    }

    void onlyAnArrayThatWasNeverDimensionedIsEmpty()
    {
        QVERIFY(Common::IsArrayEmpty(Common::Array<QString>()));
        QVERIFY(!Common::IsArrayEmpty(Common::Array<QString>(QList<QString>{QString()})));
        QVERIFY(!Common::IsArrayEmpty(Common::Array<int>(QList<int>())));
        QVERIFY(!Common::IsArrayEmpty(Common::Array<int>(QList<int>{1, 2})));
    }

    void anAttributeIsReadAsText()
    {
        QXmlStreamReader reader(
            QStringLiteral("<WIZARD studio_version='4.2 &amp; up' empty='' Name='x' />"));
        QVERIFY(reader.readNextStartElement());
        const QXmlStreamAttributes attributes = reader.attributes();
        const auto text = [&](const char *name) {
            return Common::GetAttributeText(&attributes, QString::fromLatin1(name));
        };
        QCOMPARE(text("studio_version"), QStringLiteral("4.2 & up"));
        QCOMPARE(text("empty"), QString());
        QCOMPARE(text("version"), QString());
        QCOMPARE(text("name"), QString());
        QCOMPARE(text(""), QString());
        QCOMPARE(text("Name"), QStringLiteral("x"));
    }

    void anElementThatIsNotThereHasNoAttributes()
    {
        QCOMPARE(Common::GetAttributeText(nullptr, QStringLiteral("studio_version")), QString());
    }
};

ZEL_TEST_MAIN(TestCommon)
#include "tst_common.moc"
