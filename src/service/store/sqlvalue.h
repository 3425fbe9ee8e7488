// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

namespace Zel {

/// A value bound to a statement. Only the types that columns have can be bound, so that nothing
/// lands in a column of another type.
class ZEL_EXPORT SqlValue
{
public:
    /// Text; a null QString is the empty text, not NULL. Throws `std::invalid_argument` for a text
    /// that `isStorableText` refuses.
    SqlValue(const QString &text); // NOLINT(google-explicit-constructor)

    SqlValue(qint64 number)
        : m_value(number)
    {
    } // NOLINT(google-explicit-constructor)

    SqlValue(qint32 number)
        : m_value(qint64(number))
    {
    } // NOLINT(google-explicit-constructor)

    SqlValue(bool flag)
        : m_value(flag)
    {
    } // NOLINT(google-explicit-constructor)

    SqlValue(const QByteArray &bytes); // NOLINT(google-explicit-constructor)

    SqlValue(std::nullopt_t) {} // NOLINT(google-explicit-constructor)

    SqlValue(const char *) = delete;

    template <class T>
    SqlValue(const std::optional<T> &value) // NOLINT(google-explicit-constructor)
        : SqlValue(value ? SqlValue(*value) : SqlValue(std::nullopt))
    {
    }

    /// What is bound: an invalid QVariant is NULL.
    const QVariant &variant() const { return m_value; }

private:
    QVariant m_value;
};

using SqlValues = QList<SqlValue>;

} // namespace Zel
