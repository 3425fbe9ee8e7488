// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertyvalue.h"

#include "platform/core/booleans.h"
#include "platform/core/propertyescape.h"
#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"

#include <QDateTime>

#include <charconv>
#include <cmath>
#include <limits>

namespace Zel::PropertyValue {

namespace {

QVariant keptInteger(const QVariant &value)
{
    using Limits = std::numeric_limits<qint64>;
    const qint64 whole = integerFrom(value, Limits::min(), Limits::max(), QLocale::c());
    const bool small =
        whole >= std::numeric_limits<qint32>::min() && whole <= std::numeric_limits<qint32>::max();
    return small ? QVariant(int(whole)) : QVariant(qlonglong(whole));
}

QVariant keptNumber(double value)
{
    if (!std::isfinite(value))
        throw RuntimeError(RuntimeError::Overflow);
    return value;
}

QVariant keptDate(const QVariant &value)
{
    const QDateTime date = dateFrom(value, QLocale::c());
    if (!date.date().isValid() || !date.time().isValid())
        throw RuntimeError(RuntimeError::TypeMismatch);
    const QDateTime local = date.timeSpec() == Qt::LocalTime ? date : date.toLocalTime();
    if (local.date().year() < 1 || local.date().year() > 9999)
        throw RuntimeError(RuntimeError::Overflow);
    return local;
}

bool isNumber(const QVariant &kept)
{
    switch (kept.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

/// Every digit that is needed to get the same double back.
QString exactNumber(double value)
{
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

QString dateToText(const QDateTime &date)
{
    QString text = date.date().toString(Qt::ISODate) + u'T';
    return text + date.time().toString(date.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
}

std::optional<QVariant> booleanValue(const QString &text)
{
    if (text == booleanText(true))
        return true;
    if (text == booleanText(false))
        return false;
    return std::nullopt;
}

std::optional<QVariant> integerValue(const QString &text)
{
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    return ok ? std::optional(keptInteger(value)) : std::nullopt;
}

std::optional<QVariant> colorValue(const QString &text)
{
    try {
        return colorFrom(text, QLocale::c());
    } catch (const RuntimeError &) {
        return std::nullopt;
    }
}

std::optional<QVariant> finiteNumber(double value)
{
    return std::isfinite(value) ? std::optional<QVariant>(value) : std::nullopt;
}

std::optional<QVariant> numberValue(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok ? finiteNumber(value) : std::nullopt;
}

std::optional<QVariant> textValue(const QString &text)
{
    return text;
}

std::optional<QVariant> escapedValue(const QString &text)
{
    const std::optional<QString> plain = unescaped(text);
    return plain ? std::optional<QVariant>(*plain) : std::nullopt;
}

std::optional<QVariant> dateValue(const QString &text)
{
    const qsizetype t = text.indexOf(u'T');
    const QDate date = QDate::fromString(text.first(qMax(t, 0)), Qt::ISODate);
    const QTime time = QTime::fromString(text.sliced(t + 1), Qt::ISODateWithMs);
    const QDateTime value(date, time);
    // Qt reads more than the format allows, so only what it would write counts.
    if (!date.isValid() || !time.isValid() || dateToText(value) != text)
        return std::nullopt;
    return value;
}

struct Type
{
    const char *name;
    std::optional<QVariant> (*read)(const QString &text);
};

constexpr Type types[] = {
    {"boolean", booleanValue}, {"integer", integerValue}, {"color", colorValue},
    {"number", numberValue},   {"text", textValue},       {"escapedText", escapedValue},
    {"date", dateValue},
};

const Type *typeOf(QStringView name)
{
    for (const Type &type : types) {
        if (name == QLatin1String(type.name))
            return &type;
    }
    return nullptr;
}

} // namespace

QVariant kept(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value;
    case QMetaType::UInt:
        return value.toUInt();
    case QMetaType::Float:
    case QMetaType::Double:
        return keptNumber(value.toDouble());
    case QMetaType::QString:
    case QMetaType::QChar:
        return value.toString();
    case QMetaType::QDateTime:
    case QMetaType::QDate:
    case QMetaType::QTime:
        return keptDate(value);
    case QMetaType::UnknownType:
        throw RuntimeError(RuntimeError::TypeMismatch);
    default:
        return keptInteger(value);
    }
}

bool equal(const QVariant &kept, const QVariant &other)
{
    QVariant otherKept;
    try {
        otherKept = PropertyValue::kept(other);
    } catch (const RuntimeError &) {
        return false;
    }
    if (kept.metaType() == otherKept.metaType())
        return kept == otherKept;
    return isNumber(kept) && isNumber(otherKept) && kept.toDouble() == otherKept.toDouble();
}

QString shown(const QVariant &value)
{
    constexpr qsizetype most = 40;
    QString text = toText(kept(value));
    if (needsEscape(text))
        text = escaped(text);
    return text.size() > most ? text.first(most) + u'…' : text;
}

QString typeName(const QVariant &kept)
{
    switch (kept.typeId()) {
    case QMetaType::Bool:
        return QStringLiteral("boolean");
    case QMetaType::UInt:
        return QStringLiteral("color");
    case QMetaType::Double:
        return QStringLiteral("number");
    case QMetaType::QString:
        return needsEscape(kept.toString()) ? QStringLiteral("escapedText")
                                            : QStringLiteral("text");
    case QMetaType::QDateTime:
        return QStringLiteral("date");
    default:
        return QStringLiteral("integer");
    }
}

QString toText(const QVariant &kept)
{
    switch (kept.typeId()) {
    case QMetaType::Bool:
        return booleanText(kept.toBool());
    case QMetaType::UInt:
        return QStringLiteral("&H%1&").arg(kept.toUInt(), 8, 16, QLatin1Char('0')).toUpper();
    case QMetaType::Double:
        return exactNumber(kept.toDouble());
    case QMetaType::QString: {
        const QString text = kept.toString();
        return needsEscape(text) ? escaped(text) : text;
    }
    case QMetaType::QDateTime:
        return dateToText(kept.toDateTime());
    default:
        return QString::number(kept.toLongLong());
    }
}

std::optional<QVariant> fromText(QStringView typeName, const QString &text)
{
    const Type *type = typeOf(typeName);
    return type ? type->read(text) : std::nullopt;
}

QJsonValue toJson(const QVariant &kept)
{
    switch (kept.typeId()) {
    case QMetaType::Bool:
        return kept.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
        return kept.toLongLong();
    case QMetaType::Double:
        return kept.toDouble();
    default:
        return toText(kept);
    }
}

std::optional<QVariant> fromJson(QStringView typeName, const QJsonValue &value)
{
    if (value.isString())
        return fromText(typeName, value.toString());
    if (value.isBool() && typeName == QLatin1String("boolean"))
        return value.toBool();
    if (!value.isDouble())
        return std::nullopt;
    if (typeName == QLatin1String("number"))
        return finiteNumber(value.toDouble());
    const bool whole = typeName == QLatin1String("integer") || typeName == QLatin1String("color");
    const QVariant number = value.toVariant();
    if (!whole || number.typeId() != QMetaType::LongLong)
        return std::nullopt;
    return fromText(typeName, QString::number(number.toLongLong()));
}

bool isTypeName(QStringView typeName)
{
    return typeOf(typeName) != nullptr;
}

} // namespace Zel::PropertyValue
