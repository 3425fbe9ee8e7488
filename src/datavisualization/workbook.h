// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/textpool.h"

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace ZelDataVisualization {

enum class CellKind : quint8
{
    Blank,   ///< a cell with a style and nothing in it
    Integer, ///< a whole number of 32 bits
    Real,
    Text,
    Boolean,
    Error, ///< an error that the document itself has, as text
    Formula
};

/// One cell in eight bytes: `value` is the number itself, or where the workbook has it.
struct Cell
{
    static constexpr quint16 MostStyles = 0x1000;

    Cell() = default;

    Cell(quint16 atColumn, CellKind kind, quint16 style, quint32 itsValue)
        : value(itsValue)
        , column(atColumn)
        , look(static_cast<quint16>(quint16(kind) << 12 | (style < MostStyles ? style : 0)))
    {
    }

    CellKind kind() const { return static_cast<CellKind>(look >> 12); }

    quint16 style() const { return look & (MostStyles - 1); }

    quint32 value = 0;
    quint16 column = 0; ///< from 1
    quint16 look = 0;   ///< kind and style
};

static_assert(sizeof(Cell) == 8);

/// A sheet: rows and cells in order, only those that are there.
struct ZEL_EXPORT Sheet
{
    struct Row
    {
        quint32 number = 0; ///< from 1
        quint32 first = 0;  ///< of its cells, in `cells`
    };

    /// The cells of the row at a place in `rows`.
    std::span<const Cell> cellsOf(size_t row) const
    {
        const size_t end = row + 1 < rows.size() ? rows[row + 1].first : cells.size();
        return std::span(cells).subspan(rows[row].first, end - rows[row].first);
    }

    /// The place in `rows` of the first row whose number is not below the given one.
    size_t rowFrom(quint32 number) const;

    /// The cell in a row and column; null for none.
    const Cell *find(quint32 row, quint16 column) const;

    QString name;
    std::vector<Row> rows;
    std::vector<Cell> cells;
};

/// The cell of a column among the cells of a row; null for none.
ZEL_EXPORT const Cell *cellInColumn(std::span<const Cell> row, quint16 column);

/// What is kept of an XML Spreadsheet workbook: its cells, their formulas, and the grounds of
/// styles.
struct ZEL_EXPORT Workbook
{
    struct Style
    {
        QString id;
        QString ground; ///< the colour behind the text as it stands, "#CCFFCC"; empty for none
    };

    struct Formula
    {
        quint32 text = 0;
        Cell stored; ///< what the document says the formula came to
    };

    static constexpr quint32 MostRows = 0x7FFFFFFF;
    static constexpr quint16 MostColumns = 16'384;

    /// The sheet of a name, ignoring case; null for none.
    const Sheet *sheet(QStringView name) const;

    /// The text of a cell as the document has it, of a formula its stored value.
    QString textOf(const Cell &cell) const;
    /// The number of a cell; nothing for any other cell, a formula's too.
    std::optional<double> numberOf(const Cell &cell) const;

    std::vector<Sheet> sheets;
    std::vector<Style> styles; ///< number 0 is that of cells without one
    std::vector<Formula> formulas;
    std::vector<double> reals;
    TextPool texts;
};

} // namespace ZelDataVisualization
