// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sqlrow.h"

#include "service/store/databaseerror.h"

#include <QSqlQuery>
#include <QVariant>

namespace Zel {

namespace {

[[noreturn]] void wrongType(int column)
{
    throw DatabaseError(
        DatabaseError::Kind::Corrupt,
        QStringLiteral("Column %1 of a result has a value of the wrong type.").arg(column));
}

} // namespace

bool SqlRow::isNull(int column) const
{
    return m_query.isNull(column);
}

QString SqlRow::text(int column) const
{
    const QVariant value = m_query.value(column);
    if (value.typeId() != QMetaType::QString || m_query.isNull(column))
        wrongType(column);
    return value.toString();
}

qint64 SqlRow::integer(int column) const
{
    const QVariant value = m_query.value(column);
    const int type = value.typeId();
    if ((type != QMetaType::LongLong && type != QMetaType::ULongLong && type != QMetaType::Int) ||
        m_query.isNull(column))
        wrongType(column);
    return value.toLongLong();
}

bool SqlRow::boolean(int column) const
{
    const QVariant value = m_query.value(column);
    const int type = value.typeId();
    if ((type != QMetaType::Bool && type != QMetaType::LongLong) || m_query.isNull(column))
        wrongType(column);
    return value.toBool();
}

QByteArray SqlRow::bytes(int column) const
{
    const QVariant value = m_query.value(column);
    if (value.typeId() != QMetaType::QByteArray || m_query.isNull(column))
        wrongType(column);
    return value.toByteArray();
}

std::optional<qint64> SqlRow::optionalInteger(int column) const
{
    if (isNull(column))
        return std::nullopt;
    return integer(column);
}

std::optional<QString> SqlRow::optionalText(int column) const
{
    if (isNull(column))
        return std::nullopt;
    return text(column);
}

} // namespace Zel
