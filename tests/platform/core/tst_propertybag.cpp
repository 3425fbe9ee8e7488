// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/int16.h"
#include "platform/core/propertybag.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <limits>

using Zel::PropertyBag;

namespace {

const QString name = QStringLiteral("ShowLoginURL");

PropertyBag bagWith(const QVariant &value)
{
    PropertyBag bag;
    bag.write(name, value);
    return bag;
}

} // namespace

class TestPropertyBag : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void anAbsentNameReadsAsTheDefault()
    {
        const PropertyBag bag;
        QVERIFY(bag.isEmpty());
        QVERIFY(!bag.contains(name));
        QCOMPARE(bag.read(name, 42), QVariant(42));
        QVERIFY(!bag.read(name).isValid());
        QVERIFY(bag.readBool(name, true));
        QCOMPARE(bag.readString(name, QStringLiteral("d")), QStringLiteral("d"));
        QCOMPARE(bag.readColor(name, 0x8000000FU), 0x8000000FU);
        QCOMPARE(bag.readInt16(name, 5), qint16(5));
        QCOMPARE(bag.readInt32(name, 5), 5);
        QCOMPARE(bag.readDouble(name, 0.5), 0.5);
        QCOMPARE(bag.problems(), QStringList());
    }

    void aValueEqualToTheDefaultIsNotStored_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("defaultValue");
        QTest::addColumn<bool>("stored");
        const auto row = [](const char *what, const QVariant &value, const QVariant &other,
                            bool stored) { QTest::newRow(what) << value << other << stored; };
        row("boolean", true, true, false);
        row("other boolean", false, true, true);
        row("colour", 0x8000000FU, 0x8000000FU, false);
        row("other colour", 0xFFU, 0x8000000FU, true);
        row("text", QStringLiteral("a"), QStringLiteral("a"), false);
        row("text in other case", QStringLiteral("A"), QStringLiteral("a"), true);
        row("null and empty text", QString(), QStringLiteral(""), false);
        row("composed and decomposed text", QStringLiteral("\u00E9"), QStringLiteral("e\u0301"),
            true);
        row("numbers of two widths", QVariant::fromValue(qint16(7)), 7, false);
        row("whole and floating number", 7.0, 7, false);
        row("text and number", QStringLiteral("7"), 7, true);
        row("boolean and number", true, 1, true);
        row("date", QDateTime(QDate(2007, 1, 9), QTime(1, 2)),
            QDateTime(QDate(2007, 1, 9), QTime(1, 2)), false);
        row("no default", false, QVariant(), true);
    }

    void aValueEqualToTheDefaultIsNotStored()
    {
        QFETCH(QVariant, value);
        QFETCH(QVariant, defaultValue);
        QFETCH(bool, stored);
        PropertyBag bag;
        bag.write(name, value, defaultValue);
        QCOMPARE(bag.contains(name), stored);
        QCOMPARE(bag.isEmpty(), !stored);
    }

    void writingTheDefaultRemovesTheOlderValue()
    {
        PropertyBag bag;
        bag.write(QStringLiteral("a"), 1, 0);
        bag.write(name, false, true);
        bag.write(QStringLiteral("b"), 2, 0);
        bag.write(name, true, true);
        QVERIFY(!bag.contains(name));
        QCOMPARE(bag.names(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
        QCOMPARE(bag.read(QStringLiteral("b")), QVariant(2));
    }

    void namesKeepTheOrderOfWriting()
    {
        PropertyBag bag;
        for (const char *each : {"z", "a", "m"})
            bag.write(QString::fromLatin1(each), 1);
        bag.write(QStringLiteral("z"), 2);
        QCOMPARE(bag.names().join(u' '), QStringLiteral("z a m"));
        QCOMPARE(bag.read(QStringLiteral("z")), QVariant(2));
        bag.remove(QStringLiteral("a"));
        bag.remove(QStringLiteral("never there"));
        QCOMPARE(bag.names().join(u' '), QStringLiteral("z m"));
        QCOMPARE(bag.read(QStringLiteral("m")), QVariant(1));
        bag.write(QStringLiteral("a"), 3);
        QCOMPARE(bag.names().join(u' '), QStringLiteral("z m a"));
    }

    void namesCompareExactly()
    {
        PropertyBag bag;
        bag.write(QStringLiteral("Name"), 1);
        bag.write(QStringLiteral("name"), 2);
        QVERIFY(!bag.contains(QStringLiteral("NAME")));
        QCOMPARE(bag.read(QStringLiteral("Name")), QVariant(1));
    }

    void clearForgetsEverything()
    {
        PropertyBag bag = bagWith(QStringLiteral("banana"));
        bag.readBool(name, true);
        QCOMPARE(bag.problems().size(), 1);
        bag.clear();
        QVERIFY(bag.isEmpty());
        QVERIFY(!bag.contains(name));
        QCOMPARE(bag.problems(), QStringList());
    }

    void valuesKeepTheirKind()
    {
        const auto kept = [](const QVariant &value) { return bagWith(value).read(name); };
        QCOMPARE(kept(true).typeId(), int(QMetaType::Bool));
        QCOMPARE(kept(QVariant::fromValue(qint16(7))), QVariant(7));
        QCOMPARE(kept(QVariant::fromValue(Zel::Int16(7))).typeId(), int(QMetaType::Int));
        QCOMPARE(kept(5000000000LL), QVariant(5000000000LL));
        QCOMPARE(kept(0x8000000FU).typeId(), int(QMetaType::UInt));
        QCOMPARE(kept(0.5f).typeId(), int(QMetaType::Double));
        QCOMPARE(kept(QDate(2007, 1, 9)), QVariant(QDateTime(QDate(2007, 1, 9), QTime(0, 0))));
        QCOMPARE(kept(QVariant::fromValue(Qt::AlignRight)), QVariant(int(Qt::AlignRight)));
        const QDateTime utc(QDate(2007, 1, 9), QTime(20, 0), Qt::UTC);
        QCOMPARE(kept(utc).toDateTime().timeSpec(), Qt::LocalTime);
        QCOMPARE(kept(utc).toDateTime(), utc);
    }

    void whatNoBagHoldsIsAnError()
    {
        PropertyBag bag;
        const auto error = [&bag](const QString &key, const QVariant &value) {
            return errorNumber([&] { bag.write(key, value); });
        };
        QCOMPARE(error(QString(), 1), 5);
        QCOMPARE(error(name, QVariant()), 13);
        QCOMPARE(error(name, QVariant::fromValue<QObject *>(this)), 13);
        QCOMPARE(error(name, QStringList{name}), 13);
        QCOMPARE(error(name, QDateTime()), 13);
        QCOMPARE(error(name, std::numeric_limits<double>::infinity()), 6);
        QCOMPARE(error(name, std::numeric_limits<double>::quiet_NaN()), 6);
        QCOMPARE(error(name, std::numeric_limits<quint64>::max()), 6);
        QCOMPARE(error(name, QDateTime(QDate(12007, 1, 9), QTime(0, 0))), 6);
        QVERIFY(bag.isEmpty());
    }

    void typedReadersConvert()
    {
        QVERIFY(bagWith(QStringLiteral("TRUE")).readBool(name, false));
        QVERIFY(bagWith(-1).readBool(name, false));
        QCOMPARE(bagWith(true).readString(name, QString()), QStringLiteral("True"));
        QCOMPARE(bagWith(0.5).readString(name, QString()), QStringLiteral("0.5"));
        QCOMPARE(bagWith(QStringLiteral("&HFF&")).readColor(name, 0), 0xFFU);
        QCOMPARE(bagWith(-2147483633).readColor(name, 0), 0x8000000FU);
        QCOMPARE(bagWith(2.5).readInt16(name, 0), qint16(2));
        QCOMPARE(bagWith(QStringLiteral("70000")).readInt32(name, 0), 70000);
        QCOMPARE(bagWith(QStringLiteral("1.5")).readDouble(name, 0), 1.5);
    }

    void textsAreReadAlikeInEveryLocale()
    {
        const QLocale former;
        QLocale::setDefault(QLocale(QLocale::German));
        const double number = bagWith(QStringLiteral("1.5")).readDouble(name, 0);
        const QString text = bagWith(1.5).readString(name, QString());
        QLocale::setDefault(former);
        QCOMPARE(number, 1.5);
        QCOMPARE(text, QStringLiteral("1.5"));
    }

    void aValueThatDoesNotConvertIsTheDefaultAndAProblem()
    {
        const PropertyBag bag = bagWith(QStringLiteral("banana"));
        QVERIFY(bag.readBool(name, true));
        QCOMPARE(bag.problems(),
                 QStringList(QStringLiteral("“ShowLoginURL” holds “banana”, which is not True or "
                                            "False; “True” is used instead.")));
        QVERIFY(bag.readBool(name, true));
        QCOMPARE(bag.problems().size(), 1);
        QVERIFY(!bag.readBool(name, false));
        QCOMPARE(bag.readColor(name, 0x8000000FU), 0x8000000FU);
        QVERIFY(bag.problems().last().contains(QStringLiteral("a colour; “&H8000000F&”")));
        QCOMPARE(bag.readInt32(name, 3), 3);
        QCOMPARE(bag.readDouble(name, 0.5), 0.5);
        QCOMPARE(bag.problems().size(), 5);
        QCOMPARE(bag.read(name), QVariant(QStringLiteral("banana")));
    }

    void aNumberOutOfRangeIsAProblem()
    {
        const PropertyBag bag = bagWith(40000);
        QCOMPARE(bag.readInt16(name, 7), qint16(7));
        QCOMPARE(bag.problems(),
                 QStringList(QStringLiteral("“ShowLoginURL” holds “40000”, which is not a whole "
                                            "number from -32768 to 32767; “7” is used instead.")));
    }

    void aLongValueIsShortenedInAProblem()
    {
        const PropertyBag bag = bagWith(QString(100000, u'x') + QChar(u'\u0001'));
        bag.readBool(name, true);
        QVERIFY(bag.problems().first().size() < 200);
    }

    void problemsHaveAnEnd()
    {
        PropertyBag bag;
        for (int i = 0; i < 1000; ++i)
            bag.addProblem(QString::number(i));
        QCOMPARE(bag.problems().size(), 100);
    }

    void aCopyIsIndependent()
    {
        const PropertyBag bag = bagWith(1);
        PropertyBag copy = bag;
        copy.write(name, 2);
        QCOMPARE(bag.read(name), QVariant(1));
        QVERIFY(!(copy == bag));
    }

    void bagsAreEqualWhateverTheirOrder()
    {
        PropertyBag a;
        PropertyBag b;
        a.write(QStringLiteral("x"), 1);
        a.write(QStringLiteral("y"), true);
        b.write(QStringLiteral("y"), true);
        QVERIFY(!(a == b));
        b.write(QStringLiteral("x"), 1);
        QVERIFY(a == b);
        b.write(QStringLiteral("z"), 1);
        b.remove(QStringLiteral("x"));
        QVERIFY(!(a == b));
    }
};

ZEL_TEST_MAIN(TestPropertyBag)
#include "tst_propertybag.moc"
