// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <utility>

namespace Zel::Service {

// What the parts of the document are made of.

using Member = std::pair<const char *, QJsonValue>;

inline QJsonObject object(std::initializer_list<Member> members)
{
    QJsonObject result;
    for (const auto &[name, value] : members)
        result.insert(QLatin1String(name), value);
    return result;
}

inline QString text(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8);
}

/// A body of one type; without a schema where it is not JSON.
inline QJsonObject content(const QByteArray &type, const QJsonObject &schema)
{
    return {{text(type), schema.isEmpty() ? QJsonObject() : object({{"schema", schema}})}};
}

} // namespace Zel::Service
