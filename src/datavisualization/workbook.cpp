// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/workbook.h"

#include "platform/core/numbertext.h"

#include <algorithm>

namespace ZelDataVisualization {

size_t Sheet::rowFrom(quint32 number) const
{
    const auto found =
        std::lower_bound(rows.begin(), rows.end(), number,
                         [](const Row &row, quint32 wanted) { return row.number < wanted; });
    return static_cast<size_t>(found - rows.begin());
}

const Cell *Sheet::find(quint32 row, quint16 column) const
{
    const size_t place = rowFrom(row);
    if (place == rows.size() || rows[place].number != row)
        return nullptr;
    return cellInColumn(cellsOf(place), column);
}

const Cell *cellInColumn(std::span<const Cell> row, quint16 column)
{
    // Rows without gaps are the rule.
    if (column >= 1 && column <= row.size() && row[column - 1u].column == column)
        return &row[column - 1u];
    const auto found =
        std::lower_bound(row.begin(), row.end(), column,
                         [](const Cell &cell, quint16 wanted) { return cell.column < wanted; });
    return found != row.end() && found->column == column ? &*found : nullptr;
}

const Sheet *Workbook::sheet(QStringView name) const
{
    const auto found = std::find_if(sheets.begin(), sheets.end(), [name](const Sheet &one) {
        return one.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == sheets.end() ? nullptr : &*found;
}

QString Workbook::textOf(const Cell &cell) const
{
    switch (cell.kind()) {
    case CellKind::Blank:
        break;
    case CellKind::Integer:
        return QString::number(static_cast<qint32>(cell.value));
    case CellKind::Real:
        return Zel::invariantNumberText(reals[cell.value]);
    case CellKind::Text:
    case CellKind::Error:
        return texts.at(cell.value).toString();
    case CellKind::Boolean:
        return cell.value ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    case CellKind::Formula:
        return textOf(formulas[cell.value].stored); // itself no formula
    }
    return QString();
}

std::optional<double> Workbook::numberOf(const Cell &cell) const
{
    if (cell.kind() == CellKind::Integer)
        return static_cast<qint32>(cell.value);
    if (cell.kind() == CellKind::Real)
        return reals[cell.value];
    return std::nullopt;
}

} // namespace ZelDataVisualization
