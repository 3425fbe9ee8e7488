// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

#include <optional>

namespace QXSC {

/// What is wrong with an answer: "row 17: \"created\" is not a number". For support, not
/// translated.
struct AnswerProblem
{
    QString what;
};

// Each function takes what an answer must hold and throws AnswerProblem where it holds something
// else. `name` is the member or column the value comes from.

/// The one JSON object an answer consists of.
QJsonObject readObject(const QByteArray &body);
/// A member that must be there, null included.
QJsonValue readMember(const QJsonObject &object, QLatin1String name);

QString readText(const QJsonValue &value, QLatin1String name);
bool readFlag(const QJsonValue &value, QLatin1String name);
qint32 readInt32(const QJsonValue &value, QLatin1String name);
qint64 readInt64(const QJsonValue &value, QLatin1String name);
QJsonObject readObject(const QJsonValue &value, QLatin1String name);
QJsonArray readList(const QJsonValue &value, QLatin1String name);
/// Milliseconds since 1970 in UTC as a local date-time; nothing for null.
std::optional<QDateTime> readTime(const QJsonValue &value, QLatin1String name);

} // namespace QXSC
