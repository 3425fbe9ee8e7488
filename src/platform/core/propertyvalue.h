// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QString>
#include <QVariant>

#include <optional>

/// How a property bag keeps, compares and writes values.
namespace Zel::PropertyValue {

/// The value in the type a bag keeps it in: bool, int or qlonglong, quint32 for a colour, double,
/// QString, or a local QDateTime. Errors: 13 for any other type, 6 for a number a bag cannot hold.
QVariant kept(const QVariant &value);

/// Whether a kept value equals another value, kept or not. Numbers compare as numbers; a value a
/// bag does not hold equals nothing.
bool equal(const QVariant &kept, const QVariant &other);

/// A kept value for a sentence to a person: shortened, control characters visible.
QString shown(const QVariant &value);

/// The type word of a kept value in the formats.
QString typeName(const QVariant &kept);
/// The value as the formats write it in a text, and the same read back. Nothing when the text is no
/// value of the type, or there is no such type.
QString toText(const QVariant &kept);
std::optional<QVariant> fromText(QStringView typeName, const QString &text);

QJsonValue toJson(const QVariant &kept);
std::optional<QVariant> fromJson(QStringView typeName, const QJsonValue &value);

/// Whether there is a type of this name.
bool isTypeName(QStringView typeName);

} // namespace Zel::PropertyValue
