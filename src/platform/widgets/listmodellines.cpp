// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listmodel.h"

// What a ListModel knows of its records: the provider's word, and over it what code has set.

namespace Zel {

QString ListModel::text(qsizetype row, int column) const
{
    const ListLineState::Cell *cell = m_state.cell(row, column);
    return cell && cell->text ? *cell->text : m_provider->text(row, column);
}

QVariant ListModel::tag(qsizetype row) const
{
    return m_provider->tag(row);
}

int ListModel::smallIcon(qsizetype row) const
{
    const ListLineState::Line *line = m_state.line(row);
    return line && line->smallIcon ? *line->smallIcon : m_provider->smallIcon(row);
}

int ListModel::largeIcon(qsizetype row) const
{
    const ListLineState::Line *line = m_state.line(row);
    return line && line->largeIcon ? *line->largeIcon : m_provider->largeIcon(row);
}

bool ListModel::isChecked(qsizetype row) const
{
    const ListLineState::Line *line = m_state.line(row);
    return line && line->checked ? *line->checked : m_provider->isChecked(row);
}

bool ListModel::isGhosted(qsizetype row) const
{
    const ListLineState::Line *line = m_state.line(row);
    return line && line->ghosted ? *line->ghosted : m_provider->isGhosted(row);
}

QColor ListModel::colour(qsizetype row, int column) const
{
    const ListLineState::Cell *cell = m_state.cell(row, column);
    if (cell && cell->colour.isValid())
        return cell->colour;
    const ListLineState::Line *line = m_state.line(row);
    if (line && line->colour.isValid())
        return line->colour;
    return m_provider->colour(row, column);
}

QVariant ListModel::cellTag(qsizetype row, int column) const
{
    const ListLineState::Cell *cell = m_state.cell(row, column);
    return cell ? cell->tag : QVariant();
}

void ListModel::setText(qsizetype row, int column, const QString &text)
{
    m_state.setText(row, column, text);
    changed(row);
}

void ListModel::setSmallIcon(qsizetype row, int index)
{
    m_state.editLine(row).smallIcon = index;
    changed(row);
}

void ListModel::setLargeIcon(qsizetype row, int index)
{
    m_state.editLine(row).largeIcon = index;
    changed(row);
}

void ListModel::setChecked(qsizetype row, bool checked)
{
    m_state.editLine(row).checked = checked;
    changed(row);
}

void ListModel::setGhosted(qsizetype row, bool ghosted)
{
    m_state.editLine(row).ghosted = ghosted;
    changed(row);
}

void ListModel::setLineColour(qsizetype row, const QColor &colour)
{
    m_state.editLine(row).colour = colour;
    changed(row);
}

void ListModel::setCellColour(qsizetype row, int column, const QColor &colour)
{
    m_state.editCell(row, column).colour = colour;
    changed(row);
}

void ListModel::setCellTag(qsizetype row, int column, const QVariant &tag)
{
    m_state.editCell(row, column).tag = tag;
    changed(row);
}

void ListModel::updateRow(qsizetype row)
{
    changed(row);
}

void ListModel::changed(qsizetype row)
{
    const QModelIndex first = indexOf(row);
    if (first.isValid())
        emit dataChanged(first, indexOf(row, columnCount() - 1));
}

} // namespace Zel
