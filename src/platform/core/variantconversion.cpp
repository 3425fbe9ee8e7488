// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/variantconversion.h"

#include "platform/core/booleans.h"
#include "platform/core/datefields.h"
#include "platform/core/datenumber.h"
#include "platform/core/datetext.h"
#include "platform/core/int16.h"
#include "platform/core/numbertext.h"
#include "platform/core/rounding.h"
#include "platform/core/runtimeerror.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Zel {

namespace {

enum class Sort
{
    Empty,
    Boolean,
    Integer,
    BigInteger,
    Real,
    Text,
    Date,
    Other
};

[[noreturn]] void raiseMismatch()
{
    throw RuntimeError(RuntimeError::TypeMismatch);
}

Sort sortOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return Sort::Empty;
    case QMetaType::Bool:
        return Sort::Boolean;
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return Sort::Integer;
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return Sort::BigInteger;
    case QMetaType::Float:
    case QMetaType::Double:
        return Sort::Real;
    case QMetaType::QString:
    case QMetaType::QChar:
        return Sort::Text;
    case QMetaType::QDateTime:
    case QMetaType::QDate:
    case QMetaType::QTime:
        return Sort::Date;
    default:
        break;
    }
    const bool enumeration = value.metaType().flags() & QMetaType::IsEnumeration;
    return enumeration || value.metaType() == QMetaType::fromType<Int16>() ? Sort::Integer
                                                                           : Sort::Other;
}

qint64 integerOf(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<Int16>())
        return value.value<Int16>().value();
    return value.toLongLong();
}

/// The value of a date type as the date-time it stands for.
QDateTime dateOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QDate:
        return QDateTime(value.toDate(), QTime(0, 0));
    case QMetaType::QTime:
        return QDateTime(dayZero(), value.toTime());
    default:
        return value.toDateTime();
    }
}

double numberOfText(const QVariant &value, const QLocale &locale)
{
    const std::optional<double> number = numberFromText(value.toString(), locale);
    if (!number)
        raiseMismatch();
    return *number;
}

/// A hexadecimal number after "&H", up to 32 bits, with or without "&" behind it.
std::optional<quint32> hexadecimal(QStringView text)
{
    QStringView digits = text.trimmed();
    if (!digits.startsWith(QLatin1String("&h"), Qt::CaseInsensitive))
        return std::nullopt;
    digits = digits.sliced(2);
    if (digits.endsWith(u'&'))
        digits.chop(1);
    const bool plain = std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c.toUpper() >= u'A' && c.toUpper() <= u'F');
    });
    bool ok = false;
    const quint32 number = digits.toUInt(&ok, 16);
    return ok && plain ? std::optional<quint32>(number) : std::nullopt;
}

QVariant objectOf(const QVariant &value, QMetaType target)
{
    QObject *object = nullptr;
    if (value.metaType().flags() & QMetaType::PointerToQObject)
        object = *static_cast<QObject *const *>(value.constData());
    else if (value.metaType() != QMetaType::fromType<std::nullptr_t>())
        raiseMismatch();
    if (object && !(target.metaObject() && target.metaObject()->cast(object)))
        raiseMismatch();
    return QVariant(target, &object);
}

template <typename Integer>
QVariant integerOfType(const QVariant &value, const QLocale &locale)
{
    using Limits = std::numeric_limits<Integer>;
    return QVariant::fromValue(
        static_cast<Integer>(integerFrom(value, Limits::min(), Limits::max(), locale)));
}

QVariant otherOfType(const QVariant &value, QMetaType target, const QLocale &locale)
{
    if (target.flags() & QMetaType::PointerToQObject)
        return objectOf(value, target);
    QVariant converted = value;
    if (target.flags() & QMetaType::IsEnumeration && sortOf(value) != Sort::Other)
        converted = QVariant(int32From(value, locale));
    if (!converted.isValid() || !converted.convert(target))
        raiseMismatch();
    return converted;
}

} // namespace

bool booleanFrom(const QVariant &value, const QLocale &locale)
{
    switch (sortOf(value)) {
    case Sort::Boolean:
        return value.toBool();
    case Sort::Text:
        return booleanFromText(value.toString(), locale);
    default:
        return booleanFromNumber(doubleFrom(value, locale));
    }
}

qint16 int16From(const QVariant &value, const QLocale &locale)
{
    using Limits = std::numeric_limits<qint16>;
    return static_cast<qint16>(integerFrom(value, Limits::min(), Limits::max(), locale));
}

qint32 int32From(const QVariant &value, const QLocale &locale)
{
    using Limits = std::numeric_limits<qint32>;
    return static_cast<qint32>(integerFrom(value, Limits::min(), Limits::max(), locale));
}

qint64 integerFrom(const QVariant &value, qint64 least, qint64 most, const QLocale &locale)
{
    const Sort sort = sortOf(value);
    if (sort == Sort::Integer ||
        (sort == Sort::BigInteger && value.toULongLong() <= quint64(most))) {
        const qint64 whole = integerOf(value);
        if (whole < least || whole > most)
            throw RuntimeError(RuntimeError::Overflow);
        return whole;
    }
    const double whole = roundHalfEven(doubleFrom(value, locale));
    // 2 to the 63rd is the first double beyond; the greatest integers themselves are no doubles.
    if (whole < double(least) || whole > double(most) || whole >= std::ldexp(1.0, 63))
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<qint64>(whole);
}

quint32 colorFrom(const QVariant &value, const QLocale &locale)
{
    if (sortOf(value) == Sort::Text) {
        if (const std::optional<quint32> color = hexadecimal(value.toString()))
            return *color;
    }
    return static_cast<quint32>(integerFrom(value, std::numeric_limits<qint32>::min(),
                                            std::numeric_limits<quint32>::max(), locale));
}

double doubleFrom(const QVariant &value, const QLocale &locale)
{
    switch (sortOf(value)) {
    case Sort::Empty:
        return 0;
    case Sort::Boolean:
        return booleanNumber(value.toBool());
    case Sort::Integer:
        return double(integerOf(value));
    case Sort::BigInteger:
        return double(value.toULongLong());
    case Sort::Real:
        return value.toDouble();
    case Sort::Text:
        return numberOfText(value, locale);
    case Sort::Date:
        return dateNumber(dateOf(value));
    case Sort::Other:
        break;
    }
    raiseMismatch();
}

QString textFrom(const QVariant &value, const QLocale &locale)
{
    switch (sortOf(value)) {
    case Sort::Empty:
        return QString();
    case Sort::Boolean:
        return booleanText(value.toBool());
    case Sort::Integer:
        return QString::number(integerOf(value));
    case Sort::BigInteger:
        return QString::number(value.toULongLong());
    case Sort::Real:
        return numberText(value.toDouble(), locale);
    case Sort::Text:
        return value.toString();
    case Sort::Date:
        return generalDateText(dateOf(value), locale);
    case Sort::Other:
        break;
    }
    raiseMismatch();
}

QDateTime dateFrom(const QVariant &value, const QLocale &locale)
{
    const Sort sort = sortOf(value);
    if (sort == Sort::Date)
        return dateOf(value);
    if (sort != Sort::Text)
        return dateFromNumber(doubleFrom(value, locale));
    const QString text = value.toString();
    if (const std::optional<QDateTime> date = dateFromText(text, locale))
        return *date;
    return dateFromNumber(numberOfText(value, locale));
}

QVariant convertTo(const QVariant &value, QMetaType target, const QLocale &locale)
{
    if (value.metaType() == target || target == QMetaType::fromType<QVariant>())
        return value;
    switch (target.id()) {
    case QMetaType::Bool:
        return booleanFrom(value, locale);
    case QMetaType::Short:
        return integerOfType<short>(value, locale);
    case QMetaType::UShort:
        return integerOfType<ushort>(value, locale);
    case QMetaType::UChar:
        return integerOfType<uchar>(value, locale);
    case QMetaType::Int:
        return int32From(value, locale);
    case QMetaType::UInt:
        return colorFrom(value, locale);
    case QMetaType::Long:
        return integerOfType<long>(value, locale);
    case QMetaType::LongLong:
        return integerOfType<qlonglong>(value, locale);
    case QMetaType::Float:
        return QVariant(float(doubleFrom(value, locale)));
    case QMetaType::Double:
        return doubleFrom(value, locale);
    case QMetaType::QString:
        return textFrom(value, locale);
    case QMetaType::QDateTime:
        return dateFrom(value, locale);
    case QMetaType::QDate:
        return dateFrom(value, locale).date();
    case QMetaType::QTime:
        return dateFrom(value, locale).time();
    default:
        break;
    }
    if (target == QMetaType::fromType<Int16>())
        return QVariant::fromValue(Int16(int16From(value, locale)));
    return otherOfType(value, target, locale);
}

} // namespace Zel
