// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/answerreader.h"

#include <QJsonDocument>

#include <limits>

namespace QXSC {

namespace {

[[noreturn]] void complain(QLatin1String name, const char *problem)
{
    throw AnswerProblem{QStringLiteral("\"%1\" %2").arg(name, QLatin1String(problem))};
}

/// A JSON number that is a whole one of 64 bits.
std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    constexpr qint64 one = std::numeric_limits<qint64>::min();
    constexpr qint64 other = std::numeric_limits<qint64>::max();
    const qint64 number = value.toInteger(one);
    if (number == one && value.toInteger(other) == other)
        return std::nullopt;
    return number;
}

} // namespace

QJsonObject readObject(const QByteArray &body)
{
    if (body.isEmpty())
        throw AnswerProblem{QStringLiteral("it is empty")};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        throw AnswerProblem{
            QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset)};
    if (!document.isObject())
        throw AnswerProblem{QStringLiteral("it is no object")};
    return document.object();
}

QJsonValue readMember(const QJsonObject &object, QLatin1String name)
{
    const auto found = object.constFind(name);
    if (found == object.constEnd())
        complain(name, "is missing");
    return *found;
}

QString readText(const QJsonValue &value, QLatin1String name)
{
    if (!value.isString())
        complain(name, "is not a text");
    return value.toString();
}

bool readFlag(const QJsonValue &value, QLatin1String name)
{
    if (!value.isBool())
        complain(name, "is neither true nor false");
    return value.toBool();
}

qint32 readInt32(const QJsonValue &value, QLatin1String name)
{
    const std::optional<qint64> number = wholeNumber(value);
    if (!number || *number < std::numeric_limits<qint32>::min() ||
        *number > std::numeric_limits<qint32>::max())
        complain(name, "is not a 32-bit number");
    return static_cast<qint32>(*number);
}

qint64 readInt64(const QJsonValue &value, QLatin1String name)
{
    const std::optional<qint64> number = wholeNumber(value);
    if (!number)
        complain(name, "is not a whole number");
    return *number;
}

QJsonObject readObject(const QJsonValue &value, QLatin1String name)
{
    if (!value.isObject())
        complain(name, "is not an object");
    return value.toObject();
}

QJsonArray readList(const QJsonValue &value, QLatin1String name)
{
    if (!value.isArray())
        complain(name, "is not a list");
    return value.toArray();
}

std::optional<QDateTime> readTime(const QJsonValue &value, QLatin1String name)
{
    if (value.isNull())
        return std::nullopt;
    const std::optional<qint64> number = wholeNumber(value);
    if (!number)
        complain(name, "is neither a time in milliseconds nor null");
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(*number);
    if (!time.isValid())
        complain(name, "is a time beyond every calendar");
    return time;
}

} // namespace QXSC
