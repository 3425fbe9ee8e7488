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

SqlCells::~SqlCells() = default;

bool SqlRow::isNull(int column) const
{
    return m_query ? m_query->isNull(column) : m_cells->isNull(column);
}

QVariant SqlRow::value(int column) const
{
    return m_query ? m_query->value(column) : m_cells->value(column);
}

QString SqlRow::text(int column) const
{
    const QVariant cell = value(column);
    if (cell.typeId() != QMetaType::QString || isNull(column))
        wrongType(column);
    return cell.toString();
}

qint64 SqlRow::integer(int column) const
{
    const QVariant cell = value(column);
    const int type = cell.typeId();
    if ((type != QMetaType::LongLong && type != QMetaType::ULongLong && type != QMetaType::Int) ||
        isNull(column))
        wrongType(column);
    return cell.toLongLong();
}

bool SqlRow::boolean(int column) const
{
    const QVariant cell = value(column);
    const int type = cell.typeId();
    if ((type != QMetaType::Bool && type != QMetaType::LongLong) || isNull(column))
        wrongType(column);
    return cell.toBool();
}

QByteArray SqlRow::bytes(int column) const
{
    const QVariant cell = value(column);
    if (cell.typeId() != QMetaType::QByteArray || isNull(column))
        wrongType(column);
    return cell.toByteArray();
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
