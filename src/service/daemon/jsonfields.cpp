// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/jsonfields.h"

#include "service/daemon/problem.h"
#include "service/daemon/repeatedfield.h"
#include "service/store/storabletext.h"

#include <QJsonDocument>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qint64 earliestTime = -62135596800000; // 0001-01-01T00:00:00Z
constexpr qint64 latestTime = 253402300799999;   // 9999-12-31T23:59:59.999Z
constexpr qsizetype longestShownName = 64;

} // namespace

JsonFields::JsonFields(const QByteArray &body)
{
    // Qt drops a byte order mark at the beginning of every text; it keeps the escape of one.
    QByteArray json = body;
    json.replace("\xef\xbb\xbf", "\\ufeff");
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw Problem(400, QByteArrayLiteral("bad-json"),
                      QStringLiteral("The request is not valid JSON (%1, at byte %2).")
                          .arg(error.errorString())
                          .arg(error.offset));
    if (!document.isObject())
        throw Problem::invalid(QStringLiteral("The request must be a JSON object."));
    if (const auto repeated = repeatedField(json))
        throw Problem::invalid(QStringLiteral("The field \"%1\" is given twice.")
                                   .arg(repeated->left(longestShownName)));
    m_object = document.object();
}

JsonFields::JsonFields(const QJsonObject &object)
    : m_object(object)
{
}

QJsonValue JsonFields::take(const QString &name)
{
    const auto found = m_object.constFind(name);
    if (found == m_object.constEnd())
        throw Problem::invalid(QStringLiteral("The field \"%1\" is missing.").arg(name));
    m_taken.insert(name);
    return found.value();
}

QString JsonFields::text(const QString &name, qsizetype longest)
{
    const QJsonValue value = take(name);
    if (!value.isString())
        throw Problem::invalid(QStringLiteral("The field \"%1\" must be a text.").arg(name));
    const QString text = value.toString();
    if (text.size() > longest)
        throw Problem::invalid(QStringLiteral("The field \"%1\" is longer than %2 characters.")
                                   .arg(name)
                                   .arg(longest));
    if (!isStorableText(text))
        throw Problem::invalidText(name);
    return text;
}

QString JsonFields::textOrEmpty(const QString &name, qsizetype longest)
{
    return m_object.contains(name) ? text(name, longest) : QString();
}

qint64 JsonFields::integer(const QString &name, qint64 least, qint64 most)
{
    const QJsonValue value = take(name);
    // What is no whole number of 64 bits comes back as the default given, whichever that is.
    constexpr qint64 one = std::numeric_limits<qint64>::min();
    const qint64 number = value.toInteger(one);
    if ((number == one && value.toInteger(0) == 0) || number < least || number > most)
        throw Problem::invalid(QStringLiteral("The field \"%1\" must be a whole number from %2 to "
                                              "%3.")
                                   .arg(name)
                                   .arg(least)
                                   .arg(most));
    return number;
}

QJsonArray JsonFields::list(const QString &name)
{
    const QJsonValue value = take(name);
    if (!value.isArray())
        throw Problem::invalid(QStringLiteral("The field \"%1\" must be a list.").arg(name));
    return value.toArray();
}

std::optional<qint64> JsonFields::timeOrNull(const QString &name)
{
    const QJsonValue value = take(name);
    if (value.isNull())
        return std::nullopt;
    // What is no whole number of 64 bits comes back as the default given, here a time out of range.
    constexpr qint64 none = std::numeric_limits<qint64>::min();
    const qint64 time = value.isDouble() ? value.toInteger(none) : none;
    if (time < earliestTime || time > latestTime)
        throw Problem::invalid(QStringLiteral("The field \"%1\" must be null or a time in whole "
                                              "milliseconds since 1970 within the years 1 to 9999.")
                                   .arg(name));
    return time;
}

void JsonFields::expectNoMore() const
{
    for (auto it = m_object.constBegin(); it != m_object.constEnd(); ++it) {
        if (!m_taken.contains(it.key()))
            throw Problem::invalid(QStringLiteral("The field \"%1\" is not known.")
                                       .arg(it.key().left(longestShownName)));
    }
}

} // namespace Zel::Service
