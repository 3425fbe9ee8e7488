// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/workbook.h"

#include <array>
#include <map>

namespace ZelDataVisualization {

/// Fills a workbook from the front to the back, as both readers do. A question it answers with no
/// means that the document is malformed.
class WorkbookBuilder
{
public:
    void openSheet(const QString &name);
    /// Goes to the row of a number, or to the next one for 0. No for a row that is not behind.
    bool openRow(quint32 number);

    /// The rows that follow are so many further down.
    void skipRows(quint32 count) { m_row += count; }

    /// The column of the next cell; `index` is the one the cell names, or 0. No for one that is not
    /// behind the last.
    bool openCell(quint32 index)
    {
        const quint32 column = index == 0 ? m_column + 1 : index;
        if (column <= m_column || column > Workbook::MostColumns)
            return false;
        m_column = column;
        return true;
    }

    /// The next cell is so many columns further on.
    bool skipColumns(quint32 count)
    {
        if (count > Workbook::MostColumns)
            return false;
        m_column += count;
        return true;
    }

    void add(const Cell &cell) { m_sheet->cells.push_back(cell); }

    Cell make(CellKind kind, quint16 style, quint32 value) const
    {
        return Cell(static_cast<quint16>(m_column), kind, style, value);
    }

    Cell text(quint16 style, QStringView text)
    {
        return make(CellKind::Text, style, m_workbook.texts.add(text));
    }

    /// A cell for the text of a number; nothing when the text is none.
    std::optional<Cell> number(quint16 style, QStringView text);
    Cell formula(quint16 style, QStringView formula, const Cell &stored);

    void addStyle(const QString &id, const QString &ground, QStringView parent);
    /// The number of a style, 0 for one that nobody knows.
    quint16 style(QStringView id);

    /// How many cells there may be: what a place in `Sheet::cells` can say.
    bool hasRoom() const { return m_sheet->cells.size() < 0xFFFFFFFF; }

    Workbook take() { return std::move(m_workbook); }

private:
    Workbook m_workbook;
    Sheet *m_sheet = nullptr;
    quint32 m_row = 0;
    quint32 m_column = 0;
    std::map<QString, quint16, std::less<>> m_styles;
    std::array<quint16, 2> m_latestStyles{}; ///< the one before the last, the last
};

} // namespace ZelDataVisualization
