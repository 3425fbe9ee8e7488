// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QString>

#include <optional>

namespace Zel::Service {

/// The fields of a request's JSON object, each read once by its type. Everything that is not as it
/// should be throws a `Problem` that names the field.
class ZEL_EXPORT JsonFields
{
public:
    explicit JsonFields(const QByteArray &body);
    explicit JsonFields(const QJsonObject &object);

    /// A text of at most `longest` UTF-16 units.
    QString text(const QString &name, qsizetype longest);
    /// The same for a field that may be missing, which reads as empty.
    QString textOrEmpty(const QString &name, qsizetype longest);
    /// A whole number from `least` to `most`.
    qint64 integer(const QString &name, qint64 least, qint64 most);
    QJsonArray list(const QString &name);
    /// Milliseconds UTC within the years 1 to 9999, or null.
    std::optional<qint64> timeOrNull(const QString &name);

    /// Called after the last field: throws when there is one that nobody asked for.
    void expectNoMore() const;

private:
    QJsonValue take(const QString &name);

    QJsonObject m_object;
    QSet<QString> m_taken;
};

} // namespace Zel::Service
