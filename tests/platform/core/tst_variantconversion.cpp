// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "errornumber.h"
#include "platform/core/int16.h"
#include "platform/core/variantconversion.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QTimer>

#include <cmath>
#include <limits>
#include <memory>

using namespace Zel;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale german(QLocale::German, QLocale::Germany);

using SharedText = std::shared_ptr<const QString>;

struct Point
{
    int x = 0;
};

struct Label
{
    QString text;
};

QVariant emptyVariant()
{
    return QVariant();
}

template <typename T>
QVariant converted(const QVariant &value, const QLocale &locale = english)
{
    const QVariant result = convertTo(value, QMetaType::fromType<T>(), locale);
    if (result.metaType() != QMetaType::fromType<T>())
        return QStringLiteral("a variant of type %1").arg(QLatin1String(result.typeName()));
    return result;
}

template <typename T>
int errorOf(const QVariant &value)
{
    return errorNumber([&] { convertTo(value, QMetaType::fromType<T>(), english); });
}

} // namespace

class TestVariantConversion : public ZelTest::TestCase
{
    Q_OBJECT

public:
    enum class Flavour
    {
        Sweet = 3,
        Sour = 4
    };
    Q_ENUM(Flavour)

private slots:

    void toBoolean()
    {
        QVERIFY(booleanFrom(true));
        QVERIFY(booleanFrom(-1));
        QVERIFY(booleanFrom(0.25));
        QVERIFY(booleanFrom(QStringLiteral("TRUE")));
        QVERIFY(booleanFrom(QStringLiteral("2")));
        QVERIFY(booleanFrom(QDateTime(QDate(2007, 1, 9), QTime(0, 0))));
        QVERIFY(!booleanFrom(false));
        QVERIFY(!booleanFrom(0));
        QVERIFY(!booleanFrom(emptyVariant()));
        QVERIFY(!booleanFrom(QStringLiteral("False")));
        QVERIFY(!booleanFrom(QDateTime(QDate(1899, 12, 30), QTime(0, 0))));
        QCOMPARE(errorNumber([] { booleanFrom(QStringLiteral("banana")); }), 13);
        QCOMPARE(errorNumber([] { booleanFrom(QString()); }), 13);
    }

    void toSixteenBits()
    {
        QCOMPARE(int16From(2.5), qint16(2));
        QCOMPARE(int16From(3.5), qint16(4));
        QCOMPARE(int16From(-2.5f), qint16(-2));
        QCOMPARE(int16From(true), qint16(-1));
        QCOMPARE(int16From(emptyVariant()), qint16(0));
        QCOMPARE(int16From(QStringLiteral(" 12 ")), qint16(12));
        QCOMPARE(int16From(QStringLiteral("1,5"), german), qint16(2));
        QCOMPARE(int16From(32767), qint16(32767));
        QCOMPARE(int16From(QVariant::fromValue(Int16(-7))), qint16(-7));
        QCOMPARE(int16From(QVariant::fromValue(Flavour::Sour)), qint16(4));
        QCOMPARE(int16From(QDateTime(QDate(1900, 1, 1), QTime(0, 0))), qint16(2));
        QCOMPARE(errorNumber([] { int16From(32768); }), 6);
        QCOMPARE(errorNumber([] { int16From(32767.5); }), 6);
        QCOMPARE(errorNumber([] { int16From(QStringLiteral("40000")); }), 6);
        QCOMPARE(errorNumber([] { int16From(std::nan("")); }), 6);
        QCOMPARE(errorNumber([] { int16From(QStringLiteral("x")); }), 13);
        QCOMPARE(errorNumber([] { int16From(QString()); }), 13);
    }

    void toThirtyTwoAndMoreBits()
    {
        QCOMPARE(int32From(2147483647.0), 2147483647);
        QCOMPARE(int32From(qlonglong(-2147483648LL)), std::numeric_limits<qint32>::min());
        QCOMPARE(errorNumber([] { int32From(2147483648U); }), 6);
        QCOMPARE(errorNumber([] { int32From(qulonglong(1) << 63); }), 6);
        QCOMPARE(errorNumber([] { int32From(1e300); }), 6);
        const qint64 most = std::numeric_limits<qint64>::max();
        const qint64 least = std::numeric_limits<qint64>::min();
        QCOMPARE(integerFrom(most, least, most), most);
        QCOMPARE(integerFrom(qulonglong(most), least, most), most);
        QCOMPARE(errorNumber([&] { integerFrom(qulonglong(most) + 1, least, most); }), 6);
        QCOMPARE(errorNumber([&] { integerFrom(std::ldexp(1.0, 63), least, most); }), 6);
        QCOMPARE(integerFrom(-std::ldexp(1.0, 63), least, most), least);
        QCOMPARE(errorNumber([&] { integerFrom(11, -10, 10); }), 6);
        QCOMPARE(errorNumber([&] { integerFrom(-11, -10, 10); }), 6);
    }

    void toColour()
    {
        QCOMPARE(colorFrom(0x8000000FU), 0x8000000FU);
        QCOMPARE(colorFrom(-2147483633), 0x8000000FU);
        QCOMPARE(colorFrom(-1), 0xFFFFFFFFU);
        QCOMPARE(colorFrom(255.0), 255U);
        QCOMPARE(colorFrom(QStringLiteral("&H8000000F&")), 0x8000000FU);
        QCOMPARE(colorFrom(QStringLiteral(" &hff ")), 0xFFU);
        QCOMPARE(colorFrom(QStringLiteral("2147483663")), 0x8000000FU);
        QCOMPARE(colorFrom(emptyVariant()), 0U);
        QCOMPARE(errorNumber([] { colorFrom(4294967296LL); }), 6);
        QCOMPARE(errorNumber([] { colorFrom(-2147483649LL); }), 6);
        for (const char *text : {"", "red", "&H", "&H&", "&H100000000", "&HFG", "&H-1", "&H 1"})
            QCOMPARE(errorNumber([text] { colorFrom(QString::fromLatin1(text)); }), 13);
    }

    void toNumber()
    {
        QCOMPARE(doubleFrom(true), -1.0);
        QCOMPARE(doubleFrom(emptyVariant()), 0.0);
        QCOMPARE(doubleFrom(0.5f), 0.5);
        QCOMPARE(doubleFrom(qulonglong(1) << 63), std::ldexp(1.0, 63));
        QCOMPARE(doubleFrom(QStringLiteral("1.234,5"), german), 1234.5);
        QCOMPARE(doubleFrom(QDateTime(QDate(2007, 1, 9), QTime(18, 0))), 39091.75);
        QCOMPARE(errorNumber([] { doubleFrom(QStringLiteral("True")); }), 13);
        QCOMPARE(errorNumber([] { doubleFrom(QString()); }), 13);
    }

    void toText()
    {
        QCOMPARE(textFrom(emptyVariant()), QString());
        QCOMPARE(textFrom(true), QStringLiteral("True"));
        QCOMPARE(textFrom(false), QStringLiteral("False"));
        QCOMPARE(textFrom(-12), QStringLiteral("-12"));
        QCOMPARE(textFrom(qulonglong(1) << 63), QStringLiteral("9223372036854775808"));
        QCOMPARE(textFrom(0.1 + 0.2, german), QStringLiteral("0,3"));
        QCOMPARE(textFrom(1e15, english), QStringLiteral("1E+15"));
        QCOMPARE(textFrom(QChar(u'x')), QStringLiteral("x"));
        QCOMPARE(textFrom(QVariant::fromValue(Int16(-7))), QStringLiteral("-7"));
        QCOMPARE(textFrom(QVariant::fromValue(Flavour::Sweet)), QStringLiteral("3"));
        QCOMPARE(textFrom(QDateTime(QDate(2007, 1, 9), QTime(15, 4, 5)), english),
                 QStringLiteral("1/9/2007 3:04:05 PM"));
        QCOMPARE(textFrom(QDate(2007, 1, 9), german), QStringLiteral("09.01.2007"));
        QCOMPARE(textFrom(QTime(15, 4, 5), german), QStringLiteral("15:04:05"));
    }

    void toDate()
    {
        const QDateTime afternoon(QDate(2007, 1, 9), QTime(15, 4, 5));
        QCOMPARE(dateFrom(afternoon), afternoon);
        QCOMPARE(dateFrom(QStringLiteral("1/9/2007 3:04:05 PM"), english), afternoon);
        QCOMPARE(dateFrom(39091.75), QDateTime(QDate(2007, 1, 9), QTime(18, 0)));
        QCOMPARE(dateFrom(QStringLiteral("39091.75"), english),
                 QDateTime(QDate(2007, 1, 9), QTime(18, 0)));
        QCOMPARE(dateFrom(emptyVariant()), QDateTime(QDate(1899, 12, 30), QTime(0, 0)));
        QCOMPARE(dateFrom(QDate(2007, 1, 9)), QDateTime(QDate(2007, 1, 9), QTime(0, 0)));
        QCOMPARE(dateFrom(QTime(6, 0)), QDateTime(QDate(1899, 12, 30), QTime(6, 0)));
        QCOMPARE(errorNumber([] { dateFrom(QStringLiteral("soon")); }), 13);
        QCOMPARE(errorNumber([] { dateFrom(1e9); }), 6);
    }

    void aValueOfTheTypeComesBackUntouched()
    {
        const SharedText record = std::make_shared<const QString>(QStringLiteral("r"));
        const QVariant value = QVariant::fromValue(record);
        QCOMPARE(convertTo(value, QMetaType::fromType<SharedText>()).value<SharedText>().get(),
                 record.get());
        const QDateTime utc(QDate(2007, 1, 9), QTime(1, 2, 3, 4), Qt::UTC);
        QCOMPARE(converted<QDateTime>(utc).toDateTime().timeSpec(), Qt::UTC);
        const QString odd = QStringLiteral("  1\r\n");
        QCOMPARE(converted<QString>(odd), QVariant(odd));
    }

    void theTargetVariantTakesEverything()
    {
        const QMetaType any = QMetaType::fromType<QVariant>();
        QCOMPARE(convertTo(42, any), QVariant(42));
        QVERIFY(!convertTo(QVariant(), any).isValid());
    }

    void everySimpleTypeConverts()
    {
        QCOMPARE(converted<bool>(QStringLiteral("true")), QVariant(true));
        QCOMPARE(converted<short>(2.5), QVariant::fromValue(short(2)));
        QCOMPARE(converted<ushort>(65535), QVariant::fromValue(ushort(65535)));
        QCOMPARE(converted<uchar>(QStringLiteral("255")), QVariant::fromValue(uchar(255)));
        QCOMPARE(converted<int>(true), QVariant(-1));
        QCOMPARE(converted<uint>(-1), QVariant(0xFFFFFFFFU));
        QCOMPARE(converted<long>(7), QVariant::fromValue(7L));
        QCOMPARE(converted<qlonglong>(QStringLiteral("7")), QVariant(7LL));
        QCOMPARE(converted<float>(QStringLiteral("0.5")), QVariant(0.5f));
        QCOMPARE(converted<double>(3), QVariant(3.0));
        QCOMPARE(converted<QString>(1.5), QVariant(QStringLiteral("1.5")));
        QCOMPARE(converted<QDate>(39091.75), QVariant(QDate(2007, 1, 9)));
        QCOMPARE(converted<QTime>(39091.75), QVariant(QTime(18, 0)));
        QCOMPARE(converted<Int16>(7.5).value<Int16>().value(), qint16(8));
        QCOMPARE(converted<Flavour>(4).value<Flavour>(), Flavour::Sour);
        QCOMPARE(converted<Flavour>(QStringLiteral("3")).value<Flavour>(), Flavour::Sweet);
    }

    void rangesAreThoseOfTheTarget()
    {
        QCOMPARE(errorOf<short>(32768), 6);
        QCOMPARE(errorOf<ushort>(65536), 6);
        QCOMPARE(errorOf<ushort>(-1), 6);
        QCOMPARE(errorOf<uchar>(256), 6);
        QCOMPARE(errorOf<uchar>(true), 6);
        QCOMPARE(errorOf<int>(2147483648LL), 6);
        QCOMPARE(errorOf<uint>(1e12), 6);
        QCOMPARE(errorOf<qlonglong>(1e19), 6);
        QCOMPARE(errorOf<Int16>(40000), 6);
    }

    void theEmptyVariantIsZeroOrNothing()
    {
        QCOMPARE(converted<QString>(QVariant()), QVariant(QString()));
        QCOMPARE(converted<int>(QVariant()), QVariant(0));
        QCOMPARE(converted<bool>(QVariant()), QVariant(false));
        QCOMPARE(converted<double>(QVariant()), QVariant(0.0));
        QCOMPARE(errorOf<QObject *>(QVariant()), 13);
        QCOMPARE(errorOf<SharedText>(QVariant()), 13);
        QCOMPARE(errorOf<Point>(QVariant()), 13);
    }

    void objectsConvertWithinTheirOwnClasses()
    {
        QTimer timer;
        QObject plain;
        const QVariant asObject = QVariant::fromValue<QObject *>(&timer);
        QCOMPARE(converted<QTimer *>(asObject).value<QTimer *>(), &timer);
        QCOMPARE(converted<QObject *>(QVariant::fromValue(&timer)).value<QObject *>(),
                 static_cast<QObject *>(&timer));
        QCOMPARE(errorOf<QTimer *>(QVariant::fromValue(&plain)), 13);
        QCOMPARE(errorOf<QThread *>(asObject), 13);
    }

    void noObjectStaysNoObject()
    {
        const QVariant none = QVariant::fromValue<QObject *>(nullptr);
        QCOMPARE(converted<QTimer *>(none).value<QTimer *>(), nullptr);
        QCOMPARE(converted<QTimer *>(QVariant::fromValue(nullptr)).value<QTimer *>(), nullptr);
        QCOMPARE(errorOf<QString>(QVariant::fromValue(nullptr)), 13);
        QCOMPARE(errorOf<int>(none), 13);
    }

    void valuesAreNoObjectsAndObjectsNoValues()
    {
        QObject plain;
        QCOMPARE(errorOf<QObject *>(42), 13);
        QCOMPARE(errorOf<QObject *>(QStringLiteral("plain")), 13);
        for (const auto error : {errorOf<QString>, errorOf<int>, errorOf<bool>, errorOf<double>,
                                 errorOf<QDateTime>, errorOf<uint>, errorOf<short>})
            QCOMPARE(error(QVariant::fromValue(&plain)), 13);
    }

    void otherTypesConvertOnlyWhereAConverterIsKnown()
    {
        QCOMPARE(errorOf<Point>(QVariant::fromValue(SharedText())), 13);
        QCOMPARE(errorOf<SharedText>(QStringLiteral("r")), 13);
        QCOMPARE(errorOf<QString>(QVariant::fromValue(Point{1})), 13);
        QCOMPARE(errorOf<Label>(QVariant::fromValue(Point{1})), 13);
        QVERIFY((QMetaType::registerConverter<Point, Label>(
            [](const Point &point) { return Label{QString::number(point.x)}; })));
        QCOMPARE(converted<Label>(QVariant::fromValue(Point{7})).value<Label>().text,
                 QStringLiteral("7"));
    }

    void aFailedConversionLeavesTheValue()
    {
        const QVariant value = QStringLiteral("banana");
        QCOMPARE(errorOf<Point>(value), 13);
        QCOMPARE(value, QVariant(QStringLiteral("banana")));
    }
};

ZEL_TEST_MAIN(TestVariantConversion)
#include "tst_variantconversion.moc"
