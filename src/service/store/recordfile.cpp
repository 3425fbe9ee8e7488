// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/recordfile.h"

#include "service/store/storabletext.h"

#include <QDateTime>
#include <QUuid>

#include <limits>

namespace Zel {

namespace {

constexpr qint64 earliestTime = -62135596800000; // 0001-01-01T00:00:00Z
constexpr qint64 latestTime = 253402300799999;   // 9999-12-31T23:59:59.999Z

} // namespace

void FileRecord::refuse(const QString &sentence) const
{
    throw WorkspaceFileError(place, sentence);
}

QJsonValue FileRecord::take(const QString &name)
{
    const auto found = fields.constFind(name);
    if (found == fields.constEnd())
        refuse(QStringLiteral("\"%1\" is missing.").arg(name));
    m_taken.insert(name);
    return found.value();
}

QString FileRecord::textOrEmpty(const QString &name, qsizetype longest)
{
    const QJsonValue value = take(name);
    if (!value.isString())
        refuse(QStringLiteral("\"%1\" must be a text.").arg(name));
    const QString text = value.toString();
    if (text.size() > longest)
        refuse(QStringLiteral("\"%1\" is longer than %2 characters.").arg(name).arg(longest));
    if (!isStorableText(text))
        refuse(QStringLiteral("\"%1\" has a character that cannot be stored.").arg(name));
    return text;
}

QString FileRecord::text(const QString &name, qsizetype longest)
{
    const QString text = textOrEmpty(name, longest);
    if (text.trimmed().isEmpty())
        refuse(QStringLiteral("\"%1\" is empty.").arg(name));
    return text;
}

qint64 FileRecord::integer(const QString &name, qint64 least, qint64 most)
{
    const QJsonValue value = take(name);
    bool ok = value.isDouble();
    qint64 number = value.toInteger(least - 1);
    if (value.isString())
        number = value.toString().toLongLong(&ok);
    if (!ok || number < least || number > most)
        refuse(QStringLiteral("\"%1\" must be a whole number from %2 to %3.")
                   .arg(name)
                   .arg(least)
                   .arg(most));
    return number;
}

bool FileRecord::boolean(const QString &name)
{
    const QJsonValue value = take(name);
    const QString text = value.toString();
    if (value.isBool())
        return value.toBool();
    if (text != QLatin1String("true") && text != QLatin1String("false"))
        refuse(QStringLiteral("\"%1\" must be true or false.").arg(name));
    return text == QLatin1String("true");
}

std::optional<qint64> FileRecord::timeOrEmpty(const QString &name)
{
    constexpr qint64 none = std::numeric_limits<qint64>::min();
    const QJsonValue value = take(name);
    if (value.isNull())
        return std::nullopt;
    if (value.isDouble()) {
        const qint64 time = value.toInteger(none);
        if (time < earliestTime || time > latestTime)
            refuse(QStringLiteral("\"%1\" must be a time in whole milliseconds since 1970 within "
                                  "the years 1 to 9999.")
                       .arg(name));
        return time;
    }
    const QString text = value.toString();
    if (text.isEmpty() && value.isString())
        return std::nullopt;
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid() || time.timeSpec() == Qt::LocalTime)
        refuse(QStringLiteral("\"%1\" must be a time with its zone like 2026-03-04T15:00:00Z.")
                   .arg(name));
    // A zone can move the first and the last day out of the years that can be written.
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    if (milliseconds < earliestTime || milliseconds > latestTime)
        refuse(
            QStringLiteral("\"%1\" must be a time within the years 1 to 9999 of UTC.").arg(name));
    return milliseconds;
}

qint64 FileRecord::time(const QString &name)
{
    const auto found = timeOrEmpty(name);
    if (!found)
        refuse(QStringLiteral("\"%1\" must be a time.").arg(name));
    return *found;
}

QJsonArray FileRecord::list(const QString &name)
{
    const QJsonValue value = take(name);
    if (!value.isArray())
        refuse(QStringLiteral("\"%1\" must be a list.").arg(name));
    return value.toArray();
}

QJsonObject FileRecord::object(const QString &name)
{
    const QJsonValue value = take(name);
    if (!value.isObject())
        refuse(QStringLiteral("\"%1\" must be an object.").arg(name));
    return value.toObject();
}

QString FileRecord::guid(const QString &name)
{
    constexpr qsizetype length = 36;
    const QString text = textOrEmpty(name, length);
    if (text.size() != length || QUuid::fromString(text).isNull())
        refuse(QStringLiteral("\"%1\" must be a UUID without braces.").arg(name));
    return text.toLower();
}

void FileRecord::expectNoMore() const
{
    for (auto it = fields.constBegin(); it != fields.constEnd(); ++it) {
        if (!m_taken.contains(it.key()))
            refuse(QStringLiteral("\"%1\" is not known.").arg(it.key()));
    }
}

} // namespace Zel
